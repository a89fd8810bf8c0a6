// The table of exceptions.
#include "property/model/exceptions.h"

#include <algorithm>

namespace property {

namespace {

std::size_t size_of(const Config& leaves, const char* leaf) {
  const auto found = leaves.find(leaf);
  return found == leaves.end() ? 0 : found->second.size();
}

bool has(const Config& leaves, const char* leaf) {
  return size_of(leaves, leaf) > 0;
}

constexpr char kIds[] = "single-tagged-list/config/vlan-ids";
constexpr char kLow[] = "single-tagged-range/config/low-vlan-id";
constexpr char kHigh[] = "single-tagged-range/config/high-vlan-id";
constexpr char kOuter[] = "double-tagged/config/outer-vlan-id";
constexpr char kInner[] = "double-tagged/config/inner-vlan-id";
constexpr char kInnerListOuter[] = "double-tagged-inner-list/config/outer-vlan-id";
constexpr char kInnerListIds[] = "double-tagged-inner-list/config/inner-vlan-ids";
constexpr char kOuterListIds[] = "double-tagged-outer-list/config/outer-vlan-ids";
constexpr char kOuterListInner[] = "double-tagged-outer-list/config/inner-vlan-id";
constexpr char kInnerRangeOuter[] = "double-tagged-inner-range/config/outer-vlan-id";
constexpr char kInnerRangeLow[] = "double-tagged-inner-range/config/inner-low-vlan-id";
constexpr char kInnerRangeHigh[] = "double-tagged-inner-range/config/inner-high-vlan-id";
constexpr char kOuterRangeLow[] = "double-tagged-outer-range/config/outer-low-vlan-id";
constexpr char kOuterRangeHigh[] = "double-tagged-outer-range/config/outer-high-vlan-id";
constexpr char kOuterRangeInner[] = "double-tagged-outer-range/config/inner-vlan-id";
constexpr char kAction[] = "config/vlan-stack-action";
constexpr char kMappedId[] = "config/vlan-id";
constexpr char kTpid[] = "config/tpid";
constexpr char kMode[] = "interface-mode";
constexpr char kTrunk[] = "trunk-vlans";

// The tag types that make out a double tag come with the ids of both tags.
bool lacks_a_tag(const Config& leaves) {
  const bool outer = has(leaves, kOuter) || has(leaves, kInnerListOuter) || has(leaves, kOuterListIds) ||
                     has(leaves, kInnerRangeOuter) || has(leaves, kOuterRangeLow);
  const bool inner = has(leaves, kInner) || has(leaves, kInnerListIds) || has(leaves, kOuterListInner) ||
                     has(leaves, kInnerRangeLow) || has(leaves, kOuterRangeInner);
  const bool high = has(leaves, kInnerRangeHigh) || has(leaves, kOuterRangeHigh);
  return (outer || inner || high) && !(outer && inner);
}

std::vector<Exception> make_exceptions() {
  return {
      {"single-tagged list of one id",
       Unit::match,
       [](const Config& leaves) { return size_of(leaves, kIds) == 1; },
       "it reads back as the low id of a range whose high id is missing",
       "single-tagged",
       "a list of one id reads back as half a range",
       {{kIds, {"100"}}}},
      {"range without its high id",
       Unit::match,
       [](const Config& leaves) { return has(leaves, kLow) && !has(leaves, kHigh); },
       "it reads back as single-tagged",
       "single-tagged, or both ids of the range",
       "half a range reads back as single-tagged",
       {{kLow, {"100"}}}},
      {"range without its low id",
       Unit::match,
       [](const Config& leaves) { return has(leaves, kHigh) && !has(leaves, kLow); },
       "nothing of it reads back: the tag type is set along with the low id",
       "both ids of the range",
       "a range reads back only with its low id",
       {{kHigh, {"200"}}}},
      {"half a double tag",
       Unit::match,
       lacks_a_tag,
       "at most the id that is there reads back, as double-tagged: a double tag is known by the types of both tags, "
       "which "
       "are set along with their ids",
       "the ids of both tags",
       "a double tag reads back only with the ids of both tags",
       {{kOuter, {"100"}}}},
      {"inner list of one id",
       Unit::match,
       [](const Config& leaves) { return size_of(leaves, kInnerListIds) == 1 && has(leaves, kInnerListOuter); },
       "it reads back as double-tagged",
       "double-tagged",
       "an inner list of one id reads back as double-tagged",
       {{kInnerListOuter, {"100"}}, {kInnerListIds, {"200"}}}},
      {"outer list of one id",
       Unit::match,
       [](const Config& leaves) { return size_of(leaves, kOuterListIds) == 1 && has(leaves, kOuterListInner); },
       "it reads back as double-tagged",
       "double-tagged",
       "an outer list of one id reads back as double-tagged",
       {{kOuterListIds, {"100"}}, {kOuterListInner, {"200"}}}},
      {"inner range without its high id",
       Unit::match,
       [](const Config& leaves) {
         return has(leaves, kInnerRangeOuter) && has(leaves, kInnerRangeLow) && !has(leaves, kInnerRangeHigh);
       },
       "it reads back as double-tagged",
       "double-tagged, or both ids of the range",
       "an inner range without its high id reads back as double-tagged",
       {{kInnerRangeOuter, {"100"}}, {kInnerRangeLow, {"200"}}}},
      {"outer range without its high id",
       Unit::match,
       [](const Config& leaves) {
         return has(leaves, kOuterRangeLow) && has(leaves, kOuterRangeInner) && !has(leaves, kOuterRangeHigh);
       },
       "it reads back as double-tagged",
       "double-tagged, or both ids of the range",
       "an outer range without its high id reads back as double-tagged",
       {{kOuterRangeLow, {"100"}}, {kOuterRangeInner, {"200"}}}},
      {"inner range with several outer ids",
       Unit::match,
       [](const Config& leaves) { return size_of(leaves, kInnerRangeOuter) > 1; },
       "the last of them is kept",
       "one outer id",
       "of several outer ids the last is kept",
       {{kInnerRangeOuter, {"100", "101"}}, {kInnerRangeLow, {"200"}}, {kInnerRangeHigh, {"300"}}}},
      {"POP with a tag",
       Unit::ingress_mapping,
       [](const Config& leaves) {
         return has(leaves, kAction) && leaves.at(kAction).front() == "POP" &&
                (has(leaves, kMappedId) || has(leaves, kTpid));
       },
       "the tag is written and does not read back",
       "POP alone",
       "a tag's type and id read back only with the actions PUSH and SWAP",
       {{kAction, {"POP"}}, {kMappedId, {"100"}}}},
      {"tag without an action",
       Unit::ingress_mapping,
       [](const Config& leaves) { return !has(leaves, kAction) && (has(leaves, kMappedId) || has(leaves, kTpid)); },
       "the tag is written and does not read back",
       "vlan-stack-action in the same request",
       "a tag's type and id read back only with the actions PUSH and SWAP",
       {{kMappedId, {"100"}}}},
      {"TRUNK without trunk-vlans",
       Unit::switched,
       [](const Config& leaves) {
         return has(leaves, kMode) && leaves.at(kMode).front() == "TRUNK" && !has(leaves, kTrunk);
       },
       "neither the mode nor native-vlan reads back: the trunk's tag type is set along with its entries",
       "trunk-vlans in the same request, 1..4094 for all",
       "mode TRUNK and native-vlan read back only where trunk-vlans are set",
       {{kMode, {"TRUNK"}}}},
  };
}

}  // namespace

const std::vector<Exception>& exceptions() {
  static const std::vector<Exception> table = make_exceptions();
  return table;
}

std::vector<const Exception*> exceptions_of(Unit unit, const Config& leaves) {
  std::vector<const Exception*> met;
  for (const Exception& exception : exceptions()) {
    if (exception.unit == unit && exception.applies(leaves)) met.push_back(&exception);
  }
  return met;
}

}  // namespace property
