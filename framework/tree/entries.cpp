// The native interface list, told by module and name.
#include "framework/tree/entries.h"

#include <libyang/libyang.h>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"

namespace yfw {

namespace {

bool is_native(const lyd_node* node, std::string_view name) {
  return node->schema != nullptr && name == node->schema->name &&
         std::string_view(kNativeInterfaceModule) == node->schema->module->name;
}

}  // namespace

InterfaceName split_interface_name(std::string_view native) {
  const std::size_t dot = native.find('.');
  if (dot == std::string_view::npos) return {native, {}};
  return {native.substr(0, dot), native.substr(dot + 1)};
}

bool is_interface_name(std::string_view native) {
  const InterfaceName split = split_interface_name(native);
  const bool padded = split.index.size() > 1 && split.index.front() == '0';
  return !split.name.empty() && (split.is_subinterface() || split.name == native) && !padded;
}

std::string join_interface_name(std::string_view name, std::string_view index) {
  std::string joined(name);
  if (!index.empty()) joined.append(1, '.').append(index);
  return joined;
}

bool is_interface_root(const lyd_node* node) {
  return is_native(node, "interface-configurations");
}

bool is_interface_entry(const lyd_node* node) {
  return is_native(node, "interface-configuration");
}

std::string_view entry_name(const lyd_node* entry) {
  return key_value(entry);
}

bool is_l2(const lyd_node* entry) {
  return child_named(entry, "l2-transport") != nullptr;
}

}  // namespace yfw
