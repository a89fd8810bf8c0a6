// Native encapsulation details to the OpenConfig VLAN state of a sub-interface.
#include <cstdlib>

#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/identity.h"
#include "vlan_manual_mappings/native.h"

namespace oc_vlan {
namespace {

// Adds state leaves and keeps the result of the last one, which is the result of the translation.
class State {
 public:
  explicit State(const Call& call) : call_(call) {}

  void leaf(const char* path, const char* value) { add(path, value, kPlain); }
  void entry(const char* path, const char* value) { add(path, value, kPlainEntry); }
  void identity(const char* path, const char* value) { result_ = add_identity(call_, path, value, kPlain); }

  cerrno result() const { return result_; }

 private:
  void add(const char* path, const char* value, AddForm form) {
    result_ = add_path(call_, path, YFW_OPENCONFIG_VLAN_NS, value, nullptr, form);
  }

  const Call& call_;
  cerrno result_ = 0;
};

bool has_tag(const yfw_datatree& node, const char* tag) {
  return same(node.tag, tag);
}

void single_tagged(State& state, const yfw_datatree& details) {
  for (const yfw_datatree& child : children(details)) {
    if (has_tag(child, "tag")) state.leaf(OC_MATCH "single-tagged/state/vlan-id", child.value);
  }
}

void double_tagged(State& state, const yfw_datatree& details) {
  for (const yfw_datatree& stack : children(details)) {
    if (!has_tag(stack, "dot1ad-dot1q-stack")) continue;
    for (const yfw_datatree& tag : children(stack)) {
      if (has_tag(tag, "outer-tag")) state.leaf(OC_MATCH "double-tagged/state/outer-vlan-id", tag.value);
      if (has_tag(tag, "second-tag")) state.leaf(OC_MATCH "double-tagged/state/inner-vlan-id", tag.value);
    }
  }
}

struct Range {
  const char* low;
  const char* high;
};

Range range_of(const yfw_datatree& vlan_range) {
  return {child_text(vlan_range, native::kRangeLow), child_text(vlan_range, native::kRangeHigh)};
}

bool single_id(const Range& range) {
  return same(range.low, range.high);
}

// One tag that a service instance matches. The number of ranges is the device's own count, whatever is listed.
struct Tag {
  const yfw_datatree* node;
  const char* ethertype;
  long ranges;
  Range first;
};

Tag tag_of(const yfw_datatree& node) {
  const char* const ranges = child_text(node, "number-of-ranges");
  const yfw_datatree* const first = first_child(node, native::kVlanRange);
  return {&node, child_text(node, native::kEthertype), ranges != nullptr ? std::strtol(ranges, nullptr, 10) : 0,
          first != nullptr ? range_of(*first) : Range{nullptr, nullptr}};
}

// The tags of all service instances together; those beyond the second are only counted.
struct TagsToMatch {
  const yfw_datatree* nodes[2];
  std::size_t count;
};

TagsToMatch tags_to_match(const yfw_datatree& details) {
  TagsToMatch tags{};
  for (const yfw_datatree& instance : children(details)) {
    if (!has_tag(instance, "service-instance-details")) continue;
    for (const yfw_datatree& child : children(instance)) {
      if (!has_tag(child, native::kTagsToMatch)) continue;
      if (tags.count < std::size(tags.nodes)) tags.nodes[tags.count] = &child;
      ++tags.count;
    }
  }
  return tags;
}

void match_one_tag(State& state, const Tag& tag) {
  if (!same(tag.ethertype, native::kDot1q)) return;
  for (const yfw_datatree& child : children(*tag.node)) {
    if (!has_tag(child, native::kVlanRange)) continue;
    const Range range = range_of(child);
    if (tag.ranges >= 2) {
      // A list is told by the low ends alone.
      state.entry(OC_MATCH "single-tagged-list/state/vlan-ids", range.low);
    } else if (tag.ranges == 1 && single_id(range)) {
      state.leaf(OC_MATCH "single-tagged/state/vlan-id", range.low);
    } else if (tag.ranges == 1) {
      state.leaf(OC_MATCH "single-tagged-range/state/low-vlan-id", range.low);
      state.leaf(OC_MATCH "single-tagged-range/state/high-vlan-id", range.high);
    }
  }
}

// Adds the low end of every range of a tag but the first.
void further_ids(State& state, const char* path, const Tag& tag) {
  const yfw_datatree* const first = first_child(*tag.node, native::kVlanRange);
  for (const yfw_datatree& child : children(*tag.node)) {
    if (&child != first && has_tag(child, native::kVlanRange)) state.entry(path, range_of(child).low);
  }
}

// The further ids of both tags share one list, the outer ones first, whichever of the tags is the list.
void id_list(State& state, const char* path, const char* first_id, const Tag& outer, const Tag& inner) {
  state.entry(path, first_id);
  further_ids(state, path, outer);
  further_ids(state, path, inner);
}

void match_two_tags(State& state, const Tag& outer, const Tag& inner) {
  if (!same(outer.ethertype, native::kDot1ad) || !same(inner.ethertype, native::kDot1q)) return;
  if (outer.ranges >= 2) {
    id_list(state, OC_MATCH "double-tagged-outer-list/state/outer-vlan-ids", outer.first.low, outer, inner);
    if (state.result() == 0) state.leaf(OC_MATCH "double-tagged-outer-list/state/inner-vlan-id", inner.first.low);
  } else if (inner.ranges >= 2) {
    state.leaf(OC_MATCH "double-tagged-inner-list/state/outer-vlan-id", outer.first.low);
    id_list(state, OC_MATCH "double-tagged-inner-list/state/inner-vlan-ids", inner.first.low, outer, inner);
  } else if (!single_id(outer.first)) {
    state.leaf(OC_MATCH "double-tagged-outer-range/state/outer-low-vlan-id", outer.first.low);
    state.leaf(OC_MATCH "double-tagged-outer-range/state/outer-high-vlan-id", outer.first.high);
    state.leaf(OC_MATCH "double-tagged-outer-range/state/inner-vlan-id", inner.first.low);
  } else if (!single_id(inner.first)) {
    state.leaf(OC_MATCH "double-tagged-inner-range/state/outer-vlan-id", outer.first.low);
    state.leaf(OC_MATCH "double-tagged-inner-range/state/inner-low-vlan-id", inner.first.low);
    state.leaf(OC_MATCH "double-tagged-inner-range/state/inner-high-vlan-id", inner.first.high);
  } else {
    state.leaf(OC_MATCH "double-tagged/state/outer-vlan-id", outer.first.low);
    state.leaf(OC_MATCH "double-tagged/state/inner-vlan-id", inner.first.low);
  }
}

void match(State& state, const yfw_datatree& details) {
  const TagsToMatch tags = tags_to_match(details);
  if (tags.count == 1) match_one_tag(state, tag_of(*tags.nodes[0]));
  if (tags.count == 2) match_two_tags(state, tag_of(*tags.nodes[0]), tag_of(*tags.nodes[1]));
}

constexpr ValueName kTpids[] = {{native::kDot1ad, kTpidDot1ad}, {native::kDot1q, kTpidDot1q}};

// What a rewrite does, by the number of tags that it pushes and pops.
struct StackAction {
  std::size_t pushes;
  const char* pops;
  const char* name;
};
constexpr StackAction kStackActions[] = {{0, "1", kPop}, {1, "0", kPush}, {1, "1", kSwap}};

void ingress_mapping(State& state, const yfw_datatree& details) {
  const yfw_datatree* const instance = last_child(details, "service-instance-details");
  if (instance == nullptr) return;
  std::size_t pushes = 0;
  for (const yfw_datatree& child : children(*instance)) {
    if (has_tag(child, "pushe")) ++pushes;
  }
  const char* const pops = child_text(*instance, "tags-popped");
  for (const StackAction& action : kStackActions) {
    if (action.pushes != pushes || !same(action.pops, pops)) continue;
    state.identity(OC_INGRESS_MAPPING "state/vlan-stack-action", action.name);
    if (pushes == 0) return;
    const yfw_datatree& pushed = *first_child(*instance, "pushe");
    // A tag that cannot be told is still added, without a value: the framework then knows of it and leaves it out.
    state.identity(OC_INGRESS_MAPPING "state/tpid", translated(kTpids, child_text(pushed, native::kEthertype)));
    state.leaf(OC_INGRESS_MAPPING "state/vlan-id", child_text(pushed, "vlan-id"));
  }
}

cerrno add_state(const Call& call) {
  const yfw_datatree& details = *call.node;
  const char* const kind = child_text(details, "vlan-encapsulation");
  State state(call);
  if (same(kind, "dot1q")) {
    single_tagged(state, details);
  } else if (same(kind, "dot1ad-dot1q")) {
    double_tagged(state, details);
  } else if (same(kind, "service-instance")) {
    match(state, details);
    ingress_mapping(state, details);
  }
  return state.result();
}

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

cerrno vex2_oc_encapsulationdetails(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count, yfw_datatree* output) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  if (count == 0) {
    OC_VLAN_TRACE(call, "No subtrees");
    return end(call, 0);
  }
  return end(call, add_state(call));
}
