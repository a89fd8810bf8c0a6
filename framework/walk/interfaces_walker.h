// The framework's own walker of the OpenConfig interfaces tree, and what of that tree anybody claims.
#pragma once

#include <string_view>

#include "framework/walk/walk_state.h"
#include "yfw/yfw_map.h"

namespace yfw {

class WalkState;

// Who maps a node of the OpenConfig tree.
enum class Claim : std::uint8_t {
  nobody,
  framework,  // ancestors, keys, and the leaves that the framework maps or answers itself
  plugin,     // below an element for which a plug-in has an entry walker
};

Claim claim_of(const lysc_node* node);

// What the framework answers by itself for an interface: config/type, by the kind of its name.
const char* type_of_interface(std::string_view name);

// OpenConfig from the leaves of a native entry that are the framework's own: names, index, type, description, mtu,
// enabled. The walk's interface says which entry is meant.
void answer_own_leaves(WalkState& walk_state, const lyd_node* native_entry);

}  // namespace yfw
