// Subtrees freed by what they are.
#include "framework/tree/prune.h"

#include <libyang/libyang.h>

#include "framework/tree/nodes.h"

#include "yfw-host/data.h"

namespace yfw {

namespace {

bool is_state(const lyd_node* node) {
  return (node->schema->flags & LYS_CONFIG_R) != 0;
}

// Frees the children that `unwanted` names, and asks about what is below the others.
template <typename Unwanted>
void prune_below(lyd_node* node, const Unwanted& unwanted) {
  lyd_node* child = lyd_child(node);
  while (child != nullptr) {
    lyd_node* const next = child->next;
    if (unwanted(child)) {
      lyd_free_tree(child);
    } else {
      prune_below(child, unwanted);
    }
    child = next;
  }
}

template <typename Unwanted>
void prune(Data& data, const Unwanted& unwanted) {
  lyd_node* node = data.get();
  while (node != nullptr) {
    lyd_node* const next = node->next;
    if (unwanted(node)) {
      if (data.get() == node) *data.out() = next;
      lyd_free_tree(node);
    } else {
      prune_below(node, unwanted);
    }
    node = next;
  }
}

bool holds_state(const lyd_node* node) {
  if (is_state(node)) return true;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (holds_state(child)) return true;
  }
  return false;
}

}  // namespace

bool holds_state(const Data& data) {
  const lyd_node* node = nullptr;
  LY_LIST_FOR(data.get(), node) {
    if (holds_state(node)) return true;
  }
  return false;
}

Data take_state(Data& data) {
  Data state = data.clone();
  prune(state, [](const lyd_node* node) { return !is_key(node) && !holds_state(node); });
  prune(data, is_state);
  return state;
}

void strip_defaults(Data& data) {
  prune(data, [](const lyd_node* node) { return (node->flags & LYD_DEFAULT) != 0; });
}

}  // namespace yfw
