// OpenConfig ingress mapping to the native rewrite, and where the state leaves of a sub-interface are fetched from.
#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/identity.h"
#include "vlan_manual_mappings/match_shapes.h"
#include "vlan_manual_mappings/state_leaf.h"

namespace oc_vlan {
namespace {

constexpr ValueName kStackActions[] = {{kPush, native::kPush}, {kPop, native::kPop}, {kSwap, native::kTranslate}};
constexpr ValueName kTpids[] = {{kTpidDot1ad, native::kMatchDot1ad}, {kTpidDot1q, native::kMatchDot1q}};

void log_foreign_stack_action(const Frame& frame) {
  OC_VLAN_ERROR(frame, " vlan-stack-action node validation failed!");
}

void log_foreign_tpid(const Frame& frame) {
  OC_VLAN_ERROR(frame, " tpid node validation failed!");
}

constexpr IdentityLeaf kStackAction{.name = "vlan-stack-action",
                                    .names = kStackActions,
                                    .log_foreign = log_foreign_stack_action,
                                    .invalid = "Invalid value for vlan-stack-action provided",
                                    .releases_error_tag = false};

constexpr IdentityLeaf kTpid{.name = "tpid",
                             .names = kTpids,
                             .log_foreign = log_foreign_tpid,
                             .invalid = "Invalid value for tpid provided",
                             .releases_error_tag = false};

constexpr char kEncapsulationDetails[] = OPER_INTERFACE "/encapsulation-details";

cerrno add_stack_action(const Call& call) {
  constexpr const char* kPath = native::kRewriteType.path;
  switch (request_case(call)) {
    case RequestCase::kRead:
      return add_native(call, kPath, call.node->value, nullptr);
    case RequestCase::kDelete:
      return add_native(call, native::kRewrite, nullptr, call.node);
    case RequestCase::kWrite:
      break;
  }
  const Identity action = native_identity(call, kStackAction);
  if (action.refused) return CERR_INVALID_VALUE;
  // An unknown action, though recorded as a failure, is still added without a value: the result is the framework's.
  return add_native(call, kPath, action.native, call.node);
}

cerrno add_tpid(const Call& call) {
  constexpr const char* kPath = native::kRewriteTagType.path;
  switch (request_case(call)) {
    case RequestCase::kRead:
      return add_native(call, kPath, call.node->value, nullptr);
    case RequestCase::kDelete:
      return add_native(call, kPath, nullptr, call.node);
    case RequestCase::kWrite:
      break;
  }
  const Identity tpid = native_identity(call, kTpid);
  return tpid.native != nullptr ? add_native(call, kPath, tpid.native, call.node) : CERR_INVALID_VALUE;
}

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

cerrno oc2_vex_ingress_mapping_cfg_vlanstackaction(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  return end(call, add_stack_action(call));
}

cerrno oc2_vex_ingress_mapping_cfg_vlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return copied_leaf({{ctx, __func__}, node, output}, native::kRewriteTagValue.path);
}

cerrno oc2_vex_ingress_mapping_cfg_tpid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  return end(call, add_tpid(call));
}

cerrno oc2_vex_match_container_state_leaves(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return state_leaf({{ctx, __func__}, node, output}, kEncapsulationDetails);
}

cerrno oc2_vex_ingressmapping_container_state_leaves(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return state_leaf({{ctx, __func__}, node, output}, kEncapsulationDetails);
}
