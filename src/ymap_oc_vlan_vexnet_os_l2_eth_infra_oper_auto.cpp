// Per-node handlers of the native operational family, made from its rows.
#include "oc_vlan/handlers.h"
#include "oc_vlan/oc_vlan.h"

#define OC_VLAN_NAME(name) ymap_vo_oc_vlan_vexnetosl2ethinfraoper_##name
#include "engine/handlers_from_rows.h"

OC_VLAN_DEFAULT_HANDLERS

#include "native_oper.def"
