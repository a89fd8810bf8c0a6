// What walkers read and rewrite of nodes: small acts on them.
#pragma once

#include "engine/frame.h"

namespace oc_vlan {

// Walkers keep their books in the request tree, which they are given read-only.
inline yfw_datatree& bookkeeping(const yfw_datatree* node) {
  return const_cast<yfw_datatree&>(*node);
}

template <typename Word>
inline void clear_bits(Word& word, unsigned bits) {
  word &= static_cast<Word>(~bits);
}

inline void set_operation(yfw_datatree& node, uint32_t operation) {
  node.operation = operation;
  node.node_flags |= YFW_NODE_OPERATION_CHANGED;
}

// True when the node announces children that it does not have.
inline bool lacks_subtrees(const yfw_datatree& node) {
  return (node.node_flags & YFW_NODE_HAS_SUBTREES) != 0 && node.subtrees == nullptr && node.subtree_count != 0;
}

inline uint32_t child_count(const yfw_datatree& node) {
  return (node.node_flags & YFW_NODE_HAS_SUBTREES) != 0 ? node.subtree_count : 0;
}

// A delete that is spread over what is below it goes as a removal for as long as this lives.
class SpreadDelete {
 public:
  explicit SpreadDelete(yfw_datatree& node)
      : node_(node), spreads_(yfw_map_is_request_delete(&node) != 0 && node.operation == YFW_OPERATION_DELETE) {
    if (spreads_) set_operation(node_, YFW_OPERATION_REMOVE);
  }
  ~SpreadDelete() {
    if (spreads_) set_operation(node_, YFW_OPERATION_DELETE);
  }
  SpreadDelete(const SpreadDelete&) = delete;
  SpreadDelete& operator=(const SpreadDelete&) = delete;

 private:
  yfw_datatree& node_;
  bool spreads_;
};

}  // namespace oc_vlan
