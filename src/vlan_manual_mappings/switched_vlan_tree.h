// Where OpenConfig keeps the switched VLAN of an interface: below `ethernet`, or below `aggregation` for a bundle.
#pragma once

#include "engine/request.h"

namespace oc_vlan {

struct SwitchedVlanLeaves {
  const char* interface_mode;
  const char* native_vlan;
  const char* access_vlan;
  const char* trunk_vlans;
};

struct SwitchedVlanTree {
  const char* container;
  const char* container_ns;
  SwitchedVlanLeaves config;
  SwitchedVlanLeaves state;
};

// The tree for an interface name; a missing name counts as Ethernet.
const SwitchedVlanTree& switched_vlan_tree(const char* interface);

// Adds the container of the tree.
cerrno add_container(const Call& call, const SwitchedVlanTree& tree);

}  // namespace oc_vlan
