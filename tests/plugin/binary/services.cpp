// Every service that the plug-in imports, offered by a framework that is built with all names hidden.
#include "yfw/platform.h"
#include "yfw/yfw_map.h"

int yfw_map_is_request_add(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*) {
  return 0;
}
int yfw_map_is_request_delete(const yfw_datatree*) {
  return 0;
}
int yfw_map_do_these_match(const char*, const char*) {
  return 0;
}
cerrno yfw_map_datatree_add_path_flagged(yfw_map_ctx*, yfw_datatree*, const char*, const char*, const char*,
                                         const yfw_datatree*, yfw_node_slot*, uint32_t, uint32_t) {
  return 0;
}
cerrno yfw_map_add_to_node_hierarchy(yfw_map_ctx*, const yfw_datatree*, uint32_t) {
  return 0;
}
cerrno yfw_map_remove_from_node_hierarchy(yfw_map_ctx*, const yfw_datatree*) {
  return 0;
}
cerrno yfw_map_get_node_info(yfw_map_ctx*, const char*, const char*, yfw_node_info*) {
  return 0;
}
cerrno yfw_map_get_subtrees(yfw_map_ctx*, const yfw_datatree*, yfw_datatree**, uint32_t*) {
  return 0;
}
cerrno yfw_map_search_list(yfw_map_ctx*, yfw_datatree*, yfw_node_slot*, const char*, const char*, const char*,
                           const char*) {
  return 0;
}
cerrno yfw_map_search_or_add_list(yfw_map_ctx*, yfw_datatree*, yfw_node_slot*, const char*, const char*, const char*,
                                  const char*) {
  return 0;
}
cerrno yfw_map_update_current_list_node(yfw_map_ctx*, const char*) {
  return 0;
}
int yfw_map_validate_data_ns(yfw_map_ctx*, const yfw_datatree*, const char*, uint32_t) {
  return 0;
}
cerrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx*, const char*) {
  return 0;
}
void yfw_map_free_trim_path_list_ctx(yfw_map_ctx*) {}
cerrno yfw_add_to_output_list_ctx(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*) {
  return 0;
}
cerrno yfw_remove_from_output_list_ctx(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*) {
  return 0;
}
void yfw_oc_error_path(yfw_map_ctx*) {}
int yfw_debug_should_log(const yfw_debug_filter*, int) {
  return 0;
}
uint32_t ret_nc_yfw_trace_index_incr() {
  return 0;
}
char* yfw_strdup(const char*, const char*) {
  return nullptr;
}
int yfw_strcpy_s(const char*, char*, size_t, const char*) {
  return 0;
}
int yfw_strncpy_s(const char*, char*, size_t, const char*, size_t) {
  return 0;
}
const char* cerr_strerror(cerrno) {
  return nullptr;
}
cerrno ymap_ov_ocif_openconfiginterfaces_lvla_interfaces(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*) {
  return 0;
}
void* yfw_ocifmgr_im_conn = nullptr;
void kos_named_free(void*) {}
void _kos_dt_log_filter_adv(void*, int, int, int, int, int, uint32_t*, const char*, ...) {}
void _lstrace(void*, uint64_t, const char*) {}
cerrno imc_interface_find(void*, uint32_t, const imc_find_request*, imc_find_reply*) {
  return 0;
}
cerrno imc_interface_get_flags(void*, uint32_t, const uint32_t*, imc_flags_reply*) {
  return 0;
}
int _sysdb_bind(uint64_t*, const char*, uint32_t) {
  return 0;
}
cerrno sysdb_item_get(uint64_t, const char*, void**, uint32_t*, uint32_t*, uint32_t) {
  return 0;
}
cerrno tuple_unpack_mask(const void*, uint32_t, const char*, ...) {
  return 0;
}
