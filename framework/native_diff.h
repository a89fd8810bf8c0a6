// Differences of two native configurations that their OpenConfig readings do not show.
#pragma once

#include <vector>

#include "framework/data.h"
#include "framework/edit_config.h"
#include "framework/host.h"

namespace yfw {

// A native configuration and what it reads as, all of it.
struct NativeSide {
  const Data& native;
  const ReadResult& reading;
};

// The native leaves and presence containers (the layer of an entry, say) that differ and that a comparison of the
// readings does not tell: no difference here and none there means that there is none. In document order of `before`,
// then what only `after` has.
std::vector<Delta> native_differences(const NativeSide& before, const NativeSide& after);

// Both configurations cut down to these differences, and compared as a tree with operations and original values; empty
// when there are none.
Data native_difference_tree(const NativeSide& before, const NativeSide& after, const std::vector<Delta>& deltas);

}  // namespace yfw
