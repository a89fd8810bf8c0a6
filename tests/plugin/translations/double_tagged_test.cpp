// Double-tagged matches on their way to native configuration.
#include "plugin/translations/match_lines.h"

namespace translations {
namespace {

class DoubleTagged : public testing::TestWithParam<Case> {};

TEST_P(DoubleTagged, translates) {
  check(GetParam());
}

const Function kOuterId = FUNCTION(oc2_vex_doubletag_cfg_outervlanid);
const Function kInnerId = FUNCTION(oc2_vex_doubletag_innervlanid);

INSTANTIATE_TEST_SUITE_P(
    Id, DoubleTagged,
    testing::Values(Case{.name = "outer_read_l2",
                         .function = kOuterId,
                         .tree = "outer-vlan-id=7",
                         .kinds = kReads,
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("outer-range1-low", "7", "-"),
                                        encapsulation("outer-tag-type", "7", "-")),
                         .failures = ".r"},
                    Case{
                        .name = "outer_read_l3",
                        .function = kOuterId,
                        .tree = "outer-vlan-id=7",
                        .kinds = kReads,
                        .given = l3,
                        .calls = lines(kClassify, identifier("first-tag", "7", "-"), identifier("vlan-type", "7", "-")),
                        .failures = ".r"},
                    Case{.name = "outer_write_l2",
                         .function = kOuterId,
                         .tree = "outer-vlan-id=7",
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("outer-range1-low", "7", "outer-vlan-id"),
                                        encapsulation("outer-tag-type", "match-dot1ad", "outer-vlan-id")),
                         .failures = ".r"},
                    Case{.name = "outer_write_l3",
                         .function = kOuterId,
                         .tree = "outer-vlan-id=7",
                         .given = l3,
                         .calls = lines(kClassify, identifier("first-tag", "7", "outer-vlan-id"),
                                        identifier("vlan-type", "vlan-type-dot1ad", "outer-vlan-id")),
                         .failures = ".r"},
                    Case{.name = "outer_delete_l2",
                         .function = kOuterId,
                         .tree = "outer-vlan-id=7 @delete",
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("", "-", "outer-vlan-id")),
                         .failures = "r"},
                    Case{.name = "outer_delete_l3",
                         .function = kOuterId,
                         .tree = "outer-vlan-id=7 @delete",
                         .given = l3,
                         .calls = lines(kClassify, identifier("", "-", "outer-vlan-id")),
                         .failures = "r"},
                    Case{.name = "outer_failed_classification",
                         .function = kOuterId,
                         .tree = "outer-vlan-id=7",
                         .kinds = {kRead, kEdit, kReadState},
                         .given = failing_flags,
                         .calls = lines(kClassify),
                         .result = 0xaaf20123},
                    Case{.name = "outer_failed_copy_of_the_name",
                         .function = kOuterId,
                         .tree = "outer-vlan-id=7",
                         .kinds = {kRead, kEdit, kReadState},
                         .given = failing_copy,
                         .calls = lines(kCopy),
                         .result = 34},
                    Case{.name = "outer_flags_without_an_item_count_as_l3",
                         .function = kOuterId,
                         .tree = "outer-vlan-id=7",
                         .given = failing_flags_status,
                         .calls = lines(kClassify, identifier("first-tag", "7", "outer-vlan-id"),
                                        identifier("vlan-type", "vlan-type-dot1ad", "outer-vlan-id")),
                         .failures = ".r"},
                    Case{.name = "inner_read_l2",
                         .function = kInnerId,
                         .tree = "inner-vlan-id=8",
                         .kinds = kReads,
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("inner-range1-low", "8", "-"),
                                        encapsulation("inner-tag-type", "8", "-")),
                         .failures = ".r"},
                    Case{.name = "inner_read_l3",
                         .function = kInnerId,
                         .tree = "inner-vlan-id=8",
                         .kinds = kReads,
                         .given = l3,
                         .calls = lines(kClassify, identifier("second-tag", "8", "-")),
                         .failures = "r"},
                    Case{.name = "inner_write_l2",
                         .function = kInnerId,
                         .tree = "inner-vlan-id=8",
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("inner-range1-low", "8", "inner-vlan-id"),
                                        encapsulation("inner-tag-type", "match-dot1q", "inner-vlan-id")),
                         .failures = ".r"},
                    Case{.name = "inner_write_l3",
                         .function = kInnerId,
                         .tree = "inner-vlan-id=8",
                         .given = unknown,
                         .calls = lines(kFind, identifier("second-tag", "8", "inner-vlan-id")),
                         .failures = "r"},
                    Case{.name = "inner_delete_l2",
                         .function = kInnerId,
                         .tree = "inner-vlan-id=8 @remove",
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("", "-", "inner-vlan-id")),
                         .failures = "r"},
                    Case{.name = "inner_delete_l3",
                         .function = kInnerId,
                         .tree = "inner-vlan-id=8 @delete",
                         .given = l3,
                         .calls = lines(kClassify, identifier("", "-", "inner-vlan-id")),
                         .failures = "r"},
                    Case{.name = "inner_failed_copy_of_the_name",
                         .function = kInnerId,
                         .tree = "inner-vlan-id=8",
                         .kinds = {kRead, kEdit, kReadState},
                         .given = failing_copy,
                         .calls = lines(kCopy),
                         .result = 34},
                    Case{.name = "inner_flags_without_an_item_count_as_l3",
                         .function = kInnerId,
                         .tree = "inner-vlan-id=8",
                         .given = failing_flags_status,
                         .calls = lines(kClassify, identifier("second-tag", "8", "inner-vlan-id")),
                         .failures = "r"},
                    Case{.name = "inner_failed_classification",
                         .function = kInnerId,
                         .tree = "inner-vlan-id=8",
                         .kinds = {kRead, kEdit, kReadState},
                         .given = failing_flags,
                         .calls = lines(kClassify),
                         .result = 0xaaf20123}),
    case_name);

TEST(DoubleTaggedTrace, tells_how_the_sub_interface_was_classified) {
  expect_classification_told(kOuterId);
  expect_classification_told(kInnerId);
}

// A leaf with its tag type, which deletes the container, or only its own leaves beside a list.
struct Pair {
  Function function;
  std::string side;  // "outer" or "inner"
  bool alone = false;
};

class DoubleTaggedPair : public testing::TestWithParam<Pair> {
 protected:
  std::string low() const { return GetParam().side + "-range1-low"; }
  std::string tag_type() const { return GetParam().side + "-tag-type"; }
};

TEST_P(DoubleTaggedPair, reads) {
  check({.name = "",
         .function = GetParam().function,
         .tree = "id=55",
         .kinds = kReads,
         .calls = lines(encapsulation(low(), "55", "-"), encapsulation(tag_type(), "55", "-")),
         .failures = ".r"});
}

TEST_P(DoubleTaggedPair, writes) {
  const std::string type = GetParam().side == "outer" ? "match-dot1ad" : "match-dot1q";
  check({.name = "",
         .function = GetParam().function,
         .tree = "id=55",
         .calls = lines(encapsulation(low(), "55", "id"), encapsulation(tag_type(), type, "id")),
         .failures = ".r"});
}

TEST_P(DoubleTaggedPair, deletes) {
  for (const char* const tree : {"id=55 @delete", "id @remove"}) {
    const bool alone = GetParam().alone;
    check({.name = "",
           .function = GetParam().function,
           .tree = tree,
           .calls = alone ? lines(encapsulation(low(), "-", "id"), encapsulation(tag_type(), "-", "id"))
                          : lines(encapsulation("", "-", "id")),
           .failures = alone ? ".r" : "r"});
  }
}

INSTANTIATE_TEST_SUITE_P(Pairs, DoubleTaggedPair,
                         testing::Values(Pair{FUNCTION(oc2_vex_doubletag_innerrange_cfg_outervlanid), "outer"},
                                         Pair{FUNCTION(oc2_vex_doubletag_innerrange_cfg_innerlowvlanid), "inner"},
                                         Pair{FUNCTION(oc2_vex_doubletag_outerrange_cfg_innervlanid), "inner"},
                                         Pair{FUNCTION(oc2_vex_doubletag_outerrange_cfg_outerlowvlanid), "outer"},
                                         Pair{FUNCTION(oc2_vex_doubletag_innerlist_cfg_outervlanid), "outer"},
                                         Pair{FUNCTION(oc2_vex_doubletag_outerlist_cfg_innervlanid), "inner", true}),
                         [](const testing::TestParamInfo<Pair>& info) { return info.param.function.name(); });

struct High {
  Function function;
  std::string leaf;
};

class DoubleTaggedHigh : public testing::TestWithParam<High> {};

TEST_P(DoubleTaggedHigh, reads_writes_and_deletes_one_leaf) {
  const auto& [function, leaf] = GetParam();
  check({.name = "",
         .function = function,
         .tree = "id=9",
         .kinds = kReads,
         .calls = lines(encapsulation(leaf, "9", "-")),
         .failures = "r"});
  check({.name = "",
         .function = function,
         .tree = "id=9",
         .calls = lines(encapsulation(leaf, "9", "id")),
         .failures = "r"});
  check({.name = "",
         .function = function,
         .tree = "id=9 @delete",
         .calls = lines(encapsulation(leaf, "-", "id")),
         .failures = "r"});
}

INSTANTIATE_TEST_SUITE_P(
    Highs, DoubleTaggedHigh,
    testing::Values(High{FUNCTION(oc2_vex_doubletag_innerrange_cfg_innerhighvlanid), "inner-range1-high"},
                    High{FUNCTION(oc2_vex_doubletag_outerrange_cfg_outerhighvlanid), "outer-range1-high"}),
    [](const testing::TestParamInfo<High>& info) { return info.param.function.name(); });

// Both list containers are one shape: what differs is said once per list.
struct List {
  Function function;
  std::string member;
  std::string companion;
  std::string low;
  std::string tag_type;
  std::string end;  // calls after the members
  std::string end_fates;
  std::string side;  // as the messages name it
};

class DoubleTaggedList : public testing::TestWithParam<List> {
 protected:
  Case edit(std::string tree, std::string calls, std::string failures) const {
    return {.name = "",
            .function = GetParam().function,
            .tree = std::move(tree),
            .calls = std::move(calls),
            .failures = std::move(failures)};
  }
  std::string too_many() const { return "Number of " + GetParam().side + " VLAN IDs provided more than max(9)."; }
};

TEST_P(DoubleTaggedList, writes_members_and_leaves_the_other_tag_to_its_handler) {
  const List& list = GetParam();
  const std::string companion = list.companion + "=500";
  check(edit(list_tree(list.member, 1, companion), list_adds(list.low, 1, "config") + list.end, "s" + list.end_fates));
  check(edit("config { " + companion + " " + list.member + "=1 " + companion + " " + list.member + "=2 }",
             list_adds(list.low, 2, "config") + list.end, "ss" + list.end_fates));
  check(edit("config { " + companion + " }", list.end, list.end_fates));
}

TEST_P(DoubleTaggedList, takes_nine_members_and_the_other_tag) {
  const List& list = GetParam();
  check(edit(list_tree(list.member, 9, list.companion + "=500"), list_adds(list.low, 9, "config") + list.end,
             std::string(9, 's') + list.end_fates));
}

TEST_P(DoubleTaggedList, refuses_eleven_children) {
  const List& list = GetParam();
  for (const std::string& tree :
       {list_tree(list.member, 10, list.companion + "=500"), list_tree(list.member, 11), list_tree("x", 11)}) {
    Case refused = edit(tree, lines(strdup(too_many(), "YFW_MAP"), "error_path"), "");
    refused.result = CERR_INVALID_VALUE;
    refused.errors = lines("ERR Number of " + list.side + " VLAN IDs provided more than max.");
    refused.error_message = too_many();
    check(refused);
  }
}

// Ten members without the other tag pass the limit: the tenth has no leaf, and the framework refuses its null path.
TEST_P(DoubleTaggedList, offers_a_tenth_member_without_a_path) {
  const List& list = GetParam();
  Recorder framework;
  framework.answer("add_path", 0xaaf20042, 10);
  Tree tree(list_tree(list.member, 10));
  EXPECT_EQ(list.function(framework.ctx(), tree.root(), 10, framework.output()), 0xaaf20042);
  EXPECT_EQ(framework.calls(), list_adds(list.low, 9, "config") + lines(add("-", "cfg", "10", "config", 0, 1)));
  EXPECT_EQ(framework.trace(),
            lines("TRC " + list.function.name() + ": Start", "TRC " + list.function.name() + ": End"));
}

TEST_P(DoubleTaggedList, refuses_an_empty_list) {
  for (const auto& [tree, count] : {std::pair{"config", 0u}, std::pair{"config { x }", 0u}}) {
    Case refused = edit(tree, kRefusedEmptyList, "");
    refused.result = CERR_INVALID_VALUE;
    refused.errors = lines("ERR Edit request with 0 VLAN IDs in request.");
    refused.error_message = "Edit request without VLAN IDs.";
    refused.count = count;
    check(refused);
  }
}

TEST_P(DoubleTaggedList, refuses_a_child_without_tag) {
  const List& list = GetParam();
  Case refused =
      edit("config { " + list.member + "=1 x @notag }", list_adds(list.low, 1, "config") + lines("error_path"), "s");
  refused.result = CERR_UNSUPPORTED;
  refused.errors = lines("ERR Tag name is not available!");
  refused.ends = false;
  check(refused);
}

TEST_P(DoubleTaggedList, refuses_a_child_with_another_tag) {
  const List& list = GetParam();
  Case refused =
      edit("config { " + list.companion + "=1 vlan-ids=2 }", lines(strdup("vlan-ids", "YFW MAP"), "error_path"), "");
  refused.result = CERR_UNSUPPORTED;
  refused.errors = lines("ERR Invalid tag name vlan-ids");
  refused.error_tag = "vlan-ids";
  refused.ends = false;
  check(refused);
}

TEST_P(DoubleTaggedList, reads_all_leaves) {
  const List& list = GetParam();
  for (const auto& [tree, value] :
       {std::pair<std::string, std::string>{"config", "-"}, {list_tree(list.member, 11, "", "config=own"), "own"}}) {
    Case read = edit(tree, list_fetch(list.low, list.tag_type, value), "sssssssssr");
    read.kinds = kReads;
    check(read);
  }
}

TEST_P(DoubleTaggedList, tells_that_it_has_no_children) {
  expect_empty_list_told(GetParam().function);
}

TEST_P(DoubleTaggedList, deletes_the_container) {
  for (const char* const tree : {"config @delete", "config @remove { x }"}) {
    check(edit(tree, lines(encapsulation("", "-", "config")), "r"));
  }
}

INSTANTIATE_TEST_SUITE_P(Lists, DoubleTaggedList,
                         testing::Values(List{FUNCTION(oc2_vex_doubletag_innerlist_cfg), "inner-vlan-ids",
                                              "outer-vlan-id", "inner-range1-low", "inner-tag-type",
                                              lines(encapsulation("inner-tag-type", "match-dot1q", "config")), "r",
                                              "Inner"},
                                         List{FUNCTION(oc2_vex_doubletag_outerlist_cfg), "outer-vlan-ids",
                                              "inner-vlan-id", "outer-range1-low", "outer-tag-type",
                                              lines(encapsulation("outer-tag-type", "match-dot1ad", "config"),
                                                    encapsulation("outer-range1-high", "4097", "config")),
                                              "sr", "Outer"}),
                         [](const testing::TestParamInfo<List>& info) { return info.param.function.name(); });

TEST(DoubleTaggedStub, writes_nothing) {
  for (const Function& stub :
       {FUNCTION(doubletag_innerlist_cfg_innervlanids_stub), FUNCTION(doubletag_outerlist_cfg_outervlanids_stub)}) {
    check({.name = "", .function = stub, .tree = "ids=1", .kinds = {kRead, kReadState, kEdit}});
    check({.name = "", .function = stub, .tree = "ids=1 @delete"});
  }
}

TEST(DoubleTaggedTables, differ_from_the_outer_list_in_their_first_leaf_alone) {
  EXPECT_STREQ(vlan_id_inner_list_native_path[0],
               "interface-configurations/interface-configuration/ethernet-service/encapsulation/inner-range1-low");
  for (int i = 1; i < 10; ++i) EXPECT_STREQ(vlan_id_inner_list_native_path[i], vlan_id_outer_list_native_path[i]);
}

}  // namespace
}  // namespace translations
