// The parts of an edit that the plug-in's container handlers see as a whole, rewritten by what will be there.
#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>
#include <unordered_map>

#include "framework/documents/documents.h"
#include "framework/edit/edit.h"
#include "framework/read/verdict.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/rules.h"
#include "framework/vlan/trunk_text.h"
#include "framework/walk/environment.h"
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

// True when what writing the reading back makes is nothing but the text of a trunk, all of which was read.
bool is_only_trunk_read_whole(const EntryVerdict::Misread& misread, const lyd_node* native, const lyd_node* config) {
  const lyd_node* const leaf = trunk_leaf_below(native);
  return leaf != nullptr && is_trunk_read_whole(leaf, config) &&
         std::all_of(misread.makes.begin(), misread.makes.end(),
                     [leaf](const lysc_node* made) { return made == leaf->schema; });
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

// Those that the request names and that do not go, or are replaced, as a whole anyway.
void collect(EditDocument& document, lyd_node* node, Operation outer, std::vector<lyd_node*>& containers) {
  const Operation own = operation_of(node, outer);
  // A replace by nothing is a removal.
  if (own == Operation::replace && is_whole_container(node) && lyd_child(node) == nullptr) {
    keep_asked(document);
    set_operation(node, Operation::remove);
  }
  if (node->schema == nullptr || removes(own) || own == Operation::replace) return;
  if (is_whole_container(node)) {
    containers.push_back(node);
    return;
  }
  lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    collect(document, child, own, containers);
  }
}

class Rewriter {
 public:
  Rewriter(const Environment& environment, EditDocument& document, const Data& before,
           const std::vector<EntryVerdict>& verdicts, const Data& expected, std::vector<Warning>& warnings)
      : environment_(environment), document_(document), before_(before), expected_(expected), warnings_(warnings) {
    for (const EntryVerdict& each : verdicts) verdicts_.emplace(each.entry, &each);
  }

  void run() {
    std::vector<lyd_node*> containers;
    lyd_node* node = nullptr;
    LY_LIST_FOR(document_.tree.get(), node) {
      collect(document_, node, document_.default_operation, containers);
    }
    for (lyd_node* const container : containers) rewrite(container);
  }

  const std::vector<std::string>& merged_into_unread() const { return merged_into_unread_; }

 private:
  void rewrite(lyd_node* container) {
    if (left_to_plugin(document_, container, Operation::merge)) return;
    const lyd_node* const before = counterpart(before_, container);
    const lyd_node* const after = counterpart(expected_, container);
    const std::vector<const lyd_node*> natives = native_containers(container);
    const bool goes = before != nullptr && loses(before, after);
    const bool whole_lists = !natives.empty() && names_leaf_list(container);
    const lyd_node* const unread = unread_of(before, natives);
    if (unread != nullptr) mind_unread(container, unread, goes || whole_lists, goes);
    if (!goes && !whole_lists) return;
    keep_asked(document_);
    if (goes) {
      told(container, has_leaves(after) ? "goes as a replace by what will be there" : "goes as a remove");
    } else {
      told(container, "goes with its whole lists");
    }
    exchange(container, after, goes);
  }

  // Puts what will be there in the place of what was asked.
  void exchange(lyd_node* asked, const lyd_node* after, bool replaced) const {
    const bool empty = !has_leaves(after);
    lyd_node* fresh = nullptr;
    const LY_ERR result = empty ? lyd_dup_single(asked, nullptr, LYD_DUP_NO_META, &fresh)
                                : lyd_dup_single(after, nullptr, LYD_DUP_RECURSIVE | LYD_DUP_NO_META, &fresh);
    if (result != LY_SUCCESS) throw std::bad_alloc();
    if (replaced) set_operation(fresh, empty ? Operation::remove : Operation::replace);
    lyd_node* const parent = lyd_parent(asked);
    lyd_free_tree(asked);
    lyd_insert_child(parent, fresh);
  }

  void told(const lyd_node* container, const char* what) const {
    if (environment_.trace == nullptr) return;
    (*environment_.trace)({TraceLine::Kind::note, 3, fmt::format("{} {}", path_of(container), what)});
  }

  const lyd_node* native_entry(const lyd_node* container) const {
    std::string name;
    std::string index;
    for (const lyd_node* each = container; each != nullptr; each = lyd_parent(each)) {
      if (named(each, "interface")) name = key_value(each);
      if (named(each, "subinterface")) index = key_value(each);
    }
    return environment_.running->entry(join_interface_name(name, index));
  }

  // Those of its native containers that hold anything.
  std::vector<const lyd_node*> native_containers(const lyd_node* container) const {
    std::vector<const lyd_node*> containers;
    const lyd_node* const entry = native_entry(container);
    if (entry == nullptr) return containers;
    for (const std::string_view name : natives_of(container)) {
      const lyd_node* const native = find_container(entry, name);
      if (has_covered_leaves(native)) containers.push_back(native);
    }
    return containers;
  }

  // The first container of which the reading does not say all, or makes something else; null when there is none.
  const lyd_node* unread_of(const lyd_node* before, const std::vector<const lyd_node*>& natives) const {
    if (natives.empty()) return nullptr;
    if (before == nullptr) return natives.front();
    const lyd_node* entry = natives.front();
    while (entry != nullptr && !is_interface_entry(entry)) entry = lyd_parent(entry);
    const auto found = verdicts_.find(entry);
    if (found == verdicts_.end()) return nullptr;
    const EntryVerdict& verdict = *found->second;
    for (const lyd_node* const native : natives) {
      const bool unsaid = std::any_of(verdict.unsaid.begin(), verdict.unsaid.end(), [&](const lyd_node* leaf) {
        const std::vector<const lyd_node*>& readable = verdict.readable;
        return is_ancestor_or_self(native, leaf) && !is_trunk_read_whole(leaf, before) &&
               std::find(readable.begin(), readable.end(), leaf) == readable.end();
      });
      const bool misread = std::any_of(verdict.misread.begin(), verdict.misread.end(), [&](const auto& each) {
        return is_below(each.container, native->schema) && !is_only_trunk_read_whole(each, native, before);
      });
      if (unsaid || misread) return native;
    }
    return nullptr;
  }

  static bool is_below(const lysc_node* node, const lysc_node* above) {
    while (node != nullptr && node != above) node = node->parent;
    return node != nullptr;
  }

  // Refuses to rewrite by what was read when not everything that is there could be read; tells what a merge leaves.
  void mind_unread(const lyd_node* container, const lyd_node* unread, bool rewritten, bool goes) {
    const std::string name = LYD_NAME(container);
    std::string path = path_of(container);
    const std::string native = path_of(unread);
    if (!rewritten) {
      warnings_.push_back({path, fmt::format("merged into what does not read back whole ({}), of which something "
                                             "may stay; operation replace takes the place of all of it",
                                             native)});
      merged_into_unread_.push_back(std::move(path));
      return;
    }
    throw Refused({.tag = "operation-failed",
                   .path = std::move(path),
                   .message = fmt::format("'{}' cannot be {} in part: what is there natively ({}) does not read back "
                                          "whole; ask for all of it with operation replace",
                                          name, goes ? "removed" : "merged", native),
                   .bad_element = name});
  }

  const Environment& environment_;
  EditDocument& document_;
  const Data& before_;
  const Data& expected_;
  std::vector<Warning>& warnings_;
  std::unordered_map<const lyd_node*, const EntryVerdict*> verdicts_;  // by entry
  std::vector<std::string> merged_into_unread_;
};

}  // namespace

std::vector<std::string> rewrite_whole_containers(const Environment& environment, EditDocument& document,
                                                  const Data& before, const std::vector<EntryVerdict>& verdicts,
                                                  const Data& expected, std::vector<Warning>& warnings) {
  Rewriter rewriter(environment, document, before, verdicts, expected, warnings);
  rewriter.run();
  return rewriter.merged_into_unread();
}

}  // namespace yfw
