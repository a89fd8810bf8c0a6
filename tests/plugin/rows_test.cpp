// Every node of the two configuration models, by the way that leads to it: walkers, handlers and translations in order.
#include "plugin/rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "plugin/seen.h"

namespace {

using recording::kEdit;
using recording::kRead;
using recording::kReadState;
using recording::Recorder;
using recording::Tree;
using rows::Family;
using rows::Row;

struct Node {
  Family family;
  Row row;
};

std::ostream& operator<<(std::ostream& out, const Node& node) {
  return out << node.row.entry << " " << node.row.path;
}

std::string test_name(const testing::TestParamInfo<Node>& info) {
  return info.param.row.entry.substr(8) + "_" + info.param.row.walker;
}

std::vector<Node> all_nodes(const Family& family) {
  std::vector<Node> nodes;
  for (const Row& row : rows::of(family)) nodes.push_back({family, row});
  return nodes;
}

std::vector<Node> all_leaves(const Family& family) {
  std::vector<Node> nodes = all_nodes(family);
  std::erase_if(nodes, [](const Node& node) { return !node.row.is_leaf(); });
  return nodes;
}

// The rows on the way to one, itself included.
std::vector<Row> way_to(const Family& family, const Row& row) {
  std::vector<Row> way{row};
  for (std::string path = row.parent(); !path.empty(); path = way.front().parent()) {
    way.insert(way.begin(), rows::at(family, row.entry, path));
  }
  return way;
}

std::string first_lines(const std::string& document, std::size_t count) {
  std::istringstream all(document);
  std::string first;
  for (std::string line; count-- > 0 && std::getline(all, line);) first += line + '\n';
  return first;
}

// The functions that begin, without what translations ask on their way.
std::string only_starts(const std::string& trace) {
  std::istringstream all(trace);
  std::string starts;
  for (std::string line; std::getline(all, line);) {
    if (line.ends_with(": Start") && !line.starts_with("TRC check_")) starts += line.substr(4, line.size() - 11) + '\n';
  }
  return starts;
}

std::size_t line_count(const std::string& document) {
  return static_cast<std::size_t>(std::count(document.begin(), document.end(), '\n'));
}

// A request in which no translation on the way to the row has a reason to refuse.
class Request : public Recorder {
 public:
  explicit Request(const Row& row) : Recorder(row.holds_state() ? kReadState : kEdit) {
    make_l2();
    sub_interface("Ethernet0/0/1", "100");
    sysdb_item(1);
  }
};

// Makes every leaf handler succeed without its own body.
void answer_for_leaves(Recorder& recorder, const Family& family) {
  for (const Row& row : rows::of(family)) {
    if (row.is_leaf()) recorder.answer(row.handler, 0);
  }
}

class EveryNode : public testing::TestWithParam<Node> {};

TEST_P(EveryNode, is_reached_through_its_ancestors_by_their_exported_handlers) {
  const auto& [family, row] = GetParam();
  Request recorder(row);
  Tree tree(rows::tree(family, row.path));
  rows::enter(family, row.entry, recorder, tree);

  std::string handlers;
  std::string starts = family.prefix + row.entry + '\n';
  for (const Row& on_the_way : way_to(family, row)) {
    const bool is_last = on_the_way.path == row.path;
    handlers += on_the_way.handler + " node=" + on_the_way.tag();
    if (on_the_way.is_container()) handlers += is_last ? " count=0" : " count=1";
    handlers += '\n';
    starts += family.prefix + on_the_way.walker + '\n';
    if (on_the_way.is_container() && on_the_way.translation != "default") {
      starts += family.prefix + on_the_way.handler + '\n';
    }
    if (on_the_way.translation != "-" && on_the_way.translation != "default") starts += on_the_way.translation + '\n';
  }
  EXPECT_EQ(first_lines(seen::handlers(recorder), line_count(handlers)), handlers);
  EXPECT_EQ(first_lines(only_starts(recorder.trace()), line_count(starts)), starts);
}

TEST_P(EveryNode, passes_the_failure_of_its_handler_up_unchanged) {
  const auto& [family, row] = GetParam();
  Request recorder(row);
  answer_for_leaves(recorder, family);
  recorder.answer(row.handler, 0xaaf20999);
  Tree tree(rows::tree(family, row.path));
  EXPECT_EQ(rows::enter(family, row.entry, recorder, tree), 0xaaf20999u);
  EXPECT_EQ(recorder.calls().find("error_path"), std::string::npos) << recorder.calls();
  EXPECT_EQ(recorder.state.implicit_walk, 0u);
}

class EveryLeaf : public testing::TestWithParam<Node> {};

TEST_P(EveryLeaf, is_refused_by_name_only_where_nothing_maps_it) {
  const auto& [family, row] = GetParam();
  Request recorder(row);
  Tree tree(rows::tree(family, row.path));
  const cerrno code = rows::enter(family, row.entry, recorder, tree);
  if (row.translation == "default") {
    EXPECT_EQ(code, CERR_UNSUPPORTED);
    ASSERT_NE(recorder.state.error_tag, nullptr);
    EXPECT_EQ(recorder.state.error_tag, row.tag());
    EXPECT_EQ(
        recorder.calls().find("error_path\nstrdup text=" + row.tag() + " owner=" + row.tag()) != std::string::npos,
        true)
        << recorder.calls();
  } else {
    EXPECT_NE(code, CERR_UNSUPPORTED);
  }
}

INSTANTIATE_TEST_SUITE_P(OpenConfig, EveryNode, testing::ValuesIn(all_nodes(rows::kOpenConfig)), test_name);
INSTANTIATE_TEST_SUITE_P(NativeCfg, EveryNode, testing::ValuesIn(all_nodes(rows::kNativeCfg)), test_name);
INSTANTIATE_TEST_SUITE_P(OpenConfig, EveryLeaf, testing::ValuesIn(all_leaves(rows::kOpenConfig)), test_name);
INSTANTIATE_TEST_SUITE_P(NativeCfg, EveryLeaf, testing::ValuesIn(all_leaves(rows::kNativeCfg)), test_name);

// --- Walks over elements without children, node by node ---

// The handlers and hooks that a walk over the node itself calls below a row, in their order: what is configured, then
// what is state, then the hook.
std::string implicit_calls(const Family& family, const Row& row, const std::string& node, uint32_t kind,
                           const std::string& marks) {
  const std::string arguments = " node=" + node;
  std::string calls = row.handler + arguments + (row.is_container() ? " count=0" : "") + marks + '\n';
  if (row.is_leaf()) return calls;
  const std::string below_marks = marks.find("implicit") == std::string::npos ? marks + " implicit=1" : marks;
  const std::vector<Row> below = rows::below(family, row.entry, row.path);
  for (const bool state : {false, true}) {
    if (state && kind != kReadState) continue;
    for (const Row& child : below) {
      if ((child.tag() == "state") == state) calls += implicit_calls(family, child, node, kind, below_marks);
    }
  }
  return calls + row.walker + "_parse_augments" + arguments + below_marks + '\n';
}

std::vector<Node> accepted_nodes(const Family& family) {
  std::vector<Node> nodes;
  for (const Row& row : rows::of(family)) {
    if (row.parent().empty() && !row.is_leaf()) nodes.push_back({family, row});
  }
  return nodes;
}

class Childless : public testing::TestWithParam<Node> {};

TEST_P(Childless, is_read_by_driving_every_walker_below_it_over_the_element_itself) {
  const auto& [family, row] = GetParam();
  for (const uint32_t kind : {kRead, kReadState}) {
    Recorder recorder(kind);
    recorder.make_l2();
    answer_for_leaves(recorder, family);
    Tree tree(rows::tree(family, row.path, ""));
    EXPECT_EQ(rows::enter(family, row.entry, recorder, tree), 0u);

    const std::string once = implicit_calls(family, row, row.tag(), kind, "");
    const std::string hook = row.entry.substr(8) + "_parse_augments node=" + row.tag() + '\n';
    const bool is_walked_twice = family.ns == "oc";
    EXPECT_EQ(seen::handlers(recorder), is_walked_twice ? once + once + hook : once) << "request kind " << kind;
    EXPECT_EQ(recorder.state.implicit_walk, 0u);
  }
}

TEST_P(Childless, is_deleted_as_a_removal_spread_over_everything_below_it) {
  const auto& [family, row] = GetParam();
  Recorder recorder(kEdit);
  recorder.make_l2();
  answer_for_leaves(recorder, family);
  Tree tree(rows::tree(family, row.path, "") + " @delete");
  EXPECT_EQ(rows::enter(family, row.entry, recorder, tree), 0u);
  const std::string handlers = seen::handlers(recorder);

  // Everything below carries operation 4; the element's own handler and its own hook see the 3 that was asked for, or,
  // at a door that walks it again, the 4 of the second walk.
  std::istringstream lines(handlers);
  const std::string own = row.handler + " node=";
  for (std::string line; std::getline(lines, line);) {
    if (line.find(" implicit=1") != std::string::npos && line.find(row.walker + "_parse_augments") != 0) {
      EXPECT_NE(line.find(" op=4"), std::string::npos) << line << "\nin\n" << handlers;
    }
  }
  EXPECT_EQ(handlers.find(own + row.tag() + " count=0 op=3\n"), 0u) << handlers;
  EXPECT_EQ(tree.root()->operation, 3u);
  EXPECT_NE(tree.root()->node_flags & 0x10, 0);
}

INSTANTIATE_TEST_SUITE_P(OpenConfig, Childless, testing::ValuesIn(accepted_nodes(rows::kOpenConfig)), test_name);
INSTANTIATE_TEST_SUITE_P(NativeCfg, Childless, testing::ValuesIn(accepted_nodes(rows::kNativeCfg)), test_name);

TEST(RowLists, count_as_many_nodes_as_the_model_has) {
  std::size_t containers = 0;
  std::size_t leaves = 0;
  for (const Row& row : rows::of(rows::kOpenConfig)) ++(row.is_leaf() ? leaves : containers);
  EXPECT_EQ(containers, 46u);
  EXPECT_EQ(leaves, 74u);
}

}  // namespace
