// Value maps, identities and their namespace.
#include "vlan_manual_mappings/identity.h"

namespace oc_vlan {

const char* translated(std::span<const ValueName> names, const char* value) {
  for (const ValueName& name : names) {
    if (same(value, name.from)) return name.to;
  }
  return nullptr;
}

namespace {

constexpr std::size_t kMessageSize = 200;

void record_foreign(const Call& call, const IdentityLeaf& leaf) {
  leaf.log_foreign(call);
  char message[kMessageSize];
  std::snprintf(message, sizeof message, "namespace %s is missing for %s", YFW_OPENCONFIG_VLAN_TYPES_NS, leaf.name);
  // Of all texts for the requester, this one alone is owned as an error tag is.
  store_error_message(call.ctx, message, kTagOwner);
  yfw_oc_error_path(call.ctx);
}

void record_invalid(const Call& call, const IdentityLeaf& leaf) {
  // An error tag that is not to be released stays with the framework, which frees it with the request.
  if (!leaf.releases_error_tag && call.ctx->req_state != nullptr) call.ctx->req_state->error_tag = nullptr;
  store_error_tag(call.ctx, call.node->tag, leaf.name);
  store_error_message(call.ctx, leaf.invalid, kMessageOwner);
  yfw_oc_error_path(call.ctx);
}

}  // namespace

Identity native_identity(const Call& call, const IdentityLeaf& leaf) {
  const char* const value = call.node->value;
  const bool given = value != nullptr && value[0] != '\0';
  if (given && yfw_map_validate_data_ns(call.ctx, call.node, YFW_OPENCONFIG_VLAN_TYPES_NS, 0) != 0) {
    record_foreign(call, leaf);
    return {nullptr, true};
  }
  const char* const native = given ? translated(leaf.names, value) : nullptr;
  if (native == nullptr) record_invalid(call, leaf);
  return {native, false};
}

cerrno add_identity(const Call& call, const char* path, const char* value, AddForm form) {
  yfw_node_slot added{nullptr};
  const cerrno result = add_path(call, path, YFW_OPENCONFIG_VLAN_NS, value, nullptr, form, &added);
  if (added.node != nullptr) {
    added.node->value_ns = yfw_strdup(YFW_OPENCONFIG_VLAN_TYPES_NS, "YFW_OPENCONFIG_VLAN_TYPES_NS");
    added.node->key_flags |= YFW_KEY_IDENTITY_VALUE;
  }
  return result;
}

}  // namespace oc_vlan
