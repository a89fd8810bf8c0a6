// Native rewrite read back as the OpenConfig ingress mapping.
#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/identity.h"
#include "vlan_manual_mappings/paths.h"

namespace oc_vlan {
namespace {

constexpr ValueName kRewriteTypes[] = {{"push1", "PUSH"}, {"pop1", "POP"}, {"translate1to1", "SWAP"}};
constexpr ValueName kTagTypes[] = {{"match-dot1q", "TPID_0X8100"}, {"match-dot1ad", "TPID_0X88A8"}};

// A tag type or tag value means something only to a rewrite that puts a tag on. Without a rewrite type there is
// nothing to say, and no failure either.
bool pushes_a_tag(yfw_map_ctx* ctx) {
  const Lookup type =
      look_up(ctx, "/interface-configurations/interface-configuration/ethernet-service/rewrite", "rewrite-type");
  return same(type.text, "push1") || same(type.text, "translate1to1");
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
