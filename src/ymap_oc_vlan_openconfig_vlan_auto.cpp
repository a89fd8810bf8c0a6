// Per-node handlers of the OpenConfig family.
#define OC_VLAN_NAME OC_VLAN_OPENCONFIG
#define OC_VLAN_ROWS "openconfig_vlan.def"
#include "engine/handlers_from_rows.h"
