// The reduced walk of native operational data.
#include <gtest/gtest.h>

#include "plugin/walk.h"

namespace {

using seen::who_traced;
using walks::kEdit;
using walks::kFailure;
using walks::kRead;
using walks::kReadState;
using walks::lines;
using walks::Walk;

constexpr char kNode[] = "list_lvla_vlan_nodes_node";
constexpr char kTrunk[] = "list_lvla_vlan_trunks_trunk";
constexpr char kInterface[] = "list_lvla_vlan_interfaces_interface";
constexpr char kEncapsulation[] = "cont_lvla_vlan_interface_encapsulationdetails";
constexpr char kSwitched[] = "cont_lvla_vlan_trunk_vlanswitched";
constexpr char kNativeVlan[] = "leaf_lvla_vlan_layer3subinterfaces_nativevlan";

// The walk alone: list handlers and translations answer without their bodies.
Walk walk_vlan(uint32_t kind, const std::string& below, const std::function<void(Walk&)>& given = {}) {
  return {ymap_vo_oc_vlan_vexnetosl2ethinfraoper_lvla_vlan, kind, "oper:vlan { " + below + " }", [&given](Walk& w) {
            for (const char* handler : {kTrunk, kInterface, kEncapsulation, kSwitched, kNativeVlan}) {
              w.recorder.answer(handler, 0);
            }
            if (given) given(w);
          }};
}

std::string node(const std::string& below) {
  return "nodes { node { node-id=0/0 " + below + " } }";
}

// The walk up to the children of a node, and from there.
const std::string kIn =
    lines("add_to_node_hierarchy node=vlan level=1", "cont_lvla_vlan node=vlan count=1",
          "add_to_node_hierarchy node=nodes level=1", "cont_lvla_vlan_nodes node=nodes count=1",
          "add_to_node_hierarchy node=node level=2", "update_current_list_node path=/vlan/nodes/node",
          "list_lvla_vlan_nodes_node node=node", "add_to_output_list node=node tree=output");
const std::string kOut = lines("remove_from_node_hierarchy node=node", "remove_from_output_list node=node tree=output",
                               "remove_from_node_hierarchy node=nodes", "remove_from_node_hierarchy node=vlan");

std::string opened(const std::string& entry, const std::string& path, const std::string& handler) {
  return lines("add_to_node_hierarchy node=" + entry + " level=2", "update_current_list_node path=" + path,
               handler + " node=" + entry, "add_to_output_list node=" + entry + " tree=output");
}

std::string closed(const std::string& entry) {
  return lines("remove_from_node_hierarchy node=" + entry, "remove_from_output_list node=" + entry + " tree=output");
}

constexpr char kTrunkPath[] = "/vlan/nodes/node/trunks/trunk";
constexpr char kInterfacePath[] = "/vlan/nodes/node/interfaces/interface";

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

class NativeOperKind : public testing::TestWithParam<uint32_t> {};

TEST_P(NativeOperKind, other_than_a_state_read_descends_nowhere) {
  const Walk walk = walk_vlan(GetParam(), node("trunks { }") + " x:stranger");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.seen(), lines("add_to_node_hierarchy node=vlan level=1", "cont_lvla_vlan node=vlan count=2",
                               "lvla_vlan_parse_augments node=stranger", "remove_from_node_hierarchy node=vlan"));
  EXPECT_EQ(who_traced(walk.recorder, "Unsupported tag. Ignoring."), lines("lvla_vlan"));
}

INSTANTIATE_TEST_SUITE_P(NativeOper, NativeOperKind, testing::Values(kRead, kEdit, 9u, 11u, 0xffffffffu));

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

// --- List entries ---

struct ListCase {
  const char* name;
  const char* tree;  // of two entries, below a node unless they are nodes
  const char* entry;
  const char* path;
  const char* key;
  const char* handler;
};

std::ostream& operator<<(std::ostream& out, const ListCase& c) {
  return out << c.name;
}

class NativeOperList : public testing::TestWithParam<ListCase> {
 protected:
  static Walk walk(const std::string& first, const std::string& second, const std::function<void(Walk&)>& given = {}) {
    const ListCase& c = GetParam();
    std::string tree = c.tree;
    tree.replace(tree.find('1'), 1, std::string(c.entry) + " " + first);
    tree.replace(tree.find('2'), 1, std::string(c.entry) + " " + second);
    return walk_vlan(kReadState, tree, given);
  }

  static std::string keyed(const std::string& value) {
    return "{ " + std::string(GetParam().key) + "=" + value + " other=x }";
  }

  // The calls from the first entry's on, up to the last one's end.
  static std::string entries(const Walk& walk) {
    const std::string all = walk.seen();
    const std::string first = "add_to_node_hierarchy node=" + std::string(GetParam().entry) + " level=2";
    std::string found;
    std::istringstream lines_of(all.substr(all.find(first)));
    const std::string enclosing = "remove_from_node_hierarchy node=" + std::string(GetParam().entry) + "s";
    for (std::string line; std::getline(lines_of, line) && line != enclosing;) found += line + '\n';
    return found;
  }

  static std::string open() { return opened(GetParam().entry, GetParam().path, GetParam().handler); }
  static std::string close() { return closed(GetParam().entry); }
  static std::string entered() {
    return lines("add_to_node_hierarchy node=" + std::string(GetParam().entry) + " level=2",
                 "update_current_list_node path=" + std::string(GetParam().path));
  }
  static std::string handled() { return lines(std::string(GetParam().handler) + " node=" + GetParam().entry); }
  static std::string left() { return lines("remove_from_node_hierarchy node=" + std::string(GetParam().entry)); }
};

TEST_P(NativeOperList, entries_are_walked_in_order_with_their_keys_marked) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) { w.recorder.state.output_depth = 3; });
  EXPECT_EQ(done.code, 0u);
  EXPECT_EQ(entries(done), open() + close() + open() + close());
  EXPECT_EQ(done.state().output_depth, 3u);
}

TEST_P(NativeOperList, marks_the_key_alone) {
  Walk done = walk(keyed("a"), keyed("b"));
  const std::string path = std::string(GetParam().name) == "node"
                               ? "nodes/node"
                               : std::string("nodes/node/") + GetParam().entry + "s/" + GetParam().entry;
  const yfw_datatree& entry = done.tree[path];
  EXPECT_EQ(entry.subtrees[0].is_key, 1);
  EXPECT_EQ(entry.subtrees[0].key_flags, 0x02);
  EXPECT_EQ(entry.subtrees[1].is_key, 0);
  EXPECT_EQ(entry.subtrees[1].key_flags, 0);
}

TEST_P(NativeOperList, entry_without_children_is_logged_and_handled) {
  const Walk done = walk("", keyed("b"));
  EXPECT_EQ(done.code, 0u);
  EXPECT_EQ(done.recorder.errors(), lines("ERR No keys specified with a list node."));
  EXPECT_EQ(entries(done), open() + close() + open() + close());
}

TEST_P(NativeOperList, entry_that_the_framework_refuses_is_still_put_on_the_output_list) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) {
    const int earlier = std::string(GetParam().name) == "node" ? 0 : 1;
    w.recorder.answer("update_current_list_node", kFailure, earlier + 1);
  });
  EXPECT_EQ(done.code, kFailure);
  EXPECT_EQ(entries(done),
            entered() + lines("add_to_output_list node=" + std::string(GetParam().entry) + " tree=output") + close());
}

TEST_P(NativeOperList, entry_whose_handler_fails_ends_the_walk) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) { w.recorder.answer(GetParam().handler, kFailure, 1); });
  EXPECT_EQ(done.code, kFailure);
  EXPECT_EQ(entries(done), open() + close());
  EXPECT_EQ(who_traced(done.recorder, "Processing tag 'other'"), "");
  EXPECT_EQ(done.recorder.calls().find("error_path"), std::string::npos);
}

TEST_P(NativeOperList, entry_that_its_handler_declares_done_is_skipped) {
  const Walk done =
      walk(keyed("a"), keyed("b"), [](Walk& w) { w.recorder.answer(GetParam().handler, CERR_SKIP_SUBTREE, 1); });
  EXPECT_EQ(done.code, 0u);
  EXPECT_EQ(entries(done), entered() + handled() + left() + open() + close());
}

TEST_P(NativeOperList, entry_is_taken_off_the_output_list_only_where_it_deepened_it) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) { w.recorder.keep_output_depth(); });
  EXPECT_EQ(done.code, 0u);
  const std::string entry = entered() + handled() +
                            lines("add_to_output_list node=" + std::string(GetParam().entry) + " tree=output") + left();
  EXPECT_EQ(entries(done), entry + entry);
}

TEST_P(NativeOperList, failing_add_to_the_output_list_changes_nothing_else) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) { w.recorder.answer("add_to_output_list", kFailure); });
  EXPECT_EQ(done.code, 0u);
  EXPECT_EQ(done.seen().find("remove_from_output_list"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(NativeOper, NativeOperList,
                         testing::Values(ListCase{"node", "nodes { 1 2 }", "node", "/vlan/nodes/node", "node-id",
                                                  kNode},
                                         ListCase{"trunk", "nodes { node { node-id=0 trunks { 1 2 } } }", "trunk",
                                                  kTrunkPath, "interface", kTrunk},
                                         ListCase{"interface", "nodes { node { node-id=0 interfaces { 1 2 } } }",
                                                  "interface", kInterfacePath, "interface", kInterface}),
                         [](const auto& info) { return std::string(info.param.name); });

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
