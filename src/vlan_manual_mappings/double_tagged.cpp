// OpenConfig double-tagged matches to native configuration: an 802.1ad outer tag over an 802.1Q inner tag.
#include "vlan_manual_mappings/match_shapes.h"

using namespace oc_vlan;

const char* const vlan_id_inner_list_native_path[10] = {native::kInnerLow.path,         native::kAdditionalLow[0].path,
                                                        native::kAdditionalLow[1].path, native::kAdditionalLow[2].path,
                                                        native::kAdditionalLow[3].path, native::kAdditionalLow[4].path,
                                                        native::kAdditionalLow[5].path, native::kAdditionalLow[6].path,
                                                        native::kAdditionalLow[7].path, nullptr};

namespace oc_vlan {
namespace {

constexpr ClassifiedId kOuterId{
    .l2 = kDoubleOuterPair,
    .l3 = {native::kFirstTag.path, native::kVlanType.path, native::kVlanTypeDot1ad, native::kVlanIdentifier}};

constexpr ClassifiedId kInnerId{.l2 = kInnerPair,
                                .l3 = {native::kSecondTag.path, nullptr, nullptr, native::kVlanIdentifier}};

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
                                   .tag_type = native::kInnerTagType.path,
                                   .tag_type_text = native::kMatchDot1q,
                                   .marker = nullptr,
                                   .log_too_many = log_too_many_inner,
                                   .too_many = "Number of Inner VLAN IDs provided more than max(9)."};

constexpr ListContainer kOuterList{.member = "outer-vlan-ids",
                                   .companion = "inner-vlan-id",
                                   .max_children = 10,
                                   .paths = vlan_id_outer_list_native_path,
                                   .tag_type = native::kOuterTagType.path,
                                   .tag_type_text = native::kMatchDot1ad,
                                   .marker = native::kOuterHigh.path,
                                   .log_too_many = log_too_many_outer,
                                   .too_many = "Number of Outer VLAN IDs provided more than max(9)."};

}  // namespace
}  // namespace oc_vlan

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
  return copied_leaf({{ctx, __func__}, node, output}, native::kInnerHigh.path);
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
  return copied_leaf({{ctx, __func__}, node, output}, native::kOuterHigh.path);
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
