// Turns the rows of a family into stand-ins. The including file defines OC_VLAN_NAME(name).
#include "engine/families.h"

#define OC_VLAN_SEEN(name, ...)                                                                          \
  static const auto own = ::seen::next<decltype(&OC_VLAN_NAME(name))>(OC_VLAN_TEXT(OC_VLAN_NAME(name))); \
  const ::seen::Answer answer = ::seen::write(#name, ctx, node, ::seen::Count{__VA_ARGS__});             \
  if (answer.scripted) return answer.code;

#define OC_VLAN_SEEN_CONTAINER(name)                                                                             \
  cerrno OC_VLAN_NAME(name)(yfw_map_ctx * ctx, const yfw_datatree* node, uint32_t count, yfw_datatree* output) { \
    OC_VLAN_SEEN(name, true, count)                                                                              \
    return own(ctx, node, count, output);                                                                        \
  }
#define OC_VLAN_SEEN_PLAIN(name)                                                                 \
  cerrno OC_VLAN_NAME(name)(yfw_map_ctx * ctx, const yfw_datatree* node, yfw_datatree* output) { \
    OC_VLAN_SEEN(name)                                                                           \
    return own(ctx, node, output);                                                               \
  }

#define ENTRY(name) OC_VLAN_SEEN_PLAIN(name##_parse_augments)
#define ROOT(walker)                    \
  OC_VLAN_SEEN_CONTAINER(cont_##walker) \
  OC_VLAN_SEEN_PLAIN(walker##_parse_augments)
#define CONTAINER(walker, parent, tag) ROOT(walker)
#define LIST(walker, parent, tag, key, path)                                                            \
  cerrno OC_VLAN_NAME(list_##walker)(yfw_map_ctx * ctx, const yfw_datatree* node, yfw_datatree* output, \
                                     yfw_datatree* children) {                                          \
    ::seen::check_children(node, children);                                                             \
    OC_VLAN_SEEN(list_##walker)                                                                         \
    return own(ctx, node, output, children);                                                            \
  }                                                                                                     \
  OC_VLAN_SEEN_PLAIN(walker##_parse_augments)
#define LIST_UNMAPPED(walker, parent, tag, key, path) \
  OC_VLAN_SEEN_PLAIN(list_##walker)                   \
  OC_VLAN_SEEN_PLAIN(walker##_parse_augments)
#define LEAF(walker, parent, tag) OC_VLAN_SEEN_PLAIN(leaf_##walker)
