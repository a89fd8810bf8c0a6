// What a walk rewrites on its way and puts back: two-pass replaces, and reads that turn into walks of a whole
// container.
#include <gtest/gtest.h>

#include "plugin/walk.h"

namespace {

using seen::who_traced;
using walks::kEdit;
using walks::kFailure;
using walks::kRead;
using walks::kReadState;
using walks::lines;
using walks::sub_interface;
using walks::Walk;

constexpr char kReplaced[] =
    "vlan { match { single-tagged @replace { config { vlan-id=100 } state=x } } ingress-mapping { } }";

// Lets the replaced container be read without its leaf's translation and its misplaced sibling.
void without_leaves(Walk& walk) {
  walk.recorder.answer("leaf_lvlb_vlan_config_vlanid", 0);
  walk.tree["match/single-tagged"].subtree_count = 1;
}

// Nothing that the passes changed is left behind, but for the mark that the operation was rewritten.
void expect_put_back(Walk& walk, const std::string& path, const yfw_datatree* children, uint32_t count = 1) {
  const yfw_datatree& node = walk.tree[path];
  EXPECT_EQ(node.operation, 1u);
  EXPECT_EQ(node.node_flags, 0x50);
  EXPECT_EQ(node.subtrees, children);
  EXPECT_EQ(node.subtree_count, count);
  EXPECT_EQ(walk.state().pass_flags, 0u);
  EXPECT_EQ(walk.state().replace_restore, 0u);
  EXPECT_EQ(walk.state().implicit_walk, 0u);
}

TEST(Replace, removes_in_a_first_pass_and_writes_in_a_second) {
  const yfw_datatree* children = nullptr;
  Walk walk = sub_interface(kEdit, kReplaced, [&children](Walk& w) {
    without_leaves(w);
    children = w.tree["match/single-tagged"].subtrees;
  });
  EXPECT_EQ(walk.code, 0u);
  const std::string first = " op=4 pass=0x40 restore=1";
  const std::string implicit = first + " implicit=1";
  const std::string second = " pass=0x80 restore=1";
  EXPECT_EQ(walk.seen(),
            lines("add_to_node_hierarchy node=vlan level=1", "cont_lvla_vlan node=vlan count=2",
                  "add_to_node_hierarchy node=match level=1", "cont_lvla_vlan_match node=match count=1",
                  "add_to_node_hierarchy node=single-tagged level=1",
                  "cont_lvla_vlan_match_singletagged node=single-tagged count=0" + first,
                  "cont_lvla_vlan_singletagged_config node=single-tagged count=0" + implicit,
                  "leaf_lvlb_vlan_config_vlanid node=single-tagged" + implicit,
                  "lvla_vlan_singletagged_config_parse_augments node=single-tagged" + implicit,
                  "lvla_vlan_match_singletagged_parse_augments node=single-tagged" + implicit,
                  "cont_lvla_vlan_match_singletagged node=single-tagged count=1" + second,
                  "add_to_node_hierarchy node=config level=1",
                  "cont_lvla_vlan_singletagged_config node=config count=1" + second,
                  "leaf_lvlb_vlan_config_vlanid node=vlan-id" + second, "remove_from_node_hierarchy node=config",
                  "remove_from_node_hierarchy node=single-tagged", "remove_from_node_hierarchy node=match",
                  "add_to_node_hierarchy node=ingress-mapping level=1",
                  "cont_lvla_vlan_ingressmapping node=ingress-mapping count=0",
                  "remove_from_node_hierarchy node=ingress-mapping", "remove_from_node_hierarchy node=vlan"));
  expect_put_back(walk, "match/single-tagged", children);
}

TEST(Replace, of_a_childless_container_runs_both_passes) {
  const Walk walk = sub_interface(kEdit, "vlan { match @replace }", [](Walk& w) {
    w.recorder.answer("cont_lvla_vlan_match_singletagged", CERR_SKIP_SUBTREE);
  });
  EXPECT_NE(walk.handlers().find("cont_lvla_vlan_match node=match count=0 op=4 pass=0x40 restore=1\n"),
            std::string::npos);
  EXPECT_NE(walk.handlers().find("cont_lvla_vlan_match node=match count=0 pass=0x80 restore=1\n"), std::string::npos)
      << walk.handlers();
}

TEST(Replace, ends_with_a_failing_first_pass) {
  const yfw_datatree* children = nullptr;
  Walk walk = sub_interface(kEdit, kReplaced, [&children](Walk& w) {
    without_leaves(w);
    children = w.tree["match/single-tagged"].subtrees;
    w.recorder.answer("cont_lvla_vlan_match_singletagged", kFailure, 1);
  });
  EXPECT_EQ(walk.code, kFailure);
  EXPECT_EQ(walk.handlers().find("pass=0x80"), std::string::npos) << walk.handlers();
  EXPECT_EQ(who_traced(walk.recorder, "End").find("lvla_vlan_match_singletagged") != std::string::npos, true);
  EXPECT_NE(walk.seen().find("remove_from_node_hierarchy node=single-tagged"), std::string::npos);
  expect_put_back(walk, "match/single-tagged", children);
}

TEST(Replace, puts_everything_back_after_a_failing_second_pass) {
  const yfw_datatree* children = nullptr;
  Walk walk = sub_interface(kEdit, kReplaced, [&children](Walk& w) {
    without_leaves(w);
    children = w.tree["match/single-tagged"].subtrees;
    w.recorder.answer("leaf_lvlb_vlan_config_vlanid", kFailure, 2);
  });
  EXPECT_EQ(walk.code, kFailure);
  expect_put_back(walk, "match/single-tagged", children);
}

struct DoneCase {
  const char* name;
  int nth;  // call of the handler that says that the node is done, 0 for each
  bool writes;
  bool traces_end;
};

std::ostream& operator<<(std::ostream& out, const DoneCase& c) {
  return out << c.name;
}

class ReplaceDone : public testing::TestWithParam<DoneCase> {};

TEST_P(ReplaceDone, goes_on_to_the_second_pass_and_puts_everything_back) {
  const DoneCase& c = GetParam();
  const yfw_datatree* children = nullptr;
  Walk walk = sub_interface(kEdit, kReplaced, [&](Walk& w) {
    without_leaves(w);
    children = w.tree["match/single-tagged"].subtrees;
    w.recorder.answer("cont_lvla_vlan_match_singletagged", CERR_SKIP_SUBTREE, c.nth);
  });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_NE(walk.handlers().find("cont_lvla_vlan_match_singletagged node=single-tagged count=1 pass=0x80 restore=1"),
            std::string::npos)
      << walk.handlers();
  EXPECT_EQ(walk.handlers().find("leaf_lvlb_vlan_config_vlanid node=vlan-id pass=0x80") != std::string::npos, c.writes);
  EXPECT_EQ(who_traced(walk.recorder, "End").find("lvla_vlan_match_singletagged\n") != std::string::npos, c.traces_end);
  EXPECT_NE(walk.seen().find("remove_from_node_hierarchy node=single-tagged"), std::string::npos);
  EXPECT_NE(walk.handlers().find("cont_lvla_vlan_ingressmapping"), std::string::npos) << "siblings go on";
  expect_put_back(walk, "match/single-tagged", children);
}

INSTANTIATE_TEST_SUITE_P(Walker, ReplaceDone,
                         testing::Values(DoneCase{"in_the_first_pass", 1, true, true},
                                         DoneCase{"in_the_second_pass", 2, false, false},
                                         DoneCase{"in_both_passes", 0, false, false}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Replace, declared_done_below_the_first_pass_ends_that_node_with_success) {
  const Walk walk = sub_interface(kEdit, kReplaced, [](Walk& w) {
    without_leaves(w);
    w.recorder.answer("cont_lvla_vlan_singletagged_config", CERR_SKIP_SUBTREE, 1);
  });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.handlers().find("leaf_lvlb_vlan_config_vlanid node=single-tagged"), std::string::npos);
  EXPECT_NE(walk.handlers().find("leaf_lvlb_vlan_config_vlanid node=vlan-id"), std::string::npos);
}

TEST(Replace, below_a_replace_leaves_the_outer_one_as_it_was) {
  Walk walk = sub_interface(
      kEdit, "vlan { match @replace { single-tagged @replace { config { vlan-id=1 } } double-tagged { } } }",
      [](Walk& w) { w.recorder.answer("leaf_lvlb_vlan_config_vlanid", 0); });
  EXPECT_EQ(walk.code, 0u);
  const std::string calls = walk.handlers();
  EXPECT_EQ(calls.substr(calls.find("cont_lvla_vlan_match node=match count=2")),
            lines("cont_lvla_vlan_match node=match count=2 pass=0x80 restore=1",
                  "cont_lvla_vlan_match_singletagged node=single-tagged count=0 op=4 pass=0xc0 restore=1",
                  "cont_lvla_vlan_singletagged_config node=single-tagged count=0 op=4 pass=0xc0 restore=1 implicit=1",
                  "leaf_lvlb_vlan_config_vlanid node=single-tagged op=4 pass=0xc0 restore=1 implicit=1",
                  "lvla_vlan_singletagged_config_parse_augments node=single-tagged op=4 pass=0xc0 restore=1 implicit=1",
                  "lvla_vlan_match_singletagged_parse_augments node=single-tagged op=4 pass=0xc0 restore=1 implicit=1",
                  "cont_lvla_vlan_match_singletagged node=single-tagged count=1 pass=0x80 restore=1",
                  "cont_lvla_vlan_singletagged_config node=config count=1 pass=0x80 restore=1",
                  "leaf_lvlb_vlan_config_vlanid node=vlan-id pass=0x80 restore=1",
                  "cont_lvla_vlan_match_doubletagged node=double-tagged count=0 pass=0x80 restore=1"));
  EXPECT_EQ(walk.tree["match"].operation, 1u);
  EXPECT_EQ(walk.tree["match/single-tagged"].operation, 1u);
  EXPECT_EQ(walk.state().pass_flags, 0u);
  EXPECT_EQ(walk.state().replace_restore, 0u);
}

struct NestedCase {
  const char* name;
  int nth;  // call of the inner handler; the first is that of the outer first pass
  cerrno answer;
  cerrno code;
  bool writes;       // whether the inner leaf is reached
  const char* last;  // call of a handler
};

std::ostream& operator<<(std::ostream& out, const NestedCase& c) {
  return out << c.name;
}

class NestedReplace : public testing::TestWithParam<NestedCase> {};

TEST_P(NestedReplace, puts_back_both_whatever_the_inner_one_came_to) {
  const NestedCase& c = GetParam();
  const yfw_datatree* outer = nullptr;
  const yfw_datatree* inner = nullptr;
  Walk walk = sub_interface(
      kEdit, "vlan { match @replace { single-tagged @replace { config { vlan-id=1 } } double-tagged { } } }",
      [&](Walk& w) {
        outer = w.tree["match"].subtrees;
        inner = w.tree["match/single-tagged"].subtrees;
        w.recorder.answer("cont_lvla_vlan_match_singletagged", c.answer, c.nth);
        w.recorder.answer("leaf_lvlb_vlan_config_vlanid", 0);
      });
  EXPECT_EQ(walk.code, c.code);
  EXPECT_TRUE(walk.handlers().ends_with(lines(c.last))) << walk.handlers();
  EXPECT_EQ(walk.handlers().find("leaf_lvlb_vlan_config_vlanid node=vlan-id") != std::string::npos, c.writes);
  expect_put_back(walk, "match", outer, 2);
  expect_put_back(walk, "match/single-tagged", inner);
}

constexpr char kNext[] = "cont_lvla_vlan_match_doubletagged node=double-tagged count=0 pass=0x80 restore=1";

INSTANTIATE_TEST_SUITE_P(
    Walker, NestedReplace,
    testing::Values(
        NestedCase{
            "first_pass_fails", 2, kFailure, kFailure, false,
            "lvla_vlan_match_singletagged_parse_augments node=single-tagged op=4 pass=0xc0 restore=1 implicit=1"},
        NestedCase{"second_pass_fails", 3, kFailure, kFailure, false,
                   "cont_lvla_vlan_match_singletagged node=single-tagged count=1 pass=0x80 restore=1"},
        NestedCase{"done_in_the_first_pass", 2, CERR_SKIP_SUBTREE, 0, true, kNext},
        NestedCase{"done_in_the_second_pass", 3, CERR_SKIP_SUBTREE, 0, false, kNext}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Replace, marks_stay_apart_from_other_flags_of_the_request) {
  Walk walk = sub_interface(kEdit, kReplaced, [](Walk& w) {
    without_leaves(w);
    w.recorder.state.pass_flags = 0x100;
  });
  EXPECT_EQ(walk.state().pass_flags, 0x100u);
  EXPECT_NE(walk.handlers().find("op=4 pass=0x140"), std::string::npos) << walk.handlers();
}

TEST(Replace, stays_rewritten_where_a_handler_took_the_restoring_over) {
  const seen::During take_over("cont_lvla_vlan_match_doubletagged",
                               [](yfw_map_ctx* ctx) { ctx->req_state->replace_restore = 0; });
  Walk walk = sub_interface(kEdit, "vlan { match { double-tagged @replace { } } }");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.tree["match/double-tagged"].operation, 0u);
  EXPECT_EQ(walk.state().replace_restore, 0u);
  EXPECT_EQ(walk.state().pass_flags, 0u);
}

// --- Reads ---

struct ReadCase {
  const char* name;
  const char* leaves;
  uint32_t walk_locked;
  bool walks_the_whole;
  uint32_t marks[2];
};

std::ostream& operator<<(std::ostream& out, const ReadCase& c) {
  return out << c.leaves;
}

class ReadOfLeaves : public testing::TestWithParam<ReadCase> {};

// low-vlan-id and high-vlan-id of a range stand for any two leaves.
TEST_P(ReadOfLeaves, turns_into_a_walk_of_the_whole_container_for_selecting_leaves_alone) {
  const ReadCase& c = GetParam();
  Walk walk = sub_interface(
      kRead, std::string("vlan { match { single-tagged-range { config { ") + c.leaves + " } } } }", [&c](Walk& w) {
        w.recorder.state.walk_locked = c.walk_locked;
        w.recorder.answer("leaf_lvla_vlan_config_lowvlanid", 0);
        w.recorder.answer("leaf_lvla_vlan_config_highvlanid", 0);
      });
  EXPECT_EQ(walk.code, 0u);
  const std::string whole = lines("leaf_lvla_vlan_config_lowvlanid node=config implicit=1",
                                  "leaf_lvla_vlan_config_highvlanid node=config implicit=1",
                                  "lvla_vlan_singletaggedrange_config_parse_augments node=config implicit=1");
  EXPECT_EQ(walk.handlers().find(whole) != std::string::npos, c.walks_the_whole) << walk.handlers();
  EXPECT_EQ(walk.handlers().find("implicit=1") != std::string::npos, c.walks_the_whole) << walk.handlers();
  const yfw_datatree& config = walk.tree["match/single-tagged-range/config"];
  for (uint32_t i = 0; i < config.subtree_count; ++i) EXPECT_EQ(config.subtrees[i].walk_mark, c.marks[i]) << i;
  EXPECT_NE(walk.state().walk_bits & 0x6u, 0x4u) << "nothing is asked of the containers above";
  EXPECT_EQ(walk.state().walk_bits & 0x1u, 0u);
}

INSTANTIATE_TEST_SUITE_P(
    Walker, ReadOfLeaves,
    testing::Values(ReadCase{"one_selecting", "low-vlan-id=1 @select", 0, true, {6, 0}},
                    ReadCase{"two_selecting", "low-vlan-id=1 @select high-vlan-id=2 @select", 0, true, {6, 6}},
                    ReadCase{"ordinary", "low-vlan-id", 0, false, {1, 0}},
                    ReadCase{"selecting_and_ordinary", "low-vlan-id=1 @select high-vlan-id", 0, false, {6, 1}},
                    ReadCase{"ordinary_and_selecting", "low-vlan-id high-vlan-id=1 @select", 0, false, {1, 6}},
                    ReadCase{"locked", "low-vlan-id=1 @select", 1, false, {0, 0}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Read, remembers_that_an_ordinary_leaf_was_read) {
  const Walk walk = sub_interface(kRead, "vlan { match { single-tagged { config { vlan-id } } } }");
  EXPECT_EQ(walk.state().walk_bits, 0x2u);
}

TEST(Read, remembers_that_a_selecting_leaf_was_read) {
  const Walk walk = sub_interface(kReadState, "vlan { match { single-tagged { config { vlan-id=1 @select } } } }");
  EXPECT_EQ(walk.state().walk_bits, 0x10000u);
}

TEST(Read, marks_nothing_of_an_edit) {
  const Walk walk = sub_interface(kEdit, "vlan { match { single-tagged { config { vlan-id=1 @select } } } }");
  EXPECT_EQ(walk.state().walk_bits, 0u);
}

struct FailingLeaf {
  uint32_t kind;
  const char* leaf;
  uint32_t mark;
  uint32_t walk_bits;
};

TEST(Read, remembers_a_leaf_also_where_its_handler_fails) {
  for (const FailingLeaf& c : {FailingLeaf{kRead, "vlan-id", 1, 0x2}, FailingLeaf{kEdit, "vlan-id=1", 1, 0},
                               FailingLeaf{kRead, "vlan-id=1 @select", 6, 0x10000}}) {
    Walk walk = sub_interface(c.kind, std::string("vlan { match { single-tagged { config { ") + c.leaf + " } } } }",
                              [](Walk& w) { w.recorder.answer("leaf_lvlb_vlan_config_vlanid", kFailure); });
    EXPECT_EQ(walk.code, kFailure);
    EXPECT_EQ(walk.tree["match/single-tagged/config/vlan-id"].walk_mark, c.mark) << c.leaf;
    EXPECT_EQ(walk.tree["match/single-tagged/config/vlan-id"].walk_flags, 0x04) << c.leaf;
    EXPECT_EQ(walk.state().walk_bits, c.walk_bits) << c.leaf;
  }
}

void set_all_walk_bits(Walk& walk) {
  walk.recorder.state.walk_bits = 0xffffffff;
}

TEST(Read, forgets_at_each_container_what_was_read_before) {
  const Walk walk =
      sub_interface(kRead, "vlan { match { double-tagged { config { inner-vlan-id } } } }", set_all_walk_bits);
  EXPECT_EQ(walk.state().walk_bits, 0x11111112u);
}

TEST(Read, is_not_what_an_edit_does) {
  const Walk walk = sub_interface(kEdit, "vlan { match { double-tagged { } } }", set_all_walk_bits);
  EXPECT_EQ(walk.state().walk_bits, 0xffffffffu);
}

TEST(Read, that_became_whole_does_not_descend_into_children_that_are_not_its_own) {
  const Walk walk = sub_interface(kEdit, "vlan { match { double-tagged { } } }", [](Walk& w) {
    w.recorder.state.implicit_walk = 1;
    w.recorder.state.walk_bits = 1;
  });
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlan node=vlan count=0 implicit=1"));
}

TEST(Read, descends_with_that_bit_where_no_implicit_walk_runs) {
  const Walk walk =
      sub_interface(kEdit, "vlan { match { double-tagged { } } }", [](Walk& w) { w.recorder.state.walk_bits = 1; });
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlan node=vlan count=1", "cont_lvla_vlan_match node=match count=1",
                                   "cont_lvla_vlan_match_doubletagged node=double-tagged count=0"));
}

TEST(Read, asks_for_the_whole_container_even_when_its_handler_fails) {
  const Walk walk = sub_interface(kRead, "vlan { match { single-tagged { config } } }", [](Walk& w) {
    w.recorder.answer("cont_lvla_vlan_singletagged_config", kFailure);
    w.recorder.answer("leaf_lvlb_vlan_config_vlanid", 0);
  });
  EXPECT_EQ(walk.code, kFailure) << "the handler's own result is remembered";
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlan node=vlan count=1", "cont_lvla_vlan_match node=match count=1",
                                   "cont_lvla_vlan_match_singletagged node=single-tagged count=1",
                                   "cont_lvla_vlan_singletagged_config node=config count=0",
                                   "leaf_lvlb_vlan_config_vlanid node=config implicit=1",
                                   "lvla_vlan_singletagged_config_parse_augments node=config implicit=1"));
}

}  // namespace
