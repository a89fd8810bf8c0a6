// The comparison of what was asked with what reads back, and the exceptions known by name.
#include "framework/edit/verify.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "framework/datastore/compare.h"
#include "framework/documents/documents.h"
#include "framework/tree/nodes.h"
#include "framework/vlan/causes.h"
#include "framework/vlan/trunk_text.h"
#include "yfw-host/compare.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"

namespace yfw {

namespace {

// The name of the node at the end of an instance path.
std::string_view last_name(std::string_view path) {
  // Only the entry of a leaf-list has a predicate there, and its value holds no slash.
  const std::string_view step = path.substr(path.rfind('/') + 1);
  const std::string_view name = step.substr(step.find(':') + 1);
  return name.substr(0, name.find('['));
}

// Leaves that the framework answers by itself say nothing about the translation. Neither do names of interfaces: an
// interface is there as long as anything of it is.
bool is_answered(std::string_view path) {
  return path.ends_with("]/name") || path.ends_with("/config/name") || path.ends_with("/config/type") ||
         path.ends_with("/config/index");
}

void collect_lost(const lyd_node* node, Operation outer, const Data& after, std::vector<Difference>& lost) {
  const Operation own = operation_of(node, outer);
  if (removes(own) || node->schema == nullptr) return;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    collect_lost(child, own, after, lost);
  }
  if (node->schema->nodetype != LYS_LEAFLIST) return;
  const std::string path = path_of(node);
  if (!is_trunk_entry(path)) return;
  lyd_node* found = nullptr;
  if (!after.empty() && lyd_find_path(after.get(), path.c_str(), 0, &found) == LY_SUCCESS) return;
  lost.push_back({.path = path, .asked = lyd_get_value(node)});
}

bool takes_the_place(Operation operation) {
  return removes(operation) || operation == Operation::replace;
}

// True when the request says something of the leaf: names it, or what it stands in as something to go or be replaced.
bool names(const Data& request, Operation default_operation, const std::string& path) {
  lyd_node* node = nullptr;
  if (request.empty()) return false;
  const LY_ERR result = lyd_find_path(request.get(), path.c_str(), 0, &node);
  if (result == LY_SUCCESS) return effective_operation(node, default_operation) != Operation::none;
  if (takes_the_place(default_operation)) return true;
  if (result != LY_EINCOMPLETE) return false;
  // A leaf to be removed may stand there without a value, which no path finds.
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (child->schema == nullptr && last_name(path) == LYD_NAME(child)) return true;
  }
  for (const lyd_node* each = node; each != nullptr; each = lyd_parent(each)) {
    if (takes_the_place(operation_of(each, Operation::none))) return true;
  }
  return false;
}

// The entries of the leaf-list of which one is at the path, without those that go.
std::vector<std::string> entries_at(const Data& data, const std::string& path) {
  std::vector<std::string> entries;
  lyd_node* entry = nullptr;
  if (data.empty() || lyd_find_path(data.get(), path.c_str(), 0, &entry) != LY_SUCCESS) return entries;
  const lyd_node* each = nullptr;
  LY_LIST_FOR(lyd_first_sibling(entry), each) {
    if (each->schema == entry->schema && !removes(operation_of(each, Operation::merge))) {
      entries.emplace_back(lyd_get_value(each));
    }
  }
  return entries;
}

std::string named_entries(const std::vector<Difference>& lost, const std::string& list) {
  constexpr std::size_t kNamed = 20;
  std::vector<std::string> names;
  for (const Difference& each : lost) {
    if (each.path.substr(0, each.path.rfind('[')) == list) names.push_back(each.asked);
  }
  const std::size_t named = std::min(names.size(), kNamed);
  std::string text = fmt::format("{}", fmt::join(names.begin(), names.begin() + static_cast<long>(named), ", "));
  if (names.size() > named) text += fmt::format(" and {} more", names.size() - named);
  return text;
}

std::string way_out(const std::vector<std::string>& entries) {
  const std::vector<std::string> ranges = runs_as_ranges(entries);
  const std::size_t needed = native_trunk_text(ranges).size();
  if (needed > kLongestTrunkText) {
    return fmt::format("with every run of ids written as a range it would still need {}: ask for fewer entries",
                       needed);
  }
  return fmt::format("write runs of ids as ranges: {} in the place of all entries takes {}", fmt::join(ranges, " "),
                     needed);
}

}  // namespace

std::vector<Difference> differences(const Data& request, Operation default_operation, const Outcome& outcome) {
  std::vector<Difference> found;
  for (const Delta& delta : compare(outcome.expected, outcome.after, canonical_text)) {
    if (is_answered(delta.path)) continue;
    Difference difference{.path = delta.path, .asked = delta.before, .found = delta.after};
    difference.is_asked = names(request, default_operation, delta.path);
    difference.advice = cause_of(outcome, difference);
    found.push_back(std::move(difference));
  }
  return found;
}

std::vector<Difference> lost_trunk_entries(const std::vector<Difference>& found) {
  std::vector<Difference> lost;
  std::copy_if(found.begin(), found.end(), std::back_inserter(lost), [](const Difference& difference) {
    return difference.found.empty() && is_trunk_entry(difference.path);
  });
  return lost;
}

std::vector<Difference> lost_trunk_entries(const EditDocument& document, const Data& after) {
  std::vector<Difference> lost;
  const lyd_node* top = nullptr;
  LY_LIST_FOR(document.tree.get(), top) {
    collect_lost(top, document.default_operation, after, lost);
  }
  return lost;
}

void refuse_lost_trunks(const std::vector<Difference>& lost, const Data& asked) {
  for (const Difference& each : lost) {
    const std::string path = each.path.substr(0, each.path.rfind('['));
    const std::vector<std::string> entries = entries_at(asked, each.path);
    const std::size_t needed = native_trunk_text(entries).size();
    if (needed <= kLongestTrunkText) continue;
    throw Refused({.tag = "invalid-value",
                   .path = path,
                   .message = fmt::format("'trunk-vlans' would need {} characters of native text, which has room for "
                                          "{}, and lose {}; {}",
                                          needed, kLongestTrunkText, named_entries(lost, path), way_out(entries)),
                   .bad_element = "trunk-vlans"});
  }
}

std::string_view label_of(const Difference& difference) {
  return difference.is_asked ? "asked" : "expected";
}

std::string value_or_nothing(const std::string& value) {
  return value.empty() ? "nothing" : value;
}

RpcError refusal_of(const std::vector<Difference>& found) {
  const Difference& first = found.front();
  const std::string name(last_name(first.path));
  std::string message = fmt::format("'{}' does not read back as asked: {} {}, reads back {}", name, label_of(first),
                                    value_or_nothing(first.asked), value_or_nothing(first.found));
  if (!first.advice.empty()) message += fmt::format(", why: {}", first.advice);
  if (found.size() > 1) message += fmt::format("; {} more", found.size() - 1);
  return {.tag = "operation-failed", .path = first.path, .message = message, .bad_element = name};
}

}  // namespace yfw
