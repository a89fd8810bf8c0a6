// The shared frame of every exported function.
#include "engine/frame.h"

// The header declares the C library's assertion failure only where NDEBUG is not set, and release builds need it too.
#undef NDEBUG
#include <cassert>

namespace oc_vlan {

void stop_without_context(const char* function, const char* file, int line) {
  // assert() would vanish from release builds and show the macro's own text.
  __assert_fail("((void *)0) != ctx", file, static_cast<unsigned>(line), function);
}

cerrno invalid_arguments(Frame frame, int line) {
  OC_VLAN_ERROR_AT(line, frame, "Invalid arguments passed!");
  yfw_oc_error_path(frame.ctx);
  return CERR_INVALID_ARGS;
}

namespace {

void replace_text(char*& stored, const char* text, const char* owner) {
  if (stored != nullptr) {
    kos_named_free(stored);
    stored = nullptr;
  }
  if (text != nullptr) stored = yfw_strdup(text, owner);
}

}  // namespace

void store_error_tag(yfw_map_ctx* ctx, const char* tag, const char* owner) {
  if (ctx != nullptr && ctx->req_state != nullptr) replace_text(ctx->req_state->error_tag, tag, owner);
}

void store_error_message(yfw_map_ctx* ctx, const char* text, const char* owner) {
  if (ctx != nullptr && ctx->req_state != nullptr) replace_text(ctx->req_state->error_message, text, owner);
}

cerrno unsupported_element(yfw_map_ctx* ctx, const char* tag, const char* owner, cerrno code) {
  store_error_tag(ctx, tag, owner);
  yfw_oc_error_path(ctx);
  return code;
}

}  // namespace oc_vlan
