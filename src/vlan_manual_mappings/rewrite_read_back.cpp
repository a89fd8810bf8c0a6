// Native rewrite read back as the OpenConfig ingress mapping.
#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/identity.h"
#include "vlan_manual_mappings/native.h"

namespace oc_vlan {
namespace {

constexpr ValueName kRewriteTypes[] = {{native::kPush, kPush}, {native::kPop, kPop}, {native::kTranslate, kSwap}};
constexpr ValueName kTagTypes[] = {{native::kMatchDot1q, kTpidDot1q}, {native::kMatchDot1ad, kTpidDot1ad}};

// A tag type or tag value means something only to a rewrite that puts a tag on. Without a rewrite type there is
// nothing to say, and no failure either.
bool pushes_a_tag(yfw_map_ctx* ctx) {
  const Lookup type = look_up(ctx, native::kRewriteType);
  return same(type.text, native::kPush) || same(type.text, native::kTranslate);
}

cerrno add_name(const Call& call, const char* path, std::span<const ValueName> names) {
  const char* const name = translated(names, call.node->value);
  return name != nullptr ? add_identity(call, path, name, kPlain) : 0;
}

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_rewritetype(yfw_map_ctx* ctx,
                                                                                               const yfw_datatree* node,
                                                                                               yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  if (read_scope_closed(ctx)) return end(call, 0);
  return end(call, add_name(call, OC_INGRESS_MAPPING "config/vlan-stack-action", kRewriteTypes));
}

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_outertagtype(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  if (read_scope_closed(ctx) || !pushes_a_tag(ctx)) return end(call, 0);
  return end(call, add_name(call, OC_INGRESS_MAPPING "config/tpid", kTagTypes));
}

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_outertagvalue(
    yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  if (read_scope_closed(ctx) || !pushes_a_tag(ctx)) return end(call, 0);
  return end(call,
             add_path(call, OC_INGRESS_MAPPING "config/vlan-id", YFW_OPENCONFIG_VLAN_NS, node->value, nullptr, kPlain));
}
