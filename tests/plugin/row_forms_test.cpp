// A user of rows defines the forms that it looks at; every other form is what it is a case of.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "plugin/rows.h"

namespace {

using Names = std::vector<std::string>;

const Names kNodes{
#define NODE(walker, parent, tag) #walker,
#include "openconfig_vlan.def"
};

const Names kLeaves{
#define LEAF(walker, parent, tag) #walker,
#include "openconfig_vlan.def"
};

const Names kRefused{
#define LEAF_UNMAPPED(walker, parent, tag) #walker,
#include "openconfig_vlan.def"
};

const Names kTranslatedContainers{
#define CONTAINER_TO(walker, parent, tag, translation) #walker,
#include "openconfig_vlan.def"
};

const Names kLists{
#define LIST(walker, parent, tag, key, path) #walker,
#include "native_cfg.def"
};

template <typename Wanted>
Names listed(Wanted wanted) {
  Names names;
  for (const rows::Row& row : rows::of(rows::kOpenConfig)) {
    if (wanted(row)) names.push_back(row.walker);
  }
  return names;
}

bool has_translation(const rows::Row& row) {
  return row.translation != "-" && row.translation != "default";
}

using testing::UnorderedElementsAreArray;

TEST(RowForms, end_in_a_node) {
  EXPECT_THAT(kNodes, UnorderedElementsAreArray(listed([](const rows::Row&) { return true; })));
}

TEST(RowForms, of_leaves_are_leaves) {
  EXPECT_THAT(kLeaves, UnorderedElementsAreArray(listed([](const rows::Row& row) { return row.is_leaf(); })));
}

TEST(RowForms, that_nobody_defines_are_nothing) {
  EXPECT_THAT(kRefused, UnorderedElementsAreArray(listed(
                            [](const rows::Row& row) { return row.is_leaf() && row.translation == "default"; })));
  EXPECT_THAT(kTranslatedContainers, UnorderedElementsAreArray(listed([](const rows::Row& row) {
                return row.is_container() && has_translation(row);
              })));
}

TEST(RowForms, of_lists_are_lists) {
  EXPECT_THAT(kLists, testing::ElementsAre("lvla_l2protocols_l2protocol"));
}

}  // namespace
