// Entries of the lists of native operational data: how they are opened, what ends them, and what follows them.
#include <gtest/gtest.h>

#include <sstream>

#include "plugin/native_oper_walk.h"

namespace native_oper {
namespace {

using seen::who_traced;
using walks::kFailure;
using walks::kReadState;
using walks::lines;
using walks::Walk;

struct ListCase {
  const char* name;
  const char* tree;  // of two entries, below a node unless they are nodes
  const char* entry;
  const char* path;
  const char* key;
  const char* handler;
};

std::ostream& operator<<(std::ostream& out, const ListCase& c) {
  return out << c.name;
}

class NativeOperList : public testing::TestWithParam<ListCase> {
 protected:
  static Walk walk(const std::string& first, const std::string& second, const std::function<void(Walk&)>& given = {}) {
    const ListCase& c = GetParam();
    std::string tree = c.tree;
    tree.replace(tree.find('1'), 1, std::string(c.entry) + " " + first);
    tree.replace(tree.find('2'), 1, std::string(c.entry) + " " + second);
    return walk_vlan(kReadState, tree, given);
  }

  static std::string keyed(const std::string& value) {
    return "{ " + std::string(GetParam().key) + "=" + value + " other=x }";
  }

  static bool is_node() { return std::string(GetParam().name) == "node"; }

  // Entries that are opened before the first one here: the node around it.
  static int earlier_entries() { return is_node() ? 0 : 1; }

  static yfw_datatree& first_entry(Walk& walk) {
    const std::string entry = GetParam().entry;
    return walk.tree[is_node() ? "nodes/node" : "nodes/node/" + entry + "s/" + entry];
  }

  // The calls from the first entry's on, up to the last one's end.
  static std::string entries(const Walk& walk) {
    const std::string all = walk.seen();
    const std::string first = "add_to_node_hierarchy node=" + std::string(GetParam().entry) + " level=2";
    std::string found;
    std::istringstream lines_of(all.substr(all.find(first)));
    const std::string enclosing = "remove_from_node_hierarchy node=" + std::string(GetParam().entry) + "s";
    for (std::string line; std::getline(lines_of, line) && line != enclosing;) found += line + '\n';
    return found;
  }

  static std::string open() { return opened(GetParam().entry, GetParam().path, GetParam().handler); }
  static std::string close() { return closed(GetParam().entry); }
  static std::string entered() {
    return lines("add_to_node_hierarchy node=" + std::string(GetParam().entry) + " level=2",
                 "update_current_list_node path=" + std::string(GetParam().path));
  }
  static std::string handled() { return lines(std::string(GetParam().handler) + " node=" + GetParam().entry); }
  static std::string left() { return lines("remove_from_node_hierarchy node=" + std::string(GetParam().entry)); }
};

TEST_P(NativeOperList, entries_are_walked_in_order_with_their_keys_marked) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) { w.recorder.state.output_depth = 3; });
  EXPECT_EQ(done.code, 0u);
  EXPECT_EQ(entries(done), open() + close() + open() + close());
  EXPECT_EQ(done.state().output_depth, 3u);
}

TEST_P(NativeOperList, marks_the_key_alone) {
  Walk done = walk(keyed("a"), keyed("b"));
  const yfw_datatree& entry = first_entry(done);
  EXPECT_EQ(entry.subtrees[0].is_key, 1);
  EXPECT_EQ(entry.subtrees[0].key_flags, 0x02);
  EXPECT_EQ(entry.subtrees[1].is_key, 0);
  EXPECT_EQ(entry.subtrees[1].key_flags, 0);
}

TEST_P(NativeOperList, entry_without_children_is_logged_and_handled) {
  const Walk done = walk("", keyed("b"));
  EXPECT_EQ(done.code, 0u);
  EXPECT_EQ(done.recorder.errors(), lines("ERR No keys specified with a list node."));
  EXPECT_EQ(entries(done), open() + close() + open() + close());
}

TEST_P(NativeOperList, entry_that_the_framework_refuses_is_still_put_on_the_output_list) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) {
    w.recorder.answer("update_current_list_node", kFailure, earlier_entries() + 1);
  });
  EXPECT_EQ(done.code, kFailure);
  EXPECT_EQ(entries(done),
            entered() + lines("add_to_output_list node=" + std::string(GetParam().entry) + " tree=output") + close());
}

TEST_P(NativeOperList, entry_whose_handler_fails_ends_the_walk) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) { w.recorder.answer(GetParam().handler, kFailure, 1); });
  EXPECT_EQ(done.code, kFailure);
  EXPECT_EQ(entries(done), open() + close());
  EXPECT_EQ(who_traced(done.recorder, "Processing tag 'other'"), "");
  EXPECT_EQ(done.recorder.calls().find("error_path"), std::string::npos);
}

TEST_P(NativeOperList, entry_that_its_handler_declares_done_is_skipped) {
  const Walk done =
      walk(keyed("a"), keyed("b"), [](Walk& w) { w.recorder.answer(GetParam().handler, CERR_SKIP_SUBTREE, 1); });
  EXPECT_EQ(done.code, 0u);
  EXPECT_EQ(entries(done), entered() + handled() + left() + open() + close());
}

TEST_P(NativeOperList, entry_below_which_something_is_done_ends_and_the_next_one_follows) {
  const std::string hook = std::string(GetParam().handler).substr(5) + "_parse_augments";
  const Walk done = walk("{ " + std::string(GetParam().key) + "=a x:foreign after=1 }", keyed("b"),
                         [&hook](Walk& w) { w.recorder.answer(hook, CERR_SKIP_SUBTREE, 1); });
  EXPECT_EQ(done.code, 0u);
  EXPECT_EQ(entries(done), open() + lines(hook + " node=foreign") + close() + open() + close());
  EXPECT_EQ(who_traced(done.recorder, "Processing tag 'after'"), "");
  EXPECT_EQ(done.state().output_depth, 0u);
}

TEST_P(NativeOperList, entry_that_the_framework_declares_done_ends_and_the_next_one_follows) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) {
    w.recorder.answer("update_current_list_node", CERR_SKIP_SUBTREE, earlier_entries() + 1);
  });
  EXPECT_EQ(done.code, 0u);
  EXPECT_EQ(entries(done), entered() +
                               lines("add_to_output_list node=" + std::string(GetParam().entry) + " tree=output") +
                               close() + open() + close());
  EXPECT_EQ(who_traced(done.recorder, "Processing tag 'other'").find('\n'),
            who_traced(done.recorder, "Processing tag 'other'").rfind('\n'))
      << "only the second entry's children are visited";
}

TEST_P(NativeOperList, keys_are_marked_once_the_entry_is_current) {
  const Walk done = walk("{ " + std::string(GetParam().key) + "=a }", keyed("b"));
  const std::string key = GetParam().key;
  EXPECT_NE(seen::walk_with_comparisons(done.recorder)
                .find(entered() + lines("do_these_match left=" + key + " right=" + key) + handled()),
            std::string::npos)
      << seen::walk_with_comparisons(done.recorder);
}

TEST_P(NativeOperList, keys_of_an_entry_that_is_not_current_are_not_marked) {
  Walk done = walk(keyed("a"), keyed("b"),
                   [](Walk& w) { w.recorder.answer("update_current_list_node", kFailure, earlier_entries() + 1); });
  EXPECT_EQ(first_entry(done).subtrees[0].is_key, 0);
  EXPECT_EQ(first_entry(done).subtrees[0].key_flags, 0);
}

TEST_P(NativeOperList, child_without_a_tag_beside_the_key_is_no_key) {
  Walk done = walk("{ x @notag " + std::string(GetParam().key) + "=a }", keyed("b"));
  EXPECT_EQ(done.code, CERR_BAD_TREE);
  EXPECT_EQ(first_entry(done).subtrees[0].is_key, 0);
  EXPECT_EQ(first_entry(done).subtrees[1].is_key, 1);
  EXPECT_EQ(done.recorder.errors(), lines("ERR Tag name is not available!"));
}

// The handler's stand-in compares the children that it is given.
TEST_P(NativeOperList, handler_is_given_no_children_that_are_not_announced) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) { first_entry(w).node_flags = 0; });
  EXPECT_EQ(done.code, 0u);
  EXPECT_EQ(done.recorder.errors(), lines("ERR No keys specified with a list node."));
  EXPECT_EQ(entries(done), open() + close() + open() + close());
}

TEST_P(NativeOperList, entry_is_taken_off_the_output_list_only_where_it_deepened_it) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) { w.recorder.keep_output_depth(); });
  EXPECT_EQ(done.code, 0u);
  const std::string entry = entered() + handled() +
                            lines("add_to_output_list node=" + std::string(GetParam().entry) + " tree=output") + left();
  EXPECT_EQ(entries(done), entry + entry);
}

TEST_P(NativeOperList, failing_add_to_the_output_list_changes_nothing_else) {
  const Walk done = walk(keyed("a"), keyed("b"), [](Walk& w) { w.recorder.answer("add_to_output_list", kFailure); });
  EXPECT_EQ(done.code, 0u);
  EXPECT_EQ(done.seen().find("remove_from_output_list"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(NativeOper, NativeOperList,
                         testing::Values(ListCase{"node", "nodes { 1 2 }", "node", "/vlan/nodes/node", "node-id",
                                                  kNode},
                                         ListCase{"trunk", "nodes { node { node-id=0 trunks { 1 2 } } }", "trunk",
                                                  kTrunkPath, "interface", kTrunk},
                                         ListCase{"interface", "nodes { node { node-id=0 interfaces { 1 2 } } }",
                                                  "interface", kInterfacePath, "interface", kInterface}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace native_oper
