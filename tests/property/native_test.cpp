// Native configuration of any kind read as OpenConfig, and written back.
#include <gtest/gtest.h>

#include <algorithm>

#include "property/model/faults.h"
#include "property/model/native_models.h"
#include "property/model/observe.h"
#include "property/model/runner.h"

namespace property {
namespace {

class NativeConfiguration : public testing::Test {
 protected:
  // Devices are read at once where sequences take several edits.
  const std::uint64_t devices_ = sequences() / 5;

  void start(const Native& native) {
    text_ = to_document(native);
    host_.set_running({.text = text_, .name = "start"});
  }

  std::string running() const { return host_.running().print(yfw::Format::xml); }

  Hosts hosts_;
  yfw::Host& host_ = hosts_.get(false, false);

 private:
  std::string text_;
};

bool tells_of(const std::vector<yfw::Warning>& warnings, const std::string& native_name) {
  const std::string native = "interface-configurations/interface-configuration[" + native_name + "]";
  const std::string openconfig = openconfig_path(native_name);
  return std::any_of(warnings.begin(), warnings.end(), [&](const yfw::Warning& warning) {
    const std::string path = observe_path(warning.path);
    return path.starts_with(native) || path.starts_with(openconfig);
  });
}

TEST_F(NativeConfiguration, ReadsAsWhatItSaysAndTellsWhatOpenConfigCannotSay) {
  for (std::uint64_t seed = 1; seed <= devices_; ++seed) {
    Random random(seed);
    const Native native = make_odd_device(random);
    start(native);
    const yfw::ReadResult read = host_.read();
    const std::string described = "seed " + std::to_string(seed) + "\n" + to_text(native);
    ASSERT_EQ(to_text(observe_config(read.data)), to_text(decode(native))) << described;
    ASSERT_EQ(invalid_because(read.data), "") << described;
    for (const auto& [name, entry] : native) {
      std::vector<std::string> left_out;
      decode(name, entry, left_out);
      if (left_out.empty()) continue;
      ASSERT_TRUE(tells_of(read.warnings, name)) << left_out.front() << " is left out in silence\n" << described;
    }
  }
}

bool has_room(const Config& leaves) {
  const auto trunk = leaves.find("trunk-vlans");
  return trunk == leaves.end() || trunk_text(trunk->second).size() <= kLongestTrunkText;
}

// A request for all that reads whole and can be written.
Request request_for(const Native& native, Op op_of_units) {
  Request request;
  for (const auto& [name, entry] : native) {
    const Config read = decode(name, entry);
    for (const Region& region : regions_of(name)) {
      const Config leaves = part(read, region.path);
      std::vector<std::string> forms;
      for (const auto& each : leaves) {
        const std::string form = each.first.substr(0, each.first.find('/'));
        if (region.unit == Unit::match && (forms.empty() || forms.back() != form)) forms.push_back(form);
      }
      if (forms.size() > 1 || is_upside_down(leaves) || !has_room(leaves) || !reads_whole(name, entry, region))
        continue;
      for (const auto& [leaf, values] : leaves) add_leaf(request, region.path + "/" + leaf, values);
      if (op_of_units != Op::inherit && !leaves.empty()) element_at(request, region.path).op = op_of_units;
    }
    for (const char* const leaf : {"/config/description", "/config/enabled"}) {
      const auto own = read.find(openconfig_path(name) + leaf);
      if (own != read.end()) add_leaf(request, own->first, own->second);
    }
  }
  return request;
}

class WritingBack : public NativeConfiguration, public testing::WithParamInterface<Op> {};

TEST_P(WritingBack, ChangesNothing) {
  std::size_t written = 0;
  for (std::uint64_t seed = 1; seed <= devices_; ++seed) {
    Random random(seed);
    const Native native = random.chance(50) ? make_device(random) : make_odd_device(random);
    const Request request = request_for(native, GetParam());
    if (request.interfaces.children.empty()) continue;
    ++written;
    start(native);
    const std::string before = running();
    const std::string text = to_text(request);
    const std::string described = "seed " + std::to_string(seed) + "\n" + to_text(native) + text;
    try {
      const yfw::EditResult result = host_.apply({.text = text});
      ASSERT_TRUE(result.differences.empty()) << to_text(observe_changes(result.differences)) << described;
    } catch (const yfw::Refused& refused) {
      FAIL() << refused.error().tag << " " << refused.error().path << " " << refused.what() << "\n" << described;
    }
    ASSERT_EQ(running(), before) << described;
  }
  EXPECT_GT(written, devices_ / 2);
}

INSTANTIATE_TEST_SUITE_P(As, WritingBack, testing::Values(Op::inherit, Op::replace),
                         [](const testing::TestParamInfo<Op>& info) {
                           return info.param == Op::inherit ? "Merge" : "Replace";
                         });

}  // namespace
}  // namespace property
