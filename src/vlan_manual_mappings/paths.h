// Prefixes of the paths that translations read and write. Leaves are added as string literals behind them.
#pragma once

// Native configuration. The L2 containers are written relative and the L3 ones absolute: requesters see both forms in
// the paths that a read fetches.
#define ENCAPSULATION "interface-configurations/interface-configuration/ethernet-service/encapsulation/"
#define REWRITE "interface-configurations/interface-configuration/ethernet-service/rewrite/"
#define VLAN_IDENTIFIER "/interface-configurations/interface-configuration/vlan-sub-configuration/vlan-identifier/"
#define TRUNK_CONFIGURATION "/interface-configurations/interface-configuration/vlan-trunk-configuration/"
#define NATIVE_VLAN_IDENTIFIER TRUNK_CONFIGURATION "native-vlan-identifier/"
#define VLAN_SWITCHED TRUNK_CONFIGURATION "vlan-switched/"

// Native operational data.
#define OPER_INTERFACE "/vlan/nodes/node/interfaces/interface"
#define OPER_TRUNK "/vlan/nodes/node/trunks/trunk"

// OpenConfig.
#define OC_INTERFACE "/interfaces/interface"
#define OC_SUBINTERFACE OC_INTERFACE "/subinterfaces/subinterface"
#define OC_MATCH OC_SUBINTERFACE "/vlan/match/"
#define OC_INGRESS_MAPPING OC_SUBINTERFACE "/vlan/ingress-mapping/"
#define OC_ETHERNET OC_INTERFACE "/ethernet"
#define OC_AGGREGATION OC_INTERFACE "/aggregation"
