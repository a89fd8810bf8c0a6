// Requests that cannot be meant: each is refused by a line that names element and path, and nothing is written.
#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

struct BadRequest {
  const char* name;
  std::string request;
  std::string tag;                      // error-tag
  std::string path;                     // error-path
  std::vector<std::string> texts = {};  // in the line for a person, beside the path
  std::string running = plain_running();
  std::vector<std::string> options = {};
};

void PrintTo(const BadRequest& bad, std::ostream* stream) {
  *stream << bad.name;
}

class BadRequests : public testing::TestWithParam<BadRequest> {};

TEST_P(BadRequests, AreRefusedAndNothingIsWritten) {
  const BadRequest& bad = GetParam();
  const Folder folder;
  std::vector<std::string> arguments = {"apply",
                                        folder.file("request", bad.request),
                                        "--running",
                                        folder.file("running", bad.running),
                                        "--quiet",
                                        "-o",
                                        folder.path("after")};
  arguments.insert(arguments.end(), bad.options.begin(), bad.options.end());

  const Outcome plain = run(arguments);
  EXPECT_EQ(plain.exit_code, 1) << plain;
  EXPECT_EQ(plain.out, "");
  EXPECT_EQ(plain.err.rfind("ocvlan: refused: ", 0), 0U) << plain;
  EXPECT_EQ(plain.err.find('\n'), plain.err.size() - 1) << plain;
  EXPECT_NE(plain.err.find(bad.path + ": "), std::string::npos) << bad.path << "\n" << plain;
  for (const std::string& text : bad.texts) EXPECT_NE(plain.err.find(text), std::string::npos) << text << "\n" << plain;

  arguments.insert(arguments.end(), {"--format", "xml"});
  const Outcome xml = run(arguments);
  EXPECT_EQ(xml.exit_code, 1) << xml;
  EXPECT_EQ(xml.err, plain.err);
  EXPECT_NE(xml.out.find("<error-tag>" + bad.tag + "</error-tag>"), std::string::npos) << bad.tag << "\n" << xml;
  EXPECT_NE(xml.out.find(">" + bad.path + "</error-path>"), std::string::npos) << bad.path << "\n" << xml;

  EXPECT_EQ(folder.names(), (std::vector<std::string>{"request", "running"}));
}

const std::string kVlanId = std::string(kMatchPath) + "/single-tagged/config/vlan-id";
const std::string kInterface = "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']";

std::string many(const std::string& leaf, int count) {
  std::string text;
  for (int i = 1; i <= count; ++i) text += "<" + leaf + ">" + std::to_string(i) + "</" + leaf + ">";
  return text;
}

std::string many_trunks(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "<trunk-vlans>" + std::to_string(1001 + 2 * i) + "</trunk-vlans>";
  return text;
}

std::string with_operation(const std::string& attribute) {
  return form("single-tagged", "<vlan-id " + attribute + ">100</vlan-id>");
}

INSTANTIATE_TEST_SUITE_P(
    Document, BadRequests,
    testing::ValuesIn<std::vector<BadRequest>>({
        {"UnknownNamespace",
         "<interfaces xmlns=\"urn:example:none\"/>",
         "unknown-namespace",
         "/interfaces",
         {"urn:example:none"}},
        {"NoNamespace", "<interfaces><interface/></interfaces>", "unknown-namespace", "/interfaces"},
        {"UnknownElement",
         form("single-tagged", "<vlan>100</vlan>"),
         "unknown-element",
         std::string(kMatchPath) + "/single-tagged/config/vlan",
         {"'vlan'"}},
        {"UnknownInner",
         match("<triple-tagged/>"),
         "unknown-element",
         std::string(kMatchPath) + "/triple-tagged",
         {"'triple-tagged'"}},
        {"StateInAnEdit",
         match("<single-tagged><state><vlan-id>1</vlan-id></state></single-tagged>"),
         "invalid-value",
         std::string(kMatchPath) + "/single-tagged/state",
         {"state"}},
        {"NoKey",
         "<interfaces "
         "xmlns=\"http://openconfig.net/yang/interfaces\"><interface><config><mtu>1500</mtu></config></interface></"
         "interfaces>",
         "missing-element",
         "/openconfig-interfaces:interfaces/interface",
         {"name"}},
        {"NoIndex",
         interface(
             "<subinterfaces><subinterface><config><enabled>true</enabled></config></subinterface></subinterfaces>"),
         "missing-element",
         kInterface + "/subinterfaces/subinterface",
         {"index"}},
        {"OperationMisspelt",
         with_operation("nc:operation=\"remvoe\""),
         "bad-attribute",
         kVlanId,
         {"remvoe", "operation"}},
        {"OperationMisspeltWithoutPrefix",
         with_operation("operation=\"Delete\""),
         "bad-attribute",
         kVlanId,
         {"Delete", "operation"}},
        {"DeleteOfWhatIsNotThere", with_operation("nc:operation=\"delete\""), "data-missing", kVlanId},
        {"CreateOfWhatIsThere",
         with_operation("nc:operation=\"create\""),
         "data-exists",
         kVlanId,
         {},
         running_with_vlan("100")},
    }),
    [](const auto& info) { return info.param.name; });

std::vector<BadRequest> bad_vlan_ids() {
  std::vector<BadRequest> cases;
  const std::vector<std::pair<const char*, std::string>> values = {
      {"Zero", "0"}, {"Reserved", "4095"}, {"Huge", "99999"},  {"Word", "ten"},
      {"Empty", ""}, {"Blanks", "  "},     {"Negative", "-1"}, {"Fraction", "1.5"}};
  for (const auto& [name, value] : values) {
    cases.push_back({name, single_tagged(value), "invalid-value", kVlanId, {"vlan-id", "1..4094"}});
  }
  return cases;
}

INSTANTIATE_TEST_SUITE_P(VlanId, BadRequests, testing::ValuesIn(bad_vlan_ids()),
                         [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Match, BadRequests,
    testing::ValuesIn<std::vector<BadRequest>>({
        {"TenInAList",
         form("single-tagged-list", many("vlan-ids", 10)),
         "invalid-value",
         std::string(kMatchPath) + "/single-tagged-list/config",
         {"Number of VLAN IDs provided more than max(9)."}},
        {"TenInner",
         form("double-tagged-inner-list", "<outer-vlan-id>1</outer-vlan-id>" + many("inner-vlan-ids", 10)),
         "invalid-value",
         std::string(kMatchPath) + "/double-tagged-inner-list/config",
         {"Number of Inner VLAN IDs provided more than max(9)."}},
        {"TenOuter",
         form("double-tagged-outer-list", "<inner-vlan-id>1</inner-vlan-id>" + many("outer-vlan-ids", 10)),
         "invalid-value",
         std::string(kMatchPath) + "/double-tagged-outer-list/config",
         {"Number of Outer VLAN IDs provided more than max(9)."}},
        {"TenInnerWithoutTheOuter",
         form("double-tagged-inner-list", many("inner-vlan-ids", 10)),
         "invalid-value",
         std::string(kMatchPath) + "/double-tagged-inner-list/config/inner-vlan-ids",
         {"'inner-vlan-ids' has more values than there is native room for: none is left for "}},
        {"DuplicateInAList",
         form("single-tagged-list", "<vlan-ids>7</vlan-ids><vlan-ids>8</vlan-ids><vlan-ids>7</vlan-ids>"),
         "bad-element", std::string(kMatchPath) + "/single-tagged-list/config/vlan-ids[.='7']"},
        {"LowAboveHigh",
         form("single-tagged-range", "<low-vlan-id>20</low-vlan-id><high-vlan-id>10</high-vlan-id>"),
         "invalid-value",
         std::string(kMatchPath) + "/single-tagged-range/config/high-vlan-id",
         {"20", "10"}},
        {"InnerLowAboveHigh",
         form("double-tagged-inner-range",
              "<outer-vlan-id>5</outer-vlan-id><inner-low-vlan-id>20</inner-low-vlan-id><inner-high-vlan-id>10</"
              "inner-high-vlan-id>"),
         "invalid-value",
         std::string(kMatchPath) + "/double-tagged-inner-range/config/inner-high-vlan-id",
         {"20", "10"}},
        {"TwoForms",
         match("<single-tagged><config><vlan-id>1</vlan-id></config></"
               "single-tagged><single-tagged-list><config><vlan-ids>2</vlan-ids></config></single-tagged-list>"),
         "invalid-value",
         std::string(kMatchPath),
         {"'single-tagged' and 'single-tagged-list'"}},
        {"InnerAndOuterRange",
         form("double-tagged-inner-outer-range", "<inner-low-vlan-id>1</inner-low-vlan-id>"),
         "operation-not-supported",
         std::string(kMatchPath) + "/double-tagged-inner-outer-range/config/inner-low-vlan-id",
         {"inner-low-vlan-id"}},
        {"EgressMapping",
         vlan("<egress-mapping><config><vlan-stack-action>POP</vlan-stack-action></config></egress-mapping>"),
         "operation-not-supported",
         std::string(kSubinterfacePath) + "/openconfig-vlan:vlan/egress-mapping/config/vlan-stack-action",
         {"vlan-stack-action"}},
        {"VlanIdOfTheSubinterface",
         vlan("<config><vlan-id>100</vlan-id></config>"),
         "operation-not-supported",
         std::string(kSubinterfacePath) + "/openconfig-vlan:vlan/config/vlan-id",
         {"vlan-id"}},
    }),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    IngressMapping, BadRequests,
    testing::ValuesIn<std::vector<BadRequest>>({
        {"UnknownAction",
         ingress("<vlan-stack-action>DROP</vlan-stack-action>"),
         "invalid-value",
         std::string(kSubinterfacePath) + "/openconfig-vlan:vlan/ingress-mapping/config/vlan-stack-action",
         {"DROP", "PUSH", "POP", "SWAP"}},
        {"TpidWithoutPrefix",
         ingress("<vlan-stack-action>PUSH</vlan-stack-action><vlan-id>5</vlan-id><tpid>TPID_0X8100</tpid>"),
         "invalid-value",
         std::string(kSubinterfacePath) + "/openconfig-vlan:vlan/ingress-mapping/config",
         {"namespace http://openconfig.net/yang/vlan-types is missing"}},
        {"TpidOfAnotherModule",
         ingress("<vlan-stack-action>PUSH</vlan-stack-action><vlan-id>5</vlan-id><tpid "
                 "xmlns:x=\"http://openconfig.net/yang/vlan\">x:TPID_0X8100</tpid>"),
         "invalid-value",
         std::string(kSubinterfacePath) + "/openconfig-vlan:vlan/ingress-mapping/config",
         {"namespace http://openconfig.net/yang/vlan-types is missing"}},
        {"TpidUnknown",
         ingress("<vlan-stack-action>PUSH</vlan-stack-action><vlan-id>5</vlan-id><tpid "
                 "xmlns:x=\"http://openconfig.net/yang/vlan-types\">x:TPID_0X1234</tpid>"),
         "invalid-value",
         std::string(kSubinterfacePath) + "/openconfig-vlan:vlan/ingress-mapping/config/tpid",
         {"tpid"}},
        {"TpidPrefixUndeclared",
         ingress("<tpid>x:TPID_0X8100</tpid>"),
         "invalid-value",
         std::string(kSubinterfacePath) + "/openconfig-vlan:vlan/ingress-mapping/config/tpid",
         {"x:TPID_0X8100"}},
    }),
    [](const auto& info) { return info.param.name; });

std::vector<BadRequest> bad_trunk_entries() {
  std::vector<BadRequest> cases;
  const std::vector<std::pair<const char*, std::string>> values = {
      {"Dash", "20-30"}, {"Dot", "10.20"}, {"Blank", " 20..30"}, {"Zero", "0"}, {"Reserved", "4095"}};
  for (const auto& [name, value] : values) {
    cases.push_back({name,
                     switched("<interface-mode>TRUNK</interface-mode><trunk-vlans>" + value + "</trunk-vlans>"),
                     "invalid-value",
                     std::string(kSwitchedPath) + "/trunk-vlans",
                     {"trunk-vlans"}});
  }
  return cases;
}

INSTANTIATE_TEST_SUITE_P(TrunkEntry, BadRequests, testing::ValuesIn(bad_trunk_entries()),
                         [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Switched, BadRequests,
    testing::ValuesIn<std::vector<BadRequest>>({
        {"UnknownMode",
         switched("<interface-mode>HYBRID</interface-mode>"),
         "invalid-value",
         std::string(kSwitchedPath) + "/interface-mode",
         {"HYBRID", "ACCESS", "TRUNK"}},
        {"ModeOfAnotherModule",
         switched("<interface-mode xmlns:x=\"http://openconfig.net/yang/interfaces\">x:TRUNK</interface-mode>"),
         "invalid-value",
         std::string(kSwitchedPath),
         {"namespace http://openconfig.net/yang/vlan-types is missing"}},
        {"AccessVlanOfATrunk",
         switched("<interface-mode>TRUNK</interface-mode><access-vlan>10</access-vlan>"),
         "unknown-element",
         std::string(kSwitchedPath) + "/access-vlan",
         {"access-vlan", "ACCESS"}},
        {"TrunkVlansOfAnAccessPort",
         switched("<interface-mode>ACCESS</interface-mode><trunk-vlans>10</trunk-vlans>"),
         "unknown-element",
         std::string(kSwitchedPath) + "/trunk-vlans[.='10']",
         {"trunk-vlans", "TRUNK"}},
        {"NativeVlanOfAnAccessPort",
         switched("<interface-mode>ACCESS</interface-mode><native-vlan>10</native-vlan>"),
         "unknown-element",
         std::string(kSwitchedPath) + "/native-vlan",
         {"native-vlan", "TRUNK"}},
        {"NativeVlanWithoutMode",
         switched("<native-vlan>10</native-vlan>"),
         "invalid-value",
         std::string(kSwitchedPath),
         {"Invalid configuration for native-vlan."}},
        {"AccessVlanWithoutMode",
         switched("<access-vlan>10</access-vlan>"),
         "unknown-element",
         std::string(kSwitchedPath) + "/access-vlan",
         {"interface-mode"}},
        {"TrunkVlansWithoutMode",
         switched("<trunk-vlans>10</trunk-vlans>"),
         "unknown-element",
         std::string(kSwitchedPath) + "/trunk-vlans[.='10']",
         {"interface-mode"}},
        {"DuplicateTrunk",
         switched("<interface-mode>TRUNK</interface-mode><trunk-vlans>10</trunk-vlans><trunk-vlans>10</trunk-vlans>"),
         "bad-element", std::string(kSwitchedPath) + "/trunk-vlans[.='10']"},
        {"TrunkBackwards",
         switched("<interface-mode>TRUNK</interface-mode><trunk-vlans>30..20</trunk-vlans>"),
         "invalid-value",
         std::string(kSwitchedPath) + "/trunk-vlans[.='30..20']",
         {"the range 30..20 upside down: ask for 20..30"}},
        {"TooLongATrunkList",
         switched("<interface-mode>TRUNK</interface-mode>" + many_trunks(200)),
         "invalid-value",
         std::string(kSwitchedPath) + "/trunk-vlans",
         {"1081"}},
        {"TooLongATrunkListUnverified",
         switched("<interface-mode>TRUNK</interface-mode>" + many_trunks(200)),
         "invalid-value",
         std::string(kSwitchedPath) + "/trunk-vlans",
         {"1081"},
         plain_running(),
         {"--no-verify"}},
        {"InterfaceWithADot",
         "<interfaces xmlns=\"http://openconfig.net/yang/interfaces\"><interface><name>Ethernet0/0/1.100</name>"
         "<config><description>x</description></config></interface></interfaces>",
         "invalid-value",
         "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1.100']/name",
         {"'name' of an interface is \"Ethernet0/0/1.100\", with a dot: a sub-interface is asked for by its 'index'"}},
        {"InterfaceWithoutAName",
         "<interfaces xmlns=\"http://openconfig.net/yang/interfaces\"><interface><name/></interface></interfaces>",
         "invalid-value",
         "/openconfig-interfaces:interfaces/interface[name='']/name",
         {"'name' of an interface is empty"}},
        {"RoutedVlan",
         interface(
             "<routed-vlan xmlns=\"http://openconfig.net/yang/vlan\"><config><vlan>10</vlan></config></routed-vlan>"),
         "operation-not-supported",
         kInterface + "/openconfig-vlan:routed-vlan/config/vlan",
         {"vlan"}},
    }),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace cli_test
