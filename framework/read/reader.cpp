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
    yfw_datatree* const whole = lookups_.data(entry_);
    walk_state_.set_native_entry(whole);
    answer_own_leaves(walk_state_, whole);
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
        walk_state_.note(path_of(leaf) + " is mapped by nobody");
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
  RequestTree lookups_;
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

bool MappedLeaves::is_mapped(const Environment& environment, const lysc_node* leaf) {
  const auto known = known_.find(leaf);
  if (known != known_.end()) return known->second;
  std::vector<const lysc_node*> chain;
  for (const lysc_node* each = leaf; each != nullptr; each = each->parent) {
    if ((each->nodetype & (LYS_CHOICE | LYS_CASE)) == 0) chain.push_back(each);
  }
  // A read of this leaf alone: a plug-in that does not map it refuses whatever the request.
  std::vector<yfw_datatree> nodes(chain.size());
  for (std::size_t i = 0; i < chain.size(); ++i) {
    nodes[i].tag = chain[i]->name;
    nodes[i].ns = namespace_of(chain[i]);
    if (i == 0) continue;
    constexpr uint8_t kHasSubtrees = 0x40;
    nodes[i].subtrees = &nodes[i - 1];
    nodes[i].subtree_count = 1;
    nodes[i].node_flags = kHasSubtrees;
  }
  Environment silent = environment;
  silent.trace = nullptr;
  WalkState walk_state(silent, kReadState);
  const cerrno result =
      environment.plugins->openconfig_root()(walk_state.ctx(), &nodes.back(), walk_state.output().root());
  return known_.emplace(leaf, result != CERR_UNSUPPORTED).first->second;
}

namespace {

bool is_content_match(const lyd_node* node) {
  const char* const value = lyd_get_value(node);
  return value != nullptr && *value != '\0';
}

bool prune(const Environment& environment, MappedLeaves& leaves, lyd_node* node, std::vector<std::string>& pruned) {
  const lysc_node* const schema = schema_of(node);
  const Claim claim = schema == nullptr ? Claim::nobody : claim_of(schema);
  const bool mapped = claim == Claim::framework ||
                      (claim == Claim::plugin && (!is_term(schema) || leaves.is_mapped(environment, schema)));
  if (!mapped) {
    pruned.push_back(path_of(node));
    lyd_free_tree(node);
    return false;
  }
  const bool opaque = node->schema == nullptr;
  lyd_node* child = opaque ? reinterpret_cast<lyd_node_opaq*>(node)->child : lyd_child(node);
  if (child == nullptr) return true;
  bool asks = false;
  bool only_matches = true;
  bool loses = false;
  bool loses_match = false;
  while (child != nullptr) {
    lyd_node* const next = child->next;
    const bool matches = is_content_match(child);
    const bool kept = prune(environment, leaves, child, pruned);
    asks = asks || kept;
    only_matches = only_matches && (!kept || matches);
    loses = loses || !kept;
    loses_match = loses_match || (!kept && matches);
    child = next;
  }
  // What is left must not select more than was asked for: values to match would select all beside them, and a value
  // that nobody can tell matches nothing.
  const bool kept = asks && !loses_match && !(loses && only_matches);
  if (!kept) lyd_free_tree(node);
  return kept;
}

}  // namespace

bool prune_filter(const Environment& environment, MappedLeaves& leaves, Data& filter, std::vector<Warning>& warnings) {
  if (filter.empty()) return true;
  bool asks = false;
  std::vector<std::string> pruned;
  lyd_node* node = filter.release();
  Data kept;
  while (node != nullptr) {
    lyd_node* const next = node->next;
    lyd_unlink_tree(node);
    if (prune(environment, leaves, node, pruned)) {
      lyd_insert_sibling(kept.get(), node, kept.out());
      asks = true;
    }
    node = next;
  }
  filter = std::move(kept);
  if (!pruned.empty()) {
    const std::string others = pruned.size() == 1 ? "" : fmt::format(" (and {} more)", pruned.size() - 1);
    warnings.push_back({pruned.front(), "not mapped, left out of the filter" + others});
  }
  return asks;
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

namespace {

// The node that validation complained about last, below or at `data`.
lyd_node* culprit(const ly_ctx* models, const Data& data, std::string& why) {
  const Complaint complaint = last_complaint(models);
  why = complaint.message;
  lyd_node* found = nullptr;
  if (complaint.path.empty() || lyd_find_path(data.get(), complaint.path.c_str(), 0, &found) != LY_SUCCESS) {
    return nullptr;
  }
  // An entry without its key would be none.
  const bool is_key = found->schema != nullptr && lysc_is_key(found->schema);
  return is_key ? lyd_parent(found) : found;
}

void make_tree_valid(const Environment& environment, Data& data, std::vector<Warning>& warnings) {
  while (!data.empty()) {
    ly_err_clean(const_cast<ly_ctx*>(environment.models), nullptr);
    if (environment.validator->validate(data)) return;
    std::string why;
    lyd_node* const node = culprit(environment.models, data, why);
    if (node == nullptr) {
      warnings.push_back({"", fmt::format("the answer is not valid: {}", why)});
      return;
    }
    warnings.push_back({path_of(node), fmt::format("left out, not valid in OpenConfig: {}", why)});
    if (node->parent == nullptr) {
      data.reset();
    } else {
      lyd_free_tree(node);
    }
  }
}

}  // namespace

namespace {

void make_configuration_valid(const Environment& environment, Data& data, std::vector<Warning>& warnings) {
  if (environment.validator->reach(data.get()) == Reach::nowhere) return;
  Data whole = data.clone();
  ly_err_clean(const_cast<ly_ctx*>(environment.models), nullptr);
  if (environment.validator->validate(whole)) {
    data = std::move(whole);
    return;
  }
  // One interface after the other, so that many faults do not mean as many passes over everything.
  lyd_node* const root = data.get();
  lyd_node* entry = lyd_child(root);
  Data valid;
  while (entry != nullptr) {
    lyd_node* const next = entry->next;
    lyd_node* alone = nullptr;
    lyd_dup_single(root, nullptr, 0, &alone);
    lyd_unlink_tree(entry);
    lyd_insert_child(alone, entry);
    Data single(alone);
    make_tree_valid(environment, single, warnings);
    lyd_node* const kept = single.empty() ? nullptr : lyd_child(single.get());
    if (valid.empty()) {
      valid = std::move(single);
    } else if (kept != nullptr) {
      lyd_unlink_tree(kept);
      lyd_insert_child(valid.get(), kept);
    }
    entry = next;
  }
  data = std::move(valid);
}

}  // namespace

void make_valid(const Environment& environment, Data& data, std::vector<Warning>& warnings) {
  if (data.empty()) return;
  // State is what the device tells; only configuration has to be complete.
  Data state = holds_state(data) ? take_state(data) : Data();
  if (!data.empty()) make_configuration_valid(environment, data, warnings);
  strip_defaults(data);
  if (!state.empty()) lyd_merge_siblings(data.out(), state.release(), LYD_MERGE_DESTRUCT);
}

}  // namespace yfw
