// Native data read as OpenConfig, entry by entry.
#include "framework/read/reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/prune.h"
#include "framework/tree/schema.h"
#include "framework/vlan/rules.h"
#include "framework/walk/environment.h"
#include "framework/walk/interfaces_walker.h"
#include "framework/walk/output_tree.h"
#include "framework/walk/request_tree.h"
#include "framework/walk/walk_state.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

const char* reason(const WalkState& walk_state, cerrno result) {
  return walk_state.last_missing().empty() ? cerr_strerror(result) : walk_state.last_missing().c_str();
}

// The leaves below a data node, in order.
void collect_leaves(const lyd_node* node, std::vector<const lyd_node*>& leaves) {
  if (is_term(node->schema)) {
    leaves.push_back(node);
    return;
  }
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    collect_leaves(child, leaves);
  }
}

// One native entry handed to the plug-ins' walkers.
class EntryWalk {
 public:
  EntryWalk(WalkState& walk_state, RequestTree& records, const lyd_node* entry, const Asked* asked,
            std::vector<Warning>& warnings)
      : walk_state_(walk_state), records_(records), entry_(entry), asked_(asked), warnings_(warnings) {}

  void run() {
    if (!is_interface_name(entry_name(entry_))) {
      warnings_.push_back({path_of(entry_), "left out: the name is none of an interface or sub-interface"});
      return;
    }
    const InterfaceName name = split_interface_name(entry_name(entry_));
    walk_state_.enter_interface(name.name, name.index);
    walk_state_.set_native_entry(entry_);
    answer_own_leaves(walk_state_, entry_);
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child_no_keys(entry_), child) {
      // The layer holds augments of its own.
      if (!is_layer(child)) {
        walk_child(child);
        continue;
      }
      const lyd_node* below = nullptr;
      LY_LIST_FOR(lyd_child(child), below) {
        walk_child(below);
      }
    }
    walk_state_.set_native_entry(nullptr);
  }

 private:
  void walk_child(const lyd_node* child) {
    if (asked_ != nullptr && !asked_->wants(child)) return;
    const bool is_port = walk_state_.subinterface_index().empty();
    if (const char* const otherwise = is_port ? nullptr : only_of_ports(child->schema)) {
      warnings_.push_back({path_of(child), otherwise});
      return;
    }
    const yfw_map_walker_fn walker = walk_state_.environment().plugins->native_entry(child->schema->name);
    if (walker == nullptr) return;
    // Handed over whole, also where less is asked for: what a leaf means depends on those beside it.
    const std::size_t mark = walk_state_.output().mark();
    if (walk(walker, child, nullptr) == 0) return;
    // The walker stopped at the first leaf that it could not translate; the others are asked for one by one.
    walk_state_.output().roll_back(mark);
    std::vector<const lyd_node*> leaves;
    collect_leaves(child, leaves);
    for (const lyd_node* const leaf : leaves) {
      const std::size_t leaf_mark = walk_state_.output().mark();
      const cerrno result =
          walk(walker, child, [leaf](const lyd_node* node) { return is_ancestor_or_self(node, leaf); });
      if (result == 0) continue;
      walk_state_.output().roll_back(leaf_mark);
      if (result == CERR_UNSUPPORTED) {
        // Not part of what OpenConfig can say at all.
        if (walk_state_.tracing()) walk_state_.note(path_of(leaf) + " is mapped by nobody");
        continue;
      }
      if (asked_ != nullptr && !asked_->wants(leaf)) continue;
      const bool missing = !walk_state_.last_missing().empty();
      warnings_.push_back(
          {path_of(leaf), fmt::format("left out: {}{}{}", missing ? "it needs '" : "", reason(walk_state_, result),
                                      missing ? "', which is not there" : "")});
    }
  }

  cerrno walk(yfw_map_walker_fn walker, const lyd_node* child, const RequestTree::Wanted& wanted) {
    records_.clear();
    const yfw_datatree* const node = records_.data(child, wanted);
    walk_state_.clear_missing();
    if (walk_state_.environment().bind_subinterface_vlan_id && holds_routed_vlan(child)) {
      return walk_bound(node);
    }
    return walker(walk_state_.ctx(), node, walk_state_.output().root());
  }

  // With the routed VLAN bound, its container goes to the bound function instead of the walker.
  cerrno walk_bound(const yfw_datatree* node) {
    const yfw_map_container_fn translate = walk_state_.environment().plugins->routed_vlan().to_openconfig;
    cerrno result = 0;
    for (uint32_t i = 0; translate != nullptr && result == 0 && i < node->subtree_count; ++i) {
      const yfw_datatree* const container = &node->subtrees[i];
      result = translate(walk_state_.ctx(), container, container->subtree_count, walk_state_.output().root());
    }
    return result;
  }

  WalkState& walk_state_;
  RequestTree& records_;
  const lyd_node* entry_;
  const Asked* asked_;
  std::vector<Warning>& warnings_;
};

}  // namespace

Reader::Reader(const Environment& environment, uint32_t kind) : walk_state_(environment, kind) {}

void Reader::add(const lyd_node* entry, const Asked* asked, std::vector<Warning>& warnings) {
  walk_state_.take_turn();
  EntryWalk(walk_state_, records_, entry, asked, warnings).run();
}

cerrno Reader::add_state_entry(const lyd_node* entry) {
  walk_state_.take_turn();
  records_.clear();
  const yfw_datatree* const root = records_.in_place(entry, records_.data(entry));
  return walk_state_.environment().plugins->operational_root()(walk_state_.ctx(), root, walk_state_.output().root());
}

cerrno Reader::add_state(const lyd_node* top, const RequestTree::Wanted& wanted) {
  walk_state_.take_turn();
  records_.clear();
  const yfw_datatree* const root = records_.data(top, wanted);
  return walk_state_.environment().plugins->operational_root()(walk_state_.ctx(), root, walk_state_.output().root());
}

void Reader::answer_names() {
  walk_state_.take_turn();
  const OutputNode& top = walk_state_.output().top();
  std::vector<std::pair<std::string, std::string>> names;
  const auto collect = [&names](const auto& self, const OutputNode& node, const std::string& interface) -> void {
    const bool is_entry = is_list(node.schema) && !node.key.empty();
    const bool is_interface = is_entry && std::strcmp(node.schema->name, "interface") == 0;
    if (is_interface) names.emplace_back(node.key, "");
    if (is_entry && !is_interface) names.emplace_back(interface, node.key);
    for (const OutputNode* const each : node.children) self(self, *each, is_interface ? node.key : interface);
  };
  for (const OutputNode* const each : top.children) collect(collect, *each, "");
  for (const auto& [name, index] : names) {
    walk_state_.enter_interface(name, index);
    answer_own_leaves(walk_state_, nullptr);
  }
}

Data Reader::take(std::vector<Warning>& warnings) {
  Data data = to_data(walk_state_.output(), warnings);
  walk_state_.output().clear();
  return data;
}

Data read_entries(const Environment& environment, const std::vector<const lyd_node*>& entries,
                  std::vector<Warning>& warnings) {
  Reader reader(environment, kReadConfig);
  for (const lyd_node* const entry : entries) reader.add(entry, nullptr, warnings);
  return reader.take(warnings);
}

}  // namespace yfw
