// Files in and out: what cannot be read, what cannot be written, and that nothing is ever half written.
#include <sys/stat.h>

#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

using Files = CliTest;

std::string deep(int levels) {
  std::string text;
  for (int i = 0; i < levels; ++i) text += "<a>";
  return interface(text);
}

struct UnreadableCase {
  const char* name;
  std::string text;
  std::string message;  // part of the line on standard error, after the file's name
};

void PrintTo(const UnreadableCase& param, std::ostream* stream) {
  *stream << param.name;
}

class Unreadable : public testing::TestWithParam<UnreadableCase> {
 protected:
  Folder folder;

  // The text as a request, a running configuration, a filter or operational data: always the same end.
  void expect(const std::vector<std::string>& arguments, const std::string& file) {
    std::vector<std::string> all = arguments;
    all.insert(all.end(), {"-o", folder.path("output")});
    const Outcome outcome = run(all);
    EXPECT_EQ(outcome.exit_code, 3) << outcome;
    EXPECT_EQ(outcome.out, "") << outcome;
    EXPECT_EQ(outcome.err.rfind("ocvlan: " + file, 0), 0U) << outcome;
    EXPECT_NE(outcome.err.find(GetParam().message), std::string::npos) << GetParam().message << "\n" << outcome;
    EXPECT_EQ(outcome.err.find('\n'), outcome.err.size() - 1) << outcome;
    EXPECT_EQ(contents(folder.path("output")), "");
  }
};

TEST_P(Unreadable, IsToldByName) {
  const std::string bad = folder.file("bad", GetParam().text);
  const std::string good = folder.file("running.xml", plain_running());
  const std::string request = folder.file("request.xml", single_tagged("100"));
  {
    SCOPED_TRACE("request");
    expect({"apply", bad, "--running", good}, bad);
  }
  {
    SCOPED_TRACE("running");
    expect({"apply", request, "--running", bad}, bad);
  }
  {
    SCOPED_TRACE("filter");
    expect({"read", bad, "--running", good}, bad);
  }
  {
    SCOPED_TRACE("operational");
    expect({"read", "--oper", bad}, bad);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cli, Unreadable,
    testing::ValuesIn<std::vector<UnreadableCase>>({
        {"Empty", "", "empty"},
        {"Blank", " \n\t", "empty"},
        {"PlainText", "vlan 100", "neither XML, which begins with '<', nor JSON, which begins with '{'"},
        {"Binary",
         std::string("\x7f"
                     "ELF\0\1\2\3",
                     8),
         "neither XML"},
        {"BinaryAfterBracket", std::string("<\0\1\xff", 4), "line 1"},
        {"BinaryAfterBrace", std::string("{\0\1\xff", 4), ""},
        {"NotUtf8", single_tagged("\xff\xfe"), "line 1"},
        {"TruncatedXml", single_tagged("100").substr(0, 120), "line 1"},
        {"TruncatedJson", R"({"openconfig-interfaces:interfaces": {"interface": [{"name": )", ""},
        {"TwoRoots", "<a/><b>", "line 1"},
        {"DeepXml", deep(100'000), ""},
        {"DeepJson",
         [] {
           std::string text;
           for (int i = 0; i < 100'000; ++i) text += "{\"a\":";
           return text;
         }(),
         ""},
        {"HugeAttribute",
         "<interfaces xmlns=\"http://openconfig.net/yang/interfaces\" a=\"" + std::string(20'000'000, 'x') + "\"/>",
         ""},
        {"Doctype", "<!DOCTYPE a>" + single_tagged("100"), "DOCTYPE"},
        {"Entities", "<!DOCTYPE a [<!ENTITY b \"100\">]>" + single_tagged("&b;"), "DOCTYPE"},
        {"ExternalEntity", "<!DOCTYPE a [<!ENTITY b SYSTEM \"file:///etc/passwd\">]>" + single_tagged("&b;"),
         "DOCTYPE"},
    }),
    [](const auto& info) { return info.param.name; });

TEST_F(Files, AFileThatIsNotThere) {
  const std::string file = folder.path("none.xml");
  const Outcome outcome = run({"translate", file});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.err, "ocvlan: " + file + ": cannot be read: No such file or directory\n");
}

TEST_F(Files, AFolderIsNoFile) {
  const Outcome outcome = run({"translate", folder.path("")});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_NE(outcome.err.find("cannot be read: Is a directory"), std::string::npos) << outcome;
}

// Reading it fails for everybody, the administrator included.
TEST_F(Files, AFileThatCannotBeRead) {
  const Outcome outcome = run({"translate", "/proc/self/mem"});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.err, "ocvlan: /proc/self/mem: cannot be read: Input/output error\n");
}

TEST_F(Files, StandardInputIsNamed) {
  const Outcome outcome = run({"translate", "-"}, {.input = ""});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.err, "ocvlan: standard input: empty\n");
}

TEST_F(Files, StandardInputIsReadLikeAFile) {
  const std::string file = folder.file("request.xml", single_tagged("100"));
  const Outcome from_file = run({"translate", file, "--l2"});
  const Outcome from_input = run({"translate", "-", "--l2"}, {.input = single_tagged("100")});
  EXPECT_EQ(from_input.exit_code, 0) << from_input;
  EXPECT_EQ(from_input.out, from_file.out);
  EXPECT_NE(from_input.out.find("<outer-range1-low>100</outer-range1-low>"), std::string::npos) << from_input;
}

// The first character tells the format, not the name; a byte order mark is none.
TEST_F(Files, TheNameSaysNothingAboutTheFormat) {
  const std::string file = folder.file("request.json", "\xEF\xBB\xBF\n " + single_tagged("100"));
  const Outcome outcome = run({"translate", file, "--l2"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
}

TEST_F(Files, OutputReplacesAFileAndKeepsItsMode) {
  const std::string file = folder.file("native.xml", "before");
  chmod(file.c_str(), 0640);
  const Outcome outcome = run({"translate", "-", "--l2", "-o", file}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(contents(file), run({"translate", "-", "--l2"}, {.input = single_tagged("100")}).out);
  struct stat status = {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
  EXPECT_EQ(folder.names(), std::vector<std::string>{"native.xml"});
}

TEST_F(Files, OutputThroughALinkKeepsTheLink) {
  const std::string file = folder.file("native.xml", "before");
  const std::string link = folder.path("link.xml");
  std::filesystem::create_symlink("native.xml", link);
  EXPECT_EQ(run({"translate", "-", "--l2", "-o", link}, {.input = single_tagged("100")}).exit_code, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_NE(contents(file), "before");
}

TEST_F(Files, ARefusalLeavesTheOutputFileAsItWas) {
  const std::string file = folder.file("after.xml", "before");
  const std::string request = folder.file("request.xml", single_tagged("4095"));
  const Outcome outcome = run({"translate", request, "--l2", "-o", file});
  EXPECT_EQ(outcome.exit_code, 1) << outcome;
  EXPECT_EQ(contents(file), "before");
}

TEST_F(Files, OutputIntoAFolderThatIsNotThere) {
  const std::string file = folder.path("none/native.xml");
  const Outcome outcome = run({"translate", "-", "--l2", "-o", file}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "ocvlan: " + file + ": cannot be written: No such file or directory\n");
  EXPECT_TRUE(folder.names().empty());
}

TEST_F(Files, OutputOntoAFolder) {
  const Outcome outcome = run({"translate", "-", "--l2", "-o", folder.path("")}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_NE(outcome.err.find("cannot be written: Is a directory"), std::string::npos) << outcome;
}

// The kernel refuses the second half, as it does on a full disk.
TEST_F(Files, AFullDiskLeavesTheOutputFileAsItWas) {
  constexpr std::size_t kLimit = 256;
  const std::vector<std::string> arguments = {"translate", "-", "--l2", "--quiet"};
  ASSERT_GT(run(arguments, {.input = single_tagged("100")}).out.size(), kLimit);
  const std::string file = folder.file("native.xml", "before");
  const Outcome outcome = run({"translate", "-", "--l2", "--quiet", "-o", file},
                              {.input = single_tagged("100"), .file_size_limit = kLimit});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.err, "ocvlan: " + file + ": cannot be written: File too large\n");
  EXPECT_EQ(contents(file), "before");
  EXPECT_EQ(folder.names(), std::vector<std::string>{"native.xml"});
}

// What is no regular file is written to, not replaced.
TEST_F(Files, OutputIntoAPipe) {
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::string script =
      "timeout 20 cat '" + pipe + "' & '" OC_VLAN_TOOL_FILE "' translate - --l2 -o '" + pipe + "'; wait";
  const Outcome outcome = run({"-c", script}, {.input = single_tagged("100"), .program = "/bin/bash"});
  EXPECT_EQ(outcome.out, run({"translate", "-", "--l2"}, {.input = single_tagged("100")}).out) << outcome;
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(Files, StandardOutputIsFull) {
  const Outcome outcome = run({"translate", "-", "--l2"}, {.input = single_tagged("100"), .output_file = "/dev/full"});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.err, "ocvlan: standard output: cannot be written: No space left on device\n");
}

TEST_F(Files, NobodyReadsStandardOutput) {
  const Outcome outcome =
      run({"translate", "-", "--l2", "--quiet"}, {.input = single_tagged("100"), .reader_gone = true});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(run({"--help"}, {.reader_gone = true}).exit_code, 0);
}

// More than a pipe holds, so that the reader is gone in the middle of a write.
TEST_F(Files, TheReaderStopsInTheMiddle) {
  std::string entries;
  for (int i = 1; i <= 1000; ++i) {
    entries += entry("Ethernet0/0/1." + std::to_string(i), encapsulation("<outer-range1-low>7</outer-range1-low>"));
  }
  const std::string file = folder.file("running.xml", running(entries));
  ASSERT_GT(run({"read", "--running", file}).out.size(), 1U << 17);
  const std::string script = "'" OC_VLAN_TOOL_FILE "' read --running '" + file + "' | head -c 1; exit ${PIPESTATUS[0]}";
  const Outcome outcome = run({"-c", script}, {.program = "/bin/bash"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, "<");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Files, ATraceThatCannotBeWritten) {
  const std::string file = folder.path("none/trace.txt");
  const Outcome opened = run({"translate", "-", "--l2", "--trace=" + file}, {.input = single_tagged("100")});
  EXPECT_EQ(opened.exit_code, 3) << opened;
  EXPECT_EQ(opened.err, "ocvlan: " + file + ": cannot be written: No such file or directory\n");
  const Outcome full = run({"translate", "-", "--l2", "--trace=/dev/full"}, {.input = single_tagged("100")});
  EXPECT_EQ(full.exit_code, 3) << full;
  EXPECT_EQ(full.out, "");
}

TEST_F(Files, ThePluginIsNoPlugin) {
  const std::string text = folder.file("text.so", "no library");
  for (const std::string& file : {text, folder.path("none.so"), std::string("libc.so.6")}) {
    const Outcome outcome = run({"translate", "-", "--plugin", file}, {.input = single_tagged("100")});
    EXPECT_EQ(outcome.exit_code, 3) << outcome;
    EXPECT_NE(outcome.err.find(file), std::string::npos) << outcome;
    EXPECT_EQ(outcome.out, "");
  }
}

TEST_F(Files, TheEnvironmentNamesPluginAndModels) {
  const std::string none = folder.path("none");
  const Outcome plugin =
      run({"translate", "-"}, {.input = single_tagged("100"), .variables = {{"OCVLAN_PLUGIN", none}}});
  EXPECT_EQ(plugin.exit_code, 3) << plugin;
  EXPECT_NE(plugin.err.find(none), std::string::npos) << plugin;
  const Outcome models = run({"translate", "-"}, {.input = single_tagged("100"), .variables = {{"OCVLAN_YANG", none}}});
  EXPECT_EQ(models.exit_code, 3) << models;
  EXPECT_NE(models.err.find(none), std::string::npos) << models;
}

TEST_F(Files, ModelsThatAreNotThere) {
  const std::string none = folder.path("none");
  const Outcome outcome = run({"translate", "-", "--yang-dir", none}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_NE(outcome.err.find(none), std::string::npos) << outcome;
}

}  // namespace
}  // namespace cli_test
