// Adds by path: what is created, which entry a list means, and how writes and removals meet.
#include "framework/walk/output_tree.h"

#include <gtest/gtest.h>

#include "framework/tree/models.h"
#include "framework/tree/schema.h"

namespace yfw {
namespace {

constexpr char kCfg[] = YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS;
constexpr char kEntryList[] = "/interface-configurations/interface-configuration";
constexpr char kEncapsulation[] = "interface-configurations/interface-configuration/ethernet-service/encapsulation/";
constexpr char kLow[] =
    "interface-configurations/interface-configuration/ethernet-service/encapsulation/outer-range1-low";
constexpr char kHigh[] =
    "interface-configurations/interface-configuration/ethernet-service/encapsulation/outer-range1-high";

class OutputTreeTest : public testing::Test {
 protected:
  void current(const char* list_path, const char* key) {
    output_.set_current(paths_.resolve(list_path, nullptr)->back(), key);
  }

  cerrno add(const char* path, const char* value, uint32_t operation = 0, const char* ns = kCfg) {
    yfw_datatree source{};
    source.operation = operation;
    return output_.add(output_.root(), path, ns, value, &source, nullptr, false, {});
  }

  std::string edit() const { return to_edit(output_).print(Format::xml); }

  std::string data() {
    std::vector<Warning> warnings;
    std::string text = to_data(output_, warnings).print(Format::xml);
    for (const Warning& warning : warnings) text += "warning: " + warning.path + ": " + warning.message + "\n";
    return text;
  }

  static std::string entry(const std::string& inside) {
    return "<interface-configurations xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg\">\n"
           "  <interface-configuration>\n"
           "    <interface-name>Ethernet0/0/1.100</interface-name>\n"
           "    <ethernet-service xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg\">\n" +
           inside +
           "    </ethernet-service>\n"
           "  </interface-configuration>\n"
           "</interface-configurations>\n";
  }

  Models models_{OC_VLAN_SOURCE_DIR "/yang", ""};
  PathCache paths_{models_.get()};
  OutputTree output_{paths_};
};

constexpr uint32_t kMerge = 0;
constexpr uint32_t kCreate = 2;
constexpr uint32_t kDelete = 3;
constexpr uint32_t kRemove = 4;

struct AddCase {
  const char* name;
  struct Step {
    const char* path;
    const char* value;
    uint32_t operation;
  };
  std::vector<Step> steps;
  const char* inside;
};

class AddTest : public OutputTreeTest, public testing::WithParamInterface<AddCase> {};

TEST_P(AddTest, GivesTheEdit) {
  current(kEntryList, "Ethernet0/0/1.100");
  for (const AddCase::Step& step : GetParam().steps) EXPECT_EQ(add(step.path, step.value, step.operation), 0u);
  EXPECT_EQ(edit(), entry(GetParam().inside));
}

constexpr char kNc[] = " xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\" nc:operation=";

const std::string kRemovedContainer = std::string("      <encapsulation") + kNc + "\"remove\"/>\n";
const std::string kReplacedContainer = std::string("      <encapsulation") + kNc +
                                       "\"replace\">\n"
                                       "        <outer-range1-low>100</outer-range1-low>\n"
                                       "      </encapsulation>\n";

INSTANTIATE_TEST_SUITE_P(
    OutputTree, AddTest,
    testing::Values(
        AddCase{"Merge",
                {{kLow, "100", kMerge}},
                "      <encapsulation>\n        <outer-range1-low>100</outer-range1-low>\n      </encapsulation>\n"},
        AddCase{"CreateIsWrittenAsMerge",
                {{kLow, "100", kCreate}},
                "      <encapsulation>\n        <outer-range1-low>100</outer-range1-low>\n      </encapsulation>\n"},
        AddCase{"LaterAddOverrides",
                {{kLow, "100", kMerge}, {kLow, "200", kMerge}},
                "      <encapsulation>\n        <outer-range1-low>200</outer-range1-low>\n      </encapsulation>\n"},
        AddCase{"DeleteIsWrittenAsRemove", {{kEncapsulation, nullptr, kDelete}}, kRemovedContainer.c_str()},
        AddCase{"RemovalBelowARemovalChangesNothing",
                {{kEncapsulation, nullptr, kRemove}, {kLow, nullptr, kRemove}},
                kRemovedContainer.c_str()},
        AddCase{"WriteBelowARemovalReplaces",
                {{kEncapsulation, nullptr, kRemove}, {kLow, "100", kMerge}},
                kReplacedContainer.c_str()},
        AddCase{"RemovalBelowAReplacementTakesBackWhatWasWritten",
                {{kEncapsulation, nullptr, kRemove},
                 {kLow, "100", kMerge},
                 {kHigh, "200", kMerge},
                 {kHigh, nullptr, kRemove}},
                kReplacedContainer.c_str()},
        AddCase{"RemovalAfterAWriteTakesAll",
                {{kLow, "100", kMerge}, {kEncapsulation, nullptr, kRemove}},
                kRemovedContainer.c_str()}),
    [](const auto& tested) { return tested.param.name; });

TEST_F(OutputTreeTest, RemovedLeafHasNoValue) {
  current(kEntryList, "Ethernet0/0/1.100");
  EXPECT_EQ(add(kHigh, nullptr, kDelete), 0u);
  EXPECT_EQ(edit(), entry(std::string("      <encapsulation>\n        <outer-range1-high") + kNc +
                          "\"remove\"/>\n      </encapsulation>\n"));
}

TEST_F(OutputTreeTest, RefusesWhatIsNoPath) {
  current(kEntryList, "Ethernet0/0/1.100");
  EXPECT_EQ(add(nullptr, "1"), CERR_INVALID_ARGS);
  EXPECT_EQ(add("", "1"), CERR_INVALID_ARGS);
  EXPECT_EQ(add("/interface-configurations/nothing", "1"), CERR_INVALID_ARGS);
  EXPECT_EQ(add(kLow, "1", kMerge, YFW_OPENCONFIG_VLAN_NS), CERR_INVALID_ARGS) << "a namespace that is not the leaf's";
  EXPECT_EQ(output_.add(nullptr, kLow, kCfg, "1", nullptr, nullptr, false, {}), CERR_INVALID_ARGS);
  EXPECT_TRUE(output_.top().children.empty()) << "a refused add leaves nothing behind";
}

TEST_F(OutputTreeTest, NoCurrentEntryLeavesTheAddOut) {
  EXPECT_EQ(add(kLow, "100"), 0u);
  EXPECT_TRUE(output_.take_left_out());
  EXPECT_FALSE(output_.take_left_out());
  EXPECT_EQ(edit().find("outer-range1-low"), std::string::npos);
}

TEST_F(OutputTreeTest, RefusesAValueThatTheModelCannotHold) {
  current(kEntryList, "Ethernet0/0/1.100");
  EXPECT_EQ(add(kLow, "99999"), 0u);
  try {
    edit();
    FAIL() << "99999 went through";
  } catch (const Refused& refused) {
    EXPECT_EQ(refused.error().tag, "invalid-value");
    EXPECT_EQ(refused.error().bad_element, "outer-range1-low");
    EXPECT_EQ(refused.error().path,
              "/Vexnet-OS-interface-cfg:interface-configurations/"
              "interface-configuration[interface-name='Ethernet0/0/1.100']/"
              "Vexnet-OS-l2-eth-infra-cfg:ethernet-service/encapsulation/outer-range1-low");
  }
}

TEST_F(OutputTreeTest, DataLeavesOutWhatTheModelCannotHoldAndRepeats) {
  constexpr char kList[] =
      "/interfaces/interface/subinterfaces/subinterface/vlan/match/single-tagged-list/config/vlan-ids";
  current("/interfaces/interface", "Ethernet0/0/1");
  current("/interfaces/interface/subinterfaces/subinterface", "100");
  for (const char* const value : {"10", "20", "10", "4097"}) {
    EXPECT_EQ(output_.add(output_.root(), kList, YFW_OPENCONFIG_VLAN_NS, value, nullptr, nullptr, true, {}), 0u);
  }
  const std::string text = data();
  EXPECT_NE(text.find("<vlan-ids>10</vlan-ids>"), std::string::npos) << text;
  EXPECT_NE(text.find("<vlan-ids>20</vlan-ids>"), std::string::npos) << text;
  EXPECT_NE(text.find("vlan-ids: left out: \"10\" is there already"), std::string::npos) << text;
  EXPECT_NE(text.find("vlan-ids: left out: 'vlan-ids' cannot hold \"4097\""), std::string::npos) << text;
}

TEST_F(OutputTreeTest, EntriesAreFoundByKeyAndBecomeCurrent) {
  constexpr char kList[] = "/interfaces/interface";
  EXPECT_EQ(output_.entry(output_.root(), kList, "Ethernet0/0/1", YFW_OPENCONFIG_INTERFACES_NS, false), nullptr);
  OutputNode* const first = output_.entry(output_.root(), kList, "Ethernet0/0/1", YFW_OPENCONFIG_INTERFACES_NS, true);
  OutputNode* const second = output_.entry(output_.root(), kList, "Ethernet0/0/2", YFW_OPENCONFIG_INTERFACES_NS, true);
  ASSERT_NE(first, nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(output_.entry(output_.root(), kList, "Ethernet0/0/1", YFW_OPENCONFIG_INTERFACES_NS, false), first);
  EXPECT_EQ(output_.add(output_.root(), "/interfaces/interface/config/mtu", YFW_OPENCONFIG_INTERFACES_NS, "1500",
                        nullptr, nullptr, false, {}),
            0u);
  EXPECT_EQ(first->children.size(), 1u);
  EXPECT_TRUE(second->children.empty());
}

TEST_F(OutputTreeTest, AnEntryGetsItsKeyFromItsKeyLeaf) {
  yfw_node_slot slot{};
  const auto add_oc = [&](const char* path, const char* value, bool list_entry, std::string_view key) {
    return output_.add(output_.root(), path, YFW_OPENCONFIG_INTERFACES_NS, value, nullptr, &slot, list_entry, key);
  };
  EXPECT_EQ(add_oc("/interfaces/interface", nullptr, true, {}), 0u);
  yfw_datatree* const interface = slot.node;
  EXPECT_EQ(add_oc("/interfaces/interface/name", "Bundle-Ether1", false, {}), 0u);
  EXPECT_EQ(
      output_.entry(output_.root(), "/interfaces/interface", "Bundle-Ether1", YFW_OPENCONFIG_INTERFACES_NS, false),
      reinterpret_cast<OutputNode*>(interface));
  EXPECT_EQ(output_.add(interface, "/interfaces/interface/subinterfaces/subinterface", YFW_OPENCONFIG_INTERFACES_NS,
                        nullptr, nullptr, &slot, true, "100"),
            0u);
  EXPECT_EQ(output_.entry(interface, "/subinterfaces/subinterface", "100", nullptr, false),
            reinterpret_cast<OutputNode*>(slot.node));
  EXPECT_EQ(output_.entry(interface, "/subinterfaces/subinterface", "200", nullptr, false), nullptr);
}

TEST_F(OutputTreeTest, RollBackTakesBackNodesAndEntries) {
  current(kEntryList, "Ethernet0/0/1.100");
  add(kLow, "100");
  const std::string before = edit();
  const std::size_t mark = output_.mark();
  add(kHigh, "200");
  current(kEntryList, "Ethernet0/0/1.200");
  add(kLow, "300");
  output_.roll_back(mark);
  EXPECT_EQ(edit(), before);
  EXPECT_FALSE(output_.has_entry(kEntryList, "Ethernet0/0/1.200"));
}

TEST_F(OutputTreeTest, PathsNameEntriesAndPatterns) {
  const auto path_for = [&](const char* key) {
    current(kEntryList, key);
    add(kLow, nullptr);
    return to_paths(output_).back();
  };
  const std::string head = "/Vexnet-OS-interface-cfg:interface-configurations/interface-configuration";
  const std::string tail = "/Vexnet-OS-l2-eth-infra-cfg:ethernet-service/encapsulation/outer-range1-low";
  EXPECT_EQ(path_for("Ethernet0/0/1.100"), head + "[interface-name='Ethernet0/0/1.100']" + tail);
  EXPECT_EQ(path_for("a'b.1"), head + "[interface-name=\"a'b.1\"]" + tail);
  EXPECT_EQ(path_for("Ethernet0/0/1.*"), head + "[starts-with(interface-name,'Ethernet0/0/1.')]" + tail);
  EXPECT_EQ(path_for("*.*"), head + tail);
}

}  // namespace
}  // namespace yfw
