// The frame that every exported function shares: assertion, "Start" and "End", argument check, and how failures are
// recorded for the requester.
#pragma once

#include "engine/message.h"

namespace oc_vlan {

// Stops the process when the context is null, in every build type.
void require_context(const yfw_map_ctx* ctx, const char* function, const char* file, int line);

// "Invalid arguments passed!", the error path, CERR_INVALID_ARGS.
cerrno invalid_arguments(const Frame& frame, int line);

// Replaces `error_tag` by an owned copy of `tag` (the older one is released first); a null tag leaves none.
// Nothing without a request.
void store_error_tag(yfw_map_ctx* ctx, const char* tag, const char* owner);

// Replaces `error_message` by an owned copy of `text`. Nothing without a request.
void store_error_message(yfw_map_ctx* ctx, const char* text, const char* owner);

// Records an element that is not supported and returns `code`: error tag, then error path.
cerrno unsupported_element(yfw_map_ctx* ctx, const char* tag, const char* owner, cerrno code);

// True when both texts are given and the framework calls them equal.
bool same(const char* left, const char* right);

// True for the two read kinds, 0 and 10. A context without a request counts as an edit.
bool is_read(const yfw_map_ctx* ctx);

// True for request kind 10, the read that includes state.
bool is_state_read(const yfw_map_ctx* ctx);

inline constexpr char kTagOwner[] = "YFW MAP";
inline constexpr char kMessageOwner[] = "YFW_MAP";

}  // namespace oc_vlan

#define OC_VLAN_REQUIRE_CONTEXT(ctx, function) ::oc_vlan::require_context((ctx), (function), __FILE__, __LINE__)
