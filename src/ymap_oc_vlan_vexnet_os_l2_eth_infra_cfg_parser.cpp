// Walkers and augment hooks of the native configuration family.
#define OC_VLAN_NAME OC_VLAN_NATIVE_CFG
#define OC_VLAN_ROWS "native_cfg.def"
#define OC_VLAN_POLICY oc_vlan::kNativeCfg
#define OC_VLAN_HOOK OC_VLAN_IGNORING_HOOK
#include "engine/walkers_from_rows.h"

OC_VLAN_SHARED_HOOK
