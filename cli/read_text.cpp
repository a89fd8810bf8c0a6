// The answer to a read as a table: what VLANs each interface and sub-interface takes, a line each.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands.h"
#include "cli/message.h"

namespace ocvlan {
namespace {

constexpr std::size_t kScreenWidth = 100;
constexpr std::size_t kGap = 2;

const lyd_node* child(const lyd_node* parent, std::string_view name) {
  const lyd_node* node = nullptr;
  LY_LIST_FOR(parent == nullptr ? nullptr : lyd_child(parent), node) {
    if (node->schema != nullptr && name == node->schema->name) return node;
  }
  return nullptr;
}

// Values of a leaf or leaf-list, joined; identities go without their module. Empty when there is none.
std::string value(const lyd_node* parent, std::string_view name) {
  std::string text;
  const lyd_node* node = nullptr;
  LY_LIST_FOR(parent == nullptr ? nullptr : lyd_child(parent), node) {
    if (node->schema == nullptr || name != node->schema->name) continue;
    const std::string_view whole = lyd_get_value(node);
    if (!text.empty()) text += ',';
    text += whole.substr(whole.find(':') + 1);
  }
  return printable(text);
}

struct MatchForm {
  const char* container;
  const char* words;  // leaves of the form in braces
};

constexpr std::array kMatchForms{
    MatchForm{"single-tagged", "dot1q {vlan-id}"},
    MatchForm{"single-tagged-list", "list {vlan-ids}"},
    MatchForm{"single-tagged-range", "dot1q {low-vlan-id}..{high-vlan-id}"},
    MatchForm{"double-tagged", "dot1ad {outer-vlan-id} / dot1q {inner-vlan-id}"},
    MatchForm{"double-tagged-inner-list", "dot1ad {outer-vlan-id} / list {inner-vlan-ids}"},
    MatchForm{"double-tagged-outer-list", "list {outer-vlan-ids} / dot1q {inner-vlan-id}"},
    MatchForm{"double-tagged-inner-range", "dot1ad {outer-vlan-id} / dot1q {inner-low-vlan-id}..{inner-high-vlan-id}"},
    MatchForm{"double-tagged-outer-range", "dot1ad {outer-low-vlan-id}..{outer-high-vlan-id} / dot1q {inner-vlan-id}"},
};

// The words with values in them, "?" for a leaf that is not there; empty when no leaf of the form is.
std::string filled(std::string_view words, const lyd_node* leaves) {
  if (leaves == nullptr || lyd_child(leaves) == nullptr) return "";
  std::string text;
  while (!words.empty()) {
    const std::size_t open = words.find('{');
    text += words.substr(0, open);
    if (open == std::string_view::npos) break;
    const std::size_t close = words.find('}', open);
    const std::string found = value(leaves, words.substr(open + 1, close - open - 1));
    text += found.empty() ? "?" : found;
    words.remove_prefix(close + 1);
  }
  return text;
}

void add(std::string& text, std::string_view separator, std::string_view part) {
  if (part.empty()) return;
  if (!text.empty()) text += separator;
  text += part;
}

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char letter) { return std::tolower(letter); });
  return text;
}

std::string ethertype(const std::string& tpid) {
  if (tpid == "TPID_0X8100") return "dot1q";
  if (tpid == "TPID_0X88A8") return "dot1ad";
  return lower(tpid.substr(tpid.find('_') + 1));
}

// `side` is "config" or "state", here and below.
std::string rewrite_words(const lyd_node* mapping, const char* side) {
  const lyd_node* const leaves = child(mapping, side);
  std::string text = lower(value(leaves, "vlan-stack-action"));
  add(text, " ", ethertype(value(leaves, "tpid")));
  add(text, " ", value(leaves, "vlan-id"));
  return text;
}

std::string subinterface_words(const lyd_node* subinterface, const char* side) {
  const lyd_node* const vlan = child(subinterface, "vlan");
  const lyd_node* const match = child(vlan, "match");
  std::string text = filled("vlan {vlan-id}", child(vlan, side));
  for (const MatchForm& form : kMatchForms) {
    add(text, "; ", filled(form.words, child(child(match, form.container), side)));
  }
  add(text, "; ", rewrite_words(child(vlan, "ingress-mapping"), side));
  return text;
}

std::string switched_words(const lyd_node* parent, const char* side) {
  const lyd_node* const leaves = child(child(parent, "switched-vlan"), side);
  std::string text = lower(value(leaves, "interface-mode"));
  add(text, " ", value(leaves, "access-vlan"));
  add(text, " ", value(leaves, "trunk-vlans"));
  const std::string native = value(leaves, "native-vlan");
  if (!native.empty()) add(text, " ", fmt::format("native {}", native));
  return text;
}

std::string interface_words(const lyd_node* interface, const char* side) {
  std::string text = switched_words(child(interface, "ethernet"), side);
  add(text, "; ", switched_words(child(interface, "aggregation"), side));
  add(text, "; ", filled("routed {vlan}", child(child(interface, "routed-vlan"), side)));
  return text;
}

using Row = std::vector<std::string>;

template <typename Words>
Row row_of(std::string name, const lyd_node* node, const std::vector<const char*>& sides, Words words) {
  Row row{std::move(name)};
  for (const char* const side : sides) row.push_back(words(node, side));
  return row;
}

std::vector<Row> rows_of(const yfw::Data& data, const std::vector<const char*>& sides) {
  std::vector<Row> rows;
  const lyd_node* top = nullptr;
  LY_LIST_FOR(data.get(), top) {
    const lyd_node* interface = nullptr;
    LY_LIST_FOR(lyd_child(top), interface) {
      const std::string name = value(interface, "name");
      rows.push_back(row_of(name, interface, sides, interface_words));
      const lyd_node* subinterface = nullptr;
      LY_LIST_FOR(lyd_child(child(interface, "subinterfaces")), subinterface) {
        rows.push_back(
            row_of(fmt::format("{}.{}", name, value(subinterface, "index")), subinterface, sides, subinterface_words));
      }
    }
  }
  return rows;
}

// What of `text` fits, up to a comma or blank where there is one; a word too long for the column stays whole.
std::string_view first_line(std::string_view text, std::size_t width) {
  if (text.size() <= width) return text;
  std::size_t end = text.find_last_of(", ", width - 1);
  if (end == std::string_view::npos) end = text.find_first_of(", ");
  return end == std::string_view::npos ? text : text.substr(0, end + 1);
}

// A row as one line or, where a cell is too long for its column, several.
std::string print(const Row& row, const std::vector<std::size_t>& widths) {
  std::string text;
  std::vector<std::string_view> rest(row.begin(), row.end());
  do {
    std::string line;
    for (std::size_t i = 0; i < rest.size(); ++i) {
      std::string_view part = first_line(rest[i], widths[i]);
      rest[i].remove_prefix(part.size());
      line += fmt::format("{:<{}}", part, i + 1 == rest.size() ? 0 : widths[i] + kGap);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text.append(line).append(1, '\n');
  } while (std::any_of(rest.begin(), rest.end(), [](std::string_view cell) { return !cell.empty(); }));
  return text;
}

std::vector<std::size_t> widths_of(const std::vector<Row>& rows) {
  std::vector<std::size_t> widths(rows.front().size());
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  // Names stay whole; the other columns share what is left of the screen.
  const std::size_t others = widths.size() - 1;
  const std::size_t taken = widths.front() + others * kGap;
  constexpr std::size_t kNarrowest = 20;
  const std::size_t left = taken < kScreenWidth ? kScreenWidth - taken : 0;
  std::size_t share = std::max(kNarrowest, left / others);
  for (std::size_t i = 1; i < widths.size(); ++i) {
    // What one of two columns does not need, the other may use.
    if (others == 2 && widths[3 - i] < share) share = std::max(kNarrowest, left - widths[3 - i]);
  }
  for (std::size_t i = 1; i < widths.size(); ++i) widths[i] = std::min(widths[i], share);
  return widths;
}

}  // namespace

std::string read_text(const yfw::Data& data, const std::vector<const char*>& sides) {
  std::vector<Row> rows = rows_of(data, sides);
  if (rows.empty()) return "";
  Row head{"interface"};
  for (const char* const side : sides) head.emplace_back(side);
  rows.insert(rows.begin(), head);
  for (Row& row : rows) {
    for (std::string& cell : row) {
      if (cell.empty()) cell.assign(1, '-');
    }
  }
  const std::vector<std::size_t> widths = widths_of(rows);
  std::string text;
  for (const Row& row : rows) text += print(row, widths);
  return text;
}

}  // namespace ocvlan
