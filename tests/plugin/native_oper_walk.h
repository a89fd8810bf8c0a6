// A walk of native operational data, and the calls by which it is opened and closed.
#pragma once

#include "plugin/walk.h"

namespace native_oper {

inline constexpr char kNode[] = "list_lvla_vlan_nodes_node";
inline constexpr char kTrunk[] = "list_lvla_vlan_trunks_trunk";
inline constexpr char kInterface[] = "list_lvla_vlan_interfaces_interface";
inline constexpr char kEncapsulation[] = "cont_lvla_vlan_interface_encapsulationdetails";
inline constexpr char kSwitched[] = "cont_lvla_vlan_trunk_vlanswitched";
inline constexpr char kNativeVlan[] = "leaf_lvla_vlan_layer3subinterfaces_nativevlan";

// The walk alone: list handlers and translations answer without their bodies.
inline walks::Walk walk_vlan(uint32_t kind, const std::string& below,
                             const std::function<void(walks::Walk&)>& given = {}) {
  return {ymap_vo_oc_vlan_vexnetosl2ethinfraoper_lvla_vlan, kind, "oper:vlan { " + below + " }",
          [&given](walks::Walk& w) {
            for (const char* handler : {kTrunk, kInterface, kEncapsulation, kSwitched, kNativeVlan}) {
              w.recorder.answer(handler, 0);
            }
            if (given) given(w);
          }};
}

inline std::string node(const std::string& below) {
  return "nodes { node { node-id=0/0 " + below + " } }";
}

// The walk up to the children of a node, and from there.
inline const std::string kIn =
    walks::lines("add_to_node_hierarchy node=vlan level=1", "cont_lvla_vlan node=vlan count=1",
                 "add_to_node_hierarchy node=nodes level=1", "cont_lvla_vlan_nodes node=nodes count=1",
                 "add_to_node_hierarchy node=node level=2", "update_current_list_node path=/vlan/nodes/node",
                 "list_lvla_vlan_nodes_node node=node", "add_to_output_list node=node tree=output");
inline const std::string kOut =
    walks::lines("remove_from_node_hierarchy node=node", "remove_from_output_list node=node tree=output",
                 "remove_from_node_hierarchy node=nodes", "remove_from_node_hierarchy node=vlan");

inline std::string opened(const std::string& entry, const std::string& path, const std::string& handler) {
  return walks::lines("add_to_node_hierarchy node=" + entry + " level=2", "update_current_list_node path=" + path,
                      handler + " node=" + entry, "add_to_output_list node=" + entry + " tree=output");
}

inline std::string closed(const std::string& entry) {
  return walks::lines("remove_from_node_hierarchy node=" + entry,
                      "remove_from_output_list node=" + entry + " tree=output");
}

inline constexpr char kTrunkPath[] = "/vlan/nodes/node/trunks/trunk";
inline constexpr char kInterfacePath[] = "/vlan/nodes/node/interfaces/interface";

}  // namespace native_oper
