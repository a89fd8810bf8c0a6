// Two native configurations, compared by their readings and natively: nothing differs only where nothing does.
#include "yfw-host/compare.h"

#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include <iostream>
#include <map>
#include <set>

#include "property/model/native_models.h"
#include "property/model/observe.h"
#include "property/model/runner.h"
#include "property/model/shrink.h"
#include "yfw-host/host.h"

namespace property {
namespace {

// The same ids in another order.
void reorder(Random& random, Entry& entry) {
  std::vector<std::string*> ids;
  for (auto& [leaf, value] : entry) {
    if (leaf.ends_with("-low")) ids.push_back(&value);
    const std::size_t comma = value.find(',');
    if (leaf.ends_with("trunk-vla-ns") && comma != std::string::npos) {
      value = value.substr(comma + 1) + "," + value.substr(0, comma);
    }
  }
  if (ids.size() > 1) std::swap(*random.pick(ids), *random.pick(ids));
}

// One leaf, layer or entry more or less, or a value that is another one or only spelt in another way.
void mutate(Random& random, Native& native) {
  const std::size_t chosen = random.below(native.size());
  const std::string name = std::next(native.begin(), static_cast<std::ptrdiff_t>(chosen))->first;
  Entry& entry = native[name];
  const std::string& any = random.pick(native_leaves());
  switch (random.below(9)) {
    case 0:
      if (is_l2(entry)) return erase_native_leaf(entry, "l2-transport");
      return set_native_leaf(random, entry, "l2-transport");
    case 1:
      if (native.size() > 1) native.erase(name);
      return;
    case 2:
      return make_odd(random, "Ethernet0/0/1.7", native["Ethernet0/0/1.7"]);
    case 3:
      native["Bundle-Ether9"];
      return;
    case 4:
      for (auto& leaf : entry) {
        const std::size_t comma = leaf.second.find(',');
        if (leaf.first.ends_with("trunk-vla-ns") && comma != std::string::npos) leaf.second.insert(comma + 1, " ");
      }
      return;
    case 5:
      return set_native_leaf(random, entry, any);
    case 6:
      return reorder(random, entry);
    default:
      break;
  }
  if (entry.empty()) return;
  const std::string leaf = std::next(entry.begin(), static_cast<std::ptrdiff_t>(random.below(entry.size())))->first;
  if (random.chance(50)) return erase_native_leaf(entry, leaf);
  set_native_leaf(random, entry, leaf);
}

// The configuration without what `smaller` has less than `whole`.
Native without(Native native, const Native& whole, const Native& smaller) {
  for (const auto& [name, entry] : whole) {
    const auto kept = smaller.find(name);
    if (kept == smaller.end()) {
      native.erase(name);
      continue;
    }
    for (const auto& leaf : entry) {
      const auto found = native.find(name);
      if (found != native.end() && !kept->second.contains(leaf.first)) found->second.erase(leaf.first);
    }
  }
  return native;
}

// Equal but for blanks and padding in the text of a trunk.
bool say_the_same(const Native& before, Native after) {
  for (auto& [name, entry] : after) {
    const auto there = before.find(name);
    if (there != before.end()) keep_stored_text(entry, there->second);
  }
  return before == after;
}

// A configuration and what it reads as.
struct Side {
  yfw::Data native;
  yfw::ReadResult read;
  yfw::NativeSide view() const { return {native, read}; }
};

class NativeDiff : public testing::TestWithParam<Models> {
 protected:
  void SetUp() override {
    if (GetParam() == Models::published && published_modules().empty()) {
      GTEST_SKIP() << "no published modules in " << OC_VLAN_PUBLISHED_YANG;
    }
  }

  Side side_of(const Native& native) {
    yfw::Host& host = hosts_.get(false, false);
    const std::string document = to_document(native);
    host.set_running({.text = document, .name = "device"});
    return {host.running().clone(), host.read()};
  }

  // Empty when all is well.
  std::string fault_of(const Native& before, const Native& after) {
    const Side one = side_of(before);
    const Side other = side_of(after);
    const std::vector<yfw::Delta> readings = yfw::compare(one.read.data, other.read.data);
    const std::vector<yfw::Delta> native = yfw::native_differences(one.view(), other.view());
    const bool equal = say_the_same(observe_native(one.native), observe_native(other.native));
    ++seen_[equal              ? "equal"
            : native.empty()   ? "told by readings"
            : readings.empty() ? "told natively"
                               : "told by both"];
    if (equal && !(readings.empty() && native.empty())) return "a difference is told where none is";
    if (!equal && readings.empty() && native.empty()) return "no difference is told";
    // Readings that are the same show nothing.
    const std::size_t all = yfw::compare(one.native, other.native).size();
    if (readings.empty() && native.size() != all) return "of " + std::to_string(all) + " differences some are not told";
    std::set<std::string> paths;
    for (const yfw::Delta& each : native) {
      if (!paths.insert(each.path).second) return each.path + " is told twice";
      if (const std::string fault = fault_of(each, one, other); !fault.empty()) return each.path + ": " + fault;
    }
    const yfw::Data tree = yfw::native_difference_tree(one.view(), other.view(), native);
    return tree.empty() == native.empty() ? "" : "the tree of differences is something else";
  }

  const std::map<std::string, std::size_t>& seen() const { return seen_; }

 private:
  // A difference is what is there on the one side and on the other.
  static std::string fault_of(const yfw::Delta& delta, const Side& before, const Side& after) {
    const auto value = [&delta](const Side& side) -> std::pair<bool, std::string> {
      lyd_node* found = nullptr;
      if (lyd_find_path(side.native.get(), delta.path.c_str(), 0, &found) != LY_SUCCESS) return {false, ""};
      const bool term = (found->schema->nodetype & LYD_NODE_TERM) != 0;
      return {true, term ? lyd_get_value(found) : ""};
    };
    if (value(before) == std::pair(delta.was_present, delta.before) &&
        value(after) == std::pair(delta.is_present, delta.after)) {
      return {};
    }
    return "is not \"" + delta.before + "\" before and \"" + delta.after + "\" after";
  }

  Hosts hosts_{GetParam()};
  std::map<std::string, std::size_t> seen_;
};

TEST_P(NativeDiff, IsEmptyOnlyWhereNothingDiffers) {
  const std::uint64_t only = number_from("OC_VLAN_SEED", 0);
  const std::uint64_t first = only != 0 ? only : 1;
  const std::uint64_t count = only != 0 ? 1 : sequences() / (GetParam() == Models::compact ? 2 : 20);
  for (std::uint64_t seed = first; seed < first + count; ++seed) {
    Random random(seed);
    const Native before = make_odd_entries(random);
    Native after = before;
    const std::size_t mutations = random.below(4);
    for (std::size_t i = 0; i < mutations; ++i) mutate(random, after);
    if (fault_of(before, after).empty()) continue;
    const auto fault = [&](const Native& smaller) { return fault_of(smaller, without(after, before, smaller)); };
    const Sequence small =
        shrink({.start = before}, [&fault](const Sequence& each) { return !fault(each.start).empty(); });
    FAIL() << "seed " << seed << "\n"
           << to_text(small.start) << "becomes\n"
           << to_text(without(after, before, small.start)) << fault(small.start);
  }
  for (const auto& [what, times] : seen()) std::cout << "  " << times << " " << what << "\n";
  constexpr std::uint64_t kEnoughForAll = 200;
  constexpr std::size_t kOutcomes = 4;
  EXPECT_TRUE(seen().size() == kOutcomes || count < kEnoughForAll);
}

INSTANTIATE_TEST_SUITE_P(With, NativeDiff, testing::Values(Models::compact, Models::published),
                         [](const testing::TestParamInfo<Models>& info) {
                           return info.param == Models::compact ? "CompactModules" : "PublishedModules";
                         });

}  // namespace
}  // namespace property
