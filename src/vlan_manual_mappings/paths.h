// Paths of containers. Leaves are written behind them as string literals.
#pragma once

// Containers of native configuration, without the "/" that makes a path absolute.
#define NATIVE_INTERFACE "interface-configurations/interface-configuration"
#define ENCAPSULATION NATIVE_INTERFACE "/ethernet-service/encapsulation"
#define REWRITE NATIVE_INTERFACE "/ethernet-service/rewrite"
#define VLAN_IDENTIFIER NATIVE_INTERFACE "/vlan-sub-configuration/vlan-identifier"
#define TRUNK_CONFIGURATION NATIVE_INTERFACE "/vlan-trunk-configuration"
#define NATIVE_VLAN_IDENTIFIER TRUNK_CONFIGURATION "/native-vlan-identifier"
#define VLAN_SWITCHED TRUNK_CONFIGURATION "/vlan-switched"

// Native operational data.
#define OPER_INTERFACE "/vlan/nodes/node/interfaces/interface"
#define OPER_TRUNK "/vlan/nodes/node/trunks/trunk"

// OpenConfig.
#define OC_INTERFACE "/interfaces/interface"
#define OC_BELOW_INTERFACE "/subinterfaces/subinterface"
#define OC_SUBINTERFACE OC_INTERFACE OC_BELOW_INTERFACE
#define OC_MATCH OC_SUBINTERFACE "/vlan/match/"
#define OC_INGRESS_MAPPING OC_SUBINTERFACE "/vlan/ingress-mapping/"
#define OC_ETHERNET OC_INTERFACE "/ethernet"
#define OC_AGGREGATION OC_INTERFACE "/aggregation"
