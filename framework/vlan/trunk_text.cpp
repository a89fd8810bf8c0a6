// The one form of a text of trunk VLANs, and the room that one takes.
#include "framework/vlan/trunk_text.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"

namespace yfw {

namespace {

constexpr std::string_view kModule = "Vexnet-OS-l2-eth-infra-cfg";
constexpr std::string_view kType = "trunk-vlans";

bool is_trunk_text(const lysc_node* leaf) {
  // Only the parsed statement still knows the typedef by its name.
  const auto* const parsed = static_cast<const lysp_node*>(leaf->priv);
  if (parsed == nullptr || kModule != leaf->module->name) return false;
  if (leaf->nodetype == LYS_LEAF) return kType == reinterpret_cast<const lysp_node_leaf*>(parsed)->type.name;
  return leaf->nodetype == LYS_LEAFLIST && kType == reinterpret_cast<const lysp_node_leaflist*>(parsed)->type.name;
}

struct Range {
  int low;
  int high;
};

std::optional<int> id_of(std::string_view text) {
  int id = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return id;
}

std::optional<Range> range_of(std::string_view entry) {
  const std::size_t dots = entry.find("..");
  const std::optional<int> low = id_of(entry.substr(0, dots));
  const std::optional<int> high = dots == std::string_view::npos ? low : id_of(entry.substr(dots + 2));
  if (!low.has_value() || !high.has_value() || *low > *high) return std::nullopt;
  return Range{*low, *high};
}

}  // namespace

std::string canonical_text(const lyd_node* leaf) {
  const std::string_view stored = lyd_get_value(leaf);
  if (leaf->schema == nullptr || !is_trunk_text(leaf->schema)) return std::string(stored);
  std::string text;
  bool in_number = false;
  for (std::size_t i = 0; i < stored.size(); ++i) {
    const char c = stored[i];
    if (c == ' ') continue;
    const bool digit = c >= '0' && c <= '9';
    const bool digit_follows = i + 1 < stored.size() && stored[i + 1] >= '0' && stored[i + 1] <= '9';
    if (digit && !in_number && c == '0' && digit_follows) continue;
    in_number = digit;
    text += c;
  }
  return text;
}

void keep_stored_texts(lyd_node* changed, const lyd_node* stored) {
  if (changed->schema == nullptr) return;
  if (changed->schema->nodetype == LYS_LEAF) {
    if (is_trunk_text(changed->schema) && canonical_text(changed) == canonical_text(stored)) {
      lyd_change_term(changed, lyd_get_value(stored));
    }
    return;
  }
  lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(changed), child) {
    const lyd_node* const twin = counterpart_among(lyd_child(stored), child);
    if (twin != nullptr) keep_stored_texts(child, twin);
  }
}

std::string native_trunk_text(const std::vector<std::string>& entries) {
  std::string text;
  for (const std::string_view entry : entries) {
    const std::size_t dots = entry.find("..");
    if (!text.empty()) text += ',';
    text += entry.substr(0, dots);
    if (dots != std::string_view::npos) text.append(1, '-').append(entry.substr(dots + 2));
  }
  return text;
}

bool is_trunk_entry(std::string_view path) {
#define LIST_AS_TEXT(parent, list, native_parent, native) \
  if (path.find(parent "/" list "[") != std::string_view::npos) return true;
#include "framework/vlan/vlan_rules.def"
  return false;
}

namespace {

bool is_trunk_list(const lyd_node* node) {
#define LIST_AS_TEXT(parent, list, native_parent, native) \
  if (named(node, list) && named(lyd_parent(node), parent)) return true;
#include "framework/vlan/vlan_rules.def"
  return false;
}

}  // namespace

std::size_t count_trunk_entries(const lyd_node* node) {
  if ((node->schema->flags & LYS_CONFIG_R) != 0) return 0;
  if (is_term(node->schema)) return is_trunk_list(node) ? 1 : 0;
  std::size_t count = 0;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (!named(child, "subinterfaces")) count += count_trunk_entries(child);
  }
  return count;
}

bool is_trunk_leaf(const lysc_node* leaf) {
#define LIST_AS_TEXT(above, list, native_above, native) \
  if (std::string_view(native) == leaf->name && std::string_view(native_above) == leaf->parent->name) return true;
#include "framework/vlan/vlan_rules.def"
  return false;
}

const lyd_node* trunk_leaf_below(const lyd_node* container) {
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(container), child) {
    if (is_term(child->schema) && is_trunk_leaf(child->schema)) return child;
    if (const lyd_node* const found = trunk_leaf_below(child)) return found;
  }
  return nullptr;
}

bool is_trunk_read_whole(const lyd_node* native_leaf, const lyd_node* config) {
  if (!is_trunk_leaf(native_leaf->schema)) return false;
  std::vector<std::string> entries;
  const lyd_node* entry = nullptr;
  LY_LIST_FOR(lyd_child(config), entry) {
    if (is_trunk_list(entry)) entries.emplace_back(lyd_get_value(entry));
  }
  return canonical_text(native_leaf) == native_trunk_text(entries);
}

std::vector<std::string> runs_as_ranges(const std::vector<std::string>& entries) {
  std::vector<Range> ranges;
  std::vector<std::string> result;
  std::vector<std::string> none;
  for (const std::string& entry : entries) {
    const std::optional<Range> range = range_of(entry);
    if (range.has_value()) {
      ranges.push_back(*range);
    } else {
      none.push_back(entry);
    }
  }
  std::sort(ranges.begin(), ranges.end(), [](const Range& a, const Range& b) { return a.low < b.low; });
  for (std::size_t i = 0; i < ranges.size();) {
    Range run = ranges[i];
    while (++i < ranges.size() && ranges[i].low <= run.high + 1) run.high = std::max(run.high, ranges[i].high);
    result.push_back(run.low == run.high ? fmt::format("{}", run.low) : fmt::format("{}..{}", run.low, run.high));
  }
  // A range upside down is a range of no ids; a device may hold one all the same.
  result.insert(result.end(), none.begin(), none.end());
  return result;
}

}  // namespace yfw
