// OpenConfig double-tagged matches to native configuration: an 802.1ad outer tag over an 802.1Q inner tag.
#include "vlan_manual_mappings/match_shapes.h"

const char* const vlan_id_inner_list_native_path[10] = {
    ENCAPSULATION "inner-range1-low",      ENCAPSULATION "additional-range1-low",
    ENCAPSULATION "additional-range2-low", ENCAPSULATION "additional-range3-low",
    ENCAPSULATION "additional-range4-low", ENCAPSULATION "additional-range5-low",
    ENCAPSULATION "additional-range6-low", ENCAPSULATION "additional-range7-low",
    ENCAPSULATION "additional-range8-low", nullptr};

namespace oc_vlan {
namespace {

constexpr ClassifiedId kOuterId{
    .l2 = kDoubleOuterPair,
    .l3 = {VLAN_IDENTIFIER "first-tag", VLAN_IDENTIFIER "vlan-type", "vlan-type-dot1ad", VLAN_IDENTIFIER}};

constexpr ClassifiedId kInnerId{.l2 = kInnerPair,
                                .l3 = {VLAN_IDENTIFIER "second-tag", nullptr, nullptr, VLAN_IDENTIFIER}};

void log_too_many_inner(const Frame& frame) {
  OC_VLAN_ERROR(frame, "Number of Inner VLAN IDs provided more than max.");
}

void log_too_many_outer(const Frame& frame) {
  OC_VLAN_ERROR(frame, "Number of Outer VLAN IDs provided more than max.");
}

// Both limits count children, so a companion that is missing leaves room for a tenth member, which has no native leaf.
constexpr ListContainer kInnerList{.member = "inner-vlan-ids",
                                   .companion = "outer-vlan-id",
                                   .max_children = 10,
                                   .paths = vlan_id_inner_list_native_path,
                                   .tag_type = ENCAPSULATION "inner-tag-type",
                                   .tag_type_text = kDot1q,
                                   .marker = nullptr,
                                   .log_too_many = log_too_many_inner,
                                   .too_many = "Number of Inner VLAN IDs provided more than max(9)."};

constexpr ListContainer kOuterList{.member = "outer-vlan-ids",
                                   .companion = "inner-vlan-id",
                                   .max_children = 10,
                                   .paths = vlan_id_outer_list_native_path,
                                   .tag_type = ENCAPSULATION "outer-tag-type",
                                   .tag_type_text = kDot1ad,
                                   .marker = ENCAPSULATION "outer-range1-high",
                                   .log_too_many = log_too_many_outer,
                                   .too_many = "Number of Outer VLAN IDs provided more than max(9)."};

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

cerrno oc2_vex_doubletag_cfg_outervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return classified_id({{ctx, __func__}, node, output}, kOuterId);
}

cerrno oc2_vex_doubletag_innervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return classified_id({{ctx, __func__}, node, output}, kInnerId);
}

cerrno oc2_vex_doubletag_innerrange_cfg_outervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return low_pair({{ctx, __func__}, node, output}, kDoubleOuterPair);
}

cerrno oc2_vex_doubletag_innerrange_cfg_innerlowvlanid(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                       yfw_datatree* output) {
  return low_pair({{ctx, __func__}, node, output}, kInnerPair);
}

cerrno oc2_vex_doubletag_innerrange_cfg_innerhighvlanid(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                        yfw_datatree* output) {
  return copied_leaf({{ctx, __func__}, node, output}, ENCAPSULATION "inner-range1-high");
}

cerrno oc2_vex_doubletag_outerrange_cfg_innervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return low_pair({{ctx, __func__}, node, output}, kInnerPair);
}

cerrno oc2_vex_doubletag_outerrange_cfg_outerlowvlanid(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                       yfw_datatree* output) {
  return low_pair({{ctx, __func__}, node, output}, kDoubleOuterPair);
}

cerrno oc2_vex_doubletag_outerrange_cfg_outerhighvlanid(yfw_map_ctx* ctx, const yfw_datatree* node,
                                                        yfw_datatree* output) {
  return copied_leaf({{ctx, __func__}, node, output}, ENCAPSULATION "outer-range1-high");
}

cerrno oc2_vex_doubletag_innerlist_cfg(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count,
                                       yfw_datatree* output) {
  return list_container({{ctx, __func__}, node, output}, count, kInnerList);
}

cerrno oc2_vex_doubletag_innerlist_cfg_outervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return low_pair({{ctx, __func__}, node, output}, kDoubleOuterPair);
}

cerrno doubletag_innerlist_cfg_innervlanids_stub(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return stub({{ctx, __func__}, node, output});
}

cerrno oc2_vex_doubletag_outerlist_cfg(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count,
                                       yfw_datatree* output) {
  return list_container({{ctx, __func__}, node, output}, count, kOuterList);
}

cerrno oc2_vex_doubletag_outerlist_cfg_innervlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return lone_pair({{ctx, __func__}, node, output}, kInnerPair);
}

cerrno doubletag_outerlist_cfg_outervlanids_stub(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return stub({{ctx, __func__}, node, output});
}
