// OpenConfig switched VLAN of an Ethernet port or a bundle to the native trunk configuration.
#include <cstring>

#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/identity.h"
#include "vlan_manual_mappings/match_shapes.h"
#include "vlan_manual_mappings/state_leaf.h"
#include "vlan_manual_mappings/trunk_text.h"

namespace oc_vlan {
namespace {

constexpr ValueName kModes[] = {{kAccess, native::kAccess}, {kTrunk, native::kTrunk}};

void log_foreign_mode(const Frame& frame) {
  OC_VLAN_ERROR(frame, " switched-vlan/interface-mode validation failed!");
}

constexpr IdentityLeaf kInterfaceMode{.name = "switched-vlan/interface-mode",
                                      .names = kModes,
                                      .log_foreign = log_foreign_mode,
                                      .invalid = "Invalid value for switched-vlan/interface-mode provided",
                                      .releases_error_tag = true};

cerrno tag_missing(const Call& call) {
  OC_VLAN_ERROR(call, "Tag name is not available!");
  yfw_oc_error_path(call.ctx);
  return CERR_UNSUPPORTED;
}

// Refuses an edit; unlike other refusals, those of this container leave the error path alone.
cerrno refused(const Call& call, const char* message) {
  store_error_message(call.ctx, message, kMessageOwner);
  return end(call, CERR_INVALID_VALUE);
}

// A container without leaves stands for all of them.
cerrno whole_container(const Call& call) {
  const char* const value = call.node->value;
  switch (request_case(call)) {
    case RequestCase::kRead:
      add_native(call, native::kNativeVlanType.path, value, nullptr);
      add_native(call, native::kNativeVlan.path, value, nullptr);
      add_native(call, native::kTrunkTagType.path, value, nullptr);
      return end(call, add_native(call, native::kTrunkVlans.path, value, nullptr));
    case RequestCase::kDelete:
      return end(call, add_native(call, native::kTrunkConfiguration, nullptr, call.node));
    case RequestCase::kWrite:
      break;
  }
  OC_VLAN_ERROR(call, "Edit request for switched-vlan without leaves");
  return refused(call, "Edit request for switched-vlan without leaves");
}

cerrno fetch_or_remove_leaves(const Call& call, bool read) {
  bool native_vlan = false;
  bool trunk_vlans = false;
  for (const yfw_datatree& child : children(*call.node)) {
    if (child.tag == nullptr) return tag_missing(call);
    native_vlan = native_vlan || same(child.tag, "native-vlan");
    trunk_vlans = trunk_vlans || same(child.tag, "trunk-vlans");
  }
  // A read asks for the native VLAN's type without a value, for everything else with the container's own.
  const char* const value = read ? call.node->value : nullptr;
  const yfw_datatree* const source = read ? nullptr : call.node;
  cerrno result = 0;
  if (native_vlan) {
    add_native(call, native::kNativeVlanType.path, nullptr, source);
    result = add_native(call, native::kNativeVlan.path, value, source);
  }
  if (trunk_vlans) {
    add_native(call, native::kTrunkTagType.path, value, source);
    result = add_native(call, native::kTrunkVlans.path, value, source);
  }
  return end(call, result);
}

// Puts one entry, "100" or "200..300", into the text.
void append_entry(TrunkText& text, char* entry) {
  if (entry == nullptr) return;
  char* const dots = std::strstr(entry, "..");
  // The entry is cut at its first "..", and the request keeps only the low end.
  if (dots != nullptr) *dots = '\0';
  text.append(entry, dots != nullptr ? dots + 2 : nullptr);
}

cerrno write_native_vlan(const Call& call, const yfw_datatree& leaf) {
  add_native(call, native::kNativeVlan.path, leaf.value, call.node);
  return add_native(call, native::kNativeVlanType.path, native::kVlanTypeDot1q, call.node);
}

bool trunk_mode_set(const Call& call) {
  return check_interface_mode_set_in_subtree(call.node) != 0 || check_switched_mode_set_in_sysdb(call.ctx) != 0;
}

cerrno write_leaves(const Call& call) {
  TrunkText trunk;
  cerrno result = 0;
  for (const yfw_datatree& child : children(*call.node)) {
    if (child.tag == nullptr) return tag_missing(call);
    if (same(child.tag, "trunk-vlans")) {
      append_entry(trunk, child.value);
    } else if (same(child.tag, "native-vlan")) {
      if (!trunk_mode_set(call)) {
        OC_VLAN_ERROR(call, "Invalid configuration for native-vlan");
        return refused(call, "Invalid configuration for native-vlan.");
      }
      result = write_native_vlan(call, child);
      if (result != 0) break;
    } else if (!same(child.tag, "interface-mode") && !same(child.tag, "access-vlan")) {
      OC_VLAN_ERROR(call, "Invalid tag name %s", child.tag);
      return unsupported_element(call.ctx, child.tag, kTagOwner, CERR_UNSUPPORTED);
    }
  }
  if (trunk.empty()) return end(call, result);
  // Entries gathered before a failure are still written, and their result is the one that counts.
  add_native(call, native::kTrunkVlans.path, trunk.text(), call.node);
  return end(call, add_native(call, native::kTrunkTagType.path, native::kVlanTypeDot1q, call.node));
}

cerrno add_interface_mode(const Call& call) {
  switch (request_case(call)) {
    case RequestCase::kRead:
      add_native(call, native::kMode.path, call.node->value, nullptr);
      return add_native(call, native::kTrunkTagType.path, call.node->value, nullptr);
    case RequestCase::kDelete:
      return add_native(call, native::kVlanSwitched, nullptr, call.node);
    case RequestCase::kWrite:
      break;
  }
  const Identity mode = native_identity(call, kInterfaceMode);
  if (mode.refused) return CERR_INVALID_VALUE;
  // An unknown mode, though recorded as a failure, is still added without a value: the result is the framework's.
  return add_native(call, native::kMode.path, mode.native, call.node);
}

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

cerrno oc2_vex_switched_vlan_cfg_nativevlan_and_trunkvlans(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count,
                                                           yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  if (count == 0) return whole_container(call);
  const RequestCase request = request_case(call);
  if (request == RequestCase::kWrite) return write_leaves(call);
  return fetch_or_remove_leaves(call, request == RequestCase::kRead);
}

cerrno oc2_vex_switched_vlan_cfg_interfacemode(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  return end(call, add_interface_mode(call));
}

cerrno oc2_vex_switched_vlan_cfg_accessvlan(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return copied_leaf({{ctx, __func__}, node, output}, native::kAccessVlan.path);
}

cerrno switched_vlan_cfg_stub_function(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return asking_stub({{ctx, __func__}, node, output});
}

cerrno oc2_vex_switched_vlan_state_leaves(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return state_leaf({{ctx, __func__}, node, output}, OPER_TRUNK "/vlan-switched");
}

cerrno oc2_vex_switched_vlan_state_native_vlan(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return state_leaf({{ctx, __func__}, node, output}, OPER_TRUNK "/layer3-sub-interfaces/native-vlan");
}
