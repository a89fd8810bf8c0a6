// Comparing configurations with each other, with requests, and with what the device does.
#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

using Diff = CliTest;

const std::string kVlanId = std::string(kMatchPath) + "/single-tagged/config/vlan-id";

TEST_F(Diff, TwoConfigurations) {
  const std::string before = folder.file("before.xml", running_with_vlan("100"));
  const std::string after = folder.file("after.xml", running_with_vlan("200"));
  const Outcome outcome = run({"diff", before, after});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, "~ " + kVlanId + ": 100 -> 200\n");
  EXPECT_EQ(outcome.err, "");
}

// What B is, its root tells, not what is written about it.
TEST_F(Diff, ATextThatSpeaksOfInterfaces) {
  const std::string before = folder.file("before.xml", running_with_vlan("100"));
  const std::string after = folder.file("after.xml", "<!-- all interfaces -->" + running_with_vlan("200"));
  const Outcome outcome = run({"diff", before, after});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, "~ " + kVlanId + ": 100 -> 200\n");
}

TEST_F(Diff, TheSameIsNothing) {
  const std::string file = folder.file("running.xml", running_with_vlan("100"));
  const Outcome outcome = run({"diff", file, file});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, "");
}

TEST_F(Diff, WhatARequestChanges) {
  const std::string before = folder.file("before.xml", plain_running());
  const Outcome outcome = run({"diff", before, "-"}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, "+ " + kVlanId + ": 100\n");
  const std::string full = folder.file("full.xml", running_with_vlan("100"));
  const Outcome removal =
      run({"diff", full, "-"}, {.input = form("single-tagged", "<vlan-id nc:operation=\"delete\"/>")});
  EXPECT_EQ(removal.out, "- " + kVlanId + ": 100\n") << removal;
}

TEST_F(Diff, AnEntryOfALeafList) {
  const std::string before = folder.file(
      "before.xml",
      running(entry("Ethernet0/0/1.100", encapsulation("<outer-range1-low>7</outer-range1-low>"
                                                       "<outer-range1-high>4097</outer-range1-high>"
                                                       "<additional-range1-low>8</additional-range1-low>"))));
  const Outcome outcome = run({"diff", before, "-"}, {.input = form("single-tagged-list", "<vlan-ids>9</vlan-ids>")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, "+ " + std::string(kMatchPath) + "/single-tagged-list/config/vlan-ids[.='9']\n");
}

TEST_F(Diff, AsATree) {
  const std::string before = folder.file("before.xml", running_with_vlan("100"));
  const std::string after = folder.file("after.xml", running_with_vlan("200"));
  const Outcome outcome = run({"diff", before, after, "--format", "xml"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_NE(outcome.out.find("yang:operation=\"replace\""), std::string::npos) << outcome;
  EXPECT_NE(outcome.out.find("yang:orig-value=\"100\""), std::string::npos) << outcome;
}

TEST_F(Diff, ARequestThatIsRefused) {
  const std::string before = folder.file("before.xml", plain_running());
  const Outcome outcome = run({"diff", before, "-"}, {.input = single_tagged("4095")});
  EXPECT_EQ(outcome.exit_code, 1) << outcome;
  EXPECT_EQ(outcome.out, "");
}

std::string trunk_port(const std::string& vlans) {
  return running(
      entry("Ethernet0/0/1", trunk_configuration("<vlan-switched><mode>trunk</mode><trunk-vla-ns>" + vlans +
                                                 "</trunk-vla-ns><trunk-tag-type>vlan-type-dot1q</trunk-tag-type>"
                                                 "</vlan-switched>")));
}

std::string oper_trunk_port() {
  return oper_port(
      "<mode>trunk-port</mode><trunk-vlan-ranges><tags-to-match><ethertype>dot1q</ethertype>"
      "<vlan-range><vlan-id-low>10</vlan-id-low><vlan-id-high>15</vlan-id-high></vlan-range>"
      "<vlan-range><vlan-id-low>16</vlan-id-low><vlan-id-high>18</vlan-id-high></vlan-range>"
      "<vlan-range><vlan-id-low>40</vlan-id-low><vlan-id-high>40</vlan-id-high></vlan-range>"
      "</tags-to-match></trunk-vlan-ranges>");
}

// Ranges are compared VLAN by VLAN: the device tells them in ranges of its own.
TEST_F(Diff, ConfiguredAgainstOperational) {
  const std::string configured = folder.file("running.xml", trunk_port("10-20,30"));
  const std::string oper = folder.file("oper.xml", oper_trunk_port());
  const Outcome outcome = run({"diff", "--state", "--running", configured, "--oper", oper});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  const std::string path =
      "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet"
      "/openconfig-vlan:switched-vlan/trunk-vlans";
  EXPECT_EQ(outcome.out, "- " + path + ": 19..20 30 configured, not up\n+ " + path + ": 40 up, not configured\n");
}

TEST_F(Diff, ConfiguredAgainstOperationalAsADocument) {
  const std::string configured = folder.file("running.xml", trunk_port("10-20,30"));
  const std::string oper = folder.file("oper.xml", oper_trunk_port());
  const std::string path =
      "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet"
      "/openconfig-vlan:switched-vlan/trunk-vlans";
  const Outcome json = run({"diff", "--state", "--running", configured, "--oper", oper, "--format", "json"});
  EXPECT_EQ(json.exit_code, 0) << json;
  EXPECT_EQ(json.out, "{\n  \"differences\": [\n    {\n      \"path\": \"" + path +
                          "\",\n      \"configured\": [\"19..20\", \"30\"],\n      \"up\": [\"40\"]\n    }\n  ]\n}\n");
  const Outcome xml = run({"diff", "--state", "--running", configured, "--oper", oper, "--format", "xml"});
  EXPECT_EQ(xml.exit_code, 0) << xml;
  EXPECT_EQ(xml.out,
            "<differences>\n  <difference>\n"
            "    <path xmlns:openconfig-interfaces=\"http://openconfig.net/yang/interfaces\" "
            "xmlns:openconfig-if-ethernet=\"http://openconfig.net/yang/interfaces/ethernet\" "
            "xmlns:openconfig-vlan=\"http://openconfig.net/yang/vlan\">" +
                path +
                "</path>\n"
                "    <configured>19..20</configured>\n    <configured>30</configured>\n    <up>40</up>\n"
                "  </difference>\n</differences>\n");
}

TEST_F(Diff, ConfiguredAgainstTheSameOperationalAsADocument) {
  const std::string configured = folder.file("running.xml", trunk_port("10-18,40"));
  const std::string oper = folder.file("oper.xml", oper_trunk_port());
  const Outcome json = run({"diff", "--state", "--running", configured, "--oper", oper, "--format", "json"});
  EXPECT_EQ(json.out, "{\n  \"differences\": []\n}\n") << json;
  const Outcome xml = run({"diff", "--state", "--running", configured, "--oper", oper, "--format", "xml"});
  EXPECT_EQ(xml.out, "<differences/>\n") << xml;
}

// Two cards that tell of one port: whoever compares or reads is told, and who wants the whole truth gets no answer.
TEST_F(Diff, ConfiguredAgainstCardsThatContradictEachOther) {
  const std::string configured = folder.file("running.xml", running(entry("Ethernet0/0/1", access_port("7"))));
  std::string cards = oper_access_port("6");
  const std::string second =
      "<node><node-id>0/1/CPU0</node-id><trunks><trunk><interface>Ethernet0/0/1</interface><vlan-switched>"
      "<mode>access-port</mode><access-vlan>7</access-vlan></vlan-switched></trunk></trunks></node>";
  const std::string oper = folder.file("oper.xml", cards.insert(cards.find("</nodes>"), second));
  const std::string warning =
      "/Vexnet-OS-l2-eth-infra-oper:vlan/nodes/node[node-id='0/0/CPU0']/trunks/trunk[interface='Ethernet0/0/1']: not "
      "used: the nodes 0/0/CPU0 and 0/1/CPU0 tell of Ethernet0/0/1 differently, and the latter counts";
  const Outcome diff = run({"diff", "--state", "--running", configured, "--oper", oper});
  EXPECT_EQ(diff.exit_code, 0) << diff;
  EXPECT_EQ(diff.out, "");
  EXPECT_EQ(diff.err, "warning: " + warning + "\n");
  const Outcome read = run({"read", "--oper", oper, "--strict"});
  EXPECT_EQ(read.exit_code, 1) << read;
  EXPECT_EQ(read.out, "");
  EXPECT_NE(read.err.find("refused: "), std::string::npos) << read;
  EXPECT_NE(read.err.find("the nodes 0/0/CPU0 and 0/1/CPU0 tell of Ethernet0/0/1 differently"), std::string::npos)
      << read;
}

}  // namespace
}  // namespace cli_test
