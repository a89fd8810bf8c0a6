// Native encapsulation and VLAN identifier read back as OpenConfig matches.
#include <map>

#include "plugin/translations/case.h"

namespace translations {
namespace {

constexpr char kMatch[] = "/interfaces/interface/subinterfaces/subinterface/vlan/match/";
constexpr char kEncapsulation[] = "/interface-configurations/interface-configuration/ethernet-service/encapsulation";
constexpr char kIdentifier[] =
    "/interface-configurations/interface-configuration/vlan-sub-configuration/vlan-identifier";

#define READ_BACK(leaf) FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_##leaf)

const std::vector<std::pair<std::string, Function>> kEncapsulationLeaves{
    {"outer-range1-low", READ_BACK(ethernetservice_encapsulation_outerrange1low)},
    {"outer-range1-high", READ_BACK(ethernetservice_encapsulation_outerrange1high)},
    {"inner-range1-low", READ_BACK(ethernetservice_encapsulation_innerrange1low)},
    {"inner-range1-high", READ_BACK(ethernetservice_encapsulation_innerrange1high)},
    {"additional-range1-low", READ_BACK(ethernetservice_encapsulation_additionalrange1low)},
    {"additional-range2-low", READ_BACK(ethernetservice_encapsulation_additionalrange2low)},
    {"additional-range3-low", READ_BACK(ethernetservice_encapsulation_additionalrange3low)},
    {"additional-range4-low", READ_BACK(ethernetservice_encapsulation_additionalrange4low)},
    {"additional-range5-low", READ_BACK(ethernetservice_encapsulation_additionalrange5low)},
    {"additional-range6-low", READ_BACK(ethernetservice_encapsulation_additionalrange6low)},
    {"additional-range7-low", READ_BACK(ethernetservice_encapsulation_additionalrange7low)},
    {"additional-range8-low", READ_BACK(ethernetservice_encapsulation_additionalrange8low)},
};

const std::vector<std::pair<std::string, Function>> kIdentifierLeaves{
    {"first-tag", READ_BACK(vlansubconfiguration_vlanidentifier_firsttag)},
    {"second-tag", READ_BACK(vlansubconfiguration_vlanidentifier_secondtag)},
};

// The native leaves that make each match, as few as do.
void make_match(Recorder& framework, vlan_match_et type) {
  const std::map<vlan_match_et, std::vector<std::pair<const char*, const char*>>> leaves{
      {INVALID, {}},
      {SINGLE_TAG, {{"outer-tag-type", "match-dot1q"}}},
      {SINGLE_TAG_RANGE, {{"outer-tag-type", "match-dot1q"}, {"outer-range1-high", "9"}}},
      {SINGLE_TAG_LIST, {{"outer-tag-type", "match-dot1q"}, {"additional-range1-low", "9"}}},
      {DOUBLE_TAG, {{"outer-tag-type", "match-dot1ad"}, {"inner-tag-type", "match-dot1q"}}},
      {DOUBLE_TAG_INNER_LIST,
       {{"outer-tag-type", "match-dot1ad"}, {"inner-tag-type", "match-dot1q"}, {"additional-range1-low", "9"}}},
      {DOUBLE_TAG_OUTER_LIST,
       {{"outer-tag-type", "match-dot1ad"},
        {"inner-tag-type", "match-dot1q"},
        {"additional-range1-low", "9"},
        {"outer-range1-high", "4097"}}},
      {DOUBLE_TAG_INNER_RANGE,
       {{"outer-tag-type", "match-dot1ad"}, {"inner-tag-type", "match-dot1q"}, {"inner-range1-high", "9"}}},
      {DOUBLE_TAG_OUTER_RANGE,
       {{"outer-tag-type", "match-dot1ad"}, {"inner-tag-type", "match-dot1q"}, {"outer-range1-high", "9"}}}};
  for (const auto& [name, value] : leaves.at(type)) framework.node_info(kEncapsulation, name, value);
  if (type == SINGLE_TAG) framework.node_info(kIdentifier, "vlan-type", "vlan-type-dot1q");
  if (type == DOUBLE_TAG) {
    framework.node_info(kIdentifier, "vlan-type", "vlan-type-dot1ad");
    framework.node_info(kIdentifier, "second-tag", "9");
  }
}

// What a native leaf becomes: a leaf, "path", or an entry of a leaf-list, "path*".
using Table = std::map<std::pair<std::string, vlan_match_et>, std::string>;

const Table kEncapsulationTable{
    {{"outer-range1-low", SINGLE_TAG}, "single-tagged/config/vlan-id"},
    {{"outer-range1-low", SINGLE_TAG_RANGE}, "single-tagged-range/config/low-vlan-id"},
    {{"outer-range1-low", SINGLE_TAG_LIST}, "single-tagged-list/config/vlan-ids*"},
    {{"outer-range1-low", DOUBLE_TAG}, "double-tagged/config/outer-vlan-id"},
    {{"outer-range1-low", DOUBLE_TAG_INNER_LIST}, "double-tagged-inner-list/config/outer-vlan-id"},
    {{"outer-range1-low", DOUBLE_TAG_OUTER_LIST}, "double-tagged-outer-list/config/outer-vlan-ids*"},
    {{"outer-range1-low", DOUBLE_TAG_INNER_RANGE}, "double-tagged-inner-range/config/outer-vlan-id"},
    {{"outer-range1-low", DOUBLE_TAG_OUTER_RANGE}, "double-tagged-outer-range/config/outer-low-vlan-id"},
    {{"outer-range1-high", SINGLE_TAG_RANGE}, "single-tagged-range/config/high-vlan-id"},
    {{"outer-range1-high", DOUBLE_TAG_OUTER_RANGE}, "double-tagged-outer-range/config/outer-high-vlan-id"},
    {{"inner-range1-low", DOUBLE_TAG}, "double-tagged/config/inner-vlan-id"},
    {{"inner-range1-low", DOUBLE_TAG_INNER_LIST}, "double-tagged-inner-list/config/inner-vlan-ids*"},
    {{"inner-range1-low", DOUBLE_TAG_OUTER_LIST}, "double-tagged-outer-list/config/inner-vlan-id"},
    {{"inner-range1-low", DOUBLE_TAG_INNER_RANGE}, "double-tagged-inner-range/config/inner-low-vlan-id"},
    {{"inner-range1-low", DOUBLE_TAG_OUTER_RANGE}, "double-tagged-outer-range/config/inner-vlan-id"},
    {{"inner-range1-high", DOUBLE_TAG_INNER_RANGE}, "double-tagged-inner-range/config/inner-high-vlan-id"},
    {{"additional", SINGLE_TAG_LIST}, "single-tagged-list/config/vlan-ids*"},
    {{"additional", DOUBLE_TAG_INNER_LIST}, "double-tagged-inner-list/config/inner-vlan-ids*"},
    {{"additional", DOUBLE_TAG_OUTER_LIST}, "double-tagged-outer-list/config/outer-vlan-ids*"},
};

const Table kIdentifierTable{
    {{"first-tag", SINGLE_TAG}, "single-tagged/config/vlan-id"},
    {{"first-tag", DOUBLE_TAG}, "double-tagged/config/outer-vlan-id"},
    {{"second-tag", DOUBLE_TAG}, "double-tagged/config/inner-vlan-id"},
};

std::string told(const Table& table, const std::string& leaf, vlan_match_et type, const std::string& value) {
  const auto row = table.find({leaf.starts_with("additional") ? "additional" : leaf, type});
  if (row == table.end()) return "";
  const bool entry = row->second.back() == '*';
  const std::string path = row->second.substr(0, row->second.size() - (entry ? 1 : 0));
  return lines(add(kMatch + path, "oc", value, "-", entry ? 1 : 0, 0));
}

// The look-ups by which the match is told, whatever they are: their own tests pin them.
std::string looked_up(vlan_match_et type, bool l3) {
  Recorder framework(kRead);
  make_match(framework, type);
  l3 ? check_l3_vlan_match_type(framework.ctx()) : check_l2_vlan_match_type(framework.ctx());
  return framework.calls();
}

struct Side {
  const std::vector<std::pair<std::string, Function>>& leaves;
  const Table& table;
  bool l3;
};

class EncapsulationReadBack : public testing::TestWithParam<vlan_match_et> {};

TEST_P(EncapsulationReadBack, tells_each_leaf_by_the_whole_match) {
  const vlan_match_et type = GetParam();
  for (const Side& side :
       {Side{kEncapsulationLeaves, kEncapsulationTable, false}, Side{kIdentifierLeaves, kIdentifierTable, true}}) {
    for (const auto& [leaf, function] : side.leaves) {
      for (const std::string value : {"10", "4097", "''", "text", "-"}) {
        SCOPED_TRACE(leaf + " " + value);
        const std::string line = told(side.table, leaf, type, value);
        check({.name = "",
               .function = function,
               .tree = value == "-" ? "cfg:leaf" : "cfg:leaf=" + value,
               .kinds = {kRead, kReadState, kEdit},
               .given = [type](Recorder& framework) { make_match(framework, type); },
               .calls = looked_up(type, side.l3) + line,
               .failures = line.empty() ? "" : "r"});
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Matches, EncapsulationReadBack,
                         testing::Values(INVALID, SINGLE_TAG, SINGLE_TAG_RANGE, SINGLE_TAG_LIST, DOUBLE_TAG,
                                         DOUBLE_TAG_INNER_LIST, DOUBLE_TAG_OUTER_LIST, DOUBLE_TAG_INNER_RANGE,
                                         DOUBLE_TAG_OUTER_RANGE),
                         [](const testing::TestParamInfo<vlan_match_et>& info) {
                           return vlan_match_type_string[info.param];
                         });

// A list is put together from several native leaves.
TEST(EncapsulationReadBackList, is_rebuilt_entry_by_entry) {
  Recorder framework(kRead);
  make_match(framework, SINGLE_TAG_LIST);
  Tree low("cfg:outer-range1-low=10");
  Tree second("cfg:additional-range1-low=20");
  Tree third("cfg:additional-range2-low=30");
  kEncapsulationLeaves[0].second(framework.ctx(), low.root(), 0, framework.output());
  kEncapsulationLeaves[4].second(framework.ctx(), second.root(), 0, framework.output());
  kEncapsulationLeaves[5].second(framework.ctx(), third.root(), 0, framework.output());
  const std::string path = std::string(kMatch) + "single-tagged-list/config/vlan-ids";
  const std::string calls = framework.calls();
  for (const std::string id : {"10", "20", "30"}) {
    EXPECT_NE(calls.find(add(path, "oc", id, "-", 1, 0)), std::string::npos) << calls;
  }
}

}  // namespace
}  // namespace translations
