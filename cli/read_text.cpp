// The answer to a read as a table: what VLANs each interface and sub-interface takes, a line each.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "cli/commands.h"
#include "cli/message.h"
#include "yfw-host/host.h"
#include "yfw-host/text.h"
#include "yfw-host/words.h"

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

// The value of a leaf; empty when there is none.
std::string value(const lyd_node* parent, std::string_view name) {
  const lyd_node* const leaf = child(parent, name);
  return leaf == nullptr ? "" : lyd_get_value(leaf);
}

using Row = std::vector<std::string>;

// The unsaid VLAN settings of entries, in words.
using NativeWords = std::unordered_map<std::string, std::string>;

NativeWords native_words(const std::vector<yfw::Unsaid>& unsaid) {
  NativeWords words;
  for (std::size_t i = 0; i < unsaid.size();) {
    std::size_t end = i;
    while (end < unsaid.size() && unsaid[end].entry == unsaid[i].entry) ++end;
    std::string text = yfw::unsaid_words(
        {unsaid.begin() + static_cast<std::ptrdiff_t>(i), unsaid.begin() + static_cast<std::ptrdiff_t>(end)});
    if (!text.empty()) words[unsaid[i].entry] = std::move(text);
    i = end;
  }
  return words;
}

template <typename Words>
Row row_of(std::string name, const lyd_node* node, const std::vector<const char*>& sides, const NativeWords& native,
           Words words) {
  Row row{std::move(name)};
  for (const char* const side : sides) row.push_back(words(node, side));
  const auto unsaid = native.find(row.front());
  const bool configuration = std::string_view(sides.front()) == "config";
  if (configuration && row[1].empty() && unsaid != native.end()) row[1] = fmt::format("(native: {})", unsaid->second);
  for (std::string& cell : row) cell = printable(cell);
  return row;
}

std::vector<Row> rows_of(const yfw::ReadResult& result, const std::vector<const char*>& sides) {
  std::vector<Row> rows;
  const NativeWords native = native_words(result.unsaid);
  const lyd_node* top = nullptr;
  LY_LIST_FOR(result.data.get(), top) {
    const lyd_node* interface = nullptr;
    LY_LIST_FOR(lyd_child(top), interface) {
      const std::string name = value(interface, "name");
      rows.push_back(row_of(name, interface, sides, native, yfw::interface_words));
      const lyd_node* subinterface = nullptr;
      LY_LIST_FOR(lyd_child(child(interface, "subinterfaces")), subinterface) {
        rows.push_back(row_of(fmt::format("{}.{}", name, value(subinterface, "index")), subinterface, sides, native,
                              yfw::subinterface_words));
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

std::string read_text(const yfw::ReadResult& result, const std::vector<const char*>& sides) {
  std::vector<Row> rows = rows_of(result, sides);
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
