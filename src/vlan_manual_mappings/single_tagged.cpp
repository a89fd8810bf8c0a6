// OpenConfig single-tagged matches to native configuration: one id, a list of at most nine, a range.
#include "vlan_manual_mappings/match_shapes.h"

using namespace oc_vlan;

const char* const vlan_id_outer_list_native_path[10] = {native::kOuterLow.path,         native::kAdditionalLow[0].path,
                                                        native::kAdditionalLow[1].path, native::kAdditionalLow[2].path,
                                                        native::kAdditionalLow[3].path, native::kAdditionalLow[4].path,
                                                        native::kAdditionalLow[5].path, native::kAdditionalLow[6].path,
                                                        native::kAdditionalLow[7].path, nullptr};

namespace oc_vlan {
namespace {

constexpr ClassifiedId kVlanId{
    .l2 = kSingleOuterPair,
    .l3 = {native::kFirstTag.path, native::kVlanType.path, native::kVlanTypeDot1q, native::kVlanIdentifier}};

void log_too_many(const Frame& frame) {
  OC_VLAN_ERROR(frame, "Number of VLAN IDs provided more than max.");
}

constexpr ListContainer kList{.member = "vlan-ids",
                              .companion = nullptr,
                              .max_children = 9,
                              .paths = vlan_id_outer_list_native_path,
                              .tag_type = native::kOuterTagType.path,
                              .tag_type_text = native::kMatchDot1q,
                              .marker = native::kOuterHigh.path,
                              .log_too_many = log_too_many,
                              .too_many = "Number of VLAN IDs provided more than max(9)."};

}  // namespace
}  // namespace oc_vlan

cerrno oc2_vex_singletag_cfg_vlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return classified_id({{ctx, __func__}, node, output}, kVlanId);
}

cerrno oc2_vex_singletag_list_cfg(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count, yfw_datatree* output) {
  return list_container({{ctx, __func__}, node, output}, count, kList);
}

cerrno singletag_list_cfg_vlanid_stub(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return asking_stub({{ctx, __func__}, node, output});
}

cerrno oc2_vex_singletag_range_cfg_lowvlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return low_pair({{ctx, __func__}, node, output}, kSingleOuterPair);
}

cerrno oc2_vex_singletag_range_cfg_highvlanid(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return copied_leaf({{ctx, __func__}, node, output}, native::kOuterHigh.path);
}
