// The answers about VLANs, by the table.
#include "framework/vlan/rules.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"

namespace yfw {

namespace {

struct WholeContainer {
  const char* parent;
  const char* name;
  std::array<const char*, 2> natives;

  bool is(const lyd_node* node) const { return named(node, name) && named(lyd_parent(node), parent); }
};

constexpr WholeContainer kWholeContainers[] = {
#define WHOLE_CONTAINER(parent, name, ...) {parent, name, {__VA_ARGS__}},
#include "framework/vlan/vlan_rules.def"
};

constexpr OfOneLayer kOfOneLayer[] = {
#define OF_ONE_LAYER(l2, parent, name, otherwise) {l2, parent, name, otherwise},
#include "framework/vlan/vlan_rules.def"
};

struct Advice {
  const char* name;
  const char* text;
};

constexpr Advice kOfPorts[] = {
#define OF_PORTS(name, otherwise) {name, otherwise},
#include "framework/vlan/vlan_rules.def"
};

constexpr Advice kConditions[] = {
#define CONDITION(container, advice) {container, advice},
#include "framework/vlan/vlan_rules.def"
};

const char* advice_on(std::span<const Advice> advice, std::string_view name) {
  const auto found =
      std::find_if(advice.begin(), advice.end(), [name](const Advice& each) { return name == each.name; });
  return found == advice.end() ? nullptr : found->text;
}

const WholeContainer* find(const lyd_node* node) {
  const auto* const found = std::find_if(std::begin(kWholeContainers), std::end(kWholeContainers),
                                         [node](const WholeContainer& each) { return each.is(node); });
  return found == std::end(kWholeContainers) ? nullptr : found;
}

}  // namespace

bool is_whole_container(const lyd_node* node) {
  return find(node) != nullptr;
}

std::vector<std::string_view> natives_of(const lyd_node* whole_container) {
  std::vector<std::string_view> natives;
  for (const char* const native : find(whole_container)->natives) {
    if (native != nullptr) natives.emplace_back(native);
  }
  return natives;
}

bool has_one_form(const lyd_node* node) {
#define ONE_FORM(parent, name) \
  if (named(node, name) && named(lyd_parent(node), parent)) return true;
#include "framework/vlan/vlan_rules.def"
  return false;
}

bool is_layer(const lyd_node* node) {
#define LAYER(name) \
  if (named(node, name)) return true;
#include "framework/vlan/vlan_rules.def"
  return false;
}

std::span<const OfOneLayer> of_one_layer() {
  return kOfOneLayer;
}

const char* only_of_ports(const lysc_node* container) {
  return advice_on(kOfPorts, container->name);
}

bool holds_routed_vlan(const lyd_node* container) {
#define ROUTED(name) \
  if (named(container, name)) return true;
#include "framework/vlan/vlan_rules.def"
  return false;
}

bool is_read_as_state(const lyd_node* node) {
#define STATE_CONTAINER(name) \
  if (named(node, name)) return true;
#include "framework/vlan/vlan_rules.def"
  return false;
}

const char* condition_in_words(std::string_view container) {
  return advice_on(kConditions, container);
}

bool plugin_says_better(const lyd_node* leaf) {
#define PLUGIN_SAYS_BETTER(name, missing) \
  if (named(leaf, name) && child_named(lyd_parent(leaf), missing) == nullptr) return true;
#include "framework/vlan/vlan_rules.def"
  return false;
}

bool is_covered(const lysc_node* node) {
  const char* const module = node->module->name;
  return std::strcmp(module, kNativeInterfaceModule) == 0 || std::strcmp(module, kNativeVlanModule) == 0;
}

}  // namespace yfw
