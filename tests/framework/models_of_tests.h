// Models that tests share, and outcomes as texts, so that a failing case shows whole documents.
#pragma once

#include <fmt/format.h>

#include <filesystem>
#include <string>

#include "framework/documents/documents.h"
#include "framework/tree/models.h"
#include "yfw-host/error.h"

namespace yfw::test {

inline constexpr char kInterfacesNs[] = "http://openconfig.net/yang/interfaces";
inline constexpr char kEthernetNs[] = "http://openconfig.net/yang/interfaces/ethernet";
inline constexpr char kVlanNs[] = "http://openconfig.net/yang/vlan";
inline constexpr char kVlanTypesNs[] = "http://openconfig.net/yang/vlan-types";
inline constexpr char kNativeNs[] = "http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg";
inline constexpr char kOperNs[] = "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-oper";
inline constexpr char kNetconf[] = "urn:ietf:params:xml:ns:netconf:base:1.0";

inline const Models& compact_models() {
  static const Models models(OC_VLAN_SOURCE_DIR "/yang");
  return models;
}

inline bool has_published_models() {
  return std::filesystem::is_directory(OC_VLAN_PUBLISHED_YANG);
}

inline const Models& published_models() {
  static const Models models(OC_VLAN_SOURCE_DIR "/yang", OC_VLAN_PUBLISHED_YANG);
  return models;
}

inline std::string described(const RpcError& error) {
  std::string text = fmt::format("refused: {}\n  path: {}\n  message: {}\n", error.tag, error.path, error.message);
  if (!error.bad_element.empty()) text += fmt::format("  bad-element: {}\n", error.bad_element);
  if (!error.bad_attribute.empty()) text += fmt::format("  bad-attribute: {}\n", error.bad_attribute);
  if (!error.bad_namespace.empty()) text += fmt::format("  bad-namespace: {}\n", error.bad_namespace);
  return text;
}

// What `work` returns, or what it throws, as one text.
template <typename Work>
std::string outcome_of(const Work& work) {
  try {
    return work();
  } catch (const Refused& refused) {
    return described(refused.error());
  } catch (const Unreadable& unreadable) {
    return fmt::format("unreadable: {}\n", unreadable.what());
  }
}

inline Format format_of(std::string_view text) {
  return text.substr(0, 1) == "{" || text.substr(0, 1) == "[" ? Format::json : Format::xml;
}

// An edit as it was understood: warnings, namespaces of values, and the tree.
inline std::string edit_outcome(const Models& models, std::string_view text, Format print = Format::xml,
                                Operation default_operation = Operation::merge) {
  return outcome_of([&] {
    const EditDocument edit = parse_edit(models.get(), {text, format_of(text), "request"}, default_operation);
    std::string result;
    for (const Warning& warning : edit.warnings)
      result += fmt::format("warning: {}: {}\n", warning.path, warning.message);
    return result + edit.tree.print(print);
  });
}

// <interfaces> with one interface Ethernet0/0/1, in XML.
inline std::string on_interface(std::string_view inside) {
  return fmt::format(
      "<interfaces xmlns=\"{}\" xmlns:nc=\"{}\" xmlns:t=\"{}\" xmlns:oc-if=\"{}\"><interface>"
      "<name>Ethernet0/0/1</name>{}</interface></interfaces>",
      kInterfacesNs, kNetconf, kVlanTypesNs, kInterfacesNs, inside);
}

// The same with the sub-interface 100 and its <vlan>.
inline std::string on_vlan(std::string_view inside) {
  return on_interface(
      fmt::format("<subinterfaces><subinterface><index>100</index><vlan xmlns=\"{}\">{}</vlan>"
                  "</subinterface></subinterfaces>",
                  kVlanNs, inside));
}

inline std::string on_trunk(std::string_view config) {
  return on_interface(
      fmt::format("<ethernet xmlns=\"{}\"><switched-vlan xmlns=\"{}\"><config>{}</config>"
                  "</switched-vlan></ethernet>",
                  kEthernetNs, kVlanNs, config));
}

inline constexpr char kInterfacePath[] = "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']";
inline constexpr char kVlanPath[] =
    "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']"
    "/openconfig-vlan:vlan";
inline constexpr char kTrunkPath[] =
    "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet"
    "/openconfig-vlan:switched-vlan/config";

}  // namespace yfw::test
