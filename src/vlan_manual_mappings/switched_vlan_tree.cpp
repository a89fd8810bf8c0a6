// Where OpenConfig keeps the switched VLAN of an interface.
#include "vlan_manual_mappings/switched_vlan_tree.h"

#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/paths.h"

namespace oc_vlan {
namespace {

#define LEAVES(branch) \
  { branch "/interface-mode", branch "/native-vlan", branch "/access-vlan", branch "/trunk-vlans" }

constexpr SwitchedVlanTree kEthernet{.container = OC_ETHERNET,
                                     .container_ns = YFW_OPENCONFIG_IF_ETHERNET_NS,
                                     .config = LEAVES(OC_ETHERNET "/switched-vlan/config"),
                                     .state = LEAVES(OC_ETHERNET "/switched-vlan/state")};

constexpr SwitchedVlanTree kAggregation{.container = OC_AGGREGATION,
                                        .container_ns = YFW_OPENCONFIG_IF_AGGREGATE_NS,
                                        .config = LEAVES(OC_AGGREGATION "/switched-vlan/config"),
                                        .state = LEAVES(OC_AGGREGATION "/switched-vlan/state")};

#undef LEAVES

constexpr int kBundle = 2;

}  // namespace

const SwitchedVlanTree& switched_vlan_tree(const char* interface) {
  return check_switched_vlan_cfgd_on_ether_or_bundle(interface) == kBundle ? kAggregation : kEthernet;
}

cerrno add_container(const Call& call, const SwitchedVlanTree& tree) {
  return add_path(call, tree.container, tree.container_ns, nullptr, nullptr, kOrdinary);
}

}  // namespace oc_vlan
