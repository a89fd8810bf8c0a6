// What the validator says of made-up devices, of their readings and of what is left of these, held against libyang.
#include "framework/datastore/validate.h"

#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include <array>
#include <string>

#include "framework/validate_check.h"
#include "property/model/generator.h"
#include "property/model/native_models.h"
#include "property/model/runner.h"
#include "yfw-host/host.h"

namespace property {
namespace {

using yfw::Data;
using yfw::Reach;

// Takes leaves and containers away, and gives values that another leaf of the type has.
void spoil(Random& random, lyd_node* siblings) {
  static const std::vector<std::string> kValues{
      "TRUNK", "ACCESS", "iana-if-type:l3ipvlan",     "iana-if-type:ethernetCsmacd",
      "1",     "100",    "iana-if-type:ieee8023adLag"};
  lyd_node* node = nullptr;
  lyd_node* next = nullptr;
  LY_LIST_FOR_SAFE(siblings, next, node) {
    const bool is_key = lysc_is_key(node->schema);
    if (!is_key && node->parent != nullptr && random.chance(3)) {
      lyd_free_tree(node);
    } else if (node->schema->nodetype == LYS_LEAF && !is_key) {
      if (random.chance(20)) lyd_change_term(node, random.pick(kValues).c_str());
    } else {
      spoil(random, lyd_child(node));
    }
  }
}

class DevicesAreValidated : public testing::TestWithParam<Models> {
 protected:
  void check(const Data& data, std::uint64_t seed) {
    if (data.empty()) return;
    const Reach reach = validator_.reach(data.get());
    ++reaches_[static_cast<std::size_t>(reach)];
    EXPECT_EQ(yfw::test::contradiction(data, reach), "") << "seed " << seed << "\n" << data.print(yfw::Format::xml);
  }

  std::array<std::size_t, 3> reaches_{};

 private:
  yfw::Validator validator_;
};

TEST_P(DevicesAreValidated, WhereverSomethingCanFail) {
  if (GetParam() == Models::published && published_modules().empty()) {
    GTEST_SKIP() << "the published modules are not here";
  }
  Hosts hosts(GetParam());
  yfw::Host& host = hosts.get(false, false);
  for (std::uint64_t seed = 1; seed <= 400 && !HasFailure(); ++seed) {
    Random random(seed);
    const Native device = random.chance(50) ? make_device(random) : make_odd_device(random);
    host.set_running({.text = to_document(device), .name = "device"});
    const Data native = host.running().clone();
    const Data reading = host.read().data.clone();
    check(native, seed);
    check(reading, seed);
    for (int i = 0; i < 5; ++i) {
      for (const Data* const whole : {&native, &reading}) {
        Data less = whole->clone();
        spoil(random, less.get());
        check(less, seed);
      }
    }
  }
  EXPECT_GT(reaches_[0], 1000U);
  EXPECT_GT(reaches_[1] + reaches_[2], 300U);
}

INSTANTIATE_TEST_SUITE_P(OfBothModels, DevicesAreValidated, testing::Values(Models::compact, Models::published),
                         [](const auto& tested) { return tested.param == Models::compact ? "compact" : "published"; });

}  // namespace
}  // namespace property
