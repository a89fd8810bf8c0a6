// Instance paths, made of steps and of nodes.
#include "framework/tree/paths.h"

#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include "framework/tree/nodes.h"
#include "models_of_tests.h"

namespace yfw::test {
namespace {

const lys_module* module(const char* name) {
  return ly_ctx_get_module_implemented(compact_models().get(), name);
}

TEST(InstancePaths, NameAModuleWhereItBegins) {
  const lys_module* const interfaces = module("openconfig-interfaces");
  const lys_module* const vlan = module("openconfig-vlan");
  InstancePath path;
  EXPECT_EQ(path.text(), "");
  EXPECT_EQ(path.step(interfaces, "interfaces").step(interfaces, "interface").text(),
            "/openconfig-interfaces:interfaces/interface");
  EXPECT_EQ(path.step(vlan, "vlan").step(vlan, "match").text(),
            "/openconfig-interfaces:interfaces/interface/openconfig-vlan:vlan/match");
  EXPECT_EQ(path.step(nullptr, "unknown").step(vlan, "again").take(),
            "/openconfig-interfaces:interfaces/interface/openconfig-vlan:vlan/match/unknown/openconfig-vlan:again");
}

TEST(InstancePaths, QuoteValuesAsTheyNeedIt) {
  EXPECT_EQ(InstancePath().step(nullptr, "a").predicate("k", "x").predicate(".", "it's").text(),
            "/a[k='x'][.=\"it's\"]");
}

// What is made of nodes finds them again, as far as libyang can look for them.
TEST(InstancePaths, OfNodesLeadToThem) {
  const EditDocument edit = parse_edit(
      compact_models().get(),
      {on_vlan("<match><single-tagged><config><vlan-id>7</vlan-id></config></single-tagged></match>"), Format::xml},
      Operation::merge);
  std::size_t nodes = 0;
  const lyd_node* node = nullptr;
  LYD_TREE_DFS_BEGIN(edit.tree.get(), node) {
    EXPECT_EQ(node_at(edit.tree, InstancePath(node).text()), node) << InstancePath(node).text();
    ++nodes;
    LYD_TREE_DFS_END(edit.tree.get(), node);
  }
  EXPECT_GT(nodes, 8U);
}

TEST(InstancePaths, OfNothingAreThatOfTheTop) {
  EXPECT_EQ(InstancePath(nullptr).text(), "");
}

}  // namespace
}  // namespace yfw::test
