// Every service that the plug-in imports, written down and answered by the recorder of the running test.
#include "recording/services.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace recording {

namespace {

Recorder* running_recorder = nullptr;
constexpr uint32_t kInterfaceHandle = 7;
constexpr char kDatabaseLibrary[] = "/pkg/lib/libsysdb.so";

std::string formatted(const char* format, va_list arguments) {
  char text[4096];
  std::vsnprintf(text, sizeof text, format, arguments);
  return text;
}

}  // namespace

void Services::begin(Recorder& recorder) {
  if (running_recorder != nullptr) std::abort();
  running_recorder = &recorder;
}

void Services::end() {
  running_recorder = nullptr;
}

bool Services::running() {
  return running_recorder != nullptr;
}

Recorder& Services::current() {
  if (running_recorder == nullptr) {
    std::fputs("a service was called outside of a recording\n", stderr);
    std::abort();
  }
  return *running_recorder;
}

uint32_t Services::write(std::string_view service, const std::string& arguments, uint32_t usual, bool minor) {
  return current().write(service, arguments, usual, minor);
}

void Services::check_context(const yfw_map_ctx* ctx) {
  current().check_context(ctx);
}

std::string Services::name(const yfw_datatree* node) {
  return current().node_name(node);
}

cerrno Services::add_path(yfw_datatree* tree, const char* path, const char* ns, const char* value,
                          const yfw_datatree* source, yfw_node_slot* slot, uint32_t list_flag, uint32_t flags) {
  Recorder& recorder = current();
  if (recorder.watches_add_) recorder.watches_add_(source);
  const cerrno code =
      recorder.write("add_path",
                     "tree=" + name(tree) + " path=" + shown(path) + " ns=" + short_namespace(ns) +
                         " value=" + shown(value) + " source=" + name(source) + " slot=" + recorder.slot_name(slot) +
                         " list=" + std::to_string(list_flag) + " flags=" + std::to_string(flags),
                     0);
  if (code == 0 && slot != nullptr && recorder.fills_slots_) {
    slot->node = recorder.make_node(path, value);
    recorder.slot_nodes_.push_back(slot->node);
  }
  return code;
}

cerrno Services::search(std::string_view service, bool add, yfw_datatree* tree, yfw_node_slot* slot, const char* path,
                        const char* key_value, const char* key_name, const char* ns) {
  Recorder& recorder = current();
  const std::string label = std::string(path) + "[" + shown(key_value) + "]";
  auto entry = recorder.list_entries_.find(label);
  const bool known = entry != recorder.list_entries_.end();
  const cerrno code =
      recorder.write(service,
                     "tree=" + name(tree) + " slot=" + recorder.slot_name(slot) + " path=" + shown(path) +
                         " value=" + shown(key_value) + " key=" + shown(key_name) + " ns=" + short_namespace(ns),
                     known || add ? 0 : kNotThere);
  if (code != 0) return code;
  if (!known) {
    recorder.list_entry(path, shown(key_value));
    entry = recorder.list_entries_.find(label);
  }
  if (slot != nullptr) slot->node = entry->second;
  return code;
}

cerrno Services::node_info(const char* path, const char* name, yfw_node_info* info) {
  Recorder& recorder = current();
  const auto known = recorder.node_info_.find({path, name});
  const cerrno code = recorder.write("get_node_info", "path=" + shown(path) + " name=" + shown(name),
                                     known == recorder.node_info_.end() ? kNotThere : 0);
  if (code == 0) info->value = known == recorder.node_info_.end() ? nullptr : known->second;
  return code;
}

cerrno Services::add_to_output_list(const yfw_datatree* node, const yfw_datatree* output) {
  Recorder& recorder = current();
  const cerrno code = recorder.write("add_to_output_list", "node=" + name(node) + " tree=" + name(output), 0);
  if (code == 0 && recorder.deepens_output_) ++recorder.state.output_depth;
  return code;
}

cerrno Services::remove_from_output_list(const yfw_datatree* node, const yfw_datatree* output) {
  Recorder& recorder = current();
  const cerrno code = recorder.write("remove_from_output_list", "node=" + name(node) + " tree=" + name(output), 0);
  if (code == 0) --recorder.state.output_depth;
  return code;
}

char* Services::duplicate(const char* text, const char* owner) {
  Recorder& recorder = current();
  if (recorder.write("strdup", "text=" + shown(text) + " owner=" + shown(owner), 0) != 0) return nullptr;
  char* const copy = ::strdup(text);
  recorder.owned_[copy] = text;
  return copy;
}

void Services::release(void* block) {
  Recorder& recorder = current();
  const auto owned = recorder.owned_.find(block);
  if (owned == recorder.owned_.end()) {
    ADD_FAILURE() << "kos_named_free of something that is not owned, or was released before";
    return;
  }
  recorder.write("free", "text=" + shown(owned->second.c_str()), 0);
  recorder.owned_.erase(owned);
  std::free(block);
}

void Services::copy(char* destination, std::size_t size, const char* source, std::size_t count) {
  std::snprintf(destination, size, "%.*s", static_cast<int>(count), source);
  if (current().ends_copies_) return;
  const std::size_t length = std::strlen(destination);
  std::memset(destination + length, '#', size - length);
}

bool Services::logs(int level) {
  const bool usual = level >= 0 && level < 4 && current().logs_[level];
  return current().write("should_log", "level=" + std::to_string(level), usual ? 1 : 0, true) != 0;
}

void Services::log(MessageRecord record) {
  current().write("log", record.text, 0, true);
  current().log_.push_back(std::move(record));
}

uint32_t Services::next_trace_index() {
  return ++current().trace_index_;
}

void Services::trace(MessageRecord record) {
  current().write("trace", record.text, 0, true);
  current().trace_.push_back(std::move(record));
}

cerrno Services::find_interface(const imc_find_request& request, imc_find_reply& reply) {
  const std::string name(request.name, ::strnlen(request.name, sizeof request.name));
  reply = {kInterfaceHandle, current().find_status_};
  return current().write("imc_find", "name=" + shown(name.c_str()), 0);
}

cerrno Services::interface_flags(uint32_t handle, imc_flags_reply& reply) {
  reply = {current().flags_, current().flags_status_};
  return current().write("imc_flags", "handle=" + std::to_string(handle), 0);
}

cerrno Services::sysdb_item(uint64_t connid, const char* path, void** value, uint32_t* length, uint32_t* type,
                            uint32_t flags) {
  Recorder& recorder = current();
  const cerrno code = recorder.write(
      "sysdb_get", "connid=" + std::to_string(connid) + " path=" + shown(path) + " flags=" + std::to_string(flags),
      recorder.has_sysdb_item_ ? 0 : kNotThere);
  if (code != 0) return code;
  *value = recorder.sysdb_data_ ? std::malloc(16) : nullptr;
  *length = recorder.sysdb_data_ ? 16 : 0;
  *type = 0;
  watch_block(*value);
  return 0;
}

void Services::sysdb_numbers(int32_t* numbers[3]) {
  for (int i = 0; i < 3; ++i) *numbers[i] = current().sysdb_numbers_[i];
}

}  // namespace recording

using recording::NotCounted;
using recording::Services;
using recording::short_namespace;
using recording::shown;

namespace {

// is_request_add and is_request_delete answer as the framework does unless the test says otherwise.
bool adds(const yfw_map_ctx* ctx, const yfw_datatree* node) {
  if (ctx->req_state == nullptr) return node->operation <= 2;
  const uint32_t kind = *ctx->req_state->request_kind;
  return kind != 0 && kind != 10 && node->operation <= 2;
}

}  // namespace

extern "C" {

int yfw_map_is_request_add(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree*) {
  const NotCounted here;
  Services::check_context(ctx);
  return static_cast<int>(
      Services::write("is_request_add", "node=" + Services::name(node), adds(ctx, node) ? 1 : 0, true));
}

int yfw_map_is_request_delete(const yfw_datatree* node) {
  const NotCounted here;
  const bool deletes = node->operation == 3 || node->operation == 4;
  return static_cast<int>(Services::write("is_request_delete", "node=" + Services::name(node), deletes ? 1 : 0, true));
}

int yfw_map_do_these_match(const char* left, const char* right) {
  const NotCounted here;
  // The framework's own may read both texts at once.
  const bool given = left != nullptr && right != nullptr;
  if (!given) ADD_FAILURE() << "do_these_match: left=" << shown(left) << " right=" << shown(right);
  const bool equal = given && std::strcmp(left, right) == 0;
  Services::write("do_these_match", "left=" + shown(left) + " right=" + shown(right), 0, true);
  return equal ? 1 : 0;
}

cerrno yfw_map_datatree_add_path_flagged(yfw_map_ctx* ctx, yfw_datatree* tree, const char* path, const char* ns,
                                         const char* value, const yfw_datatree* source, yfw_node_slot* slot,
                                         uint32_t list_flag, uint32_t flags) {
  const NotCounted here;
  Services::check_context(ctx);
  return Services::add_path(tree, path, ns, value, source, slot, list_flag, flags);
}

cerrno yfw_map_add_to_node_hierarchy(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t level) {
  const NotCounted here;
  Services::check_context(ctx);
  return Services::write("add_to_node_hierarchy", "node=" + Services::name(node) + " level=" + std::to_string(level));
}

cerrno yfw_map_remove_from_node_hierarchy(yfw_map_ctx* ctx, const yfw_datatree* node) {
  const NotCounted here;
  Services::check_context(ctx);
  return Services::write("remove_from_node_hierarchy", "node=" + Services::name(node));
}

cerrno yfw_map_get_node_info(yfw_map_ctx* ctx, const char* path, const char* name, yfw_node_info* info) {
  const NotCounted here;
  Services::check_context(ctx);
  return Services::node_info(path, name, info);
}

cerrno yfw_map_get_subtrees(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree** children, uint32_t* count) {
  const NotCounted here;
  Services::check_context(ctx);
  const cerrno code = Services::write("get_subtrees", "node=" + Services::name(node),
                                      node->subtrees == nullptr ? recording::kNotThere : 0);
  if (code == 0) {
    *children = node->subtrees;
    *count = node->subtree_count;
  }
  return code;
}

cerrno yfw_map_search_list(yfw_map_ctx* ctx, yfw_datatree* tree, yfw_node_slot* slot, const char* list_path,
                           const char* key_value, const char* key_name, const char* ns) {
  const NotCounted here;
  Services::check_context(ctx);
  return Services::search("search_list", false, tree, slot, list_path, key_value, key_name, ns);
}

cerrno yfw_map_search_or_add_list(yfw_map_ctx* ctx, yfw_datatree* tree, yfw_node_slot* slot, const char* list_path,
                                  const char* key_value, const char* key_name, const char* ns) {
  const NotCounted here;
  Services::check_context(ctx);
  return Services::search("search_or_add_list", true, tree, slot, list_path, key_value, key_name, ns);
}

cerrno yfw_map_update_current_list_node(yfw_map_ctx* ctx, const char* list_path) {
  const NotCounted here;
  Services::check_context(ctx);
  return Services::write("update_current_list_node", "path=" + shown(list_path));
}

int yfw_map_validate_data_ns(yfw_map_ctx* ctx, const yfw_datatree* node, const char* ns, uint32_t zero) {
  const NotCounted here;
  Services::check_context(ctx);
  const bool carries = node->value_ns != nullptr && std::strcmp(node->value_ns, ns) == 0;
  return static_cast<int>(
      Services::write("validate_data_ns",
                      "node=" + Services::name(node) + " ns=" + short_namespace(ns) + " zero=" + std::to_string(zero),
                      carries ? 0 : 1));
}

cerrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx* ctx, const char* path) {
  const NotCounted here;
  Services::check_context(ctx);
  return Services::write("copy_trim_path", "path=" + shown(path));
}

void yfw_map_free_trim_path_list_ctx(yfw_map_ctx* ctx) {
  const NotCounted here;
  Services::check_context(ctx);
  Services::write("free_trim_path", "");
}

cerrno yfw_add_to_output_list_ctx(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  const NotCounted here;
  Services::check_context(ctx);
  return Services::add_to_output_list(node, output);
}

cerrno yfw_remove_from_output_list_ctx(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  const NotCounted here;
  Services::check_context(ctx);
  return Services::remove_from_output_list(node, output);
}

void yfw_oc_error_path(yfw_map_ctx* ctx) {
  const NotCounted here;
  Services::check_context(ctx);
  Services::write("error_path", ctx == nullptr ? "ctx=null" : "");
}

int yfw_debug_should_log(const yfw_debug_filter* filter, int level) {
  const NotCounted here;
  if (filter != &Services::current().ctx()->debug_filter) ADD_FAILURE() << "not the context's debug filter";
  return Services::logs(level) ? 1 : 0;
}

uint32_t ret_nc_yfw_trace_index_incr(void) {
  const NotCounted here;
  return Services::next_trace_index();
}

char* yfw_strdup(const char* text, const char* owner) {
  const NotCounted here;
  return Services::duplicate(text, owner);
}

int yfw_strcpy_s(const char* caller, char* destination, size_t size, const char* source) {
  const NotCounted here;
  const uint32_t code = Services::write(
      "strcpy", "caller=" + shown(caller) + " size=" + std::to_string(size) + " source=" + shown(source));
  if (code == 0) std::snprintf(destination, size, "%s", source);
  return static_cast<int>(code);
}

int yfw_strncpy_s(const char* caller, char* destination, size_t size, const char* source, size_t count) {
  const NotCounted here;
  const uint32_t code = Services::write("strncpy", "caller=" + shown(caller) + " size=" + std::to_string(size) +
                                                       " source=" + shown(source) + " count=" + std::to_string(count));
  if (code == 0) Services::copy(destination, size, source, count);
  return static_cast<int>(code);
}

const char* cerr_strerror(cerrno) {
  return "the text of the code";
}

cerrno ymap_ov_ocif_openconfiginterfaces_lvla_interfaces(yfw_map_ctx*, const yfw_datatree* node, yfw_datatree*) {
  const NotCounted here;
  return Services::write("interfaces_walker", "node=" + Services::name(node));
}

void* yfw_ocifmgr_im_conn = &yfw_ocifmgr_im_conn;

void kos_named_free(void* memory) {
  const NotCounted here;
  Services::release(memory);
}

void _kos_dt_log_filter_adv(void* handle, int a, int b, int c, int d, int e, uint32_t* site, const char* format, ...) {
  const NotCounted here;
  va_list arguments;
  va_start(arguments, format);
  const std::string text = recording::formatted(format, arguments);
  va_end(arguments);
  Services::log({handle, (a | b | c | d | e) == 0, site, *site, 0, text});
}

void _lstrace(void* handle, uint64_t flags, const char* line) {
  const NotCounted here;
  Services::trace({handle, true, nullptr, 0, flags, line});
}

cerrno imc_interface_find(void* conn, uint32_t count, const imc_find_request* requests, imc_find_reply* replies) {
  const NotCounted here;
  if (conn != yfw_ocifmgr_im_conn || count != 1) ADD_FAILURE() << "imc_interface_find: wrong connection or count";
  return Services::find_interface(*requests, *replies);
}

cerrno imc_interface_get_flags(void* conn, uint32_t count, const uint32_t* handles, imc_flags_reply* replies) {
  const NotCounted here;
  if (conn != yfw_ocifmgr_im_conn || count != 1) ADD_FAILURE() << "imc_interface_get_flags: wrong connection or count";
  return Services::interface_flags(*handles, *replies);
}

int _sysdb_bind(uint64_t* connid, const char* path, uint32_t flags) {
  const NotCounted here;
  const uint32_t code = Services::write("sysdb_bind", "path=" + shown(path) + " flags=" + std::to_string(flags));
  if (code == 0) *connid = 4711;
  return static_cast<int>(code);
}

cerrno sysdb_item_get(uint64_t connid, const char* path, void** value, uint32_t* length, uint32_t* type,
                      uint32_t flags) {
  const NotCounted here;
  return Services::sysdb_item(connid, path, value, length, type, flags);
}

cerrno tuple_unpack_mask(const void*, uint32_t, const char* format, ...) {
  const NotCounted here;
  const cerrno code = Services::write("tuple_unpack", "format=" + shown(format));
  if (code != 0) return code;
  va_list places;
  va_start(places, format);
  int32_t* numbers[3];
  for (int32_t*& number : numbers) number = va_arg(places, int32_t*);
  *va_arg(places, const char**) = "";
  va_end(places);
  Services::sysdb_numbers(numbers);
  return 0;
}

// The plug-in asks for the device's database library; everybody else gets the real answer.
int access(const char* path, int mode) noexcept {
  if (Services::running() && std::strcmp(path, recording::kDatabaseLibrary) == 0) {
    const NotCounted here;
    return static_cast<int>(Services::write("access", "path=" + shown(path) + " mode=" + std::to_string(mode)));
  }
  static const auto real = reinterpret_cast<int (*)(const char*, int)>(::dlsym(RTLD_NEXT, "access"));
  return real(path, mode);
}

}  // extern "C"
