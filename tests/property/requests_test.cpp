// Sequences of made-up requests: what the framework and the plug-in make of them is what the model says.
#include <gtest/gtest.h>

#include <iostream>
#include <string>

#include "property/model/runner.h"
#include "property/model/shrink.h"

namespace property {
namespace {

// The failure with the smallest sequence that shows one of its kind.
std::string explain(Hosts& hosts, std::uint64_t seed, const Sequence& sequence, const Failure& failure) {
  const Sequence small = shrink(sequence, [&](const Sequence& each) { return run(hosts, each).kind == failure.kind; });
  const std::string number = std::to_string(seed);
  return "seed " + number + ", alone with OC_VLAN_SEED=" + number + ": " + failure.kind + "\n" + failure.text +
         "\n\nThe smallest sequence that fails:\n" + to_text(small) + "\n" + run(hosts, small).text;
}

void run_all(Models models, std::uint64_t first, std::uint64_t count) {
  Hosts hosts(models);
  const std::uint64_t only = number_from("OC_VLAN_SEED", 0);
  if (only != 0) first = only, count = 1;
  std::cout << "seeds " << first << " to " << first + count - 1 << "\n";
  for (std::uint64_t seed = first; seed < first + count; ++seed) {
    const Sequence sequence = make_sequence(seed);
    const Failure failure = run(hosts, sequence);
    ASSERT_EQ(failure.kind, "") << explain(hosts, seed, sequence, failure);
  }
  const Tally& seen = tally();
  std::cout << seen.requests << " requests, " << seen.refused << " refused\n";
  for (const auto& [tag, times] : seen.refusals) std::cout << "  " << times << " " << tag << "\n";
  std::cout << "  " << seen.staying << " unsaid leaves stayed, " << seen.going << " went\n";
  for (const auto& [name, times] : seen.explanations)
    std::cout << "  " << times << " read back differently: " << name << "\n";
}

// In four parts, so that they run side by side.
class Requests : public testing::TestWithParam<std::uint64_t> {};

TEST_P(Requests, DoWhatTheModelSays) {
  constexpr std::uint64_t kParts = 4;
  const std::uint64_t share = (sequences() + kParts - 1) / kParts;
  run_all(Models::compact, 1 + GetParam() * share, share);
}

INSTANTIATE_TEST_SUITE_P(Part, Requests, testing::Range<std::uint64_t>(0, 4));

TEST(Requests, DoTheSameWithThePublishedModules) {
  if (published_modules().empty()) GTEST_SKIP() << "no published modules in " << OC_VLAN_PUBLISHED_YANG;
  run_all(Models::published, 1000001, sequences() / 10);
}

}  // namespace
}  // namespace property
