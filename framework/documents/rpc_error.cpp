// Refusals as documents.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "framework/tree/utf8.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"
#include "yfw-host/text.h"
#include "yfw/yfw_map.h"

namespace yfw {

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

// What an XML document cannot hold (XML 1.0, section 2.2).
bool is_outside_xml(char32_t code) {
  return (code < 0x20 && code != '\t' && code != '\n' && code != '\r') || code == 0xFFFE || code == 0xFFFF;
}

std::string xml_character(char32_t code, std::string_view bytes) {
  switch (code) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\r':
      return "&#13;";
    default:
      return is_outside_xml(code) ? printable(bytes) : std::string(bytes);
  }
}

std::string json_character(char32_t code, std::string_view bytes) {
  if (code == '"' || code == '\\') return fmt::format("\\{}", bytes);
  if (code < 0x20 || code == 0x7F) return fmt::format("\\u{:04x}", static_cast<std::uint32_t>(code));
  return std::string(bytes);
}

// A text as `character` writes each character of it. Bytes that are no UTF-8 have no place in a document, and are shown
// as in the line for a person.
template <typename Write>
std::string text_of(std::string_view text, const Write& character) {
  std::string result;
  while (!text.empty()) {
    const Character next = first_character(text);
    const std::string_view bytes = text.substr(0, std::max<std::size_t>(next.length, 1));
    if (next.length != 0) {
      result += character(next.code, bytes);
    } else {
      for (const char c : printable(bytes)) result += character(static_cast<unsigned char>(c), {&c, 1});
    }
    text.remove_prefix(bytes.size());
  }
  return result;
}

}  // namespace

std::string xml_text(std::string_view text) {
  return text_of(text, xml_character);
}

std::string json_text(std::string_view text) {
  return text_of(text, json_character);
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

Info info_of(const RpcError& error) {
  Info info;
  if (!error.bad_attribute.empty()) info.emplace_back("bad-attribute", error.bad_attribute);
  if (!error.bad_element.empty()) info.emplace_back("bad-element", error.bad_element);
  if (!error.bad_namespace.empty()) info.emplace_back("bad-namespace", error.bad_namespace);
  return info;
}

std::string xml_error(const RpcError& error) {
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

std::string json_error(const RpcError& error) {
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

std::string rpc_error(const RpcError& error, Format format) {
  return format == Format::xml ? xml_error(error) : json_error(error);
}

}  // namespace yfw
