// RFC 6241's edit-config on data trees: an edit applied to a configuration.
#pragma once

#include <string>
#include <vector>

#include "yfw-host/data.h"

namespace yfw {

// Applies `edit` (operation metadata; leaves to be removed may be opaque) to `target`. Existing nodes are found by
// key. Leaf-lists merge as unions in the order of the request. Opaque nodes with another operation than delete or
// remove are left alone. Throws Refused with data-exists or data-missing and the node's path; `target` is then in an
// undefined state, so callers apply to a copy. Containers without presence that become empty go.
void apply_edit(Data& target, const lyd_node* edit, Operation default_operation);

// Drops from `edit` every `remove` of what is not in `target`, every `replace` of it by nothing, and every ancestor
// that this leaves without purpose (no children, no operation of its own). What apply_edit refuses stays. Returns true
// when something was dropped.
bool drop_absent_removes(Data& edit, const Data& target, Operation default_operation);

// True for a container that is merged and holds nothing but such containers: whoever maps it, there is nothing to do.
// `own` is its operation, inherited or not.
bool asks_for_nothing(const lyd_node* edit, Operation own);

// True when there is anything that `drop_idle` would drop.
bool holds_idle(const Data& edit, Operation default_operation);

// Drops from `edit` what asks for nothing: leaves that the operation none leaves alone, and containers that hold
// nothing and do not take the place of anything.
void drop_idle(Data& edit, Operation default_operation);

}  // namespace yfw
