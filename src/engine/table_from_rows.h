// Turns the rows of a family into its node table. The including file defines OC_VLAN_NAME(name), which puts the
// family's prefix before a name, makes the row ids (ids_from_rows.h), and then includes the family's rows.
#define OC_VLAN_TEXT_OF(name) #name
#define OC_VLAN_TEXT(name) OC_VLAN_TEXT_OF(name)

#define ENTRY(name)                                      \
  {.kind = ::oc_vlan::Kind::kEntry,                      \
   .walker = OC_VLAN_TEXT(OC_VLAN_NAME(augment_##name)), \
   .tag = nullptr,                                       \
   .parent = ::oc_vlan::kNone,                           \
   .line = __LINE__,                                     \
   .hook = OC_VLAN_NAME(name##_parse_augments)},

#define SECOND_WALKER(row, walker_name)               \
  {.kind = ::oc_vlan::Kind::kContainer,               \
   .walker = OC_VLAN_TEXT(OC_VLAN_NAME(walker_name)), \
   .tag = nullptr,                                    \
   .parent = ::oc_vlan::kNone,                        \
   .line = __LINE__,                                  \
   .container = OC_VLAN_NAME(cont_##walker_name),     \
   .hook = OC_VLAN_NAME(walker_name##_parse_augments)},
#define ROOT(walker_name) SECOND_WALKER(walker_name, walker_name)

#define CONTAINER(walker_name, parent_row, tag_text)  \
  {.kind = ::oc_vlan::Kind::kContainer,               \
   .walker = OC_VLAN_TEXT(OC_VLAN_NAME(walker_name)), \
   .tag = tag_text,                                   \
   .parent = parent_row,                              \
   .line = __LINE__,                                  \
   .container = OC_VLAN_NAME(cont_##walker_name),     \
   .hook = OC_VLAN_NAME(walker_name##_parse_augments)},

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

// What only handlers tell apart.
#define CONTAINER_TO(walker, parent, tag, translation) CONTAINER(walker, parent, tag)
#define CONTAINER_UNMAPPED(walker, parent, tag) CONTAINER(walker, parent, tag)
#define LEAF_TO(walker, parent, tag, translation) LEAF(walker, parent, tag)
#define LEAF_UNMAPPED(walker, parent, tag) LEAF(walker, parent, tag)
