// What is special about VLANs, as questions to nodes.
#pragma once

#include <string_view>
#include <vector>

struct lyd_node;
struct lysc_node;

namespace yfw {

// True for an OpenConfig container that the plug-in sees as a whole: match, ingress-mapping and switched-vlan/config.
bool is_whole_container(const lyd_node* node);

// The native containers that hold what such a container says. Lists and ranges stand in the encapsulation on L3 as
// well.
std::vector<std::string_view> natives_of(const lyd_node* whole_container);

// True for a node of the native modules that the mapping covers.
bool is_covered(const lysc_node* node);

}  // namespace yfw
