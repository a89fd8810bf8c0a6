// What a read asks for natively.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "framework/walk/environment.h"
#include "framework/walk/output_tree.h"
#include "yfw-host/data.h"

namespace yfw {

// Which native nodes a read asks for, by native entry. Entries may be asked for by pattern.
class FetchSet {
 public:
  // Everything there is.
  FetchSet() = default;
  // What the output of a read's walk names.
  explicit FetchSet(const OutputTree& output);

  void merge(const FetchSet& other);

  // Names and kinds of interfaces are asked for, which need no native leaf.
  void ask_for_names() { names_ = true; }
  bool asks_for_names() const { return names_; }

  bool everything() const { return everything_; }

  // Schema nodes asked for in this native entry; empty when nothing is.
  std::unordered_set<const lysc_node*> asked_of(std::string_view native_name) const;

  // True when the node, one above it or one that it holds is in `asked`. A container of which nothing is asked stays
  // out: walkers would take it, without its leaves, for a question about all of them.
  static bool is_wanted(const lyd_node* node, const std::unordered_set<const lysc_node*>& asked);

 private:
  bool everything_ = true;
  bool names_ = false;
  std::unordered_map<std::string, std::unordered_set<const lysc_node*>> by_entry_;
};

struct Fetch {
  FetchSet set;
  std::vector<std::string> paths;
};

// Walks a read (an empty filter asks for everything) and collects the native paths. Throws Refused.
Fetch collect_paths(const Environment& environment, const Data& filter, bool with_state);

}  // namespace yfw
