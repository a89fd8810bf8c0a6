// What makes a reading invalid found, one complaint after the other.
#include "framework/read/valid.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <string>
#include <utility>
#include <vector>

#include "framework/datastore/validate.h"
#include "framework/tree/nodes.h"
#include "framework/tree/prune.h"
#include "framework/tree/schema.h"

namespace yfw {

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

namespace {

bool is_state(const lyd_node* node) {
  return (node->schema->flags & LYS_CONFIG_R) != 0;
}

// The topmost nodes of state, and what they stand in.
void collect_state(lyd_node* node, std::vector<std::pair<lyd_node*, lyd_node*>>& state) {
  lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (is_state(child)) {
      state.emplace_back(node, child);
    } else {
      collect_state(child, state);
    }
  }
}

}  // namespace

// State stands aside while configuration is looked at.
Reach reach_of_configuration(const Environment& environment, Data& data) {
  Reach reach = environment.validator->reach(data.get());
  if (reach == Reach::nowhere || data.empty()) return reach;
  std::vector<std::pair<lyd_node*, lyd_node*>> state;
  collect_state(data.get(), state);
  if (state.empty()) return reach;
  for (const auto& [parent, node] : state) lyd_unlink_tree(node);
  reach = environment.validator->reach(data.get());
  for (const auto& [parent, node] : state) lyd_insert_child(parent, node);
  return reach;
}

void make_valid(const Environment& environment, Data& data, std::vector<Warning>& warnings) {
  if (data.empty()) return;
  // State is what the device tells; only configuration has to be complete.
  Data state = holds_state(data) ? take_state(data) : Data();
  if (!data.empty()) make_configuration_valid(environment, data, warnings);
  strip_defaults(data);
  if (!state.empty()) lyd_merge_siblings(data.out(), state.release(), LYD_MERGE_DESTRUCT);
}

}  // namespace yfw
