// The shapes that OpenConfig VLAN matches have on their way to native configuration, as data and one function each.
#pragma once

#include "engine/request.h"
#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/native.h"

namespace oc_vlan {

// A leaf copied as it is, removed alone.
cerrno copied_leaf(const Call& call, const char* path);

// A leaf that the handler of its container writes: nothing is added for it alone. The asking form puts the question
// whether the leaf is deleted to the framework, whose trace shows it, and has no use for the answer.
cerrno stub(const Call& call);
cerrno asking_stub(const Call& call);

// A VLAN id leaf with the leaf that says what kind of tag it is. Deleting the id removes the whole container.
struct LowPair {
  const char* id;
  const char* tag_type;  // null where another leaf's pair sets it
  const char* tag_type_text;
  const char* container;
};
cerrno low_pair(const Call& call, const LowPair& pair);

// The same pair beside a list that must outlive it: deleting the id removes only the pair's own two leaves.
cerrno lone_pair(const Call& call, const LowPair& pair);

// A VLAN id whose place depends on whether the sub-interface is L2.
struct ClassifiedId {
  LowPair l2;
  LowPair l3;
};
cerrno classified_id(const Call& call, const ClassifiedId& id);

// A config container whose leaf-list is spread over numbered native leaves, all placed in one pass.
struct ListContainer {
  const char* member;        // tag of a list member
  const char* companion;     // tag of a child with its own handler; null when there is none
  uint32_t max_children;     // at most ten: the size of `paths`
  const char* const* paths;  // native leaves of the members, in order
  const char* tag_type;      // native leaf and its text
  const char* tag_type_text;
  const char* marker;  // native leaf that marks a list; null when the list has none
  void (*log_too_many)(const Frame& frame);
  const char* too_many;  // text for the requester
};
cerrno list_container(const Call& call, uint32_t count, const ListContainer& list);

// Pairs of the encapsulation container.
inline constexpr LowPair kSingleOuterPair{native::kOuterLow.path, native::kOuterTagType.path, native::kMatchDot1q,
                                          native::kEncapsulation};
inline constexpr LowPair kDoubleOuterPair{native::kOuterLow.path, native::kOuterTagType.path, native::kMatchDot1ad,
                                          native::kEncapsulation};
inline constexpr LowPair kInnerPair{native::kInnerLow.path, native::kInnerTagType.path, native::kMatchDot1q,
                                    native::kEncapsulation};

}  // namespace oc_vlan
