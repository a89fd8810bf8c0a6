// The walk of one node and what is below it, told on the OpenConfig family.
#include <gtest/gtest.h>

#include "plugin/walk.h"

namespace {

using recording::AllocationCount;
using seen::who_traced;
using walks::kEdit;
using walks::kFailure;
using walks::kRead;
using walks::kReadState;
using walks::lines;
using walks::Recorder;
using walks::sub_interface;
using walks::Tree;
using walks::Walk;

constexpr uint8_t kOperationChanged = 0x10;

TEST(Walker, visits_an_edit_node_by_node) {
  const Walk walk = sub_interface(kEdit, "vlan { match { single-tagged { config { vlan-id=100 } } } }",
                                  [](Walk& w) { w.recorder.make_l2(); });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(
      walk.seen().substr(0, walk.seen().find("leaf_")),
      lines("add_to_node_hierarchy node=vlan level=1", "cont_lvla_vlan node=vlan count=1",
            "add_to_node_hierarchy node=match level=1", "cont_lvla_vlan_match node=match count=1",
            "add_to_node_hierarchy node=single-tagged level=1",
            "cont_lvla_vlan_match_singletagged node=single-tagged count=1", "add_to_node_hierarchy node=config level=1",
            "cont_lvla_vlan_singletagged_config node=config count=1"));
  EXPECT_EQ(walk.seen().substr(walk.seen().find("remove_from")),
            lines("remove_from_node_hierarchy node=config", "remove_from_node_hierarchy node=single-tagged",
                  "remove_from_node_hierarchy node=match", "remove_from_node_hierarchy node=vlan"));
  EXPECT_EQ(who_traced(walk.recorder, "Start"),
            lines("augment_lvla_subinterface", "lvla_vlan", "cont_lvla_vlan", "lvla_vlan_match", "cont_lvla_vlan_match",
                  "lvla_vlan_match_singletagged", "cont_lvla_vlan_match_singletagged", "lvla_vlan_singletagged_config",
                  "cont_lvla_vlan_singletagged_config", "lvlb_vlan_config_vlanid", "oc2_vex_singletag_cfg_vlanid"));
  EXPECT_EQ(who_traced(walk.recorder, "End"),
            lines("oc2_vex_singletag_cfg_vlanid", "lvlb_vlan_config_vlanid", "lvla_vlan_singletagged_config",
                  "lvla_vlan_match_singletagged", "lvla_vlan_match", "lvla_vlan"));
}

TEST(Walker, does_not_allocate_on_success) {
  for (const uint32_t kind : {kEdit, kRead, kReadState}) {
    Recorder recorder(kind);
    recorder.make_l2();
    recorder.sub_interface("Ethernet0/0/1", "100");
    Tree tree("vlan { match { single-tagged { config { vlan-id=100 } } } ingress-mapping { config { vlan-id=7 } } }");
    const AllocationCount count;
    const cerrno code =
        ymap_ov_oc_vlan_openconfigvlan_augment_lvla_subinterface(recorder.ctx(), tree.root(), recorder.output());
    EXPECT_EQ(count.allocations(), 0u) << "request kind " << kind;
    EXPECT_EQ(code, 0u);
  }
}

TEST(Walker, marks_what_it_enters) {
  Walk walk = sub_interface(kEdit, "vlan { match { single-tagged { config { vlan-id=100 } } } }");
  for (const char* container : {"", "match", "match/single-tagged", "match/single-tagged/config"}) {
    EXPECT_EQ(walk.tree[container].walk_mark, 3u) << container;
    EXPECT_EQ(walk.tree[container].walk_flags, 0x04) << container;
  }
  EXPECT_EQ(walk.tree["match/single-tagged/config/vlan-id"].walk_mark, 1u);
  EXPECT_EQ(walk.tree["match/single-tagged/config/vlan-id"].walk_flags, 0x04);
}

TEST(Walker, keeps_no_books_in_an_implicit_walk) {
  Walk walk = sub_interface(kEdit, "vlan { match { single-tagged { config { vlan-id=100 } } } }",
                            [](Walk& w) { w.recorder.state.implicit_walk = 1; });
  EXPECT_EQ(walk.seen().find("node_hierarchy"), std::string::npos) << walk.seen();
  EXPECT_EQ(walk.tree["match"].walk_mark, 0u);
  EXPECT_EQ(walk.tree["match"].walk_flags, 0u);
  EXPECT_EQ(walk.tree["match/single-tagged/config/vlan-id"].walk_mark, 0u);
  EXPECT_EQ(walk.state().implicit_walk, 1u);
}

TEST(Walker, refuses_children_that_are_announced_and_absent) {
  Walk walk = sub_interface(kEdit, "vlan { match @missing ingress-mapping { config } }");
  EXPECT_EQ(walk.code, CERR_BAD_TREE);
  EXPECT_EQ(walk.recorder.errors(), lines("ERR Failed to get subtrees!"));
  EXPECT_EQ(who_traced(walk.recorder, "Failed to get subtrees!"), lines("lvla_vlan_match"));
  EXPECT_EQ(who_traced(walk.recorder, "End"), lines("lvla_vlan_match", "lvla_vlan"));
  EXPECT_EQ(walk.seen(), lines("add_to_node_hierarchy node=vlan level=1", "cont_lvla_vlan node=vlan count=2",
                               "remove_from_node_hierarchy node=vlan"));
}

TEST(Walker, takes_children_only_where_they_are_announced) {
  const Walk walk = sub_interface(kEdit, "vlan { match { single-tagged { config } } }",
                                  [](Walk& w) { w.tree["match"].node_flags = 0; });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlan node=vlan count=1", "cont_lvla_vlan_match node=match count=0"));
}

// --- Deletes ---

struct DeleteCase {
  const char* name;
  const char* tree;
  uint32_t walk_locked;
  uint32_t implicit_walk;
  bool is_refused;
};

std::ostream& operator<<(std::ostream& out, const DeleteCase& c) {
  return out << c.tree;
}

class DeleteWithSubtree : public testing::TestWithParam<DeleteCase> {};

TEST_P(DeleteWithSubtree, is_refused_unless_the_request_allows_it) {
  const DeleteCase& c = GetParam();
  const Walk walk = sub_interface(kEdit, c.tree, [&c](Walk& w) {
    w.recorder.state.walk_locked = c.walk_locked;
    w.recorder.state.implicit_walk = c.implicit_walk;
    w.recorder.answer("leaf_lvlb_vlan_config_vlanid", 0);
  });
  EXPECT_EQ(walk.recorder.errors(), "");
  EXPECT_EQ(walk.recorder.calls().find("error_path"), std::string::npos);
  const std::string told = who_traced(walk.recorder, "Delete request with subtree present");
  if (c.is_refused) {
    EXPECT_EQ(walk.code, CERR_INVALID_ARGS);
    EXPECT_EQ(told, lines("lvla_vlan_singletagged_config"));
    EXPECT_EQ(walk.handlers().find("cont_lvla_vlan_singletagged_config"), std::string::npos);
    EXPECT_EQ(walk.seen().find("add_to_node_hierarchy node=config"), std::string::npos);
    EXPECT_EQ(who_traced(walk.recorder, "End").find("lvla_vlan_singletagged_config\n"), 0u);
  } else {
    EXPECT_EQ(walk.code, 0u);
    EXPECT_EQ(told, "");
    EXPECT_NE(walk.handlers().find("leaf_lvlb_vlan_config_vlanid"), std::string::npos) << walk.handlers();
  }
}

constexpr char kDeleted[] = "vlan { match { single-tagged { config @delete { vlan-id } } } }";
constexpr char kRemoved[] = "vlan { match { single-tagged { config @remove { vlan-id } } } }";

INSTANTIATE_TEST_SUITE_P(Walker, DeleteWithSubtree,
                         testing::Values(DeleteCase{"delete", kDeleted, 0, 0, true},
                                         DeleteCase{"remove", kRemoved, 0, 0, true},
                                         DeleteCase{"locked", kDeleted, 1, 0, false},
                                         DeleteCase{"locked_otherwise", kDeleted, 0x80, 0, false},
                                         DeleteCase{"implicit", kDeleted, 0, 1, false},
                                         DeleteCase{"other_implicit_value", kDeleted, 0, 2, true}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Walker, spreads_the_delete_of_a_container_and_puts_it_back) {
  Walk walk = sub_interface(kEdit, "vlan { match { single-tagged @delete } }",
                            [](Walk& w) { w.recorder.answer("leaf_lvlb_vlan_config_vlanid", 0); });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlan node=vlan count=1", "cont_lvla_vlan_match node=match count=1",
                                   "cont_lvla_vlan_match_singletagged node=single-tagged count=0 op=3",
                                   "cont_lvla_vlan_singletagged_config node=single-tagged count=0 op=4 implicit=1",
                                   "leaf_lvlb_vlan_config_vlanid node=single-tagged op=4 implicit=1",
                                   "lvla_vlan_singletagged_config_parse_augments node=single-tagged op=4 implicit=1",
                                   "lvla_vlan_match_singletagged_parse_augments node=single-tagged op=3 implicit=1"));
  EXPECT_EQ(walk.tree["match/single-tagged"].operation, 3u);
  EXPECT_EQ(walk.tree["match/single-tagged"].node_flags & kOperationChanged, kOperationChanged);
  EXPECT_EQ(walk.state().implicit_walk, 0u);
}

TEST(Walker, leaves_a_removal_as_it_is) {
  Walk walk = sub_interface(kEdit, "vlan { match { single-tagged @remove } }",
                            [](Walk& w) { w.recorder.answer("leaf_lvlb_vlan_config_vlanid", 0); });
  EXPECT_EQ(walk.tree["match/single-tagged"].operation, 4u);
  EXPECT_EQ(walk.tree["match/single-tagged"].node_flags & kOperationChanged, 0);
}

// --- Children ---

TEST(Walker, stops_at_a_child_without_a_tag) {
  const Walk walk = sub_interface(kEdit, "vlan { x @notag match { } }");
  EXPECT_EQ(walk.code, CERR_BAD_TREE);
  EXPECT_EQ(walk.recorder.errors(), lines("ERR Tag name is not available!"));
  EXPECT_EQ(walk.recorder.calls().find("error_path"), std::string::npos);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlan node=vlan count=2"));
  EXPECT_EQ(who_traced(walk.recorder, "End"), lines("lvla_vlan"));
}

struct UnknownCase {
  const char* name;
  uint32_t kind;
  const char* child;
  cerrno code;
  const char* errors;
  const char* error_tag;  // null for none
  const char* hook;       // expected call, "" for none
  int error_paths;
};

std::ostream& operator<<(std::ostream& out, const UnknownCase& c) {
  return out << c.child;
}

constexpr char kUnsupported[] = "ERR Unsupported tag is specified in the request.\n";

class UnknownChild : public testing::TestWithParam<UnknownCase> {};

TEST_P(UnknownChild, is_refused_skipped_or_given_to_the_hook) {
  const UnknownCase& c = GetParam();
  const Walk walk = sub_interface(c.kind, std::string("vlan { ") + c.child + " match { } }",
                                  [](Walk& w) { w.recorder.answer("cont_lvla_vlan_match", CERR_SKIP_SUBTREE); });
  const std::string sibling = "cont_lvla_vlan_match node=match count=0\n";
  EXPECT_EQ(walk.code, c.code);
  EXPECT_EQ(walk.recorder.errors(), c.errors);
  EXPECT_STREQ(walk.state().error_tag, c.error_tag);
  EXPECT_EQ(walk.handlers().find(sibling) != std::string::npos, c.code == 0) << walk.handlers();
  const std::string first = walk.handlers().substr(walk.handlers().find('\n') + 1);
  EXPECT_EQ(first.substr(0, std::string(c.hook).size()), c.hook) << walk.handlers();
  int error_paths = 0;
  const std::string calls = walk.recorder.calls();
  for (std::size_t at = calls.find("error_path"); at != std::string::npos; at = calls.find("error_path", at + 1)) {
    ++error_paths;
  }
  EXPECT_EQ(error_paths, c.error_paths) << calls;
  if (c.error_tag != nullptr) {
    EXPECT_NE(calls.find(std::string("strdup text=") + c.error_tag + " owner='YFW MAP'\nerror_path\n"),
              std::string::npos)
        << calls;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Walker, UnknownChild,
    testing::Values(
        UnknownCase{"own_in_an_edit", kEdit, "stranger", CERR_UNSUPPORTED, kUnsupported, "stranger", "", 1},
        UnknownCase{"own_in_another_edit", 2, "stranger", CERR_UNSUPPORTED, kUnsupported, "stranger", "", 1},
        UnknownCase{"own_deleted", kEdit, "stranger @delete", CERR_UNSUPPORTED, kUnsupported, "stranger", "", 1},
        UnknownCase{"own_in_a_read", kRead, "stranger", 0, kUnsupported, nullptr, "", 0},
        UnknownCase{"own_in_a_state_read", kReadState, "stranger", 0, kUnsupported, nullptr, "", 0},
        UnknownCase{"foreign_merged", kEdit, "x:stranger", CERR_UNKNOWN_AUGMENT, "", "stranger",
                    "lvla_vlan_parse_augments node=stranger\n", 1},
        UnknownCase{"foreign_created", kEdit, "x:stranger @create", CERR_UNKNOWN_AUGMENT, "", "stranger",
                    "lvla_vlan_parse_augments node=stranger op=2\n", 1},
        UnknownCase{"foreign_deleted", kEdit, "x:stranger @delete { }", 0, "", nullptr,
                    "lvla_vlan_parse_augments node=stranger op=3\n", 0},
        UnknownCase{"foreign_in_a_read", kRead, "x:stranger", 0, "", nullptr,
                    "lvla_vlan_parse_augments node=stranger\n", 0},
        UnknownCase{"state_in_an_edit", kEdit, "state", CERR_UNSUPPORTED, kUnsupported, "state", "", 1},
        UnknownCase{"state_in_a_read_of_configuration", kRead, "state", 0, kUnsupported, nullptr, "", 0},
        UnknownCase{"foreign_state_in_an_edit", kEdit, "x:state", CERR_UNKNOWN_AUGMENT, "", "state",
                    "lvla_vlan_parse_augments node=state\n", 1}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(Walker, knows_children_of_this_family_by_their_tag_alone) {
  const Walk walk = sub_interface(kEdit, "vlan { x:match { } }");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlan node=vlan count=1", "cont_lvla_vlan_match node=match count=0"));
}

TEST(Walker, gives_a_child_without_a_namespace_to_the_hook) {
  const Walk walk = sub_interface(kRead, "vlan { stranger @nons match @nons { } }",
                                  [](Walk& w) { w.recorder.answer("cont_lvla_vlan_match", CERR_SKIP_SUBTREE); });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlan node=vlan count=2", "lvla_vlan_parse_augments node=stranger",
                                   "cont_lvla_vlan_match node=match count=0"));
}

// 0, 10 and nothing else is a read.
class OtherKind : public testing::TestWithParam<uint32_t> {};

TEST_P(OtherKind, refuses_what_is_unknown) {
  for (const char* const child : {"stranger", "state"}) {
    const Walk walk = sub_interface(GetParam(), std::string("vlan { ") + child + " }");
    EXPECT_EQ(walk.code, CERR_UNSUPPORTED) << child;
    EXPECT_STREQ(walk.state().error_tag, child);
  }
  const Walk entry = sub_interface(GetParam(), "stranger");
  EXPECT_EQ(entry.code, CERR_UNSUPPORTED);
}

TEST_P(OtherKind, walks_a_childless_element_once) {
  EXPECT_EQ(sub_interface(GetParam(), "vlan").handlers(), lines("cont_lvla_vlan node=vlan count=0"));
}

TEST_P(OtherKind, remembers_nothing_of_a_leaf) {
  const Walk walk = sub_interface(GetParam(), "vlan { match { single-tagged { config { vlan-id=1 @select } } } }",
                                  [](Walk& w) { w.recorder.state.walk_bits = 0xf0; });
  EXPECT_EQ(walk.state().walk_bits, 0xf0u);
}

INSTANTIATE_TEST_SUITE_P(Walker, OtherKind, testing::Values(2u, 9u, 11u, 0x10au, 0x100u, 0xffffffffu));

TEST(Walker, compares_tags_in_the_order_of_the_rows) {
  const Walk walk = sub_interface(kEdit, "vlan { ingress-mapping { } }");
  const std::string all = walk.recorder.all_calls();
  EXPECT_NE(all.find(lines("do_these_match left=ingress-mapping right=config",
                           "do_these_match left=ingress-mapping right=state",
                           "do_these_match left=ingress-mapping right=match",
                           "do_these_match left=ingress-mapping right=ingress-mapping")),
            std::string::npos)
      << all;
}

TEST(Walker, releases_the_older_error_tag_first) {
  const Walk walk =
      sub_interface(kEdit, "vlan { stranger }", [](Walk& w) { w.recorder.own(w.recorder.state.error_tag, "older"); });
  EXPECT_NE(walk.recorder.calls().find(lines("free text=older", "strdup text=stranger owner='YFW MAP'", "error_path")),
            std::string::npos)
      << walk.recorder.calls();
}

TEST(Walker, stops_at_the_first_failure_and_passes_it_up) {
  const Walk walk = sub_interface(kEdit, "vlan { match { single-tagged { } double-tagged { } } ingress-mapping { } }",
                                  [](Walk& w) { w.recorder.answer("cont_lvla_vlan_match_singletagged", kFailure); });
  EXPECT_EQ(walk.code, kFailure);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlan node=vlan count=2", "cont_lvla_vlan_match node=match count=2",
                                   "cont_lvla_vlan_match_singletagged node=single-tagged count=0"));
  EXPECT_EQ(walk.recorder.calls().find("error_path"), std::string::npos);
  EXPECT_EQ(who_traced(walk.recorder, "End"), lines("lvla_vlan_match_singletagged", "lvla_vlan_match", "lvla_vlan"));
}

TEST(Walker, does_not_descend_where_the_handler_fails) {
  const Walk walk = sub_interface(kEdit, "vlan { match { single-tagged { } } }",
                                  [](Walk& w) { w.recorder.answer("cont_lvla_vlan_match", kFailure); });
  EXPECT_EQ(walk.code, kFailure);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlan node=vlan count=1", "cont_lvla_vlan_match node=match count=1"));
}

// --- A handler that declares its node done ---

TEST(Walker, ends_a_node_that_its_handler_declares_done) {
  const Walk walk = sub_interface(kEdit, "vlan { match { single-tagged { } } ingress-mapping { } }",
                                  [](Walk& w) { w.recorder.answer("cont_lvla_vlan_match", CERR_SKIP_SUBTREE); });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.seen(),
            lines("add_to_node_hierarchy node=vlan level=1", "cont_lvla_vlan node=vlan count=2",
                  "add_to_node_hierarchy node=match level=1", "cont_lvla_vlan_match node=match count=1",
                  "remove_from_node_hierarchy node=match", "add_to_node_hierarchy node=ingress-mapping level=1",
                  "cont_lvla_vlan_ingressmapping node=ingress-mapping count=0",
                  "remove_from_node_hierarchy node=ingress-mapping", "remove_from_node_hierarchy node=vlan"));
  EXPECT_EQ(who_traced(walk.recorder, "End"), lines("lvla_vlan_ingressmapping", "lvla_vlan"));
}

TEST(Walker, walks_nothing_implicitly_below_a_node_that_is_done) {
  const Walk walk = sub_interface(kRead, "vlan { match }",
                                  [](Walk& w) { w.recorder.answer("cont_lvla_vlan_match", CERR_SKIP_SUBTREE); });
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlan node=vlan count=1", "cont_lvla_vlan_match node=match count=0"));
}

TEST(Walker, passes_the_code_of_a_leaf_that_looks_like_done) {
  const Walk walk = sub_interface(kEdit, "vlan { match { single-tagged { config { vlan-id=1 } } } }", [](Walk& w) {
    w.recorder.answer("leaf_lvlb_vlan_config_vlanid", CERR_SKIP_SUBTREE);
  });
  EXPECT_EQ(walk.code, CERR_SKIP_SUBTREE);
}

// --- A context without a request ---

TEST(Walker, takes_a_context_without_a_request_for_an_edit) {
  for (const char* tree :
       {"vlan { match { double-tagged { } } }", "vlan { match { double-tagged { x:y @delete } } }"}) {
    Recorder recorder;
    Tree request(tree);
    recorder.ctx()->req_state = nullptr;
    recorder.answer("is_request_add", 0);
    EXPECT_EQ(
        ymap_ov_oc_vlan_openconfigvlan_augment_lvla_subinterface(recorder.ctx(), request.root(), recorder.output()),
        0u);
    EXPECT_NE(seen::handlers(recorder).find("cont_lvla_vlan_match_doubletagged"), std::string::npos);
    recorder.ctx()->req_state = &recorder.state;
  }
}

TEST(Walker, refuses_an_unknown_tag_also_without_a_request) {
  Recorder recorder;
  Tree request("vlan { stranger }");
  recorder.ctx()->req_state = nullptr;
  EXPECT_EQ(ymap_ov_oc_vlan_openconfigvlan_augment_lvla_subinterface(recorder.ctx(), request.root(), recorder.output()),
            CERR_UNSUPPORTED);
  EXPECT_EQ(recorder.calls().find("strdup"), std::string::npos);
  EXPECT_NE(recorder.calls().find("error_path"), std::string::npos);
  recorder.ctx()->req_state = &recorder.state;
}

}  // namespace
