// The table of causes.
#include "framework/vlan/causes.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <map>
#include <string_view>

#include "framework/datastore/running.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "yfw-host/data.h"
#include "yfw-host/host.h"

namespace yfw {

namespace {

using Values = std::vector<std::string>;

// Values by the path below the container that they explain together, without the names of modules.
class Leaves {
 public:
  void add(const std::string& path, std::string value) { values_[path].push_back(std::move(value)); }

  const Values& operator[](std::string_view path) const {
    static const Values none;
    const auto found = values_.find(path);
    return found == values_.end() ? none : found->second;
  }
  bool has(std::string_view path) const { return !(*this)[path].empty(); }
  bool has_below(std::string_view path) const {
    const auto found = values_.lower_bound(path);
    return found != values_.end() && std::string_view(found->first).starts_with(path);
  }
  // The value without the name of its module; empty when there is none.
  std::string_view word(std::string_view path) const {
    const Values& values = (*this)[path];
    const std::string_view value = values.empty() ? std::string_view() : std::string_view(values.front());
    return value.substr(value.find(':') + 1);
  }

 private:
  std::map<std::string, Values, std::less<>> values_;
};

constexpr char kMatch[] = "match/";
constexpr char kSingle[] = "match/single-tagged/config/vlan-id";
constexpr char kIds[] = "match/single-tagged-list/config/vlan-ids";
constexpr char kLow[] = "match/single-tagged-range/config/low-vlan-id";
constexpr char kHigh[] = "match/single-tagged-range/config/high-vlan-id";
constexpr char kOuter[] = "match/double-tagged/config/outer-vlan-id";
constexpr char kInner[] = "match/double-tagged/config/inner-vlan-id";
constexpr char kInnerListOuter[] = "match/double-tagged-inner-list/config/outer-vlan-id";
constexpr char kInnerListIds[] = "match/double-tagged-inner-list/config/inner-vlan-ids";
constexpr char kOuterListIds[] = "match/double-tagged-outer-list/config/outer-vlan-ids";
constexpr char kOuterListInner[] = "match/double-tagged-outer-list/config/inner-vlan-id";
constexpr char kInnerRangeOuter[] = "match/double-tagged-inner-range/config/outer-vlan-id";
constexpr char kInnerRangeLow[] = "match/double-tagged-inner-range/config/inner-low-vlan-id";
constexpr char kInnerRangeHigh[] = "match/double-tagged-inner-range/config/inner-high-vlan-id";
constexpr char kOuterRangeLow[] = "match/double-tagged-outer-range/config/outer-low-vlan-id";
constexpr char kOuterRangeHigh[] = "match/double-tagged-outer-range/config/outer-high-vlan-id";
constexpr char kOuterRangeInner[] = "match/double-tagged-outer-range/config/inner-vlan-id";
constexpr char kMapping[] = "ingress-mapping/config/";
constexpr char kAction[] = "ingress-mapping/config/vlan-stack-action";
constexpr char kTagId[] = "ingress-mapping/config/vlan-id";
constexpr char kTpid[] = "ingress-mapping/config/tpid";
constexpr char kRouted[] = "config/vlan-id";
constexpr char kEthernet[] = "ethernet/switched-vlan/config/";
constexpr char kAggregation[] = "aggregation/switched-vlan/config/";

// A leaf that reads back differently, and what stands around it: in the `vlan` of a sub-interface, or in an interface.
struct Situation {
  std::string leaf;  // path below
  Leaves before;
  Leaves expected;
  Leaves after;
  bool is_bundle = false;
  bool is_l2_with_identifier = false;  // holds what only means something to L3 sub-interfaces

  bool in(std::string_view part) const { return std::string_view(leaf).starts_with(part); }
  // VLANs of a bundle are said below `ethernet`, or should be there.
  bool is_misplaced() const {
    return is_bundle && (in(kEthernet) || in(kAggregation)) && expected.has_below(kEthernet);
  }
  // There now, though it neither should be nor was to be seen before.
  bool appeared() const { return !is_misplaced() && !expected.has(leaf) && !before.has(leaf) && after.has(leaf); }
};

// The leaves of a double tag in one of its forms: what says the outer tag, the inner one, and more of either.
struct DoubleTag {
  const char* outer;
  const char* inner;
  const char* high;
};
constexpr std::array<DoubleTag, 5> kDoubleTags{{
    {kOuter, kInner, nullptr},
    {kInnerListOuter, kInnerListIds, nullptr},
    {kOuterListIds, kOuterListInner, nullptr},
    {kInnerRangeOuter, kInnerRangeLow, kInnerRangeHigh},
    {kOuterRangeLow, kOuterRangeInner, kOuterRangeHigh},
}};

// One tag of a double tag is not said, and nothing of its form reads back.
bool is_half_a_double_tag(const Situation& s) {
  return s.in(kMatch) && std::any_of(kDoubleTags.begin(), kDoubleTags.end(), [&s](const DoubleTag& form) {
           const bool outer = s.expected.has(form.outer);
           const bool inner = s.expected.has(form.inner);
           const bool high = form.high != nullptr && s.expected.has(form.high);
           const bool reads = s.after.has(form.outer) || s.after.has(form.inner);
           return (outer || inner || high) && !(outer && inner) && !reads;
         });
}

// A form of one id reads back as the plain double tag of the same ids.
bool reads_as_double_tag(const Situation& s, const char* outer, const char* inner) {
  return s.in(kMatch) && s.expected[outer].size() == 1 && s.expected[inner].size() == 1 &&
         s.after[kOuter] == s.expected[outer] && s.after[kInner] == s.expected[inner];
}

bool has_a_tag(const Leaves& leaves) {
  return leaves.has(kTagId) || leaves.has(kTpid);
}

std::string port_leaf(const Situation& s, const char* leaf) {
  return std::string(s.in(kAggregation) ? kAggregation : kEthernet) + leaf;
}

bool is_port_leaf(const Situation& s, const char* leaf) {
  return s.leaf == port_leaf(s, leaf);
}

bool is_list_of_one(const Situation& s) {
  return s.in(kMatch) && s.expected[kIds].size() == 1 && s.after[kLow] == s.expected[kIds];
}

bool is_low_half(const Situation& s) {
  return s.in(kMatch) && s.expected.has(kLow) && !s.expected.has(kHigh) && s.after[kSingle] == s.expected[kLow];
}

bool is_high_half(const Situation& s) {
  return s.in(kMatch) && s.expected.has(kHigh) && !s.expected.has(kLow) && !s.after.has_below(kMatch);
}

bool is_inner_list_of_one(const Situation& s) {
  return reads_as_double_tag(s, kInnerListOuter, kInnerListIds);
}

bool is_outer_list_of_one(const Situation& s) {
  return reads_as_double_tag(s, kOuterListIds, kOuterListInner);
}

bool is_half_an_inner_range(const Situation& s) {
  return s.in(kMatch) && s.expected.has(kInnerRangeLow) && !s.expected.has(kInnerRangeHigh) &&
         s.after[kInner] == s.expected[kInnerRangeLow];
}

bool is_half_an_outer_range(const Situation& s) {
  return s.in(kMatch) && s.expected.has(kOuterRangeLow) && !s.expected.has(kOuterRangeHigh) &&
         s.after[kOuter] == s.expected[kOuterRangeLow];
}

bool has_many_outer_ids(const Situation& s) {
  const std::size_t kept = std::max(s.after[kInnerRangeOuter].size(), s.after[kOuter].size());
  return s.in(kMatch) && s.expected[kInnerRangeOuter].size() > 1 && kept == 1;
}

bool is_bound_vlan(const Situation& s) {
  const bool tagged = s.expected.has(kSingle) || s.expected.has(kOuter);
  const bool reads = s.after.has(kSingle) || s.after.has(kOuter);
  return (s.in(kMatch) || s.leaf == kRouted) && tagged && !reads && s.after.has(kRouted) && !s.expected.has(kRouted);
}

bool is_beside_identifier(const Situation& s) {
  const bool plain = s.leaf == kSingle || s.leaf == kOuter || s.leaf == kInner;
  return plain && s.is_l2_with_identifier && s.after.has(s.leaf) && s.after[s.leaf] != s.expected[s.leaf];
}

bool is_tag_of_pop(const Situation& s) {
  return s.in(kMapping) && s.expected.word(kAction) == "POP" && s.after.word(kAction) == "POP" &&
         has_a_tag(s.expected) && !has_a_tag(s.after);
}

bool is_tag_without_action(const Situation& s) {
  return s.in(kMapping) && !s.expected.has(kAction) && has_a_tag(s.expected) && !s.after.has_below(kMapping);
}

bool is_tag_there_already(const Situation& s) {
  return (s.leaf == kTagId || s.leaf == kTpid) && s.appeared() && s.expected.has(kAction);
}

bool is_misplaced(const Situation& s) {
  return s.is_misplaced();
}

bool is_trunk_of_nothing(const Situation& s) {
  const bool mode_or_native = is_port_leaf(s, "interface-mode") || is_port_leaf(s, "native-vlan");
  return mode_or_native && s.expected.word(port_leaf(s, "interface-mode")) == "TRUNK" &&
         !s.expected.has(port_leaf(s, "trunk-vlans")) && !s.after.has(port_leaf(s, "interface-mode"));
}

bool is_access_vlan_there_already(const Situation& s) {
  return is_port_leaf(s, "access-vlan") && s.appeared();
}

bool is_native_vlan_there_already(const Situation& s) {
  return is_port_leaf(s, "native-vlan") && s.appeared();
}

bool is_trunk_there_already(const Situation& s) {
  return is_port_leaf(s, "trunk-vlans") && s.appeared();
}

struct Cause {
  bool (*applies)(const Situation& s);
  const char* why;
};

constexpr Cause kCauses[] = {
#define EXCEPTION(condition, advice) {condition, advice},
#include "framework/vlan/vlan_rules.def"
};

constexpr char kUnread[] =
    "what is there natively and did not read back takes part in what reads back now; ask for all of it with operation "
    "replace";

// The `vlan` of a sub-interface or the entry of an interface around a leaf.
const lyd_node* surroundings_of(const lyd_node* leaf) {
  for (const lyd_node* each = leaf; each != nullptr; each = lyd_parent(each)) {
    if (named(each, "interface") || (named(each, "vlan") && named(lyd_parent(each), "subinterface"))) return each;
  }
  return nullptr;
}

void collect(const lyd_node* node, const std::string& path, Leaves& leaves) {
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (child->schema == nullptr || (child->flags & LYD_DEFAULT) != 0 || named(child, "subinterfaces")) continue;
    const std::string below = path.empty() ? LYD_NAME(child) : fmt::format("{}/{}", path, LYD_NAME(child));
    if (is_term(child->schema)) {
      leaves.add(below, lyd_get_value(child));
    } else {
      collect(child, below, leaves);
    }
  }
}

Leaves leaves_at(const Data& data, const std::string& path) {
  Leaves leaves;
  const lyd_node* const node = node_at(data, path);
  if (node != nullptr) collect(node, "", leaves);
  return leaves;
}

std::string path_below(const lyd_node* leaf, const lyd_node* above) {
  std::string path = LYD_NAME(leaf);
  for (const lyd_node* each = lyd_parent(leaf); each != above; each = lyd_parent(each)) {
    path = fmt::format("{}/{}", LYD_NAME(each), path);
  }
  return path;
}

bool holds_identifier_on_l2(const Running& running, const lyd_node* surroundings) {
  if (!named(surroundings, "vlan")) return false;
  const lyd_node* const subinterface = lyd_parent(surroundings);
  const lyd_node* const interface = lyd_parent(lyd_parent(subinterface));
  const lyd_node* const entry =
      running.entry(join_interface_name(lyd_get_value(lyd_child(interface)), lyd_get_value(lyd_child(subinterface))));
  const lyd_node* const l3 = entry == nullptr || !is_l2(entry) ? nullptr : child_named(entry, "vlan-sub-configuration");
  return l3 != nullptr && child_named(l3, "vlan-identifier") != nullptr;
}

bool is_bundle(const lyd_node* surroundings) {
  if (!named(surroundings, "interface")) return false;
  return std::string_view(lyd_get_value(lyd_child(surroundings))).find("Bundle-Ether") != std::string_view::npos;
}

}  // namespace

std::string cause_of(const Outcome& outcome, const Difference& difference) {
  const lyd_node* leaf = node_at(outcome.expected, difference.path);
  if (leaf == nullptr) leaf = node_at(outcome.after, difference.path);
  const lyd_node* const around = leaf == nullptr ? nullptr : surroundings_of(leaf);
  if (around == nullptr) return "";
  const std::string path = path_of(around);
  const Situation situation{.leaf = path_below(leaf, around),
                            .before = leaves_at(outcome.before, path),
                            .expected = leaves_at(outcome.expected, path),
                            .after = leaves_at(outcome.after, path),
                            .is_bundle = is_bundle(around),
                            .is_l2_with_identifier = holds_identifier_on_l2(outcome.running, around)};
  std::string why;
  for (const Cause& cause : kCauses) {
    if (cause.applies(situation)) why.append(why.empty() ? "" : "; ").append(cause.why);
  }
  const auto& unread = outcome.merged_into_unread;
  const bool merged_into_unread = std::any_of(unread.begin(), unread.end(), [&difference](const std::string& unit) {
    return difference.path.starts_with(unit + "/");
  });
  return why.empty() && merged_into_unread ? kUnread : why;
}

}  // namespace yfw
