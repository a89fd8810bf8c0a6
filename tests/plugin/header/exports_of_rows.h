// Turns the rows of a family into its exports. The including file defines OC_VLAN_NAME(name) and EXPORT(kind, type,
// name).
#define DEFAULT_HANDLERS()                                       \
  EXPORT(default_handler, kContainerHandler, duck_map_container) \
  EXPORT(default_handler, kHandler, duck_map_list)               \
  EXPORT(default_handler, kHandler, duck_map_leaf)
#define ENTRY(name)                       \
  EXPORT(walker, kWalker, augment_##name) \
  EXPORT(hook, kHandler, name##_parse_augments)
#define SECOND_WALKER(row, walker_name) EXPORT(walker, kWalker, walker_name)
#define ROOT(walker_name)              \
  EXPORT(walker, kWalker, walker_name) \
  CONTAINER(walker_name, , )
#define CONTAINER(walker, parent, tag)                \
  EXPORT(container, kContainerHandler, cont_##walker) \
  EXPORT(hook, kHandler, walker##_parse_augments)
#define LIST(walker, parent, tag, key, path) \
  EXPORT(list, kEntryHandler, list_##walker) \
  EXPORT(hook, kHandler, walker##_parse_augments)
#define LIST_UNMAPPED(walker, parent, tag, key, path) \
  EXPORT(list, kHandler, list_##walker)               \
  EXPORT(hook, kHandler, walker##_parse_augments)
#define LEAF(walker, parent, tag) EXPORT(leaf, kHandler, leaf_##walker)
