// OpenConfig state leaves on their way to native operational data.
#include "vlan_manual_mappings/state_leaf.h"

namespace oc_vlan {

cerrno state_leaf(const Call& call, const char* path) {
  if (!begin(call)) return CERR_INVALID_ARGS;
  if (!is_read(call.ctx)) return end(call, 0);
  return end(call, add_path(call, path, YFW_VEXNET_OS_L2_ETH_INFRA_OPER_NS, call.node->value, nullptr, kOrdinary));
}

}  // namespace oc_vlan
