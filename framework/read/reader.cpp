// Native data read as OpenConfig, entry by entry.
#include "framework/read/reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/prune.h"
#include "framework/tree/schema.h"
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

constexpr char kPortVlans[] = "vlan-trunk-configuration";
constexpr char kVlanIdentifierParent[] = "vlan-sub-configuration";

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
  EntryWalk(WalkState& walk_state, const lyd_node* entry, const RequestTree::Wanted& wanted,
            std::vector<Warning>& warnings)
      : walk_state_(walk_state), entry_(entry), wanted_(wanted), warnings_(warnings) {}

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
      const bool holds_augments = std::strcmp(child->schema->name, "l2-transport") == 0;
      if (!holds_augments) walk_child(child);
      if (!holds_augments) continue;
      const lyd_node* below = nullptr;
      LY_LIST_FOR(lyd_child(child), below) {
        walk_child(below);
      }
    }
    walk_state_.set_native_entry(nullptr);
  }

 private:
  void walk_child(const lyd_node* child) {
    if (wanted_ != nullptr && !wanted_(child)) return;
    if (!walk_state_.subinterface_index().empty() && std::strcmp(child->schema->name, kPortVlans) == 0) {
      warnings_.push_back({path_of(child), "left out: a sub-interface switches no VLANs"});
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
      if (wanted_ != nullptr && !wanted_(leaf)) continue;
      const bool missing = !walk_state_.last_missing().empty();
      warnings_.push_back(
          {path_of(leaf), fmt::format("left out: {}{}{}", missing ? "it needs '" : "", reason(walk_state_, result),
                                      missing ? "', which is not there" : "")});
    }
  }

  cerrno walk(yfw_map_walker_fn walker, const lyd_node* child, const RequestTree::Wanted& wanted) {
    RequestTree tree;
    const yfw_datatree* const node = tree.data(child, wanted);
    walk_state_.clear_missing();
    if (walk_state_.environment().bind_subinterface_vlan_id &&
        std::strcmp(child->schema->name, kVlanIdentifierParent) == 0) {
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
  const lyd_node* entry_;
  const RequestTree::Wanted& wanted_;
  std::vector<Warning>& warnings_;
};

// Interfaces that only the operational data know answer their names as the others do.
void answer_names(WalkState& walk_state) {
  const OutputNode& top = walk_state.output().top();
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
    walk_state.enter_interface(name, index);
    answer_own_leaves(walk_state, nullptr);
  }
}

void walk_operational(WalkState& walk_state, const Data& operational, std::vector<Warning>& warnings) {
  const yfw_map_walker_fn walker = walk_state.environment().plugins->operational_root();
  if (walker == nullptr) {
    warnings.push_back({"", "no plug-in translates operational data"});
    return;
  }
  const lyd_node* top = nullptr;
  LY_LIST_FOR(operational.get(), top) {
    if (top->schema == nullptr) continue;
    RequestTree tree;
    const cerrno result = walker(walk_state.ctx(), tree.data(top), walk_state.output().root());
    if (result != 0) warnings.push_back({path_of(top), fmt::format("left out in part: {}", cerr_strerror(result))});
  }
  answer_names(walk_state);
}

}  // namespace

Data read_entries(const Environment& environment, const std::vector<const lyd_node*>& entries, const FetchSet& fetch,
                  const Data* operational, std::vector<Warning>& warnings) {
  WalkState walk_state(environment, operational == nullptr ? kReadConfig : kReadState);
  for (const lyd_node* const entry : entries) {
    if (fetch.everything()) {
      EntryWalk(walk_state, entry, nullptr, warnings).run();
      continue;
    }
    const std::unordered_set<const lysc_node*> asked = fetch.asked_of(entry_name(entry));
    if (asked.empty() && !fetch.asks_for_names()) continue;
    const RequestTree::Wanted wanted = [&asked](const lyd_node* node) { return FetchSet::is_wanted(node, asked); };
    EntryWalk(walk_state, entry, wanted, warnings).run();
  }
  if (operational != nullptr) walk_operational(walk_state, *operational, warnings);
  return to_data(walk_state.output(), warnings);
}

}  // namespace yfw
