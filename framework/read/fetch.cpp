// The walk of a filter, and what it asks for by entry.
#include "framework/read/fetch.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <cstring>

#include "framework/tree/entries.h"
#include "framework/tree/schema.h"
#include "framework/walk/request_tree.h"
#include "framework/walk/walk_state.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"
#include "yfw/yfw_map.h"

namespace yfw {

FetchSet::FetchSet(const OutputTree& output) : everything_(false) {
  const auto collect = [](const auto& self, const OutputNode& node, auto& asked) -> void {
    if (node.asked) asked.insert(node.schema);
    for (const OutputNode* const each : node.children) self(self, *each, asked);
  };
  // Natively, configuration has its entries at the top, operational data below each card.
  const auto find_entries = [&](const auto& self, const OutputNode& node) -> void {
    if (is_list(node.schema) && std::strcmp(node.schema->name, "node") != 0) {
      collect(collect, node, by_entry_[node.key]);
      return;
    }
    for (const OutputNode* const each : node.children) self(self, *each);
  };
  for (const OutputNode* const root : output.top().children) find_entries(find_entries, *root);
}

void FetchSet::merge(const FetchSet& other) {
  everything_ = everything_ || other.everything_;
  for (const auto& [entry, asked] : other.by_entry_) by_entry_[entry].insert(asked.begin(), asked.end());
}

std::unordered_set<const lysc_node*> FetchSet::asked_of(std::string_view native_name) const {
  const InterfaceName name = split_interface_name(native_name);
  std::vector<std::string> patterns{std::string(native_name)};
  if (name.is_subinterface()) {
    patterns.push_back(fmt::format("{}.*", name.name));
    patterns.push_back(fmt::format("*.{}", name.index));
    patterns.emplace_back("*.*");
  } else {
    patterns.emplace_back("*");
  }
  std::unordered_set<const lysc_node*> asked;
  for (const std::string& pattern : patterns) {
    const auto found = by_entry_.find(pattern);
    if (found != by_entry_.end()) asked.insert(found->second.begin(), found->second.end());
  }
  return asked;
}

bool FetchSet::is_wanted(const lyd_node* node, const std::unordered_set<const lysc_node*>& asked) {
  for (const lysc_node* each = node->schema; each != nullptr; each = each->parent) {
    if (asked.contains(each)) return true;
  }
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (is_wanted(child, asked)) return true;
  }
  return false;
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
