// The walk of a filter, and what it asks for by entry.
#include "framework/read/fetch.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "framework/tree/entries.h"
#include "framework/tree/schema.h"
#include "framework/walk/request_tree.h"
#include "framework/walk/walk_state.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

constexpr std::string_view kAny = OutputTree::kAny;

}  // namespace

FetchSet::FetchSet(const OutputTree& output) : everything_(false) {
  const auto collect = [](const auto& self, const OutputNode& node, auto& asked) -> void {
    if (node.asked) asked.insert(node.schema);
    for (const OutputNode* const each : node.children) self(self, *each, asked);
  };
  // Natively, configuration has its entries at the top, operational data below each card.
  const auto find_entries = [&](const auto& self, const OutputNode& node) -> void {
    if (is_list(node.schema) && std::strcmp(node.schema->name, "node") != 0) {
      collect(collect, node, by_entry_[node.key].nodes);
      return;
    }
    for (const OutputNode* const each : node.children) self(self, *each);
  };
  for (const OutputNode* const root : output.top().children) find_entries(find_entries, *root);
}

void FetchSet::merge(const FetchSet& other) {
  everything_ = everything_ || other.everything_;
  for (const auto& [entry, asked] : other.by_entry_) {
    OfEntry& here = by_entry_[entry];
    here.nodes.insert(asked.nodes.begin(), asked.nodes.end());
    here.name = here.name || asked.name;
  }
}

bool Asked::contains(const lysc_node* node) const {
  return std::any_of(parts_.begin(), parts_.begin() + count_,
                     [node](const Nodes* part) { return part->contains(node); });
}

bool Asked::wants(const lyd_node* node) const {
  for (const lysc_node* each = node->schema; each != nullptr; each = each->parent) {
    if (contains(each)) return true;
  }
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (wants(child)) return true;
  }
  return false;
}

Asked FetchSet::asked_of(std::string_view native_name) const {
  Asked asked;
  const auto add = [&](const std::string& pattern) {
    const auto found = by_entry_.find(pattern);
    if (found == by_entry_.end()) return;
    if (!found->second.nodes.empty()) asked.parts_[asked.count_++] = &found->second.nodes;
    asked.name_ = asked.name_ || found->second.name;
  };
  const InterfaceName name = split_interface_name(native_name);
  add(std::string(native_name));
  if (name.is_subinterface()) {
    add(join_interface_name(name.name, kAny));
    add(join_interface_name(kAny, name.index));
    add(join_interface_name(kAny, kAny));
  } else {
    add(OutputTree::kAny);
  }
  return asked;
}

namespace {

// Whether one of two entries stands before the other: as far as they are from each other is all that is looked at.
bool stands_before(const lyd_node* left, const lyd_node* right) {
  const lyd_node* behind_left = left;
  const lyd_node* behind_right = right;
  while (true) {
    behind_left = behind_left->next;
    if (behind_left == right) return true;
    behind_right = behind_right->next;
    if (behind_right == left) return false;
    if (behind_left == nullptr) return false;
    if (behind_right == nullptr) return true;
  }
}

}  // namespace

std::vector<const lyd_node*> FetchSet::entries(const Running& running) const {
  if (everything_) return running.entries();
  std::vector<const lyd_node*> named;
  std::vector<const lyd_node*> of_interface;
  std::size_t interfaces = 0;
  bool is_any = false;
  for (const auto& [name, asked] : by_entry_) {
    if (asked.nodes.empty() && !asked.name) continue;
    const InterfaceName split = split_interface_name(name);
    is_any = is_any || split.name == kAny;
    if (split.index == kAny) {
      of_interface = running.entries_of(running.subinterfaces_of(split.name));
      ++interfaces;
    } else if (const lyd_node* const entry = running.entry(name)) {
      named.push_back(entry);
    }
  }
  // Few entries find their places among those of one interface, which have theirs; for more it is all that are there.
  constexpr std::size_t kFew = 16;
  if (is_any || interfaces > 1 || named.size() > kFew) {
    const auto any_interface = by_entry_.find(OutputTree::kAny);
    const bool names_all = any_interface != by_entry_.end() && any_interface->second.name;
    const auto is_asked = [&](const lyd_node* entry) {
      const Asked asked = asked_of(entry_name(entry));
      if (asked.of_nodes() || asked.of_name()) return true;
      return names_all && running.entry(split_interface_name(entry_name(entry)).name) == nullptr;
    };
    std::vector<const lyd_node*> found;
    std::copy_if(running.entries().begin(), running.entries().end(), std::back_inserter(found), is_asked);
    return found;
  }
  const std::unordered_set<const lyd_node*> there(of_interface.begin(), of_interface.end());
  for (const lyd_node* const entry : named) {
    if (there.contains(entry)) continue;
    of_interface.insert(std::upper_bound(of_interface.begin(), of_interface.end(), entry, stands_before), entry);
  }
  return of_interface;
}

namespace {

// A leaf that every interface or sub-interface answers: its name, index or type.
bool is_name(const lysc_node* leaf) {
  const std::string_view name = leaf->name;
  const bool own = name == "name" || name == "index" || name == "type";
  return own && std::strcmp(leaf->module->name, kInterfacesModule) == 0;
}

bool holds_name(const lysc_node* node) {
  if (is_term(node)) return is_name(node);
  const lysc_node* child = nullptr;
  while ((child = lys_getnext(child, node, nullptr, 0)) != nullptr) {
    if (holds_name(child)) return true;
  }
  return false;
}

bool selects_names(const Criterion& criterion) {
  if (criterion.schema != nullptr && criterion.takes_all()) return holds_name(criterion.schema);
  return std::any_of(criterion.selections.begin(), criterion.selections.end(), selects_names);
}

std::string_view key_or_any(const Criterion& entry) {
  const char* const key = entry.key();
  return key == nullptr ? OutputTree::kAny : key;
}

}  // namespace

// An interface is there as long as an entry of it is, so one of a sub-interface answers in the place of its own.
void FetchSet::ask_for_names(const SubtreeFilter& filter, const Running* running) {
  if (!selects_names(filter.top())) return;
  const auto ask = [this](std::string_view name, std::string_view index) {
    by_entry_[join_interface_name(name, index)].name = true;
  };
  const auto ask_for_interface = [&](std::string_view name) {
    ask(name, {});
    if (name == kAny || running == nullptr || running->entry(name) != nullptr) return;
    const std::vector<std::string> subs = running->subinterfaces_of(name);
    if (!subs.empty()) by_entry_[subs.front()].name = true;
  };
  for (const Criterion& top : filter.top().selections) {
    if (top.takes_all()) ask_for_interface(kAny);
    for (const Criterion& interface : top.selections) {
      const std::string_view name = key_or_any(interface);
      ask_for_interface(name);
      if (interface.takes_all()) ask(name, kAny);
      for (const Criterion& list : interface.selections) {
        if (list.schema == nullptr || std::strcmp(list.schema->name, "subinterfaces") != 0) continue;
        if (list.takes_all()) ask(name, kAny);
        for (const Criterion& sub : list.selections) ask(name, key_or_any(sub));
      }
    }
  }
}

Fetch collect_paths(const Environment& environment, const Data& filter, bool with_state) {
  Fetch fetch;
  fetch.set = FetchSet(OutputTree(*environment.paths));
  // Who knows neither the interface nor its layer may need the paths of both.
  std::unordered_set<std::string> seen;
  std::vector<Layer> layers{environment.layer};
  if (environment.layer == Layer::from_running) layers = {Layer::l2, Layer::l3};
  for (const Layer layer : layers) {
    Environment each = environment;
    each.layer = layer;
    WalkState walk_state(each, with_state ? kReadState : kReadConfig);
    RequestTree tree;
    std::vector<const yfw_datatree*> roots;
    yfw_datatree everything{};
    everything.tag = "interfaces";
    everything.ns = YFW_OPENCONFIG_INTERFACES_NS;
    if (filter.empty()) roots.push_back(&everything);
    const lyd_node* top = nullptr;
    LY_LIST_FOR(filter.get(), top) {
      roots.push_back(tree.filter(top));
    }
    for (const yfw_datatree* const root : roots) {
      const cerrno result = environment.plugins->openconfig_root()(walk_state.ctx(), root, walk_state.output().root());
      if (result != 0 || walk_state.failed()) throw Refused(walk_state.refusal(result));
    }
    fetch.set.merge(FetchSet(walk_state.output()));
    for (std::string& path : to_paths(walk_state.output())) {
      if (seen.insert(path).second) fetch.paths.push_back(std::move(path));
    }
  }
  return fetch;
}

}  // namespace yfw
