// The table of exceptions is what the native form loses, no more and no less.
#include "property/model/exceptions.h"

#include <gtest/gtest.h>

#include "property/model/generator.h"

namespace property {
namespace {

// What reads back of a unit's leaves alone in an entry.
Config there_and_back(Unit unit, const Config& leaves, bool l2) {
  const std::string name = unit == Unit::switched ? "Ethernet0/0/1" : "Ethernet0/0/1.100";
  Entry entry = encode(unit, leaves, l2);
  if (l2) entry["l2-transport"];
  for (const Region& region : regions_of(name)) {
    if (region.unit == unit) return part(decode(name, entry), region.path);
  }
  return {};
}

bool is_lossy(Unit unit, const Config& leaves, bool l2) {
  return there_and_back(unit, leaves, l2) != leaves;
}

TEST(Exceptions, AreSeenInTheirExamples) {
  for (const Exception& exception : exceptions()) {
    EXPECT_TRUE(exception.applies(exception.example)) << exception.name;
    for (const bool l2 : {true, false}) {
      EXPECT_TRUE(is_lossy(exception.unit, exception.example, l2))
          << exception.name << " reads back:\n"
          << to_text(there_and_back(exception.unit, exception.example, l2));
    }
  }
}

// Any leaves of a unit, some taken out: they read back exactly where no exception is met.
TEST(Exceptions, AreAllThereAre) {
  constexpr std::uint64_t kCases = 20000;
  std::map<std::string, std::size_t> met;
  for (std::uint64_t seed = 1; seed <= kCases; ++seed) {
    Random random(seed);
    const Unit unit = random.pick(std::vector<Unit>{Unit::match, Unit::ingress_mapping, Unit::switched});
    Config leaves = make_leaves(random, unit);
    std::erase_if(leaves, [&random](const auto&) { return random.chance(20); });
    // Without a mode the other leaves of a port have no place in OpenConfig.
    if (unit == Unit::switched && !leaves.contains("interface-mode")) continue;
    // Entries that the native text has no room for are refused.
    if (leaves.contains("trunk-vlans") && trunk_text(leaves.at("trunk-vlans")).size() > kLongestTrunkText) continue;
    const bool l2 = random.chance(50);
    const std::vector<const Exception*> names = exceptions_of(unit, leaves);
    ASSERT_EQ(is_lossy(unit, leaves, l2), !names.empty())
        << "seed " << seed << ", asked:\n"
        << to_text(leaves) << "reads back:\n"
        << to_text(there_and_back(unit, leaves, l2)) << (names.empty() ? "no exception" : names.front()->name);
    for (const Exception* const each : names) ++met[each->name];
  }
  for (const Exception& exception : exceptions()) EXPECT_GT(met[exception.name], 0U) << exception.name;
}

}  // namespace
}  // namespace property
