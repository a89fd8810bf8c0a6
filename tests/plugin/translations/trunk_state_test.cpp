// Trunks to the switched-VLAN state of an interface.
#include "plugin/translations/case.h"

namespace translations {
namespace {

const Function kEntry = FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfraoper_list_lvla_vlan_trunks_trunk);
const Function kSwitched = FUNCTION(vex2_oc_vlanswitched);
const Function kNative = FUNCTION(vex2_oc_native_vlan);

const std::string kAsked = node_info("/vlan/nodes/node/trunks/trunk", "interface");

std::function<void(Recorder&)> named(const char* name) {
  return [name](Recorder& framework) { framework.node_info("/vlan/nodes/node/trunks/trunk", "interface", name); };
}

std::string search(const std::string& name) {
  return "search_or_add_list tree=output slot=list_slot path=/interfaces/interface value=" + name + " key=name ns=ocif";
}

TEST(TrunkEntry, is_found_or_added_under_its_whole_name) {
  for (const std::string name : {"Bundle-Ether5", "Ethernet1.5", "''"}) {
    const std::string key = name == "''" ? "" : name;
    check({.name = "",
           .function = kEntry,
           .tree = "oper:trunk { vlan-switched }",
           .kinds = {kReadState, kRead, kEdit},
           .given = named(key.c_str()),
           .calls = lines(kAsked, search(name))});
  }
}

TEST(TrunkEntry, passes_failures_on) {
  check({.name = "",
         .function = kEntry,
         .tree = "oper:trunk",
         .kinds = {kReadState},
         .calls = lines(kAsked),
         .result = kNotThere});
  check({.name = "",
         .function = kEntry,
         .tree = "oper:trunk",
         .kinds = {kReadState},
         .given =
             [](Recorder& framework) {
               named("Ethernet1")(framework);
               framework.answer("search_or_add_list", 0xaaf20031);
             },
         .calls = lines(kAsked, search("Ethernet1")),
         .result = 0xaaf20031});
  check({.name = "",
         .function = kEntry,
         .tree = "oper:trunk",
         .kinds = {kReadState},
         .given = named(nullptr),
         .calls = lines(kAsked)});
}

struct Place {
  std::string label;
  const char* interface;
  std::string container;
  std::string ns;

  std::string parent() const { return add(container, ns, "-", "-", 0, 1) + "\n"; }
  std::string leaf(const std::string& name, const std::string& value) const {
    return add(path(name), "oc", value, "-", 0, 1) + "\n";
  }
  std::string mode(const std::string& value) const {
    return add(path("interface-mode"), "oc", value, "-", 0, 1, "yes") + "\n" + kMarked + "\n";
  }
  std::string entry(const std::string& value) const { return add(path("trunk-vlans"), "oc", value, "-", 1, 1) + "\n"; }
  std::string path(const std::string& name) const { return container + "/switched-vlan/state/" + name; }
};

class TrunkState : public testing::TestWithParam<Place> {
 protected:
  void expect(const std::string& children, const std::string& calls, const std::string& failures) const {
    check({.name = "",
           .function = kSwitched,
           .tree = "oper:vlan-switched { " + children + " }",
           .kinds = {kReadState, kRead, kEdit},
           .given = named(GetParam().interface),
           .calls = lines(kAsked) + calls,
           .failures = failures});
  }
};

std::string range(const std::string& low, const std::string& high) {
  return " vlan-range { vlan-id-low=" + low + " vlan-id-high=" + high + " }";
}

std::string trunk_port(const std::string& tags) {
  return "mode=trunk-port trunk-vlan-ranges { tags-to-match { " + tags + " } }";
}

TEST_P(TrunkState, of_an_access_port) {
  const Place& place = GetParam();
  const std::string told = place.parent() + place.mode("ACCESS") + place.leaf("access-vlan", "7");
  expect("mode=access-port access-vlan=7", told, "..r");
  expect("access-vlan=5 mode=trunk-port access-vlan=7 mode=access-port", told, "..r");
  expect(
      "mode=access-port access-vlan=7 trunk-vlan-ranges { tags-to-match { ethertype=dot1q" + range("1", "2") + " } }",
      told, "..r");
  expect("mode=access-port", place.parent(), "r");
  expect("mode=access-port access-vlan", place.parent(), "r");
}

TEST_P(TrunkState, of_a_trunk_port) {
  const Place& place = GetParam();
  const std::string trunk = place.parent() + place.mode("TRUNK");
  expect(trunk_port("ethertype=dot1q" + range("10", "20") + range("30", "30")),
         trunk + place.entry("10..20") + place.entry("30"), "...r");
  expect(trunk_port("ethertype=dot1q"), trunk, ".r");
  expect(trunk_port("ethertype=dot1q" + range("1", "1")) + " access-vlan=7", trunk + place.entry("1"), "..r");
}

TEST_P(TrunkState, bounds_a_range_text_by_cutting_it) {
  const Place& place = GetParam();
  const std::string trunk = place.parent() + place.mode("TRUNK");
  const std::string nines(8, '9');
  expect(trunk_port("ethertype=dot1q" + range(nines, nines + "1")), trunk + place.entry(nines + ".." + nines + "1"),
         "..r");
  expect(trunk_port("ethertype=dot1q" + range(nines, nines + "12")), trunk + place.entry(nines + ".." + nines + "1"),
         "..r");
  const std::string ones(25, '1');
  expect(trunk_port("ethertype=dot1q" + range(ones, ones)), trunk + place.entry(ones.substr(0, 19)), "..r");
}

TEST_P(TrunkState, takes_a_missing_end_from_the_range_before) {
  const Place& place = GetParam();
  const std::string trunk = place.parent() + place.mode("TRUNK");
  expect(trunk_port("ethertype=dot1q" + range("10", "20") +
                    " vlan-range { vlan-id-low=15 } vlan-range { "
                    "vlan-id-high=15 } vlan-range"),
         trunk + place.entry("10..20") + place.entry("15..20") + place.entry("15") + place.entry("15"), ".....r");
  expect(trunk_port("ethertype=dot1q vlan-range { vlan-id-low=5 } vlan-range vlan-range { vlan-id-high=6 }"),
         trunk + place.entry("5..6"), "..r");
}

TEST_P(TrunkState, takes_an_end_without_text_for_a_missing_one) {
  const Place& place = GetParam();
  const std::string trunk = place.parent() + place.mode("TRUNK");
  expect(trunk_port("ethertype=dot1q" + range("1", "2") + " vlan-range { vlan-id-low=5 vlan-id-high }"),
         trunk + place.entry("1..2") + place.entry("5..2"), "...r");
  expect(trunk_port("ethertype=dot1q" + range("1", "2") + " vlan-range { vlan-id-low vlan-id-high=9 }"),
         trunk + place.entry("1..2") + place.entry("1..9"), "...r");
  expect(trunk_port("ethertype=dot1q vlan-range { vlan-id-low vlan-id-high=9 }"), trunk, ".r");
}

TEST_P(TrunkState, takes_the_first_tag_and_its_first_type) {
  const Place& place = GetParam();
  const std::string trunk = place.parent() + place.mode("TRUNK");
  expect("mode=trunk-port trunk-vlan-ranges { tags-to-match { ethertype=dot1q ethertype=dot1ad" + range("1", "1") +
             " } tags-to-match { ethertype=dot1ad" + range("2", "2") + " } }",
         trunk + place.entry("1"), "..r");
  expect("mode=trunk-port trunk-vlan-ranges { tags-to-match { ethertype=dot1ad" + range("1", "1") +
             " } } trunk-vlan-ranges { tags-to-match { ethertype=dot1q" + range("2", "2") + " } }",
         trunk + place.entry("2"), "..r");
  expect(trunk_port("ethertype=dot1q" + range("1", "1")) + " trunk-vlan-ranges", trunk + place.entry("1"), "..r");
}

TEST_P(TrunkState, is_nothing_for_what_is_not_known) {
  expect(trunk_port("ethertype=dot1ad" + range("1", "1")), "", "");
  expect(trunk_port(range("1", "1")), "", "");
  expect(trunk_port("ethertype"), "", "");
  expect("mode=trunk-port", "", "");
  expect("mode=trunk-port trunk-vlan-ranges { x }", "", "");
  expect("mode=qinq-port access-vlan=7", "", "");
  expect("mode access-vlan=7", "", "");
  expect("access-vlan=7 x @notag", "", "");
}

TEST_P(TrunkState, of_a_native_vlan) {
  const Place& place = GetParam();
  for (const auto& [tree, value] : {std::pair{"oper:native-vlan=9", "9"}, std::pair{"oper:native-vlan", "-"}}) {
    check({.name = "",
           .function = kNative,
           .tree = tree,
           .kinds = {kReadState, kRead, kEdit},
           .given = named(place.interface),
           .calls = lines(kAsked) + place.parent() + place.leaf("native-vlan", value),
           .failures = ".r"});
  }
}

INSTANTIATE_TEST_SUITE_P(
    Places, TrunkState,
    testing::Values(Place{"ethernet", "GigabitEthernet0/0/0/1", "/interfaces/interface/ethernet", "eth"},
                    Place{"bundle", "Bundle-Ether5", "/interfaces/interface/aggregation", "agg"},
                    Place{"bundle_inside", "my-Bundle-Ether", "/interfaces/interface/aggregation", "agg"}),
    [](const testing::TestParamInfo<Place>& info) { return info.param.label; });

// Without the interface's name nothing is told; the failure to find it is the result.
TEST(TrunkStateName, is_needed) {
  for (const Function& function : {kSwitched, kNative}) {
    const std::string tree = "oper:node=9 { mode=access-port access-vlan=7 }";
    check({.name = "",
           .function = function,
           .tree = tree,
           .kinds = {kReadState},
           .calls = lines(kAsked),
           .result = kNotThere});
    check({.name = "",
           .function = function,
           .tree = tree,
           .kinds = {kReadState},
           .given = named(nullptr),
           .calls = lines(kAsked)});
  }
}

TEST(TrunkStateTrace, tells_of_a_container_without_children) {
  for (const bool known : {true, false}) {
    Recorder framework(kReadState);
    if (known) named("Ethernet1")(framework);
    Tree tree("oper:vlan-switched { mode=access-port access-vlan=7 }");
    EXPECT_EQ(kSwitched(framework.ctx(), tree.root(), 0, framework.output()), known ? 0 : kNotThere);
    EXPECT_EQ(framework.calls(), lines(kAsked));
    EXPECT_EQ(framework.trace(), lines("TRC vex2_oc_vlanswitched: Start", "TRC vex2_oc_vlanswitched: No subtrees",
                                       "TRC vex2_oc_vlanswitched: End"));
  }
}

TEST(TrunkStateIdentity, is_marked_where_a_leaf_was_made) {
  for (const bool made : {true, false}) {
    Recorder framework(kReadState);
    named("Ethernet1")(framework);
    if (!made) framework.leave_slots_empty();
    Tree tree("oper:vlan-switched { mode=access-port access-vlan=7 }");
    EXPECT_EQ(kSwitched(framework.ctx(), tree.root(), 2, framework.output()), 0u);
    EXPECT_EQ(framework.calls().find(kMarked) != std::string::npos, made);
    if (made) {
      EXPECT_STREQ(framework.added().value_ns, "http://openconfig.net/yang/vlan-types");
      EXPECT_EQ(framework.added().key_flags, 0x10);
    }
  }
}

}  // namespace
}  // namespace translations
