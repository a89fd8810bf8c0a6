// VLAN id of a routed sub-interface, both ways.
#include "plugin/translations/case.h"

namespace translations {
namespace {

class RoutedVlan : public testing::TestWithParam<Case> {};

TEST_P(RoutedVlan, translates) {
  check(GetParam());
}

const Function kToNative = FUNCTION(map_oc_to_vex_l3_vlan);
const Function kToOpenConfig = FUNCTION(map_vex_to_oc_l3_vlan);

// What a write adds; "-" for the second tag is its removal.
std::string ids(const std::string& type, const std::string& first, const std::string& second) {
  return lines(identifier("vlan-type", type, "vlan-id"), identifier("first-tag", first, "vlan-id"),
               identifier("second-tag", second, "vlan-id"));
}

std::string copied(const std::string& text, int count) {
  return lines("strncpy caller=map_oc_to_vex_l3_vlan size=5 source=" + text + " count=" + std::to_string(count));
}

const std::string kRemoved = lines(identifier("vlan-type", "-", "vlan-id"), identifier("first-tag", "-", "vlan-id"),
                                   identifier("second-tag", "-", "vlan-id"));

Case write(const std::string& name, const std::string& value, const std::string& calls) {
  return {.name = name, .function = kToNative, .tree = "vlan-id=" + value, .calls = calls, .failures = "rrr"};
}

Case refused(const std::string& name, const std::string& value) {
  return {.name = name,
          .function = kToNative,
          .tree = "vlan-id=" + value,
          .calls = lines("error_path"),
          .result = 22,
          .errors = lines("ERR Invalid OC VLAN Id specified ('" + value + "')",
                          "ERR Failed to parse OC VLAN Id '" + value + "'")};
}

INSTANTIATE_TEST_SUITE_P(
    ToNative, RoutedVlan,
    testing::Values(
        write("one_id", "100", ids("vlan-type-dot1q", "100", "-")),
        write("two_ids", "100.200", copied("100.200", 3) + ids("vlan-type-dot1ad", "100", "200")),
        write("three_ids", "1.2.3", copied("1.2.3", 1) + ids("vlan-type-dot1ad", "1", "2.3")),
        write("four_characters", "1234.1", copied("1234.1", 4) + ids("vlan-type-dot1ad", "1234", "1")),
        write("no_inner_id", "100.", copied("100.", 3) + ids("vlan-type-dot1ad", "100", "-")),
        write("no_outer_id", ".5", copied(".5", 0) + ids("vlan-type-dot1ad", "''", "5")),
        write("only_a_dot", ".", copied(".", 0) + ids("vlan-type-dot1ad", "''", "-")),
        write("long_without_a_dot", "1234567", ids("vlan-type-dot1q", "1234567", "-")),
        write("empty", "''", ids("vlan-type-dot1q", "''", "-")), refused("five_characters", "12345.1"),
        refused("many_characters", "1234567890.1"),
        Case{.name = "no_value",
             .function = kToNative,
             .tree = "vlan-id",
             .errors = lines("ERR Null VLAN Id value specified in OC model")},
        Case{.name = "failing_copy",
             .function = kToNative,
             .tree = "vlan-id=1.2",
             .given = [](Recorder& framework) { framework.answer("strncpy", 34); },
             .calls = copied("1.2", 1),
             .result = 34,
             .errors = lines("ERR Failed to parse OC VLAN Id '1.2'")},
        Case{.name = "delete_",
             .function = kToNative,
             .tree = "vlan-id=1 @delete",
             .calls = kRemoved,
             .failures = "rrr"},
        Case{.name = "remove_", .function = kToNative, .tree = "vlan-id @remove", .calls = kRemoved, .failures = "rrr"},
        Case{.name = "read",
             .function = kToNative,
             .tree = "vlan-id=100.200",
             .kinds = kReads,
             .calls = kRemoved,
             .failures = "rrr"}),
    case_name);

// The framework's copy need not have an end.
TEST(RoutedVlanCopy, of_the_outer_id_is_ended_here) {
  for (const auto& [value, outer] : {std::pair{"7.200", "7"}, std::pair{"1234.200", "1234"}, std::pair{".200", "''"}}) {
    Recorder framework;
    framework.leave_copies_open();
    Tree tree(std::string("vlan-id=") + value);
    EXPECT_EQ(map_oc_to_vex_l3_vlan(framework.ctx(), tree.root(), framework.output()), 0u);
    EXPECT_NE(framework.calls().find(ids("vlan-type-dot1ad", outer, "200")), std::string::npos) << framework.calls();
  }
}

TEST(RoutedVlanResult, is_the_first_failure) {
  for (const int first : {1, 2, 3}) {
    Recorder framework;
    for (int n = first; n <= 3; ++n) framework.answer("add_path", static_cast<uint32_t>(10 + n), n);
    Tree tree("vlan-id=1");
    EXPECT_EQ(map_oc_to_vex_l3_vlan(framework.ctx(), tree.root(), framework.output()), static_cast<cerrno>(10 + first));
  }
}

// The operation that each addition sees is the source's at that moment, so it is watched from inside the service.
struct Operations {
  std::string name;
  std::string tree;
  uint32_t kind;
  std::string seen;  // of the three additions
  uint32_t after;
  bool marked;          // bit 0x10 of node_flags
  cerrno third_result;  // of the addition for the second tag
};

class RoutedVlanOperation : public testing::TestWithParam<Operations> {};

TEST_P(RoutedVlanOperation, is_remove_for_the_second_tag_alone_and_is_put_back) {
  const Operations& c = GetParam();
  Recorder framework(c.kind);
  Tree tree(c.tree);
  std::string seen;
  framework.on_add([&seen](const yfw_datatree* source) { seen += std::to_string(source->operation); });
  framework.answer("add_path", c.third_result, 3);
  EXPECT_EQ(map_oc_to_vex_l3_vlan(framework.ctx(), tree.root(), framework.output()), c.third_result);
  EXPECT_EQ(seen, c.seen);
  EXPECT_EQ(tree.root()->operation, c.after);
  EXPECT_EQ((tree.root()->node_flags & 0x10) != 0, c.marked);
}

INSTANTIATE_TEST_SUITE_P(
    Table, RoutedVlanOperation,
    testing::Values(Operations{"merge_one_id", "vlan-id=1", kEdit, "004", 0, true, 0},
                    Operations{"create_one_id", "vlan-id=1 @create", kEdit, "224", 2, true, 0},
                    Operations{"merge_two_ids", "vlan-id=1.2", kEdit, "000", 0, false, 0},
                    Operations{"delete_it", "vlan-id @delete", kEdit, "334", 3, true, 0},
                    Operations{"remove_it", "vlan-id @remove", kEdit, "444", 4, false, 0},
                    Operations{"read_it", "vlan-id", kRead, "000", 0, false, 0},
                    Operations{"read_a_deleted", "vlan-id @delete", kReadState, "334", 3, true, 0},
                    Operations{"merge_one_id_failing", "vlan-id=1", kEdit, "004", 0, true, 17},
                    Operations{"create_no_inner_id_failing", "vlan-id=1. @create", kEdit, "224", 2, true, 17},
                    Operations{"delete_it_failing", "vlan-id @delete", kEdit, "334", 3, true, 17},
                    Operations{"read_a_deleted_failing", "vlan-id @delete", kRead, "334", 3, true, 17}),
    [](const testing::TestParamInfo<Operations>& info) { return info.param.name; });

const std::string kConfig = "/interfaces/interface/subinterfaces/subinterface/vlan/config/vlan-id";
const std::string kState = "/interfaces/interface/subinterfaces/subinterface/vlan/state/vlan-id";
const std::string kSubtrees = "get_subtrees node=vlan-identifier";

std::string told(const std::string& path, const std::string& value) {
  return add(path, "oc", value, "vlan-identifier", 0, 1);
}

Case read_back(const std::string& name, const std::string& leaves, const std::string& value) {
  return {.name = name,
          .function = kToOpenConfig,
          .tree = "cfg:vlan-identifier { " + leaves + " }",
          .kinds = {kRead, kEdit},
          .calls = value.empty() ? lines(kSubtrees) : lines(kSubtrees, told(kConfig, value)),
          .failures = value.empty() ? "" : "r"};
}

// Flags that select content, and the mode that gives them a meaning, or another one.
std::function<void(Recorder&)> gate(uint32_t scope_mode) {
  return [scope_mode](Recorder& framework) {
    framework.request.read_filter_flags_1 = 1;
    framework.request.scope_mode = scope_mode;
  };
}

INSTANTIATE_TEST_SUITE_P(
    ToOpenConfig, RoutedVlan,
    testing::Values(
        read_back("single", "vlan-type=vlan-type-dot1q first-tag=100", "100"),
        read_back("any_order", "second-tag=200 first-tag=100 vlan-type=vlan-type-dot1ad", "100.200"),
        read_back("the_longest_text", "vlan-type=vlan-type-dot1ad first-tag=4094 second-tag=4094", "4094.4094"),
        read_back("a_longer_text_is_cut", "vlan-type=vlan-type-dot1ad first-tag=4094 second-tag=40941", "4094.4094"),
        read_back("a_single_text_is_not_cut", "vlan-type=vlan-type-dot1q first-tag=123456789012", "123456789012"),
        read_back("later_tags_win", "vlan-type=vlan-type-dot1q first-tag=1 first-tag=2", "2"),
        read_back("both_types_and_one_tag", "vlan-type=vlan-type-dot1q vlan-type=vlan-type-dot1ad first-tag=5", "5"),
        read_back("both_types_and_two_tags",
                  "vlan-type=vlan-type-dot1q vlan-type=vlan-type-dot1ad first-tag=5 second-tag=6", "5.6"),
        read_back("q_with_second", "vlan-type=vlan-type-dot1q first-tag=1 second-tag=2", ""),
        read_back("ad_without_second", "vlan-type=vlan-type-dot1ad first-tag=1", ""),
        read_back("ad_without_first", "vlan-type=vlan-type-dot1ad second-tag=1", ""),
        read_back("no_tags", "vlan-type=vlan-type-dot1q", ""), read_back("no_type", "first-tag=1", ""),
        read_back("tag_without_value", "vlan-type=vlan-type-dot1q first-tag", ""),
        read_back("other_type", "vlan-type=other first-tag=1", ""),
        read_back("type_without_value", "vlan-type first-tag=1", ""),
        read_back("foreign_leaf", "vlan-type=vlan-type-dot1q first-tag=1 oc:second-tag=2", "1"),
        read_back("unknown_leaf", "x=1 y @notag vlan-type=vlan-type-dot1q first-tag=1", "1"),
        Case{.name = "state_too",
             .function = kToOpenConfig,
             .tree = "cfg:vlan-identifier { vlan-type=vlan-type-dot1q first-tag=1 }",
             .kinds = {kReadState},
             .calls = lines(kSubtrees, told(kConfig, "1"), told(kState, "1")),
             .failures = "rr"},
        Case{.name = "as_many_as_counted",
             .function = kToOpenConfig,
             .tree = "cfg:vlan-identifier { vlan-type=vlan-type-dot1q first-tag=1 second-tag=2 }",
             .calls = lines(kSubtrees, told(kConfig, "1")),
             .failures = "r",
             .count = 2},
        Case{.name = "no_more_than_there_are",
             .function = kToOpenConfig,
             .tree = "cfg:vlan-identifier { vlan-type=vlan-type-dot1q first-tag=1 }",
             .calls = lines(kSubtrees, told(kConfig, "1")),
             .failures = "r",
             .count = 50},
        Case{.name = "no_subtrees",
             .function = kToOpenConfig,
             .tree = "cfg:vlan-identifier { first-tag=1 }",
             .count = 0},
        Case{.name = "failing_subtrees",
             .function = kToOpenConfig,
             .tree = "cfg:vlan-identifier { first-tag=1 }",
             .given = [](Recorder& framework) { framework.answer("get_subtrees", 0xaaf20009); },
             .calls = lines(kSubtrees),
             .result = 0xaaf20009},
        Case{.name = "gate_closed",
             .function = kToOpenConfig,
             .tree = "cfg:vlan-identifier { vlan-type=vlan-type-dot1q first-tag=1 }",
             .kinds = {kRead, kEdit},
             .given = gate(2),
             .calls = lines(kSubtrees)},
        Case{.name = "gate_closed_for_configuration_alone",
             .function = kToOpenConfig,
             .tree = "cfg:vlan-identifier { vlan-type=vlan-type-dot1q first-tag=1 }",
             .kinds = {kReadState},
             .given = gate(2),
             .calls = lines(kSubtrees, told(kState, "1")),
             .failures = "r"},
        Case{.name = "gate_open_in_another_mode",
             .function = kToOpenConfig,
             .tree = "cfg:vlan-identifier { vlan-type=vlan-type-dot1q first-tag=1 }",
             .kinds = {kReadState},
             .given = gate(1),
             .calls = lines(kSubtrees, told(kConfig, "1"), told(kState, "1")),
             .failures = "rr"}),
    case_name);

TEST(RoutedVlanResult, is_that_of_the_configuration_where_both_fail) {
  Recorder framework(kReadState);
  framework.answer("add_path", 11, 1);
  framework.answer("add_path", 12, 2);
  Tree tree("cfg:vlan-identifier { vlan-type=vlan-type-dot1q first-tag=1 }");
  EXPECT_EQ(map_vex_to_oc_l3_vlan(framework.ctx(), tree.root(), 2, framework.output()), 11u);
}

TEST(RoutedVlanTrace, tells_what_is_ignored) {
  Recorder framework(kRead);
  Tree tree("cfg:vlan-identifier { oc:first-tag=1 vlan-type=other vlan-type third-tag=3 }");
  map_vex_to_oc_l3_vlan(framework.ctx(), tree.root(), 4, framework.output());
  const std::string prefix = "TRC map_vex_to_oc_l3_vlan: ";
  EXPECT_EQ(
      framework.trace(),
      lines(prefix + "Start",
            prefix + "Ignoring unexpected VLAN nodes in a different YANG namespace 'http://openconfig.net/yang/vlan'",
            prefix + "Ignoring tag with outer VLAN tag type 'other'",
            prefix + "Ignoring tag with outer VLAN tag type '(null)'",
            prefix + "Ignoring unexpected Native VLAN tag leaf node 'third-tag'", prefix + "End"));
}

TEST(RoutedVlanTrace, tells_of_a_container_without_children) {
  Recorder framework(kRead);
  Tree tree("cfg:vlan-identifier");
  EXPECT_EQ(map_vex_to_oc_l3_vlan(framework.ctx(), tree.root(), 0, framework.output()), 0u);
  EXPECT_EQ(framework.trace(), lines("TRC map_vex_to_oc_l3_vlan: Start", "TRC map_vex_to_oc_l3_vlan: No subtrees",
                                     "TRC map_vex_to_oc_l3_vlan: End"));
}

}  // namespace
}  // namespace translations
