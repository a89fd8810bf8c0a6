// Request trees and native data as mapping functions walk them, built from libyang data.
#pragma once

#include <cstddef>
#include <functional>
#include <memory_resource>
#include <unordered_map>

#include "yfw-host/data.h"
#include "yfw/yfw_map.h"

struct lyd_node;

namespace yfw {

// True when something of an edit goes, at the node or below it; `outer` is what the node inherits.
bool contains_removal(const lyd_node* node, Operation outer);

// All nodes of one request, in one arena: children are contiguous, texts writable, everything goes at once.
class RequestTree {
 public:
  using Namespaces = std::unordered_map<const lyd_node*, const char*>;
  using Wanted = std::function<bool(const lyd_node*)>;

  RequestTree() = default;
  RequestTree(const RequestTree&) = delete;
  RequestTree& operator=(const RequestTree&) = delete;

  // An edit with effective operations: deletes before writes among siblings, deleted nodes without children (entries
  // keep their keys). `namespaces` overrides the namespace that a value has by its model.
  yfw_datatree* edit(const lyd_node* node, Operation default_operation, const Namespaces& namespaces);

  // A subtree filter: leaves with a value are content-match nodes.
  yfw_datatree* filter(const lyd_node* node);

  // Data as it is, texts of trunk VLANs in their canonical form; `wanted` (null: all) says which nodes.
  yfw_datatree* data(const lyd_node* node, const Wanted& wanted = nullptr);

  // The record of a node in records for all that it stands in, list entries with their keys; the topmost is returned.
  yfw_datatree* in_place(const lyd_node* node, yfw_datatree* record);

  // Gives up all that was built, for others to take its room.
  void clear() { arena_.release(); }

 private:
  struct Builder;
  // Enough for an entry; a whole configuration takes more.
  static constexpr std::size_t kFirstSize = 8192;
  std::pmr::monotonic_buffer_resource arena_{kFirstSize};
};

}  // namespace yfw
