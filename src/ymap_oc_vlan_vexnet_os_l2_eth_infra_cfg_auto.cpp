// Per-node handlers of the native configuration family.
#define OC_VLAN_NAME OC_VLAN_NATIVE_CFG
#define OC_VLAN_ROWS "native_cfg.def"
#include "engine/handlers_from_rows.h"
