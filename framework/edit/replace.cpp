// What a replace of an entry takes away natively beyond what the plug-in knows of: everything but the entry itself, its
// layer, and what no model of the mapping covers.
#include <libyang/libyang.h>

#include <stdexcept>
#include <unordered_map>

#include "framework/documents/documents.h"
#include "framework/edit/edit.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/rules.h"
#include "yfw-host/data.h"

namespace yfw {

namespace {

// True when something at or below the node has to stay in a replaced entry.
bool holds_uncovered(const lyd_node* node) {
  if (!is_covered(node->schema)) return true;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (holds_uncovered(child)) return true;
  }
  return false;
}

// The node of a native edit for a node of the configuration; null when the edit does not speak of it.
lyd_node* twin_of(const lyd_node* edited, const lyd_node* node) {
  lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(edited), child) {
    if (schema_of(child) != node->schema) continue;
    if (!is_list(node->schema) || lyd_compare_single(child, node, 0) == LY_SUCCESS) return child;
  }
  return nullptr;
}

lyd_node* add_twin(lyd_node* edited, const lyd_node* node) {
  if (is_term(node->schema)) return new_removed_leaf(edited, node->schema);
  lyd_node* made = nullptr;
  const LY_ERR result = is_list(node->schema)
                            ? lyd_new_list(edited, node->schema->module, LYD_NAME(node), 0, &made,
                                           lyd_child(node) == nullptr ? "" : lyd_get_value(lyd_child(node)))
                            : lyd_new_inner(edited, node->schema->module, LYD_NAME(node), 0, &made);
  if (result != LY_SUCCESS) throw std::runtime_error("a native edit cannot be completed");
  return made;
}

// Adds to the edit the removal of what `entry` still holds and the edit does not write; `entry` loses it too.
void remove_unwritten(lyd_node* edited, lyd_node* entry) {
  lyd_node* node = lyd_child_no_keys(entry);
  while (node != nullptr) {
    lyd_node* const next = node->next;
    lyd_node* const twin = twin_of(edited, node);
    const bool whole = !is_layer(node) && !holds_uncovered(node);
    if (twin == nullptr && is_covered(node->schema) && whole) {
      set_operation(add_twin(edited, node), Operation::remove);
      lyd_free_tree(node);
    } else if (!is_term(node->schema) && is_covered(node->schema)) {
      // Its parts, one by one.
      lyd_node* const part = twin == nullptr ? add_twin(edited, node) : twin;
      remove_unwritten(part, node);
      if (twin == nullptr && lyd_child_no_keys(part) == nullptr) lyd_free_tree(part);
    }
    node = next;
  }
}

using Entries = std::unordered_map<std::string_view, lyd_node*>;

Entries entries_of(const Data& data) {
  Entries entries;
  lyd_node* entry = nullptr;
  LY_LIST_FOR(lyd_child(data.get()), entry) {
    entries.emplace(entry_name(entry), entry);
  }
  return entries;
}

void collect_replaced(const lyd_node* node, std::string_view interface, std::vector<std::string>& names) {
  const bool sub = named(node, "subinterface");
  if (sub || named(node, "interface")) {
    const std::string_view key = lyd_get_value(lyd_child(node));
    if (!sub) interface = key;
    if (operation_of(node, Operation::none) == Operation::replace) {
      names.push_back(join_interface_name(interface, sub ? key : std::string_view()));
    }
    if (sub) return;
  }
  const lyd_node* child = nullptr;
  LY_LIST_FOR(node->schema == nullptr ? nullptr : lyd_child(node), child) {
    collect_replaced(child, interface, names);
  }
}

}  // namespace

void complete_replaces(const EditDocument& document, Data& native, Data& candidate) {
  std::vector<std::string> names;
  const lyd_node* top = nullptr;
  LY_LIST_FOR(document.tree.get(), top) {
    collect_replaced(top, {}, names);
  }
  if (names.empty() || candidate.empty()) return;
  if (native.empty()) {
    lyd_node* root = nullptr;
    if (lyd_dup_single(candidate.get(), nullptr, LYD_DUP_NO_META, &root) != LY_SUCCESS) {
      throw std::runtime_error("a native edit cannot be completed");
    }
    native.reset(root);
  }
  const Entries candidates = entries_of(candidate);
  const Entries edits = entries_of(native);
  for (const std::string& name : names) {
    const auto entry = candidates.find(name);
    if (entry == candidates.end()) continue;
    const auto known = edits.find(name);
    lyd_node* const edited = known == edits.end() ? add_twin(native.get(), entry->second) : known->second;
    remove_unwritten(edited, entry->second);
    if (known == edits.end() && lyd_child_no_keys(edited) == nullptr) lyd_free_tree(edited);
  }
}

}  // namespace yfw
