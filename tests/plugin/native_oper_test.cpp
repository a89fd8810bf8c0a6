// The reduced walk of native operational data.
#include <gtest/gtest.h>

#include "plugin/native_oper_walk.h"

namespace native_oper {
namespace {

using seen::who_traced;
using walks::kEdit;
using walks::kFailure;
using walks::kRead;
using walks::kReadState;
using walks::lines;
using walks::Walk;

TEST(NativeOper, visits_every_node_that_it_knows) {
  Walk walk =
      walk_vlan(kReadState, node("trunks { trunk { interface=E0 layer3-sub-interfaces { native-vlan=7 } "
                                 "vlan-switched { mode=x } } } "
                                 "interfaces { interface { interface=E0.1 encapsulation-details { tag=1 } } }"));
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.seen(),
            kIn + lines("add_to_node_hierarchy node=trunks level=1", "cont_lvla_vlan_node_trunks node=trunks count=1") +
                opened("trunk", kTrunkPath, kTrunk) +
                lines("add_to_node_hierarchy node=layer3-sub-interfaces level=1",
                      "cont_lvla_vlan_trunk_layer3subinterfaces node=layer3-sub-interfaces count=1",
                      "leaf_lvla_vlan_layer3subinterfaces_nativevlan node=native-vlan",
                      "remove_from_node_hierarchy node=layer3-sub-interfaces",
                      "add_to_node_hierarchy node=vlan-switched level=1",
                      "cont_lvla_vlan_trunk_vlanswitched node=vlan-switched count=1",
                      "remove_from_node_hierarchy node=vlan-switched") +
                closed("trunk") +
                lines("remove_from_node_hierarchy node=trunks", "add_to_node_hierarchy node=interfaces level=1",
                      "cont_lvla_vlan_node_interfaces node=interfaces count=1") +
                opened("interface", kInterfacePath, kInterface) +
                lines("add_to_node_hierarchy node=encapsulation-details level=1",
                      "cont_lvla_vlan_interface_encapsulationdetails node=encapsulation-details count=1",
                      "remove_from_node_hierarchy node=encapsulation-details") +
                closed("interface") + lines("remove_from_node_hierarchy node=interfaces") + kOut);
  EXPECT_EQ(who_traced(walk.recorder, "Start"),
            lines("lvla_vlan", "cont_lvla_vlan", "lvla_vlan_nodes", "cont_lvla_vlan_nodes", "lvla_vlan_nodes_node",
                  "lvla_vlan_node_trunks", "cont_lvla_vlan_node_trunks", "lvla_vlan_trunks_trunk",
                  "lvla_vlan_trunk_layer3subinterfaces", "cont_lvla_vlan_trunk_layer3subinterfaces",
                  "lvla_vlan_layer3subinterfaces_nativevlan", "lvla_vlan_trunk_vlanswitched",
                  "lvla_vlan_node_interfaces", "cont_lvla_vlan_node_interfaces", "lvla_vlan_interfaces_interface",
                  "lvla_vlan_interface_encapsulationdetails"));
  EXPECT_EQ(who_traced(walk.recorder, "End"),
            lines("lvla_vlan_layer3subinterfaces_nativevlan", "lvla_vlan_trunk_layer3subinterfaces",
                  "lvla_vlan_trunk_vlanswitched", "lvla_vlan_trunks_trunk", "lvla_vlan_node_trunks",
                  "lvla_vlan_interface_encapsulationdetails", "lvla_vlan_interfaces_interface",
                  "lvla_vlan_node_interfaces", "lvla_vlan_nodes_node", "lvla_vlan_nodes", "lvla_vlan"));
  EXPECT_EQ(who_traced(walk.recorder, "Processing tag 'native-vlan'"), lines("lvla_vlan_trunk_layer3subinterfaces"));
  EXPECT_EQ(walk.state().output_depth, 0u);
}

TEST(NativeOper, leads_to_the_translations) {
  const Walk walk(
      ymap_vo_oc_vlan_vexnetosl2ethinfraoper_lvla_vlan, kReadState,
      "oper:vlan { " +
          node("trunks { trunk { interface=E0 layer3-sub-interfaces { native-vlan=7 } vlan-switched { } } } "
               "interfaces { interface { interface=E0.1 encapsulation-details { } } }") +
          " }",
      [](Walk& w) {
        w.recorder.node_info(kTrunkPath, "interface", "E0");
        w.recorder.node_info(kInterfacePath, "interface", "E0.1");
      });
  EXPECT_EQ(walk.code, 0u);
  const std::string starts = who_traced(walk.recorder, "Start");
  for (const char* translation : {"list_lvla_vlan_trunks_trunk\n", "vex2_oc_native_vlan\n", "vex2_oc_vlanswitched\n",
                                  "list_lvla_vlan_interfaces_interface\n", "vex2_oc_encapsulationdetails\n"}) {
    EXPECT_NE(starts.find(translation), std::string::npos) << translation << starts;
  }
}

TEST(NativeOper, refuses_null_arguments_at_the_exported_root) {
  for (const bool has_node : {true, false}) {
    walks::Recorder recorder(kReadState);
    walks::Tree tree("oper:vlan { nodes }");
    EXPECT_EQ(ymap_vo_oc_vlan_vexnetosl2ethinfraoper_lvla_vlan(recorder.ctx(), has_node ? tree.root() : nullptr,
                                                               has_node ? nullptr : recorder.output()),
              CERR_INVALID_ARGS);
    EXPECT_EQ(recorder.log(), lines("TRC Start", "ERR Invalid arguments passed!"));
    EXPECT_EQ(who_traced(recorder, "Invalid arguments passed!"), lines("lvla_vlan"));
    EXPECT_EQ(recorder.calls(), lines("error_path"));
  }
}

class NativeOperKind : public testing::TestWithParam<uint32_t> {};

TEST_P(NativeOperKind, other_than_a_state_read_descends_nowhere) {
  const Walk walk = walk_vlan(GetParam(), node("trunks { }") + " x:stranger");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.seen(), lines("add_to_node_hierarchy node=vlan level=1", "cont_lvla_vlan node=vlan count=2",
                               "lvla_vlan_parse_augments node=stranger", "remove_from_node_hierarchy node=vlan"));
  EXPECT_EQ(who_traced(walk.recorder, "Unsupported tag. Ignoring."), lines("lvla_vlan"));
}

INSTANTIATE_TEST_SUITE_P(NativeOper, NativeOperKind, testing::Values(kRead, kEdit, 2u, 9u, 11u, 0x10au, 0xffffffffu));

TEST(NativeOper, keeps_no_books_and_walks_nothing_implicitly) {
  Walk walk = walk_vlan(kReadState, "nodes", [](Walk& w) {
    w.recorder.state.walk_bits = 0xffffffff;
    w.recorder.state.implicit_walk = 1;
    w.tree.root()->operation = 1;
  });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.seen(),
            lines("add_to_node_hierarchy node=vlan level=1", "cont_lvla_vlan node=vlan count=1 op=1 implicit=1",
                  "add_to_node_hierarchy node=nodes level=1", "cont_lvla_vlan_nodes node=nodes count=0 implicit=1",
                  "remove_from_node_hierarchy node=nodes", "remove_from_node_hierarchy node=vlan"));
  EXPECT_EQ(walk.state().walk_bits, 0xffffffffu);
  EXPECT_EQ(walk.tree.root()->walk_mark, 0u);
  EXPECT_EQ(walk.tree.root()->walk_flags, 0u);
  EXPECT_EQ(walk.tree.root()->operation, 1u);
}

TEST(NativeOper, takes_a_delete_with_children) {
  const Walk walk = walk_vlan(kReadState, "nodes @delete { }");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_NE(walk.handlers().find("cont_lvla_vlan_nodes node=nodes count=0 op=3"), std::string::npos);
}

TEST(NativeOper, ignores_unknown_children_of_its_own_and_gives_others_to_the_hook) {
  const Walk walk = walk_vlan(kReadState, node("interfaces { interface { interface=E0 stranger { } x:other } }"));
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(who_traced(walk.recorder, "Unsupported tag. Ignoring."),
            lines("lvla_vlan_nodes_node", "lvla_vlan_interfaces_interface", "lvla_vlan_interfaces_interface"))
      << "keys are children like any other";
  EXPECT_NE(walk.handlers().find("lvla_vlan_interfaces_interface_parse_augments node=other\n"), std::string::npos);
  EXPECT_EQ(walk.recorder.errors(), "");
  EXPECT_EQ(walk.state().error_tag, nullptr);
}

TEST(NativeOper, visits_the_children_of_the_data_containers_and_knows_none) {
  const Walk walk = walk_vlan(
      kReadState, node("interfaces { interface { interface=E0.1 encapsulation-details { tag=1 x:other } } }"));
  EXPECT_EQ(walk.code, 0u);
  EXPECT_NE(who_traced(walk.recorder, "Unsupported tag. Ignoring.").find("lvla_vlan_interface_encapsulationdetails"),
            std::string::npos);
  EXPECT_NE(walk.handlers().find("lvla_vlan_interface_encapsulationdetails_parse_augments node=other"),
            std::string::npos);
}

TEST(NativeOper, does_not_visit_the_children_of_a_container_whose_translation_fails) {
  const Walk walk = walk_vlan(kReadState,
                              node("interfaces { interface { interface=E0.1 encapsulation-details { tag=1 } } "
                                   "interface { interface=E0.2 } }"),
                              [](Walk& w) { w.recorder.answer(kEncapsulation, kFailure); });
  EXPECT_EQ(walk.code, kFailure);
  EXPECT_EQ(who_traced(walk.recorder, "Processing tag 'tag'"), "");
  EXPECT_EQ(walk.recorder.calls().find("error_path"), std::string::npos);
  const std::string first = opened("interface", kInterfacePath, kInterface);
  EXPECT_EQ(walk.seen().find(first, walk.seen().find(first) + 1), std::string::npos) << "siblings are not visited";
  EXPECT_EQ(walk.seen().substr(walk.seen().find("remove_from_node_hierarchy node=encapsulation-details")),
            lines("remove_from_node_hierarchy node=encapsulation-details") + closed("interface") +
                lines("remove_from_node_hierarchy node=interfaces") + kOut);
}

TEST(NativeOper, stops_at_a_child_without_a_tag_and_at_absent_children) {
  {
    const Walk walk = walk_vlan(kReadState, node("x @notag"));
    EXPECT_EQ(walk.code, CERR_BAD_TREE);
    EXPECT_EQ(walk.recorder.errors(), lines("ERR Tag name is not available!"));
    EXPECT_EQ(who_traced(walk.recorder, "Tag name is not available!"), lines("lvla_vlan_nodes_node"));
  }
  const Walk walk = walk_vlan(kReadState, node("trunks @missing"));
  EXPECT_EQ(walk.code, CERR_BAD_TREE);
  EXPECT_EQ(walk.recorder.errors(), lines("ERR Failed to get subtrees!"));
  EXPECT_EQ(walk.recorder.calls().find("error_path"), std::string::npos);
}

TEST(NativeOper, ends_a_container_that_its_handler_declares_done) {
  const Walk walk = walk_vlan(kReadState, node("trunks { trunk { interface=E0 } } interfaces { }"),
                              [](Walk& w) { w.recorder.answer("cont_lvla_vlan_node_trunks", CERR_SKIP_SUBTREE); });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.handlers().find(kTrunk), std::string::npos);
  EXPECT_NE(walk.seen().find(lines("remove_from_node_hierarchy node=trunks",
                                   "add_to_node_hierarchy node=interfaces "
                                   "level=1")),
            std::string::npos)
      << walk.seen();
}

TEST(NativeOper, ends_a_trunk_whose_leaf_is_done_and_goes_on_to_the_next) {
  const Walk walk =
      walk_vlan(kReadState,
                node("trunks { trunk { interface=E0 layer3-sub-interfaces { native-vlan=7 } vlan-switched { } } "
                     "trunk { interface=E1 vlan-switched { } } }"),
                [](Walk& w) { w.recorder.answer(kNativeVlan, CERR_SKIP_SUBTREE); });
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.seen(),
            kIn + lines("add_to_node_hierarchy node=trunks level=1", "cont_lvla_vlan_node_trunks node=trunks count=2") +
                opened("trunk", kTrunkPath, kTrunk) +
                lines("add_to_node_hierarchy node=layer3-sub-interfaces level=1",
                      "cont_lvla_vlan_trunk_layer3subinterfaces node=layer3-sub-interfaces count=1",
                      "leaf_lvla_vlan_layer3subinterfaces_nativevlan node=native-vlan",
                      "remove_from_node_hierarchy node=layer3-sub-interfaces") +
                closed("trunk") + opened("trunk", kTrunkPath, kTrunk) +
                lines("add_to_node_hierarchy node=vlan-switched level=1",
                      "cont_lvla_vlan_trunk_vlanswitched node=vlan-switched count=0",
                      "remove_from_node_hierarchy node=vlan-switched") +
                closed("trunk") + lines("remove_from_node_hierarchy node=trunks") + kOut);
  EXPECT_EQ(walk.state().output_depth, 0u);
}

struct ForeignCase {
  const char* name;
  uint32_t kind;
  const char* tree;
  const char* handlers;
};

std::ostream& operator<<(std::ostream& out, const ForeignCase& c) {
  return out << c.name;
}

class NativeOperForeign : public testing::TestWithParam<ForeignCase> {};

TEST_P(NativeOperForeign, child_is_known_by_its_tag_alone_where_it_is_looked_at) {
  const ForeignCase& c = GetParam();
  const Walk walk = walk_vlan(c.kind, c.tree);
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.handlers(), std::string("cont_lvla_vlan node=vlan count=1\n") + c.handlers);
  EXPECT_EQ(who_traced(walk.recorder, "Unsupported tag. Ignoring."), "");
}

constexpr char kNodesKnown[] = "cont_lvla_vlan_nodes node=nodes count=0\n";
constexpr char kNodesForeign[] = "lvla_vlan_parse_augments node=nodes\n";

INSTANTIATE_TEST_SUITE_P(NativeOper, NativeOperForeign,
                         testing::Values(ForeignCase{"state_read", kReadState, "x:nodes", kNodesKnown},
                                         ForeignCase{"state_read_without_namespace", kReadState, "nodes @nons",
                                                     kNodesKnown},
                                         ForeignCase{"read", kRead, "x:nodes", kNodesForeign},
                                         ForeignCase{"edit", kEdit, "x:nodes", kNodesForeign},
                                         ForeignCase{"read_without_namespace", kRead, "nodes @nons", kNodesForeign},
                                         ForeignCase{"stranger_without_namespace", kReadState, "stranger @nons",
                                                     "lvla_vlan_parse_augments node=stranger\n"}),
                         [](const auto& info) { return std::string(info.param.name); });

// key_flags and xpath_status.
using XpathMarks = std::pair<uint8_t, uint32_t>;

class NativeOperXpath : public testing::TestWithParam<XpathMarks> {};

TEST_P(NativeOperXpath, error_needs_both_marks) {
  const Walk walk = walk_vlan(
      kReadState, node("trunks { trunk { interface=E0 layer3-sub-interfaces { native-vlan=7 } } }"), [](Walk& w) {
        yfw_datatree& leaf = w.tree["nodes/node/trunks/trunk/layer3-sub-interfaces/native-vlan"];
        leaf.key_flags = GetParam().first;
        leaf.xpath_status = GetParam().second;
      });
  EXPECT_EQ(who_traced(walk.recorder, "got xpath error node "), "");
  EXPECT_EQ(walk.state().pass_flags, 0u);
  EXPECT_NE(walk.handlers().find(std::string(kNativeVlan) + " node=native-vlan\n"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(NativeOper, NativeOperXpath,
                         testing::Values(XpathMarks{0xf7, 5}, XpathMarks{0x08, 4}, XpathMarks{0x08, 0},
                                         XpathMarks{0x00, 0}));

TEST(NativeOper, tells_of_an_xpath_error_and_translates_the_leaf_all_the_same) {
  const Walk walk =
      walk_vlan(kReadState, node("trunks { trunk { interface=E0 layer3-sub-interfaces { native-vlan=7 @xpath } } }"));
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(who_traced(walk.recorder, "got xpath error node "), lines("lvla_vlan_layer3subinterfaces_nativevlan"));
  EXPECT_EQ(walk.state().pass_flags, 0x100u);
  EXPECT_NE(walk.handlers().find(std::string(kNativeVlan) + " node=native-vlan pass=0x100"), std::string::npos)
      << walk.handlers();
}

}  // namespace
}  // namespace native_oper
