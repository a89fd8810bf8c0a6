// Native entries and OpenConfig requests in a few words, and what is told of them as text.
#pragma once

#include <fmt/format.h>

#include <string>
#include <utility>
#include <vector>

#include "framework/read/verdict.h"
#include "yfw-host/host.h"

namespace yfw::test {

inline constexpr char kVexnetNs[] = "http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg";
inline constexpr char kVexnetL2Ns[] = "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg";
inline constexpr char kEntriesPath[] = "/Vexnet-OS-interface-cfg:interface-configurations/interface-configuration";

using Leaves = std::vector<std::pair<std::string, std::string>>;

inline std::string elements(const Leaves& leaves) {
  std::string text;
  for (const auto& [name, value] : leaves) text += fmt::format("<{0}>{1}</{0}>", name, value);
  return text;
}

// A container of the L2 Ethernet module.
inline std::string l2_module(const std::string& container, const std::string& inside) {
  return fmt::format("<{0} xmlns=\"{1}\">{2}</{0}>", container, kVexnetL2Ns, inside);
}

inline std::string encapsulation(const Leaves& leaves, const Leaves& rewrite = {}) {
  const std::string inside = rewrite.empty() ? "" : "<rewrite>" + elements(rewrite) + "</rewrite>";
  return l2_module("ethernet-service", "<encapsulation>" + elements(leaves) + "</encapsulation>" + inside);
}

inline std::string rewrite(const Leaves& leaves) {
  return l2_module("ethernet-service", "<rewrite>" + elements(leaves) + "</rewrite>");
}

inline std::string vlan_identifier(const Leaves& leaves) {
  return l2_module("vlan-sub-configuration", "<vlan-identifier>" + elements(leaves) + "</vlan-identifier>");
}

inline std::string switched_port(const Leaves& leaves) {
  return l2_module("vlan-trunk-configuration", "<vlan-switched>" + elements(leaves) + "</vlan-switched>");
}

inline std::string layer(const std::string& inside = "") {
  return "<l2-transport>" + inside + "</l2-transport>";
}

// A control protocol below the layer.
inline std::string protocols(const std::string& name, const std::string& action) {
  const std::string entry = elements({{"l2-protocol-name", name}, {"action", action}});
  return l2_module("l2-protocols", "<l2-protocol>" + entry + "</l2-protocol>");
}

inline std::string carrier_delay(const std::string& up) {
  return l2_module("carrier-delay", elements({{"up", up}}));
}

// A native configuration of entries by their names.
inline std::string native_of(const Leaves& entries) {
  std::string text;
  for (const auto& [name, inside] : entries) {
    text += fmt::format("<interface-configuration><interface-name>{}</interface-name>{}</interface-configuration>\n",
                        name, inside);
  }
  return fmt::format("<interface-configurations xmlns=\"{}\">{}</interface-configurations>", kVexnetNs, text);
}

inline Host host_with(const std::string& running, Verify verify = Verify::report) {
  Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang", .verify = verify});
  host.load_plugin(OC_VLAN_PLUGIN_FILE);
  host.set_running({.text = running, .name = "running"});
  return host;
}

// A path without what all native paths begin with: "Ethernet0/0/1.100/rewrite".
inline std::string shortened(std::string path) {
  const std::string head = std::string(kEntriesPath) + "[interface-name='";
  for (std::size_t at = path.find(head); at != std::string::npos; at = path.find(head, at)) {
    path.replace(at, head.size(), "");
    path.erase(path.find("']", at), 2);
  }
  for (const std::string module : {"Vexnet-OS-l2-eth-infra-cfg:", "Vexnet-OS-interface-cfg:"}) {
    for (std::size_t at = path.find(module); at != std::string::npos; at = path.find(module)) {
      path.erase(at, module.size());
    }
  }
  return path;
}

inline std::string told(const std::vector<Warning>& warnings) {
  std::string text;
  for (const Warning& each : warnings) text += fmt::format("{}: {}\n", shortened(each.path), shortened(each.message));
  return text;
}

inline std::string told(const std::vector<Unsaid>& unsaid) {
  std::string text;
  for (const Unsaid& each : unsaid) {
    text +=
        fmt::format("{} {}{}{}{}\n", each.fate == Unsaid::Fate::goes ? "goes" : "stays", shortened(each.path),
                    each.value.empty() ? "" : " " + each.value, each.misread_as.empty() ? "" : " in ", each.misread_as);
  }
  return text;
}

inline std::string told(const std::vector<Misreading>& misread) {
  std::string text;
  for (const Misreading& each : misread) {
    text += fmt::format("{} is {} and reads as {}:", shortened(each.path), each.natively, each.reads_as);
    for (const std::string& path : each.makes) text += " " + path.substr(path.rfind('/') + 1);
    text += "\n";
  }
  return text;
}

}  // namespace yfw::test
