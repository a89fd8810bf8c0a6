// What a translation asks of the request it serves: its frame, which case it is, what is in the tree, and adding paths.
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
bool begin(const Call& call);

// Closes a call: "End", and the result back.
cerrno end(const Call& call, cerrno result);

// The three cases that an OpenConfig request can be to a translation, told apart in this order.
enum class RequestCase { kRead, kDelete, kWrite };
RequestCase request_case(const Call& call);

// True when the framework asked for something else than configuration: nothing is to be written.
bool read_scope_closed(const yfw_map_ctx* ctx);

// Name of the interface being edited or read; null when the request names none.
const char* interface_name(const yfw_map_ctx* ctx);

// The request's slot for the list entry in work; null without a request.
yfw_node_slot* list_slot(const yfw_map_ctx* ctx);

// Children of a node; none where the array is missing, whatever the count says.
std::span<const yfw_datatree> children(const yfw_datatree& node);

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
Lookup look_up(yfw_map_ctx* ctx, const char* container, const char* leaf);

// Ways of adding a path: the list flag and the flags word of the framework's call.
struct AddForm {
  uint32_t list_flag;
  uint32_t flags;
};
inline constexpr AddForm kPlain{0, 0};
inline constexpr AddForm kPlainEntry{1, 0};
inline constexpr AddForm kOrdinary{0, 1};
inline constexpr AddForm kOrdinaryEntry{1, 1};
inline constexpr AddForm kKeyedEntry{1, 0x20};

// Adds one path to the output of the call.
cerrno add_path(const Call& call, const char* path, const char* ns, const char* value, const yfw_datatree* source,
                AddForm form, yfw_node_slot* slot = nullptr);

// Adds a native configuration path; a null value with a source is a removal.
cerrno add_native(const Call& call, const char* path, const char* value, const yfw_datatree* source);

// A text that may be null, as messages show it.
inline const char* shown(const char* text) {
  return text != nullptr ? text : "(null)";
}

}  // namespace oc_vlan
