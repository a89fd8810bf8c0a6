// Turns the rows of a family into its node table, its exported walkers and its augment hooks. The including file
// defines OC_VLAN_NAME(name), the exported name; OC_VLAN_ROWS, the file of rows; OC_VLAN_POLICY; and
// OC_VLAN_HOOK(name), which defines the hook of that exported name.
#include "engine/hooks.h"
#include "engine/walker.h"
#include "oc_vlan/handlers.h"

namespace {

// The index of each row in the table.
enum RowId : int {
#define ENTRY(name) augment_##name,
#define ROOT(walker) walker,
#define SECOND_WALKER(row, walker) row,
#define NODE(walker, parent, tag) walker,
#include OC_VLAN_ROWS
};

// clang-format off
inline constexpr auto kTable = oc_vlan::link({
#define ENTRY(name)                                      \
  {.kind = ::oc_vlan::Kind::kEntry,                      \
   .walker = OC_VLAN_TEXT(OC_VLAN_NAME(augment_##name)), \
   .line = __LINE__,                                     \
   .hook = OC_VLAN_NAME(name##_parse_augments)},
#define OC_VLAN_CONTAINER_ROW(walker_name, parent_row, tag_text) \
  {.kind = ::oc_vlan::Kind::kContainer,                          \
   .walker = OC_VLAN_TEXT(OC_VLAN_NAME(walker_name)),            \
   .tag = tag_text,                                              \
   .parent = parent_row,                                         \
   .line = __LINE__,                                             \
   .container = OC_VLAN_NAME(cont_##walker_name),                \
   .hook = OC_VLAN_NAME(walker_name##_parse_augments)},
#define ROOT(walker) OC_VLAN_CONTAINER_ROW(walker, ::oc_vlan::kNone, nullptr)
#define SECOND_WALKER(row, walker) ROOT(walker)
#define CONTAINER(walker, parent, tag) OC_VLAN_CONTAINER_ROW(walker, parent, tag)
#define OC_VLAN_LIST_ROW(handler, walker_name, parent_row, tag_text, key_text, path) \
  {.kind = ::oc_vlan::Kind::kList,                                                   \
   .walker = OC_VLAN_TEXT(OC_VLAN_NAME(walker_name)),                                \
   .tag = tag_text,                                                                  \
   .parent = parent_row,                                                             \
   .line = __LINE__,                                                                 \
   .handler = OC_VLAN_NAME(list_##walker_name),                                      \
   .hook = OC_VLAN_NAME(walker_name##_parse_augments),                               \
   .key = key_text,                                                                  \
   .list_path = path},
#define LIST(walker, parent, tag, key, path) OC_VLAN_LIST_ROW(oper_list, walker, parent, tag, key, path)
#define LIST_UNMAPPED(walker, parent, tag, key, path) OC_VLAN_LIST_ROW(leaf_or_list, walker, parent, tag, key, path)
#define LEAF(walker_name, parent_row, tag_text)       \
  {.kind = ::oc_vlan::Kind::kLeaf,                    \
   .walker = OC_VLAN_TEXT(OC_VLAN_NAME(walker_name)), \
   .tag = tag_text,                                   \
   .parent = parent_row,                              \
   .line = __LINE__,                                  \
   .leaf_or_list = OC_VLAN_NAME(leaf_##walker_name)},
#include OC_VLAN_ROWS
});
// clang-format on
static_assert(oc_vlan::check<kTable>());

}  // namespace

#define OC_VLAN_EXPORT(walker, function, row)                                                      \
  cerrno OC_VLAN_NAME(walker)(yfw_map_ctx * ctx, const yfw_datatree* node, yfw_datatree* output) { \
    return ::oc_vlan::function<OC_VLAN_POLICY>(kTable.rows[row], ctx, node, output);               \
  }
#define OC_VLAN_HOOK_OF(walker) OC_VLAN_HOOK(OC_VLAN_NAME(walker##_parse_augments))

#define ENTRY(name)                                          \
  OC_VLAN_EXPORT(augment_##name, walk_entry, augment_##name) \
  OC_VLAN_HOOK_OF(name)
#define ROOT(walker)                   \
  OC_VLAN_EXPORT(walker, walk, walker) \
  OC_VLAN_HOOK_OF(walker)
#define SECOND_WALKER(row, walker) OC_VLAN_EXPORT(walker, walk, row)
#define CONTAINER(walker, parent, tag) OC_VLAN_HOOK_OF(walker)
#define LIST(walker, parent, tag, key, path) OC_VLAN_HOOK_OF(walker)
#include OC_VLAN_ROWS
