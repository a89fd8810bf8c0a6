// Files in: what cannot be read, and which is which.
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
        {"NulAndMore", single_tagged("100") + std::string("\n\0<more/>", 9), "line 2: a NUL character"},
        {"NulInJson", std::string("{\"a\": 1}\n\0{}", 12), "line 2"},
        {"ManyAttributes",
         [] {
           std::string text = "<a";
           for (int i = 0; i < 200'000; ++i) text += " a" + std::to_string(i) + "=''";
           return text + "/>";
         }(),
         "line 1: an element has more than 256 attributes"},
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

TEST_F(Files, ATraceThatCannotBeWritten) {
  const std::string file = folder.path("none/trace.txt");
  const Outcome opened = run({"translate", "-", "--l2", "--trace=" + file}, {.input = single_tagged("100")});
  EXPECT_EQ(opened.exit_code, 3) << opened;
  EXPECT_EQ(opened.err, "ocvlan: " + file + ": cannot be written: No such file or directory\n");
  const Outcome full = run({"translate", "-", "--l2", "--trace=/dev/full"}, {.input = single_tagged("100")});
  EXPECT_EQ(full.exit_code, 3) << full;
  EXPECT_EQ(full.out, "");
}

std::string many_ids(int count) {
  std::string text;
  for (int i = 1; i <= count; ++i) text += "<vlan-ids>" + std::to_string(i) + "</vlan-ids>";
  return text;
}

struct SameFile {
  const char* name;
  std::vector<std::string> arguments;  // names in the folder
  std::string same;                    // what the trace would write over
};

// A trace grows while the tool works, and would be what it reads or writes. Nothing is read, nothing is written.
TEST_F(Files, ATraceIsNoOtherFileOfTheRun) {
  const std::vector<std::string> names = {"filter", "oper", "request", "running"};
  folder.file("request", single_tagged("100"));
  folder.file("running", plain_running());
  folder.file("filter", "<interfaces xmlns=\"http://openconfig.net/yang/interfaces\"/>");
  folder.file("oper", oper_access_port("7"));
  std::filesystem::create_symlink("request", folder.path("link"));
  std::filesystem::create_hard_link(folder.path("request"), folder.path("twin"));
  std::filesystem::create_symlink("new", folder.path("dangling"));
  std::vector<std::string> before;
  for (const std::string& name : names) before.push_back(contents(folder.path(name)));
  const std::vector<std::string> all = folder.names();

  for (const SameFile& each : std::vector<SameFile>{
           {"Request", {"translate", "request", "--trace=request"}, "request"},
           {"RequestByAnotherName", {"translate", "request", "--trace=./request"}, "request"},
           {"RequestByALink", {"translate", "request", "--trace=link"}, "request"},
           {"RequestByATwin", {"translate", "twin", "--trace=request"}, "twin"},
           {"StandardInput", {"translate", "-", "--trace=request"}, "standard input"},
           {"Running", {"apply", "request", "--running", "running", "--trace=running"}, "running"},
           {"Oper", {"read", "--oper", "oper", "--trace=oper"}, "oper"},
           {"Filter", {"read", "filter", "--running", "running", "--trace=filter"}, "filter"},
           {"First", {"diff", "running", "request", "--trace=running"}, "running"},
           {"Second", {"diff", "running", "request", "--trace=request"}, "request"},
           {"PlugIn", {"translate", "request", "--plugin", "oper", "--trace=oper"}, "oper"},
           {"Output", {"translate", "request", "-o", "new", "--trace=new"}, "new"},
           {"OutputByALink", {"translate", "request", "-o", "new", "--trace=dangling"}, "new"},
           {"OutputThatIsThere", {"translate", "request", "-o", "oper", "--trace=oper"}, "oper"},
           {"StandardOutput", {"translate", "request", "--trace=running"}, "standard output"},
       }) {
    SCOPED_TRACE(each.name);
    const bool to_file = each.same == "standard output";
    // Standard input is the request by another name, and standard output, where it counts, the running configuration.
    std::string script = "'" OC_VLAN_TOOL_FILE "'";
    for (const std::string& argument : each.arguments) script += " " + argument;
    script += to_file ? " < request >> running" : " < request";
    const Outcome outcome = run({"-c", script}, {.folder = folder.path(""), .program = "/bin/bash"});
    EXPECT_EQ(outcome.exit_code, 2) << outcome;
    EXPECT_EQ(outcome.err.rfind("ocvlan: " + each.arguments.back() + ": " + each.same + " is the same file\n", 0), 0U)
        << outcome;
    for (std::size_t i = 0; i < names.size(); ++i) EXPECT_EQ(contents(folder.path(names[i])), before[i]) << names[i];
    EXPECT_EQ(folder.names(), all);
  }
}

TEST_F(Files, ATraceMayShareADevice) {
  const Outcome outcome =
      run({"translate", "-", "--trace=/dev/null", "-o", "/dev/null"}, {.input = single_tagged("1")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
}

// What is refused before it starts leaves no trace, and an older one stays.
TEST_F(Files, ATraceIsOpenedWhenEverythingIsRead) {
  const std::string trace = folder.file("trace", "before");
  EXPECT_EQ(run({"translate", folder.path("none"), "--trace=" + trace}).exit_code, 3);
  EXPECT_EQ(
      run({"translate", "-", "--yang-dir", folder.path("none"), "--trace=" + trace}, {.input = single_tagged("100")})
          .exit_code,
      3);
  EXPECT_EQ(contents(trace), "before");
}

TEST_F(Files, ATraceOfARefusalIsWhole) {
  const std::string trace = folder.path("trace");
  const std::string request = form("single-tagged-list", many_ids(10));
  const Outcome to_file = run({"translate", "-", "--l2", "--trace=" + trace}, {.input = request});
  EXPECT_EQ(to_file.exit_code, 1) << to_file;
  const Outcome to_stream = run({"translate", "-", "--l2", "--trace"}, {.input = request});
  EXPECT_EQ(to_stream.exit_code, 1) << to_stream;
  EXPECT_EQ(trace_without_addresses(contents(trace) + to_file.err), trace_without_addresses(to_stream.err));
  EXPECT_NE(contents(trace).find("Number of VLAN IDs provided more than max(9)."), std::string::npos);
}

TEST_F(Files, APipeIsReadOnce) {
  const std::string script = "cat > /dev/null | '" OC_VLAN_TOOL_FILE "' apply - --running /dev/stdin";
  const Outcome outcome = run({"-c", script}, {.program = "/bin/bash"});
  EXPECT_EQ(outcome.exit_code, 2) << outcome;
  EXPECT_EQ(outcome.err.rfind("ocvlan: standard input can be read once only\n", 0), 0U) << outcome;
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

TEST_F(Files, AFolderIsNoPluginAndNoModel) {
  const Outcome plugin = run({"translate", "-", "--plugin", folder.path("")}, {.input = single_tagged("100")});
  EXPECT_EQ(plugin.exit_code, 3) << plugin;
  EXPECT_NE(plugin.err.find(folder.path("")), std::string::npos) << plugin;
  EXPECT_NE(plugin.err.find("Is a directory"), std::string::npos) << plugin;
  std::filesystem::copy(OC_VLAN_SOURCE_DIR "/yang", folder.path("yang"));
  const std::string module = folder.path("yang/Vexnet-OS-interface-cfg.yang");
  std::filesystem::remove(module);
  std::filesystem::create_directory(module);
  const Outcome models =
      run({"translate", "-"}, {.input = single_tagged("100"), .variables = {{"OCVLAN_YANG", folder.path("yang")}}});
  EXPECT_EQ(models.exit_code, 3) << models;
  EXPECT_EQ(models.err,
            "ocvlan: cannot load module Vexnet-OS-interface-cfg: " + module + " cannot be read: it is no file\n");
}

TEST_F(Files, ModelsThatAreNotThere) {
  const std::string none = folder.path("none");
  const Outcome outcome = run({"translate", "-", "--yang-dir", none}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_NE(outcome.err.find(none), std::string::npos) << outcome;
}

}  // namespace
}  // namespace cli_test
