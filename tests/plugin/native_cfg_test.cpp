// What the native configuration family does in its own way.
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
using walks::Tree;
using walks::Walk;

constexpr char kPrefix[] = "ymap_vo_oc_vlan_vexnetosl2ethinfracfg_";

Walk walk_trunk(uint32_t kind, std::string_view notation, const std::function<void(Walk&)>& given = {}) {
  return {ymap_vo_oc_vlan_vexnetosl2ethinfracfg_augment_lvlh_interface_configuration, kind, notation, given};
}

std::string traced(const std::string& function, const std::string& text) {
  return "TRC " + std::string(kPrefix) + function + ": " + text;
}

TEST(NativeCfg, tells_each_child_and_what_it_is) {
  for (const uint32_t kind : {kEdit, kRead, kReadState}) {
    const Walk walk = walk_trunk(kind, "cfg:vlan-trunk-configuration { vlan-switched { mode=access } }", [](Walk& w) {
      w.recorder.answer("leaf_lvla_vlantrunkconfiguration_vlanswitched_mode", 0);
    });
    EXPECT_EQ(walk.code, 0u);
    EXPECT_EQ(
        walk.recorder.trace(),
        lines(traced("augment_lvlh_interface_configuration", "Start"),
              traced("augment_lvlh_interface_configuration", "Processing tag 'vlan-trunk-configuration'"),
              traced("lvla_vlantrunkconfiguration", "Start"), traced("cont_lvla_vlantrunkconfiguration", "Start"),
              traced("lvla_vlantrunkconfiguration", "Processing tag 'vlan-switched'"),
              traced("lvla_vlantrunkconfiguration_vlanswitched", "Start"),
              traced("cont_lvla_vlantrunkconfiguration_vlanswitched", "Start"),
              traced("lvla_vlantrunkconfiguration_vlanswitched", "Processing tag 'mode'"),
              traced("lvla_vlantrunkconfiguration_vlanswitched_mode", "Start"),
              traced("lvla_vlantrunkconfiguration_vlanswitched_mode", "End"),
              traced("lvla_vlantrunkconfiguration_vlanswitched", "End"), traced("lvla_vlantrunkconfiguration", "End"),
              traced("augment_lvlh_interface_configuration", "End")));
    EXPECT_EQ(walk.seen(), lines("add_to_node_hierarchy node=vlan-trunk-configuration level=1",
                                 "cont_lvla_vlantrunkconfiguration node=vlan-trunk-configuration count=1",
                                 "add_to_node_hierarchy node=vlan-switched level=1",
                                 "cont_lvla_vlantrunkconfiguration_vlanswitched node=vlan-switched count=1",
                                 "leaf_lvla_vlantrunkconfiguration_vlanswitched_mode node=mode",
                                 "remove_from_node_hierarchy node=vlan-switched",
                                 "remove_from_node_hierarchy node=vlan-trunk-configuration"));
  }
}

TEST(NativeCfg, ignores_an_unknown_child_of_its_own_whatever_the_request) {
  for (const uint32_t kind : {kEdit, kRead, kReadState}) {
    const Walk walk = walk_trunk(kind, "cfg:vlan-trunk-configuration { vlan-switched { stranger=1 access-vlan=7 } }",
                                 [](Walk& w) { w.recorder.own(w.recorder.state.error_tag, "older"); });
    EXPECT_EQ(walk.code, 0u);
    EXPECT_EQ(who_traced(walk.recorder, "Unsupported tag. Ignoring."),
              lines("lvla_vlantrunkconfiguration_vlanswitched"));
    EXPECT_EQ(walk.recorder.errors(), "");
    EXPECT_STREQ(walk.state().error_tag, "older");
    EXPECT_NE(walk.handlers().find("leaf_lvla_vlantrunkconfiguration_vlanswitched_accessvlan node=access-vlan\n"),
              std::string::npos);
  }
}

TEST(NativeCfg, gives_foreign_children_to_the_hook_also_where_it_knows_the_tag) {
  const Walk walk = walk_trunk(kRead, "cfg:vlan-trunk-configuration { x:vlan-switched { mode=access } x:stranger }");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlantrunkconfiguration node=vlan-trunk-configuration count=2",
                                   "lvla_vlantrunkconfiguration_parse_augments node=vlan-switched",
                                   "lvla_vlantrunkconfiguration_parse_augments node=stranger"));
}

TEST(NativeCfg, gives_children_without_a_namespace_to_the_hook) {
  const Walk walk = walk_trunk(kRead, "cfg:vlan-trunk-configuration { vlan-switched @nons { mode } stranger @nons }");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_vlantrunkconfiguration node=vlan-trunk-configuration count=2",
                                   "lvla_vlantrunkconfiguration_parse_augments node=vlan-switched",
                                   "lvla_vlantrunkconfiguration_parse_augments node=stranger"));
}

TEST(NativeCfg, passes_the_code_of_a_leaf_that_looks_like_done) {
  const Walk walk = walk_trunk(
      kRead, "cfg:vlan-trunk-configuration { vlan-switched { mode=access access-vlan=7 } }",
      [](Walk& w) { w.recorder.answer("leaf_lvla_vlantrunkconfiguration_vlanswitched_mode", CERR_SKIP_SUBTREE); });
  EXPECT_EQ(walk.code, CERR_SKIP_SUBTREE);
  EXPECT_EQ(walk.handlers().find("accessvlan"), std::string::npos) << walk.handlers();
}

TEST(NativeCfg, stops_at_a_child_without_a_tag) {
  const Walk walk = walk_trunk(kRead, "cfg:vlan-trunk-configuration { x @notag vlan-switched { } }");
  EXPECT_EQ(walk.code, CERR_BAD_TREE);
  EXPECT_EQ(walk.recorder.errors(), lines("ERR Tag name is not available!"));
  EXPECT_EQ(who_traced(walk.recorder, "End"),
            lines("lvla_vlantrunkconfiguration", "augment_lvlh_interface_configuration"));
}

TEST(NativeCfg, refuses_children_that_are_announced_and_absent) {
  const Walk walk = walk_trunk(kRead, "cfg:vlan-trunk-configuration { vlan-switched @missing }");
  EXPECT_EQ(walk.code, CERR_BAD_TREE);
  EXPECT_EQ(who_traced(walk.recorder, "Failed to get subtrees!"), lines("lvla_vlantrunkconfiguration_vlanswitched"));
}

TEST(NativeCfg, takes_a_delete_with_children) {
  const Walk walk = walk_trunk(kEdit, "cfg:vlan-trunk-configuration @delete { vlan-switched { } }");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(who_traced(walk.recorder, "Delete request with subtree present"), "");
  EXPECT_NE(walk.handlers().find("cont_lvla_vlantrunkconfiguration_vlanswitched node=vlan-switched count=0 op=3"),
            std::string::npos)
      << walk.handlers();
}

TEST(NativeCfg, ends_a_container_that_its_handler_declares_done) {
  const Walk walk =
      walk_trunk(kRead, "cfg:vlan-trunk-configuration { vlan-switched { } native-vlan-identifier { } }", [](Walk& w) {
        w.recorder.answer("cont_lvla_vlantrunkconfiguration_vlanswitched", CERR_SKIP_SUBTREE);
        w.recorder.answer("cont_lvla_vlantrunkconfiguration_nativevlanidentifier", CERR_SKIP_SUBTREE);
      });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(who_traced(walk.recorder, "End"),
            lines("lvla_vlantrunkconfiguration", "augment_lvlh_interface_configuration"));
  EXPECT_NE(walk.handlers().find("nativevlanidentifier"), std::string::npos);
}

TEST(NativeCfg, runs_a_replace_in_two_passes) {
  Walk walk = walk_trunk(kEdit, "cfg:vlan-trunk-configuration @replace { vlan-switched { } }", [](Walk& w) {
    w.recorder.answer("cont_lvla_vlantrunkconfiguration_vlanswitched", CERR_SKIP_SUBTREE);
    w.recorder.answer("cont_lvla_vlantrunkconfiguration_nativevlanidentifier", CERR_SKIP_SUBTREE);
  });
  EXPECT_EQ(walk.code, 0u);
  const std::string first = " op=4 pass=0x40 restore=1";
  EXPECT_EQ(walk.handlers(),
            lines("cont_lvla_vlantrunkconfiguration node=vlan-trunk-configuration count=0" + first,
                  "cont_lvla_vlantrunkconfiguration_nativevlanidentifier node=vlan-trunk-configuration count=0" +
                      first + " implicit=1",
                  "cont_lvla_vlantrunkconfiguration_vlanswitched node=vlan-trunk-configuration count=0" + first +
                      " implicit=1",
                  "lvla_vlantrunkconfiguration_parse_augments node=vlan-trunk-configuration" + first + " implicit=1",
                  "cont_lvla_vlantrunkconfiguration node=vlan-trunk-configuration count=1 pass=0x80 restore=1",
                  "cont_lvla_vlantrunkconfiguration_vlanswitched node=vlan-switched count=0 pass=0x80 restore=1"));
  EXPECT_EQ(walk.tree.root()->operation, 1u);
  EXPECT_EQ(walk.state().pass_flags, 0u);
}

// --- Leaves ---

struct XpathCase {
  const char* name;
  uint8_t key_flags;
  uint32_t xpath_status;
  bool is_told;
};

std::ostream& operator<<(std::ostream& out, const XpathCase& c) {
  return out << c.name;
}

class NativeCfgXpath : public testing::TestWithParam<XpathCase> {};

TEST_P(NativeCfgXpath, error_is_told_and_the_leaf_translated_all_the_same) {
  const XpathCase& c = GetParam();
  const Walk walk = walk_trunk(kRead, "cfg:vlan-trunk-configuration { vlan-switched { mode=access } }", [&c](Walk& w) {
    w.tree["vlan-switched/mode"].key_flags = c.key_flags;
    w.tree["vlan-switched/mode"].xpath_status = c.xpath_status;
    w.recorder.state.pass_flags = 0x1000;
    w.recorder.answer("leaf_lvla_vlantrunkconfiguration_vlanswitched_mode", kFailure);
  });
  EXPECT_EQ(walk.code, kFailure);
  EXPECT_EQ(who_traced(walk.recorder, "got xpath error node "),
            c.is_told ? lines("lvla_vlantrunkconfiguration_vlanswitched_mode") : "");
  EXPECT_EQ(walk.state().pass_flags, c.is_told ? 0x1100u : 0x1000u);
  EXPECT_NE(walk.handlers().find("leaf_lvla_vlantrunkconfiguration_vlanswitched_mode node=mode"), std::string::npos);
  EXPECT_EQ(walk.recorder.errors(), "");
}

INSTANTIATE_TEST_SUITE_P(NativeCfg, NativeCfgXpath,
                         testing::Values(XpathCase{"marked", 0x08, 5, true}, XpathCase{"marked_key", 0x0a, 5, true},
                                         XpathCase{"no_mark", 0xf7, 5, false},
                                         XpathCase{"other_status", 0x08, 4, false},
                                         XpathCase{"no_status", 0x08, 0, false}, XpathCase{"nothing", 0, 0, false}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(NativeCfg, keeps_no_books_on_leaves) {
  Walk walk = walk_trunk(kRead, "cfg:vlan-trunk-configuration { vlan-switched { mode=access @select } }",
                         [](Walk& w) { w.recorder.answer("leaf_lvla_vlantrunkconfiguration_vlanswitched_mode", 0); });
  EXPECT_EQ(walk.tree["vlan-switched/mode"].walk_mark, 0u);
  EXPECT_EQ(walk.tree["vlan-switched/mode"].walk_flags, 0u);
  EXPECT_EQ(walk.tree["vlan-switched"].walk_mark, 3u);
  EXPECT_EQ(walk.state().walk_bits, 0u);
}

// --- Containers that lead nowhere ---

TEST(NativeCfg, makes_nothing_of_what_it_does_not_map) {
  struct {
    yfw_map_walker_fn walker;
    const char* tree;
  } const cases[] = {
      {ymap_vo_oc_vlan_vexnetosl2ethinfracfg_augment_lvle_interface_configuration, "cfg:mac-accounting { a=1 }"},
      {ymap_vo_oc_vlan_vexnetosl2ethinfracfg_augment_lvlg_interface_configuration, "cfg:carrier-delay { up=1 }"},
      {ymap_vo_oc_vlan_vexnetosl2ethinfracfg_augment_lvlc_l2_transport, "cfg:l2-ethernet-features { x }"},
  };
  for (const auto& c : cases) {
    const Walk walk(c.walker, kRead, c.tree);
    EXPECT_EQ(walk.code, 0u);
    EXPECT_EQ(walk.recorder.calls().find("add_path"), std::string::npos);
    EXPECT_EQ(walk.recorder.errors(), "");
  }
}

TEST(NativeCfg, knows_egress_filtering_only_by_the_second_walker_of_its_container) {
  constexpr char kTree[] = "cfg:ethernet-features { egress-filtering { } }";
  {
    const Walk walk(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_augment_lvlf_interface_configuration, kEdit, kTree);
    EXPECT_EQ(walk.code, 0u);
    EXPECT_EQ(walk.handlers(), lines("cont_lvla_ethernetfeatures node=ethernet-features count=1"));
    EXPECT_EQ(who_traced(walk.recorder, "Unsupported tag. Ignoring."), lines("lvla_ethernetfeatures"));
  }
  const Walk walk(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_lvla_ethernetfeatures, kEdit, kTree);
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.handlers(), lines("cont_lvla_ethernetfeatures node=ethernet-features count=1",
                                   "cont_lvla_ethernetfeatures_egressfiltering node=egress-filtering count=0"));
  EXPECT_EQ(who_traced(walk.recorder, "Start"),
            lines("lvla_ethernetfeatures", "lvla_ethernetfeatures_egressfiltering"));
}

TEST(NativeCfg, refuses_null_arguments_at_the_second_walker) {
  for (const bool has_node : {true, false}) {
    Recorder recorder;
    Tree tree("cfg:ethernet-features");
    EXPECT_EQ(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_lvla_ethernetfeatures(
                  recorder.ctx(), has_node ? tree.root() : nullptr, has_node ? nullptr : recorder.output()),
              CERR_INVALID_ARGS);
    EXPECT_EQ(recorder.log(), lines("TRC Start", "ERR Invalid arguments passed!"));
    EXPECT_EQ(who_traced(recorder, "Invalid arguments passed!"), lines("lvla_ethernetfeatures"));
    EXPECT_EQ(recorder.calls(), lines("error_path"));
  }
}

TEST(NativeCfg, does_not_allocate_on_success) {
  Recorder recorder(kRead);
  Tree tree("cfg:vlan-trunk-configuration { vlan-switched { access-vlan=7 } }");
  const AllocationCount count;
  const cerrno code = ymap_vo_oc_vlan_vexnetosl2ethinfracfg_augment_lvlh_interface_configuration(
      recorder.ctx(), tree.root(), recorder.output());
  EXPECT_EQ(count.allocations(), 0u);
  EXPECT_EQ(code, 0u);
}

}  // namespace
