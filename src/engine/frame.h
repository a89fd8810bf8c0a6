// The frame that every exported function shares: assertion, "Start" and "End", argument check, and how failures are
// recorded for the requester.
#pragma once

#include "engine/message.h"

namespace oc_vlan {

[[noreturn, gnu::cold]] void stop_without_context(const char* function, const char* file, int line);

// Stops the process when the context is null, in every build type.
inline void require_context(const yfw_map_ctx* ctx, const char* function, const char* file, int line) {
  if (ctx == nullptr) [[unlikely]]
    stop_without_context(function, file, line);
}

// "Invalid arguments passed!", the error path, CERR_INVALID_ARGS.
[[gnu::cold]] cerrno invalid_arguments(Frame frame, int line);

// Replaces `error_tag` by an owned copy of `tag` (the older one is released first); a null tag leaves none.
// Nothing without a request.
void store_error_tag(yfw_map_ctx* ctx, const char* tag, const char* owner);

// Replaces `error_message` by an owned copy of `text`. Nothing without a request.
void store_error_message(yfw_map_ctx* ctx, const char* text, const char* owner);

// Records an element that is not supported and returns `code`: error tag, then error path.
cerrno unsupported_element(yfw_map_ctx* ctx, const char* tag, const char* owner, cerrno code);

// True when both texts are given and the framework calls them equal.
inline bool same(const char* left, const char* right) {
  return left != nullptr && right != nullptr && yfw_map_do_these_match(left, right) != 0;
}

// The kind of the request. A context without a request counts as an edit.
inline uint32_t request_kind(const yfw_map_ctx* ctx) {
  if (ctx->req_state == nullptr || ctx->req_state->request_kind == nullptr) return YFW_REQUEST_EDIT;
  return *ctx->req_state->request_kind;
}

// True for the two reads.
inline bool is_read(const yfw_map_ctx* ctx) {
  const uint32_t kind = request_kind(ctx);
  return kind == YFW_REQUEST_READ || kind == YFW_REQUEST_READ_STATE;
}

// True for the read that includes state.
inline bool is_state_read(const yfw_map_ctx* ctx) {
  return request_kind(ctx) == YFW_REQUEST_READ_STATE;
}

inline constexpr char kTagOwner[] = "YFW MAP";
inline constexpr char kMessageOwner[] = "YFW_MAP";

}  // namespace oc_vlan

#define OC_VLAN_REQUIRE_CONTEXT(ctx, function) ::oc_vlan::require_context((ctx), (function), __FILE__, __LINE__)
