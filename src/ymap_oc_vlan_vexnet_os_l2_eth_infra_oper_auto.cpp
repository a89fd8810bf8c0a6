// Per-node handlers of the native operational family.
#define OC_VLAN_NAME OC_VLAN_NATIVE_OPER
#define OC_VLAN_ROWS "native_oper.def"
#include "engine/handlers_from_rows.h"
