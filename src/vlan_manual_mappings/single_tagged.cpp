// OpenConfig single-tagged matches to native configuration: one id, a list of at most nine, a range.
#include "vlan_manual_mappings/match_shapes.h"

const char* const vlan_id_outer_list_native_path[10] = {
    ENCAPSULATION "outer-range1-low",      ENCAPSULATION "additional-range1-low",
    ENCAPSULATION "additional-range2-low", ENCAPSULATION "additional-range3-low",
    ENCAPSULATION "additional-range4-low", ENCAPSULATION "additional-range5-low",
    ENCAPSULATION "additional-range6-low", ENCAPSULATION "additional-range7-low",
    ENCAPSULATION "additional-range8-low", nullptr};

namespace oc_vlan {
namespace {

constexpr ClassifiedId kVlanId{
    .l2 = kSingleOuterPair,
    .l3 = {VLAN_IDENTIFIER "first-tag", VLAN_IDENTIFIER "vlan-type", "vlan-type-dot1q", VLAN_IDENTIFIER}};

void log_too_many(const Frame& frame) {
  OC_VLAN_ERROR(frame, "Number of VLAN IDs provided more than max.");
}

constexpr ListContainer kList{.member = "vlan-ids",
                              .companion = nullptr,
                              .max_children = 9,
                              .paths = vlan_id_outer_list_native_path,
                              .tag_type = ENCAPSULATION "outer-tag-type",
                              .tag_type_text = kDot1q,
                              .marker = ENCAPSULATION "outer-range1-high",
                              .log_too_many = log_too_many,
                              .too_many = "Number of VLAN IDs provided more than max(9)."};

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

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
  return copied_leaf({{ctx, __func__}, node, output}, ENCAPSULATION "outer-range1-high");
}
