// Runs the rows of the translations' tables.
#include "plugin/translations/case.h"

#include <algorithm>
#include <sstream>

namespace translations {

Function::Function(const char* name, cerrno (*leaf)(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*))
    : name_(name), call_([leaf](yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t, yfw_datatree* output) {
        return leaf(ctx, node, output);
      }) {}

Function::Function(const char* name, cerrno (*container)(yfw_map_ctx*, const yfw_datatree*, uint32_t, yfw_datatree*))
    : name_(name), call_(container) {}

Function::Function(const char* name, cerrno (*list)(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*, yfw_datatree*))
    : name_(name), call_([list](yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t, yfw_datatree* output) {
        return list(ctx, node, output, node != nullptr ? node->subtrees : nullptr);
      }) {}

cerrno Function::operator()(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count, yfw_datatree* output) const {
  return call_(ctx, node, count, output);
}

namespace {

constexpr cerrno kAddFailed = 0xaaf20777;

std::string text_or_dash(const char* text) {
  return text != nullptr ? text : "-";
}

std::vector<std::string> split(const std::string& document) {
  std::vector<std::string> result;
  std::istringstream stream(document);
  for (std::string line; std::getline(stream, line);) result.push_back(line);
  return result;
}

bool is_add(const std::string& line) {
  return line.starts_with("add_path ");
}

// The calls that remain when the n-th add fails: its value is not marked, and all that comes after it may be missing.
std::string calls_with_failure(const std::string& calls, std::size_t n, bool stops) {
  std::string document;
  std::size_t adds = 0;
  bool failed_last = false;
  for (const std::string& line : split(calls)) {
    if (failed_last && line == kMarked) continue;
    failed_last = false;
    document += line + '\n';
    if (!is_add(line) || ++adds != n) continue;
    if (stops) break;
    failed_last = true;
  }
  return document;
}

cerrno run(const Case& c, Recorder& framework, Tree& tree) {
  const AllocationCount heap;
  const cerrno result =
      c.function(framework.ctx(), tree.root(), c.count.value_or(tree.root()->subtree_count), framework.output());
  EXPECT_EQ(heap.allocations(), 0u) << "the heap was touched";
  return result;
}

void expect_frame(const Case& c, const Recorder& framework, bool ended) {
  const std::string prefix = "TRC " + c.function.name() + ": ";
  const std::vector<std::string> messages = split(framework.trace());
  ASSERT_FALSE(messages.empty());
  EXPECT_EQ(messages.front(), prefix + "Start");
  const auto ends = std::count(messages.begin(), messages.end(), prefix + "End");
  EXPECT_EQ(ends, ended ? 1 : 0) << framework.trace();
  if (ended) {
    EXPECT_EQ(messages.back(), prefix + "End");
  }
}

void check_as_given(const Case& c, uint32_t kind) {
  Recorder framework(kind);
  if (c.given) c.given(framework);
  Tree tree(c.tree);
  EXPECT_EQ(run(c, framework, tree), c.result);
  EXPECT_EQ(framework.calls(), c.calls);
  EXPECT_EQ(framework.errors(), c.errors);
  EXPECT_EQ(text_or_dash(framework.state.error_tag), c.error_tag);
  EXPECT_EQ(text_or_dash(framework.state.error_message), c.error_message);
  expect_frame(c, framework, c.ends);
  if (c.then) c.then(tree);
}

void check_silent(const Case& c, uint32_t kind) {
  Recorder framework(kind);
  if (c.given) c.given(framework);
  framework.debug_log(false, false);
  framework.trace_buffer(false);
  Tree tree(c.tree);
  EXPECT_EQ(run(c, framework, tree), c.result);
  EXPECT_EQ(framework.calls(), c.calls);
  EXPECT_EQ(text_or_dash(framework.state.error_tag), c.error_tag);
  EXPECT_EQ(text_or_dash(framework.state.error_message), c.error_message);
  EXPECT_EQ(framework.log() + framework.trace(), "");
}

void check_failing_add(const Case& c, uint32_t kind, std::size_t n) {
  const char fate = c.failures[n - 1];
  Recorder framework(kind);
  if (c.given) c.given(framework);
  framework.answer("add_path", kAddFailed, static_cast<int>(n));
  Tree tree(c.tree);
  EXPECT_EQ(run(c, framework, tree), fate == '.' ? c.result : kAddFailed);
  const bool stops = fate == 's';
  EXPECT_EQ(framework.calls(), calls_with_failure(c.calls, n, stops));
  // What stops here does not come to a refusal further on.
  EXPECT_EQ(framework.errors(), stops ? "" : c.errors);
  expect_frame(c, framework, c.ends || stops);
}

}  // namespace

void check(const Case& c) {
  for (const uint32_t kind : c.kinds) {
    SCOPED_TRACE("request kind " + std::to_string(kind));
    check_as_given(c, kind);
    check_silent(c, kind);
  }
  const std::vector<std::string> calls = split(c.calls);
  ASSERT_EQ(c.failures.size(), static_cast<std::size_t>(std::count_if(calls.begin(), calls.end(), is_add)))
      << "one letter for each add";
  for (std::size_t n = 1; n <= c.failures.size(); ++n) {
    SCOPED_TRACE("the add that fails: " + std::to_string(n));
    check_failing_add(c, c.kinds.front(), n);
  }
}

std::ostream& operator<<(std::ostream& out, const Case& c) {
  return out << c.function.name() << " on " << c.tree;
}

std::string case_name(const testing::TestParamInfo<Case>& info) {
  std::string name = info.param.name;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

void expect_in_order(const std::string& document, const std::vector<std::string>& texts) {
  std::size_t at = 0;
  for (const std::string& text : texts) {
    at = document.find(text, at);
    ASSERT_NE(at, std::string::npos) << text << "\nis not where it belongs in\n" << document;
    at += text.size();
  }
}

std::string add(const std::string& path, const std::string& ns, const std::string& value, const std::string& source,
                uint32_t list_flag, uint32_t flags, const std::string& slot) {
  return "add_path tree=output path=" + path + " ns=" + ns + " value=" + value + " source=" + source + " slot=" + slot +
         " list=" + std::to_string(list_flag) + " flags=" + std::to_string(flags);
}

std::string encapsulation(const std::string& leaf, const std::string& value, const std::string& source) {
  return add("interface-configurations/interface-configuration/ethernet-service/encapsulation/" + leaf, "cfg", value,
             source, 0, 1);
}

std::string rewrite(const std::string& leaf, const std::string& value, const std::string& source) {
  return add("interface-configurations/interface-configuration/ethernet-service/rewrite/" + leaf, "cfg", value, source,
             0, 1);
}

std::string identifier(const std::string& leaf, const std::string& value, const std::string& source) {
  return add("/interface-configurations/interface-configuration/vlan-sub-configuration/vlan-identifier/" + leaf, "cfg",
             value, source, 0, 1);
}

std::string trunk(const std::string& leaf, const std::string& value, const std::string& source) {
  return add("/interface-configurations/interface-configuration/vlan-trunk-configuration/" + leaf, "cfg", value, source,
             0, 1);
}

std::string node_info(const std::string& path, const std::string& name) {
  return "get_node_info path=" + path + " name=" + name;
}

std::string free_text(const std::string& text) {
  return "free text=" + text;
}

std::string strdup(const std::string& text, const std::string& owner) {
  const auto shown = [](const std::string& t) { return t.find(' ') != std::string::npos ? "'" + t + "'" : t; };
  return "strdup text=" + shown(text) + " owner=" + shown(owner);
}

}  // namespace translations
