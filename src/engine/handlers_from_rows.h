// Turns the rows of a family into its default handlers and its per-node handlers. The including file defines
// OC_VLAN_NAME(name), the exported name, and OC_VLAN_ROWS, the file of rows.
#include "engine/families.h"
#include "engine/handler.h"
#include "oc_vlan/handlers.h"
#include "oc_vlan/oc_vlan.h"

#define DEFAULT_HANDLERS()                                                                              \
  cerrno OC_VLAN_NAME(duck_map_container)(yfw_map_ctx*, const yfw_datatree*, uint32_t, yfw_datatree*) { \
    return 0;                                                                                           \
  }                                                                                                     \
  cerrno OC_VLAN_NAME(duck_map_list)(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*) {                \
    return 0;                                                                                           \
  }                                                                                                     \
  cerrno OC_VLAN_NAME(duck_map_leaf)(yfw_map_ctx * ctx, const yfw_datatree* node, yfw_datatree*) {      \
    return ::oc_vlan::refuse_leaf(ctx, node);                                                           \
  }

#define OC_VLAN_FRAME(name) (::oc_vlan::Frame{ctx, OC_VLAN_TEXT(OC_VLAN_NAME(name))})
#define OC_VLAN_DEFAULT(name) [[gnu::weak, gnu::alias(OC_VLAN_TEXT(OC_VLAN_NAME(name)))]]

#define ROOT(walker)                                                                                      \
  [[gnu::weak]] cerrno OC_VLAN_NAME(cont_##walker)(yfw_map_ctx * ctx, const yfw_datatree* node, uint32_t, \
                                                   yfw_datatree* output) {                                \
    return ::oc_vlan::begin_container(OC_VLAN_FRAME(cont_##walker), __LINE__, node, output);              \
  }
#define CONTAINER(walker, parent, tag) ROOT(walker)

#define CONTAINER_TO(walker, parent, tag, translation)                                                          \
  [[gnu::weak]] cerrno OC_VLAN_NAME(cont_##walker)(yfw_map_ctx * ctx, const yfw_datatree* node, uint32_t count, \
                                                   yfw_datatree* output) {                                      \
    const cerrno code = ::oc_vlan::begin_container(OC_VLAN_FRAME(cont_##walker), __LINE__, node, output);       \
    return code != 0 ? code : translation(ctx, node, count, output);                                            \
  }

#define CONTAINER_UNMAPPED(walker, parent, tag) \
  OC_VLAN_DEFAULT(duck_map_container)           \
  cerrno OC_VLAN_NAME(cont_##walker)(yfw_map_ctx*, const yfw_datatree*, uint32_t, yfw_datatree*);

#define LIST(walker, parent, tag, key, path)                                                                          \
  [[gnu::weak]] cerrno OC_VLAN_NAME(list_##walker)(yfw_map_ctx * ctx, const yfw_datatree* node, yfw_datatree* output, \
                                                   yfw_datatree*) {                                                   \
    if (node != nullptr && output != nullptr) return 0;                                                               \
    return ::oc_vlan::refuse_arguments(OC_VLAN_FRAME(list_##walker), __LINE__);                                       \
  }

#define LIST_UNMAPPED(walker, parent, tag, key, path) \
  OC_VLAN_DEFAULT(duck_map_list)                      \
  cerrno OC_VLAN_NAME(list_##walker)(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*);

#define LEAF_TO(walker, parent, tag, translation)                                               \
  [[gnu::weak]] cerrno OC_VLAN_NAME(leaf_##walker)(yfw_map_ctx * ctx, const yfw_datatree* node, \
                                                   yfw_datatree* output) {                      \
    if (node != nullptr && output != nullptr) return translation(ctx, node, output);            \
    return ::oc_vlan::refuse_arguments(OC_VLAN_FRAME(leaf_##walker), __LINE__);                 \
  }

#define LEAF(walker, parent, tag) LEAF_TO(walker, parent, tag, OC_VLAN_NAME(man_leaf_##walker))

#define LEAF_UNMAPPED(walker, parent, tag) \
  OC_VLAN_DEFAULT(duck_map_leaf)           \
  cerrno OC_VLAN_NAME(leaf_##walker)(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*);

#include OC_VLAN_ROWS
