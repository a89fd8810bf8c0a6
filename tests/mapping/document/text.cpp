// Markdown as the document has it.
#include "mapping/document/text.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "mapping/document/samples.h"

namespace mapping {

namespace {

// The last number in a path, and the path around it.
struct Numbered {
  explicit Numbered(const std::string& path) {
    const auto is_digit = [](unsigned char c) { return std::isdigit(c) != 0; };
    const auto last = std::find_if(path.rbegin(), path.rend(), is_digit);
    const auto first = std::find_if_not(last, path.rend(), is_digit);
    around = std::string(path.begin(), first.base()) + "#" + std::string(last.base(), path.end());
    if (last != path.rend()) number = std::stoul(std::string(first.base(), last.base()));
  }

  std::string around;
  unsigned long number = 0;
};

bool count_on(const std::string& path, const std::string& next) {
  const Numbered left(path);
  const Numbered right(next);
  return left.around == right.around && left.number + 1 == right.number;
}

}  // namespace

std::string code(const std::string& text) {
  return "`" + text + "`";
}

std::string setting(const std::string& path, const std::string& value) {
  return value.empty() ? code(path) : code(path) + " = " + code(value);
}

std::string joined(const std::vector<std::string>& parts, const std::string& separator) {
  std::string text;
  for (std::size_t i = 0; i < parts.size(); ++i) text += (i == 0 ? "" : separator) + parts[i];
  return text;
}

std::vector<std::string> codes(const std::vector<std::string>& paths) {
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < paths.size();) {
    std::size_t last = i;
    while (last + 1 < paths.size() && count_on(paths[last], paths[last + 1])) ++last;
    texts.push_back(code(paths[i]));
    if (last != i) texts.back() += (last == i + 1 ? ", " : " to ") + code(paths[last]);
    i = last + 1;
  }
  return texts;
}

std::string shortened(const std::string& path) {
  for (const char* const each : kLeftOut) {
    if (path.starts_with(each)) return path.substr(std::string_view(each).size());
  }
  return path;
}

std::string table_row(const std::vector<std::string>& cells) {
  return "| " + joined(cells, " | ") + " |\n";
}

std::string with_values(const std::vector<std::string>& values, const std::string& text) {
  if (std::all_of(values.begin(), values.end(), is_sample_id)) return text;
  return joined(codes(values), ", ") + ": " + text;
}

std::string merged(const std::vector<std::pair<std::string, std::string>>& labelled) {
  const bool is_one = std::all_of(labelled.begin(), labelled.end(),
                                  [&labelled](const auto& each) { return each.second == labelled.front().second; });
  if (is_one) return labelled.front().second;
  std::vector<std::string> texts;
  texts.reserve(labelled.size());
  for (const auto& [label, text] : labelled) texts.push_back(label + ": " + (text.empty() ? "nothing" : text));
  return joined(texts, kNewLine);
}

std::string settings(const Config& leaves) {
  std::vector<std::string> lines;
  for (const auto& [path, values] : leaves) lines.push_back(setting(path, joined(values, ", ")));
  return joined(lines, kNewLine);
}

std::string settings(const Entry& leaves) {
  std::vector<std::string> lines;
  for (const auto& [path, value] : leaves) lines.push_back(setting(shortened(path), value));
  return joined(lines, kNewLine);
}

}  // namespace mapping
