// The walkers of all three families: one algorithm over their rows, varied by what a family's policy says.
#pragma once

#include "engine/families.h"
#include "engine/row.h"

namespace oc_vlan {

// Runs the walker of a container, a list entry or a leaf.
template <const Policy& kPolicy>
cerrno walk(const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

// Runs an entry walker.
template <const Policy& kPolicy>
cerrno walk_entry(const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

}  // namespace oc_vlan
