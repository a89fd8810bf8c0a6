// Which leaves of plug-ins are mapped at all, and filters without those that are not.
#pragma once

#include <unordered_map>
#include <vector>

#include "framework/walk/environment.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

// Answers for leaves of plug-ins whether they are mapped at all, by asking the plug-in once per leaf.
class MappedLeaves {
 public:
  bool is_mapped(const Environment& environment, const lysc_node* leaf);

 private:
  std::unordered_map<const lysc_node*, bool> known_;
};

// Takes leaves that nobody maps out of a filter, with one warning. A filter that loses all it asked for selects
// nothing: the result is then false.
bool prune_filter(const Environment& environment, MappedLeaves& leaves, Data& filter, std::vector<Warning>& warnings);

}  // namespace yfw
