// The plug-in asked about single leaves.
#include "framework/read/mapped_leaves.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <string>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/walk/abi.h"
#include "framework/walk/interfaces_walker.h"
#include "framework/walk/walk_state.h"
#include "yfw/yfw_map.h"

namespace yfw {

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
    nodes[i].subtrees = &nodes[i - 1];
    nodes[i].subtree_count = 1;
    nodes[i].node_flags = abi::kHasSubtrees;
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

}  // namespace yfw
