// The table of OpenConfig leaves and what each of their types takes.
#include "property/model/leaves.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <optional>

#include "property/model/request.h"

namespace property {

namespace {

std::vector<Leaf> make_leaves() {
  std::vector<Leaf> rows{
      {At::interface, "config/name", Type::own_name},
      {At::interface, "config/type", Type::own_type},
      {At::interface, "config/description", Type::text},
      {At::interface, "config/mtu", Type::mtu},
      {At::interface, "config/enabled", Type::boolean},
      {At::interface, "config/tpid", Type::tpid, false, false},
      {At::interface, "ethernet/switched-vlan/config/interface-mode", Type::mode},
      {At::interface, "ethernet/switched-vlan/config/native-vlan", Type::vlan_id},
      {At::interface, "ethernet/switched-vlan/config/access-vlan", Type::vlan_id},
      {At::interface, "ethernet/switched-vlan/config/trunk-vlans", Type::trunk_entry, true},
      {At::interface, "aggregation/switched-vlan/config/interface-mode", Type::mode},
      {At::interface, "aggregation/switched-vlan/config/native-vlan", Type::vlan_id},
      {At::interface, "aggregation/switched-vlan/config/access-vlan", Type::vlan_id},
      {At::interface, "aggregation/switched-vlan/config/trunk-vlans", Type::trunk_entry, true},
      {At::subinterface, "config/index", Type::own_index},
      {At::subinterface, "config/description", Type::text},
      {At::subinterface, "config/enabled", Type::boolean},
      {At::subinterface, "vlan/config/vlan-id", Type::inline_id, false, false},
      {At::subinterface, "vlan/match/single-tagged/config/vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/single-tagged-list/config/vlan-ids", Type::vlan_id, true},
      {At::subinterface, "vlan/match/single-tagged-range/config/low-vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/single-tagged-range/config/high-vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/double-tagged/config/outer-vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/double-tagged/config/inner-vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/double-tagged-inner-list/config/outer-vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/double-tagged-inner-list/config/inner-vlan-ids", Type::vlan_id, true},
      {At::subinterface, "vlan/match/double-tagged-outer-list/config/outer-vlan-ids", Type::vlan_id, true},
      {At::subinterface, "vlan/match/double-tagged-outer-list/config/inner-vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/double-tagged-inner-range/config/outer-vlan-id", Type::vlan_id, true},
      {At::subinterface, "vlan/match/double-tagged-inner-range/config/inner-low-vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/double-tagged-inner-range/config/inner-high-vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/double-tagged-outer-range/config/outer-low-vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/double-tagged-outer-range/config/outer-high-vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/double-tagged-outer-range/config/inner-vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/match/double-tagged-inner-outer-range/config/outer-low-vlan-id", Type::vlan_id, false,
       false},
      {At::subinterface, "vlan/match/double-tagged-inner-outer-range/config/inner-low-vlan-id", Type::vlan_id, false,
       false},
      {At::subinterface, "vlan/ingress-mapping/config/vlan-stack-action", Type::action},
      {At::subinterface, "vlan/ingress-mapping/config/vlan-id", Type::vlan_id},
      {At::subinterface, "vlan/ingress-mapping/config/tpid", Type::tpid},
      {At::subinterface, "vlan/egress-mapping/config/vlan-stack-action", Type::action, false, false},
      {At::subinterface, "vlan/egress-mapping/config/vlan-id", Type::vlan_id, false, false},
  };
  std::sort(rows.begin(), rows.end(), [](const Leaf& left, const Leaf& right) { return left.path < right.path; });
  return rows;
}

std::optional<unsigned> number(std::string_view text) {
  if (text.empty() || text.size() > 5 || text.front() == '0') return std::nullopt;
  unsigned value = 0;
  for (const char c : text) {
    if (std::isdigit(static_cast<unsigned char>(c)) == 0) return std::nullopt;
    value = value * 10 + static_cast<unsigned>(c - '0');
  }
  return value;
}

bool is_id(std::string_view text) {
  const std::optional<unsigned> value = number(text);
  return value.has_value() && *value <= 4094;
}

bool is_pair(std::string_view text, std::string_view separator) {
  const std::size_t cut = text.find(separator);
  return cut != std::string_view::npos && is_id(text.substr(0, cut)) && is_id(text.substr(cut + separator.size()));
}

bool has_prefix(const std::string& value) {
  return value.find(':') != std::string::npos;
}

}  // namespace

const std::vector<Leaf>& leaves() {
  static const std::vector<Leaf> rows = make_leaves();
  return rows;
}

const Leaf* find_leaf(std::string_view path) {
  const auto found = std::lower_bound(leaves().begin(), leaves().end(), path,
                                      [](const Leaf& leaf, std::string_view wanted) { return leaf.path < wanted; });
  return found != leaves().end() && found->path == path ? &*found : nullptr;
}

bool is_term(const std::string& path) {
  return find_leaf(path) != nullptr;
}

bool is_leaf_list(const std::string& path) {
  const Leaf* const leaf = find_leaf(path);
  return leaf != nullptr && leaf->is_list;
}

std::string plain_value(const Leaf& leaf, const std::string& value) {
  if (leaf.type != Type::mode && leaf.type != Type::action && leaf.type != Type::tpid && leaf.type != Type::own_type) {
    return value;
  }
  return value.substr(value.find(':') + 1);
}

bool is_valid(const Leaf& leaf, const std::string& value) {
  const std::string plain = plain_value(leaf, value);
  const bool own_prefix = value.starts_with("oc-vlan-types:");
  switch (leaf.type) {
    case Type::vlan_id:
      return is_id(value);
    case Type::trunk_entry:
      return is_id(value) || is_pair(value, "..");
    case Type::inline_id:
      return is_id(value) || is_pair(value, ".");
    case Type::mode:
      return (plain == "ACCESS" || plain == "TRUNK") && (own_prefix || !has_prefix(value));
    case Type::action:
      return (plain == "PUSH" || plain == "POP" || plain == "SWAP") && (own_prefix || !has_prefix(value));
    case Type::tpid:
      return own_prefix && (plain == "TPID_0X8100" || plain == "TPID_0X88A8");
    case Type::boolean:
      return value == "true" || value == "false";
    case Type::mtu:
      return number(value).value_or(0) >= 64 && number(value) <= 65535U;
    case Type::text:
    case Type::own_index:
    case Type::own_name:
    case Type::own_type:
      break;
  }
  return true;
}

bool is_inverted(const std::string& entry) {
  const std::size_t cut = entry.find("..");
  return is_pair(entry, "..") && number(entry.substr(0, cut)) > number(entry.substr(cut + 2));
}

std::string json_value(const std::string& path, const std::string& value) {
  if (value.empty()) return "[null]";
  const Leaf* const leaf = find_leaf(path);
  const bool is_number = std::all_of(value.begin(), value.end(), [](unsigned char c) { return std::isdigit(c) != 0; });
  const bool is_boolean = leaf->type == Type::boolean && (value == "true" || value == "false");
  if (is_boolean || (is_number && leaf->type != Type::text)) return value;
  // JSON names modules where XML has prefixes.
  for (const Prefix& prefix : kPrefixes) {
    const std::string head = std::string(prefix.prefix) + ":";
    if (value.starts_with(head)) return fmt::format("\"{}:{}\"", prefix.module, value.substr(head.size()));
  }
  return fmt::format("\"{}\"", value);
}

}  // namespace property
