// Two configurations compared: leaf by leaf, in what their readings do not show, and in what no loaded model has.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "yfw-host/data.h"
#include "yfw-host/host.h"

namespace yfw {

// One difference between two configurations of the same model.
struct Delta {
  std::string path;    // instance path of the leaf, leaf-list entry or presence container
  std::string before;  // value text; empty when absent
  std::string after;
  bool was_present;
  bool is_present;
};

// Leaf by leaf, in document order of `before`, then what only `after` has. A value that is the model's default counts
// as absent, and texts of trunk VLANs that say the same are the same. List entries that differ in presence are told by
// their leaves.
std::vector<Delta> compare(const Data& before, const Data& after);

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
// when there are none. Throws std::runtime_error when memory runs out.
Data native_difference_tree(const NativeSide& before, const NativeSide& after, const std::vector<Delta>& deltas);

// A subtree of a model that is not loaded that is not the same in two configurations.
struct ForeignDelta {
  enum class Kind : std::uint8_t { removed, added, changed } kind;
  std::string path;
  std::string ns;
};

// What of the one configuration the other has not, and which subtrees differ: in XML in canonical form, in JSON in any
// order of members. Both are of one format.
std::vector<ForeignDelta> compare_foreign(const std::vector<Foreign>& before, const std::vector<Foreign>& after);

}  // namespace yfw
