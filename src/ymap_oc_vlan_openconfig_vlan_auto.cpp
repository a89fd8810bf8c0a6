// Per-node handlers of the OpenConfig family, made from its rows.
#include "oc_vlan/handlers.h"
#include "oc_vlan/oc_vlan.h"

#define OC_VLAN_NAME(name) ymap_ov_oc_vlan_openconfigvlan_##name
#include "engine/handlers_from_rows.h"

OC_VLAN_DEFAULT_HANDLERS

#include "openconfig_vlan.def"
