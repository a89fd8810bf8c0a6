// Requests and running configurations that the cases are made of, written as short as they can be.
#pragma once

#include <string>

namespace cli_test {

inline constexpr char kSubinterfacePath[] =
    "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']";
inline constexpr char kMatchPath[] =
    "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']"
    "/openconfig-vlan:vlan/match";
inline constexpr char kSwitchedPath[] =
    "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet"
    "/openconfig-vlan:switched-vlan/config";

// The whole of an OpenConfig document: whatever stands inside interface Ethernet0/0/1.
inline std::string interface(const std::string& inside) {
  return "<interfaces xmlns=\"http://openconfig.net/yang/interfaces\" "
         "xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\">"
         "<interface><name>Ethernet0/0/1</name>" +
         inside + "</interface></interfaces>";
}

// Whatever stands inside sub-interface 100 of it.
inline std::string subinterface(const std::string& inside) {
  return interface("<subinterfaces><subinterface><index>100</index>" + inside + "</subinterface></subinterfaces>");
}

// Inside its `vlan`, its `match`, and inside `config` of its single-tagged match.
inline std::string vlan(const std::string& inside) {
  return subinterface("<vlan xmlns=\"http://openconfig.net/yang/vlan\">" + inside + "</vlan>");
}
inline std::string match(const std::string& inside) {
  return vlan("<match>" + inside + "</match>");
}
inline std::string form(const std::string& name, const std::string& config) {
  return match("<" + name + "><config>" + config + "</config></" + name + ">");
}
inline std::string single_tagged(const std::string& vlan_id) {
  return form("single-tagged", "<vlan-id>" + vlan_id + "</vlan-id>");
}

// Inside `ingress-mapping/config` of sub-interface 100.
inline std::string ingress(const std::string& config) {
  return vlan("<ingress-mapping><config>" + config + "</config></ingress-mapping>");
}

// Inside `ethernet/switched-vlan/config` of the interface.
inline std::string switched(const std::string& config) {
  return interface(
      "<ethernet xmlns=\"http://openconfig.net/yang/interfaces/ethernet\">"
      "<switched-vlan xmlns=\"http://openconfig.net/yang/vlan\"><config>" +
      config + "</config></switched-vlan></ethernet>");
}

// A native running configuration: the entries in it, and one entry.
inline std::string running(const std::string& entries) {
  return "<interface-configurations xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg\">" + entries +
         "</interface-configurations>";
}
inline std::string entry(const std::string& name, const std::string& inside) {
  return "<interface-configuration><interface-name>" + name + "</interface-name>" + inside +
         "</interface-configuration>";
}

// Native encapsulation of an L2 sub-interface: an outer tag-type of match-dot1q and these leaves.
inline std::string encapsulation(const std::string& leaves) {
  return "<l2-transport/><ethernet-service xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg\">"
         "<encapsulation><outer-tag-type>match-dot1q</outer-tag-type>" +
         leaves + "</encapsulation></ethernet-service>";
}

// Native trunk configuration of an interface.
inline std::string trunk_configuration(const std::string& leaves) {
  return "<vlan-trunk-configuration xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg\">" + leaves +
         "</vlan-trunk-configuration>";
}

// The same of an access port, as it is configured and as the device tells it.
inline std::string access_port(const std::string& vlan_id) {
  return trunk_configuration("<vlan-switched><mode>access</mode><access-vlan>" + vlan_id +
                             "</access-vlan></vlan-switched>");
}
inline std::string oper_port(const std::string& switched) {
  return "<vlan "
         "xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-oper\"><nodes><node><node-id>0/0/CPU0</node-id>"
         "<trunks><trunk><interface>Ethernet0/0/1</interface><vlan-switched>" +
         switched + "</vlan-switched></trunk></trunks></node></nodes></vlan>";
}
inline std::string oper_access_port(const std::string& vlan_id) {
  return oper_port("<mode>access-port</mode><access-vlan>" + vlan_id + "</access-vlan>");
}

// Sub-interface Ethernet0/0/1.100 is there, L2, and matches nothing yet; its interface is there too.
inline std::string plain_running() {
  return running(entry("Ethernet0/0/1", "") + entry("Ethernet0/0/1.100", "<l2-transport/>"));
}

// The same, matching one VLAN.
inline std::string running_with_vlan(const std::string& vlan_id) {
  return running(entry("Ethernet0/0/1", "") +
                 entry("Ethernet0/0/1.100", encapsulation("<outer-range1-low>" + vlan_id + "</outer-range1-low>")));
}

// The same, with these leaves of a rewrite.
inline std::string running_with_rewrite(const std::string& leaves) {
  return running(entry("Ethernet0/0/1.100",
                       "<l2-transport/><ethernet-service "
                       "xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg\"><rewrite>" +
                           leaves + "</rewrite></ethernet-service>"));
}

}  // namespace cli_test
