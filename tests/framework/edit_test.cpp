// Edits against a running configuration: what goes to the plug-in, what becomes of the device, what is refused.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "yfw-host/host.h"

namespace yfw {
namespace {

constexpr char kInterfacesNs[] = "http://openconfig.net/yang/interfaces";
constexpr char kVlanNs[] = "http://openconfig.net/yang/vlan";

// A native configuration of entries: "NAME" or "NAME l2", and the L2 Ethernet part of each.
std::string native(const std::vector<std::pair<std::string, std::string>>& entries) {
  std::string text = "<interface-configurations xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg\">";
  for (const auto& [head, inside] : entries) {
    const bool l2 = head.ends_with(" l2");
    text += fmt::format("<interface-configuration><interface-name>{}</interface-name>{}{}</interface-configuration>",
                        l2 ? head.substr(0, head.size() - 3) : head, l2 ? "<l2-transport/>" : "", inside);
  }
  return text + "</interface-configurations>";
}

std::string service(const std::string& inside) {
  return fmt::format(
      "<ethernet-service xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg\">{}</ethernet-service>", inside);
}

std::string encapsulation(const std::string& inside) {
  return service("<encapsulation>" + inside + "</encapsulation>");
}

std::string trunk(const std::string& inside) {
  return fmt::format(
      "<vlan-trunk-configuration xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg\">{}"
      "</vlan-trunk-configuration>",
      inside);
}

const std::string kSingle100 =
    encapsulation("<outer-tag-type>match-dot1q</outer-tag-type><outer-range1-low>100</outer-range1-low>");
const std::string kList102030 = encapsulation(
    "<outer-tag-type>match-dot1q</outer-tag-type><outer-range1-low>10</outer-range1-low>"
    "<outer-range1-high>4097</outer-range1-high><additional-range1-low>20</additional-range1-low>"
    "<additional-range2-low>30</additional-range2-low>");
const std::string kRange = encapsulation(
    "<outer-tag-type>match-dot1q</outer-tag-type><outer-range1-low>10</outer-range1-low>"
    "<outer-range1-high>20</outer-range1-high>");
const std::string kTrunk = trunk(
    "<vlan-switched><mode>trunk</mode><trunk-tag-type>vlan-type-dot1q</trunk-tag-type>"
    "<trunk-vla-ns>10,20-30</trunk-vla-ns></vlan-switched>");

std::string on_interface(const std::string& inside, const char* attributes = "") {
  return fmt::format(
      "<interfaces xmlns=\"{}\" xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><interface{}>"
      "<name>Ethernet0/0/1</name>{}</interface></interfaces>",
      kInterfacesNs, attributes, inside);
}

std::string on_subinterface(const std::string& inside, const char* attributes = "") {
  return on_interface(fmt::format("<subinterfaces><subinterface{}><index>100</index>{}</subinterface></subinterfaces>",
                                  attributes, inside));
}

std::string vlan(const std::string& inside, const char* attributes = "") {
  return on_subinterface(fmt::format("<vlan xmlns=\"{}\"{}>{}</vlan>", kVlanNs, attributes, inside));
}

std::string match(const std::string& inside, const char* attributes = "") {
  return vlan(fmt::format("<match{}>{}</match>", attributes, inside));
}

std::string single(const char* id, const char* attributes = "") {
  return fmt::format("<single-tagged><config><vlan-id{}>{}</vlan-id></config></single-tagged>", attributes, id);
}

std::string switched(const std::string& inside, const char* attributes = "") {
  return on_interface(fmt::format(
      "<ethernet xmlns=\"http://openconfig.net/yang/interfaces/ethernet\"><switched-vlan xmlns=\"{}\"><config{}>{}"
      "</config></switched-vlan></ethernet>",
      kVlanNs, attributes, inside));
}

Host make_host(HostOptions options = {.yang_dir = OC_VLAN_SOURCE_DIR "/yang"}) {
  Host host(std::move(options));
  host.load_plugin(OC_VLAN_PLUGIN_FILE);
  return host;
}

// The text without line breaks and indentation.
std::string flat(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n') {
      while (i + 1 < text.size() && text[i + 1] == ' ') ++i;
    } else {
      result += text[i];
    }
  }
  return result;
}

// The request with the default operation none: only what carries an operation of its own changes anything.
std::string by_operations(const std::string& request) {
  return "<edit-config xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><default-operation>none</default-operation>"
         "<config>" +
         request + "</config></edit-config>";
}

struct EditCase {
  const char* name;
  std::string running;
  std::string request;
  std::string after;     // the native configuration, or empty when refused
  std::string warning;   // part of one warning; empty: there is none
  const char* tag = "";  // of a refusal
  const char* path = "";
  const char* message = "";
};

void PrintTo(const EditCase& tested, std::ostream* out) {
  *out << tested.name;
}

// The configuration as a device prints it, which orders nodes as the model does.
std::string as_printed(const std::string& running) {
  Host host = make_host();
  host.set_running({running, Format::xml, "expected"});
  return flat(host.running().print(Format::xml));
}

class EditTest : public testing::TestWithParam<EditCase> {};

TEST_P(EditTest, LeavesTheDeviceAsExpected) {
  const EditCase& tested = GetParam();
  Host host = make_host();
  host.set_running({tested.running, Format::xml, "running"});
  const std::string before = flat(host.running().print(Format::xml));
  try {
    const EditResult result = host.apply({tested.request, Format::xml, "request"});
    EXPECT_STREQ(tested.tag, "") << "went through:\n" << host.running().print(Format::xml);
    EXPECT_EQ(flat(host.running().print(Format::xml)), as_printed(tested.after)) << result.native.print(Format::xml);
    std::string warnings;
    for (const Warning& warning : result.warnings) warnings += warning.path + ": " + warning.message + "\n";
    if (tested.warning.empty()) {
      EXPECT_EQ(warnings, "");
    } else {
      EXPECT_NE(warnings.find(tested.warning), std::string::npos) << warnings;
    }
    for (const Difference& difference : result.differences) {
      ADD_FAILURE() << difference.path << ": asked " << difference.asked << ", found " << difference.found;
    }
  } catch (const Refused& refused) {
    EXPECT_EQ(refused.error().tag, tested.tag) << refused.error().message;
    EXPECT_EQ(refused.error().path, tested.path);
    EXPECT_NE(refused.error().message.find(tested.message), std::string::npos) << refused.error().message;
    EXPECT_EQ(flat(host.running().print(Format::xml)), before) << "something was applied";
  }
}

constexpr char kDelete[] = " nc:operation=\"delete\"";
constexpr char kRemove[] = " nc:operation=\"remove\"";
constexpr char kReplace[] = " nc:operation=\"replace\"";
constexpr char kCreate[] = " nc:operation=\"create\"";
constexpr char kSub[] = "Ethernet0/0/1.100 l2";
constexpr char kInterfacePath[] = "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']";
constexpr char kSubinterfacePath[] =
    "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']";
constexpr char kMatchPath[] =
    "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']/"
    "openconfig-vlan:vlan/match";
constexpr char kSinglePath[] =
    "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']/"
    "openconfig-vlan:vlan/match/single-tagged/config/vlan-id";
constexpr char kConfigPath[] =
    "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet/"
    "openconfig-vlan:switched-vlan/config";

const std::string kSingle200 =
    encapsulation("<outer-tag-type>match-dot1q</outer-tag-type><outer-range1-low>200</outer-range1-low>");

INSTANTIATE_TEST_SUITE_P(
    Matches, EditTest,
    testing::Values(
        EditCase{"MergeOntoNothing", native({{kSub, ""}}), match(single("100")),
                 native({{kSub, encapsulation("<outer-range1-low>100</outer-range1-low>"
                                              "<outer-tag-type>match-dot1q</outer-tag-type>")}}),
                 ""},
        EditCase{"MergeAnotherId", native({{kSub, kSingle100}}), match(single("200")), native({{kSub, kSingle200}}),
                 ""},
        EditCase{"CreateOfWhatIs", native({{kSub, kSingle100}}), match(single("100", kCreate)), "", "", "data-exists",
                 kSinglePath, ""},
        EditCase{"DeleteOfWhatIsNot", native({{kSub, ""}}), match(single("", kDelete)), "", "", "data-missing",
                 kSinglePath, ""},
        EditCase{"RemoveOfWhatIsNot", native({{kSub, kSingle100}}),
                 match("<single-tagged-list nc:operation=\"remove\"/>"), native({{kSub, kSingle100}}), ""},
        EditCase{"RemoveByLeaf", native({{kSub, kSingle100}}), match(single("", kRemove)), native({{kSub, ""}}), ""},
        EditCase{"DeleteByLeaf", native({{kSub, kSingle100}}), match(single("", kDelete)), native({{kSub, ""}}), ""},
        EditCase{"DeleteByContainer", native({{kSub, kSingle100}}), match("", kDelete), native({{kSub, ""}}), ""},
        EditCase{"DeleteByAncestor", native({{kSub, kSingle100}}), vlan("", kDelete), native({{kSub, ""}}), ""},
        EditCase{"ListToSingleByMerge", native({{kSub, kList102030}}), match(single("100")),
                 native({{kSub, encapsulation("<outer-range1-low>100</outer-range1-low>"
                                              "<outer-tag-type>match-dot1q</outer-tag-type>")}}),
                 "single-tagged-list: goes: 'single-tagged' takes its place"},
        EditCase{"ListToSingleByReplace", native({{kSub, kList102030}}), match(single("100"), kReplace),
                 native({{kSub, encapsulation("<outer-range1-low>100</outer-range1-low>"
                                              "<outer-tag-type>match-dot1q</outer-tag-type>")}}),
                 ""},
        EditCase{"AFormThatIsNotThereReplacedByNothing", native({{kSub, kSingle100}}),
                 match("<double-tagged nc:operation=\"replace\"/>"), native({{kSub, kSingle100}}), ""},
        EditCase{"AFormThatIsNotThereReplacedByAnEmptyContainer", native({{kSub, kSingle100}}),
                 match("<double-tagged nc:operation=\"replace\"><config/></double-tagged>"),
                 native({{kSub, kSingle100}}), ""},
        EditCase{"AFormThatIsNotThereReplacedByNothingBesideAnother", native({{kSub, kSingle100}}),
                 match("<single-tagged-list nc:operation=\"replace\"/>" + single("200")), native({{kSub, kSingle200}}),
                 ""},
        EditCase{"AnEmptyFormAsksForNothing", native({{kSub, kSingle100}}),
                 match("<single-tagged/><single-tagged-range><config><low-vlan-id>5</low-vlan-id>"
                       "<high-vlan-id>9</high-vlan-id></config></single-tagged-range>"),
                 native({{kSub, encapsulation("<outer-range1-high>9</outer-range1-high>"
                                              "<outer-range1-low>5</outer-range1-low>"
                                              "<outer-tag-type>match-dot1q</outer-tag-type>")}}),
                 "single-tagged: goes: 'single-tagged-range' takes its place"},
        EditCase{"DeleteAndWriteInOneRequest", native({{kSub, kList102030}}),
                 match("<single-tagged-list nc:operation=\"delete\"/>" + single("100")),
                 native({{kSub, encapsulation("<outer-range1-low>100</outer-range1-low>"
                                              "<outer-tag-type>match-dot1q</outer-tag-type>")}}),
                 ""},
        EditCase{"EntryMergedIntoAList", native({{kSub, kList102030}}),
                 match("<single-tagged-list><config><vlan-ids>40</vlan-ids></config></single-tagged-list>"),
                 native({{kSub, encapsulation("<outer-tag-type>match-dot1q</outer-tag-type>"
                                              "<outer-range1-low>10</outer-range1-low>"
                                              "<outer-range1-high>4097</outer-range1-high>"
                                              "<additional-range1-low>20</additional-range1-low>"
                                              "<additional-range2-low>30</additional-range2-low>"
                                              "<additional-range3-low>40</additional-range3-low>")}}),
                 ""},
        EditCase{"EntryDeletedFromAList", native({{kSub, kList102030}}),
                 match("<single-tagged-list><config><vlan-ids nc:operation=\"delete\">20</vlan-ids></config>"
                       "</single-tagged-list>"),
                 native({{kSub, encapsulation("<outer-range1-low>10</outer-range1-low>"
                                              "<additional-range1-low>30</additional-range1-low>"
                                              "<outer-tag-type>match-dot1q</outer-tag-type>"
                                              "<outer-range1-high>4097</outer-range1-high>")}}),
                 ""},
        EditCase{"OneLeafOfARange", native({{kSub, kRange}}),
                 match("<single-tagged-range><config><low-vlan-id>5</low-vlan-id></config></single-tagged-range>"),
                 native({{kSub, encapsulation("<outer-tag-type>match-dot1q</outer-tag-type>"
                                              "<outer-range1-low>5</outer-range1-low>"
                                              "<outer-range1-high>20</outer-range1-high>")}}),
                 ""},
        EditCase{"TwoFormsInOneRequest", native({{kSub, ""}}),
                 match(single("100") +
                       "<single-tagged-range><config><low-vlan-id>5</low-vlan-id></config></single-tagged-range>"),
                 "", "", "invalid-value", kMatchPath, "'single-tagged' and 'single-tagged-range' in one request"},
        EditCase{"AHalfWrittenListIsNotMergedInto",
                 native({{kSub, encapsulation("<outer-tag-type>match-dot1q</outer-tag-type>"
                                              "<outer-range1-low>10</outer-range1-low>"
                                              "<outer-range1-high>4097</outer-range1-high>")}}),
                 match("<single-tagged-list><config><vlan-ids>40</vlan-ids></config></single-tagged-list>"), "", "",
                 "operation-failed", kMatchPath, "does not read back whole"},
        EditCase{"ALeafNamedLikeAContainerIsNone",
                 native({{kSub, kSingle100 + trunk("<native-vlan-identifier><vlan-identifier>7</vlan-identifier>"
                                                   "</native-vlan-identifier>")}}),
                 match("<single-tagged nc:operation=\"remove\"/>"),
                 native({{kSub, trunk("<native-vlan-identifier><vlan-identifier>7</vlan-identifier>"
                                      "</native-vlan-identifier>")}}),
                 "stays, and OpenConfig does not say it: "
                 "vlan-trunk-configuration/native-vlan-identifier/vlan-identifier \"7\""},
        EditCase{"UnknownSubinterfaceIsTakenAsL3", native({}), match(single("100")),
                 native({{"Ethernet0/0/1.100",
                          "<vlan-sub-configuration xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg\">"
                          "<vlan-identifier><first-tag>100</first-tag><vlan-type>vlan-type-dot1q</vlan-type>"
                          "</vlan-identifier></vlan-sub-configuration>"}}),
                 "--l2"},
        EditCase{"ListOnL3", native({{"Ethernet0/0/1.100", ""}}),
                 match("<single-tagged-list><config><vlan-ids>40</vlan-ids><vlan-ids>50</vlan-ids></config>"
                       "</single-tagged-list>"),
                 native({{"Ethernet0/0/1.100", encapsulation("<outer-range1-low>40</outer-range1-low>"
                                                             "<additional-range1-low>50</additional-range1-low>"
                                                             "<outer-tag-type>match-dot1q</outer-tag-type>"
                                                             "<outer-range1-high>4097</outer-range1-high>")}}),
                 "written although the sub-interface is not L2"}),
    [](const auto& tested) { return tested.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Entries, EditTest,
    testing::Values(
        EditCase{"NoneNeedsTheInterfaceForARemove", native({{"Ethernet0/0/2", ""}}),
                 by_operations(on_interface("<config><description nc:operation=\"remove\"/></config>")), "", "",
                 "data-missing", kInterfacePath, "'interface' is not there"},
        EditCase{"NoneNeedsTheInterfaceForTheRemoveOfASubinterface", native({{"Ethernet0/0/2", ""}}),
                 by_operations(on_subinterface("", kRemove)), "", "", "data-missing", kInterfacePath,
                 "'interface' is not there"},
        EditCase{"NoneNeedsTheSubinterfaceForARemove", native({{"Ethernet0/0/1", ""}}),
                 by_operations(match(single("", kRemove))), "", "", "data-missing", kSubinterfacePath,
                 "'subinterface' is not there"},
        EditCase{"NoneNeedsTheSubinterfaceForADelete", native({{"Ethernet0/0/1", ""}}),
                 by_operations(match("", kDelete)), "", "", "data-missing", kSubinterfacePath,
                 "'subinterface' is not there"},
        EditCase{"NoneNeedsTheSubinterfaceForARemoveBelowAReplace", native({{"Ethernet0/0/1", ""}}),
                 by_operations(vlan("<match nc:operation=\"remove\"/>", kReplace)), "", "", "data-missing",
                 kSubinterfacePath, "'subinterface' is not there"},
        EditCase{"NoneNeedsNoSubinterfaceThatIsRemoved", native({{"Ethernet0/0/1", ""}}),
                 by_operations(on_subinterface("", kRemove)), native({{"Ethernet0/0/1", ""}}), ""},
        EditCase{"NoneNeedsNoContainerForARemove", native({{kSub, ""}}), by_operations(match(single("", kRemove))),
                 native({{kSub, ""}}), ""},
        EditCase{"MergeNeedsNoSubinterfaceForARemove", native({{"Ethernet0/0/1", ""}}), match(single("", kRemove)),
                 native({{"Ethernet0/0/1", ""}}), ""},
        EditCase{"DeletedBelowAReplaceOfWhatIsNot", native({{kSub, ""}}),
                 vlan("<match nc:operation=\"delete\"/>", kReplace), "", "", "data-missing", kMatchPath,
                 "'match' is not there to be deleted"},
        EditCase{"SubinterfaceDeleted", native({{"Ethernet0/0/1", ""}, {kSub, kSingle100}}),
                 on_subinterface("", kDelete), native({{"Ethernet0/0/1", ""}}), ""},
        EditCase{"SubinterfaceReplacedKeepsItsLayer", native({{kSub, kList102030}}),
                 on_subinterface(fmt::format("<vlan xmlns=\"{}\"><match>{}</match></vlan>", kVlanNs, single("100")),
                                 kReplace),
                 native({{kSub, encapsulation("<outer-range1-low>100</outer-range1-low>"
                                              "<outer-tag-type>match-dot1q</outer-tag-type>")}}),
                 ""},
        EditCase{"InterfaceDeletedWithItsSubinterfaces",
                 native({{"Ethernet0/0/1", kTrunk}, {kSub, kSingle100}, {"Ethernet0/0/2.100 l2", kSingle100}}),
                 on_interface("", kDelete), native({{"Ethernet0/0/2.100 l2", kSingle100}}), ""},
        EditCase{"InterfaceReplacedLosesOtherSubinterfaces",
                 native({{"Ethernet0/0/1", kTrunk}, {kSub, kSingle100}, {"Ethernet0/0/1.200 l2", kSingle200}}),
                 on_interface(fmt::format("<subinterfaces><subinterface><index>100</index><vlan xmlns=\"{}\"><match>{}"
                                          "</match></vlan></subinterface></subinterfaces>",
                                          kVlanNs, single("200")),
                              kReplace),
                 native({{"Ethernet0/0/1", ""},
                         {kSub, encapsulation("<outer-range1-low>200</outer-range1-low>"
                                              "<outer-tag-type>match-dot1q</outer-tag-type>")}}),
                 "subinterfaces: replaced by a request that does not name them: subinterface '200' goes"},
        EditCase{"DescriptionBesideTheVlanPart", native({{kSub, ""}}),
                 on_subinterface(fmt::format("<config><index>100</index><description>up</description>"
                                             "<enabled>false</enabled></config>"
                                             "<vlan xmlns=\"{}\"><match>{}</match></vlan>",
                                             kVlanNs, single("100"))),
                 native({{kSub, "<description>up</description><shutdown/>" +
                                    encapsulation("<outer-range1-low>100</outer-range1-low>"
                                                  "<outer-tag-type>match-dot1q</outer-tag-type>")}}),
                 ""},
        EditCase{"DisagreeingName", native({}), on_interface("<config><name>Ethernet0/0/2</name></config>"), "", "",
                 "invalid-value", "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/config/name",
                 "Ethernet0/0/2"},
        EditCase{"UnmappedLeaf", native({{kSub, ""}}), vlan("<config><vlan-id>100</vlan-id></config>"), "", "",
                 "operation-not-supported",
                 "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/"
                 "subinterface[index='100']/openconfig-vlan:vlan/config/vlan-id",
                 "'vlan-id' is not supported"}),
    [](const auto& tested) { return tested.param.name; });

INSTANTIATE_TEST_SUITE_P(
    SwitchedVlans, EditTest,
    testing::Values(
        EditCase{"NativeVlanAloneOnATrunk", native({{"Ethernet0/0/1", kTrunk}}),
                 switched("<native-vlan>5</native-vlan>"),
                 native({{"Ethernet0/0/1",
                          trunk("<vlan-switched><mode>trunk</mode><trunk-tag-type>vlan-type-dot1q</trunk-tag-type>"
                                "<trunk-vla-ns>10,20-30</trunk-vla-ns></vlan-switched><native-vlan-identifier>"
                                "<vlan-identifier>5</vlan-identifier><vlan-type>vlan-type-dot1q</vlan-type>"
                                "</native-vlan-identifier>")}}),
                 ""},
        EditCase{"NativeVlanWithoutAMode", native({}), switched("<native-vlan>5</native-vlan>"), "", "",
                 "invalid-value", kConfigPath, "Invalid configuration for native-vlan."},
        EditCase{"TrunkEntryMerged", native({{"Ethernet0/0/1", kTrunk}}), switched("<trunk-vlans>40</trunk-vlans>"),
                 native({{"Ethernet0/0/1",
                          trunk("<vlan-switched><mode>trunk</mode><trunk-tag-type>vlan-type-dot1q</trunk-tag-type>"
                                "<trunk-vla-ns>10,20-30,40</trunk-vla-ns></vlan-switched>")}}),
                 ""},
        EditCase{
            "TrunkEntryDeleted", native({{"Ethernet0/0/1", kTrunk}}),
            switched("<trunk-vlans nc:operation=\"delete\">10</trunk-vlans>"),
            native({{"Ethernet0/0/1",
                     trunk("<vlan-switched><trunk-vla-ns>20-30</trunk-vla-ns>"
                           "<trunk-tag-type>vlan-type-dot1q</trunk-tag-type><mode>trunk</mode></vlan-switched>")}}),
            ""},
        EditCase{"TrunkBecomesAccess", native({{"Ethernet0/0/1", kTrunk}}),
                 switched("<interface-mode>ACCESS</interface-mode><access-vlan>7</access-vlan>"),
                 native({{"Ethernet0/0/1",
                          trunk("<vlan-switched><mode>access</mode><access-vlan>7</access-vlan></vlan-switched>")}}),
                 "trunk-vlans[.='10']: goes: its condition no longer holds"},
        EditCase{"AnEntryNamedWithoutAnOperationGoesWithItsMode", native({{"Ethernet0/0/1", kTrunk}}),
                 by_operations(switched("<interface-mode nc:operation=\"delete\"/><trunk-vlans>10</trunk-vlans>")),
                 native({{"Ethernet0/0/1", ""}}), "trunk-vlans[.='10']: goes: its condition no longer holds"},
        EditCase{"WhatNothingExpressesIsToldBeforeWhatIsNotWritten", native({{"Ethernet0/0/1", ""}}),
                 by_operations(on_interface(fmt::format(
                     "<ethernet xmlns=\"http://openconfig.net/yang/interfaces/ethernet\"><switched-vlan "
                     "xmlns=\"{0}\"><config><native-vlan>5</native-vlan></config></switched-vlan></ethernet>"
                     "<subinterfaces><subinterface><index>100</index><vlan xmlns=\"{0}\"><config><vlan-id "
                     "nc:operation=\"merge\">5</vlan-id></config></vlan></subinterface></subinterfaces>",
                     kVlanNs))),
                 "", "", "operation-not-supported",
                 "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/"
                 "subinterface[index='100']/openconfig-vlan:vlan/config/vlan-id",
                 "'vlan-id' is not supported"},
        EditCase{"AccessVlanOnATrunk", native({{"Ethernet0/0/1", kTrunk}}), switched("<access-vlan>7</access-vlan>"),
                 "", "", "unknown-element",
                 "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet/"
                 "openconfig-vlan:switched-vlan/config/access-vlan",
                 "access-vlan"},
        EditCase{"WholeContainerDeleted", native({{"Ethernet0/0/1", kTrunk}}), switched("", kDelete),
                 native({{"Ethernet0/0/1", ""}}), ""},
        EditCase{"ContainerReplacedByNothing", native({{"Ethernet0/0/1", kTrunk}}), switched("", kReplace),
                 native({{"Ethernet0/0/1", ""}}), ""},
        EditCase{"WhatDoesNotReadBackIsToldToStay",
                 native({{"Ethernet0/0/1", trunk("<vlan-switched><mode>trunk</mode></vlan-switched>")}}),
                 switched("", " nc:operation=\"remove\""),
                 native({{"Ethernet0/0/1", trunk("<vlan-switched><mode>trunk</mode></vlan-switched>")}}),
                 "vlan-switched/mode: stays, it does not read back: left out: it needs 'trunk-tag-type'"},
        EditCase{"ModeBoundToAnotherModule", native({}),
                 switched(fmt::format("<interface-mode xmlns:x=\"{}\">x:TRUNK</interface-mode>", kInterfacesNs)), "",
                 "", "invalid-value", kConfigPath,
                 "namespace http://openconfig.net/yang/vlan-types is missing for switched-vlan/interface-mode"},
        EditCase{
            "ContainerReplaced", native({{"Ethernet0/0/1", kTrunk}}),
            switched("<interface-mode>TRUNK</interface-mode><trunk-vlans>7</trunk-vlans>", kReplace),
            native({{"Ethernet0/0/1",
                     trunk("<vlan-switched><trunk-vla-ns>7</trunk-vla-ns>"
                           "<trunk-tag-type>vlan-type-dot1q</trunk-tag-type><mode>trunk</mode></vlan-switched>")}}),
            ""}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace yfw
