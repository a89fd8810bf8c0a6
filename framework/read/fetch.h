// What a read asks for natively.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "framework/datastore/running.h"
#include "framework/datastore/select.h"
#include "framework/walk/environment.h"
#include "framework/walk/output_tree.h"
#include "yfw-host/data.h"

namespace yfw {

// What a read asks for of one native entry.
class Asked {
 public:
  using Nodes = std::unordered_set<const lysc_node*>;

  bool of_nodes() const { return count_ > 0; }
  // The interface is to answer its name, which needs no native leaf.
  bool of_name() const { return name_; }

  // True when the node, one above it or one that it holds is asked for. A container of which nothing is asked stays
  // out: walkers would take it, without its leaves, for a question about all of them.
  bool wants(const lyd_node* node) const;

 private:
  friend class FetchSet;

  bool contains(const lysc_node* node) const;

  // One for the entry itself and each pattern that means it.
  std::array<const Nodes*, 4> parts_{};
  std::size_t count_ = 0;
  bool name_ = false;
};

// Which native nodes a read asks for, by native entry. Entries may be asked for by pattern.
class FetchSet {
 public:
  // Everything there is.
  FetchSet() = default;
  // What the output of a read's walk names.
  explicit FetchSet(const OutputTree& output);

  void merge(const FetchSet& other);

  // Names and kinds of interfaces are asked for: of each that the filter may mean.
  void ask_for_names(const SubtreeFilter& filter, const Running* running);

  bool everything() const { return everything_; }

  Asked asked_of(std::string_view native_name) const;

  // The running entries of which anything is asked, in their order. Those that are named are looked up, so that one
  // entry is as near among many as among few.
  std::vector<const lyd_node*> entries(const Running& running) const;

 private:
  struct OfEntry {
    Asked::Nodes nodes;
    bool name = false;
  };

  bool everything_ = true;
  std::unordered_map<std::string, OfEntry> by_entry_;
};

struct Fetch {
  FetchSet set;
  std::vector<std::string> paths;
};

// Walks a read (an empty filter asks for everything) and collects the native paths. Throws Refused.
Fetch collect_paths(const Environment& environment, const Data& filter, bool with_state);

}  // namespace yfw
