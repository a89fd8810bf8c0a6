// Turns the rows of a family into its exported walkers and its augment hooks. The including file defines
// OC_VLAN_NAME(name), OC_VLAN_HOOK(name), which defines the hook of that name, `kFamily` and the node table `kTable`.
#define OC_VLAN_EXPORT(walker, function, row)                                                      \
  cerrno OC_VLAN_NAME(walker)(yfw_map_ctx * ctx, const yfw_datatree* node, yfw_datatree* output) { \
    return ::oc_vlan::function(kFamily, kTable.rows[row], ctx, node, output);                      \
  }

#define ENTRY(name)                                          \
  OC_VLAN_EXPORT(augment_##name, walk_entry, augment_##name) \
  OC_VLAN_HOOK(name##_parse_augments)
#define ROOT(walker)                   \
  OC_VLAN_EXPORT(walker, walk, walker) \
  OC_VLAN_HOOK(walker##_parse_augments)
#define SECOND_WALKER(row, walker) OC_VLAN_EXPORT(walker, walk, row)
#define CONTAINER(walker, parent, tag) OC_VLAN_HOOK(walker##_parse_augments)
#define CONTAINER_TO(walker, parent, tag, translation) OC_VLAN_HOOK(walker##_parse_augments)
#define CONTAINER_UNMAPPED(walker, parent, tag) OC_VLAN_HOOK(walker##_parse_augments)
#define LIST(walker, parent, tag, key, path) OC_VLAN_HOOK(walker##_parse_augments)
#define LIST_UNMAPPED(walker, parent, tag, key, path) OC_VLAN_HOOK(walker##_parse_augments)
#define LEAF(walker, parent, tag)
#define LEAF_TO(walker, parent, tag, translation)
#define LEAF_UNMAPPED(walker, parent, tag)
