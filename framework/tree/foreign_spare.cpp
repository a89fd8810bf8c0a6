// Native edits that take nothing foreign along: a container that goes takes with it all that a device has in it, so
// what the models know of it goes piece by piece where something stands in it that they do not know.
#include <libyang/libyang.h>

#include <stdexcept>
#include <unordered_set>

#include "framework/tree/foreign.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "yfw-host/data.h"

namespace yfw {

namespace {

class Sparing {
 public:
  explicit Sparing(std::unordered_set<const lyd_node*> bearing) : bearing_(std::move(bearing)) {}

  // `there` is the running node that `edit` means; null when there is none.
  void visit(lyd_node* edit, const lyd_node* there) {
    if (!bearing_.contains(edit)) return;
    const Operation operation = operation_of(edit, Operation::merge);
    // What means something by being there takes along what is in it, which is told.
    if (removes(operation) && !is_plain_container(edit)) return;
    if (removes(operation) || operation == Operation::replace) {
      rewritten_.push_back(path_of(edit));
      set_operation(edit, Operation::none);
      exchange(edit, there);
      return;
    }
    lyd_node* next = nullptr;
    for (lyd_node* child = lyd_child_no_keys(edit); child != nullptr; child = next) {
      next = child->next;
      if (child->schema != nullptr) visit(child, counterpart_among(children(there), child));
    }
  }

  std::vector<std::string> rewritten() && { return std::move(rewritten_); }

 private:
  static const lyd_node* children(const lyd_node* there) { return there == nullptr ? nullptr : lyd_child(there); }

  // All that is there goes, but for what the edit puts in its place.
  void exchange(lyd_node* edit, const lyd_node* there) {
    const lyd_node* each = nullptr;
    LY_LIST_FOR(children(there), each) {
      if (lysc_is_key(each->schema)) continue;
      lyd_node* const instead = counterpart_among(lyd_child(edit), each);
      if (instead == nullptr) {
        remove(edit, each);
      } else if (!is_term(instead->schema)) {
        if (operation_of(instead, Operation::merge) == Operation::merge) set_operation(instead, Operation::replace);
        visit(instead, each);
      }
    }
    if (lyd_child(edit) == nullptr && edit->parent != nullptr) lyd_free_tree(edit);
  }

  void remove(lyd_node* parent, const lyd_node* there) {
    if (there->schema->nodetype == LYS_LEAF) {
      new_removed_leaf(parent, there->schema);
      return;
    }
    lyd_node* made = nullptr;
    if (lyd_dup_single(there, reinterpret_cast<lyd_node_inner*>(parent), LYD_DUP_NO_META, &made) != LY_SUCCESS) {
      throw std::runtime_error("a node cannot be copied");
    }
    if (bearing_.contains(there) && is_plain_container(there)) {
      exchange(made, there);
    } else {
      set_operation(made, Operation::remove);
    }
  }

  std::unordered_set<const lyd_node*> bearing_;  // nodes of both trees that something foreign is in
  std::vector<std::string> rewritten_;
};

}  // namespace

std::vector<std::string> ForeignSubtrees::spare(Data& edit, const Data& running,
                                                const std::vector<std::string>& entries) const {
  std::unordered_set<const lyd_node*> bearing;
  for (const std::string& entry : entries) {
    const auto held = by_entry_.find(entry);
    if (held == by_entry_.end()) continue;
    for (const std::size_t i : held->second) {
      for (const lyd_node* each = subtrees_[i].parent(); each != nullptr; each = lyd_parent(each)) {
        bearing.insert(counterpart(running, each));
        bearing.insert(counterpart(edit, each));
      }
    }
  }
  bearing.erase(nullptr);
  Sparing sparing(std::move(bearing));
  lyd_node* root = nullptr;
  LY_LIST_FOR(edit.get(), root) {
    sparing.visit(root, counterpart(running, root));
  }
  return std::move(sparing).rewritten();
}

}  // namespace yfw
