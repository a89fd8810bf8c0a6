// What the native models call things: the leaves that translations write, look up and read back, and their words.
#pragma once

#include "engine/request.h"
#include "vlan_manual_mappings/paths.h"

namespace oc_vlan::native {

// A configuration leaf: the container in which look-ups find it, its name, and the path under which it is added.
struct Leaf {
  const char* container;
  const char* name;
  const char* path;
};

inline Lookup look_up(yfw_map_ctx* ctx, const Leaf& leaf) {
  return oc_vlan::look_up(ctx, leaf.container, leaf.name);
}

// The L2 containers are added to relative and the others absolute: requesters see both forms in the paths that a read
// fetches.
#define RELATIVE_LEAF(container, name) \
  { "/" container, name, container "/" name }
#define ABSOLUTE_LEAF(container, name) \
  { "/" container, name, "/" container "/" name }

inline constexpr Leaf kOuterTagType = RELATIVE_LEAF(ENCAPSULATION, "outer-tag-type");
inline constexpr Leaf kOuterLow = RELATIVE_LEAF(ENCAPSULATION, "outer-range1-low");
inline constexpr Leaf kOuterHigh = RELATIVE_LEAF(ENCAPSULATION, "outer-range1-high");
inline constexpr Leaf kInnerTagType = RELATIVE_LEAF(ENCAPSULATION, "inner-tag-type");
inline constexpr Leaf kInnerLow = RELATIVE_LEAF(ENCAPSULATION, "inner-range1-low");
inline constexpr Leaf kInnerHigh = RELATIVE_LEAF(ENCAPSULATION, "inner-range1-high");
inline constexpr Leaf kAdditionalLow[] = {
    RELATIVE_LEAF(ENCAPSULATION, "additional-range1-low"), RELATIVE_LEAF(ENCAPSULATION, "additional-range2-low"),
    RELATIVE_LEAF(ENCAPSULATION, "additional-range3-low"), RELATIVE_LEAF(ENCAPSULATION, "additional-range4-low"),
    RELATIVE_LEAF(ENCAPSULATION, "additional-range5-low"), RELATIVE_LEAF(ENCAPSULATION, "additional-range6-low"),
    RELATIVE_LEAF(ENCAPSULATION, "additional-range7-low"), RELATIVE_LEAF(ENCAPSULATION, "additional-range8-low")};

inline constexpr Leaf kRewriteType = RELATIVE_LEAF(REWRITE, "rewrite-type");
inline constexpr Leaf kRewriteTagType = RELATIVE_LEAF(REWRITE, "outer-tag-type");
inline constexpr Leaf kRewriteTagValue = RELATIVE_LEAF(REWRITE, "outer-tag-value");

inline constexpr Leaf kVlanType = ABSOLUTE_LEAF(VLAN_IDENTIFIER, "vlan-type");
inline constexpr Leaf kFirstTag = ABSOLUTE_LEAF(VLAN_IDENTIFIER, "first-tag");
inline constexpr Leaf kSecondTag = ABSOLUTE_LEAF(VLAN_IDENTIFIER, "second-tag");

inline constexpr Leaf kNativeVlan = ABSOLUTE_LEAF(NATIVE_VLAN_IDENTIFIER, "vlan-identifier");
inline constexpr Leaf kNativeVlanType = ABSOLUTE_LEAF(NATIVE_VLAN_IDENTIFIER, "vlan-type");
inline constexpr Leaf kMode = ABSOLUTE_LEAF(VLAN_SWITCHED, "mode");
inline constexpr Leaf kAccessVlan = ABSOLUTE_LEAF(VLAN_SWITCHED, "access-vlan");
inline constexpr Leaf kTrunkVlans = ABSOLUTE_LEAF(VLAN_SWITCHED, "trunk-vla-ns");  // as the native model spells it
inline constexpr Leaf kTrunkTagType = ABSOLUTE_LEAF(VLAN_SWITCHED, "trunk-tag-type");

#undef RELATIVE_LEAF
#undef ABSOLUTE_LEAF

// Containers, as a removal of all that is in them names them.
inline constexpr char kEncapsulation[] = ENCAPSULATION "/";
inline constexpr char kRewrite[] = REWRITE "/";
inline constexpr char kVlanIdentifier[] = "/" VLAN_IDENTIFIER "/";
inline constexpr char kTrunkConfiguration[] = "/" TRUNK_CONFIGURATION "/";
inline constexpr char kVlanSwitched[] = "/" VLAN_SWITCHED "/";

// Values of the tag types of an encapsulation and of a rewrite, and of all other tag types.
inline constexpr char kMatchDot1q[] = "match-dot1q";
inline constexpr char kMatchDot1ad[] = "match-dot1ad";
inline constexpr char kVlanTypeDot1q[] = "vlan-type-dot1q";
inline constexpr char kVlanTypeDot1ad[] = "vlan-type-dot1ad";

// High end of a list, one above the highest VLAN id: not a bound but the sign by which a list is known again.
inline constexpr char kListMarker[] = "4097";

// Values of `rewrite-type` and of `mode`.
inline constexpr char kPush[] = "push1";
inline constexpr char kPop[] = "pop1";
inline constexpr char kTranslate[] = "translate1to1";
inline constexpr char kAccess[] = "access";
inline constexpr char kTrunk[] = "trunk";

// Operational data: tags and their ranges, as encapsulations and trunks both list them.
inline constexpr char kTagsToMatch[] = "tags-to-match";
inline constexpr char kEthertype[] = "ethertype";
inline constexpr char kVlanRange[] = "vlan-range";
inline constexpr char kRangeLow[] = "vlan-id-low";
inline constexpr char kRangeHigh[] = "vlan-id-high";
inline constexpr char kDot1q[] = "dot1q";
inline constexpr char kDot1ad[] = "dot1ad";

}  // namespace oc_vlan::native
