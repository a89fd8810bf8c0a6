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

// Ranges are compared VLAN by VLAN: the device tells them in ranges of its own.
TEST_F(Diff, ConfiguredAgainstOperational) {
  const std::string configured = folder.file(
      "running.xml",
      running(entry("Ethernet0/0/1",
                    trunk_configuration("<vlan-switched><mode>trunk</mode>"
                                        "<trunk-vla-ns>10-20,30</trunk-vla-ns>"
                                        "<trunk-tag-type>vlan-type-dot1q</trunk-tag-type></vlan-switched>"))));
  const std::string oper = folder.file(
      "oper.xml", oper_port("<mode>trunk-port</mode><trunk-vlan-ranges><tags-to-match><ethertype>dot1q</ethertype>"
                            "<vlan-range><vlan-id-low>10</vlan-id-low><vlan-id-high>15</vlan-id-high></vlan-range>"
                            "<vlan-range><vlan-id-low>16</vlan-id-low><vlan-id-high>18</vlan-id-high></vlan-range>"
                            "<vlan-range><vlan-id-low>40</vlan-id-low><vlan-id-high>40</vlan-id-high></vlan-range>"
                            "</tags-to-match></trunk-vlan-ranges>"));
  const Outcome outcome = run({"diff", "--state", "--running", configured, "--oper", oper});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  const std::string path =
      "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet"
      "/openconfig-vlan:switched-vlan/trunk-vlans";
  EXPECT_EQ(outcome.out, "- " + path + ": 19..20 30 configured, not up\n+ " + path + ": 40 up, not configured\n");
}

}  // namespace
}  // namespace cli_test
