// What walkers read and rewrite of nodes and of the request: flag bits by name, and small acts on them.
#pragma once

#include "engine/frame.h"

namespace oc_vlan {

// node_flags
inline constexpr uint8_t kSelectingLeaf = 0x02;
inline constexpr uint8_t kOperationChanged = 0x10;
inline constexpr uint8_t kHasSubtrees = 0x40;
// walk_flags
inline constexpr uint8_t kEntered = 0x04;
// key_flags
inline constexpr uint8_t kKey = 0x02;
inline constexpr uint8_t kXpathError = 0x08;
// xpath_status
inline constexpr uint32_t kXpathErrorMarked = 5;
// walk_mark
inline constexpr uint32_t kLeafRead = 1;
inline constexpr uint32_t kContainerEntered = 3;
inline constexpr uint32_t kSelectingLeafRead = 6;
// operation
inline constexpr uint32_t kMerge = 0;
inline constexpr uint32_t kReplace = 1;
inline constexpr uint32_t kDelete = 3;
inline constexpr uint32_t kRemove = 4;
// yfw_map_req_state.walk_bits
inline constexpr uint32_t kImplicitWalkAsked = 0x1;
inline constexpr uint32_t kReadLeaf = 0x2;
inline constexpr uint32_t kReadSelectingLeaf = 0x4;
inline constexpr uint32_t kReadSelectingLeafToo = 0x10000;
// Bit 0 of every digit but the last: forgets 0x1, 0x2 and 0x4 among others, and remembers 0x10000.
inline constexpr uint32_t kWalkBitsKept = 0x11111110;
// yfw_map_req_state.pass_flags
inline constexpr uint32_t kReplaceRuns = 0x40;
inline constexpr uint32_t kSecondPass = 0x80;
inline constexpr uint32_t kXpathErrorMet = 0x100;
// level of yfw_map_add_to_node_hierarchy
inline constexpr uint32_t kContainerLevel = 1;
inline constexpr uint32_t kListEntryLevel = 2;

// Walkers keep their books in the request tree, which they are given read-only.
inline yfw_datatree& bookkeeping(const yfw_datatree* node) {
  return const_cast<yfw_datatree&>(*node);
}

inline void set_operation(yfw_datatree& node, uint32_t operation) {
  node.operation = operation;
  node.node_flags |= kOperationChanged;
}

// True when the node announces children that it does not have.
inline bool lacks_subtrees(const yfw_datatree& node) {
  return (node.node_flags & kHasSubtrees) != 0 && node.subtrees == nullptr && node.subtree_count != 0;
}

inline uint32_t child_count(const yfw_datatree& node) {
  return (node.node_flags & kHasSubtrees) != 0 ? node.subtree_count : 0;
}

// A delete that is spread over what is below it goes as a removal for as long as this lives.
class SpreadDelete {
 public:
  explicit SpreadDelete(yfw_datatree& node)
      : node_(node), spreads_(yfw_map_is_request_delete(&node) != 0 && node.operation == kDelete) {
    if (spreads_) set_operation(node_, kRemove);
  }
  ~SpreadDelete() {
    if (spreads_) set_operation(node_, kDelete);
  }
  SpreadDelete(const SpreadDelete&) = delete;
  SpreadDelete& operator=(const SpreadDelete&) = delete;

 private:
  yfw_datatree& node_;
  bool spreads_;
};

}  // namespace oc_vlan
