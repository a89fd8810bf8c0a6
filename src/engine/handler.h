// Bodies of the generated per-node handlers and augment hooks; `frame` carries the exported name of each.
#pragma once

#include "engine/frame.h"

namespace oc_vlan {

// Opens a container handler: assertion, "Start", argument check. 0, or the code to return.
cerrno begin_container(const Frame& frame, int line, const yfw_datatree* node, const yfw_datatree* output);

// What a leaf or list handler answers when node or output is null.
cerrno refuse_arguments(const Frame& frame, int line);

// A leaf that no request can have: its tag goes to the requester.
cerrno refuse_leaf(yfw_map_ctx* ctx, const yfw_datatree* node);

// A hook that knows no augmentation: an add is refused, anything else ignored.
cerrno refuse_augmentation(const Frame& frame, int line, const yfw_datatree* node, yfw_datatree* output);

}  // namespace oc_vlan
