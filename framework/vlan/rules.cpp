// The answers about VLAN containers.
#include "framework/vlan/rules.h"

#include <libyang/libyang.h>

#include <cstring>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"

namespace yfw {

bool is_whole_container(const lyd_node* node) {
  const lyd_node* const parent = lyd_parent(node);
  if (named(node, "config")) return named(parent, "switched-vlan");
  return named(parent, "vlan") && (named(node, "match") || named(node, "ingress-mapping"));
}

std::vector<std::string_view> natives_of(const lyd_node* whole_container) {
  if (named(whole_container, "config")) return {"vlan-trunk-configuration"};
  if (named(whole_container, "ingress-mapping")) return {"rewrite"};
  return {"encapsulation", "vlan-identifier"};
}

bool is_covered(const lysc_node* node) {
  const char* const module = node->module->name;
  return std::strcmp(module, kNativeInterfaceModule) == 0 || std::strcmp(module, kNativeVlanModule) == 0;
}

}  // namespace yfw
