// The native running configuration by interface name.
#include "framework/datastore/running.h"

#include <libyang/libyang.h>

#include <unordered_set>

#include "framework/tree/entries.h"
#include "framework/tree/foreign.h"
#include "framework/tree/prune.h"
#include "yfw-host/data.h"

namespace yfw {

namespace {

lyd_node* root_of(const Data& data) {
  lyd_node* node = nullptr;
  LY_LIST_FOR(data.get(), node) {
    if (is_interface_root(node)) return node;
  }
  return nullptr;
}

}  // namespace

Running::Running(Data data, ForeignSubtrees foreign) : data_(std::move(data)), foreign_(std::move(foreign)) {
  // Validation adds every container that could be there; most of a device is made of what is not.
  strip_defaults(data_);
  index();
}

Data Running::take() {
  Data taken = std::move(data_);
  index();
  return taken;
}

void Running::index() {
  order_.clear();
  by_name_.clear();
  subinterfaces_.clear();
  const lyd_node* const root = root_of(data_);
  if (root == nullptr) return;
  const lyd_node* entry = nullptr;
  LY_LIST_FOR(lyd_child(root), entry) {
    if (!is_interface_entry(entry)) continue;
    const std::string_view name = entry_name(entry);
    order_.push_back(entry);
    by_name_.emplace(name, entry);
    const InterfaceName split = split_interface_name(name);
    if (split.is_subinterface()) subinterfaces_[std::string(split.name)].emplace_back(name);
  }
}

const lyd_node* Running::entry(std::string_view native_name) const {
  const auto found = by_name_.find(native_name);
  return found == by_name_.end() ? nullptr : found->second;
}

std::vector<const lyd_node*> Running::entries_of(const std::vector<std::string>& native_names) const {
  std::vector<const lyd_node*> entries;
  for (const std::string& name : native_names) {
    const lyd_node* const found = entry(name);
    if (found != nullptr) entries.push_back(found);
  }
  return entries;
}

std::vector<std::string> Running::subinterfaces_of(std::string_view name) const {
  const auto found = subinterfaces_.find(std::string(name));
  return found == subinterfaces_.end() ? std::vector<std::string>() : found->second;
}

Data Running::copy(const std::vector<std::string>& native_names) const {
  Data copy;
  lyd_node* root = nullptr;
  for (const std::string& name : native_names) {
    const lyd_node* const found = entry(name);
    if (found == nullptr) continue;
    if (root == nullptr) {
      lyd_dup_single(&found->parent->node, nullptr, LYD_DUP_NO_META, &root);
      copy.reset(root);
    }
    lyd_dup_single(found, reinterpret_cast<lyd_node_inner*>(root), LYD_DUP_RECURSIVE | LYD_DUP_WITH_FLAGS, nullptr);
  }
  return copy;
}

void Running::replace(const std::vector<std::string>& native_names, Data changed) {
  strip_defaults(changed);
  lyd_node* const fresh_root = root_of(changed);
  std::unordered_map<std::string_view, lyd_node*> fresh;
  lyd_node* each = nullptr;
  LY_LIST_FOR(lyd_child(fresh_root), each) {
    fresh.emplace(entry_name(each), each);
  }
  std::vector<std::string> going;
  for (const std::string& name : native_names) {
    if (entry(name) != nullptr && !fresh.contains(name)) going.push_back(name);
  }
  keep_places(going);
  bool entries_changed = false;
  std::vector<lyd_node*> added;
  for (const std::string& name : native_names) {
    const auto now = fresh.find(name);
    lyd_node* const old_entry = const_cast<lyd_node*>(entry(name));
    lyd_node* const new_entry = now == fresh.end() ? nullptr : now->second;
    if (old_entry == nullptr) {
      if (new_entry != nullptr) added.push_back(new_entry);
      continue;
    }
    if (new_entry == nullptr) {
      lyd_free_tree(old_entry);
      entries_changed = true;
      continue;
    }
    // The entry itself keeps its place; what it holds is exchanged.
    lyd_node* child = lyd_child_no_keys(old_entry);
    while (child != nullptr) {
      lyd_node* const next = child->next;
      lyd_free_tree(child);
      child = next;
    }
    child = lyd_child_no_keys(new_entry);
    while (child != nullptr) {
      lyd_node* const next = child->next;
      lyd_insert_child(old_entry, child);
      child = next;
    }
  }
  if (!added.empty()) {
    lyd_node* root = root_of(data_);
    if (root == nullptr) {
      lyd_dup_single(fresh_root, nullptr, LYD_DUP_NO_META, &root);
      lyd_insert_sibling(data_.get(), root, data_.out());
    }
    for (lyd_node* const entry : added) lyd_insert_child(root, entry);
    entries_changed = true;
  }
  if (entries_changed) index();
  foreign_.forget(native_names, data_);
}

// What stands behind an entry that goes shall stand behind those before it.
void Running::keep_places(const std::vector<std::string>& going) {
  if (going.empty() || foreign_.empty()) return;
  const std::unordered_set<std::string_view> names(going.begin(), going.end());
  std::unordered_map<std::string_view, const lyd_node*> stays;
  const lyd_node* last = nullptr;
  for (const lyd_node* const each : order_) {
    if (names.contains(entry_name(each))) {
      stays.emplace(entry_name(each), last);
    } else {
      last = each;
    }
  }
  foreign_.follow(stays);
}

}  // namespace yfw
