// Whole documents as tests compare them: read from files, told apart by unified diffs, carried from JSON to XML.
#include "golden/documents.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

#include "yang/modules.h"

namespace golden_test {
namespace {

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  if (!text.empty() && text.back() != '\n') lines.back() += "(no end of line)";
  return lines;
}

struct Line {
  char change;  // ' ', '-' or '+'
  std::string text;
};

// The longest common subsequence leaves the fewest changes.
std::vector<Line> changes(const std::vector<std::string>& left, const std::vector<std::string>& right) {
  const std::size_t width = right.size() + 1;
  std::vector<std::size_t> common((left.size() + 1) * width, 0);
  for (std::size_t i = left.size(); i-- > 0;) {
    for (std::size_t j = right.size(); j-- > 0;) {
      common[i * width + j] = left[i] == right[j] ? common[(i + 1) * width + j + 1] + 1
                                                  : std::max(common[(i + 1) * width + j], common[i * width + j + 1]);
    }
  }
  std::vector<Line> lines;
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < left.size() || j < right.size()) {
    if (i < left.size() && j < right.size() && left[i] == right[j]) {
      lines.push_back({' ', left[i++]});
      ++j;
    } else if (j == right.size() || (i < left.size() && common[(i + 1) * width + j] >= common[i * width + j + 1])) {
      lines.push_back({'-', left[i++]});
    } else {
      lines.push_back({'+', right[j++]});
    }
  }
  return lines;
}

yang_test::Context load_all(const std::vector<std::string>& folders) {
  yang_test::Context ctx = yang_test::make_context(folders);
  std::string failure = yang_test::load(ctx, {"ietf-netconf"});
  if (failure.empty()) failure = yang_test::load(ctx, yang_test::kOpenConfigModules);
  if (failure.empty()) failure = yang_test::load(ctx, yang_test::kNativeModules);
  if (!failure.empty()) throw std::runtime_error(failure);
  return ctx;
}

}  // namespace

std::string contents(const std::string& file) {
  std::ifstream stream(file);
  if (!stream) throw std::runtime_error(file + " is missing");
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string contents_if_there(const std::string& file) {
  return std::filesystem::exists(file) ? contents(file) : std::string();
}

std::string diff(const std::string& left, const std::string& right, const std::string& left_name,
                 const std::string& right_name) {
  if (left == right) return "";
  const std::vector<Line> lines = changes(lines_of(left), lines_of(right));
  constexpr std::size_t kAround = 3;
  std::vector<bool> shown(lines.size(), false);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].change == ' ') continue;
    const std::size_t end = std::min(lines.size(), i + kAround + 1);
    for (std::size_t j = i < kAround ? 0 : i - kAround; j < end; ++j) shown[j] = true;
  }
  std::string text = "--- " + left_name + "\n+++ " + right_name + "\n";
  std::size_t left_line = 1;
  std::size_t right_line = 1;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (shown[i] && (i == 0 || !shown[i - 1])) {
      text += "@@ -" + std::to_string(left_line) + " +" + std::to_string(right_line) + " @@\n";
    }
    if (shown[i]) text += lines[i].change + lines[i].text + "\n";
    if (lines[i].change != '+') ++left_line;
    if (lines[i].change != '-') ++right_line;
  }
  return text;
}

testing::AssertionResult is_file(const std::string& file, const std::string& text) {
  const std::string difference = diff(contents(file), text, file, "what came out");
  if (difference.empty()) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "\n" << difference;
}

std::string json_as_xml(const std::vector<std::string>& module_folders, const std::string& json) {
  // Loading the modules takes longer than all the rest.
  static std::map<std::vector<std::string>, yang_test::Context> contexts;
  yang_test::Context& ctx = contexts[module_folders];
  if (ctx == nullptr) ctx = load_all(module_folders);
  lyd_node* tree = nullptr;
  if (lyd_parse_data_mem(ctx.get(), json.c_str(), LYD_JSON, LYD_PARSE_ONLY | LYD_PARSE_STRICT, 0, &tree) !=
      LY_SUCCESS) {
    return std::string("not JSON of these modules: ") + ly_errmsg(ctx.get()) + "\n" + json;
  }
  char* printed = nullptr;
  lyd_print_mem(&printed, tree, LYD_XML, LYD_PRINT_WITHSIBLINGS);
  lyd_free_all(tree);
  std::string xml = printed == nullptr ? "" : printed;
  std::free(printed);
  return xml;
}

}  // namespace golden_test
