// What the subcommands print when all is well, and the warnings and reports beside it.
#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

using Commands = CliTest;

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

constexpr char kNativeMerge[] =
    R"(<interface-configurations xmlns="http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg">
  <interface-configuration>
    <interface-name>Ethernet0/0/1.100</interface-name>
    <ethernet-service xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
      <encapsulation>
        <outer-tag-type>match-dot1q</outer-tag-type>
        <outer-range1-low>100</outer-range1-low>
      </encapsulation>
    </ethernet-service>
  </interface-configuration>
</interface-configurations>
)";

constexpr char kNativeMergeJson[] = R"({
  "Vexnet-OS-interface-cfg:interface-configurations": {
    "interface-configuration": [
      {
        "interface-name": "Ethernet0/0/1.100",
        "Vexnet-OS-l2-eth-infra-cfg:ethernet-service": {
          "encapsulation": {
            "outer-tag-type": "match-dot1q",
            "outer-range1-low": 100
          }
        }
      }
    ]
  }
}
)";

TEST_F(Commands, TranslateKnowsTheSubinterfaceFromTheRunningConfiguration) {
  const std::string running = folder.file("running.xml", plain_running());
  const Outcome xml = run({"translate", "-", "--running", running}, {.input = single_tagged("100")});
  EXPECT_EQ(xml.exit_code, 0) << xml;
  EXPECT_EQ(xml.out, kNativeMerge);
  EXPECT_EQ(xml.err, "");
  const Outcome json =
      run({"translate", "-", "--running", running, "--format", "json"}, {.input = single_tagged("100")});
  EXPECT_EQ(json.out, kNativeMergeJson) << json;
  EXPECT_EQ(json.err, "");
}

TEST_F(Commands, JsonInIsTheSameAsXmlIn) {
  constexpr char request[] = R"({"openconfig-interfaces:interfaces": {"interface": [{"name": "Ethernet0/0/1",
    "subinterfaces": {"subinterface": [{"index": 100,
      "openconfig-vlan:vlan": {"match": {"single-tagged": {"config": {"vlan-id": 100}}}}}]}}]}})";
  const std::string running = folder.file("running.xml", plain_running());
  const Outcome outcome = run({"translate", "-", "--running", running}, {.input = request});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, kNativeMerge);
}

TEST_F(Commands, AnUnknownSubinterfaceIsTakenForL3WithAWarning) {
  const Outcome outcome = run({"translate", "-"}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_TRUE(has(outcome.out, "<first-tag>100</first-tag>")) << outcome;
  EXPECT_EQ(outcome.err.rfind("warning: ", 0), 0U) << outcome;
  EXPECT_TRUE(has(outcome.err, "--l2")) << outcome;
  EXPECT_EQ(run({"translate", "-", "--quiet"}, {.input = single_tagged("100")}).err, "");
  EXPECT_EQ(run({"translate", "-", "--l3"}, {.input = single_tagged("100")}).err, "");
  EXPECT_EQ(run({"translate", "-", "--l3"}, {.input = single_tagged("100")}).out, outcome.out);
}

TEST_F(Commands, TheLayerIsAsTold) {
  const Outcome outcome = run({"translate", "-", "--l2"}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_TRUE(has(outcome.out, "<outer-range1-low>100</outer-range1-low>")) << outcome;
  EXPECT_TRUE(has(outcome.out, "<l2-transport")) << outcome;
  EXPECT_EQ(outcome.err, "");
}

TEST_F(Commands, AnUnprefixedOperationIsTakenAsMeant) {
  const std::string running = folder.file("running.xml", running_with_vlan("100"));
  const Outcome outcome = run({"translate", "-", "--running", running},
                              {.input = form("single-tagged", "<vlan-id operation=\"delete\"/>")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_TRUE(has(outcome.err, "warning: " + std::string(kMatchPath) + "/single-tagged/config/vlan-id: ")) << outcome;
  EXPECT_TRUE(has(outcome.err, "operation")) << outcome;
  EXPECT_TRUE(has(outcome.out, "remove") || has(outcome.out, "delete")) << outcome;
}

TEST_F(Commands, WhatNothingMapsCanBeLeftOut) {
  const std::string running = folder.file("running.xml", plain_running());
  const std::string request = vlan(
      "<config><vlan-id>7</vlan-id></config><match><single-tagged><config><vlan-id>100</vlan-id></config></"
      "single-tagged></match>");
  const Outcome outcome = run({"translate", "-", "--running", running, "--ignore-unmapped"}, {.input = request});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, kNativeMerge);
  EXPECT_TRUE(has(outcome.err, "warning: " + std::string(kSubinterfacePath) + "/openconfig-vlan:vlan/config/vlan-id: "))
      << outcome;
}

TEST_F(Commands, TheRoutedVlanIdCanBeBound) {
  const Outcome outcome = run({"translate", "-", "--l3", "--bind", "subinterface-vlan-id"},
                              {.input = vlan("<config><vlan-id>100</vlan-id></config>")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_TRUE(has(outcome.out, "<first-tag>100</first-tag>")) << outcome;
  EXPECT_EQ(outcome.err, "");
  const Outcome l2 = run({"translate", "-", "--l2", "--bind", "subinterface-vlan-id"},
                         {.input = vlan("<config><vlan-id>100</vlan-id></config>")});
  EXPECT_TRUE(has(l2.err,
                  "/Vexnet-OS-l2-eth-infra-cfg:vlan-sub-configuration/vlan-identifier: written although the "
                  "sub-interface is L2"))
      << l2;
}

TEST_F(Commands, AnEntryIsOnlyTakenOutOfAListThatIsKnown) {
  const std::string request = switched("<trunk-vlans nc:operation=\"delete\">10</trunk-vlans>");
  const Outcome outcome = run({"translate", "-"}, {.input = request});
  EXPECT_EQ(outcome.exit_code, 1) << outcome;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "ocvlan: refused: " + std::string(kSwitchedPath) +
                             "/trunk-vlans[.='10']: an entry of 'trunk-vlans' can only be removed where the running "
                             "configuration says which entries there are (--running)\n");
}

TEST_F(Commands, AnAnnotationOfTheWholeDocumentIsRefused) {
  const Outcome outcome = run({"translate", "-"}, {.input = R"({"@":{"ietf-netconf:operation":"delete"}})"});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.err,
            "ocvlan: standard input: line 1: an annotation \"@\" of the whole document is about nothing\n");
}

TEST_F(Commands, DefaultOperationNoneChangesNothing) {
  const std::string running = folder.file("running.xml", plain_running());
  const Outcome outcome =
      run({"apply", "-", "--running", running, "--default-operation", "none"}, {.input = single_tagged("100")});
  EXPECT_FALSE(has(outcome.out, "<outer-range1-low>")) << outcome;
}

TEST_F(Commands, ApplyPrintsTheConfigurationThatResults) {
  const std::string running = folder.file("running.xml", plain_running());
  const Outcome outcome = run({"apply", "-", "--running", running}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.err, "");
  EXPECT_TRUE(has(outcome.out, "<interface-name>Ethernet0/0/1</interface-name>")) << outcome;
  EXPECT_TRUE(has(outcome.out, "<l2-transport/>")) << outcome;
  EXPECT_TRUE(has(outcome.out, "<outer-range1-low>100</outer-range1-low>")) << outcome;
}

TEST_F(Commands, ApplyInPlace) {
  const std::string running = folder.file("running.xml", plain_running());
  ASSERT_EQ(run({"apply", "-", "--running", running, "-o", running}, {.input = single_tagged("100")}).exit_code, 0);
  const Outcome outcome = run({"read", "--running", running});
  EXPECT_TRUE(has(outcome.out, "<vlan-id>100</vlan-id>")) << outcome;
}

// A list of one comes back as half a range.
TEST_F(Commands, ADifferenceIsReportedOrRefused) {
  const std::string running = folder.file("running.xml", plain_running());
  const std::string request = form("single-tagged-list", "<vlan-ids>100</vlan-ids>");
  const std::string path = std::string(kMatchPath) + "/single-tagged-list/config/vlan-ids";
  const Outcome report = run({"apply", "-", "--running", running, "--quiet"}, {.input = request});
  EXPECT_EQ(report.exit_code, 0) << report;
  EXPECT_TRUE(has(report.err, "verify: ")) << report;
  EXPECT_TRUE(has(report.err, path)) << report;
  EXPECT_TRUE(has(report.err, "asked:      100\n")) << report;
  EXPECT_TRUE(has(report.out, "<outer-range1-high>4097</outer-range1-high>")) << report;
  const Outcome strict = run({"apply", "-", "--running", running, "--verify=strict"}, {.input = request});
  EXPECT_EQ(strict.exit_code, 1) << strict;
  EXPECT_EQ(strict.out, "");
  EXPECT_EQ(strict.err, "ocvlan: refused: " + path +
                            "[.='100']: 'vlan-ids' does not read back as asked: asked 100, reads back nothing, why: a "
                            "list of one id reads back as half a range; ask for single-tagged instead; 1 more\n");
  const Outcome off = run({"apply", "-", "--running", running, "--no-verify"}, {.input = request});
  EXPECT_EQ(off.exit_code, 0) << off;
  EXPECT_EQ(off.err, "");
  EXPECT_EQ(off.out, report.out);
}

struct OddRequest {
  std::string request;
  std::string native;  // part of the result
  std::string error = "";
};

// What looks odd but can be said natively, and reads back as it was asked.
TEST_F(Commands, OddRequestsThatAreTaken) {
  const std::string running = folder.file("running.xml", plain_running());
  const std::string trunk = "<interface-mode>TRUNK</interface-mode><trunk-vlans>";
  const std::vector<OddRequest> cases = {
      {switched(trunk + "5..5</trunk-vlans>"), "<trunk-vla-ns>5-5</trunk-vla-ns>"},
      {switched(trunk + "10..20</trunk-vlans><trunk-vlans>15</trunk-vlans>"), "<trunk-vla-ns>10-20,15</trunk-vla-ns>",
       "warning: " + std::string(kSwitchedPath) +
           "/trunk-vlans[.='15']: overlaps with 10..20, both are kept as they are\n"},
      {ingress("<vlan-stack-action>PUSH</vlan-stack-action>"), "<rewrite-type>push1</rewrite-type>",
       "warning: " + std::string(kSubinterfacePath) +
           "/openconfig-vlan:vlan/ingress-mapping/config/vlan-stack-action: PUSH without 'vlan-id': no id of the tag "
           "to put on is written natively, and none reads back unless the device holds one already\n"},
  };
  for (const OddRequest& odd : cases) {
    const Outcome outcome = run({"apply", "-", "--running", running, "--verify=strict"}, {.input = odd.request});
    EXPECT_EQ(outcome.exit_code, 0) << outcome;
    EXPECT_TRUE(has(outcome.out, odd.native)) << outcome;
    EXPECT_EQ(outcome.err, odd.error);
  }
}

// Of a leaf that the request does not name, nobody says that it was asked for.
TEST_F(Commands, WhatWasOnlyExpectedIsNotCalledAsked) {
  const std::string running = folder.file(
      "running.xml", running_with_rewrite("<rewrite-type>push1</rewrite-type><outer-tag-value>5</outer-tag-value>"));
  const std::string path = std::string(kSubinterfacePath) + "/openconfig-vlan:vlan/ingress-mapping/config/vlan-id";
  const std::string why = "a tag's type and id read back only with the actions PUSH and SWAP; ask for POP alone";
  const std::string xml = ingress("<vlan-stack-action>POP</vlan-stack-action>");
  const std::string json =
      R"({"openconfig-interfaces:interfaces": {"interface": [{"name": "Ethernet0/0/1", "subinterfaces": {)"
      R"("subinterface": [{"index": 100, "openconfig-vlan:vlan": {"ingress-mapping": {"config": {)"
      R"("vlan-stack-action": "POP"}}}}]}}]}})";
  for (const std::string& request : {xml, json}) {
    const Outcome report = run({"apply", "-", "--running", running}, {.input = request});
    EXPECT_EQ(report.err, "verify: 1 leaf does not read back as asked\n  " + path +
                              "\n    expected:   5\n    reads back: nothing\n    why:        " + why + "\n");
    const Outcome strict = run({"apply", "-", "--running", running, "--verify=strict"}, {.input = request});
    EXPECT_EQ(strict.err, "ocvlan: refused: " + path +
                              ": 'vlan-id' does not read back as asked: expected 5, reads back nothing, why: " + why +
                              "\n");
  }
}

// What the device would keep but not give back: told leaf by leaf, or refused.
TEST_F(Commands, HalfRequestsAreTold) {
  const std::string running = folder.file("running.xml", plain_running());
  const std::vector<std::pair<std::string, std::string>> cases = {
      {form("double-tagged", "<inner-vlan-id>10</inner-vlan-id>"),
       std::string(kMatchPath) + "/double-tagged/config/inner-vlan-id"},
      {ingress("<vlan-stack-action>POP</vlan-stack-action><vlan-id>5</vlan-id>"),
       std::string(kSubinterfacePath) + "/openconfig-vlan:vlan/ingress-mapping/config/vlan-id"},
  };
  for (const auto& [request, path] : cases) {
    const Outcome report = run({"apply", "-", "--running", running}, {.input = request});
    EXPECT_EQ(report.exit_code, 0) << report;
    EXPECT_TRUE(has(report.err, "verify: 1 leaf does not read back as asked\n  " + path + "\n")) << report;
    EXPECT_TRUE(has(report.err, "    reads back: nothing\n    why:        ")) << report;
    const Outcome strict = run({"apply", "-", "--running", running, "--verify=strict"}, {.input = request});
    EXPECT_EQ(strict.exit_code, 1) << strict;
    EXPECT_EQ(strict.out, "");
    EXPECT_TRUE(has(strict.err, path)) << strict;
  }
}

TEST_F(Commands, NineInAListAreTaken) {
  std::string ids;
  for (int i = 1; i <= 9; ++i) ids += "<vlan-ids>" + std::to_string(i) + "</vlan-ids>";
  const std::string running = folder.file("running.xml", plain_running());
  const Outcome outcome =
      run({"apply", "-", "--running", running, "--verify=strict"}, {.input = form("single-tagged-list", ids)});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_TRUE(has(outcome.out, "<additional-range8-low>9</additional-range8-low>")) << outcome;
}

class Read : public CliTest {
 protected:
  std::string running = folder.file(
      "running.xml",
      cli_test::running(entry("Ethernet0/0/1.100", encapsulation("<outer-range1-low>100</outer-range1-low>")) +
                        entry("Ethernet0/0/2.7", encapsulation("<outer-range1-low>7</outer-range1-low>"))));
};

TEST_F(Read, Everything) {
  const Outcome xml = run({"read", "--running", running});
  EXPECT_EQ(xml.exit_code, 0) << xml;
  EXPECT_TRUE(has(xml.out, "<vlan-id>100</vlan-id>") && has(xml.out, "<vlan-id>7</vlan-id>")) << xml;
  const Outcome json = run({"read", "--running", running, "--format", "json"});
  EXPECT_TRUE(has(json.out, "\"vlan-id\": 100") && has(json.out, "\"vlan-id\": 7")) << json;
}

TEST_F(Read, ByFilterAndByPathIsTheSame) {
  const Outcome filter = run({"read", "-", "--running", running}, {.input = interface("")});
  EXPECT_EQ(filter.exit_code, 0) << filter;
  EXPECT_TRUE(has(filter.out, "<vlan-id>100</vlan-id>")) << filter;
  EXPECT_FALSE(has(filter.out, "Ethernet0/0/2")) << filter;
  const Outcome path = run({"read", "--running", running, "--path", "/interfaces/interface[name='Ethernet0/0/1']"});
  EXPECT_EQ(path.out, filter.out) << path;
  const Outcome both = run({"read", "--running", running, "--path", "/interfaces/interface[name='Ethernet0/0/1']",
                            "--path", "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/2']"});
  EXPECT_EQ(both.out, run({"read", "--running", running}).out);
}

TEST_F(Read, AFilterThatMatchesNothingIsNoError) {
  const std::vector<std::string> path = {"read", "--running", running, "--path", "/interfaces/interface[name='none']"};
  const Outcome xml = run(path);
  EXPECT_EQ(xml.exit_code, 0) << xml;
  EXPECT_EQ(xml.out, "<data xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"/>\n");
  std::vector<std::string> json = path;
  json.insert(json.end(), {"--format", "json"});
  EXPECT_EQ(run(json).out, "{}\n");
}

TEST_F(Read, AFilterThatNamesWhatIsNotThereIsRefused) {
  const Outcome filter = run({"read", "-", "--running", running}, {.input = interface("<colour/>")});
  EXPECT_EQ(filter.exit_code, 1) << filter;
  EXPECT_TRUE(has(filter.err, "/openconfig-interfaces:interfaces/interface") && has(filter.err, "colour")) << filter;
  const Outcome path = run({"read", "--running", running, "--path", "/interfaces/colour"});
  EXPECT_EQ(path.exit_code, 1) << path;
  EXPECT_TRUE(has(path.err, "colour")) << path;
}

// Mode trunk without a tag type cannot be said in OpenConfig; the rest is.
TEST_F(Read, APartThatCannotBeSaidIsLeftOutWithAWarning) {
  const std::string file = folder.file(
      "odd.xml", cli_test::running(
                     entry("Ethernet0/0/1.100", encapsulation("<outer-range1-low>100</outer-range1-low>")) +
                     entry("Ethernet0/0/3", trunk_configuration("<vlan-switched><mode>trunk</mode></vlan-switched>"))));
  const Outcome lenient = run({"read", "--running", file});
  EXPECT_EQ(lenient.exit_code, 0) << lenient;
  EXPECT_TRUE(has(lenient.out, "<vlan-id>100</vlan-id>")) << lenient;
  EXPECT_EQ(lenient.err.rfind("warning: ", 0), 0U) << lenient;
  EXPECT_TRUE(has(lenient.err, "Ethernet0/0/3")) << lenient;
  const Outcome strict = run({"read", "--running", file, "--strict"});
  EXPECT_EQ(strict.exit_code, 1) << strict;
  EXPECT_EQ(strict.out, "");
}

TEST_F(Read, AnAnswerWithStateUnsaidIsNotWhole) {
  const std::string oper = folder.file("oper.xml", cli_test::oper_port("<mode>tunnel-port</mode>"));
  const Outcome lenient = run({"read", "--oper", oper});
  EXPECT_EQ(lenient.exit_code, 0) << lenient;
  EXPECT_TRUE(has(lenient.err, "OpenConfig does not say: vlan-switched/mode \"tunnel-port\"")) << lenient;
  const Outcome strict = run({"read", "--oper", oper, "--strict"});
  EXPECT_EQ(strict.exit_code, 1) << strict;
  EXPECT_EQ(strict.out, "");
  EXPECT_TRUE(has(strict.err, "the answer would not be whole: OpenConfig does not say: vlan-switched/mode")) << strict;
  const Outcome said = run({"read", "--oper", folder.file("said.xml", oper_access_port("20")), "--strict"});
  EXPECT_EQ(said.exit_code, 0) << said;
}

TEST_F(Read, StateAndConfigurationAlone) {
  const std::string file = folder.file("running.xml", cli_test::running(entry("Ethernet0/0/1", access_port("10"))));
  const std::string oper = folder.file("oper.xml", oper_access_port("20"));
  const std::vector<std::string> arguments = {"read", "--running", file, "--oper", oper};
  const auto read = [&arguments](std::vector<std::string> more) {
    more.insert(more.begin(), arguments.begin(), arguments.end());
    const Outcome outcome = run(more);
    EXPECT_EQ(outcome.exit_code, 0) << outcome;
    return std::pair(has(outcome.out, "<access-vlan>10</access-vlan>"),
                     has(outcome.out, "<access-vlan>20</access-vlan>"));
  };
  EXPECT_EQ(read({}), std::pair(true, true));
  EXPECT_EQ(read({"--config"}), std::pair(true, false));
  EXPECT_EQ(read({"--state"}), std::pair(false, true));
  const Outcome state = run({"read", "--running", file, "--oper", oper, "--state"});
  EXPECT_FALSE(has(state.out, "<config>")) << state;
  EXPECT_TRUE(has(state.out, "<name>Ethernet0/0/1</name>")) << state;
}

TEST_F(Commands, FetchNamesTheNativePathsOfARead) {
  const Outcome outcome = run({"fetch", "--l2", "--path",
                               "/interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']"
                               "/vlan/match/single-tagged/config/vlan-id"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_TRUE(has(outcome.out, "ethernet-service/encapsulation/outer-range1-low\n")) << outcome;
  EXPECT_TRUE(has(outcome.out, "ethernet-service/encapsulation/outer-tag-type\n")) << outcome;
  const Outcome state =
      run({"fetch", "--state", "--path", "/interfaces/interface/ethernet/switched-vlan/state/interface-mode"});
  EXPECT_EQ(state.exit_code, 0) << state;
  EXPECT_TRUE(has(state.out, "trunks/trunk")) << state;
}

TEST_F(Commands, TheTraceTellsCallsAndLog) {
  const std::string file = folder.path("trace.txt");
  const Outcome outcome = run({"translate", "-", "--l2", "--trace=" + file}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.err, "");
  const std::string trace = contents(file);
  EXPECT_TRUE(has(trace, "\ncall   ")) << trace;
  EXPECT_TRUE(has(trace, "\nlog 3  TRC: YFW: ctx=")) << trace;
  EXPECT_TRUE(has(trace, "outer-range1-low")) << trace;
  EXPECT_TRUE(has(trace, "oc2_vex_singletag_cfg_vlanid")) << trace;
  const Outcome on_stderr = run({"translate", "-", "--l2", "--trace"}, {.input = single_tagged("100")});
  EXPECT_EQ(on_stderr.out, outcome.out);
  EXPECT_TRUE(has(on_stderr.err, "\ncall   ")) << on_stderr;
}

}  // namespace
}  // namespace cli_test
