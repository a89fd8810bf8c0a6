// A keyed set of interface entries in versions: what a new version does not change it shares with the one before.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "yfw-host/data.h"

struct lyd_node;

namespace yfw {

// One entry of the interface list, in a tree of its own: the list's container with nothing else in it. Never changes,
// so that any number of versions and threads may hold it.
class Entry {
 public:
  // Takes over a container with one entry.
  explicit Entry(Data tree);

  const Data& tree() const { return tree_; }
  const lyd_node* node() const { return node_; }
  std::string_view name() const { return name_; }

 private:
  Data tree_;
  const lyd_node* node_;
  std::string_view name_;  // the node's key
};

using SharedEntry = std::shared_ptr<const Entry>;

// An entry, and where it stands among the others of a configuration.
struct PlacedEntry {
  SharedEntry entry;
  std::uint64_t place;

  std::string_view name() const { return entry->name(); }
};

// One version. Copies are cheap and share everything; finding takes logarithmic time.
class EntrySet {
 public:
  // An entry that comes, or takes the place of the one of its name; null: the one of this name goes.
  struct Change {
    std::string_view name;
    SharedEntry entry;
    std::uint64_t place = 0;
  };

  EntrySet() = default;
  // Of entries with one name the last counts.
  explicit EntrySet(std::vector<PlacedEntry> entries);

  bool empty() const { return chunks_.empty(); }

  // Null when there is none of this name; valid as long as this version is.
  const PlacedEntry* find(std::string_view name) const;

  // Those whose names begin like this, in the order of their names; the first `most` of them.
  std::vector<PlacedEntry> beginning_with(std::string_view prefix, std::size_t most = SIZE_MAX) const;

  // All, in the order in which they stand in the configuration.
  std::vector<PlacedEntry> in_order() const;

  // The next version.
  EntrySet with(std::vector<Change> changes) const;

 private:
  using Chunk = std::vector<PlacedEntry>;  // in the order of their names, never empty

  void append(Chunk chunk);
  // The chunk in which this name is, or would be.
  std::size_t chunk_of(std::string_view name) const;

  std::vector<std::shared_ptr<const Chunk>> chunks_;
};

}  // namespace yfw
