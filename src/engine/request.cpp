// Frame of a translation, request cases, the read-scope gate, tree access and path adding.
#include "engine/request.h"

namespace oc_vlan {

bool begin(const Call& call) {
  OC_VLAN_REQUIRE_CONTEXT(call.ctx, call.function);
  OC_VLAN_TRACE(call, "Start");
  if (call.node != nullptr && call.output != nullptr) return true;
  invalid_arguments(call, __LINE__);
  return false;
}

cerrno end(const Call& call, cerrno result) {
  OC_VLAN_TRACE(call, "End");
  return result;
}

RequestCase request_case(const Call& call) {
  if (is_read(call.ctx)) return RequestCase::kRead;
  return yfw_map_is_request_delete(call.node) != 0 ? RequestCase::kDelete : RequestCase::kWrite;
}

namespace {

// `scope_mode` of a request that wants only what its content-selection flags name.
constexpr uint32_t kSelectedContentOnly = 2;

bool selects_content(const yfw_map_request& request) {
  return (request.read_filter_flags_1 & 0x0f) != 0 || (request.read_filter_flags_2 & 0x03) != 0 ||
         (request.read_filter_flags_3 & 0x03) != 0 || (request.read_filter_flags_4 & 0x07) != 0 ||
         (request.read_filter_flags_5 & 0x3ffff) != 0 || (request.read_filter_flags_6 & 0x03) != 0 ||
         (request.read_filter_flags_7 & 0x0f) != 0 || (request.read_filter_flags_8 & 0x07) != 0 ||
         (request.read_filter_flags_9 & 0x01) != 0;
}

}  // namespace

bool read_scope_closed(const yfw_map_ctx* ctx) {
  if (ctx->req_state == nullptr || ctx->req_state->request_kind == nullptr) return false;
  // The kind is the first member of its descriptor.
  const auto* const request = reinterpret_cast<const yfw_map_request*>(ctx->req_state->request_kind);
  return request->scope_mode == kSelectedContentOnly && selects_content(*request);
}

const char* interface_name(const yfw_map_ctx* ctx) {
  return ctx->req_state != nullptr ? ctx->req_state->interface_name : nullptr;
}

yfw_node_slot* list_slot(const yfw_map_ctx* ctx) {
  return ctx->req_state != nullptr ? &ctx->req_state->list_slot : nullptr;
}

std::span<const yfw_datatree> children(const yfw_datatree& node) {
  if (node.subtrees == nullptr) return {};
  return {node.subtrees, node.subtree_count};
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

Lookup look_up(yfw_map_ctx* ctx, const char* container, const char* leaf) {
  yfw_node_info info{nullptr};
  const cerrno status = yfw_map_get_node_info(ctx, container, leaf, &info);
  return {status, status == 0 ? info.value : nullptr};
}

cerrno add_path(const Call& call, const char* path, const char* ns, const char* value, const yfw_datatree* source,
                AddForm form, yfw_node_slot* slot) {
  return yfw_map_datatree_add_path_flagged(call.ctx, call.output, path, ns, value, source, slot, form.list_flag,
                                           form.flags);
}

cerrno add_native(const Call& call, const char* path, const char* value, const yfw_datatree* source) {
  return add_path(call, path, YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS, value, source, kOrdinary);
}

}  // namespace oc_vlan
