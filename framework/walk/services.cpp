// The framework's services as mapping functions call them: thin, each traced as one line, answered by the walk's state.
// A line of the log stands for the calls that wrote it.
#include <fmt/format.h>

#include <cstdlib>
#include <cstring>

#include "framework/walk/abi.h"
#include "framework/walk/output_tree.h"
#include "framework/walk/traced.h"
#include "framework/walk/walk_state.h"
#include "yfw/yfw_map.h"

namespace {

using yfw::Late;
using yfw::traced;
using yfw::WalkState;
namespace abi = yfw::abi;

const char* shown(const char* text) {
  return text == nullptr ? "-" : text;
}

const char* shown_tag(const yfw_datatree* node) {
  return node == nullptr ? "-" : shown(node->tag);
}

bool is_edit(const WalkState& walk_state) {
  const uint32_t kind = walk_state.request_kind();
  return kind != yfw::kReadConfig && kind != yfw::kReadState;
}

bool equal(const char* left, const char* right) {
  return left != nullptr && right != nullptr && std::strcmp(left, right) == 0;
}

}  // namespace

extern "C" {

int yfw_map_is_request_add(yfw_map_ctx*, const yfw_datatree* node, yfw_datatree*) {
  const WalkState* const walk_state = WalkState::running();
  const bool adds =
      walk_state != nullptr && node != nullptr && is_edit(*walk_state) &&
      (node->operation == abi::kMerge || node->operation == abi::kReplace || node->operation == abi::kCreate);
  traced("is {} added -> {}", shown_tag(node), adds);
  return adds ? 1 : 0;
}

int yfw_map_is_request_delete(const yfw_datatree* node) {
  const bool goes = node != nullptr && (node->operation == abi::kDelete || node->operation == abi::kRemove);
  traced("is {} deleted -> {}", shown_tag(node), goes);
  return goes ? 1 : 0;
}

int yfw_map_do_these_match(const char* left, const char* right) {
  const bool match = equal(left, right);
  traced("match \"{}\" \"{}\" -> {}", shown(left), shown(right), match);
  return match ? 1 : 0;
}

cerrno yfw_map_datatree_add_path_flagged(yfw_map_ctx*, yfw_datatree* tree, const char* path, const char* ns,
                                         const char* value, const yfw_datatree* source, yfw_node_slot* slot,
                                         uint32_t list_flag, uint32_t flags) {
  WalkState* const walk_state = WalkState::running();
  if (walk_state == nullptr) return CERR_INVALID_ARGS;
  std::string_view new_key;
  if ((flags & abi::kKeyFromNativeEntry) != 0) new_key = walk_state->subinterface_index();
  const cerrno result = walk_state->output().add(tree, path, ns, value, source, slot, list_flag != 0, new_key);
  traced("add {} value={} source={} list={} flags={} -> {:#x}", shown(path), shown(value), shown_tag(source), list_flag,
         flags, result);
  if (path == nullptr) walk_state->no_place_for(source, value);
  if (walk_state->output().take_left_out()) {
    if (walk_state->tracing()) {
      walk_state->note(fmt::format("left out, no entry of its list is current: {}", shown(path)));
    }
  }
  return result;
}

cerrno yfw_map_add_to_node_hierarchy(yfw_map_ctx*, const yfw_datatree* node, uint32_t level) {
  WalkState* const walk_state = WalkState::running();
  if (walk_state == nullptr || node == nullptr) return CERR_INVALID_ARGS;
  walk_state->enter(node);
  traced("enter {} level={}", shown_tag(node), level);
  return 0;
}

cerrno yfw_map_remove_from_node_hierarchy(yfw_map_ctx*, const yfw_datatree* node) {
  WalkState* const walk_state = WalkState::running();
  if (walk_state == nullptr) return CERR_INVALID_ARGS;
  walk_state->leave();
  traced("leave {}", shown_tag(node));
  return 0;
}

cerrno yfw_map_get_node_info(yfw_map_ctx*, const char* path, const char* name, yfw_node_info* info) {
  WalkState* const walk_state = WalkState::running();
  if (walk_state == nullptr) return CERR_INVALID_ARGS;
  const cerrno result = walk_state->node_info(path, name, info);
  traced("look-up {}/{} -> {}", shown(path), shown(name), info == nullptr ? "-" : shown(info->value));
  return result;
}

cerrno yfw_map_get_subtrees(yfw_map_ctx*, const yfw_datatree* node, yfw_datatree** children, uint32_t* count) {
  if (node == nullptr || children == nullptr || count == nullptr) return CERR_INVALID_ARGS;
  traced("children of {} -> {}", shown_tag(node), node->subtree_count);
  if (node->subtree_count == 0) return CERR_INVALID_ARGS;
  *children = node->subtrees;
  *count = node->subtree_count;
  return 0;
}

cerrno yfw_map_search_list(yfw_map_ctx*, yfw_datatree* tree, yfw_node_slot* slot, const char* list_path,
                           const char* key_value, const char* key_name, const char* ns) {
  WalkState* const walk_state = WalkState::running();
  if (walk_state == nullptr) return CERR_INVALID_ARGS;
  yfw::OutputNode* const found = walk_state->output().entry(tree, list_path, key_value, ns, false);
  if (slot != nullptr) slot->node = found == nullptr ? nullptr : &found->data;
  traced("search {}[{}={}] -> {}", shown(list_path), shown(key_name), shown(key_value),
         found == nullptr ? "not there" : "found");
  return found == nullptr ? CERR_INVALID_ARGS : 0;
}

cerrno yfw_map_search_or_add_list(yfw_map_ctx*, yfw_datatree* tree, yfw_node_slot* slot, const char* list_path,
                                  const char* key_value, const char* key_name, const char* ns) {
  WalkState* const walk_state = WalkState::running();
  if (walk_state == nullptr) return CERR_INVALID_ARGS;
  yfw::OutputNode* const found = walk_state->output().entry(tree, list_path, key_value, ns, true);
  if (slot != nullptr) slot->node = found == nullptr ? nullptr : &found->data;
  traced("search or add {}[{}={}]", shown(list_path), shown(key_name), shown(key_value));
  return found == nullptr ? CERR_INVALID_ARGS : 0;
}

cerrno yfw_map_update_current_list_node(yfw_map_ctx*, const char* list_path) {
  WalkState* const walk_state = WalkState::running();
  if (walk_state == nullptr) return CERR_INVALID_ARGS;
  traced("current entry of {}", shown(list_path));
  return walk_state->enter_native_list(list_path);
}

int yfw_map_validate_data_ns(yfw_map_ctx*, const yfw_datatree* node, const char* ns, uint32_t) {
  const int differs = node == nullptr || !equal(node->value_ns, ns) ? 1 : 0;
  traced("namespace of {} is {}, wanted {}", shown_tag(node), node == nullptr ? "-" : shown(node->value_ns), shown(ns));
  return differs;
}

cerrno yfw_map_copy_trim_path_list_ctx(yfw_map_ctx*, const char* path) {
  // Adds below an entry find the entry's place in their path by themselves.
  traced("trim {}", shown(path));
  return path == nullptr ? CERR_INVALID_ARGS : 0;
}

void yfw_map_free_trim_path_list_ctx(yfw_map_ctx*) {
  traced("trim ends");
}

cerrno yfw_add_to_output_list_ctx(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree*) {
  if (ctx == nullptr || ctx->req_state == nullptr) return CERR_INVALID_ARGS;
  ++ctx->req_state->output_depth;
  traced("output list gets {}", shown_tag(node));
  return 0;
}

cerrno yfw_remove_from_output_list_ctx(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree*) {
  if (ctx == nullptr || ctx->req_state == nullptr || ctx->req_state->output_depth == 0) return CERR_INVALID_ARGS;
  --ctx->req_state->output_depth;
  traced("output list loses {}", shown_tag(node));
  return 0;
}

void yfw_oc_error_path(yfw_map_ctx*) {
  WalkState* const walk_state = WalkState::running();
  if (walk_state == nullptr) return;
  traced("error path {}", Late{[walk_state] { return walk_state->hierarchy_path(); }});
  walk_state->fail_here();
}

int yfw_debug_should_log(const yfw_debug_filter* filter, int) {
  return filter != nullptr && filter->words[0] != 0;
}

uint32_t ret_nc_yfw_trace_index_incr(void) {
  WalkState* const walk_state = WalkState::running();
  return walk_state == nullptr ? 0 : walk_state->next_trace_index();
}

char* yfw_strdup(const char* text, const char* owner) {
  WalkState* const walk_state = WalkState::running();
  traced("copy \"{}\" for {}", shown(text), shown(owner));
  if (walk_state != nullptr) return walk_state->duplicate(text);
  return text == nullptr ? nullptr : strdup(text);
}

void kos_named_free(void* memory) {
  WalkState* const walk_state = WalkState::running();
  traced("release a copy");
  if (walk_state != nullptr) {
    walk_state->release(memory);
  } else {
    std::free(memory);
  }
}

int yfw_strcpy_s(const char* caller, char* destination, size_t size, const char* source) {
  traced("copy \"{}\" into {} bytes of {}", shown(source), size, shown(caller));
  if (destination == nullptr || source == nullptr || std::strlen(source) >= size) return EINVAL;
  std::memcpy(destination, source, std::strlen(source) + 1);
  return 0;
}

int yfw_strncpy_s(const char* caller, char* destination, size_t size, const char* source, size_t count) {
  traced("copy at most {} of \"{}\" into {} bytes of {}", count, shown(source), size, shown(caller));
  if (destination == nullptr || source == nullptr || size == 0) return EINVAL;
  const size_t length = strnlen(source, count);
  if (length >= size) return ERANGE;
  std::memcpy(destination, source, length);
  destination[length] = '\0';
  return 0;
}

const char* cerr_strerror(cerrno code) {
  traced("text of {:#x}", static_cast<uint32_t>(code));
  switch (code) {
    case 0:
      return "success";
    case CERR_INVALID_ARGS:
      return "invalid arguments";
    case CERR_BAD_TREE:
      return "malformed request tree";
    case CERR_UNSUPPORTED:
      return "not supported";
    case CERR_INVALID_VALUE:
      return "invalid value";
    case CERR_SKIP_SUBTREE:
      return "subtree skipped";
    case CERR_UNKNOWN_AUGMENT:
      return "unknown augmentation";
    default:
      return "unknown failure";
  }
}

}  // extern "C"
