// What all translations have in common, whatever they translate.
#include <gmock/gmock.h>

#include <fstream>

#include "plugin/translations/case.h"

namespace translations {

// The names that the library exports, twice each: as the function and as its text.
const std::vector<Function>& all_functions() {
  static const std::vector<Function> functions{
      FUNCTION(oc2_vex_singletag_cfg_vlanid),
      FUNCTION(oc2_vex_singletag_list_cfg),
      FUNCTION(singletag_list_cfg_vlanid_stub),
      FUNCTION(oc2_vex_singletag_range_cfg_lowvlanid),
      FUNCTION(oc2_vex_singletag_range_cfg_highvlanid),
      FUNCTION(oc2_vex_doubletag_cfg_outervlanid),
      FUNCTION(oc2_vex_doubletag_innervlanid),
      FUNCTION(oc2_vex_doubletag_innerrange_cfg_outervlanid),
      FUNCTION(oc2_vex_doubletag_innerrange_cfg_innerlowvlanid),
      FUNCTION(oc2_vex_doubletag_innerrange_cfg_innerhighvlanid),
      FUNCTION(oc2_vex_doubletag_outerrange_cfg_innervlanid),
      FUNCTION(oc2_vex_doubletag_outerrange_cfg_outerlowvlanid),
      FUNCTION(oc2_vex_doubletag_outerrange_cfg_outerhighvlanid),
      FUNCTION(oc2_vex_doubletag_innerlist_cfg),
      FUNCTION(oc2_vex_doubletag_innerlist_cfg_outervlanid),
      FUNCTION(doubletag_innerlist_cfg_innervlanids_stub),
      FUNCTION(oc2_vex_doubletag_outerlist_cfg),
      FUNCTION(oc2_vex_doubletag_outerlist_cfg_innervlanid),
      FUNCTION(doubletag_outerlist_cfg_outervlanids_stub),
      FUNCTION(oc2_vex_ingress_mapping_cfg_vlanstackaction),
      FUNCTION(oc2_vex_ingress_mapping_cfg_vlanid),
      FUNCTION(oc2_vex_ingress_mapping_cfg_tpid),
      FUNCTION(oc2_vex_match_container_state_leaves),
      FUNCTION(oc2_vex_ingressmapping_container_state_leaves),
      FUNCTION(map_oc_to_vex_l3_vlan),
      FUNCTION(map_vex_to_oc_l3_vlan),
      FUNCTION(oc2_vex_switched_vlan_cfg_nativevlan_and_trunkvlans),
      FUNCTION(oc2_vex_switched_vlan_cfg_interfacemode),
      FUNCTION(oc2_vex_switched_vlan_cfg_accessvlan),
      FUNCTION(switched_vlan_cfg_stub_function),
      FUNCTION(oc2_vex_switched_vlan_state_leaves),
      FUNCTION(oc2_vex_switched_vlan_state_native_vlan),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlansubconfiguration_vlanidentifier_firsttag),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlansubconfiguration_vlanidentifier_secondtag),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_outerrange1low),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_outerrange1high),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_innerrange1low),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_innerrange1high),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange1low),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange2low),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange3low),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange4low),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange5low),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange6low),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange7low),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange8low),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_rewritetype),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_outertagtype),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_outertagvalue),
      FUNCTION(
          ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_nativevlanidentifier_vlanidentifier),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_vlanswitched_mode),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_vlanswitched_accessvlan),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlantrunkconfiguration_vlanswitched_trunkvlans),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfraoper_list_lvla_vlan_interfaces_interface),
      FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfraoper_list_lvla_vlan_trunks_trunk),
      FUNCTION(vex2_oc_encapsulationdetails),
      FUNCTION(vex2_oc_vlanswitched),
      FUNCTION(vex2_oc_native_vlan),
  };
  return functions;
}

namespace {

class AnyTranslation : public testing::TestWithParam<Function> {};

TEST_P(AnyTranslation, stops_the_process_on_a_null_context) {
  Recorder framework;
  Tree tree("leaf=1");
  EXPECT_DEATH(GetParam()(nullptr, tree.root(), 0, framework.output()), "\\(\\(void \\*\\)0\\) != ctx");
  EXPECT_DEATH(GetParam()(nullptr, nullptr, 0, nullptr), "\\(\\(void \\*\\)0\\) != ctx");
}

TEST_P(AnyTranslation, refuses_null_arguments_before_anything_else) {
  const Function& function = GetParam();
  for (const uint32_t kind : {kRead, kEdit, kReadState}) {
    for (const bool null_node : {false, true}) {
      SCOPED_TRACE("kind " + std::to_string(kind) + (null_node ? ", no node" : ", no output"));
      Recorder framework(kind);
      Tree tree("leaf=1 { }");
      EXPECT_EQ(
          function(framework.ctx(), null_node ? nullptr : tree.root(), 1, null_node ? framework.output() : nullptr),
          CERR_INVALID_ARGS);
      EXPECT_EQ(framework.calls(), lines("error_path"));
      EXPECT_EQ(framework.trace(),
                lines("TRC " + function.name() + ": Start", "ERR " + function.name() + ": Invalid arguments passed!"));
      EXPECT_EQ(framework.state.error_tag, nullptr);
      EXPECT_EQ(framework.state.error_message, nullptr);
    }
  }
}

TEST_P(AnyTranslation, refuses_null_arguments_with_both_channels_shut) {
  Recorder framework;
  framework.debug_log(false, false);
  framework.trace_buffer(false);
  EXPECT_EQ(GetParam()(framework.ctx(), nullptr, 0, nullptr), CERR_INVALID_ARGS);
  EXPECT_EQ(framework.calls(), lines("error_path"));
  EXPECT_EQ(framework.log() + framework.trace(), "");
}

// A context that carries no request counts as an edit of an unknown interface, and keeps no error texts.
TEST_P(AnyTranslation, survives_a_context_without_a_request) {
  for (const char* const notation :
       {"leaf=1", "leaf=''", "leaf", "config { vlan-ids=1 outer-vlan-id=2 }", "config { x }", "config @delete"}) {
    SCOPED_TRACE(notation);
    Recorder framework;
    framework.ctx()->req_state = nullptr;
    Tree tree(notation);
    GetParam()(framework.ctx(), tree.root(), tree.root()->subtree_count, framework.output());
    EXPECT_EQ(framework.owned_texts(), 0u);
  }
}

TEST_P(AnyTranslation, survives_children_that_are_announced_but_missing) {
  for (const uint32_t kind : {kRead, kEdit, kReadState}) {
    Recorder framework(kind);
    framework.node_info("/vlan/nodes/node/trunks/trunk", "interface", "Ethernet1");
    Tree tree("config @missing");
    GetParam()(framework.ctx(), tree.root(), 1, framework.output());
    EXPECT_NE(framework.trace(), "");
  }
}

// What writes configuration asks, once and in an edit alone, and so do two of the four stubs, which write nothing.
bool asks_for_a_delete(const std::string& function) {
  if (function.starts_with("oc2_vex_")) return function.find("_state_") == std::string::npos;
  return function == "map_oc_to_vex_l3_vlan" || function == "singletag_list_cfg_vlanid_stub" ||
         function == "switched_vlan_cfg_stub_function";
}

TEST_P(AnyTranslation, asks_whether_its_node_is_deleted_where_it_writes) {
  for (const uint32_t kind : {kRead, kEdit, kReadState}) {
    for (const char* const tree : {"leaf=1", "leaf @delete"}) {
      Recorder framework(kind);
      Tree request(tree);
      GetParam()(framework.ctx(), request.root(), 0, framework.output());
      const std::string all = framework.all_calls();
      const std::size_t first = all.find("is_request_delete node=leaf\n");
      EXPECT_EQ(first != std::string::npos, kind == kEdit && asks_for_a_delete(GetParam().name())) << all;
      EXPECT_EQ(first, all.rfind("is_request_delete ")) << all;
    }
  }
}

// Every strong function that the library exports is one, but walkers, default handlers, checks and the registration.
std::vector<std::string> exported_translations() {
  std::ifstream list(OC_VLAN_SOURCE_DIR "/tests/plugin/exports.txt");
  std::vector<std::string> names;
  std::string binding;
  for (std::string name; list >> binding >> name;) {
    const auto contains = [&name](const char* part) { return name.find(part) != std::string::npos; };
    const bool is_walker =
        contains("_augment_lvl") || name.ends_with("cfg_lvla_ethernetfeatures") || name.ends_with("oper_lvla_vlan");
    const bool is_other = contains("_duck_map_") || name.starts_with("check_") || name.starts_with("yfw_");
    if (binding == "T" && !is_walker && !is_other) names.push_back(name);
  }
  return names;
}

TEST(Translations, are_all_held_to_what_they_have_in_common) {
  std::vector<std::string> names;
  for (const Function& function : all_functions()) names.push_back(function.name());
  EXPECT_THAT(names, testing::UnorderedElementsAreArray(exported_translations()));
}

INSTANTIATE_TEST_SUITE_P(Translations, AnyTranslation, testing::ValuesIn(all_functions()),
                         [](const testing::TestParamInfo<Function>& info) { return info.param.name(); });

}  // namespace
}  // namespace translations
