// The native running configuration in entries, and put together again.
#include "framework/datastore/running.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <new>
#include <unordered_map>
#include <unordered_set>

#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/printer.h"
#include "framework/tree/prune.h"

namespace yfw {

namespace {

lyd_node* root_of(const Data& data) {
  lyd_node* node = nullptr;
  LY_LIST_FOR(data.get(), node) {
    if (is_interface_root(node)) return node;
  }
  return nullptr;
}

lyd_node* copied(const lyd_node* node, lyd_node* parent, std::uint32_t options) {
  lyd_node* copy = nullptr;
  if (lyd_dup_single(node, reinterpret_cast<lyd_node_inner*>(parent), options, &copy) != LY_SUCCESS) {
    throw std::bad_alloc();
  }
  return copy;
}

// Takes the entries out of a tree, each in a container of its own.
std::vector<Data> take_entries(const Data& from) {
  std::vector<Data> entries;
  lyd_node* const root = root_of(from);
  lyd_node* each = root == nullptr ? nullptr : lyd_child(root);
  while (each != nullptr) {
    lyd_node* const next = each->next;
    if (is_interface_entry(each)) {
      Data alone(copied(root, nullptr, LYD_DUP_NO_META));
      lyd_unlink_tree(each);
      lyd_insert_child(alone.get(), each);
      entries.push_back(std::move(alone));
    }
    each = next;
  }
  return entries;
}

// The lines of a printed configuration of one entry that are the entry's own.
std::string_view lines_of_entry(std::string_view printed, std::size_t around) {
  for (std::size_t i = 0; i < around; ++i) {
    printed.remove_prefix(printed.find('\n') + 1);
    printed.remove_suffix(printed.size() - printed.rfind('\n', printed.size() - 2) - 1);
  }
  return printed;
}

}  // namespace

Running::Running(Data data, ForeignSubtrees foreign) : beside_(std::move(data)), foreign_(std::move(foreign)) {
  // Validation adds every container that could be there; most of a device is made of what is not.
  strip_defaults(beside_);
  std::vector<PlacedEntry> entries;
  for (Data& each : take_entries(beside_)) {
    entries.push_back({std::make_shared<const Entry>(std::move(each)), next_place_++});
  }
  entries_ = EntrySet(std::move(entries));
  const lyd_node* const root = root_of(beside_);
  const bool only_root = root != nullptr && root == beside_.get() && root->next == nullptr;
  is_beside_empty_ = beside_.empty() || (only_root && lyd_child(root) == nullptr);
}

const Running::Order& Running::order() const {
  std::call_once(order_->made, [this] {
    order_->entries = entries_.in_order();
    for (const PlacedEntry& each : order_->entries) order_->nodes.push_back(each.entry->node());
  });
  return *order_;
}

const std::vector<const lyd_node*>& Running::entries() const {
  return order().nodes;
}

Data Running::whole() const {
  Data whole = beside_.clone();
  lyd_node* root = root_of(whole);
  for (const PlacedEntry& each : order().entries) {
    if (root == nullptr) {
      root = copied(each.entry->tree().get(), nullptr, LYD_DUP_NO_META);
      lyd_insert_sibling(whole.get(), root, whole.out());
    }
    copied(each.entry->node(), root, LYD_DUP_RECURSIVE | LYD_DUP_WITH_FLAGS);
  }
  return whole;
}

std::string Running::print(const ly_ctx* models, Format format) const {
  const std::vector<PlacedEntry>& entries = order().entries;
  if (!foreign_.empty() || !is_beside_empty_ || entries.empty()) return foreign_.print(whole(), models, format);
  // An entry at a time, each printed in its container.
  const std::size_t around = format == Format::xml ? 1 : 3;
  std::string text;
  std::string printed;
  Printer printer(format);
  const Data::Sink to_printed = [&printed](std::string_view piece) { printed += piece; };
  for (const PlacedEntry& each : entries) {
    printed.clear();
    printer.print(each.entry->tree().get(), to_printed);
    const std::string_view own = lines_of_entry(printed, around);
    const std::string_view all = printed;
    if (text.empty()) {
      text = all.substr(0, static_cast<std::size_t>(own.data() - all.data()));
    } else if (format == Format::json) {
      text.insert(text.size() - 1, 1, ',');
    }
    text += own;
    if (&each == &entries.back()) text += all.substr(static_cast<std::size_t>(own.data() - all.data()) + own.size());
  }
  return text;
}

const lyd_node* Running::entry(std::string_view native_name) const {
  const PlacedEntry* const found = entries_.find(native_name);
  return found == nullptr ? nullptr : found->entry->node();
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
  std::vector<PlacedEntry> found = entries_.beginning_with(std::string(name) + ".");
  std::sort(found.begin(), found.end(), [](const auto& left, const auto& right) { return left.place < right.place; });
  std::vector<std::string> names;
  for (const PlacedEntry& each : found) {
    const InterfaceName split = split_interface_name(each.name());
    if (split.name == name && split.is_subinterface()) names.emplace_back(each.name());
  }
  return names;
}

std::string Running::a_subinterface_of(std::string_view name) const {
  // The first may be a name that ends in the dot, which is that of no sub-interface.
  for (const PlacedEntry& each : entries_.beginning_with(std::string(name) + ".", 2)) {
    const InterfaceName split = split_interface_name(each.name());
    if (split.name == name && split.is_subinterface()) return std::string(each.name());
  }
  return {};
}

Data Running::copy(const std::vector<std::string>& native_names) const {
  Data copy;
  for (const std::string& name : native_names) {
    const PlacedEntry* const found = entries_.find(name);
    if (found == nullptr) continue;
    if (copy.empty()) copy.reset(copied(found->entry->tree().get(), nullptr, LYD_DUP_NO_META));
    copied(found->entry->node(), copy.get(), LYD_DUP_RECURSIVE | LYD_DUP_WITH_FLAGS);
  }
  return copy;
}

void Running::replace(const std::vector<std::string>& native_names, const Running& changed) {
  std::vector<EntrySet::Change> changes;
  std::unordered_set<std::string_view> going;
  for (const std::string& name : native_names) {
    const PlacedEntry* const old = entries_.find(name);
    const PlacedEntry* const now = changed.entries_.find(name);
    if (now != nullptr) {
      changes.push_back({name, now->entry, old == nullptr ? next_place_++ : old->place});
    } else if (old != nullptr) {
      changes.push_back({name, nullptr});
      going.insert(name);
    }
  }
  if (!foreign_.empty()) keep_places(going);
  entries_ = entries_.with(std::move(changes));
  order_ = std::make_unique<Order>();
  if (!foreign_.empty()) foreign_.forget(native_names, copy(native_names));
}

// What stands behind an entry that goes shall stand behind those before it.
void Running::keep_places(const std::unordered_set<std::string_view>& going) {
  if (going.empty()) return;
  std::unordered_map<std::string_view, const lyd_node*> stays;
  const lyd_node* last = nullptr;
  for (const lyd_node* const each : entries()) {
    if (going.contains(entry_name(each))) {
      stays.emplace(entry_name(each), last);
    } else {
      last = each;
    }
  }
  foreign_.follow(stays);
}

}  // namespace yfw
