// Bodies of the generated per-node handlers and augment hooks; `frame` carries the exported name of each.
#pragma once

#include "engine/frame.h"

namespace oc_vlan {

// Opens a container handler: assertion, "Start", argument check. 0, or the code to return.
inline cerrno begin_container(Frame frame, int line, const yfw_datatree* node, const yfw_datatree* output) {
  OC_VLAN_REQUIRE_CONTEXT(frame.ctx, frame.function);
  OC_VLAN_TRACE_AT(line, frame, "Start");
  if (node != nullptr && output != nullptr) [[likely]]
    return 0;
  return invalid_arguments(frame, line);
}

// What a leaf or list handler answers when node or output is null.
cerrno refuse_arguments(Frame frame, int line);

// A leaf that no request can have: its tag goes to the requester.
cerrno refuse_leaf(yfw_map_ctx* ctx, const yfw_datatree* node);

// A hook that knows no augmentation: an add is refused, anything else ignored.
cerrno refuse_augmentation(Frame frame, int line, const yfw_datatree* node, yfw_datatree* output);

}  // namespace oc_vlan
