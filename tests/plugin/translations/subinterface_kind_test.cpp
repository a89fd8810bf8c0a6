// Classification of sub-interfaces and of native matches.
#include "plugin/translations/match_lines.h"

namespace translations {
namespace {

struct Classification {
  std::string name;
  std::function<void(Recorder&)> given;
  std::string calls;
  cerrno result;
  int flag;  // afterwards; it is -5 before
  std::string trace;
};

class SubinterfaceKind : public testing::TestWithParam<Classification> {};

TEST_P(SubinterfaceKind, is_told_by_the_interface_manager) {
  const Classification& c = GetParam();
  Recorder framework;
  c.given(framework);
  int is_l2 = -5;
  const AllocationCount heap;
  EXPECT_EQ(check_subintf_l2_or_l3(framework.ctx(), &is_l2), c.result);
  EXPECT_EQ(heap.allocations(), 0u);
  EXPECT_EQ(is_l2, c.flag);
  EXPECT_EQ(framework.calls(), c.calls);
  EXPECT_EQ(framework.trace(), c.trace);
}

std::string lookup(const std::string& name) {
  return lines("strncpy caller=check_subintf_l2_or_l3 size=64 source=" + name + " count=64", "imc_find name=" + name);
}

const std::string kTrace = "TRC check_subintf_l2_or_l3: ";

Classification named(const std::string& label, const std::string& name, const std::string& index,
                     const std::string& looked_up) {
  return {label,
          [name, index](Recorder& framework) {
            framework.sub_interface(name.c_str(), index.c_str());
            framework.make_l2();
          },
          lookup(looked_up) + lines("imc_flags handle=7"),
          0,
          1,
          ""};
}

INSTANTIATE_TEST_SUITE_P(
    Table, SubinterfaceKind,
    testing::Values(
        Classification{"l2", l2, lines(kClassify), 0, 1, ""}, Classification{"l3", l3, lines(kClassify), 0, 0, ""},
        Classification{"every_other_flag",
                       [](Recorder& framework) {
                         l2(framework);
                         framework.interface_flags(0xffffefff);
                       },
                       lines(kClassify), 0, 0, ""},
        Classification{"unknown", unknown, lines(kFind), 0, 0, ""},
        Classification{"failing_find",
                       [](Recorder& framework) {
                         l2(framework);
                         framework.answer("imc_find", 0xaaf20005);
                       },
                       lines(kFind), 0, 0, ""},
        Classification{"failing_find_status",
                       [](Recorder& framework) {
                         l2(framework);
                         framework.find_status(3);
                       },
                       lines(kFind), 0, 0, ""},
        Classification{"failing_flags", failing_flags, lines(kClassify), 0xaaf20123, -5,
                       lines(kTrace + "imc_interface_get_flags failed rc " + std::to_string(int(0xaaf20123)) +
                             " : the text of the code")},
        Classification{"failing_flags_status",
                       [](Recorder& framework) {
                         l2(framework);
                         framework.flags_status(4);
                       },
                       lines(kClassify), 0, -5,
                       lines(kTrace + "imc_interface_get_flags failed rc 0 : the text of the code")},
        Classification{"failing_copy",
                       [](Recorder& framework) {
                         l2(framework);
                         framework.answer("strncpy", 34);
                       },
                       lines("strncpy caller=check_subintf_l2_or_l3 size=64 source=Ethernet0_0_1.100 count=64"), 34, -5,
                       lines(kTrace + "yfw_strncpy_s function failed rc 34 : the text of the code")},
        Classification{"no_name", [](Recorder& framework) { framework.sub_interface(nullptr, "100"); }, "", 0, 0, ""},
        Classification{"no_index", [](Recorder& framework) { framework.sub_interface("Ethernet1", nullptr); }, "", 0, 0,
                       ""},
        Classification{"no_request", [](Recorder& framework) { framework.ctx()->req_state = nullptr; }, "", 0, 0, ""},
        named("empty", "", "", "."), named("slashes_of_the_name_only", "/a//b/", "1/2", "_a__b_.1/2"),
        named("just_fits", std::string(58, 'n'), "123", std::string(58, 'n') + ".123"),
        named("cut_by_one", std::string(58, 'n'), "1234", std::string(58, 'n') + ".123"),
        named("long_name", std::string(90, 'n'), "1", std::string(62, 'n')),
        named("long_index", "e", std::string(90, '1'), "e." + std::string(60, '1'))),
    [](const testing::TestParamInfo<Classification>& info) { return info.param.name; });

TEST(SubinterfaceKindDeath, stops_the_process_on_a_null_context) {
  int is_l2 = 0;
  EXPECT_DEATH(check_subintf_l2_or_l3(nullptr, &is_l2), "\\(\\(void \\*\\)0\\) != ctx");
  EXPECT_DEATH(check_l2_vlan_match_type(nullptr), "\\(\\(void \\*\\)0\\) != ctx");
  EXPECT_DEATH(check_l3_vlan_match_type(nullptr), "\\(\\(void \\*\\)0\\) != ctx");
}

TEST(SubinterfaceKindTrace, reaches_both_channels_at_the_trace_level) {
  Recorder framework;
  failing_flags(framework);
  int is_l2 = 0;
  check_subintf_l2_or_l3(framework.ctx(), &is_l2);
  EXPECT_EQ(framework.errors(), "");
  EXPECT_EQ(framework.log_records().size(), 1u);
  EXPECT_EQ(framework.trace_records().size(), 1u);
}

constexpr char kEncapsulation[] = "/interface-configurations/interface-configuration/ethernet-service/encapsulation";
constexpr char kIdentifier[] =
    "/interface-configurations/interface-configuration/vlan-sub-configuration/vlan-identifier";

struct Leaf {
  std::string name;
  const char* value;
};

struct Match {
  std::string name;
  std::vector<Leaf> leaves;
  vlan_match_et type;
};

std::string asked(const std::string& path, const std::vector<std::string>& names) {
  std::string document;
  for (const std::string& name : names) document += node_info(path, name) + "\n";
  return document;
}

class L2Match : public testing::TestWithParam<Match> {};

// What is asked, and in which order, follows from the two tag types.
std::string asked_l2(const Match& match) {
  std::string outer;
  std::string inner;
  for (const Leaf& leaf : match.leaves) {
    if (leaf.name == "outer-tag-type" && leaf.value != nullptr) outer = leaf.value;
    if (leaf.name == "inner-tag-type") inner = leaf.value != nullptr ? leaf.value : "null";
  }
  std::string document = asked(kEncapsulation, {"outer-tag-type", "inner-tag-type"});
  if (outer == "match-dot1q" && inner.empty()) {
    document += asked(kEncapsulation, {"outer-range1-high", "additional-range1-low"});
  }
  if (outer == "match-dot1ad" && inner == "match-dot1q") {
    document += asked(kEncapsulation, {"additional-range1-low", "outer-range1-high", "inner-range1-high"});
  }
  return document;
}

TEST_P(L2Match, is_known_by_its_encapsulation) {
  const Match& match = GetParam();
  Recorder framework(kRead);
  for (const Leaf& leaf : match.leaves) framework.node_info(kEncapsulation, leaf.name, leaf.value);
  const AllocationCount heap;
  const vlan_match_et type = check_l2_vlan_match_type(framework.ctx());
  EXPECT_EQ(heap.allocations(), 0u);
  EXPECT_STREQ(vlan_match_type_string[type], vlan_match_type_string[match.type]);
  EXPECT_EQ(framework.calls(), asked_l2(match));
  EXPECT_EQ(framework.trace(),
            lines("TRC check_l2_vlan_match_type: Start",
                  std::string("TRC check_l2_vlan_match_type: L2 vlan match type ") + vlan_match_type_string[match.type],
                  "TRC check_l2_vlan_match_type: End"));
}

const Leaf kQ{"outer-tag-type", "match-dot1q"};
const Leaf kAd{"outer-tag-type", "match-dot1ad"};
const Leaf kInnerQ{"inner-tag-type", "match-dot1q"};
const Leaf kOuterHigh{"outer-range1-high", "100"};
const Leaf kMarker{"outer-range1-high", "4097"};
const Leaf kInnerHigh{"inner-range1-high", "200"};
const Leaf kMore{"additional-range1-low", "20"};

INSTANTIATE_TEST_SUITE_P(
    Table, L2Match,
    testing::Values(
        Match{"nothing", {}, INVALID}, Match{"no_outer_type", {kInnerQ, kOuterHigh, kMore}, INVALID},
        Match{"single", {kQ}, SINGLE_TAG}, Match{"range", {kQ, kOuterHigh}, SINGLE_TAG_RANGE},
        Match{"list_of_one_is_a_range", {kQ, kMarker}, SINGLE_TAG_RANGE},
        Match{"list", {kQ, kMarker, kMore}, SINGLE_TAG_LIST},
        Match{"list_over_range", {kQ, kOuterHigh, kMore}, SINGLE_TAG_LIST},
        Match{"list_without_marker", {kQ, kMore}, SINGLE_TAG_LIST},
        Match{"single_ignores_inner_high", {kQ, kInnerHigh}, SINGLE_TAG},
        Match{"outer_q_with_inner", {kQ, kInnerQ}, INVALID},
        Match{"outer_ad_without_inner", {kAd, kOuterHigh}, INVALID},
        Match{"inner_ad", {kAd, {"inner-tag-type", "match-dot1ad"}}, INVALID},
        Match{"other_outer", {{"outer-tag-type", "match-untagged"}}, INVALID},
        Match{"other_outer_with_inner", {{"outer-tag-type", "x"}, kInnerQ}, INVALID},
        Match{"empty_outer", {{"outer-tag-type", ""}}, INVALID},
        Match{"outer_without_text", {{"outer-tag-type", nullptr}}, INVALID},
        Match{"inner_without_text", {kAd, {"inner-tag-type", nullptr}}, INVALID},
        Match{"double", {kAd, kInnerQ}, DOUBLE_TAG}, Match{"double_marked", {kAd, kInnerQ, kMarker}, DOUBLE_TAG},
        Match{"outer_range", {kAd, kInnerQ, kOuterHigh}, DOUBLE_TAG_OUTER_RANGE},
        Match{"outer_range_near_marker", {kAd, kInnerQ, {"outer-range1-high", "04097"}}, DOUBLE_TAG_OUTER_RANGE},
        Match{"outer_range_without_text", {kAd, kInnerQ, {"outer-range1-high", nullptr}}, DOUBLE_TAG_OUTER_RANGE},
        Match{"inner_range", {kAd, kInnerQ, kInnerHigh}, DOUBLE_TAG_INNER_RANGE},
        Match{"inner_range_marked", {kAd, kInnerQ, kInnerHigh, kMarker}, DOUBLE_TAG_INNER_RANGE},
        Match{"inner_range_over_outer", {kAd, kInnerQ, kInnerHigh, kOuterHigh}, DOUBLE_TAG_INNER_RANGE},
        Match{"outer_list", {kAd, kInnerQ, kMarker, kMore}, DOUBLE_TAG_OUTER_LIST},
        Match{"outer_list_over_inner_range", {kAd, kInnerQ, kMarker, kMore, kInnerHigh}, DOUBLE_TAG_OUTER_LIST},
        Match{"inner_list", {kAd, kInnerQ, kMore}, DOUBLE_TAG_INNER_LIST},
        Match{"inner_list_with_a_bound", {kAd, kInnerQ, kMore, kOuterHigh}, DOUBLE_TAG_INNER_LIST}),
    [](const testing::TestParamInfo<Match>& info) { return info.param.name; });

class L3Match : public testing::TestWithParam<Match> {};

TEST_P(L3Match, is_known_by_its_vlan_identifier) {
  const Match& match = GetParam();
  Recorder framework(kRead);
  for (const Leaf& leaf : match.leaves) framework.node_info(kIdentifier, leaf.name, leaf.value);
  const vlan_match_et type = check_l3_vlan_match_type(framework.ctx());
  EXPECT_STREQ(vlan_match_type_string[type], vlan_match_type_string[match.type]);
  EXPECT_EQ(framework.calls(), asked(kIdentifier, {"vlan-type", "second-tag"}));
  EXPECT_EQ(framework.trace(),
            lines("TRC check_l3_vlan_match_type: Start",
                  std::string("TRC check_l3_vlan_match_type: L3 vlan match type ") + vlan_match_type_string[match.type],
                  "TRC check_l3_vlan_match_type: End"));
}

INSTANTIATE_TEST_SUITE_P(
    Table, L3Match,
    testing::Values(Match{"nothing", {}, INVALID}, Match{"single", {{"vlan-type", "vlan-type-dot1q"}}, SINGLE_TAG},
                    Match{"double", {{"vlan-type", "vlan-type-dot1ad"}, {"second-tag", "2"}}, DOUBLE_TAG},
                    Match{"q_with_second", {{"vlan-type", "vlan-type-dot1q"}, {"second-tag", "2"}}, INVALID},
                    Match{"ad_without_second", {{"vlan-type", "vlan-type-dot1ad"}}, INVALID},
                    Match{"second_alone", {{"second-tag", "2"}}, INVALID},
                    Match{"another_type", {{"vlan-type", "match-dot1q"}}, INVALID},
                    Match{"type_without_text", {{"vlan-type", nullptr}}, INVALID}),
    [](const testing::TestParamInfo<Match>& info) { return info.param.name; });

TEST(MatchTypes, have_fixed_numbers_and_names) {
  const std::vector<std::string> names{"INVALID",
                                       "SINGLE_TAG",
                                       "SINGLE_TAG_RANGE",
                                       "SINGLE_TAG_LIST",
                                       "DOUBLE_TAG",
                                       "DOUBLE_TAG_INNER_LIST",
                                       "DOUBLE_TAG_OUTER_LIST",
                                       "DOUBLE_TAG_INNER_RANGE",
                                       "DOUBLE_TAG_OUTER_RANGE"};
  for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(vlan_match_type_string[i], names[i]);
  EXPECT_EQ(vlan_match_type_string[9], nullptr);
  EXPECT_EQ(INVALID, 0);
  EXPECT_EQ(DOUBLE_TAG_OUTER_RANGE, 8);
}

}  // namespace
}  // namespace translations
