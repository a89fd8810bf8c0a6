// What people are told: on which streams it does not matter, and which characters of it reach a terminal.
#include "cli/message.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <random>

#include "framework/tree/utf8.h"
#include "run.h"
#include "samples.h"
#include "yfw-host/text.h"

namespace cli_test {
namespace {

using ocvlan::printable;
using testing::HasSubstr;
using testing::TestWithParam;
using testing::ValuesIn;

struct Shown {
  const char* name;
  std::string text;
  std::string shown;
};

void PrintTo(const Shown& param, std::ostream* stream) {
  *stream << param.name;
}

class Printable : public TestWithParam<Shown> {};

TEST_P(Printable, IsShown) {
  EXPECT_EQ(printable(GetParam().text), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Cli, Printable,
    ValuesIn<std::vector<Shown>>({
        {"Nothing", "", ""},
        {"Ascii", "'~` !\"#\\", "'~` !\"#\\"},
        {"Letters", "Übergröße Ωμέγα 東京 🙂 e\u0301", "Übergröße Ωμέγα 東京 🙂 e\u0301"},
        {"Blanks", "a\u00A0b\u3000c", "a\u00A0b\u3000c"},
        {"Nul", std::string("a\0b", 3), "a\\u{0}b"},
        {"Lines", "a\nb\r\n\tc", "a\\u{a}b\\u{d}\\u{a}\\u{9}c"},
        {"Escape", "\x1b[2J\x7f", "\\u{1b}[2J\\u{7f}"},
        {"SecondControls", "\u009B2J\u0085", "\\u{9b}2J\\u{85}"},
        {"Directions", "\u202Egnp.\u202C\u2066\u2069\u200F\u061C",
         "\\u{202e}gnp.\\u{202c}\\u{2066}\\u{2069}\\u{200f}\\u{61c}"},
        {"NoWidth", "a\u200Bb\u200Dc\uFEFFd\u00ADe\u2060f", "a\\u{200b}b\\u{200d}c\\u{feff}d\\u{ad}e\\u{2060}f"},
        {"Separators", "a\u2028b\u2029c", "a\\u{2028}b\\u{2029}c"},
        {"Tags", "a\U000E0041b", "a\\u{e0041}b"},
        {"PrivateUse", "\uE000\U0010FFFD", "\\u{e000}\\u{10fffd}"},
        {"NoCharacters", "\uFFFE\U0001FFFF\uFDD0", "\\u{fffe}\\u{1ffff}\\u{fdd0}"},
        {"NoUtf8", "\xff\x9b", "\\x{ff}\\x{9b}"},
        {"Overlong", "\xc0\xaf", "\\x{c0}\\x{af}"},
        {"Surrogate", "\xed\xa0\x80", "\\x{ed}\\x{a0}\\x{80}"},
        {"Cut", "\xe2\x82", "\\x{e2}\\x{82}"},
        {"LooksEscaped", "\\u{9b} \\x{9b} \\u9b \\n", "\\u{5c}u{9b} \\u{5c}x{9b} \\u9b \\n"},
    }),
    [](const auto& info) { return info.param.name; });

// What `printable` shows, read back.
std::string meant(std::string_view shown) {
  std::string text;
  while (!shown.empty()) {
    if (!shown.starts_with("\\u{") && !shown.starts_with("\\x{")) {
      text += shown.front();
      shown.remove_prefix(1);
      continue;
    }
    const std::size_t end = shown.find('}');
    const auto number = static_cast<char32_t>(std::stoul(std::string(shown.substr(3, end - 3)), nullptr, 16));
    if (shown[1] == 'u') {
      yfw::append_character(text, number);
    } else {
      text += static_cast<char>(number);
    }
    shown.remove_prefix(end + 1);
  }
  return text;
}

// No two texts look the same, so that a document cannot pretend to hold what it does not.
TEST(PrintableTexts, SayWhatTheyWere) {
  std::mt19937 random(1);
  const std::vector<std::string> parts = {"a", "\\", "u", "x", "{", "9b", "}", "\x9b", "\u009B", "\u202E", "\xe2", "ö"};
  for (int i = 0; i < 20'000; ++i) {
    std::string text;
    for (int length = static_cast<int>(random() % 12); length > 0; --length) text += parts[random() % parts.size()];
    const std::string shown = printable(text);
    ASSERT_EQ(meant(shown), text) << shown;
  }
}

TEST(PrintableTexts, HoldNoControlOfAnyKind) {
  for (char32_t code = 0; code <= 0x10FFFF; ++code) {
    if (code >= 0xD800 && code <= 0xDFFF) continue;
    std::string text;
    yfw::append_character(text, code);
    const std::string shown = printable(text);
    ASSERT_EQ(meant(shown), text);
    const bool is_control = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool orders = code == 0x061C || (code >= 0x200B && code <= 0x200F) || (code >= 0x2028 && code <= 0x202E) ||
                        (code >= 0x2060 && code <= 0x206F);
    if (is_control || orders) {
      ASSERT_NE(shown, text) << fmt::format("U+{:04X}", static_cast<std::uint32_t>(code));
    }
  }
}

// A name with a character of each kind in it, as a document brings it and as it is shown.
constexpr char kOddName[] = "E\u009B\u202E\u200B\u2028";
constexpr char kOddNameShown[] = "E\\u{9b}\\u{202e}\\u{200b}\\u{2028}";

std::string with_odd_name(std::string document) {
  const std::string name = "Ethernet0/0/1";
  for (auto at = document.find(name); at != std::string::npos; at = document.find(name, at + 1)) {
    document.replace(at, name.size(), kOddName);
  }
  return document;
}

struct Told {
  const char* name;
  std::vector<std::string> arguments;
  int exit_code;
  bool on_stdout;  // else on standard error
};

void PrintTo(const Told& param, std::ostream* stream) {
  *stream << param.name;
}

class ToPeople : public TestWithParam<Told> {
 protected:
  Folder folder;
};

TEST_P(ToPeople, GoPrintableCharactersOnly) {
  folder.file("refused", with_odd_name(single_tagged("9999")));
  folder.file("request", with_odd_name(single_tagged("100")));
  folder.file("list", with_odd_name(form("single-tagged-list", "<vlan-ids>100</vlan-ids>")));
  folder.file("running", with_odd_name(plain_running()));
  folder.file("other", with_odd_name(running_with_vlan("7")));
  folder.file("port", with_odd_name(running(entry("Ethernet0/0/1", access_port("7")))));
  folder.file("oper", with_odd_name(oper_access_port("8")));
  const Outcome outcome = run(GetParam().arguments, {.folder = folder.path("")});
  EXPECT_EQ(outcome.exit_code, GetParam().exit_code) << outcome;
  EXPECT_THAT(GetParam().on_stdout ? outcome.out : outcome.err, HasSubstr(kOddNameShown)) << outcome;
  EXPECT_EQ((GetParam().on_stdout ? outcome.out : outcome.err).find(kOddName), std::string::npos) << outcome;
}

INSTANTIATE_TEST_SUITE_P(Cli, ToPeople,
                         ValuesIn<std::vector<Told>>({
                             {"Refusal", {"translate", "refused"}, 1, false},
                             {"Warning", {"translate", "request"}, 0, false},
                             {"Difference", {"apply", "list", "--running", "running", "--verify"}, 0, false},
                             {"Trace", {"translate", "request", "--trace"}, 0, false},
                             {"FileName", {"translate", kOddName}, 3, false},
                             {"UnknownSubcommand", {kOddName}, 2, false},
                             {"UnknownOption", {"translate", "request", std::string("--") + kOddName}, 2, false},
                             {"PlugIn", {"translate", "request", "--plugin", kOddName}, 3, false},
                             {"Models", {"translate", "request", "--yang-dir", kOddName}, 3, false},
                             {"TraceFile", {"translate", "request", std::string("--trace=none/") + kOddName}, 3, false},
                             {"OutputFile", {"translate", "request", "-o", std::string("none/") + kOddName}, 3, false},
                             {"Table", {"read", "--running", "port", "--oper", "oper", "--format", "text"}, 0, true},
                             {"Comparison", {"diff", "running", "other"}, 0, true},
                             {"ComparisonOfState", {"diff", "--state", "--running", "port", "--oper", "oper"}, 0, true},
                         }),
                         [](const auto& info) { return info.param.name; });

using Documents = CliTest;

TEST_F(Documents, HoldWhatTheyHeld) {
  const Outcome native = run({"translate", "-", "--l2"}, {.input = with_odd_name(single_tagged("100"))});
  EXPECT_EQ(native.exit_code, 0) << native;
  EXPECT_THAT(native.out, HasSubstr(kOddName));
  const Outcome refusal = run({"translate", "-", "--format", "json"}, {.input = with_odd_name(single_tagged("9999"))});
  EXPECT_EQ(refusal.exit_code, 1) << refusal;
  EXPECT_THAT(refusal.out, HasSubstr(kOddName));
}

// A trace is read with whatever shows files on a terminal.
TEST_F(Documents, ATraceInAFileIsForPeople) {
  const std::string trace = folder.path("trace");
  run({"translate", "-", "--trace=" + trace}, {.input = with_odd_name(single_tagged("100"))});
  EXPECT_THAT(contents(trace), HasSubstr(kOddNameShown));
  EXPECT_EQ(contents(trace).find(kOddName), std::string::npos);
}

// The document stays one: XML has no place for such characters, and neither form has one for what is no UTF-8.
TEST_F(Documents, OfARefusalAreWellFormed) {
  const std::string running = folder.file("running", plain_running());
  const auto refused = [&running](const char* format) {
    return run({"read", "--running", running, "--path", "/\x1b\xff\r", "--format", format}).out;
  };
  EXPECT_THAT(refused("xml"), HasSubstr("\\u{1b}\\x{ff}&#13;"));
  EXPECT_THAT(refused("json"), HasSubstr("\\u001b\\\\x{ff}\\u000d"));
}

struct Broken {
  const char* name;
  Environment surroundings;
};

struct Finish {
  const char* name;
  std::vector<std::string> arguments;
  int exit_code;
};

// What can become of a standard error that takes nothing, and of a run.
TEST_F(Documents, AreTheSameWhereNobodyCanBeTold) {
  folder.file("bad", "<a>");
  folder.file("refused", single_tagged("9999"));
  folder.file("request", single_tagged("100"));
  folder.file("list", form("single-tagged-list", "<vlan-ids>100</vlan-ids>"));
  folder.file("running", plain_running());
  const std::vector<Finish> runs = {
      {"Warning", {"translate", "request"}, 0},
      {"Difference", {"apply", "list", "--running", "running"}, 0},
      {"Trace", {"translate", "request", "--trace"}, 0},
      {"Refusal", {"translate", "refused", "--format", "xml"}, 1},
      {"Strict", {"apply", "list", "--running", "running", "--verify=strict", "--format", "json"}, 1},
      {"Usage", {"translate"}, 2},
      {"NotWellFormed", {"translate", "bad"}, 3},
      {"NoFile", {"translate", "none"}, 3},
  };
  std::vector<Broken> streams;
  streams.push_back({"Closed", {.closed = {2}}});
  streams.push_back({"AllClosedButOutput", {.closed = {0, 2}}});
  streams.push_back({"Full", {.error_file = "/dev/full"}});
  streams.push_back({"ReaderGone", {.error_reader_gone = true}});
  for (const Finish& each : runs) {
    const Outcome whole = run(each.arguments, {.folder = folder.path("")});
    EXPECT_EQ(whole.exit_code, each.exit_code) << each.name << "\n" << whole;
    EXPECT_NE(whole.err, "") << each.name;
    for (const Broken& stream : streams) {
      Environment surroundings = stream.surroundings;
      surroundings.folder = folder.path("");
      const Outcome outcome = run(each.arguments, surroundings);
      EXPECT_EQ(outcome.exit_code, whole.exit_code) << each.name << ", " << stream.name << "\n" << outcome;
      EXPECT_EQ(outcome.out, whole.out) << each.name << ", " << stream.name;
    }
  }
}

}  // namespace
}  // namespace cli_test
