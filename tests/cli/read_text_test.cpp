// The answer to a read as a table for people.
#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

using testing::TestWithParam;
using testing::ValuesIn;
using ReadText = CliTest;

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string longest(const std::vector<std::string>& lines) {
  return *std::max_element(lines.begin(), lines.end(),
                           [](const auto& left, const auto& right) { return left.size() < right.size(); });
}

constexpr char kOper[] = OC_VLAN_SOURCE_DIR "/examples/oper.xml";
constexpr char kRunning[] = OC_VLAN_SOURCE_DIR "/examples/running.xml";

TEST_F(ReadText, ADeviceFitsOnOneScreen) {
  const Outcome state = run({"read", "--oper", kOper, "--format", "text"});
  EXPECT_EQ(state.exit_code, 0) << state;
  const Outcome both = run({"read", "--oper", kOper, "--running", kRunning, "--format", "text"});
  for (const Outcome& outcome : {state, both}) {
    const std::vector<std::string> lines = lines_of(outcome.out);
    EXPECT_EQ(lines.size(), 19U) << "a heading and a line for each interface and sub-interface\n" << outcome;
    EXPECT_LE(lines.size(), 50U) << outcome;
    EXPECT_LE(longest(lines).size(), 100U) << outcome;
  }
  EXPECT_EQ(lines_of(state.out).front(), "interface           state");
  EXPECT_EQ(lines_of(both.out).front(), "interface           config                           state");
}

TEST_F(ReadText, PublishedModulesSayTheSame) {
  if (!std::filesystem::is_directory(OC_VLAN_PUBLISHED_YANG)) GTEST_SKIP() << "no published modules";
  const std::vector<std::string> words{"read", "--oper", kOper, "--running", kRunning, "--format", "text"};
  std::vector<std::string> published = words;
  published.insert(published.end(), {"--yang-dir", OC_VLAN_PUBLISHED_YANG});
  EXPECT_EQ(run(published).out, run(words).out);
}

struct SideCase {
  const char* name;
  std::vector<std::string> options;
  std::string expected;
};

void PrintTo(const SideCase& param, std::ostream* stream) {
  *stream << param.name;
}

class Sides : public TestWithParam<SideCase> {};

TEST_P(Sides, AreTheColumns) {
  std::vector<std::string> words{"read", "--format", "text", "--path",
                                 "/interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='300']"};
  words.insert(words.end(), GetParam().options.begin(), GetParam().options.end());
  const Outcome outcome = run(words);
  EXPECT_EQ(outcome.out, GetParam().expected) << outcome;
  EXPECT_EQ(outcome.err, "");
}

INSTANTIATE_TEST_SUITE_P(Cli, Sides,
                         ValuesIn<std::vector<SideCase>>({
                             {"Running",
                              {"--running", kRunning},
                              "interface          config\n"
                              "Ethernet0/0/1      -\n"
                              "Ethernet0/0/1.300  dot1q 300..399; swap dot1q 1300\n"},
                             {"Oper",
                              {"--oper", kOper},
                              "interface          state\n"
                              "Ethernet0/0/1      -\n"
                              "Ethernet0/0/1.300  dot1q 300..399; swap dot1q 1300\n"},
                             {"Both",
                              {"--running", kRunning, "--oper", kOper},
                              "interface          config                           state\n"
                              "Ethernet0/0/1      -                                -\n"
                              "Ethernet0/0/1.300  dot1q 300..399; swap dot1q 1300  dot1q 300..399; swap dot1q 1300\n"},
                             {"BothButConfigOnly",
                              {"--running", kRunning, "--oper", kOper, "--config"},
                              "interface          config\n"
                              "Ethernet0/0/1      -\n"
                              "Ethernet0/0/1.300  dot1q 300..399; swap dot1q 1300\n"},
                             {"BothButStateOnly",
                              {"--running", kRunning, "--oper", kOper, "--state"},
                              "interface          state\n"
                              "Ethernet0/0/1      -\n"
                              "Ethernet0/0/1.300  dot1q 300..399; swap dot1q 1300\n"},
                         }),
                         [](const auto& info) { return info.param.name; });

TEST_F(ReadText, ConfigurationThatIsNotUpHasADash) {
  const std::string device = folder.file("running.xml", running_with_vlan("7"));
  const Outcome outcome = run({"read", "--running", device, "--oper", kOper, "--format", "text", "--path",
                               "/interfaces/interface[name='Ethernet0/0/1']"});
  EXPECT_THAT(outcome.out, testing::HasSubstr("\nEthernet0/0/1.100  dot1q 7  dot1q 100; push dot1ad 500\n"));
  EXPECT_THAT(outcome.out, testing::HasSubstr("\nEthernet0/0/1.200  -        list 210,220,230; pop\n"));
}

// 60 ids and ranges, too many for a line.
std::string many_vlans() {
  std::string text;
  for (int i = 0; i < 60; ++i) text += (i == 0 ? "" : ",") + std::to_string(1000 + 2 * i);
  return text;
}

TEST_F(ReadText, WhatIsTooLongGoesOnBelow) {
  const std::string device = folder.file(
      "running.xml",
      running(entry("Ethernet0/0/1", trunk_configuration("<vlan-switched><mode>trunk</mode>"
                                                         "<trunk-tag-type>vlan-type-dot1q</trunk-tag-type>"
                                                         "<trunk-vla-ns>" +
                                                         many_vlans() + "</trunk-vla-ns></vlan-switched>"))));
  const Outcome outcome = run({"read", "--running", device, "--oper", kOper, "--format", "text", "--path",
                               "/interfaces/interface[name='Ethernet0/0/1']"});
  std::vector<std::string> lines = lines_of(outcome.out);
  EXPECT_LE(longest(lines).size(), 100U) << outcome;
  // Nothing is cut: the pieces of the cell are the whole text.
  std::string cell;
  for (std::size_t i = 1; i < lines.size() && (i == 1 || lines[i][0] == ' '); ++i) {
    std::istringstream words(lines[i]);
    for (std::string word; words >> word;) {
      if (word != "Ethernet0/0/1" && word != "trunk" && word != "-") cell += word;
    }
  }
  EXPECT_EQ(cell, many_vlans()) << outcome;
}

TEST_F(ReadText, NothingIsNothing) {
  const Outcome outcome =
      run({"read", "--oper", kOper, "--format", "text", "--path", "/interfaces/interface[name='Ethernet9/9/9']"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, "");
}

TEST_F(ReadText, ARefusalIsALineForPeople) {
  const Outcome outcome = run({"read", "--oper", kOper, "--format", "text", "--path", "/nowhere"});
  EXPECT_EQ(outcome.exit_code, 1) << outcome;
  EXPECT_EQ(outcome.out, "");
  EXPECT_THAT(outcome.err, testing::StartsWith("ocvlan: refused: ")) << outcome;
}

struct TerminalCase {
  const char* name;
  std::string options;
  std::string starts;  // what is on the terminal
};

void PrintTo(const TerminalCase& param, std::ostream* stream) {
  *stream << param.name;
}

class Terminal : public TestWithParam<TerminalCase> {};

TEST_P(Terminal, GetsText) {
  const std::string command = std::string("'" OC_VLAN_TOOL_FILE "' ") + GetParam().options + " --oper '" + kOper +
                              "' --path /interfaces/interface/ethernet; echo end";
  const Folder place;
  const Outcome outcome =
      run({"-c", "cd '" + place.path("") + "' && script -qec \"" + command + "\" /dev/null"}, {.program = "/bin/bash"});
  EXPECT_THAT(outcome.out, testing::StartsWith(GetParam().starts)) << outcome;
}

INSTANTIATE_TEST_SUITE_P(Cli, Terminal,
                         ValuesIn<std::vector<TerminalCase>>({
                             {"WhenNothingElseIsAsked", "read", "interface      state\r\n"},
                             {"ButNotWithAFormat", "read --format xml", "<interfaces xmlns="},
                             {"ButNotInAFile", "read -o out.xml", "end"},
                         }),
                         [](const auto& info) { return info.param.name; });

TEST_F(ReadText, APipeGetsXml) {
  const Outcome outcome = run({"read", "--oper", kOper, "--path", "/interfaces/interface/ethernet"});
  EXPECT_THAT(outcome.out, testing::StartsWith("<interfaces xmlns=")) << outcome;
}

}  // namespace
}  // namespace cli_test
