// Where foreign subtrees stand, and which of them go when an entry changes.
#include "framework/tree/foreign.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <stdexcept>

#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

constexpr std::size_t kMostNamespaces = 3;

lyd_node* copy_of(const lyd_node* node, uint32_t options) {
  lyd_node* copy = nullptr;
  if (node != nullptr && lyd_dup_single(node, nullptr, LYD_DUP_NO_META | options, &copy) != LY_SUCCESS) {
    throw std::runtime_error("a node cannot be copied");
  }
  return copy;
}

lyd_node* topmost(lyd_node* node) {
  while (node != nullptr && node->parent != nullptr) node = &node->parent->node;
  return node;
}

// The outermost node that a subtree stands in and `tree` does not have. Containers without a meaning of their own do
// not count: they are made again for what they hold.
const lyd_node* missing(const Data& tree, const ForeignSubtree& subtree) {
  const lyd_node* found = nullptr;
  for (const lyd_node* each = subtree.parent(); each != nullptr; each = lyd_parent(each)) {
    if (counterpart(tree, each) != nullptr) break;
    if (!is_plain_container(each)) found = each;
  }
  return found;
}

// "2 subtrees of models that are not loaded", and whose they are: "(urn:a, urn:b, urn:c and 4 more)".
std::string some_of(const std::vector<const ForeignSubtree*>& subtrees, std::string_view verb = "") {
  std::vector<std::string_view> namespaces;
  std::unordered_map<std::string_view, bool> seen;
  for (const ForeignSubtree* const each : subtrees) {
    if (seen.emplace(each->ns(), true).second) namespaces.emplace_back(each->ns());
  }
  const std::size_t more = namespaces.size() - std::min(namespaces.size(), kMostNamespaces);
  namespaces.resize(namespaces.size() - more);
  return fmt::format("{} of models that are not loaded{} ({}{})",
                     subtrees.size() == 1 ? "1 subtree" : fmt::format("{} subtrees", subtrees.size()), verb,
                     fmt::join(namespaces, ", "), more == 0 ? "" : fmt::format(" and {} more", more));
}

}  // namespace

ForeignSubtree::ForeignSubtree(const char* ns, const char* name, const char* text, const lyd_node* parent,
                               const lyd_node* before)
    : ns_(ns), name_(name), text_(text), before_(copy_of(before, 0)) {
  lyd_node* const copy = copy_of(parent, LYD_DUP_WITH_PARENTS);
  place_.reset(topmost(copy));
  parent_ = copy;
}

std::string ForeignSubtree::path() const {
  const bool json = text_.starts_with('"');
  return fmt::format("{}/{}{}", path_of(parent_), json ? fmt::format("{}:", ns_) : "", name_);
}

void ForeignSubtree::set_before(const lyd_node* sibling) {
  before_.reset(copy_of(sibling, 0));
}

std::string_view ForeignSubtree::entry() const {
  const lyd_node* const top = place_.get();
  const bool is_native = top != nullptr && std::string_view(top->schema->module->name) == kNativeInterfaceModule;
  const lyd_node* const entry = is_native ? lyd_child(top) : nullptr;
  return entry == nullptr ? "" : entry_name(entry);
}

ForeignSubtrees::ForeignSubtrees(std::vector<ForeignSubtree> subtrees, Format format)
    : subtrees_(std::move(subtrees)), format_(format) {
  index();
}

void ForeignSubtrees::index() {
  by_entry_.clear();
  for (std::size_t i = 0; i < subtrees_.size(); ++i) {
    const std::string_view entry = subtrees_[i].entry();
    if (!entry.empty()) by_entry_[std::string(entry)].push_back(i);
  }
}

std::vector<Foreign> ForeignSubtrees::going(const std::vector<std::string>& entries, const Data& then,
                                            std::vector<Warning>& warnings) const {
  std::vector<Foreign> gone;
  for (const std::string& entry : entries) {
    const auto held = by_entry_.find(entry);
    if (held == by_entry_.end()) continue;
    std::vector<std::pair<std::string, std::vector<const ForeignSubtree*>>> by_node;
    for (const std::size_t i : held->second) {
      const lyd_node* const node = missing(then, subtrees_[i]);
      if (node == nullptr) continue;
      gone.push_back(subtrees_[i].described());
      std::string path = path_of(node);
      if (by_node.empty() || by_node.back().first != path) by_node.emplace_back(std::move(path), 0);
      by_node.back().second.push_back(&subtrees_[i]);
    }
    for (auto& [path, subtrees] : by_node) {
      warnings.push_back({path, fmt::format("goes with it: {}", some_of(subtrees))});
    }
  }
  return gone;
}

void ForeignSubtrees::forget(const std::vector<std::string>& entries, const Data& now) {
  std::vector<bool> goes(subtrees_.size());
  for (const std::string& entry : entries) {
    const auto held = by_entry_.find(entry);
    if (held == by_entry_.end()) continue;
    for (const std::size_t i : held->second) goes[i] = missing(now, subtrees_[i]) != nullptr;
  }
  if (std::find(goes.begin(), goes.end(), true) == goes.end()) return;
  std::vector<ForeignSubtree> stay;
  for (std::size_t i = 0; i < subtrees_.size(); ++i) {
    if (!goes[i]) stay.push_back(std::move(subtrees_[i]));
  }
  subtrees_ = std::move(stay);
  index();
}

void ForeignSubtrees::follow(const std::unordered_map<std::string_view, const lyd_node*>& stays) {
  for (ForeignSubtree& each : subtrees_) {
    const lyd_node* const before = each.before();
    if (before == nullptr || !is_interface_entry(before)) continue;
    const auto found = stays.find(entry_name(before));
    if (found != stays.end()) each.set_before(found->second);
  }
}

Warning warning_of(const std::vector<ForeignSubtree>& subtrees, const std::string& document) {
  std::vector<const ForeignSubtree*> pointers;
  pointers.reserve(subtrees.size());
  for (const ForeignSubtree& each : subtrees) pointers.push_back(&each);
  return {"", fmt::format(
                  "{}: {}", document,
                  some_of(pointers, pointers.size() == 1 ? " is carried along unread" : " are carried along unread"))};
}

}  // namespace yfw
