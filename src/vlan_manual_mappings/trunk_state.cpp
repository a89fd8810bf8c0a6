// Native trunks to the OpenConfig switched-VLAN state of an interface.
#include "engine/text.h"
#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/identity.h"
#include "vlan_manual_mappings/native.h"
#include "vlan_manual_mappings/switched_vlan_tree.h"

namespace oc_vlan {
namespace {

constexpr std::size_t kRangeSize = 20;

Lookup trunk_name(const Call& call) {
  return look_up(call.ctx, OPER_TRUNK, "interface");
}

cerrno add_leaf(const Call& call, const char* path, const char* value, AddForm form) {
  return add_path(call, path, YFW_OPENCONFIG_VLAN_NS, value, nullptr, form);
}

cerrno open_entry(const Call& call) {
  // The name is used whole: a trunk is never a sub-interface.
  const Lookup name = trunk_name(call);
  if (name.text == nullptr) return name.status;
  return yfw_map_search_or_add_list(call.ctx, call.output, list_slot(call.ctx), OC_INTERFACE, name.text, "name",
                                    YFW_OPENCONFIG_INTERFACES_NS);
}

// What a `vlan-switched` container says.
struct Switched {
  bool access;
  bool trunk;
  const char* access_vlan;
  const yfw_datatree* tags;  // the tags of a trunk; null when it lists none
};

Switched switched_of(const yfw_datatree& node) {
  const char* const mode = child_text(node, "mode");
  const yfw_datatree* tags = nullptr;
  const char* ethertype = nullptr;
  for (const yfw_datatree& child : children(node)) {
    if (!same(child.tag, "trunk-vlan-ranges")) continue;
    const yfw_datatree* const first = first_child(child, native::kTagsToMatch);
    if (first == nullptr) continue;
    tags = first;
    const yfw_datatree* const type = first_child(*first, native::kEthertype);
    if (type != nullptr) ethertype = type->value;
  }
  return {same(mode, "access-port"), same(mode, "trunk-port") && same(ethertype, native::kDot1q),
          child_text(node, "access-vlan"), tags};
}

cerrno add_ranges(const Call& call, const SwitchedVlanTree& tree, const yfw_datatree& tags, cerrno result) {
  // An end that one range lacks is that of the range before.
  const char* low = nullptr;
  const char* high = nullptr;
  for (const yfw_datatree& range : children(tags)) {
    if (!same(range.tag, native::kVlanRange)) continue;
    const char* const own_low = child_text(range, native::kRangeLow);
    const char* const own_high = child_text(range, native::kRangeHigh);
    if (own_low != nullptr) low = own_low;
    if (own_high != nullptr) high = own_high;
    if (low == nullptr || high == nullptr) continue;
    const bool single = same(low, high);
    const Text<kRangeSize> text(low, single ? "" : "..", single ? "" : high);
    result = add_leaf(call, tree.state.trunk_vlans, text.c_str(), kOrdinaryEntry);
  }
  return result;
}

cerrno add_switched(const Call& call, const char* name) {
  const Switched switched = switched_of(*call.node);
  if (!switched.access && !switched.trunk) return 0;
  const SwitchedVlanTree& tree = switched_vlan_tree(name);
  const cerrno container = add_container(call, tree);
  if (switched.access && switched.access_vlan != nullptr) {
    add_identity(call, tree.state.interface_mode, kAccess, kOrdinary);
    return add_leaf(call, tree.state.access_vlan, switched.access_vlan, kOrdinary);
  }
  if (switched.trunk && switched.tags != nullptr) {
    const cerrno mode = add_identity(call, tree.state.interface_mode, kTrunk, kOrdinary);
    return add_ranges(call, tree, *switched.tags, mode);
  }
  return container;
}

cerrno add_native_vlan(const Call& call) {
  const Lookup name = trunk_name(call);
  if (name.text == nullptr) return name.status;
  const SwitchedVlanTree& tree = switched_vlan_tree(name.text);
  add_container(call, tree);
  return add_leaf(call, tree.state.native_vlan, call.node->value, kOrdinary);
}

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfraoper_list_lvla_vlan_trunks_trunk(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                                          yfw_datatree* output,
                                                                          yfw_datatree* /*children*/) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  return end(call, open_entry(call));
}

cerrno vex2_oc_vlanswitched(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count, yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  const Lookup name = trunk_name(call);
  if (count == 0) OC_VLAN_TRACE(call, "No subtrees");
  if (count == 0 || name.text == nullptr) return end(call, name.status);
  return end(call, add_switched(call, name.text));
}

cerrno vex2_oc_native_vlan(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  return end(call, add_native_vlan(call));
}
