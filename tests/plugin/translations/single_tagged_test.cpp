// Single-tagged matches on their way to native configuration.
#include "plugin/translations/match_lines.h"

namespace translations {
namespace {

class SingleTagged : public testing::TestWithParam<Case> {};

TEST_P(SingleTagged, translates) {
  check(GetParam());
}

const Function kId = FUNCTION(oc2_vex_singletag_cfg_vlanid);
const Function kLow = FUNCTION(oc2_vex_singletag_range_cfg_lowvlanid);
const Function kHigh = FUNCTION(oc2_vex_singletag_range_cfg_highvlanid);

INSTANTIATE_TEST_SUITE_P(
    Id, SingleTagged,
    testing::Values(Case{.name = "read_l2",
                         .function = kId,
                         .tree = "vlan-id=100",
                         .kinds = kReads,
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("outer-range1-low", "100", "-"),
                                        encapsulation("outer-tag-type", "100", "-")),
                         .failures = ".r"},
                    Case{.name = "read_l2_without_value",
                         .function = kId,
                         .tree = "vlan-id",
                         .kinds = kReads,
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("outer-range1-low", "-", "-"),
                                        encapsulation("outer-tag-type", "-", "-")),
                         .failures = ".r"},
                    Case{.name = "read_of_a_deleted_node_is_a_read",
                         .function = kId,
                         .tree = "vlan-id=100 @delete",
                         .kinds = kReads,
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("outer-range1-low", "100", "-"),
                                        encapsulation("outer-tag-type", "100", "-")),
                         .failures = ".r"},
                    Case{.name = "read_l3",
                         .function = kId,
                         .tree = "vlan-id=100",
                         .kinds = kReads,
                         .given = l3,
                         .calls = lines(kClassify, identifier("first-tag", "100", "-"),
                                        identifier("vlan-type", "100", "-")),
                         .failures = ".r"},
                    Case{.name = "write_l2",
                         .function = kId,
                         .tree = "vlan-id=100",
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("outer-range1-low", "100", "vlan-id"),
                                        encapsulation("outer-tag-type", "match-dot1q", "vlan-id")),
                         .failures = ".r"},
                    Case{.name = "write_takes_the_text_as_it_is",
                         .function = kId,
                         .tree = "vlan-id=99999x @create",
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("outer-range1-low", "99999x", "vlan-id"),
                                        encapsulation("outer-tag-type", "match-dot1q", "vlan-id")),
                         .failures = ".r"},
                    Case{.name = "write_l3",
                         .function = kId,
                         .tree = "vlan-id=100 @replace",
                         .given = l3,
                         .calls = lines(kClassify, identifier("first-tag", "100", "vlan-id"),
                                        identifier("vlan-type", "vlan-type-dot1q", "vlan-id")),
                         .failures = ".r"},
                    Case{.name = "write_unknown_is_l3",
                         .function = kId,
                         .tree = "vlan-id=100",
                         .given = unknown,
                         .calls = lines(kFind, identifier("first-tag", "100", "vlan-id"),
                                        identifier("vlan-type", "vlan-type-dot1q", "vlan-id")),
                         .failures = ".r"},
                    Case{.name = "write_unnamed_is_l3",
                         .function = kId,
                         .tree = "vlan-id=100",
                         .calls = lines(identifier("first-tag", "100", "vlan-id"),
                                        identifier("vlan-type", "vlan-type-dot1q", "vlan-id")),
                         .failures = ".r"},
                    Case{.name = "delete_l2",
                         .function = kId,
                         .tree = "vlan-id=100 @delete",
                         .given = l2,
                         .calls = lines(kClassify, encapsulation("", "-", "vlan-id")),
                         .failures = "r"},
                    Case{.name = "remove_l3",
                         .function = kId,
                         .tree = "vlan-id @remove",
                         .given = l3,
                         .calls = lines(kClassify, identifier("", "-", "vlan-id")),
                         .failures = "r"},
                    Case{.name = "failed_classification",
                         .function = kId,
                         .tree = "vlan-id=100",
                         .kinds = {kRead, kEdit, kReadState},
                         .given = failing_flags,
                         .calls = lines(kClassify),
                         .result = 0xaaf20123}),
    case_name);

INSTANTIATE_TEST_SUITE_P(Range, SingleTagged,
                         testing::Values(Case{.name = "low_read",
                                              .function = kLow,
                                              .tree = "low-vlan-id=5",
                                              .kinds = kReads,
                                              .calls = lines(encapsulation("outer-range1-low", "5", "-"),
                                                             encapsulation("outer-tag-type", "5", "-")),
                                              .failures = ".r"},
                                         Case{.name = "low_write",
                                              .function = kLow,
                                              .tree = "low-vlan-id=5",
                                              .calls = lines(encapsulation("outer-range1-low", "5", "low-vlan-id"),
                                                             encapsulation("outer-tag-type", "match-dot1q",
                                                                           "low-vlan-id")),
                                              .failures = ".r"},
                                         Case{.name = "low_delete_takes_the_container",
                                              .function = kLow,
                                              .tree = "low-vlan-id=5 @delete",
                                              .calls = lines(encapsulation("", "-", "low-vlan-id")),
                                              .failures = "r"},
                                         Case{.name = "high_read",
                                              .function = kHigh,
                                              .tree = "high-vlan-id=9",
                                              .kinds = kReads,
                                              .calls = lines(encapsulation("outer-range1-high", "9", "-")),
                                              .failures = "r"},
                                         Case{.name = "high_write",
                                              .function = kHigh,
                                              .tree = "high-vlan-id=9",
                                              .calls = lines(encapsulation("outer-range1-high", "9", "high-vlan-id")),
                                              .failures = "r"},
                                         Case{.name = "high_delete_takes_the_leaf",
                                              .function = kHigh,
                                              .tree = "high-vlan-id=9 @remove",
                                              .calls = lines(encapsulation("outer-range1-high", "-", "high-vlan-id")),
                                              .failures = "r"}),
                         case_name);

const Function kList = FUNCTION(oc2_vex_singletag_list_cfg);

const std::string kListEnd = lines(encapsulation("outer-tag-type", "match-dot1q", "config"),
                                   encapsulation("outer-range1-high", "4097", "config"));
const std::string kTooMany = "Number of VLAN IDs provided more than max(9).";

INSTANTIATE_TEST_SUITE_P(List, SingleTagged,
                         testing::Values(Case{.name = "one",
                                              .function = kList,
                                              .tree = list_tree("vlan-ids", 1),
                                              .calls = list_adds("outer-range1-low", 1, "config") + kListEnd,
                                              .failures = "ssr"},
                                         Case{.name = "in_the_order_of_the_tree_with_duplicates",
                                              .function = kList,
                                              .tree = "config { vlan-ids=30 vlan-ids=10 vlan-ids=30 }",
                                              .calls = lines(encapsulation("outer-range1-low", "30", "config"),
                                                             encapsulation("additional-range1-low", "10", "config"),
                                                             encapsulation("additional-range2-low", "30", "config")) +
                                                       kListEnd,
                                              .failures = "ssssr"},
                                         Case{.name = "nine",
                                              .function = kList,
                                              .tree = list_tree("vlan-ids", 9),
                                              .calls = list_adds("outer-range1-low", 9, "config") + kListEnd,
                                              .failures = "sssssssssss"},
                                         Case{.name = "ten",
                                              .function = kList,
                                              .tree = list_tree("vlan-ids", 10),
                                              .calls = lines(strdup(kTooMany, "YFW_MAP"), "error_path"),
                                              .result = CERR_INVALID_VALUE,
                                              .errors = lines("ERR Number of VLAN IDs provided more than max."),
                                              .error_message = kTooMany},
                                         Case{.name = "none",
                                              .function = kList,
                                              .tree = "config",
                                              .calls = kRefusedEmptyList,
                                              .result = CERR_INVALID_VALUE,
                                              .errors = lines("ERR Edit request with 0 VLAN IDs in request."),
                                              .error_message = "Edit request without VLAN IDs."},
                                         Case{.name = "not_to_be_visited",
                                              .function = kList,
                                              .tree = list_tree("vlan-ids", 2),
                                              .calls = kRefusedEmptyList,
                                              .result = CERR_INVALID_VALUE,
                                              .errors = lines("ERR Edit request with 0 VLAN IDs in request."),
                                              .error_message = "Edit request without VLAN IDs.",
                                              .count = 0},
                                         Case{.name = "counted_but_without_children",
                                              .function = kList,
                                              .tree = "config { }",
                                              .calls = kListEnd,
                                              .failures = "sr",
                                              .count = 1},
                                         Case{.name = "child_without_tag",
                                              .function = kList,
                                              .tree = "config { vlan-ids=1 x=2 @notag vlan-ids=3 }",
                                              .calls = lines(encapsulation("outer-range1-low", "1", "config"),
                                                             "error_path"),
                                              .failures = "s",
                                              .result = CERR_UNSUPPORTED,
                                              .errors = lines("ERR Tag name is not available!"),
                                              .ends = false},
                                         Case{.name = "child_with_another_tag",
                                              .function = kList,
                                              .tree = "config { outer-vlan-id=1 vlan-ids=3 }",
                                              .calls = lines(strdup("outer-vlan-id", "YFW MAP"), "error_path"),
                                              .result = CERR_UNSUPPORTED,
                                              .errors = lines("ERR Invalid tag name outer-vlan-id"),
                                              .error_tag = "outer-vlan-id",
                                              .ends = false},
                                         Case{.name = "read",
                                              .function = kList,
                                              .tree = list_tree("vlan-ids", 2, "", "config=own"),
                                              .kinds = kReads,
                                              .calls = list_fetch("outer-range1-low", "outer-tag-type", "own"),
                                              .failures = "sssssssssr"},
                                         Case{.name = "read_without_children",
                                              .function = kList,
                                              .tree = "config",
                                              .kinds = kReads,
                                              .calls = list_fetch("outer-range1-low", "outer-tag-type", "-"),
                                              .failures = "sssssssssr"},
                                         Case{.name = "read_asks_for_no_tags",
                                              .function = kList,
                                              .tree = "config { x @notag y=1 }",
                                              .kinds = kReads,
                                              .calls = list_fetch("outer-range1-low", "outer-tag-type", "-"),
                                              .failures = "sssssssssr"},
                                         Case{.name = "delete",
                                              .function = kList,
                                              .tree = "config @delete",
                                              .calls = lines(encapsulation("", "-", "config")),
                                              .failures = "r"},
                                         Case{.name = "delete_with_children",
                                              .function = kList,
                                              .tree = list_tree("vlan-ids", 12, "", "config @remove"),
                                              .calls = lines(encapsulation("", "-", "config")),
                                              .failures = "r"},
                                         Case{.name = "stub_read",
                                              .function = FUNCTION(singletag_list_cfg_vlanid_stub),
                                              .tree = "vlan-ids=1",
                                              .kinds = {kRead, kReadState, kEdit}},
                                         Case{.name = "stub_delete",
                                              .function = FUNCTION(singletag_list_cfg_vlanid_stub),
                                              .tree = "vlan-ids=1 @delete"}),
                         case_name);

// The two messages of the classification are traced by the translation and by the check, each under its own name.
TEST(SingleTaggedTrace, tells_how_the_sub_interface_was_classified) {
  for (const bool is_l2 : {true, false}) {
    Recorder framework;
    (is_l2 ? l2 : l3)(framework);
    Tree tree("vlan-id=100");
    oc2_vex_singletag_cfg_vlanid(framework.ctx(), tree.root(), framework.output());
    EXPECT_EQ(framework.trace(),
              lines("TRC oc2_vex_singletag_cfg_vlanid: Start",
                    std::string("TRC oc2_vex_singletag_cfg_vlanid:  is subintf l2 ") + (is_l2 ? "TRUE" : "FALSE"),
                    "TRC oc2_vex_singletag_cfg_vlanid: End"));
  }
}

TEST(SingleTaggedTrace, tells_of_a_list_without_children) {
  for (const uint32_t kind : {kRead, kEdit}) {
    Recorder framework(kind);
    Tree tree(kind == kEdit ? "config @delete" : "config");
    oc2_vex_singletag_list_cfg(framework.ctx(), tree.root(), 0, framework.output());
    EXPECT_EQ(framework.trace(),
              lines("TRC oc2_vex_singletag_list_cfg: Start", "TRC oc2_vex_singletag_list_cfg: No subtrees",
                    "TRC oc2_vex_singletag_list_cfg: End"));
  }
}

// The error line comes before the text is stored, the text before the error path, and "End" last.
TEST(SingleTaggedTrace, refuses_in_order) {
  Recorder framework;
  framework.own(framework.state.error_message, "an older text");
  framework.trace_buffer(false);
  Tree tree(list_tree("vlan-ids", 10));
  oc2_vex_singletag_list_cfg(framework.ctx(), tree.root(), 10, framework.output());
  const std::string all = framework.all_calls();
  const auto at = [&all](const std::string& text) { return all.find(text); };
  ASSERT_NE(at("more than max."), std::string::npos) << all;
  EXPECT_LT(at("more than max."), at("free text='an older text'")) << all;
  EXPECT_LT(at("free text='an older text'"), at("strdup text='Number of VLAN IDs")) << all;
  EXPECT_LT(at("strdup text='Number of VLAN IDs"), at("error_path")) << all;
  EXPECT_LT(at("error_path"), at(",End")) << all;
}

TEST(SingleTaggedTables, name_the_nine_leaves_of_an_outer_list) {
  std::string table;
  for (int i = 0; i < 9; ++i) table += std::string(vlan_id_outer_list_native_path[i]) + "\n";
  const std::string prefix = "interface-configurations/interface-configuration/ethernet-service/encapsulation/";
  EXPECT_EQ(
      table,
      lines(prefix + "outer-range1-low", prefix + "additional-range1-low", prefix + "additional-range2-low",
            prefix + "additional-range3-low", prefix + "additional-range4-low", prefix + "additional-range5-low",
            prefix + "additional-range6-low", prefix + "additional-range7-low", prefix + "additional-range8-low"));
  EXPECT_EQ(vlan_id_outer_list_native_path[9], nullptr);
}

// Only an edit asks whether a stub's leaf is deleted.
TEST(SingleTaggedStub, asks_whether_its_leaf_is_deleted) {
  for (const uint32_t kind : {kRead, kEdit, kReadState}) {
    Recorder framework(kind);
    Tree tree("vlan-ids=1");
    singletag_list_cfg_vlanid_stub(framework.ctx(), tree.root(), framework.output());
    EXPECT_EQ(framework.all_calls().find("is_request_delete node=vlan-ids") != std::string::npos, kind == kEdit);
  }
}

}  // namespace
}  // namespace translations
