// Native encapsulation and VLAN identifier read back as an OpenConfig match: what each native leaf becomes depends on
// the whole match.
#include "engine/request.h"
#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/paths.h"

namespace oc_vlan {
namespace {

// The OpenConfig leaf, below the match, that a native leaf becomes for one match type.
struct MatchLeaf {
  vlan_match_et type = INVALID;
  const char* path = nullptr;
  AddForm form = kPlain;
};

constexpr MatchLeaf kFirstTag[] = {{SINGLE_TAG, OC_MATCH "single-tagged/config/vlan-id"},
                                   {DOUBLE_TAG, OC_MATCH "double-tagged/config/outer-vlan-id"}};

constexpr MatchLeaf kSecondTag[] = {{DOUBLE_TAG, OC_MATCH "double-tagged/config/inner-vlan-id"}};

constexpr MatchLeaf kOuterLow[] = {
    {SINGLE_TAG, OC_MATCH "single-tagged/config/vlan-id"},
    {SINGLE_TAG_RANGE, OC_MATCH "single-tagged-range/config/low-vlan-id"},
    {SINGLE_TAG_LIST, OC_MATCH "single-tagged-list/config/vlan-ids", kPlainEntry},
    {DOUBLE_TAG, OC_MATCH "double-tagged/config/outer-vlan-id"},
    {DOUBLE_TAG_INNER_LIST, OC_MATCH "double-tagged-inner-list/config/outer-vlan-id"},
    {DOUBLE_TAG_OUTER_LIST, OC_MATCH "double-tagged-outer-list/config/outer-vlan-ids", kPlainEntry},
    {DOUBLE_TAG_INNER_RANGE, OC_MATCH "double-tagged-inner-range/config/outer-vlan-id"},
    {DOUBLE_TAG_OUTER_RANGE, OC_MATCH "double-tagged-outer-range/config/outer-low-vlan-id"}};

constexpr MatchLeaf kOuterHigh[] = {
    {SINGLE_TAG_RANGE, OC_MATCH "single-tagged-range/config/high-vlan-id"},
    {DOUBLE_TAG_OUTER_RANGE, OC_MATCH "double-tagged-outer-range/config/outer-high-vlan-id"}};

constexpr MatchLeaf kInnerLow[] = {
    {DOUBLE_TAG, OC_MATCH "double-tagged/config/inner-vlan-id"},
    {DOUBLE_TAG_INNER_LIST, OC_MATCH "double-tagged-inner-list/config/inner-vlan-ids", kPlainEntry},
    {DOUBLE_TAG_OUTER_LIST, OC_MATCH "double-tagged-outer-list/config/inner-vlan-id"},
    {DOUBLE_TAG_INNER_RANGE, OC_MATCH "double-tagged-inner-range/config/inner-low-vlan-id"},
    {DOUBLE_TAG_OUTER_RANGE, OC_MATCH "double-tagged-outer-range/config/inner-vlan-id"}};

constexpr MatchLeaf kInnerHigh[] = {
    {DOUBLE_TAG_INNER_RANGE, OC_MATCH "double-tagged-inner-range/config/inner-high-vlan-id"}};

constexpr MatchLeaf kAdditional[] = {
    {SINGLE_TAG_LIST, OC_MATCH "single-tagged-list/config/vlan-ids", kPlainEntry},
    {DOUBLE_TAG_INNER_LIST, OC_MATCH "double-tagged-inner-list/config/inner-vlan-ids", kPlainEntry},
    {DOUBLE_TAG_OUTER_LIST, OC_MATCH "double-tagged-outer-list/config/outer-vlan-ids", kPlainEntry}};

cerrno read_back(const Call& call, vlan_match_et (*match_type)(yfw_map_ctx*), std::span<const MatchLeaf> leaves) {
  if (!begin(call)) return CERR_INVALID_ARGS;
  if (read_scope_closed(call.ctx)) return end(call, 0);
  const vlan_match_et type = match_type(call.ctx);
  for (const MatchLeaf& leaf : leaves) {
    if (leaf.type == type) {
      return end(call, add_path(call, leaf.path, YFW_OPENCONFIG_VLAN_NS, call.node->value, nullptr, leaf.form));
    }
  }
  return end(call, 0);
}

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

#define READ_BACK(function, match_type, leaves)                                       \
  cerrno function(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) { \
    return read_back({{ctx, __func__}, node, output}, match_type, leaves);            \
  }

READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlansubconfiguration_vlanidentifier_firsttag,
          check_l3_vlan_match_type, kFirstTag)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_vlansubconfiguration_vlanidentifier_secondtag,
          check_l3_vlan_match_type, kSecondTag)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_outerrange1low,
          check_l2_vlan_match_type, kOuterLow)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_outerrange1high,
          check_l2_vlan_match_type, kOuterHigh)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_innerrange1low,
          check_l2_vlan_match_type, kInnerLow)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_innerrange1high,
          check_l2_vlan_match_type, kInnerHigh)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange1low,
          check_l2_vlan_match_type, kAdditional)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange2low,
          check_l2_vlan_match_type, kAdditional)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange3low,
          check_l2_vlan_match_type, kAdditional)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange4low,
          check_l2_vlan_match_type, kAdditional)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange5low,
          check_l2_vlan_match_type, kAdditional)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange6low,
          check_l2_vlan_match_type, kAdditional)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange7low,
          check_l2_vlan_match_type, kAdditional)
READ_BACK(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_encapsulation_additionalrange8low,
          check_l2_vlan_match_type, kAdditional)
