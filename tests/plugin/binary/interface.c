/* The binary interface, as whoever was compiled against it relies on it: sizes, offsets and types of every record on a
 * 64-bit machine, numbers of every code, and the type of every name that is not one of many of its kind. */
#include <stddef.h>

#include "oc_vlan/handlers.h"
#include "oc_vlan/oc_vlan.h"
#include "yfw/platform.h"
#include "yfw/yfw_map.h"

/* A name that is declared, with exactly that type. */
#define HAS(name, ...) _Static_assert(_Generic(&(name), __typeof__(__VA_ARGS__)* : 1, default : 0), #name)
#define SIZE(record, size) _Static_assert(sizeof(record) == (size), #record)
#define MEMBER(record, member, offset, ...)                                                      \
  _Static_assert(offsetof(record, member) == (offset) &&                                         \
                     _Generic(&((record*)0)->member, __typeof__(__VA_ARGS__)* : 1, default : 0), \
                 #record "." #member)
#define NUMBER(name, number) _Static_assert((name) == (number), #name)

typedef cerrno walker(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*);
typedef cerrno container_handler(yfw_map_ctx*, const yfw_datatree*, uint32_t, yfw_datatree*);
typedef cerrno entry_handler(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*, yfw_datatree*);

/* --- Types and codes --- */

SIZE(cerrno, 4);
_Static_assert((cerrno)-1 > 0, "a code has no sign");
_Static_assert(_Generic((yfw_map_walker_fn)0, walker* : 1, default : 0), "yfw_map_walker_fn");
_Static_assert(_Generic((yfw_map_container_fn)0, container_handler* : 1, default : 0), "yfw_map_container_fn");
_Static_assert(_Generic((yfw_map_oper_list_fn)0, entry_handler* : 1, default : 0), "yfw_map_oper_list_fn");

NUMBER(CERR_INVALID_ARGS, 0xaaf2a000);
NUMBER(CERR_BAD_TREE, 0xaaf29e00);
NUMBER(CERR_UNSUPPORTED, 0xaaf2ee00);
NUMBER(CERR_INVALID_VALUE, 0xaaf2f400);
NUMBER(CERR_SKIP_SUBTREE, 0xaaf2f600);
NUMBER(CERR_UNKNOWN_AUGMENT, 0xaaf2f800);

SIZE(vlan_match_et, 4);
NUMBER(INVALID, 0);
NUMBER(SINGLE_TAG, 1);
NUMBER(SINGLE_TAG_RANGE, 2);
NUMBER(SINGLE_TAG_LIST, 3);
NUMBER(DOUBLE_TAG, 4);
NUMBER(DOUBLE_TAG_INNER_LIST, 5);
NUMBER(DOUBLE_TAG_OUTER_LIST, 6);
NUMBER(DOUBLE_TAG_INNER_RANGE, 7);
NUMBER(DOUBLE_TAG_OUTER_RANGE, 8);

NUMBER(YFW_REQUEST_READ, 0);
NUMBER(YFW_REQUEST_EDIT, 1);
NUMBER(YFW_REQUEST_READ_STATE, 10);
NUMBER(YFW_SCOPE_SELECTED_CONTENT, 2);
NUMBER(YFW_READ_FILTER_1, 0x0f);
NUMBER(YFW_READ_FILTER_2, 0x03);
NUMBER(YFW_READ_FILTER_3, 0x03);
NUMBER(YFW_READ_FILTER_4, 0x07);
NUMBER(YFW_READ_FILTER_5, 0x3ffff);
NUMBER(YFW_READ_FILTER_6, 0x03);
NUMBER(YFW_READ_FILTER_7, 0x0f);
NUMBER(YFW_READ_FILTER_8, 0x07);
NUMBER(YFW_READ_FILTER_9, 0x01);
NUMBER(YFW_OPERATION_MERGE, 0);
NUMBER(YFW_OPERATION_REPLACE, 1);
NUMBER(YFW_OPERATION_CREATE, 2);
NUMBER(YFW_OPERATION_DELETE, 3);
NUMBER(YFW_OPERATION_REMOVE, 4);
NUMBER(YFW_MARK_LEAF_READ, 1);
NUMBER(YFW_MARK_CONTAINER_ENTERED, 3);
NUMBER(YFW_MARK_SELECTING_LEAF_READ, 6);
NUMBER(YFW_WALK_FLAG_ENTERED, 0x04);
NUMBER(YFW_NODE_SELECTING_LEAF, 0x02);
NUMBER(YFW_NODE_OPERATION_CHANGED, 0x10);
NUMBER(YFW_NODE_HAS_SUBTREES, 0x40);
NUMBER(YFW_KEY_OF_ENTRY, 0x02);
NUMBER(YFW_KEY_XPATH_ERROR, 0x08);
NUMBER(YFW_KEY_IDENTITY_VALUE, 0x10);
NUMBER(YFW_XPATH_ERROR, 5);
NUMBER(YFW_PASS_REPLACE, 0x40);
NUMBER(YFW_PASS_SECOND, 0x80);
NUMBER(YFW_PASS_XPATH_ERROR, 0x100);
NUMBER(YFW_WALK_IMPLICIT, 0x1);
NUMBER(YFW_WALK_LEAF_READ, 0x2);
NUMBER(YFW_WALK_SELECTING_LEAF_READ, 0x4);
NUMBER(YFW_WALK_SELECTING_LEAF_MET, 0x10000);
NUMBER(YFW_WALK_BITS_KEPT, 0x11111110);
NUMBER(YFW_LEVEL_CONTAINER, 1);
NUMBER(YFW_LEVEL_LIST_ENTRY, 2);
NUMBER(YFW_ADD_LIST_ENTRY, 1);
NUMBER(YFW_ADD_ORDINARY, 1);
NUMBER(YFW_ADD_KEY_OF_NATIVE_ENTRY, 0x20);
NUMBER(YFW_DEBUG_ERROR, 0);
NUMBER(YFW_DEBUG_TRACE, 3);
NUMBER(IMC_FLAG_L2_TRANSPORT, 0x1000);
NUMBER(SYSDB_BIND_FLAGS, 4);

/* --- Records --- */

SIZE(yfw_datatree, 64);
MEMBER(yfw_datatree, tag, 0, const char*);
MEMBER(yfw_datatree, value, 8, char*);
MEMBER(yfw_datatree, ns, 16, const char*);
MEMBER(yfw_datatree, operation, 24, uint32_t);
MEMBER(yfw_datatree, subtrees, 32, yfw_datatree*);
MEMBER(yfw_datatree, subtree_count, 40, uint32_t);
MEMBER(yfw_datatree, walk_mark, 44, uint32_t);
MEMBER(yfw_datatree, walk_flags, 48, uint8_t);
MEMBER(yfw_datatree, is_key, 49, uint8_t);
MEMBER(yfw_datatree, node_flags, 50, uint8_t);
MEMBER(yfw_datatree, key_flags, 51, uint8_t);
MEMBER(yfw_datatree, xpath_status, 52, uint32_t);
MEMBER(yfw_datatree, value_ns, 56, char*);

SIZE(yfw_node_slot, 8);
MEMBER(yfw_node_slot, node, 0, yfw_datatree*);

SIZE(yfw_map_request, 88);
MEMBER(yfw_map_request, request_kind, 0, uint32_t);
MEMBER(yfw_map_request, read_filter_flags_1, 4, uint8_t);
MEMBER(yfw_map_request, read_filter_flags_2, 5, uint8_t);
MEMBER(yfw_map_request, read_filter_flags_3, 6, uint8_t);
MEMBER(yfw_map_request, read_filter_flags_4, 7, uint8_t);
MEMBER(yfw_map_request, read_filter_flags_5, 8, uint32_t);
MEMBER(yfw_map_request, read_filter_flags_6, 12, uint8_t);
MEMBER(yfw_map_request, scope_mode, 16, uint32_t);
MEMBER(yfw_map_request, read_filter_flags_7, 20, uint8_t);
MEMBER(yfw_map_request, read_filter_flags_8, 21, uint8_t);
MEMBER(yfw_map_request, reserved, 22, uint8_t[64]);
MEMBER(yfw_map_request, read_filter_flags_9, 86, uint8_t);

SIZE(yfw_map_req_state, 80);
MEMBER(yfw_map_req_state, request_kind, 0, uint32_t*);
MEMBER(yfw_map_req_state, error_tag, 8, char*);
MEMBER(yfw_map_req_state, pass_flags, 16, uint32_t);
MEMBER(yfw_map_req_state, list_slot, 24, yfw_node_slot);
MEMBER(yfw_map_req_state, walk_locked, 32, uint32_t);
MEMBER(yfw_map_req_state, implicit_walk, 36, uint32_t);
MEMBER(yfw_map_req_state, walk_bits, 40, uint32_t);
MEMBER(yfw_map_req_state, error_message, 48, char*);
MEMBER(yfw_map_req_state, replace_restore, 56, uint32_t);
MEMBER(yfw_map_req_state, output_depth, 60, uint8_t);
MEMBER(yfw_map_req_state, interface_name, 64, const char*);
MEMBER(yfw_map_req_state, subinterface_index, 72, const char*);

SIZE(yfw_debug_filter, 32);
MEMBER(yfw_debug_filter, words, 0, uint64_t[4]);

SIZE(yfw_map_ctx, 72);
MEMBER(yfw_map_ctx, req_state, 0, yfw_map_req_state*);
MEMBER(yfw_map_ctx, debug_filter, 8, yfw_debug_filter);
MEMBER(yfw_map_ctx, err_log, 40, void*);
MEMBER(yfw_map_ctx, trc_log, 48, void*);
MEMBER(yfw_map_ctx, trace_handle, 56, void*);
MEMBER(yfw_map_ctx, trace_on, 64, uint32_t);

SIZE(yfw_node_info, 8);
MEMBER(yfw_node_info, value, 0, const char*);

SIZE(yfw_map_reg_mod_t, 448);
MEMBER(yfw_map_reg_mod_t, tree_name, 0, char[81]);
MEMBER(yfw_map_reg_mod_t, native_ns, 81, char[81]);
MEMBER(yfw_map_reg_mod_t, oc_ns, 162, char[81]);
MEMBER(yfw_map_reg_mod_t, module_name, 243, char[81]);
MEMBER(yfw_map_reg_mod_t, oc_root, 324, char[81]);
MEMBER(yfw_map_reg_mod_t, oc_walker, 408, yfw_map_walker_fn);
MEMBER(yfw_map_reg_mod_t, framework_walkers, 416, yfw_map_walker_fn[2]);
MEMBER(yfw_map_reg_mod_t, native_walker, 432, yfw_map_walker_fn);
MEMBER(yfw_map_reg_mod_t, extra, 440, void*);

SIZE(imc_find_request, 64);
MEMBER(imc_find_request, name, 0, char[64]);

SIZE(imc_find_reply, 8);
MEMBER(imc_find_reply, handle, 0, uint32_t);
MEMBER(imc_find_reply, status, 4, cerrno);

SIZE(imc_flags_reply, 8);
MEMBER(imc_flags_reply, flags, 0, uint32_t);
MEMBER(imc_flags_reply, status, 4, cerrno);

/* --- Services --- */

HAS(yfw_map_is_request_add, int(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*));
HAS(yfw_map_is_request_delete, int(const yfw_datatree*));
HAS(yfw_map_do_these_match, int(const char*, const char*));
HAS(yfw_map_datatree_add_path_flagged, cerrno(yfw_map_ctx*, yfw_datatree*, const char*, const char*, const char*,
                                              const yfw_datatree*, yfw_node_slot*, uint32_t, uint32_t));
HAS(yfw_map_add_to_node_hierarchy, cerrno(yfw_map_ctx*, const yfw_datatree*, uint32_t));
HAS(yfw_map_remove_from_node_hierarchy, cerrno(yfw_map_ctx*, const yfw_datatree*));
HAS(yfw_map_get_node_info, cerrno(yfw_map_ctx*, const char*, const char*, yfw_node_info*));
HAS(yfw_map_get_subtrees, cerrno(yfw_map_ctx*, const yfw_datatree*, yfw_datatree**, uint32_t*));
HAS(yfw_map_search_list,
    cerrno(yfw_map_ctx*, yfw_datatree*, yfw_node_slot*, const char*, const char*, const char*, const char*));
HAS(yfw_map_search_or_add_list,
    cerrno(yfw_map_ctx*, yfw_datatree*, yfw_node_slot*, const char*, const char*, const char*, const char*));
HAS(yfw_map_update_current_list_node, cerrno(yfw_map_ctx*, const char*));
HAS(yfw_map_validate_data_ns, int(yfw_map_ctx*, const yfw_datatree*, const char*, uint32_t));
HAS(yfw_map_copy_trim_path_list_ctx, cerrno(yfw_map_ctx*, const char*));
HAS(yfw_map_free_trim_path_list_ctx, void(yfw_map_ctx*));
HAS(yfw_add_to_output_list_ctx, cerrno(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*));
HAS(yfw_remove_from_output_list_ctx, cerrno(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*));
HAS(yfw_oc_error_path, void(yfw_map_ctx*));
HAS(yfw_debug_should_log, int(const yfw_debug_filter*, int));
HAS(ret_nc_yfw_trace_index_incr, uint32_t(void));
HAS(yfw_strdup, char*(const char*, const char*));
HAS(yfw_strcpy_s, int(const char*, char*, size_t, const char*));
HAS(yfw_strncpy_s, int(const char*, char*, size_t, const char*, size_t));
HAS(cerr_strerror, const char*(cerrno));
HAS(ymap_ov_ocif_openconfiginterfaces_lvla_interfaces, cerrno(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*));
HAS(yfw_ocifmgr_im_conn, void*);
HAS(kos_named_free, void(void*));
HAS(_kos_dt_log_filter_adv, void(void*, int, int, int, int, int, uint32_t*, const char*, ...));
HAS(_lstrace, void(void*, uint64_t, const char*));
HAS(imc_interface_find, cerrno(void*, uint32_t, const imc_find_request*, imc_find_reply*));
HAS(imc_interface_get_flags, cerrno(void*, uint32_t, const uint32_t*, imc_flags_reply*));
HAS(_sysdb_bind, int(uint64_t*, const char*, uint32_t));
HAS(sysdb_item_get, cerrno(uint64_t, const char*, void**, uint32_t*, uint32_t*, uint32_t));
HAS(tuple_unpack_mask, cerrno(const void*, uint32_t, const char*, ...));

/* --- Exports; the test adds those that their names make walkers, handlers or hooks --- */

HAS(yfw_map_reg_ocvlan_oper, void(yfw_map_reg_mod_t*));
HAS(yfw_vlan_sysdb_init, int(void));
HAS(vlan_cfg_sysdb_connid, uint64_t);
HAS(vlan_match_type_string, const char* const[10]);
HAS(vlan_id_outer_list_native_path, const char* const[10]);
HAS(vlan_id_inner_list_native_path, const char* const[10]);
HAS(check_subintf_l2_or_l3, cerrno(yfw_map_ctx*, int*));
HAS(check_l2_vlan_match_type, vlan_match_et(yfw_map_ctx*));
HAS(check_l3_vlan_match_type, vlan_match_et(yfw_map_ctx*));
HAS(check_interface_mode_set_in_subtree, int(const yfw_datatree*));
HAS(check_switched_mode_set_in_sysdb, int(yfw_map_ctx*));
HAS(check_switched_vlan_cfgd_on_ether_or_bundle, int(const char*));
HAS(oc2_vex_singletag_list_cfg, container_handler);
HAS(oc2_vex_doubletag_innerlist_cfg, container_handler);
HAS(oc2_vex_doubletag_outerlist_cfg, container_handler);
HAS(oc2_vex_switched_vlan_cfg_nativevlan_and_trunkvlans, container_handler);
HAS(map_vex_to_oc_l3_vlan, container_handler);
HAS(vex2_oc_encapsulationdetails, container_handler);
HAS(vex2_oc_vlanswitched, container_handler);
