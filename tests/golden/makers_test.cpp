// The scripts that write devices and requests of any size write what hosts take.

#include "cli/run.h"
#include "golden/documents.h"
#include "yfw-host/host.h"

namespace golden_test {
namespace {

const std::string kScripts = OC_VLAN_SOURCE_DIR "/scripts/";

std::string output_of(const std::string& script, int count) {
  const cli_test::Outcome outcome = cli_test::run({std::to_string(count)}, {.program = kScripts + script});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  return outcome.out;
}

std::size_t occurrences(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

struct Size {
  int subinterfaces;
  std::size_t interfaces;
};

class Makers : public testing::TestWithParam<Size> {
 protected:
  void SetUp() override { host_.load_plugin(OC_VLAN_PLUGIN_FILE); }

  // The answer names as many interfaces and sub-interfaces as were made, and nothing had to be said about it.
  static void expect_all(const yfw::ReadResult& read, const std::string& form) {
    const std::string text = read.data.print(yfw::Format::xml);
    EXPECT_EQ(occurrences(text, "<subinterface>"), static_cast<std::size_t>(GetParam().subinterfaces));
    EXPECT_EQ(occurrences(text, "<interface>"), GetParam().interfaces);
    EXPECT_EQ(occurrences(text, form), static_cast<std::size_t>(GetParam().subinterfaces));
    for (const yfw::Warning& warning : read.warnings) {
      if (!warning.unsaid) ADD_FAILURE() << warning.path << ": " << warning.message;
    }
  }

  yfw::Host host_{{.yang_dir = OC_VLAN_SOURCE_DIR "/yang", .verify = yfw::Verify::strict}};
};

TEST_P(Makers, WriteARunningConfiguration) {
  host_.set_running({output_of("make-running", GetParam().subinterfaces)});
  const yfw::ReadResult read = host_.read();
  expect_all(read, "<vlan-stack-action>POP</vlan-stack-action>");
  EXPECT_TRUE(read.unsaid.empty()) << read.unsaid.front().path;
}

TEST_P(Makers, WriteOperationalData) {
  const std::string oper = output_of("make-oper", GetParam().subinterfaces);
  const yfw::ReadResult read = host_.read_state({oper});
  expect_all(read, "<vlan-stack-action>POP</vlan-stack-action>");
  // The ids of a list are read without the ends of their ranges.
  for (const yfw::Unsaid& each : read.unsaid) EXPECT_TRUE(each.path.ends_with("/vlan-id-high")) << each.path;
}

TEST_P(Makers, WriteARequestThatChangesEverySubinterface) {
  host_.set_running({output_of("make-running", GetParam().subinterfaces)});
  const std::string before = host_.read().data.print(yfw::Format::xml);
  const std::string request = output_of("make-request", GetParam().subinterfaces);
  const yfw::EditResult result = host_.apply({request});
  for (const yfw::Warning& warning : result.warnings) ADD_FAILURE() << warning.path << ": " << warning.message;
  EXPECT_EQ(occurrences(result.native.print(yfw::Format::xml), "nc:operation=\"replace\""),
            static_cast<std::size_t>(GetParam().subinterfaces));
  EXPECT_NE(host_.read().data.print(yfw::Format::xml), before);
}

INSTANTIATE_TEST_SUITE_P(Sizes, Makers, testing::Values(Size{1, 1}, Size{100, 1}, Size{101, 2}, Size{1000, 10}),
                         [](const auto& size) { return std::to_string(size.param.subinterfaces); });

TEST(MakersUsage, RefuseWhatIsNoNumber) {
  for (const std::string script : {"make-running", "make-oper", "make-request"}) {
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{}, {""}, {"0"}, {"-1"}, {"ten"}, {"1", "2"}}) {
      const cli_test::Outcome outcome = cli_test::run(words, {.program = kScripts + script});
      EXPECT_EQ(outcome.exit_code, 2) << script << "\n" << outcome;
      EXPECT_EQ(outcome.out, "");
      EXPECT_NE(outcome.err.find("usage: "), std::string::npos) << outcome;
    }
  }
}

}  // namespace
}  // namespace golden_test
