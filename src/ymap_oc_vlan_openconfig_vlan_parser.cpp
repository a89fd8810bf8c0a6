// Walkers and augment hooks of the OpenConfig family.
#define OC_VLAN_NAME OC_VLAN_OPENCONFIG
#define OC_VLAN_ROWS "openconfig_vlan.def"
#define OC_VLAN_POLICY oc_vlan::kOpenConfig
#define OC_VLAN_HOOK OC_VLAN_REFUSING_HOOK
#include "engine/walkers_from_rows.h"
