// What a translation asks of the request it serves: its frame, which case it is, what is in the tree, and adding paths.
// What each translation does more than once per leaf is inline: it is all there is to most of them.
#pragma once

#include <span>

#include "engine/frame.h"

namespace oc_vlan {

// One call of an exported translation. Begins with its frame, so that messages take a call as it is.
struct Call : Frame {
  const yfw_datatree* node;
  yfw_datatree* output;
};

// Opens a call: assertion, "Start", argument check. False when the call is refused with CERR_INVALID_ARGS.
inline bool begin(const Call& call) {
  OC_VLAN_REQUIRE_CONTEXT(call.ctx, call.function);
  OC_VLAN_TRACE(call, "Start");
  if (call.node != nullptr && call.output != nullptr) [[likely]]
    return true;
  const Frame& frame = call;
  invalid_arguments(frame, __LINE__);
  return false;
}

// Closes a call: "End", and the result back.
inline cerrno end(const Call& call, cerrno result) {
  OC_VLAN_TRACE(call, "End");
  return result;
}

// The three cases that an OpenConfig request can be to a translation, told apart in this order.
enum class RequestCase { kRead, kDelete, kWrite };
inline RequestCase request_case(const Call& call) {
  if (is_read(call.ctx)) return RequestCase::kRead;
  return yfw_map_is_request_delete(call.node) != 0 ? RequestCase::kDelete : RequestCase::kWrite;
}

// True when the framework asked for something else than configuration: nothing is to be written.
bool read_scope_closed(const yfw_map_ctx* ctx);

// Name of the interface being edited or read; null when the request names none.
inline const char* interface_name(const yfw_map_ctx* ctx) {
  return ctx->req_state != nullptr ? ctx->req_state->interface_name : nullptr;
}

// The request's slot for the list entry in work; null without a request.
inline yfw_node_slot* list_slot(const yfw_map_ctx* ctx) {
  return ctx->req_state != nullptr ? &ctx->req_state->list_slot : nullptr;
}

// Children of a node; none where the array is missing, whatever the count says.
inline std::span<const yfw_datatree> children(const yfw_datatree& node) {
  if (node.subtrees == nullptr) return {};
  return {node.subtrees, node.subtree_count};
}

// The last, or the first, child of that tag; null when there is none.
const yfw_datatree* last_child(const yfw_datatree& node, const char* tag);
const yfw_datatree* first_child(const yfw_datatree& node, const char* tag);

// Text of the last child of that tag; null when there is none.
const char* child_text(const yfw_datatree& node, const char* tag);

// A leaf of the native entry being walked. Its text is null when the look-up failed.
struct Lookup {
  cerrno status;
  const char* text;
};
inline Lookup look_up(yfw_map_ctx* ctx, const char* container, const char* leaf) {
  yfw_node_info info{nullptr};
  const cerrno status = yfw_map_get_node_info(ctx, container, leaf, &info);
  return {status, status == 0 ? info.value : nullptr};
}

// Ways of adding a path: the list flag and the flags word of the framework's call.
struct AddForm {
  uint32_t list_flag;
  uint32_t flags;
};
inline constexpr AddForm kPlain{0, 0};
inline constexpr AddForm kPlainEntry{YFW_ADD_LIST_ENTRY, 0};
inline constexpr AddForm kOrdinary{0, YFW_ADD_ORDINARY};
inline constexpr AddForm kOrdinaryEntry{YFW_ADD_LIST_ENTRY, YFW_ADD_ORDINARY};
inline constexpr AddForm kKeyedEntry{YFW_ADD_LIST_ENTRY, YFW_ADD_KEY_OF_NATIVE_ENTRY};

// Adds one path to the output of the call.
inline cerrno add_path(const Call& call, const char* path, const char* ns, const char* value,
                       const yfw_datatree* source, AddForm form, yfw_node_slot* slot = nullptr) {
  return yfw_map_datatree_add_path_flagged(call.ctx, call.output, path, ns, value, source, slot, form.list_flag,
                                           form.flags);
}

// Adds a native configuration path; a null value with a source is a removal.
inline cerrno add_native(const Call& call, const char* path, const char* value, const yfw_datatree* source) {
  return add_path(call, path, YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS, value, source, kOrdinary);
}

// A text that may be null, as messages show it.
inline const char* shown(const char* text) {
  return text != nullptr ? text : "(null)";
}

}  // namespace oc_vlan
