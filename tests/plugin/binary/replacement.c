/* A definition that takes the place of a weak handler of the plug-in. */
#include "oc_vlan/handlers.h"

cerrno ymap_ov_oc_vlan_openconfigvlan_cont_lvla_vlan_match(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count,
                                                           yfw_datatree* output) {
  (void)ctx, (void)node, (void)output;
  return UINT32_C(0xaaf20000) + count;
}
