// The read-scope gate, and finding children.
#include "engine/request.h"

namespace oc_vlan {

namespace {

bool selects_content(const yfw_map_request& request) {
  return (request.read_filter_flags_1 & YFW_READ_FILTER_1) != 0 ||
         (request.read_filter_flags_2 & YFW_READ_FILTER_2) != 0 ||
         (request.read_filter_flags_3 & YFW_READ_FILTER_3) != 0 ||
         (request.read_filter_flags_4 & YFW_READ_FILTER_4) != 0 ||
         (request.read_filter_flags_5 & YFW_READ_FILTER_5) != 0 ||
         (request.read_filter_flags_6 & YFW_READ_FILTER_6) != 0 ||
         (request.read_filter_flags_7 & YFW_READ_FILTER_7) != 0 ||
         (request.read_filter_flags_8 & YFW_READ_FILTER_8) != 0 ||
         (request.read_filter_flags_9 & YFW_READ_FILTER_9) != 0;
}

}  // namespace

bool read_scope_closed(const yfw_map_ctx* ctx) {
  if (ctx->req_state == nullptr || ctx->req_state->request_kind == nullptr) return false;
  // The kind is the first member of its descriptor.
  const auto* const request = reinterpret_cast<const yfw_map_request*>(ctx->req_state->request_kind);
  return request->scope_mode == YFW_SCOPE_SELECTED_CONTENT && selects_content(*request);
}

const yfw_datatree* last_child(const yfw_datatree& node, const char* tag) {
  const yfw_datatree* found = nullptr;
  for (const yfw_datatree& child : children(node)) {
    if (same(child.tag, tag)) found = &child;
  }
  return found;
}

const yfw_datatree* first_child(const yfw_datatree& node, const char* tag) {
  for (const yfw_datatree& child : children(node)) {
    if (same(child.tag, tag)) return &child;
  }
  return nullptr;
}

const char* child_text(const yfw_datatree& node, const char* tag) {
  const yfw_datatree* const child = last_child(node, tag);
  return child != nullptr ? child->value : nullptr;
}

}  // namespace oc_vlan
