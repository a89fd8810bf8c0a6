// Native trunk configuration read back as the switched VLAN.
#include "plugin/translations/case.h"

namespace translations {
namespace {

#define READ_BACK(leaf) FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_##leaf)

const Function kNative = READ_BACK(nativevlanidentifier_vlanidentifier);
const Function kMode = READ_BACK(vlanswitched_mode);
const Function kAccess = READ_BACK(vlanswitched_accessvlan);
const Function kTrunk = READ_BACK(vlanswitched_trunkvlans);

constexpr char kNativeContainer[] =
    "/interface-configurations/interface-configuration/vlan-trunk-configuration/native-vlan-identifier";
constexpr char kSwitched[] = "/interface-configurations/interface-configuration/vlan-trunk-configuration/vlan-switched";
const std::string kAskedNative = node_info(kNativeContainer, "vlan-type");
const std::string kAskedTrunk = node_info(kSwitched, "trunk-tag-type");

// The two places that an interface's switched VLAN can have.
struct Place {
  std::string label;
  const char* interface;  // may be null
  std::string container;
  std::string ns;

  std::string parent() const { return add(container, ns, "-", "-", 0, 1); }
  std::string leaf(const std::string& name, const std::string& value) const {
    return add(path(name), "oc", value, "-", 0, 1);
  }
  std::string identity(const std::string& name, const std::string& value) const {
    return add(path(name), "oc", value, "-", 0, 1, "yes");
  }
  std::string entry(const std::string& value) const { return add(path("trunk-vlans"), "oc", value, "-", 1, 1); }
  std::string path(const std::string& name) const { return container + "/switched-vlan/config/" + name; }
};

class TrunkReadBack : public testing::TestWithParam<Place> {
 protected:
  Case read(const Function& function, const std::string& tree, std::function<void(Recorder&)> given, std::string calls,
            std::string failures) const {
    const char* const interface = GetParam().interface;
    return {.name = "",
            .function = function,
            .tree = tree,
            .kinds = {kRead, kReadState, kEdit},
            .given =
                [given = std::move(given), interface](Recorder& framework) {
                  framework.sub_interface(interface, nullptr);
                  given(framework);
                },
            .calls = std::move(calls),
            .failures = std::move(failures)};
  }
};

void nothing(Recorder&) {}

std::function<void(Recorder&)> native_type(const char* type) {
  return [type](Recorder& framework) { framework.node_info(kNativeContainer, "vlan-type", type); };
}

std::function<void(Recorder&)> trunk_type(const char* type) {
  return [type](Recorder& framework) { framework.node_info(kSwitched, "trunk-tag-type", type); };
}

TEST_P(TrunkReadBack, native_vlan) {
  const Place& place = GetParam();
  check(read(kNative, "cfg:vlan-identifier=7", native_type("vlan-type-dot1q"),
             lines(kAskedNative, place.parent(), place.leaf("native-vlan", "7")), ".r"));
  for (const char* const type : {"vlan-type-dot1ad", "", "match-dot1q", static_cast<const char*>(nullptr)}) {
    check(read(kNative, "cfg:vlan-identifier=7", native_type(type), lines(kAskedNative), ""));
  }
}

TEST_P(TrunkReadBack, access_vlan) {
  const Place& place = GetParam();
  check(read(kAccess, "cfg:access-vlan=10", nothing, lines(place.parent(), place.leaf("access-vlan", "10")), ".r"));
}

TEST_P(TrunkReadBack, interface_mode) {
  const Place& place = GetParam();
  const std::string access = lines(place.parent(), place.identity("interface-mode", "ACCESS"), kMarked);
  check(read(kMode, "cfg:mode=access", nothing, access, ".r"));
  check(read(kMode, "cfg:mode=access", trunk_type("other"), access, ".r"));
  check(read(kMode, "cfg:mode=trunk", trunk_type("vlan-type-dot1q"),
             lines(kAskedTrunk, place.parent(), place.identity("interface-mode", "TRUNK"), kMarked), ".r"));
  check(read(kMode, "cfg:mode=trunk", trunk_type("vlan-type-dot1ad"), lines(kAskedTrunk), ""));
  for (const char* const tree : {"cfg:mode=hybrid", "cfg:mode=''", "cfg:mode", "cfg:mode=TRUNK"}) {
    check(read(kMode, tree, trunk_type("vlan-type-dot1q"), "", ""));
  }
}

// A look-up that fails is the result, and nothing is told.
TEST_P(TrunkReadBack, passes_a_failed_look_up_on) {
  for (const auto& [function, tree, asked] :
       {std::tuple{kNative, "cfg:vlan-identifier=7", kAskedNative}, std::tuple{kMode, "cfg:mode=trunk", kAskedTrunk},
        std::tuple{kTrunk, "cfg:trunk-vla-ns=1,2", kAskedTrunk}}) {
    Case missing = read(function, tree, nothing, lines(asked), "");
    missing.result = kNotThere;
    check(missing);
  }
}

TEST_P(TrunkReadBack, trunk_vlans) {
  const Place& place = GetParam();
  const std::vector<std::pair<std::string, std::vector<std::string>>> table{
      {"10", {"10"}},
      {"100,200-300,400", {"100", "200..300", "400"}},
      {"10,20-30", {"10", "20..30"}},
      {"1-2-3", {"1..2-3"}},
      {",,5,,6,", {"5", "6"}},
      {",", {}},
      {"''", {}},
      {"-",
       {
           "..",
       }},
      {"5-", {"5.."}},
      {"-5", {"..5"}},
      {"' 7, 8-9'", {"' 7'", "' 8..9'"}},
      {"1234567890123456789", {"1234567890123456789"}},
      {"12345678901234567890,5", {"5"}},
      {"12345678-123456789,6", {"12345678..123456789", "6"}},
      {"123456789-123456789,6", {"6"}},
      {"0-99999,4095", {"0..99999", "4095"}},
  };
  for (const auto& [text, entries] : table) {
    SCOPED_TRACE(text);
    std::string calls = lines(kAskedTrunk, place.parent());
    const std::string failures = std::string(entries.size(), '.') + "r";
    for (const std::string& entry : entries) calls += place.entry(entry) + "\n";
    check(read(kTrunk, "cfg:trunk-vla-ns=" + text, trunk_type("vlan-type-dot1q"), calls, failures));
  }
}

TEST_P(TrunkReadBack, trunk_vlans_only_of_a_tagged_trunk) {
  for (const char* const type : {"vlan-type-dot1ad", "", static_cast<const char*>(nullptr)}) {
    check(read(kTrunk, "cfg:trunk-vla-ns=1,2", trunk_type(type), lines(kAskedTrunk), ""));
  }
  check(read(kTrunk, "cfg:trunk-vla-ns", trunk_type("vlan-type-dot1q"), lines(kAskedTrunk), ""));
}

INSTANTIATE_TEST_SUITE_P(
    Places, TrunkReadBack,
    testing::Values(Place{"ethernet", "Ethernet0/1/2", "/interfaces/interface/ethernet", "eth"},
                    Place{"bundle", "Bundle-Ether5", "/interfaces/interface/aggregation", "agg"},
                    Place{"bundle_inside", "x/Bundle-Ether5.1", "/interfaces/interface/aggregation", "agg"},
                    Place{"lower_case_bundle", "bundle-ether5", "/interfaces/interface/ethernet", "eth"},
                    Place{"unnamed", nullptr, "/interfaces/interface/ethernet", "eth"}),
    [](const testing::TestParamInfo<Place>& info) { return info.param.label; });

TEST(TrunkReadBackText, is_consumed_in_place) {
  Recorder framework(kRead);
  framework.node_info(kSwitched, "trunk-tag-type", "vlan-type-dot1q");
  Tree tree("cfg:trunk-vla-ns=10,20-30,40");
  kTrunk(framework.ctx(), tree.root(), 0, framework.output());
  EXPECT_EQ(std::string(tree.root()->value, 11), std::string("10\0"
                                                             "20\0"
                                                             "30\0"
                                                             "40",
                                                             11));
}

TEST(TrunkReadBackIdentity, is_marked_where_a_leaf_was_made) {
  for (const bool made : {true, false}) {
    Recorder framework(kRead);
    if (!made) framework.leave_slots_empty();
    Tree tree("cfg:mode=access");
    EXPECT_EQ(kMode(framework.ctx(), tree.root(), 0, framework.output()), 0u);
    EXPECT_EQ(framework.calls().find(kMarked) != std::string::npos, made);
    if (made) {
      EXPECT_STREQ(framework.added().value_ns, "http://openconfig.net/yang/vlan-types");
      EXPECT_EQ(framework.added().key_flags, 0x10);
    }
  }
}

}  // namespace
}  // namespace translations
