// The command line: what help says, what is refused before anything is read.
#include <gmock/gmock.h>

#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

using testing::TestWithParam;
using testing::ValuesIn;

struct HelpCase {
  const char* name;
  std::vector<std::string> arguments;
  std::vector<std::string> texts;  // all in the help
};

void PrintTo(const HelpCase& param, std::ostream* stream) {
  *stream << param.name;
}

class Help : public TestWithParam<HelpCase> {};

TEST_P(Help, SaysWhatANewUserNeeds) {
  const Outcome outcome = run(GetParam().arguments);
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.err, "");
  for (const std::string& text : GetParam().texts) {
    EXPECT_NE(outcome.out.find(text), std::string::npos) << "missing: " << text << "\n" << outcome;
  }
  EXPECT_EQ(outcome.out.find('{'), std::string::npos) << "a flag's default shows through\n" << outcome;
}

INSTANTIATE_TEST_SUITE_P(
    Cli, Help,
    ValuesIn<std::vector<HelpCase>>({
        {"Program",
         {"--help"},
         {"translate", "apply", "read", "fetch", "diff", "Exit codes", "OCVLAN_PLUGIN", "OCVLAN_YANG"}},
        {"Translate",
         {"translate", "--help"},
         {"Example", "ocvlan translate request.xml", "REQUEST", "--running FILE", "--format json|xml",
          "-o,--output FILE", "--yang-dir DIR", "--models DIR", "--plugin FILE", "--l2", "--l3",
          "--default-operation merge|none|replace", "--ignore-unmapped", "--bind subinterface-vlan-id",
          "--verify[=report|strict]", "--no-verify", "--trace[=FILE]", "--quiet"}},
        {"Apply", {"apply", "--help"}, {"Example", "ocvlan apply request.xml --running", "--verify[=report|strict]"}},
        {"Read",
         {"read", "--help"},
         {"Example", "ocvlan read --running", "--oper FILE", "--state", "--config", "--path PATH", "--strict",
          "--format json|text|xml", "on a terminal"}},
        {"Fetch", {"fetch", "--help"}, {"Example", "ocvlan fetch --path", "--state"}},
        {"Diff", {"diff", "--help"}, {"Example", "ocvlan diff before.xml after.xml", "--oper FILE", "--state"}},
    }),
    [](const auto& info) { return info.param.name; });

TEST(Version, IsOneLine) {
  const Outcome outcome = run({"--version"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_THAT(outcome.out, testing::MatchesRegex("ocvlan [0-9]+[.][0-9]+[.][0-9]+\n"));
}

struct UsageCase {
  const char* name;
  std::vector<std::string> arguments;
  std::string text;  // of the first line on standard error
};

void PrintTo(const UsageCase& param, std::ostream* stream) {
  *stream << param.name;
}

class Usage : public TestWithParam<UsageCase> {};

TEST_P(Usage, IsRefusedWithAHint) {
  const Outcome outcome = run(GetParam().arguments);
  EXPECT_EQ(outcome.exit_code, 2) << outcome;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "ocvlan: " + GetParam().text + "\n'ocvlan --help' and 'ocvlan SUBCOMMAND --help' say what can be asked.\n");
}

INSTANTIATE_TEST_SUITE_P(
    Cli, Usage,
    ValuesIn<std::vector<UsageCase>>({
        {"Nothing", {}, "A subcommand is required"},
        {"UnknownSubcommand", {"explain"}, "unknown subcommand 'explain'"},
        {"UnknownOption", {"translate", "x", "--fast"}, "The following argument was not expected: --fast"},
        {"TwoRequests", {"translate", "x", "y"}, "The following argument was not expected: y"},
        {"NoRequest", {"translate"}, "REQUEST is required"},
        {"NoValue", {"translate", "x", "--running"}, "--running: 1 required FILE missing"},
        {"Format", {"translate", "x", "--format", "yaml"}, "--format: yaml not in {json,xml}"},
        {"TextOfAnEdit", {"translate", "x", "--format", "text"}, "--format: text not in {json,xml}"},
        {"Verify", {"apply", "x", "--running", "y", "--verify=maybe"}, "--verify: maybe not in {report,strict}"},
        {"VerifyAndNot", {"apply", "x", "--running", "y", "--verify", "--no-verify"}, "--verify excludes --no-verify"},
        {"VerifyWithoutRunning", {"translate", "x", "--verify"}, "--verify needs --running"},
        {"DefaultOperation",
         {"translate", "x", "--default-operation", "delete"},
         "--default-operation: delete not in {merge,none,replace}"},
        {"FilterAfterAPath", {"read", "--running", "x", "--path", "/interfaces", "y"}, "FILTER excludes --path"},
        {"Bind", {"translate", "x", "--bind", "x"}, "--bind: x not in {subinterface-vlan-id}"},
        {"L2AndL3", {"translate", "x", "--l2", "--l3"}, "--l2 excludes --l3"},
        {"ApplyWithoutRunning", {"apply", "x"}, "apply needs --running"},
        {"ReadWithoutAnything", {"read"}, "read needs --running or --oper"},
        {"StateWithoutOper", {"read", "--running", "x", "--state"}, "read --state needs --oper"},
        {"ConfigWithoutRunning", {"read", "--oper", "x", "--config"}, "read --config needs --running"},
        {"StateAndConfig", {"read", "--oper", "x", "--state", "--config"}, "--state excludes --config"},
        {"FilterAndPath", {"fetch", "x", "--path", "/y"}, "FILTER excludes --path"},
        {"DiffOfOne", {"diff", "x"}, "diff needs A and B"},
        {"DiffStateOfFiles",
         {"diff", "x", "y", "--state"},
         "diff --state compares --running with --oper, not A with B"},
        {"DiffStateWithoutOper", {"diff", "--state", "--running", "x"}, "diff --state needs --running and --oper"},
        {"DiffWithRunning", {"diff", "x", "y", "--running", "z"}, "diff takes --running and --oper only with --state"},
        {"StandardInputTwice", {"apply", "-", "--running", "-"}, "standard input can be read once only"},
    }),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace cli_test
