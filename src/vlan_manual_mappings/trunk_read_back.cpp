// Native trunk configuration read back as the OpenConfig switched VLAN.
#include <cstring>

#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/identity.h"
#include "vlan_manual_mappings/native.h"
#include "vlan_manual_mappings/switched_vlan_tree.h"

namespace oc_vlan {
namespace {

// Longest entry, "4094..4094" and then some.
constexpr std::size_t kEntrySize = 20;

const SwitchedVlanTree& tree_of(const Call& call) {
  return switched_vlan_tree(interface_name(call.ctx));
}

// Whether a sibling leaf says that the tags are 802.1Q. A failed look-up is the result of the translation that asked.
struct TagType {
  cerrno status;
  bool dot1q;
};

TagType tag_type(const Call& call, const native::Leaf& leaf) {
  const Lookup type = look_up(call.ctx, leaf);
  return {type.status, same(type.text, native::kVlanTypeDot1q)};
}

cerrno add_leaf(const Call& call, const char* path) {
  return add_path(call, path, YFW_OPENCONFIG_VLAN_NS, call.node->value, nullptr, kOrdinary);
}

cerrno add_native_vlan(const Call& call) {
  const TagType type = tag_type(call, native::kNativeVlanType);
  if (!type.dot1q) return type.status;
  const SwitchedVlanTree& tree = tree_of(call);
  add_container(call, tree);
  return add_leaf(call, tree.config.native_vlan);
}

cerrno add_interface_mode(const Call& call) {
  const bool trunk = same(call.node->value, native::kTrunk);
  if (trunk) {
    const TagType type = tag_type(call, native::kTrunkTagType);
    if (!type.dot1q) return type.status;
  } else if (!same(call.node->value, native::kAccess)) {
    return 0;
  }
  const SwitchedVlanTree& tree = tree_of(call);
  add_container(call, tree);
  return add_identity(call, tree.config.interface_mode, trunk ? kTrunk : kAccess, kOrdinary);
}

// Writes an element, "100" or "200-300", as an OpenConfig entry. False for one that does not fit: half a number would
// be another VLAN.
bool write_entry(char (&entry)[kEntrySize], char* element) {
  char* const dash = std::strchr(element, '-');
  if (dash != nullptr) *dash = '\0';
  const int length = std::snprintf(entry, sizeof entry, "%s%s%s", element, dash != nullptr ? ".." : "",
                                   dash != nullptr ? dash + 1 : "");
  return static_cast<std::size_t>(length) < sizeof entry;
}

cerrno add_trunk_vlans(const Call& call) {
  const TagType type = tag_type(call, native::kTrunkTagType);
  if (!type.dot1q || call.node->value == nullptr) return type.status;
  const SwitchedVlanTree& tree = tree_of(call);
  cerrno result = add_container(call, tree);
  // The native text is consumed in place: nothing reads it after this.
  char* rest = nullptr;
  for (char* element = strtok_r(call.node->value, ",", &rest); element != nullptr;
       element = strtok_r(nullptr, ",", &rest)) {
    char entry[kEntrySize];
    if (!write_entry(entry, element)) continue;
    result = add_path(call, tree.config.trunk_vlans, YFW_OPENCONFIG_VLAN_NS, entry, nullptr, kOrdinaryEntry);
  }
  return result;
}

cerrno add_access_vlan(const Call& call) {
  const SwitchedVlanTree& tree = tree_of(call);
  add_container(call, tree);
  return add_leaf(call, tree.config.access_vlan);
}

cerrno read_back(const Call& call, cerrno (*add)(const Call& call)) {
  if (!begin(call)) return CERR_INVALID_ARGS;
  return end(call, read_scope_closed(call.ctx) ? 0 : add(call));
}

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_nativevlanidentifier_vlanidentifier(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return read_back({{ctx, __func__}, node, output}, add_native_vlan);
}

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_vlanswitched_mode(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return read_back({{ctx, __func__}, node, output}, add_interface_mode);
}

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_vlanswitched_accessvlan(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return read_back({{ctx, __func__}, node, output}, add_access_vlan);
}

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_vlanswitched_trunkvlans(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return read_back({{ctx, __func__}, node, output}, add_trunk_vlans);
}
