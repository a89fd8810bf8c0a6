// Entries of l2-protocol, the one list of the native configuration family.
#include <gtest/gtest.h>

#include "plugin/walk.h"

namespace {

using seen::who_traced;
using walks::kEdit;
using walks::kFailure;
using walks::kRead;
using walks::lines;
using walks::Walk;

constexpr char kListPath[] =
    "/a1:interface-configurations/a1:interface-configuration/a2:l2-transport/l2-protocols/l2-protocol";

Walk walk_l2_protocols(uint32_t kind, std::string_view notation, const std::function<void(Walk&)>& given = {}) {
  return {ymap_vo_oc_vlan_vexnetosl2ethinfracfg_augment_lvla_l2_transport, kind, notation, given};
}

// A comparison with the family's namespace.
const std::string kOwnNamespace =
    lines("do_these_match left=" YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS " right=" YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS);

std::string compared(const std::string& left, const std::string& right) {
  return lines("do_these_match left=" + left + " right=" + right);
}

// The calls by which the container is entered, its only child is known as an entry, and that entry's keys are marked.
const std::string kEntryKnown =
    kOwnNamespace + compared("l2-protocols", "l2-protocols") +
    lines("add_to_node_hierarchy node=l2-protocols level=1", "cont_lvla_l2protocols node=l2-protocols count=1") +
    compared("l2-protocol", "l2-protocol") + kOwnNamespace;

const std::string kUpdate = lines(std::string("update_current_list_node path=") + kListPath);

TEST(NativeCfgList, walks_list_entries_with_the_framework_told) {
  Walk walk =
      walk_l2_protocols(kRead, "cfg:l2-protocols { l2-protocol { l2-protocol-name=cdp other=1 l2-protocol-name=x } }");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(
      walk.seen(),
      lines("add_to_node_hierarchy node=l2-protocols level=1", "cont_lvla_l2protocols node=l2-protocols count=1",
            "add_to_node_hierarchy node=l2-protocol level=2", std::string("update_current_list_node path=") + kListPath,
            "list_lvla_l2protocols_l2protocol node=l2-protocol", "add_to_output_list node=l2-protocol tree=output",
            "remove_from_node_hierarchy node=l2-protocol", "remove_from_output_list node=l2-protocol tree=output",
            "remove_from_node_hierarchy node=l2-protocols"));
  EXPECT_EQ(walk.recorder.errors(), "");
  const yfw_datatree& entry = walk.tree["l2-protocol"];
  const int is_key[] = {1, 0, 1};
  for (uint32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(entry.subtrees[i].is_key, is_key[i]) << i;
    EXPECT_EQ(entry.subtrees[i].key_flags, is_key[i] == 1 ? 0x02 : 0) << i;
  }
  EXPECT_EQ(walk.state().output_depth, 0u);
}

TEST(NativeCfgList, logs_a_list_entry_without_keys_and_walks_on) {
  const Walk walk = walk_l2_protocols(kEdit, "cfg:l2-protocols { l2-protocol l2-protocol { l2-protocol-name=cdp } }");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.recorder.errors(), lines("ERR No keys specified with a list node."));
  EXPECT_EQ(who_traced(walk.recorder, "No keys specified with a list node."), lines("lvla_l2protocols_l2protocol"));
  EXPECT_NE(walk.seen().find(lines("add_to_node_hierarchy node=l2-protocol level=2",
                                   std::string("update_current_list_node path=") + kListPath,
                                   "list_lvla_l2protocols_l2protocol node=l2-protocol")),
            std::string::npos)
      << walk.seen();
}

TEST(NativeCfgList, does_not_call_the_list_handler_where_the_framework_refuses_the_entry) {
  const Walk walk = walk_l2_protocols(kRead, "cfg:l2-protocols { l2-protocol { l2-protocol-name=cdp } l2-protocol }",
                                      [](Walk& w) { w.recorder.answer("update_current_list_node", kFailure); });
  EXPECT_EQ(walk.code, kFailure);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_l2protocols node=l2-protocols count=2"));
  EXPECT_EQ(walk.recorder.errors(), "");
}

TEST(NativeCfgList, ends_a_list_entry_that_its_handler_declares_done) {
  const Walk walk = walk_l2_protocols(
      kRead, "cfg:l2-protocols { l2-protocol { l2-protocol-name=a } l2-protocol { l2-protocol-name=b } }",
      [](Walk& w) { w.recorder.answer("list_lvla_l2protocols_l2protocol", CERR_SKIP_SUBTREE, 1); });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(
      walk.seen(),
      lines("add_to_node_hierarchy node=l2-protocols level=1", "cont_lvla_l2protocols node=l2-protocols count=2",
            "add_to_node_hierarchy node=l2-protocol level=2", std::string("update_current_list_node path=") + kListPath,
            "list_lvla_l2protocols_l2protocol node=l2-protocol", "remove_from_node_hierarchy node=l2-protocol",
            "add_to_node_hierarchy node=l2-protocol level=2", std::string("update_current_list_node path=") + kListPath,
            "list_lvla_l2protocols_l2protocol node=l2-protocol", "add_to_output_list node=l2-protocol tree=output",
            "remove_from_node_hierarchy node=l2-protocol", "remove_from_output_list node=l2-protocol tree=output",
            "remove_from_node_hierarchy node=l2-protocols"));
  EXPECT_EQ(who_traced(walk.recorder, "End"), lines("lvla_l2protocols_l2protocol", "lvla_l2protocols_l2protocol",
                                                    "lvla_l2protocols", "augment_lvla_l2_transport"));
}

TEST(NativeCfgList, marks_the_keys_before_it_enters_the_entry) {
  const Walk walk = walk_l2_protocols(kRead, "cfg:l2-protocols { l2-protocol { other=1 l2-protocol-name=cdp } }");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(
      seen::walk_with_comparisons(walk.recorder),
      kEntryKnown + compared("other", "l2-protocol-name") + compared("l2-protocol-name", "l2-protocol-name") +
          lines("add_to_node_hierarchy node=l2-protocol level=2") + kUpdate +
          lines("list_lvla_l2protocols_l2protocol node=l2-protocol",
                "add_to_output_list node=l2-protocol tree=output") +
          kOwnNamespace + kOwnNamespace +
          lines("remove_from_node_hierarchy node=l2-protocol", "remove_from_output_list node=l2-protocol tree=output",
                "remove_from_node_hierarchy node=l2-protocols"));
}

TEST(NativeCfgList, marks_the_keys_also_where_the_framework_refuses_the_entry) {
  Walk walk = walk_l2_protocols(kRead, "cfg:l2-protocols { l2-protocol { l2-protocol-name=cdp } }",
                                [](Walk& w) { w.recorder.answer("update_current_list_node", kFailure); });
  EXPECT_EQ(walk.code, kFailure);
  EXPECT_EQ(seen::walk_with_comparisons(walk.recorder),
            kEntryKnown + compared("l2-protocol-name", "l2-protocol-name") +
                lines("add_to_node_hierarchy node=l2-protocol level=2") + kUpdate +
                lines("add_to_output_list node=l2-protocol tree=output", "remove_from_node_hierarchy node=l2-protocol",
                      "remove_from_output_list node=l2-protocol tree=output",
                      "remove_from_node_hierarchy node=l2-protocols"));
  EXPECT_EQ(walk.tree["l2-protocol/l2-protocol-name"].is_key, 1);
  EXPECT_EQ(walk.tree["l2-protocol/l2-protocol-name"].key_flags, 0x02);
}

TEST(NativeCfgList, tells_of_missing_keys_before_it_enters_the_entry) {
  const Walk walk = walk_l2_protocols(kRead, "cfg:l2-protocols { l2-protocol }");
  const std::string all = walk.recorder.all_calls();
  const std::size_t told = all.find("No keys specified with a list node.");
  ASSERT_NE(told, std::string::npos);
  EXPECT_LT(told, all.find("add_to_node_hierarchy node=l2-protocol level=2"));
}

TEST(NativeCfgList, takes_a_child_without_a_tag_for_no_key) {
  Walk walk = walk_l2_protocols(kRead, "cfg:l2-protocols { l2-protocol { x @notag l2-protocol-name=cdp } }");
  EXPECT_EQ(walk.code, CERR_BAD_TREE);
  const yfw_datatree& entry = walk.tree["l2-protocol"];
  EXPECT_EQ(entry.subtrees[0].is_key, 0);
  EXPECT_EQ(entry.subtrees[1].is_key, 1);
  EXPECT_EQ(walk.recorder.errors(), lines("ERR Tag name is not available!"));
}

TEST(NativeCfgList, passes_the_code_of_a_hook_that_looks_like_done) {
  const Walk walk = walk_l2_protocols(
      kRead, "cfg:l2-protocols { l2-protocol { l2-protocol-name=a x:foreign } l2-protocol { l2-protocol-name=b } }",
      [](Walk& w) { w.recorder.answer("lvla_l2protocols_l2protocol_parse_augments", CERR_SKIP_SUBTREE); });
  EXPECT_EQ(walk.code, CERR_SKIP_SUBTREE);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_l2protocols node=l2-protocols count=2",
                                   "list_lvla_l2protocols_l2protocol node=l2-protocol",
                                   "lvla_l2protocols_l2protocol_parse_augments node=foreign"));
  EXPECT_EQ(walk.state().output_depth, 0u);
}

TEST(NativeCfgList, takes_a_replaced_entry_off_the_output_list_as_often_as_it_put_it_there) {
  Walk walk = walk_l2_protocols(kEdit, "cfg:l2-protocols { l2-protocol @replace { l2-protocol-name=cdp } }");
  EXPECT_EQ(walk.code, 0u);
  const std::string first = " op=4 pass=0x40 restore=1";
  EXPECT_EQ(walk.seen(),
            lines("add_to_node_hierarchy node=l2-protocols level=1", "cont_lvla_l2protocols node=l2-protocols count=1",
                  "add_to_node_hierarchy node=l2-protocol level=2") +
                kUpdate +
                lines("list_lvla_l2protocols_l2protocol node=l2-protocol" + first,
                      "add_to_output_list node=l2-protocol tree=output",
                      "lvla_l2protocols_l2protocol_parse_augments node=l2-protocol" + first + " implicit=1") +
                kUpdate +
                lines("list_lvla_l2protocols_l2protocol node=l2-protocol pass=0x80 restore=1",
                      "add_to_output_list node=l2-protocol tree=output", "remove_from_node_hierarchy node=l2-protocol",
                      "remove_from_output_list node=l2-protocol tree=output",
                      "remove_from_output_list node=l2-protocol tree=output",
                      "remove_from_node_hierarchy node=l2-protocols"));
  EXPECT_EQ(walk.state().output_depth, 0u);
  EXPECT_EQ(walk.tree["l2-protocol"].operation, 1u);
}

struct ChildlessCase {
  const char* name;
  uint32_t kind;
  const char* tree;
  const char* asked;   // operation that the container's own handler and hook see
  const char* spread;  // and those below it
};

std::ostream& operator<<(std::ostream& out, const ChildlessCase& c) {
  return out << c.tree;
}

class NativeCfgChildlessList : public testing::TestWithParam<ChildlessCase> {};

TEST_P(NativeCfgChildlessList, is_walked_as_an_entry_of_itself) {
  const ChildlessCase& c = GetParam();
  const Walk walk = walk_l2_protocols(c.kind, c.tree);
  const std::string asked = c.asked;
  const std::string spread = c.spread;
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.seen(),
            lines("add_to_node_hierarchy node=l2-protocols level=1",
                  "cont_lvla_l2protocols node=l2-protocols count=0" + asked) +
                kUpdate +
                lines("list_lvla_l2protocols_l2protocol node=l2-protocols" + spread + " implicit=1",
                      "add_to_output_list node=l2-protocols tree=output",
                      "lvla_l2protocols_l2protocol_parse_augments node=l2-protocols" + spread + " implicit=1",
                      "remove_from_output_list node=l2-protocols tree=output",
                      "lvla_l2protocols_parse_augments node=l2-protocols" + asked + " implicit=1",
                      "remove_from_node_hierarchy node=l2-protocols"));
  EXPECT_EQ(walk.recorder.errors(), lines("ERR No keys specified with a list node."));
  EXPECT_EQ(who_traced(walk.recorder, "No keys specified with a list node."), lines("lvla_l2protocols_l2protocol"));
  EXPECT_EQ(walk.state().output_depth, 0u);
}

INSTANTIATE_TEST_SUITE_P(NativeCfg, NativeCfgChildlessList,
                         testing::Values(ChildlessCase{"read", kRead, "cfg:l2-protocols", "", ""},
                                         ChildlessCase{"state_read", walks::kReadState, "cfg:l2-protocols", "", ""},
                                         ChildlessCase{"delete", kEdit, "cfg:l2-protocols @delete", " op=3", " op=4"},
                                         ChildlessCase{"remove", kEdit, "cfg:l2-protocols @remove", " op=4", " op=4"}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
