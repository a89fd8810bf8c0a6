// The modules of this repository by themselves: they load, take what the device takes, and hold every node that is
// translated.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "modules.h"

namespace yang_test {
namespace {

constexpr char kCfg[] = "Vexnet-OS-interface-cfg";
constexpr char kOper[] = "Vexnet-OS-l2-eth-infra-oper";
constexpr char kInfraCfgNs[] = "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg";

struct OwnModels : testing::Test {
  void SetUp() override {
    ctx = make_context({kOwnYang});
    ASSERT_EQ(load(ctx, {"ietf-netconf"}), "");
    ASSERT_EQ(load(ctx, kOpenConfigModules), "");
    ASSERT_EQ(load(ctx, kNativeModules), "");
  }

  // The data as it prints, or the reason why it does not parse.
  std::string parse(const std::string& text, LYD_FORMAT in, LYD_FORMAT out, uint32_t options = 0) const {
    lyd_node* tree = nullptr;
    ly_err_clean(ctx.get(), nullptr);
    const LY_ERR result =
        lyd_parse_data_mem(ctx.get(), text.c_str(), in, LYD_PARSE_STRICT | options, LYD_VALIDATE_PRESENT, &tree);
    if (result != LY_SUCCESS) return std::string("refused: ") + (ly_errmsg(ctx.get()) ? ly_errmsg(ctx.get()) : "");
    char* printed = nullptr;
    lyd_print_mem(&printed, tree, out, LYD_PRINT_WITHSIBLINGS | LYD_PRINT_SHRINK);
    lyd_free_all(tree);
    std::string copy = printed == nullptr ? "" : printed;
    std::free(printed);
    return copy;
  }

  Context ctx;
};

// Below an entry of the native configuration.
const std::string kEntry = "interface-configurations/interface-configuration/";
const std::string kEncapsulation = kEntry + "ethernet-service/encapsulation/";
const std::string kTrunk = kEntry + "vlan-trunk-configuration/";
const std::string kIdentifier = kEntry + "vlan-sub-configuration/vlan-identifier/";
const std::string kRewrite = kEntry + "ethernet-service/rewrite/";

TEST_F(OwnModels, HoldEveryNativeNodeThatIsTranslated) {
  const std::vector<std::string> nodes = {
      kEntry + "user-network-interface",
      kIdentifier + "vlan-type",
      kIdentifier + "first-tag",
      kIdentifier + "second-tag",
      kEntry + "ethernet-service/local-traffic-default-encapsulation",
      kEncapsulation + "outer-tag-type",
      kEncapsulation + "inner-tag-type",
      kEncapsulation + "outer-range1-low",
      kEncapsulation + "outer-range1-high",
      kEncapsulation + "inner-range1-low",
      kEncapsulation + "inner-range1-high",
      kEncapsulation + "additional-range1-low",
      kEncapsulation + "additional-range2-low",
      kEncapsulation + "additional-range3-low",
      kEncapsulation + "additional-range4-low",
      kEncapsulation + "additional-range5-low",
      kEncapsulation + "additional-range6-low",
      kEncapsulation + "additional-range7-low",
      kEncapsulation + "additional-range8-low",
      kRewrite + "rewrite-type",
      kRewrite + "outer-tag-type",
      kRewrite + "outer-tag-value",
      kEntry + "ethernet-bng/ambiguous-encapsulation",
      kEntry + "mac-accounting",
      kEntry + "ethernet-features/egress-filtering",
      kEntry + "carrier-delay",
      kTrunk + "native-vlan-identifier/vlan-type",
      kTrunk + "native-vlan-identifier/vlan-identifier",
      kTrunk + "vlan-switched/mode",
      kTrunk + "vlan-switched/access-vlan",
      kTrunk + "vlan-switched/trunk-tag-type",
      kTrunk + "vlan-switched/trunk-vla-ns",
      kEntry + "l2-transport/l2-protocols/l2-protocol/l2-protocol-name",
      kEntry + "l2-transport/propagate-remote-status",
      kEntry + "l2-transport/l2-ethernet-features",
  };
  for (const std::string& path : nodes) {
    const lysc_node* const node = find_node(ctx, kCfg, path);
    ASSERT_NE(node, nullptr) << path;
    EXPECT_STREQ(node->module->ns, kInfraCfgNs) << path;
    EXPECT_TRUE((node->flags & LYS_CONFIG_W) != 0) << path;
  }
}

TEST_F(OwnModels, HoldEveryOperationalNodeThatIsTranslated) {
  const std::string details = "vlan/nodes/node/interfaces/interface/encapsulation-details/";
  const std::string trunk = "vlan/nodes/node/trunks/trunk/";
  const std::string instance = details + "service-instance-details/";
  const std::vector<std::string> nodes = {
      "vlan/nodes/node/node-id",
      "vlan/nodes/node/interfaces/interface/interface",
      details + "vlan-encapsulation",
      details + "tag",
      details + "dot1ad-dot1q-stack/outer-tag",
      details + "dot1ad-dot1q-stack/second-tag",
      instance + "tags-to-match/ethertype",
      instance + "tags-to-match/number-of-ranges",
      instance + "tags-to-match/vlan-range/vlan-id-low",
      instance + "tags-to-match/vlan-range/vlan-id-high",
      instance + "tags-popped",
      instance + "pushe/vlan-id",
      instance + "pushe/ethertype",
      trunk + "interface",
      trunk + "layer3-sub-interfaces/native-vlan",
      trunk + "vlan-switched/mode",
      trunk + "vlan-switched/access-vlan",
      trunk + "vlan-switched/trunk-vlan-ranges/tags-to-match/ethertype",
      trunk + "vlan-switched/trunk-vlan-ranges/tags-to-match/vlan-range/vlan-id-low",
      trunk + "vlan-switched/trunk-vlan-ranges/tags-to-match/vlan-range/vlan-id-high",
  };
  for (const std::string& path : nodes) {
    const lysc_node* const node = find_node(ctx, kOper, path);
    ASSERT_NE(node, nullptr) << path;
    EXPECT_TRUE((node->flags & LYS_CONFIG_R) != 0) << path;
  }
}

struct Value {
  std::string path;
  std::string value;
  bool taken;
};

TEST_F(OwnModels, TakeTheValuesThatTheDeviceTakes) {
  const std::string list = kTrunk + "vlan-switched/trunk-vla-ns";
  // Every id by itself: the longest list there can be.
  std::string all = "1";
  for (int id = 2; id <= 4094; ++id) all += "," + std::to_string(id);
  const std::vector<Value> values = {
      {kEncapsulation + "outer-range1-low", "1", true},
      {kEncapsulation + "outer-range1-low", "4094", true},
      {kEncapsulation + "outer-range1-low", "0", false},
      {kEncapsulation + "outer-range1-low", "4095", false},
      {kEncapsulation + "outer-range1-low", "4097", false},
      {kEncapsulation + "outer-range1-high", "4094", true},
      {kEncapsulation + "outer-range1-high", "4097", true},
      {kEncapsulation + "outer-range1-high", "4095", false},
      {kEncapsulation + "outer-range1-high", "4096", false},
      {kEncapsulation + "outer-range1-high", "4098", false},
      {kEncapsulation + "inner-range1-high", "4097", false},
      {kEncapsulation + "additional-range8-low", "4094", true},
      {kEncapsulation + "additional-range8-low", "4097", false},
      {kEncapsulation + "outer-tag-type", "match-dot1q", true},
      {kEncapsulation + "inner-tag-type", "match-dot1ad", true},
      {kEncapsulation + "inner-tag-type", "dot1q", false},
      {kRewrite + "rewrite-type", "push1", true},
      {kRewrite + "rewrite-type", "pop1", true},
      {kRewrite + "rewrite-type", "translate1to1", true},
      {kRewrite + "rewrite-type", "translate2to2", true},
      {kRewrite + "rewrite-type", "swap", false},
      {kRewrite + "outer-tag-value", "4095", false},
      {kIdentifier + "vlan-type", "vlan-type-dot1q", true},
      {kIdentifier + "vlan-type", "match-dot1q", false},
      {kIdentifier + "second-tag", "4094", true},
      {kIdentifier + "second-tag", "0", false},
      {kTrunk + "vlan-switched/mode", "access", true},
      {kTrunk + "vlan-switched/mode", "trunk", true},
      {kTrunk + "vlan-switched/mode", "TRUNK", false},
      {kEntry + "mtu", "64", true},
      {kEntry + "mtu", "63", false},
      {kEntry + "mtu", "65535", true},
      {kEntry + "interface-name", "", false},
      {list, "1", true},
      {list, "100,200-300", true},
      {list, "100, 200 - 300 ,4094", true},
      {list, all, true},
      {list, all + ",1", false},
      {list, "", false},
      {list, ",", false},
      {list, "1,", false},
      {list, "1,,2", false},
      {list, "1-2-3", false},
      {list, "1..2", false},
      {list, "12345", false},
      {list, "ten", false},
  };
  for (const Value& each : values) {
    const lysc_node* const leaf = find_node(ctx, kCfg, each.path);
    ASSERT_NE(leaf, nullptr) << each.path;
    EXPECT_EQ(canonical(ctx, leaf, each.value), each.taken ? "taken as '" + each.value + "'" : "refused")
        << each.path << " " << each.value.substr(0, 80);
  }
}

TEST_F(OwnModels, TakeOddOperationalData) {
  const std::string odd =
      R"(<vlan xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-oper"><nodes><node><node-id/><interfaces>)"
      R"(<interface><interface>a.b.c</interface><encapsulation-details><vlan-encapsulation>qinq-any</vlan-encapsulation>)"
      R"(<tag>99999</tag><service-instance-details><tags-to-match><ethertype>dot1x</ethertype><number-of-ranges>11)"
      R"(</number-of-ranges></tags-to-match><tags-to-match/><tags-to-match/><tags-popped>7</tags-popped><pushe/><pushe/>)"
      R"(</service-instance-details></encapsulation-details></interface></interfaces></node></nodes></vlan>)";
  const std::string json = parse(odd, LYD_XML, LYD_JSON);
  EXPECT_THAT(json, testing::HasSubstr(R"("tag":99999)"));
  EXPECT_THAT(json, testing::HasSubstr(R"("pushe":[{},{}])"));
}

TEST_F(OwnModels, KnowWhichSubinterfacesAreL2) {
  const lysc_node* const marker = find_node(ctx, kCfg, kEntry + "l2-transport");
  ASSERT_NE(marker, nullptr);
  EXPECT_TRUE((marker->flags & LYS_PRESENCE) != 0);
}

TEST_F(OwnModels, CarryTheOperationsOfEdits) {
  const std::string edit =
      R"(<interfaces xmlns="http://openconfig.net/yang/interfaces" xmlns:nc="urn:ietf:params:xml:ns:netconf:base:1.0">)"
      R"(<interface nc:operation="%"><name>Ethernet0/0/1</name></interface></interfaces>)";
  for (const std::string operation : {"merge", "replace", "create", "delete", "remove"}) {
    std::string text = edit;
    text.replace(text.find('%'), 1, operation);
    const std::string json = parse(text, LYD_XML, LYD_JSON, LYD_PARSE_ONLY);
    EXPECT_THAT(json, testing::HasSubstr(R"("@":{"ietf-netconf:operation":")" + operation + "\"}"));
    EXPECT_THAT(parse(json, LYD_JSON, LYD_XML, LYD_PARSE_ONLY),
                testing::HasSubstr(R"(xmlns:nc="urn:ietf:params:xml:ns:netconf:base:1.0" nc:operation=")" + operation));
  }
  std::string misspelt = edit;
  misspelt.replace(misspelt.find('%'), 1, "destroy");
  EXPECT_THAT(parse(misspelt, LYD_XML, LYD_JSON, LYD_PARSE_ONLY), testing::HasSubstr("refused"));
}

// What the deviations leave is what is translated, so they have to fit either set of modules.
TEST(Deviations, TakeOffWhatIsNotTranslated) {
  std::vector<std::vector<std::string>> sets = {{kOwnYang}};
  if (has_published()) sets.push_back({kOwnYang, kPublishedYang});
  for (const std::vector<std::string>& folders : sets) {
    SCOPED_TRACE(folders.back());
    const Context plain = make_context(folders);
    const Context deviated = make_context(folders);
    ASSERT_EQ(load(plain, kOpenConfigModules), "");
    ASSERT_EQ(load(deviated, kOpenConfigModules), "");
    ASSERT_EQ(load(deviated, {"openconfig-vlan-deviations"}), "");
    const std::string interface = "interfaces/interface/";
    const std::string vlan = interface + "subinterfaces/subinterface/vlan/";
    for (const std::string& path :
         {interface + "config/tpid", interface + "state/tpid", interface + "routed-vlan", vlan + "config",
          vlan + "state", vlan + "match/double-tagged-inner-outer-range", vlan + "egress-mapping"}) {
      EXPECT_NE(find_node(plain, "openconfig-interfaces", path), nullptr) << path;
      EXPECT_EQ(find_node(deviated, "openconfig-interfaces", path), nullptr) << path;
    }
    const std::vector<std::pair<std::string, uint32_t>> limits = {
        {vlan + "match/single-tagged-list/config/vlan-ids", 9},
        {vlan + "match/double-tagged-inner-list/config/inner-vlan-ids", 9},
        {vlan + "match/double-tagged-outer-list/config/outer-vlan-ids", 9},
        {vlan + "match/double-tagged-inner-range/config/outer-vlan-id", 1},
    };
    for (const auto& [path, limit] : limits) {
      const lysc_node* const node = find_node(deviated, "openconfig-interfaces", path);
      ASSERT_NE(node, nullptr) << path;
      EXPECT_EQ(reinterpret_cast<const lysc_node_leaflist*>(node)->max, limit) << path;
    }
  }
}

}  // namespace
}  // namespace yang_test
