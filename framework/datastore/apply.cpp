// Edits applied: every operation of RFC 6241 on nodes found by key.
#include "framework/datastore/apply.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <stdexcept>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

// Nodes that only the model's defaults made do not exist for an edit.
bool exists(const lyd_node* node) {
  if (node == nullptr || (node->flags & LYD_DEFAULT) != 0) return false;
  return !is_plain_container(node) || lyd_child(node) != nullptr;
}

[[noreturn]] void refuse(const char* tag, const lyd_node* edit, const char* what) {
  throw Refused({.tag = tag, .path = path_of(edit), .message = fmt::format("'{}' {}", LYD_NAME(edit), what)});
}

class Application {
 public:
  explicit Application(Data& target) : target_(target) {}

  void apply_siblings(lyd_node* parent, const lyd_node* edit, Operation outer) {
    const lyd_node* each = nullptr;
    LY_LIST_FOR(edit, each) {
      if (!is_key(each)) apply(parent, each, outer);
    }
  }

 private:
  const lyd_node* siblings(const lyd_node* parent) const {
    return parent == nullptr ? target_.get() : lyd_child(parent);
  }

  void erase(lyd_node* node) {
    if (node == target_.get()) *target_.out() = node->next;
    lyd_free_tree(node);
  }

  lyd_node* add(lyd_node* parent, const lyd_node* edit) {
    lyd_node* made = nullptr;
    if (lyd_dup_single(edit, reinterpret_cast<lyd_node_inner*>(parent), LYD_DUP_NO_META, &made) != LY_SUCCESS) {
      throw std::runtime_error(fmt::format("'{}' cannot be copied", LYD_NAME(edit)));
    }
    if (parent == nullptr) lyd_insert_sibling(target_.get(), made, target_.out());
    return made;
  }

  void apply(lyd_node* parent, const lyd_node* edit, Operation outer) {
    const Operation own = operation_of(edit, outer);
    lyd_node* const there = counterpart_among(siblings(parent), edit);
    if (removes(own)) {
      if (!exists(there) && own == Operation::delete_) refuse("data-missing", edit, "is not there to be deleted");
      if (there != nullptr) erase(there);
      return;
    }
    if (edit->schema == nullptr) return;
    if (own == Operation::create && exists(there)) refuse("data-exists", edit, "is there already");
    if (own == Operation::none && !exists(there) && !is_plain_container(edit)) {
      refuse("data-missing", edit, "is not there, and the default operation creates nothing");
    }
    if (is_term(edit->schema)) return apply_term(parent, edit, own, there);
    lyd_node* const node = there == nullptr ? add(parent, edit) : there;
    if (own == Operation::replace) clear(node);
    apply_siblings(node, lyd_child(edit), passed_down(own));
    if (is_plain_container(node) && lyd_child(node) == nullptr) erase(node);
  }

  void apply_term(lyd_node* parent, const lyd_node* edit, Operation own, lyd_node* there) {
    if (own == Operation::none) return;
    const bool same =
        there != nullptr && (there->flags & LYD_DEFAULT) == 0 && lyd_compare_single(there, edit, 0) == LY_SUCCESS;
    if (same) return;
    if (there != nullptr) erase(there);
    add(parent, edit);
  }

  // Takes away all that a container or entry holds, but not what makes the entry the one it is.
  void clear(lyd_node* node) {
    lyd_node* child = lyd_child_no_keys(node);
    while (child != nullptr) {
      lyd_node* const next = child->next;
      lyd_free_tree(child);
      child = next;
    }
  }

  Data& target_;
};

bool has_content(const lyd_node* node) {
  const lyd_node* child = first_child(node);
  while (child != nullptr && is_key(child)) child = child->next;
  return child != nullptr;
}

// Nothing but containers that ask for nothing themselves. What is to be deleted must be there.
bool holds_nothing(const lyd_node* edit) {
  const lyd_node* child = nullptr;
  LY_LIST_FOR(first_child(edit), child) {
    const bool asks = operation_of(child, Operation::merge) == Operation::delete_;
    if (asks || !is_plain_container(child) || !holds_nothing(child)) return false;
  }
  return true;
}

class Dropping {
 public:
  explicit Dropping(Data& edit) : edit_(edit) {}

  // `replaced`: something above is replaced, so that whatever is named is there afterwards.
  bool drop_siblings(lyd_node* edit, const lyd_node* target, Operation outer, bool replaced = false) {
    bool dropped = false;
    while (edit != nullptr) {
      lyd_node* const next = edit->next;
      if (!is_key(edit)) dropped = drop(edit, counterpart_among(target, edit), outer, replaced) || dropped;
      edit = next;
    }
    return dropped;
  }

 private:
  bool drop(lyd_node* edit, const lyd_node* there, Operation outer, bool replaced) {
    const Operation own = operation_of(edit, outer);
    if (removes(own)) {
      if (own == Operation::delete_ || exists(there)) return false;
      erase(edit);
      return true;
    }
    if (edit->schema == nullptr || is_term(edit->schema)) return false;
    // An entry that the operation none does not find is refused, whatever it holds.
    if (own == Operation::none && !exists(there) && !is_plain_container(edit)) return false;
    // What is replaced is empty before its new content comes.
    const lyd_node* const below = there == nullptr || own == Operation::replace ? nullptr : lyd_child(there);
    const bool replaces = replaced || own == Operation::replace;
    const bool dropped = drop_siblings(lyd_child(edit), below, passed_down(own), replaces);
    if (own == Operation::replace && is_plain_container(edit) && holds_nothing(edit) && !exists(there)) {
      erase(edit);
      return true;
    }
    if (!dropped) return false;
    if (has_content(edit)) return true;
    const bool is_named_entry = replaced && edit->schema->nodetype == LYS_LIST;
    if (operation_of(edit, Operation::none) == Operation::none && own != Operation::replace && !is_named_entry) {
      erase(edit);
    } else {
      mark_wanted(edit);
    }
    return true;
  }

  void erase(lyd_node* node) {
    if (node == edit_.get()) *edit_.out() = node->next;
    lyd_free_tree(node);
  }

  Data& edit_;
};

// An empty container that is not to take the place of anything asks for nothing either.
bool is_idle(const lyd_node* edit, Operation own) {
  if (own == Operation::none) return edit->schema == nullptr || is_term(edit->schema) || !has_content(edit);
  const Operation given = operation_of(edit, Operation::merge);
  const bool comes = given == Operation::merge || given == Operation::create;
  return is_plain_container(edit) && !has_content(edit) && own != Operation::replace && comes;
}

bool holds_idle(const lyd_node* siblings, Operation outer) {
  const lyd_node* each = nullptr;
  LY_LIST_FOR(siblings, each) {
    const Operation own = operation_of(each, outer);
    if (each->schema != nullptr && holds_idle(lyd_child(each), passed_down(own))) return true;
    if (!is_key(each) && is_idle(each, own)) return true;
  }
  return false;
}

void drop_idle_siblings(Data& edit, lyd_node* first, Operation outer) {
  lyd_node* each = first;
  while (each != nullptr) {
    lyd_node* const next = each->next;
    const Operation own = operation_of(each, outer);
    if (each->schema != nullptr) drop_idle_siblings(edit, lyd_child(each), passed_down(own));
    if (is_key(each)) {
      each = next;
      continue;
    }
    if (!is_idle(each, own)) {
      mark_wanted(each);
    } else {
      if (each == edit.get()) *edit.out() = next;
      lyd_free_tree(each);
    }
    each = next;
  }
}

}  // namespace

void apply_edit(Data& target, const lyd_node* edit, Operation default_operation) {
  Application(target).apply_siblings(nullptr, edit, default_operation);
}

bool asks_for_nothing(const lyd_node* edit, Operation own) {
  const bool merged = !removes(own) && operation_of(edit, Operation::merge) == Operation::merge;
  if (!merged || !is_plain_container(edit)) return false;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(edit), child) {
    if (!asks_for_nothing(child, Operation::merge)) return false;
  }
  return true;
}

bool holds_idle(const Data& edit, Operation default_operation) {
  return holds_idle(edit.get(), default_operation);
}

void drop_idle(Data& edit, Operation default_operation) {
  drop_idle_siblings(edit, edit.get(), default_operation);
}

bool drop_absent_removes(Data& edit, const Data& target, Operation default_operation) {
  return Dropping(edit).drop_siblings(edit.get(), target.get(), default_operation);
}

}  // namespace yfw
