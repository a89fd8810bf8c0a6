// Requests as documents.
#include "property/model/request.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

#include "property/model/leaves.h"

namespace property {

namespace {

struct Module {
  std::string_view element;
  const char* name;
  const char* ns;
};

// Elements with which another module than their parent's begins.
constexpr std::array<Module, 7> kModules{{
    {"interfaces", "openconfig-interfaces", "http://openconfig.net/yang/interfaces"},
    {"ethernet", "openconfig-if-ethernet", "http://openconfig.net/yang/interfaces/ethernet"},
    {"aggregation", "openconfig-if-aggregate", "http://openconfig.net/yang/interfaces/aggregate"},
    {"switched-vlan", "openconfig-vlan", "http://openconfig.net/yang/vlan"},
    {"routed-vlan", "openconfig-vlan", "http://openconfig.net/yang/vlan"},
    {"vlan", "openconfig-vlan", "http://openconfig.net/yang/vlan"},
    {"config-tpid", "openconfig-vlan", "http://openconfig.net/yang/vlan"},
}};

// Inside routed-vlan a leaf is called vlan as well, but there no other module begins.
const Module* module_of(const Element& element, const std::string& parent) {
  if (parent == "routed-vlan/config") return nullptr;
  const std::string_view name =
      element.name == "tpid" && parent == "config" ? std::string_view("config-tpid") : std::string_view(element.name);
  const auto* const found =
      std::find_if(kModules.begin(), kModules.end(), [name](const Module& module) { return module.element == name; });
  return found == kModules.end() ? nullptr : found;
}

std::string escaped(const std::string& text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

const char* key_of(const std::string& list) {
  return list == "interface" ? "name" : "index";
}

// The path below an entry starts anew with each entry.
std::string step_into(const std::string& path, const Element& element) {
  if (is_list(element.name) || element.name == "interfaces" || element.name == "subinterfaces") return {};
  return path.empty() ? element.name : path + "/" + element.name;
}

class XmlWriter {
 public:
  std::string text;

  void write(const Element& element, const std::string& parent, int depth) {
    const std::string path = step_into(parent, element);
    const std::string indent(static_cast<std::size_t>(depth) * 2, ' ');
    text += indent + "<" + element.name;
    if (const Module* const module = module_of(element, parent)) text += std::string(" xmlns=\"") + module->ns + "\"";
    if (element.op != Op::inherit) text += std::string(" nc:operation=\"") + name_of(element.op) + "\"";
    const bool list = is_list(element.name);
    if (!list && element.children.empty()) {
      text += element.value.empty() ? "/>\n" : fmt::format(">{}</{}>\n", escaped(element.value), element.name);
      return;
    }
    text += ">\n";
    if (list) {
      const std::string key = key_of(element.name);
      text += fmt::format("{0}  <{1}>{2}</{1}>\n", indent, key, escaped(element.value));
    }
    for (const Element& child : element.children) write(child, path, depth + 1);
    text += indent + "</" + element.name + ">\n";
  }
};

// JSON has one member for all entries of a list or leaf-list, so elements are gathered by name. What stands there twice
// is a member twice.
class JsonWriter {
 public:
  std::string text;

  void members(const Element& parent, const std::string& path, int depth) {
    const std::string indent(static_cast<std::size_t>(depth) * 2, ' ');
    std::vector<std::string> order;
    std::map<std::string, std::vector<const Element*>> groups;
    for (const Element& child : parent.children) {
      if (!groups.contains(child.name)) order.push_back(child.name);
      groups[child.name].push_back(&child);
    }
    std::vector<std::string> members;
    if (parent.op != Op::inherit && !is_term(path)) members.push_back("\"@\": " + annotation(parent));
    if (is_list(parent.name)) members.push_back(std::string("\"") + key_of(parent.name) + "\": " + quoted_key(parent));
    for (const std::string& name : order) add_group(groups[name], path, depth, members);
    text += "{";
    for (std::size_t i = 0; i < members.size(); ++i) text += (i == 0 ? "\n" : ",\n") + indent + members[i];
    text += members.empty() ? "}" : "\n" + indent.substr(2) + "}";
  }

 private:
  static std::string annotation(const Element& element) {
    return std::string("{\"ietf-netconf:operation\": \"") + name_of(element.op) + "\"}";
  }

  static std::string quoted_key(const Element& entry) {
    return entry.name == "interface" ? fmt::format("\"{}\"", entry.value) : entry.value;
  }

  std::string inner(const Element& element, const std::string& path, int depth) {
    JsonWriter writer;
    writer.members(element, path, depth);
    return writer.text;
  }

  void add_group(const std::vector<const Element*>& group, const std::string& parent, int depth,
                 std::vector<std::string>& members) {
    const Element& first = *group.front();
    const Module* const module = module_of(first, parent);
    const std::string name = (module == nullptr ? "" : std::string(module->name) + ":") + first.name;
    const std::string path = step_into(parent, first);
    const bool list = is_list(first.name);
    if (group.size() > 1 && !list && !is_leaf_list(path)) {
      for (const Element* const each : group) add_group({each}, parent, depth, members);
      return;
    }
    if (is_term(path)) return add_terms(group, path, name, members);
    std::string value = list ? "[" : "";
    for (std::size_t i = 0; i < group.size(); ++i) {
      value += (i == 0 ? "" : ", ") + inner(*group[i], path, depth + 1);
    }
    members.push_back(fmt::format("\"{}\": {}{}", name, value, list ? "]" : ""));
  }

  static void add_terms(const std::vector<const Element*>& group, const std::string& path, const std::string& name,
                        std::vector<std::string>& members) {
    const bool many = is_leaf_list(path);
    std::string values;
    std::string annotations;
    bool annotated = false;
    for (const Element* const each : group) {
      values += (values.empty() ? "" : ", ") + json_value(path, each->value);
      annotations += (annotations.empty() ? "" : ", ") + (each->op == Op::inherit ? "null" : annotation(*each));
      annotated = annotated || each->op != Op::inherit;
    }
    members.push_back(fmt::format("\"{}\": {}{}{}", name, many ? "[" : "", values, many ? "]" : ""));
    if (!annotated) return;
    members.push_back(fmt::format("\"@{}\": {}{}{}", name, many ? "[" : "", annotations, many ? "]" : ""));
  }
};

}  // namespace

const char* name_of(Op op) {
  switch (op) {
    case Op::merge:
      return "merge";
    case Op::replace:
      return "replace";
    case Op::create:
      return "create";
    case Op::delete_:
      return "delete";
    case Op::remove:
      return "remove";
    case Op::none:
      return "none";
    case Op::inherit:
      break;
  }
  return "";
}

bool is_list(const std::string& name) {
  return name == "interface" || name == "subinterface";
}

Element& element_at(Request& request, const std::string& path) {
  Element* element = &request.interfaces;
  std::string below = path.substr(std::min(path.size(), request.interfaces.name.size() + 1));
  while (!below.empty()) {
    // Keys hold slashes of their own.
    const std::size_t bracket = below.find('[');
    const std::size_t slash = below.find('/');
    const bool list = bracket < slash;
    const std::size_t end = list ? below.find(']') + 1 : std::min(slash, below.size());
    Element wanted{.name = below.substr(0, list ? bracket : end)};
    if (list) wanted.value = below.substr(bracket + 1, end - bracket - 2);
    const auto found = std::find_if(element->children.begin(), element->children.end(), [&wanted](const Element& each) {
      return each.name == wanted.name && each.value == wanted.value;
    });
    element = found == element->children.end() ? &element->children.emplace_back(wanted) : &*found;
    below.erase(0, std::min(below.size(), end + 1));
  }
  return *element;
}

void add_leaf(Request& request, const std::string& path, const std::vector<std::string>& values) {
  const std::size_t cut = path.rfind('/');
  Element& parent = element_at(request, path.substr(0, cut));
  const bool is_identity = path.ends_with("/config/tpid");
  for (const std::string& value : values) {
    parent.children.push_back({.name = path.substr(cut + 1), .value = (is_identity ? "oc-vlan-types:" : "") + value});
  }
}

std::string to_text(const Request& request) {
  if (request.shape == Shape::json) {
    JsonWriter writer;
    writer.members(Element{.name = "", .children = {request.interfaces}}, "", 1);
    return writer.text + "\n";
  }
  XmlWriter writer;
  const bool wrapped = request.shape != Shape::bare;
  writer.write(request.interfaces, "", wrapped ? 2 : 0);
  // The declarations that prefixes in values and attributes need.
  std::string declarations = " xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\"";
  for (const Prefix& each : kPrefixes) {
    declarations += " xmlns:" + std::string(each.prefix) + "=\"" + std::string(each.ns) + "\"";
  }
  constexpr std::string_view kHead = "<interfaces";
  writer.text.insert(writer.text.find(kHead) + kHead.size(), declarations);
  if (!wrapped) return writer.text;
  if (request.shape == Shape::config) return "<config>\n" + writer.text + "</config>\n";
  std::string head = "<edit-config xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">\n";
  if (request.default_operation != Op::merge) {
    head += std::string("  <default-operation>") + name_of(request.default_operation) + "</default-operation>\n";
  }
  return head + "  <config>\n" + writer.text + "  </config>\n</edit-config>\n";
}

}  // namespace property
