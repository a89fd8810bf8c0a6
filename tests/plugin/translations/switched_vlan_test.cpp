// Switched VLAN on its way to the native trunk configuration.
#include <cstring>

#include "plugin/translations/case.h"

namespace translations {
namespace {

class SwitchedVlan : public testing::TestWithParam<Case> {};

TEST_P(SwitchedVlan, translates) {
  check(GetParam());
}

const Function kConfig = FUNCTION(oc2_vex_switched_vlan_cfg_nativevlan_and_trunkvlans);

const std::string kNativeVlan = "native-vlan-identifier/vlan-identifier";
const std::string kNativeType = "native-vlan-identifier/vlan-type";
const std::string kTrunkVlans = "vlan-switched/trunk-vla-ns";
const std::string kTagType = "vlan-switched/trunk-tag-type";

std::string written_trunk(const std::string& text) {
  return lines(trunk(kTrunkVlans, text, "config"), trunk(kTagType, "vlan-type-dot1q", "config"));
}

std::string written_native(const std::string& id) {
  return lines(trunk(kNativeVlan, id, "config"), trunk(kNativeType, "vlan-type-dot1q", "config"));
}

const std::string kNoLeaves = "Edit request for switched-vlan without leaves";

// Children are counted, but there are none: that is not a container without leaves.
Case no_leaf_to_visit(const std::string& name, const std::string& tree, const std::vector<uint32_t>& kinds) {
  return {.name = name, .function = kConfig, .tree = tree, .kinds = kinds, .count = 1};
}

INSTANTIATE_TEST_SUITE_P(
    WithoutLeaves, SwitchedVlan,
    testing::Values(no_leaf_to_visit("read_of_none", "config=own { }", kReads),
                    no_leaf_to_visit("delete_of_none", "config @delete { }", kEdits),
                    no_leaf_to_visit("write_of_none", "config { }", kEdits),
                    Case{.name = "write_not_visiting_leaves",
                         .function = kConfig,
                         .tree = "config { interface-mode=TRUNK native-vlan=5 trunk-vlans=7 }",
                         .calls = lines(strdup(kNoLeaves, "YFW_MAP")),
                         .result = CERR_INVALID_VALUE,
                         .errors = lines("ERR " + kNoLeaves),
                         .error_message = kNoLeaves,
                         .count = 0},
                    Case{.name = "read",
                         .function = kConfig,
                         .tree = "config=own",
                         .kinds = kReads,
                         .calls = lines(trunk(kNativeType, "own", "-"), trunk(kNativeVlan, "own", "-"),
                                        trunk(kTagType, "own", "-"), trunk(kTrunkVlans, "own", "-")),
                         .failures = "...r"},
                    Case{.name = "delete_",
                         .function = kConfig,
                         .tree = "config @delete",
                         .calls = lines(trunk("", "-", "config")),
                         .failures = "r"},
                    Case{.name = "delete_not_visiting_leaves",
                         .function = kConfig,
                         .tree = "config @remove { native-vlan=5 }",
                         .calls = lines(trunk("", "-", "config")),
                         .failures = "r",
                         .count = 0},
                    Case{.name = "write",
                         .function = kConfig,
                         .tree = "config",
                         .calls = lines(strdup(kNoLeaves, "YFW_MAP")),
                         .result = CERR_INVALID_VALUE,
                         .errors = lines("ERR " + kNoLeaves),
                         .error_message = kNoLeaves}),
    case_name);

INSTANTIATE_TEST_SUITE_P(
    ReadOrDelete, SwitchedVlan,
    testing::Values(
        Case{.name = "read_native",
             .function = kConfig,
             .tree = "config=own { interface-mode native-vlan }",
             .kinds = kReads,
             .calls = lines(trunk(kNativeType, "-", "-"), trunk(kNativeVlan, "own", "-")),
             .failures = ".r"},
        Case{.name = "read_trunk",
             .function = kConfig,
             .tree = "config=own { trunk-vlans trunk-vlans }",
             .kinds = kReads,
             .calls = lines(trunk(kTagType, "own", "-"), trunk(kTrunkVlans, "own", "-")),
             .failures = ".r"},
        Case{.name = "read_both_native_first",
             .function = kConfig,
             .tree = "config { trunk-vlans native-vlan }",
             .kinds = kReads,
             .calls = lines(trunk(kNativeType, "-", "-"), trunk(kNativeVlan, "-", "-"), trunk(kTagType, "-", "-"),
                            trunk(kTrunkVlans, "-", "-")),
             .failures = "...r"},
        Case{.name = "read_neither",
             .function = kConfig,
             .tree = "config { interface-mode access-vlan unknown }",
             .kinds = kReads},
        Case{.name = "delete_native",
             .function = kConfig,
             .tree = "config=own @delete { native-vlan=5 }",
             .calls = lines(trunk(kNativeType, "-", "config"), trunk(kNativeVlan, "-", "config")),
             .failures = ".r"},
        Case{.name = "delete_trunk",
             .function = kConfig,
             .tree = "config @delete { trunk-vlans=1..2 }",
             .calls = lines(trunk(kTagType, "-", "config"), trunk(kTrunkVlans, "-", "config")),
             .failures = ".r",
             .then = [](Tree& tree) { EXPECT_STREQ(tree["trunk-vlans"].value, "1..2"); }},
        Case{.name = "delete_both",
             .function = kConfig,
             .tree = "config @remove { trunk-vlans=1 native-vlan=5 }",
             .calls = lines(trunk(kNativeType, "-", "config"), trunk(kNativeVlan, "-", "config"),
                            trunk(kTagType, "-", "config"), trunk(kTrunkVlans, "-", "config")),
             .failures = "...r"},
        Case{.name = "delete_neither", .function = kConfig, .tree = "config @delete { interface-mode=TRUNK }"},
        Case{.name = "read_child_without_tag",
             .function = kConfig,
             .tree = "config { native-vlan x @notag }",
             .kinds = kReads,
             .calls = lines("error_path"),
             .result = CERR_UNSUPPORTED,
             .errors = lines("ERR Tag name is not available!"),
             .ends = false},
        Case{.name = "delete_child_without_tag",
             .function = kConfig,
             .tree = "config @delete { native-vlan x @notag }",
             .calls = lines("error_path"),
             .result = CERR_UNSUPPORTED,
             .errors = lines("ERR Tag name is not available!"),
             .ends = false}),
    case_name);

Case trunk_case(const std::string& name, const std::string& leaves, const std::string& text) {
  return {.name = name,
          .function = kConfig,
          .tree = "config { " + leaves + " }",
          .calls = written_trunk(text),
          .failures = ".r"};
}

const std::string kNotTrunk = "Invalid configuration for native-vlan";
const std::string kItem = "sysdb_get connid=0 path=Ethernet0_1_2/vlan_trunk/vlan_switched flags=0";
const std::string kUnpack = "tuple_unpack format=%d%d%d%s";
const std::string kNoItem =
    "ERR In check_switched_mode_set_in_sysdb sysdb_item_get forpath Ethernet0_1_2/vlan_trunk/vlan_switched returned "
    "error " +
    std::to_string(static_cast<int>(kNotThere)) + " : the text of the code";

void port(Recorder& framework) {
  framework.sub_interface("Ethernet0/1/2", nullptr);
}

void trunk_port(Recorder& framework) {
  port(framework);
  framework.sysdb_item(1);
}

void access_port(Recorder& framework) {
  port(framework);
  framework.sysdb_item(0);
}

INSTANTIATE_TEST_SUITE_P(
    Write, SwitchedVlan,
    testing::Values(
        trunk_case("one_id", "trunk-vlans=10", "10"), trunk_case("one_range", "trunk-vlans=200..300", "200-300"),
        trunk_case("in_order", "trunk-vlans=100 trunk-vlans=200..300 trunk-vlans=400", "100,200-300,400"),
        trunk_case("overlaps_and_duplicates", "trunk-vlans=5 trunk-vlans=5 trunk-vlans=1..9", "5,5,1-9"),
        trunk_case("only_the_first_dots", "trunk-vlans=1..2..3", "1-2..3"),
        trunk_case("native_form", "trunk-vlans=20-30", "20-30"), trunk_case("one_dot", "trunk-vlans=10.20", "10.20"),
        trunk_case("three_dots", "trunk-vlans=1...5", "1-.5"),
        trunk_case("leading_blank", "trunk-vlans=' 20..30'", "' 20-30'"),
        trunk_case("nothing_below", "trunk-vlans=..30", "-30"), trunk_case("nothing_above", "trunk-vlans=30..", "30-"),
        trunk_case("entries_without_value", "trunk-vlans trunk-vlans=7 trunk-vlans", "7"),
        trunk_case("entries_without_text", "trunk-vlans='' trunk-vlans=7 trunk-vlans=''", ",7,"),
        trunk_case("beside_leaves_of_other_handlers", "interface-mode=TRUNK trunk-vlans=7 access-vlan=3", "7"),
        Case{.name = "leaves_of_other_handlers_alone",
             .function = kConfig,
             .tree = "config { interface-mode=ACCESS access-vlan=5 }"},
        Case{.name = "no_text_at_all", .function = kConfig, .tree = "config { trunk-vlans }"},
        Case{.name = "native_with_mode_in_the_request",
             .function = kConfig,
             .tree = "config { native-vlan=5 interface-mode=TRUNK }",
             .given = port,
             .calls = written_native("5"),
             .failures = ".s"},
        Case{.name = "native_on_a_trunk_port",
             .function = kConfig,
             .tree = "config { native-vlan=5 }",
             .given = trunk_port,
             .calls = lines(kItem, kUnpack) + written_native("5"),
             .failures = ".s"},
        Case{.name = "native_without_value",
             .function = kConfig,
             .tree = "config { interface-mode=TRUNK native-vlan }",
             .calls = written_native("-"),
             .failures = ".s"},
        Case{.name = "two_natives_on_a_trunk_port",
             .function = kConfig,
             .tree = "config { native-vlan=5 native-vlan=6 }",
             .given = trunk_port,
             .calls = lines(kItem, kUnpack) + written_native("5") + lines(kItem, kUnpack) + written_native("6"),
             .failures = ".s.s"},
        Case{.name = "native_and_access_mode_on_a_trunk_port",
             .function = kConfig,
             .tree = "config { interface-mode=ACCESS native-vlan=5 }",
             .given = trunk_port,
             .calls = lines(kItem, kUnpack) + written_native("5"),
             .failures = ".s"},
        Case{.name = "native_on_an_access_port",
             .function = kConfig,
             .tree = "config { native-vlan=5 }",
             .given = access_port,
             .calls = lines(kItem, kUnpack, strdup(kNotTrunk + ".", "YFW_MAP")),
             .result = CERR_INVALID_VALUE,
             .errors = lines("ERR " + kNotTrunk),
             .error_message = kNotTrunk + "."},
        Case{.name = "native_on_an_unknown_port",
             .function = kConfig,
             .tree = "config { interface-mode=ACCESS native-vlan=5 }",
             .given = port,
             .calls = lines(kItem, strdup(kNotTrunk + ".", "YFW_MAP")),
             .result = CERR_INVALID_VALUE,
             .errors = lines(kNoItem, "ERR " + kNotTrunk),
             .error_message = kNotTrunk + "."},
        Case{.name = "refused_native_drops_the_trunk",
             .function = kConfig,
             .tree = "config { trunk-vlans=1 native-vlan=5 }",
             .given = access_port,
             .calls = lines(kItem, kUnpack, strdup(kNotTrunk + ".", "YFW_MAP")),
             .result = CERR_INVALID_VALUE,
             .errors = lines("ERR " + kNotTrunk),
             .error_message = kNotTrunk + "."},
        Case{.name = "native_then_trunk",
             .function = kConfig,
             .tree = "config { interface-mode=TRUNK native-vlan=5 trunk-vlans=1..2 }",
             .calls = written_native("5") + written_trunk("1-2"),
             .failures = ".s.r"},
        Case{.name = "child_without_tag",
             .function = kConfig,
             .tree = "config { trunk-vlans=1 x @notag }",
             .calls = lines("error_path"),
             .result = CERR_UNSUPPORTED,
             .errors = lines("ERR Tag name is not available!"),
             .ends = false},
        Case{.name = "unknown_child",
             .function = kConfig,
             .tree = "config { trunk-vlans=1 vlan-id=2 }",
             .calls = lines(strdup("vlan-id", "YFW MAP"), "error_path"),
             .result = CERR_UNSUPPORTED,
             .errors = lines("ERR Invalid tag name vlan-id"),
             .error_tag = "vlan-id",
             .ends = false}),
    case_name);

// The request's own text is cut at its first ".." and reads its low end afterwards.
TEST(SwitchedVlanTrunk, is_cut_in_place) {
  Recorder framework;
  Tree tree("config { trunk-vlans=10 trunk-vlans=20..30 trunk-vlans=1..2..3 }");
  oc2_vex_switched_vlan_cfg_nativevlan_and_trunkvlans(framework.ctx(), tree.root(), 3, framework.output());
  EXPECT_STREQ(tree.child("trunk-vlans", 0).value, "10");
  EXPECT_STREQ(tree.child("trunk-vlans", 1).value, "20");
  EXPECT_STREQ(tree.child("trunk-vlans", 2).value, "1");
}

// What was gathered before the native VLAN failed is written, and its result stands for both.
TEST(SwitchedVlanTrunk, covers_a_failing_native_vlan_that_follows_it) {
  Recorder framework;
  framework.answer("add_path", 0xaaf20042, 2);
  Tree tree("config { interface-mode=TRUNK trunk-vlans=1 native-vlan=5 trunk-vlans=9 }");
  EXPECT_EQ(oc2_vex_switched_vlan_cfg_nativevlan_and_trunkvlans(framework.ctx(), tree.root(), 4, framework.output()),
            0u);
  EXPECT_EQ(framework.calls(), written_native("5") + written_trunk("1"));
}

std::string written_text(const std::vector<std::string>& entries) {
  std::string notation = "config {";
  for (const std::string& entry : entries) notation += " trunk-vlans=" + entry;
  Recorder framework;
  Tree tree(notation + " }");
  std::string text;
  EXPECT_EQ(oc2_vex_switched_vlan_cfg_nativevlan_and_trunkvlans(framework.ctx(), tree.root(),
                                                                tree.root()->subtree_count, framework.output()),
            0u);
  const std::string calls = framework.calls();
  const std::string mark = kTrunkVlans + " ns=cfg value=";
  const std::size_t start = calls.find(mark);
  if (start == std::string::npos) return "";
  return calls.substr(start + mark.size(), calls.find(' ', start + mark.size()) - start - mark.size());
}

// 199 characters fit. What does not fit whole is dropped whole, with all that follows, however short.
TEST(SwitchedVlanTrunk, is_bounded_without_ever_cutting_a_number) {
  std::vector<std::string> entries(39, "1000");
  const std::string base = written_text(entries);
  ASSERT_EQ(base.size(), 39 * 5 - 1u);
  const auto with = [&entries](std::initializer_list<std::string> more) {
    std::vector<std::string> all = entries;
    all.insert(all.end(), more);
    return written_text(all);
  };
  EXPECT_EQ(with({"2000"}), base + ",2000") << "199 characters";
  EXPECT_EQ(with({"2..9"}), base + ",2-9");
  EXPECT_EQ(with({"2..900"}), base) << "200 characters";
  EXPECT_EQ(with({"20..40"}), base) << "200 characters";
  EXPECT_EQ(with({"20..40", "7"}), base) << "nothing after a dropped entry";
  EXPECT_EQ(with({"2000", "7"}), base + ",2000");
  EXPECT_EQ(written_text({std::string(199, '1')}), std::string(199, '1'));
  EXPECT_EQ(written_text({std::string(200, '1')}), "");
  EXPECT_EQ(written_text({std::string(200, '1'), "7"}), "");
  EXPECT_EQ(written_text({std::string(150, '1') + ".." + std::string(150, '2')}), "");
}

TEST(SwitchedVlanTrunk, holds_as_many_of_all_ids_as_fit) {
  std::vector<std::string> entries;
  std::string expected;
  for (int id = 1; id <= 4094; ++id) {
    entries.push_back(std::to_string(id));
    const std::string more = expected.empty() ? entries.back() : expected + "," + entries.back();
    if (more.size() <= 199) expected = more;
  }
  EXPECT_TRUE(expected.ends_with(",69"));
  EXPECT_EQ(written_text(entries), expected);
}

// The error line comes before the older text is released, and "End" behind the new one.
TEST(SwitchedVlanErrors, of_a_refused_container_are_told_in_order) {
  const std::vector<std::pair<std::string, std::string>> refusals{{"config", kNoLeaves},
                                                                  {"config { native-vlan=5 }", kNotTrunk}};
  for (const auto& [notation, told] : refusals) {
    Recorder framework;
    framework.own(framework.state.error_message, "older-message");
    framework.trace_buffer(false);
    Tree tree(notation);
    EXPECT_EQ(kConfig(framework.ctx(), tree.root(), tree.root()->subtree_count, framework.output()),
              CERR_INVALID_VALUE);
    expect_in_order(framework.all_calls(), {"," + told, "free text=older-message", "strdup text='" + told, ",End"});
  }
}

const Function kAccess = FUNCTION(oc2_vex_switched_vlan_cfg_accessvlan);
const Function kStub = FUNCTION(switched_vlan_cfg_stub_function);

INSTANTIATE_TEST_SUITE_P(
    Leaves, SwitchedVlan,
    testing::Values(
        Case{.name = "access_read",
             .function = kAccess,
             .tree = "access-vlan=7",
             .kinds = kReads,
             .calls = lines(trunk("vlan-switched/access-vlan", "7", "-")),
             .failures = "r"},
        Case{.name = "access_write",
             .function = kAccess,
             .tree = "access-vlan=7",
             .calls = lines(trunk("vlan-switched/access-vlan", "7", "access-vlan")),
             .failures = "r"},
        Case{.name = "access_delete",
             .function = kAccess,
             .tree = "access-vlan=7 @remove",
             .calls = lines(trunk("vlan-switched/access-vlan", "-", "access-vlan")),
             .failures = "r"},
        Case{.name = "stub", .function = kStub, .tree = "native-vlan=7", .kinds = {kRead, kReadState, kEdit}},
        Case{.name = "stub_delete", .function = kStub, .tree = "native-vlan=7 @delete"}),
    case_name);

TEST(SwitchedVlanState, points_at_the_trunk) {
  const std::vector<std::pair<Function, std::string>> table{
      {FUNCTION(oc2_vex_switched_vlan_state_leaves), "/vlan/nodes/node/trunks/trunk/vlan-switched"},
      {FUNCTION(oc2_vex_switched_vlan_state_native_vlan),
       "/vlan/nodes/node/trunks/trunk/layer3-sub-interfaces/native-vlan"}};
  for (const auto& [function, path] : table) {
    check({.name = "",
           .function = function,
           .tree = "leaf=7",
           .kinds = kReads,
           .calls = lines(add(path, "oper", "7", "-", 0, 1)),
           .failures = "r"});
    for (const char* const tree : {"leaf=7", "leaf @delete", "leaf=7 @create"}) {
      check({.name = "", .function = function, .tree = tree});
    }
  }
}

}  // namespace
}  // namespace translations
