// The walkers of all three families: one algorithm over their rows, varied by what a family's policy says.
#pragma once

#include "engine/row.h"

namespace oc_vlan {

// What becomes of a child in the family's own namespace that has no row.
enum class UnknownChild : uint8_t {
  kRefuse,  // an error; an edit ends with CERR_UNSUPPORTED
  kIgnore,  // a trace line
};

// What a leaf walker does beside calling its handler.
enum class LeafWork : uint8_t {
  kMarkRead,           // tells the container that a leaf, or a selecting leaf, was read
  kReportXpathErrors,  // tells the framework of a leaf that it marked as an xpath error
};

// What an entry walker does with an element without children in a read or a delete, once it was walked.
enum class ChildlessEntry : uint8_t { kWalkAgain, kDone };

// A family's policy, and its rows.
struct Family {
  const char* ns;
  const Row* rows;
  UnknownChild unknown_child;
  LeafWork leaf_work;
  ChildlessEntry childless_entry;
  bool traces_each_child;            // "Processing tag '%s'"
  bool knows_children_by_namespace;  // a known tag of another namespace is a foreign child
  bool refuses_delete_with_subtree;
  bool descends_in_state_reads_only;  // every descent needs request kind 10
  bool whole_template;                // walk marks, two-pass replaces, implicit walks
};

// Runs the walker of a container, a list entry or a leaf.
cerrno walk(const Family& family, const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);

// Runs an entry walker.
cerrno walk_entry(const Family& family, const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node,
                  yfw_datatree* output);

}  // namespace oc_vlan
