/* The mapping framework as a plug-in sees it: its records, its services and the namespaces of the mapped models.
 *
 * The framework owns every record here and lends it for the length of one call. A plug-in reads the records, writes
 * only the members that say so, and builds output only through the services. Calls of one request come from one
 * thread; services take no lock.
 */
#ifndef YFW_YFW_MAP_H
#define YFW_YFW_MAP_H

#include <stddef.h>
#include <stdint.h>

#include "yfw/cerrno.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Whoever offers these services exports them, however it is built. */
#pragma GCC visibility push(default)

/* Namespaces of the mapped modules. */
#define YFW_OPENCONFIG_VLAN_NS "http://openconfig.net/yang/vlan"
#define YFW_OPENCONFIG_VLAN_TYPES_NS "http://openconfig.net/yang/vlan-types"
#define YFW_OPENCONFIG_INTERFACES_NS "http://openconfig.net/yang/interfaces"
#define YFW_OPENCONFIG_IF_ETHERNET_NS "http://openconfig.net/yang/interfaces/ethernet"
#define YFW_OPENCONFIG_IF_AGGREGATE_NS "http://openconfig.net/yang/interfaces/aggregate"
#define YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg"
#define YFW_VEXNET_OS_L2_ETH_INFRA_OPER_NS "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-oper"

/* --- Numbers ---------------------------------------------------------------------------------------------------- */

/* Kinds of a request: yfw_map_request.request_kind. Every kind that is neither of the two reads is an edit. */
enum { YFW_REQUEST_READ = 0, YFW_REQUEST_EDIT = 1, YFW_REQUEST_READ_STATE = 10 };

/* yfw_map_request.scope_mode: configuration is not wanted when a content-selection flag is set. */
enum { YFW_SCOPE_SELECTED_CONTENT = 2 };

/* The bits of the content-selection flags that count, field by field. */
enum {
  YFW_READ_FILTER_1 = 0x0f,
  YFW_READ_FILTER_2 = 0x03,
  YFW_READ_FILTER_3 = 0x03,
  YFW_READ_FILTER_4 = 0x07,
  YFW_READ_FILTER_5 = 0x3ffff,
  YFW_READ_FILTER_6 = 0x03,
  YFW_READ_FILTER_7 = 0x0f,
  YFW_READ_FILTER_8 = 0x07,
  YFW_READ_FILTER_9 = 0x01
};

/* Operations of an edit: yfw_datatree.operation. Delete wants the node to be there, remove does not. */
enum {
  YFW_OPERATION_MERGE = 0,
  YFW_OPERATION_REPLACE = 1,
  YFW_OPERATION_CREATE = 2,
  YFW_OPERATION_DELETE = 3,
  YFW_OPERATION_REMOVE = 4
};

/* yfw_datatree.walk_mark: what a walker did with the node. */
enum { YFW_MARK_LEAF_READ = 1, YFW_MARK_CONTAINER_ENTERED = 3, YFW_MARK_SELECTING_LEAF_READ = 6 };

/* Bits of yfw_datatree.walk_flags. */
enum { YFW_WALK_FLAG_ENTERED = 0x04 };

/* Bits of yfw_datatree.node_flags: a leaf of a read that selects, a rewritten operation, and children: `subtrees` and
 * `subtree_count` count only where this bit is set. */
enum { YFW_NODE_SELECTING_LEAF = 0x02, YFW_NODE_OPERATION_CHANGED = 0x10, YFW_NODE_HAS_SUBTREES = 0x40 };

/* Bits of yfw_datatree.key_flags: a key of its list entry, an xpath error node, an identity with its namespace in
 * `value_ns`. */
enum { YFW_KEY_OF_ENTRY = 0x02, YFW_KEY_XPATH_ERROR = 0x08, YFW_KEY_IDENTITY_VALUE = 0x10 };

/* yfw_datatree.xpath_status of a node marked as an xpath error. */
enum { YFW_XPATH_ERROR = 5 };

/* Bits of yfw_map_req_state.pass_flags: a two-pass replace runs, it is in its second pass, an xpath error was met. */
enum { YFW_PASS_REPLACE = 0x40, YFW_PASS_SECOND = 0x80, YFW_PASS_XPATH_ERROR = 0x100 };

/* Bits of yfw_map_req_state.walk_bits. A selecting leaf sets two of them; all but the last are forgotten when a read
 * enters a container, and YFW_WALK_BITS_KEPT is what stays. */
enum {
  YFW_WALK_IMPLICIT = 0x1,
  YFW_WALK_LEAF_READ = 0x2,
  YFW_WALK_SELECTING_LEAF_READ = 0x4,
  YFW_WALK_SELECTING_LEAF_MET = 0x10000,
  YFW_WALK_BITS_KEPT = 0x11111110
};

/* Levels of yfw_map_add_to_node_hierarchy. */
enum { YFW_LEVEL_CONTAINER = 1, YFW_LEVEL_LIST_ENTRY = 2 };

/* Flags of yfw_map_datatree_add_path_flagged: its list flag, and two bits of its flags word. */
enum { YFW_ADD_LIST_ENTRY = 1 };
enum { YFW_ADD_ORDINARY = 0x01, YFW_ADD_KEY_OF_NATIVE_ENTRY = 0x20 };

/* Levels of the debug log. */
enum { YFW_DEBUG_ERROR = 0, YFW_DEBUG_TRACE = 3 };

/* --- Records ---------------------------------------------------------------------------------------------------- */

/* A node of a request tree, of native data, or of the output. Texts are NUL-terminated UTF-8 owned by the framework. */
typedef struct yfw_datatree yfw_datatree;
struct yfw_datatree {
  const char* tag;        /* element name, e.g. "vlan-id" */
  char* value;            /* value text of a leaf, null otherwise; writable: two translators cut it in place */
  const char* ns;         /* namespace of the element */
  uint32_t operation;     /* effective operation, YFW_OPERATION_... */
  yfw_datatree* subtrees; /* first child; children are contiguous */
  uint32_t subtree_count; /* number of children */
  uint32_t walk_mark;     /* set by walkers, YFW_MARK_... */
  uint8_t walk_flags;     /* set by walkers: YFW_WALK_FLAG_ENTERED */
  uint8_t is_key;         /* 1: key of the enclosing list entry */
  uint8_t node_flags;     /* YFW_NODE_... */
  uint8_t key_flags;      /* YFW_KEY_... */
  uint32_t xpath_status;  /* YFW_XPATH_ERROR on a node that is marked as one */
  char* value_ns;         /* namespace of an identity value, or null */
};

/* A place in which a service leaves the node that it found or made; null where it made none. */
typedef struct yfw_node_slot {
  yfw_datatree* node;
} yfw_node_slot;

/* What is being asked. The read-scope gate tests the bits named here together with `scope_mode`. */
typedef struct yfw_map_request {
  uint32_t request_kind;       /* YFW_REQUEST_... */
  uint8_t read_filter_flags_1; /* content selection: bits YFW_READ_FILTER_1 count, and so on */
  uint8_t read_filter_flags_2;
  uint8_t read_filter_flags_3;
  uint8_t read_filter_flags_4;
  uint32_t read_filter_flags_5;
  uint8_t read_filter_flags_6;
  uint32_t scope_mode; /* YFW_SCOPE_SELECTED_CONTENT, or another way of selecting */
  uint8_t read_filter_flags_7;
  uint8_t read_filter_flags_8;
  uint8_t reserved[64];
  uint8_t read_filter_flags_9;
} yfw_map_request;

/* State of one request, shared by the framework and the walkers. */
typedef struct yfw_map_req_state {
  uint32_t* request_kind;         /* points at yfw_map_request.request_kind */
  char* error_tag;                /* tag of the element that failed; from yfw_strdup */
  uint32_t pass_flags;            /* YFW_PASS_... */
  yfw_node_slot list_slot;        /* where list searches leave the entry that they find */
  uint32_t walk_locked;           /* non-zero: a delete may carry a subtree */
  uint32_t implicit_walk;         /* 1: walkers are driven over a node without children */
  uint32_t walk_bits;             /* YFW_WALK_... */
  char* error_message;            /* text for the requester; from yfw_strdup */
  uint32_t replace_restore;       /* 1 while the operation of a replace is rewritten */
  uint8_t output_depth;           /* depth of the output list */
  const char* interface_name;     /* interface being edited or read, e.g. "Ethernet0/0/1"; may be null */
  const char* subinterface_index; /* its sub-interface, e.g. "100"; may be null */
} yfw_map_req_state;

/* Filter block of the debug log; opaque to a plug-in, which passes its address on. */
typedef struct yfw_debug_filter {
  uint64_t words[4];
} yfw_debug_filter;

/* The first argument of every mapping function. */
typedef struct yfw_map_ctx {
  yfw_map_req_state* req_state; /* null in a context that carries no request */
  yfw_debug_filter debug_filter;
  void* err_log;      /* log handle of error lines */
  void* trc_log;      /* log handle of trace lines */
  void* trace_handle; /* trace buffer */
  uint32_t trace_on;  /* non-zero: the trace buffer is active */
} yfw_map_ctx;

/* Answer of yfw_map_get_node_info. The text lives as long as the request. */
typedef struct yfw_node_info {
  const char* value;
} yfw_node_info;

/* A walker, leaf handler, list handler or augment hook: (ctx, node, output). */
typedef cerrno (*yfw_map_walker_fn)(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*);

/* A container handler: (ctx, node, child count, output); the count is 0 when children are not to be visited. */
typedef cerrno (*yfw_map_container_fn)(yfw_map_ctx*, const yfw_datatree*, uint32_t, yfw_datatree*);

/* A list handler of operational data: (ctx, entry, output, the entry's children). */
typedef cerrno (*yfw_map_oper_list_fn)(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*, yfw_datatree* children);

/* Registration record: what a plug-in maps. The framework owns it; the plug-in fills it. */
typedef struct yfw_map_reg_mod_t {
  char tree_name[81];
  char native_ns[81];
  char oc_ns[81];
  char module_name[81];
  char oc_root[81];
  yfw_map_walker_fn oc_walker;
  yfw_map_walker_fn framework_walkers[2]; /* left as the framework set them */
  yfw_map_walker_fn native_walker;
  void* extra;
} yfw_map_reg_mod_t;

/* Non-zero in an edit whose effective operation on the node is merge, replace or create. */
int yfw_map_is_request_add(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

/* Non-zero when the node's effective operation is delete or remove. */
int yfw_map_is_request_delete(const yfw_datatree* node);

/* Non-zero when both texts are given and equal. */
int yfw_map_do_these_match(const char* left, const char* right);

/* Adds `path` to `tree` (the output root, or an entry found before): creates what is missing and sets the last node's
 * value. `ns` is the namespace of the last node, `value` null for a container or a removal, `source` the request node
 * whose operation the path takes, or null. `slot` receives the node. `list_flag` YFW_ADD_LIST_ENTRY adds one
 * entry of a list or leaf-list. In `flags`, YFW_ADD_KEY_OF_NATIVE_ENTRY gives a list entry its key from the native
 * entry being walked, and YFW_ADD_ORDINARY marks an ordinary add. A null, empty or unknown path is refused with a code.
 */
cerrno yfw_map_datatree_add_path_flagged(yfw_map_ctx* ctx, yfw_datatree* tree, const char* path, const char* ns,
                                         const char* value, const yfw_datatree* source, yfw_node_slot* slot,
                                         uint32_t list_flag, uint32_t flags);

/* Enters and leaves a node; error paths are made from the nodes entered. `level`: YFW_LEVEL_... */
cerrno yfw_map_add_to_node_hierarchy(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t level);
cerrno yfw_map_remove_from_node_hierarchy(yfw_map_ctx* ctx, const yfw_datatree* node);

/* Looks `name` up below `path` in the native entry being walked, fetched or not. Non-zero when it is not there. */
cerrno yfw_map_get_node_info(yfw_map_ctx* ctx, const char* path, const char* name, yfw_node_info* info);

/* The children of a node. Non-zero when it has none. */
cerrno yfw_map_get_subtrees(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree** children, uint32_t* count);

/* Finds an entry of an output list by its key and makes it current; non-zero when it is not there. */
cerrno yfw_map_search_list(yfw_map_ctx* ctx, yfw_datatree* tree, yfw_node_slot* slot, const char* list_path,
                           const char* key_value, const char* key_name, const char* ns);

/* The same, creating the entry where it is missing. */
cerrno yfw_map_search_or_add_list(yfw_map_ctx* ctx, yfw_datatree* tree, yfw_node_slot* slot, const char* list_path,
                                  const char* key_value, const char* key_name, const char* ns);

/* Tells that the walk has entered the next entry of the native list `list_path`. */
cerrno yfw_map_update_current_list_node(yfw_map_ctx* ctx, const char* list_path);

/* Non-zero when the value of `node` does NOT carry the namespace `ns`. */
int yfw_map_validate_data_ns(yfw_map_ctx* ctx, const yfw_datatree* node, const char* ns, uint32_t zero);

/* Makes absolute adds relative to the entry found below `path`, until freed or replaced. */
cerrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx* ctx, const char* path);
void yfw_map_free_trim_path_list_ctx(yfw_map_ctx* ctx);

/* Puts an entry on the output list (which deepens `output_depth`) and takes it off. */
cerrno yfw_add_to_output_list_ctx(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
cerrno yfw_remove_from_output_list_ctx(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

/* Records that the request failed at the node entered last. */
void yfw_oc_error_path(yfw_map_ctx* ctx);

/* Non-zero when a line of `level` (YFW_DEBUG_...) is to be written to the debug log. */
int yfw_debug_should_log(const yfw_debug_filter* filter, int level);

/* The next number of a trace-buffer line. */
uint32_t ret_nc_yfw_trace_index_incr(void);

/* An owned copy of `text`, released with kos_named_free; `owner` names the allocation. */
char* yfw_strdup(const char* text, const char* owner);

/* Bounded copies; `caller` names the calling function, `size` is the destination's in bytes. 0 on success. */
int yfw_strcpy_s(const char* caller, char* destination, size_t size, const char* source);
int yfw_strncpy_s(const char* caller, char* destination, size_t size, const char* source, size_t count);

/* A text for a result code; never null, never released. */
const char* cerr_strerror(cerrno code);

/* Root walker of the OpenConfig interfaces tree; exported by the sibling OpenConfig-interfaces plug-in. */
cerrno ymap_ov_ocif_openconfiginterfaces_lvla_interfaces(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                         yfw_datatree* output);

/* Interface-manager connection of that plug-in. */
extern void* yfw_ocifmgr_im_conn;

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
