// What people and programs are told: warnings, refusals, differences and trace lines.
#include "cli/report.h"

#include <fmt/format.h>

#include <array>
#include <string_view>
#include <utility>

#include "framework/verify.h"
#include "yfw/yfw_map.h"

namespace ocvlan {
namespace {

// Modules that an error-path can name; XML binds their names as prefixes.
struct Module {
  std::string_view name;
  std::string_view ns;
};
constexpr std::array kModules = {
    Module{"openconfig-interfaces", YFW_OPENCONFIG_INTERFACES_NS},
    Module{"openconfig-if-ethernet", YFW_OPENCONFIG_IF_ETHERNET_NS},
    Module{"openconfig-if-aggregate", YFW_OPENCONFIG_IF_AGGREGATE_NS},
    Module{"openconfig-vlan", YFW_OPENCONFIG_VLAN_NS},
    Module{"openconfig-vlan-types", YFW_OPENCONFIG_VLAN_TYPES_NS},
    Module{"Vexnet-OS-interface-cfg", "http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg"},
    Module{"Vexnet-OS-l2-eth-infra-cfg", YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS},
    Module{"Vexnet-OS-l2-eth-infra-oper", YFW_VEXNET_OS_L2_ETH_INFRA_OPER_NS},
};

bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

}  // namespace

std::string xml_text(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      default:
        result += is_control(c) ? ' ' : c;
    }
  }
  return result;
}

std::string json_text(const std::string& text) {
  std::string result;
  for (const char c : text) {
    if (c == '"' || c == '\\') {
      result += '\\';
      result += c;
    } else if (is_control(c)) {
      result += fmt::format("\\u{:04x}", static_cast<unsigned>(static_cast<unsigned char>(c)));
    } else {
      result += c;
    }
  }
  return result;
}

std::string prefix_declarations(const std::string& path) {
  std::string result;
  for (const Module& module : kModules) {
    if (path.find(fmt::format("{}:", module.name)) != std::string::npos) {
      result += fmt::format(" xmlns:{}=\"{}\"", module.name, module.ns);
    }
  }
  return result;
}

namespace {

using Info = std::vector<std::pair<const char*, std::string>>;

Info info_of(const yfw::RpcError& error) {
  Info info;
  if (!error.bad_attribute.empty()) info.emplace_back("bad-attribute", error.bad_attribute);
  if (!error.bad_element.empty()) info.emplace_back("bad-element", error.bad_element);
  if (!error.bad_namespace.empty()) info.emplace_back("bad-namespace", error.bad_namespace);
  return info;
}

std::string xml_error(const yfw::RpcError& error) {
  std::string text = fmt::format(
      "<rpc-error xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">\n"
      "  <error-type>{}</error-type>\n"
      "  <error-tag>{}</error-tag>\n"
      "  <error-severity>error</error-severity>\n",
      error.type, error.tag);
  if (!error.path.empty()) {
    text += fmt::format("  <error-path{}>{}</error-path>\n", prefix_declarations(error.path), xml_text(error.path));
  }
  text += fmt::format("  <error-message xml:lang=\"en\">{}</error-message>\n", xml_text(error.message));
  const Info info = info_of(error);
  if (!info.empty()) {
    text += "  <error-info>\n";
    for (const auto& [name, value] : info) text += fmt::format("    <{0}>{1}</{0}>\n", name, xml_text(value));
    text += "  </error-info>\n";
  }
  return text + "</rpc-error>\n";
}

std::string json_error(const yfw::RpcError& error) {
  std::string text = fmt::format(
      "{{\n"
      "  \"ietf-restconf:errors\": {{\n"
      "    \"error\": [\n"
      "      {{\n"
      "        \"error-type\": \"{}\",\n"
      "        \"error-tag\": \"{}\",\n"
      "        \"error-severity\": \"error\",\n",
      error.type, error.tag);
  if (!error.path.empty()) text += fmt::format("        \"error-path\": \"{}\",\n", json_text(error.path));
  text += fmt::format("        \"error-message\": \"{}\"", json_text(error.message));
  const Info info = info_of(error);
  if (!info.empty()) {
    std::string members;
    for (const auto& [name, value] : info) {
      members += fmt::format("{}          \"{}\": \"{}\"", members.empty() ? "" : ",\n", name, json_text(value));
    }
    text += fmt::format(",\n        \"error-info\": {{\n{}\n        }}", members);
  }
  return text + "\n      }\n    ]\n  }\n}\n";
}

}  // namespace

std::string one_line(const std::string& text) {
  std::string line;
  for (const char c : text) line += is_control(c) ? ' ' : c;
  return line;
}

std::string refusal_line(const yfw::RpcError& error) {
  std::string line = "ocvlan: refused: ";
  if (!error.path.empty()) line += error.path + ": ";
  line += error.message;
  if (line.find(error.bad_element) == std::string::npos) line += fmt::format(" (element '{}')", error.bad_element);
  return one_line(line);
}

std::string rpc_error(const yfw::RpcError& error, yfw::Format format) {
  return format == yfw::Format::xml ? xml_error(error) : json_error(error);
}

std::string warning_line(const yfw::Warning& warning) {
  return one_line(warning.path.empty() ? fmt::format("warning: {}", warning.message)
                                       : fmt::format("warning: {}: {}", warning.path, warning.message));
}

std::string verify_report(const std::vector<yfw::Difference>& differences) {
  std::string report =
      fmt::format("verify: {} not read back as asked\n",
                  differences.size() == 1 ? "1 leaf does" : fmt::format("{} leaves do", differences.size()));
  for (const yfw::Difference& difference : differences) {
    report +=
        fmt::format("  {}\n    {:<12}{}\n    reads back: {}\n", one_line(difference.path),
                    fmt::format("{}:", yfw::label_of(difference)), one_line(yfw::value_or_nothing(difference.asked)),
                    one_line(yfw::value_or_nothing(difference.found)));
    if (!difference.advice.empty()) report += fmt::format("    why:        {}\n", one_line(difference.advice));
  }
  return report;
}

std::string trace_text(const yfw::TraceLine& line) {
  switch (line.kind) {
    case yfw::TraceLine::Kind::call:
      return "call   " + line.text;
    case yfw::TraceLine::Kind::log:
      return fmt::format("log {}  {}", line.level, line.text);
    case yfw::TraceLine::Kind::buffer:
      return "buffer " + line.text;
    case yfw::TraceLine::Kind::note:
      return "note   " + line.text;
  }
  return line.text;
}

}  // namespace ocvlan
