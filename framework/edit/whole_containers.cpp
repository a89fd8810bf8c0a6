// The parts of an edit that the plug-in's container handlers see as a whole, rewritten by what will be there.
#include <fmt/format.h>

#include <cstring>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_set>

#include "framework/datastore/apply.h"
#include "framework/datastore/compare.h"
#include "framework/documents/documents.h"
#include "framework/edit/edit.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/rules.h"
#include "framework/vlan/trunk_text.h"
#include "framework/walk/environment.h"
#include "yfw-host/compare.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"

namespace yfw {

namespace {

const lyd_node* find_container(const lyd_node* node, std::string_view name) {
  if (is_term(node->schema)) return nullptr;
  if (named(node, name)) return node;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    const lyd_node* const found = find_container(child, name);
    if (found != nullptr) return found;
  }
  return nullptr;
}

bool has_leaves(const lyd_node* node) {
  if (node == nullptr) return false;
  if (is_term(node->schema)) return (node->flags & LYD_DEFAULT) == 0;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (has_leaves(child)) return true;
  }
  return false;
}

// True when something of `before` is not in `after`: a leaf, or an entry of a leaf-list. A changed value is no loss.
bool loses(const lyd_node* before, const lyd_node* after) {
  if (before->flags & LYD_DEFAULT) return false;
  if (after == nullptr) return has_leaves(before);
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(before), child) {
    lyd_node* match = nullptr;
    if (child->schema->nodetype == LYS_LEAFLIST) {
      if (lyd_find_sibling_first(lyd_child(after), child, &match) != LY_SUCCESS) return true;
    } else if (loses(child, child_named(after, child->schema->name))) {
      return true;
    }
  }
  return false;
}

// True when all of a trunk's text was read: one that is too long to be written again reads back whole all the same.
bool is_trunk_read_whole(const Delta& text, const lyd_node* config, const lyd_node* native) {
  if (!text.path.ends_with("/trunk-vla-ns")) return false;
  std::vector<std::string> entries;
  const lyd_node* entry = nullptr;
  LY_LIST_FOR(lyd_child(config), entry) {
    if (named(entry, "trunk-vlans")) entries.emplace_back(lyd_get_value(entry));
  }
  const lyd_node* const switched = find_container(native, "vlan-switched");
  const lyd_node* const leaf = switched == nullptr ? nullptr : child_named(switched, "trunk-vla-ns");
  return leaf != nullptr && canonical_text(leaf) == native_trunk_text(entries);
}

// The same natively, of the models that the mapping covers.
bool has_covered_leaves(const lyd_node* node) {
  if (node == nullptr || !is_covered(node->schema)) return false;
  if (is_term(node->schema)) return true;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (has_covered_leaves(child)) return true;
  }
  return false;
}

void drop_uncovered(lyd_node* node) {
  lyd_node* child = lyd_child(node);
  while (child != nullptr) {
    lyd_node* const next = child->next;
    if (is_covered(child->schema)) {
      drop_uncovered(child);
    } else {
      lyd_free_tree(child);
    }
    child = next;
  }
}

bool names_leaf_list(const lyd_node* node) {
  const lysc_node* const schema = schema_of(node);
  if (schema != nullptr && schema->nodetype == LYS_LEAFLIST) return true;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (names_leaf_list(child)) return true;
  }
  return false;
}

// True when the unit holds a value that the plug-in is going to refuse by itself, in its own words.
bool left_to_plugin(const EditDocument& document, const lyd_node* node, Operation outer) {
  const Operation own = operation_of(node, outer);
  if (node->schema == nullptr) return !removes(own);
  const auto bound = document.value_namespaces.find(node);
  if (bound != document.value_namespaces.end()) {
    if (bound->second == nullptr || std::strcmp(bound->second, enumeration_namespace(node->schema)) != 0) return true;
  }
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (left_to_plugin(document, child, own)) return true;
  }
  return false;
}

// One unit as the request names it, in one place or in several.
struct Unit {
  std::string path;
  std::vector<lyd_node*> instances;
};

void collect(lyd_node* node, Operation outer, std::vector<Unit>& units, std::map<std::string, std::size_t>& known) {
  const Operation own = operation_of(node, outer);
  // What goes or is replaced as a whole needs no rewriting, but for a replace by nothing, which is a removal.
  if (own == Operation::replace && is_whole_container(node) && lyd_child(node) == nullptr)
    set_operation(node, Operation::remove);
  if (node->schema == nullptr || removes(own) || own == Operation::replace) return;
  if (is_whole_container(node)) {
    const std::string path = path_of(node);
    const auto [place, first] = known.emplace(path, units.size());
    if (first) units.push_back({path, {}});
    units[place->second].instances.push_back(node);
    return;
  }
  lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    collect(child, own, units, known);
  }
}

class Rewriter {
 public:
  Rewriter(const Environment& environment, EditDocument& document, const Data& before, const Data& expected,
           std::vector<Warning>& warnings)
      : environment_(environment), document_(document), before_(before), expected_(expected), warnings_(warnings) {}

  void run() {
    std::vector<Unit> units;
    std::map<std::string, std::size_t> known;
    lyd_node* node = nullptr;
    LY_LIST_FOR(document_.tree.get(), node) {
      collect(node, document_.default_operation, units, known);
    }
    for (const Unit& unit : units) rewrite(unit);
  }

  const std::vector<std::string>& merged_into_unread() const { return merged_into_unread_; }

 private:
  void rewrite(const Unit& unit) {
    for (const lyd_node* const instance : unit.instances) {
      if (left_to_plugin(document_, instance, Operation::merge)) return;
    }
    const lyd_node* const before = node_at(before_, unit.path);
    const lyd_node* const after = node_at(expected_, unit.path);
    const std::vector<const lyd_node*> natives = native_containers(unit.instances.front());
    const bool goes = before != nullptr && loses(before, after);
    bool whole_lists = unit.instances.size() > 1;
    for (const lyd_node* const instance : unit.instances) {
      whole_lists = whole_lists || (!natives.empty() && names_leaf_list(instance));
    }
    const lyd_node* const unread = unread_of(before, natives);
    if (unread != nullptr) mind_unread(unit, unread, goes || whole_lists, goes);
    if (!goes && !whole_lists) return;
    lyd_node* const first = unit.instances.front();
    for (std::size_t i = 1; i < unit.instances.size(); ++i) lyd_free_tree(unit.instances[i]);
    if (goes) {
      told(unit.path, has_leaves(after) ? "goes as a replace by what will be there" : "goes as a remove");
      exchange(first, after, true);
    } else {
      told(unit.path, "goes with its whole lists");
      exchange(first, after, false);
    }
  }

  // Puts what will be there in the place of what was asked.
  void exchange(lyd_node* asked, const lyd_node* after, bool replaced) const {
    const bool empty = !has_leaves(after);
    lyd_node* fresh = nullptr;
    if (empty) {
      lyd_dup_single(asked, nullptr, LYD_DUP_NO_META, &fresh);
    } else {
      lyd_dup_single(after, nullptr, LYD_DUP_RECURSIVE | LYD_DUP_NO_META, &fresh);
    }
    if (replaced) set_operation(fresh, empty ? Operation::remove : Operation::replace);
    lyd_node* const parent = lyd_parent(asked);
    lyd_free_tree(asked);
    lyd_insert_child(parent, fresh);
  }

  void told(const std::string& path, const char* what) const {
    if (environment_.trace != nullptr) {
      (*environment_.trace)({TraceLine::Kind::note, 3, fmt::format("{} {}", path, what)});
    }
  }

  const lyd_node* native_entry(const lyd_node* unit) const {
    std::string name;
    std::string index;
    for (const lyd_node* each = unit; each != nullptr; each = lyd_parent(each)) {
      if (named(each, "interface")) name = key_value(each);
      if (named(each, "subinterface")) index = key_value(each);
    }
    return environment_.running->entry(join_interface_name(name, index));
  }

  // Those of the unit's native containers that hold anything.
  std::vector<const lyd_node*> native_containers(const lyd_node* unit) const {
    std::vector<const lyd_node*> containers;
    const lyd_node* const entry = native_entry(unit);
    if (entry == nullptr) return containers;
    for (const std::string_view name : natives_of(unit)) {
      const lyd_node* const container = find_container(entry, name);
      if (has_covered_leaves(container)) containers.push_back(container);
    }
    return containers;
  }

  // The first container of which something could not be read; null when all could.
  const lyd_node* unread_of(const lyd_node* before, const std::vector<const lyd_node*>& natives) const {
    if (natives.empty()) return nullptr;
    if (before == nullptr) return natives.front();
    const Data again = written_from(before);
    const lyd_node* const entry = again.empty() ? nullptr : lyd_child(again.get());
    for (const lyd_node* const native : natives) {
      const lyd_node* const written = entry == nullptr ? nullptr : find_container(entry, LYD_NAME(native));
      if (written == nullptr) return native;
      const Data there = alone(native);
      drop_uncovered(there.get());
      std::vector<Delta> lost = compare(there, alone(written), canonical_text);
      std::erase_if(lost, [&before, &native](const Delta& each) { return is_trunk_read_whole(each, before, native); });
      if (!lost.empty()) return native;
    }
    return nullptr;
  }

  // Refuses to rewrite by what was read when not everything that is there could be read; tells what a merge leaves.
  void mind_unread(const Unit& unit, const lyd_node* unread, bool rewritten, bool goes) {
    const std::string name = LYD_NAME(unit.instances.front());
    const std::string native = path_of(unread);
    if (!rewritten) {
      warnings_.push_back({unit.path, fmt::format("merged into what does not read back whole ({}), of which something "
                                                  "may stay; operation replace takes the place of all of it",
                                                  native)});
      merged_into_unread_.push_back(unit.path);
      return;
    }
    throw Refused({.tag = "operation-failed",
                   .path = unit.path,
                   .message = fmt::format("'{}' cannot be {} in part: what is there natively ({}) does not read back "
                                          "whole; ask for all of it with operation replace",
                                          name, goes ? "removed" : "merged", native),
                   .bad_element = name});
  }

  // The native configuration that what was read becomes; empty when it is refused.
  Data written_from(const lyd_node* before) const {
    EditDocument edit;
    edit.tree = alone(before);
    std::vector<Warning> ignored;
    Environment silent = environment_;
    silent.trace = nullptr;
    Data written;
    try {
      const Data native = translate(silent, edit, ignored);
      apply_edit(written, native.get(), Operation::merge);
    } catch (const Refused&) {
      written.reset();
    }
    return written;
  }

  const Environment& environment_;
  EditDocument& document_;
  const Data& before_;
  const Data& expected_;
  std::vector<Warning>& warnings_;
  std::vector<std::string> merged_into_unread_;
};

}  // namespace

std::vector<std::string> rewrite_whole_containers(const Environment& environment, EditDocument& document,
                                                  const Data& before, const Data& expected,
                                                  std::vector<Warning>& warnings) {
  Rewriter rewriter(environment, document, before, expected, warnings);
  rewriter.run();
  return rewriter.merged_into_unread();
}

}  // namespace yfw
