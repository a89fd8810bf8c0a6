// VLAN id of a routed sub-interface, "100" or "100.200", to and from the native VLAN identifier.
#include <cstring>

#include "engine/text.h"
#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/native.h"

namespace oc_vlan {
namespace {

// "4094.4094", and its end.
constexpr std::size_t kVlanIdSize = 10;

// Codes of the C library, not of the framework, reach the requester for an id that cannot be parsed.
constexpr cerrno kUnparsableId = 22;

cerrno first_failure(cerrno a, cerrno b, cerrno c = 0) {
  if (a != 0) return a;
  return b != 0 ? b : c;
}

// Removes the second tag, which need not be there: the source carries "remove" for the one addition.
cerrno remove_second_tag(const Call& call) {
  // Nodes of a request are lent read-only but for their operation, which walkers rewrite too.
  auto& node = const_cast<yfw_datatree&>(*call.node);
  const uint32_t operation = node.operation;
  node.operation = YFW_OPERATION_REMOVE;
  node.node_flags |= YFW_NODE_OPERATION_CHANGED;
  const cerrno result = add_native(call, native::kSecondTag.path, nullptr, call.node);
  node.operation = operation;
  return result;
}

cerrno fetch_or_remove(const Call& call) {
  const cerrno type = add_native(call, native::kVlanType.path, nullptr, call.node);
  const cerrno first = add_native(call, native::kFirstTag.path, nullptr, call.node);
  const cerrno second = call.node->operation == YFW_OPERATION_DELETE
                            ? remove_second_tag(call)
                            : add_native(call, native::kSecondTag.path, nullptr, call.node);
  return first_failure(type, first, second);
}

// Ids of a VLAN id text; `inner` is null when there is none. The outer id of a joined text is a copy in `buffer`.
struct VlanIds {
  char buffer[5];
  const char* type;
  const char* outer;
  const char* inner;
};

cerrno parse(const Call& call, VlanIds& ids) {
  const char* const text = call.node->value;
  const char* const dot = std::strchr(text, '.');
  if (dot == nullptr) {
    ids.type = native::kVlanTypeDot1q;
    ids.outer = text;
    return 0;
  }
  const auto length = static_cast<std::size_t>(dot - text);
  if (length >= sizeof ids.buffer) {
    OC_VLAN_ERROR(call, "Invalid OC VLAN Id specified ('%s')", text);
    yfw_oc_error_path(call.ctx);
    return kUnparsableId;
  }
  const int copied = yfw_strncpy_s(call.function, ids.buffer, sizeof ids.buffer, text, length);
  ids.buffer[length] = '\0';
  ids.type = native::kVlanTypeDot1ad;
  ids.outer = ids.buffer;
  ids.inner = dot[1] != '\0' ? dot + 1 : nullptr;
  return static_cast<cerrno>(copied);
}

cerrno write_ids(const Call& call) {
  if (call.node->value == nullptr) {
    OC_VLAN_ERROR(call, "Null VLAN Id value specified in OC model");
    return 0;
  }
  VlanIds ids{};
  const cerrno parsed = parse(call, ids);
  if (parsed != 0) {
    OC_VLAN_ERROR(call, "Failed to parse OC VLAN Id '%s'", call.node->value);
    return parsed;
  }
  const cerrno type = add_native(call, native::kVlanType.path, ids.type, call.node);
  const cerrno first = add_native(call, native::kFirstTag.path, ids.outer, call.node);
  const cerrno second =
      ids.inner != nullptr ? add_native(call, native::kSecondTag.path, ids.inner, call.node) : remove_second_tag(call);
  return first_failure(type, first, second);
}

// What the native container holds.
struct VlanIdentifier {
  bool dot1q;
  bool dot1ad;
  const char* first;
  const char* second;
};

void read_vlan_type(const Call& call, const char* value, VlanIdentifier& identifier) {
  if (same(value, native::kVlanTypeDot1ad)) {
    identifier.dot1ad = true;
  } else if (same(value, native::kVlanTypeDot1q)) {
    identifier.dot1q = true;
  } else {
    OC_VLAN_TRACE(call, "Ignoring tag with outer VLAN tag type '%s'", shown(value));
  }
}

void read_leaf(const Call& call, const yfw_datatree& leaf, VlanIdentifier& identifier) {
  if (!same(leaf.ns, YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS)) {
    OC_VLAN_TRACE(call, "Ignoring unexpected VLAN nodes in a different YANG namespace '%s'", shown(leaf.ns));
  } else if (same(leaf.tag, native::kVlanType.name)) {
    read_vlan_type(call, leaf.value, identifier);
  } else if (same(leaf.tag, native::kFirstTag.name)) {
    identifier.first = leaf.value;
  } else if (same(leaf.tag, native::kSecondTag.name)) {
    identifier.second = leaf.value;
  } else {
    OC_VLAN_TRACE(call, "Ignoring unexpected Native VLAN tag leaf node '%s'", shown(leaf.tag));
  }
}

cerrno add_vlan_id(const Call& call, const char* value) {
  cerrno config = 0;
  if (!read_scope_closed(call.ctx)) {
    config =
        add_path(call, OC_SUBINTERFACE "/vlan/config/vlan-id", YFW_OPENCONFIG_VLAN_NS, value, call.node, kOrdinary);
  }
  if (!is_state_read(call.ctx)) return config;
  const cerrno state =
      add_path(call, OC_SUBINTERFACE "/vlan/state/vlan-id", YFW_OPENCONFIG_VLAN_NS, value, call.node, kOrdinary);
  return first_failure(config, state);
}

cerrno read_back(const Call& call, uint32_t count) {
  yfw_datatree* leaves = nullptr;
  uint32_t available = 0;
  const cerrno result = yfw_map_get_subtrees(call.ctx, call.node, &leaves, &available);
  if (result != 0) return result;

  VlanIdentifier identifier{};
  for (uint32_t i = 0; leaves != nullptr && i < count && i < available; ++i) read_leaf(call, leaves[i], identifier);

  if (identifier.dot1q && identifier.first != nullptr && identifier.second == nullptr) {
    return add_vlan_id(call, identifier.first);
  }
  if (identifier.dot1ad && identifier.first != nullptr && identifier.second != nullptr) {
    return add_vlan_id(call, Text<kVlanIdSize>(identifier.first, ".", identifier.second).c_str());
  }
  return 0;
}

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

cerrno map_oc_to_vex_l3_vlan(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  const bool write = request_case(call) == RequestCase::kWrite;
  return end(call, write ? write_ids(call) : fetch_or_remove(call));
}

cerrno map_vex_to_oc_l3_vlan(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count, yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  if (count == 0) {
    OC_VLAN_TRACE(call, "No subtrees");
    return end(call, 0);
  }
  return end(call, read_back(call, count));
}
