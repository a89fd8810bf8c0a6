// Values that are right one by one and wrong together: ranges upside down, overlapping trunks, tags without an id.
#include "framework/vlan/values.h"
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <optional>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/rules.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

// The leaves of a container that bound a range.
struct Bounds {
  const char* low;
  const char* high;
};

constexpr Bounds kBounds[] = {
#define RANGE(low, high) {low, high},
#include "framework/vlan/vlan_rules.def"
};

std::optional<int> number(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// The ids of a trunk entry: one, or a range "low..high".
struct Ids {
  int low;
  int high;
};

std::optional<Ids> ids_of(std::string_view entry) {
  const std::size_t dots = entry.find("..");
  const std::optional<int> low = number(entry.substr(0, dots));
  const std::optional<int> high = dots == std::string_view::npos ? low : number(entry.substr(dots + 2));
  if (!low.has_value() || !high.has_value()) return std::nullopt;
  return Ids{*low, *high};
}

[[noreturn]] void refuse(const lyd_node* node, std::string message) {
  throw Refused(
      {.tag = "invalid-value", .path = path_of(node), .message = std::move(message), .bad_element = LYD_NAME(node)});
}

bool wants_tag(std::string_view action) {
#define TAGGED_ACTION(name) \
  if (action == name) return true;
#include "framework/vlan/vlan_rules.def"
  return false;
}

class Check {
 public:
  // Without `resulting`, what is checked is all that there is.
  Check(const Data* resulting, std::vector<Warning>& warnings) : resulting_(resulting), warnings_(warnings) {}

  void check(const lyd_node* node, Operation outer) {
    const Operation own = operation_of(node, outer);
    if (node->schema == nullptr || is_term(node->schema) || removes(own)) return;
    // All values that anybody sets stand there.
    if (named(node, "config")) {
      for (const Bounds& bounds : kBounds) check_bounds(node, bounds, own);
      check_trunks(node, own);
      check_tag(node, own);
      return;
    }
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(node), child) {
      check(child, own);
    }
  }

 private:
  const lyd_node* resulting(const lyd_node* node) const {
    if (resulting_ == nullptr) return node;
    return counterpart(*resulting_, node);
  }

  // The leaf of this name, unless the operation none leaves it alone.
  static const lyd_node* asked(const lyd_node* container, const char* name, Operation own) {
    const lyd_node* const leaf = child_named(container, name);
    return leaf == nullptr || operation_of(leaf, own) == Operation::none ? nullptr : leaf;
  }

  void check_bounds(const lyd_node* container, const Bounds& bounds, Operation own) const {
    const lyd_node* const asked_low = asked(container, bounds.low, own);
    const lyd_node* const asked_high = asked(container, bounds.high, own);
    if (asked_low == nullptr && asked_high == nullptr) return;
    const lyd_node* const there = resulting(container);
    const lyd_node* const low = there == nullptr ? nullptr : child_named(there, bounds.low);
    const lyd_node* const high = there == nullptr ? nullptr : child_named(there, bounds.high);
    if (low == nullptr || high == nullptr) return;
    const std::string_view low_text = lyd_get_value(low);
    const std::string_view high_text = lyd_get_value(high);
    if (number(low_text).value_or(0) <= number(high_text).value_or(0)) return;
    refuse(asked_high != nullptr ? asked_high : asked_low,
           fmt::format("the range from '{}' {} to '{}' {} is upside down: the low id must not be above the high one",
                       bounds.low, low_text, bounds.high, high_text));
  }

  void check_trunks(const lyd_node* config, Operation own) {
    std::vector<std::pair<Ids, const lyd_node*>> entries;
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(config), child) {
      if (std::strcmp(LYD_NAME(child), "trunk-vlans") != 0 || removes(operation_of(child, own))) continue;
      const std::optional<Ids> ids = ids_of(lyd_get_value(child));
      if (!ids.has_value()) continue;
      if (ids->low > ids->high) {
        refuse(child, fmt::format("'trunk-vlans' has the range {} upside down: ask for {}..{}", lyd_get_value(child),
                                  ids->high, ids->low));
      }
      entries.emplace_back(*ids, child);
    }
    std::sort(entries.begin(), entries.end(),
              [](const auto& left, const auto& right) { return left.first.low < right.first.low; });
    for (std::size_t i = 1; i < entries.size(); ++i) {
      if (entries[i].first.low > entries[i - 1].first.high) continue;
      warnings_.push_back({path_of(entries[i].second), fmt::format("overlaps with {}, both are kept as they are",
                                                                   lyd_get_value(entries[i - 1].second))});
    }
  }

  static bool says(const lyd_node* config, const char* leaf) {
    const lyd_node* const child = child_named(config, leaf);
    return child != nullptr && !removes(operation_of(child, Operation::merge));
  }

  // The actions that put on a tag, without the id of one.
  void check_tag(const lyd_node* config, Operation own) {
    if (!named(config, "config") || !named(lyd_parent(config), "ingress-mapping")) return;
    bool changes = false;
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(config), child) {
      changes = changes || operation_of(child, own) != Operation::none;
    }
    const lyd_node* const there = changes ? resulting(config) : nullptr;
    if (there == nullptr || says(there, "vlan-id") || !says(there, "vlan-stack-action")) return;
    const lyd_node* const leaf = child_named(there, "vlan-stack-action");
    const std::string_view value = lyd_get_value(leaf);
    const std::string_view action = value.substr(value.find(':') + 1);
    if (!wants_tag(action)) return;
    warnings_.push_back(
        {path_of(leaf), fmt::format("{} without 'vlan-id': no id of the tag to put on is written natively, and none "
                                    "reads back unless the device holds one already",
                                    action)});
  }

  const Data* resulting_;
  std::vector<Warning>& warnings_;
};

// A match of several forms.
bool holds_two_forms(const lyd_node* node) {
  if (is_term(node->schema)) return false;
  if (is_whole_container(node))
    return named(node, "match") && lyd_child(node) != nullptr && lyd_child(node)->next != nullptr;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (holds_two_forms(child)) return true;
  }
  return false;
}

}  // namespace

bool is_writable(const lyd_node* node) {
  if (holds_two_forms(node)) return false;
  std::vector<Warning> ignored;
  try {
    Check(nullptr, ignored).check(node, Operation::merge);
  } catch (const Refused&) {
    return false;
  }
  return true;
}

void check_values(const Data& edit, Operation default_operation, const Data& resulting,
                  std::vector<Warning>& warnings) {
  Check check(&resulting, warnings);
  const lyd_node* top = nullptr;
  LY_LIST_FOR(edit.get(), top) {
    check.check(top, default_operation);
  }
}

}  // namespace yfw
