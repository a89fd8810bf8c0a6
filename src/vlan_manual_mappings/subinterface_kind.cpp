// What the sub-interface in work is: L2 or L3, and which VLAN match its native configuration stands for.
#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/native.h"
#include "vlan_manual_mappings/platform_name.h"

const char* const vlan_match_type_string[10] = {"INVALID",
                                                "SINGLE_TAG",
                                                "SINGLE_TAG_RANGE",
                                                "SINGLE_TAG_LIST",
                                                "DOUBLE_TAG",
                                                "DOUBLE_TAG_INNER_LIST",
                                                "DOUBLE_TAG_OUTER_LIST",
                                                "DOUBLE_TAG_INNER_RANGE",
                                                "DOUBLE_TAG_OUTER_RANGE",
                                                nullptr};

namespace oc_vlan {
namespace {

constexpr std::size_t kSubinterfaceNameSize = 63;

bool present(const Lookup& leaf) {
  return leaf.status == 0;
}

vlan_match_et single_tagged_type(yfw_map_ctx* ctx) {
  const Lookup outer_high = look_up(ctx, native::kOuterHigh);
  const Lookup additional = look_up(ctx, native::kAdditionalLow[0]);
  if (present(additional)) return SINGLE_TAG_LIST;
  return present(outer_high) ? SINGLE_TAG_RANGE : SINGLE_TAG;
}

vlan_match_et double_tagged_type(yfw_map_ctx* ctx) {
  const Lookup additional = look_up(ctx, native::kAdditionalLow[0]);
  const Lookup outer_high = look_up(ctx, native::kOuterHigh);
  const Lookup inner_high = look_up(ctx, native::kInnerHigh);
  const bool marked = same(outer_high.text, native::kListMarker);
  if (present(additional)) return marked ? DOUBLE_TAG_OUTER_LIST : DOUBLE_TAG_INNER_LIST;
  if (present(inner_high)) return DOUBLE_TAG_INNER_RANGE;
  return present(outer_high) && !marked ? DOUBLE_TAG_OUTER_RANGE : DOUBLE_TAG;
}

vlan_match_et l2_type(yfw_map_ctx* ctx) {
  const Lookup outer = look_up(ctx, native::kOuterTagType);
  const Lookup inner = look_up(ctx, native::kInnerTagType);
  if (!present(outer)) return INVALID;
  if (!present(inner)) return same(outer.text, native::kMatchDot1q) ? single_tagged_type(ctx) : INVALID;
  if (same(outer.text, native::kMatchDot1ad) && same(inner.text, native::kMatchDot1q)) return double_tagged_type(ctx);
  return INVALID;
}

vlan_match_et l3_type(yfw_map_ctx* ctx) {
  const Lookup type = look_up(ctx, native::kVlanType);
  const Lookup second = look_up(ctx, native::kSecondTag);
  if (!present(second)) return same(type.text, native::kVlanTypeDot1q) ? SINGLE_TAG : INVALID;
  return same(type.text, native::kVlanTypeDot1ad) ? DOUBLE_TAG : INVALID;
}

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

cerrno check_subintf_l2_or_l3(yfw_map_ctx* ctx, int* is_l2) {
  OC_VLAN_REQUIRE_CONTEXT(ctx, __func__);
  const Frame frame{ctx, __func__};
  const char* const interface = interface_name(ctx);
  const char* const index = ctx->req_state != nullptr ? ctx->req_state->subinterface_index : nullptr;
  if (interface == nullptr || index == nullptr) {
    *is_l2 = 0;
    return 0;
  }

  // A longer name is cut: what the interface manager then does not know counts as not L2.
  Text<kSubinterfaceNameSize> name = platform_name<kSubinterfaceNameSize>(interface);
  name.append(".");
  name.append(index);

  imc_find_request request{};
  const int copied = yfw_strncpy_s(__func__, request.name, sizeof request.name, name.c_str(), sizeof request.name);
  if (copied != 0) {
    const auto result = static_cast<cerrno>(copied);
    const char* const reason = cerr_strerror(result);
    OC_VLAN_TRACE(frame, "yfw_strncpy_s function failed rc %d : %s", copied, reason);
    return result;
  }

  imc_find_reply found{};
  if (imc_interface_find(yfw_ocifmgr_im_conn, 1, &request, &found) != 0 || found.status != 0) {
    *is_l2 = 0;
    return 0;
  }

  imc_flags_reply flags{};
  const cerrno result = imc_interface_get_flags(yfw_ocifmgr_im_conn, 1, &found.handle, &flags);
  if (result != 0 || flags.status != 0) {
    // A failure of the one item alone leaves the caller's flag and counts as success.
    const char* const reason = cerr_strerror(result);
    OC_VLAN_TRACE(frame, "imc_interface_get_flags failed rc %d : %s", static_cast<int>(result), reason);
    return result;
  }
  *is_l2 = (flags.flags & IMC_FLAG_L2_TRANSPORT) != 0 ? 1 : 0;
  return 0;
}

vlan_match_et check_l2_vlan_match_type(yfw_map_ctx* ctx) {
  OC_VLAN_REQUIRE_CONTEXT(ctx, __func__);
  const Frame frame{ctx, __func__};
  OC_VLAN_TRACE(frame, "Start");
  const vlan_match_et type = l2_type(ctx);
  OC_VLAN_TRACE(frame, "L2 vlan match type %s", vlan_match_type_string[type]);
  OC_VLAN_TRACE(frame, "End");
  return type;
}

vlan_match_et check_l3_vlan_match_type(yfw_map_ctx* ctx) {
  OC_VLAN_REQUIRE_CONTEXT(ctx, __func__);
  const Frame frame{ctx, __func__};
  OC_VLAN_TRACE(frame, "Start");
  const vlan_match_et type = l3_type(ctx);
  OC_VLAN_TRACE(frame, "L3 vlan match type %s", vlan_match_type_string[type]);
  OC_VLAN_TRACE(frame, "End");
  return type;
}
