// What the tool tells of native settings for which OpenConfig has no word.
#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

using testing::HasSubstr;
using Unsaid = CliTest;

const std::string kEntries = "/Vexnet-OS-interface-cfg:interface-configurations/interface-configuration";
const std::string kEntry = kEntries + "[interface-name='Ethernet0/0/1.100']";
const std::string kRewritePath = kEntry + "/Vexnet-OS-l2-eth-infra-cfg:ethernet-service/rewrite/rewrite-type";
const std::string kPop2 = "ethernet-service/rewrite/rewrite-type \"pop2\"";

std::string rewrite(const std::string& type) {
  return "<ethernet-service xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg\"><rewrite><rewrite-type>" +
         type + "</rewrite-type></rewrite></ethernet-service>";
}

std::string carrier_delay(const std::string& up) {
  return "<carrier-delay xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg\"><up>" + up +
         "</up></carrier-delay>";
}

// Two interfaces, and a sub-interface that pops two tags.
std::string device() {
  return running(entry("Ethernet0/0/1", carrier_delay("5")) +
                 entry("Ethernet0/0/1.100", "<l2-transport/>" + rewrite("pop2")) +
                 entry("Ethernet0/0/2", carrier_delay("6")));
}

std::string warning(const std::string& entry, const std::string& text) {
  return "warning: " + kEntries + "[interface-name='" + entry + "']: " + text + "\n";
}

const std::string kAllUnsaid = warning("Ethernet0/0/1", "OpenConfig does not say: carrier-delay/up \"5\"") +
                               warning("Ethernet0/0/1.100", "OpenConfig does not say: " + kPop2) +
                               warning("Ethernet0/0/2", "OpenConfig does not say: carrier-delay/up \"6\"");

TEST_F(Unsaid, IsAWarningForEachEntryOfARead) {
  const Outcome outcome = run({"read", "--running", "-"}, {.input = device()});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.err, kAllUnsaid);
  EXPECT_THAT(outcome.out, HasSubstr("<index>100</index>"));
  const Outcome quiet = run({"read", "--running", "-", "--quiet"}, {.input = device()});
  EXPECT_EQ(quiet.err, "");
  EXPECT_EQ(quiet.out, outcome.out);
}

TEST_F(Unsaid, IsToldAsFarAsItIsAskedFor) {
  const std::string sub = "/interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']";
  const auto told = [](const std::string& path) {
    return run({"read", "--running", "-", "--path", path}, {.input = device()}).err;
  };
  EXPECT_EQ(told(sub), warning("Ethernet0/0/1.100", "OpenConfig does not say: " + kPop2));
  EXPECT_EQ(told(sub + "/vlan/ingress-mapping"), told(sub));
  EXPECT_EQ(told(sub + "/vlan/match"), "");
  EXPECT_EQ(told(sub + "/config"), "");
}

TEST_F(Unsaid, IsNoWholeAnswer) {
  const std::string device_file = folder.file("running.xml", device());
  const std::string answer = folder.path("answer.xml");
  const Outcome outcome = run({"read", "--running", device_file, "--strict", "-o", answer});
  EXPECT_EQ(outcome.exit_code, 1) << outcome;
  EXPECT_FALSE(std::filesystem::exists(answer));
  EXPECT_EQ(outcome.err, kAllUnsaid + "ocvlan: refused: " + kEntries +
                             "[interface-name='Ethernet0/0/1']: the answer would not be whole: OpenConfig does not "
                             "say: carrier-delay/up \"5\"\n");
  const Outcome said = run({"read", "--running", "-", "--strict"}, {.input = plain_running()});
  EXPECT_EQ(said.exit_code, 0) << said;
}

TEST_F(Unsaid, StandsInTheTrace) {
  const std::string device_file = folder.file("running.xml", device());
  const std::string trace = folder.path("trace.txt");
  const Outcome outcome = run({"read", "--running", device_file, "--trace=" + trace});
  std::string notes;
  std::istringstream lines(contents(trace));
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("note   ")) notes += "warning: " + line.substr(7) + "\n";
  }
  EXPECT_EQ(notes, outcome.err);
  EXPECT_EQ(notes, kAllUnsaid);
}

TEST_F(Unsaid, IsInTheTableWhereOpenConfigSaysNothing) {
  const std::string native =
      running(entry("Ethernet0/0/1", trunk_configuration("<vlan-switched><mode>tunnel</mode></vlan-switched>")) +
              entry("Ethernet0/0/1.100", rewrite("pop2")) + entry("Ethernet0/0/1.200", carrier_delay("5")) +
              entry("Ethernet0/0/1.300", encapsulation("<outer-range1-low>10</outer-range1-low>"
                                                       "<outer-range1-high>20</outer-range1-high>"
                                                       "<additional-range1-low>30</additional-range1-low>")));
  const Outcome outcome = run({"read", "--running", "-", "--format", "text", "--quiet"}, {.input = native});
  EXPECT_EQ(outcome.out,
            "interface          config\n"
            "Ethernet0/0/1      (native: vlan-switched mode tunnel)\n"
            "Ethernet0/0/1.100  (native: rewrite pop2)\n"
            "Ethernet0/0/1.200  -\n"
            "Ethernet0/0/1.300  list 10,30\n");
}

struct Edit {
  const char* name;
  std::string request;
  std::string told;
  std::string refused;  // by a strict run; empty when it accepts
  std::vector<std::string> options = {};
};

void PrintTo(const Edit& edit, std::ostream* out) {
  *out << edit.name;
}

class Edits : public testing::TestWithParam<Edit> {
 protected:
  Folder folder;

  std::vector<std::string> words(const std::string& running, const std::string& after) const {
    std::vector<std::string> all{"apply", "-", "--running", running, "-o", after};
    all.insert(all.end(), GetParam().options.begin(), GetParam().options.end());
    return all;
  }
};

TEST_P(Edits, TellWhatStaysAndWhatGoes) {
  const std::string running = folder.file("running.xml", device());
  const Outcome outcome = run(words(running, folder.path("after.xml")), {.input = GetParam().request});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.err, GetParam().told);
}

TEST_P(Edits, AreRefusedByAStrictRunWhenSomethingGoes) {
  const std::string running = folder.file("running.xml", device());
  const std::string after = folder.path("after.xml");
  std::vector<std::string> strict = words(running, after);
  strict.emplace_back("--verify=strict");
  const Outcome outcome = run(strict, {.input = GetParam().request});
  EXPECT_EQ(outcome.exit_code, GetParam().refused.empty() ? 0 : 1) << outcome;
  EXPECT_EQ(std::filesystem::exists(after), GetParam().refused.empty());
  EXPECT_THAT(outcome.err, testing::EndsWith(GetParam().refused));
}

INSTANTIATE_TEST_SUITE_P(
    Apply, Edits,
    testing::Values(
        Edit{"ATagBesideIt", single_tagged("7"),
             warning("Ethernet0/0/1.100", "stays, and OpenConfig does not say it: " + kPop2), ""},
        Edit{"AReplacedEntry",
             interface("<subinterfaces><subinterface nc:operation=\"replace\"><index>100</index></subinterface>"
                       "</subinterfaces>"),
             warning("Ethernet0/0/1.100", "goes, and OpenConfig does not say it: " + kPop2),
             "ocvlan: refused: " + kRewritePath +
                 ": the edit takes away what OpenConfig does not say: rewrite-type \"pop2\"; merge what changes and "
                 "remove what goes, which keeps it, and do not replace\n"},
        Edit{"ADeletedEntry",
             interface("<subinterfaces><subinterface nc:operation=\"delete\"><index>100</index></subinterface>"
                       "</subinterfaces>"),
             warning("Ethernet0/0/1.100", "goes, and OpenConfig does not say it: " + kPop2),
             "ocvlan: refused: " + kRewritePath +
                 ": the edit takes away what OpenConfig does not say: rewrite-type \"pop2\"; remove what is meant in "
                 "the entry and not the entry, or leave --verify=strict out\n"},
        Edit{
            "ByTheDefaultOperation",
            interface(""),
            "warning: /openconfig-interfaces:interfaces: replaced by a request that does not name them: interface "
            "'Ethernet0/0/2' goes\n"
            "warning: /openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces: replaced by a "
            "request that does not name them: subinterface '100' goes\n" +
                warning("Ethernet0/0/1", "goes, and OpenConfig does not say it: carrier-delay/up \"5\"") +
                warning("Ethernet0/0/1.100", "goes, and OpenConfig does not say it: " + kPop2) +
                warning("Ethernet0/0/2", "goes, and OpenConfig does not say it: carrier-delay/up \"6\""),
            ": the edit takes away what OpenConfig does not say: up \"5\", rewrite-type \"pop2\", up \"6\"; merge what "
            "changes and remove what goes, which keeps it, and do not replace\n",
            {"--default-operation", "replace"}}),
    [](const auto& info) { return info.param.name; });

TEST_F(Unsaid, IsWhatIsThereInPlaceOfWhatIsToGo) {
  const std::string device_file = folder.file("running.xml", device());
  const Outcome outcome =
      run({"translate", "-", "--running", device_file}, {.input = vlan("<ingress-mapping nc:operation=\"delete\"/>")});
  EXPECT_EQ(outcome.exit_code, 1) << outcome;
  EXPECT_THAT(outcome.err, HasSubstr("'ingress-mapping' is not there to be deleted; natively there is " + kPop2 +
                                     ", which OpenConfig does not say\n"));
}

TEST_F(Unsaid, IsARefusalWithItsPathForPrograms) {
  const std::string device_file = folder.file("running.xml", device());
  const std::string request = subinterface(
      "<vlan xmlns=\"http://openconfig.net/yang/vlan\"><ingress-mapping><config>"
      "<vlan-stack-action>POP</vlan-stack-action></config></ingress-mapping></vlan>");
  const Outcome outcome =
      run({"translate", "-", "--running", device_file, "--verify=strict", "--format", "json"}, {.input = request});
  EXPECT_EQ(outcome.exit_code, 1) << outcome;
  EXPECT_THAT(outcome.out + outcome.err, HasSubstr("\"error-tag\": \"operation-failed\""));
  EXPECT_THAT(outcome.out + outcome.err, HasSubstr("\"error-path\": \"" + kRewritePath + "\""));
  EXPECT_THAT(outcome.out + outcome.err, HasSubstr("\"bad-element\": \"rewrite-type\""));
}

struct Pair {
  const char* name;
  std::string before;  // inside sub-interface 100
  std::string after;
  std::string lines;
};

void PrintTo(const Pair& pair, std::ostream* out) {
  *out << pair.name;
}

class NativeLines : public testing::TestWithParam<Pair> {};

TEST_P(NativeLines, AreMarked) {
  const Folder folder;
  const std::string before = folder.file("before.xml", running(entry("Ethernet0/0/1.100", GetParam().before)));
  const std::string after = folder.file("after.xml", running(entry("Ethernet0/0/1.100", GetParam().after)));
  const Outcome outcome = run({"diff", before, after});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, GetParam().lines);
  EXPECT_EQ(outcome.err, "");
}

const std::string kAction =
    std::string(kSubinterfacePath) + "/openconfig-vlan:vlan/ingress-mapping/config/vlan-stack-action";

INSTANTIATE_TEST_SUITE_P(
    Diff, NativeLines,
    testing::Values(Pair{"Changed", rewrite("pop2"), rewrite("push2"),
                         "~ " + kRewritePath + ": pop2 -> push2 (native)\n"},
                    Pair{"Gone", rewrite("pop2"), "", "- " + kRewritePath + ": pop2 (native)\n"},
                    Pair{"New", "", rewrite("pop2"), "+ " + kRewritePath + ": pop2 (native)\n"},
                    Pair{"BesideWhatOpenConfigSays", rewrite("pop1"), rewrite("pop2"),
                         "- " + kAction + ": POP\n~ " + kRewritePath + ": pop1 -> pop2 (native)\n"},
                    Pair{"TheLayer", "<l2-transport/>", "", "- " + kEntry + "/l2-transport (native)\n"},
                    Pair{"Nothing", rewrite("pop2"), rewrite("pop2"), ""}),
    [](const auto& info) { return info.param.name; });

TEST_F(Unsaid, ThatARequestTakesIsADifference) {
  const std::string before = folder.file("before.xml", device());
  const Outcome outcome =
      run({"diff", before, "-", "--quiet"},
          {.input = interface("<subinterfaces><subinterface nc:operation=\"replace\"><index>100</index></subinterface>"
                              "</subinterfaces>")});
  EXPECT_EQ(outcome.out, "- " + kRewritePath + ": pop2 (native)\n") << outcome;
}

TEST_F(Unsaid, IsInTheTreeOfDifferences) {
  const std::string before = folder.file("before.xml", running(entry("Ethernet0/0/1.100", rewrite("pop2"))));
  const std::string after = folder.file("after.xml", running(entry("Ethernet0/0/1.100", rewrite("push2"))));
  EXPECT_EQ(
      run({"diff", before, after, "--format", "xml"}).out,
      R"(<interface-configurations xmlns="http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg" xmlns:yang="urn:ietf:params:xml:ns:yang:1" yang:operation="none">
  <interface-configuration>
    <interface-name>Ethernet0/0/1.100</interface-name>
    <ethernet-service xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
      <rewrite>
        <rewrite-type yang:operation="replace" yang:orig-default="false" yang:orig-value="pop2">push2</rewrite-type>
      </rewrite>
    </ethernet-service>
  </interface-configuration>
</interface-configurations>
)");
  const Outcome json = run({"diff", before, after, "--format", "json"});
  EXPECT_THAT(json.out, HasSubstr("\"yang:orig-value\": \"pop2\"")) << json;
  EXPECT_THAT(json.out, HasSubstr("\"rewrite-type\": \"push2\"")) << json;
}

}  // namespace
}  // namespace cli_test
