// What is special about VLANs, as questions to nodes. The answers stand in vlan_rules.def.
#pragma once

#include <span>
#include <string_view>
#include <vector>

struct lyd_node;
struct lysc_node;

namespace yfw {

// True for an OpenConfig container that the plug-in sees as a whole: match, ingress-mapping and switched-vlan/config.
bool is_whole_container(const lyd_node* node);

// The native containers that hold what such a container says.
std::vector<std::string_view> natives_of(const lyd_node* whole_container);

// True for an OpenConfig container of which one form at a time is there: match.
bool has_one_form(const lyd_node* node);

// True for the native container that makes an entry an L2 one.
bool is_layer(const lyd_node* node);

// A native container that only means something on one layer, and what is said where it is written on the other.
struct OfOneLayer {
  bool l2;
  const char* parent;
  const char* name;
  const char* otherwise;
};
std::span<const OfOneLayer> of_one_layer();

// What is said of a native container that only means something to ports, in a sub-interface; null for all others.
const char* only_of_ports(const lysc_node* container);

// True for the native container around what a bound routed VLAN is.
bool holds_routed_vlan(const lyd_node* container);

// True for a container of operational data that is read as OpenConfig.
bool is_read_as_state(const lyd_node* node);

// In words, why a container's condition does not hold; null where the expression has to do.
const char* condition_in_words(std::string_view container);

// True for a leaf that the plug-in refuses in better words than the model: the one that it needs is missing.
bool plugin_says_better(const lyd_node* leaf);

// True for a node of the native modules that the mapping covers.
bool is_covered(const lysc_node* node);

}  // namespace yfw
