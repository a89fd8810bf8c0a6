// Requests that are well-formed and wrong: one case each, with the whole answer.
#include <gtest/gtest.h>

#include "framework/documents/documents.h"
#include "models_of_tests.h"

namespace yfw::test {
namespace {

struct Wrong {
  const char* name;
  std::string text;
  RpcError error;
};

void PrintTo(const Wrong& wrong, std::ostream* out) {
  *out << wrong.name;
}

std::string named(const testing::TestParamInfo<Wrong>& info) {
  return info.param.name;
}

class Refusal : public testing::TestWithParam<Wrong> {};

TEST_P(Refusal, NamesElementPathAndReason) {
  EXPECT_EQ(edit_outcome(compact_models(), GetParam().text), described(GetParam().error));
}

RpcError value_error(const std::string& path, const char* leaf, const std::string& message) {
  return {.tag = "invalid-value", .path = path + "/" + leaf, .message = message, .bad_element = leaf};
}

std::string in_namespace(const char* ns, std::string_view inside) {
  return fmt::format("<interfaces xmlns=\"{}\">{}</interfaces>", ns, inside);
}

INSTANTIATE_TEST_SUITE_P(
    Elements, Refusal,
    testing::Values(
        Wrong{"NoNamespace",
              "<interfaces/>",
              {.tag = "unknown-namespace",
               .path = "/interfaces",
               .message = "'interfaces' is in no namespace of a model",
               .bad_element = "interfaces"}},
        Wrong{"UnknownNamespace",
              in_namespace("urn:x", ""),
              {.tag = "unknown-namespace",
               .path = "/interfaces",
               .message = "'interfaces' is in the namespace \"urn:x\", which no loaded model has",
               .bad_element = "interfaces",
               .bad_namespace = "urn:x"}},
        Wrong{"UnknownNamespaceBelow",
              on_interface("<vlan xmlns='urn:x'/>"),
              {.tag = "unknown-namespace",
               .path = fmt::format("{}/vlan", kInterfacePath),
               .message = "'vlan' is in the namespace \"urn:x\", which no loaded model has",
               .bad_element = "vlan",
               .bad_namespace = "urn:x"}},
        Wrong{"UnknownElementAtTheTop",
              fmt::format("<vlans xmlns='{}'/>", kVlanNs),
              {.tag = "unknown-element",
               .path = "/openconfig-vlan:vlans",
               .message = "'vlans' is not known in the model openconfig-vlan",
               .bad_element = "vlans"}},
        Wrong{"UnknownElement",
              on_vlan("<match><triple-tagged/></match>"),
              {.tag = "unknown-element",
               .path = fmt::format("{}/match/triple-tagged", kVlanPath),
               .message = "'triple-tagged' is not known in 'match'; allowed: single-tagged, single-tagged-list, "
                          "single-tagged-range, double-tagged, double-tagged-inner-list, double-tagged-outer-list, "
                          "double-tagged-inner-range, double-tagged-outer-range, double-tagged-inner-outer-range",
               .bad_element = "triple-tagged"}},
        Wrong{"ElementOfAnotherModel",
              on_interface("<ethernet/>"),
              {.tag = "unknown-element",
               .path = fmt::format("{}/ethernet", kInterfacePath),
               .message = "'ethernet' in 'interface' is not of the model openconfig-interfaces; allowed: the namespace "
                          "\"http://openconfig.net/yang/interfaces/ethernet\"",
               .bad_element = "ethernet"}},
        Wrong{"State",
              on_interface("<state><mtu>1500</mtu></state>"),
              {.tag = "invalid-value",
               .path = fmt::format("{}/state", kInterfacePath),
               .message = "'state' is state (config false) and cannot be configured",
               .bad_element = "state"}},
        Wrong{"NoKey",
              on_interface("<subinterfaces><subinterface><config/></subinterface></subinterfaces>"),
              {.tag = "missing-element",
               .path = fmt::format("{}/subinterfaces/subinterface", kInterfacePath),
               .message = "an entry of 'subinterface' has no key 'index'",
               .bad_element = "index"}},
        Wrong{"NoKeyBelowADelete",
              on_interface("<subinterfaces><subinterface nc:operation='delete'/></subinterfaces>"),
              {.tag = "missing-element",
               .path = fmt::format("{}/subinterfaces/subinterface", kInterfacePath),
               .message = "an entry of 'subinterface' has no key 'index'",
               .bad_element = "index"}},
        Wrong{"BadKey",
              on_interface("<subinterfaces><subinterface><index>x</index></subinterface></subinterfaces>"),
              {.tag = "invalid-value",
               .path = fmt::format("{}/subinterfaces/subinterface[index='x']/index", kInterfacePath),
               .message = "'index' is \"x\"; allowed: 0..4294967295",
               .bad_element = "index"}},
        Wrong{"TwoKeys",
              on_interface(
                  "<subinterfaces><subinterface><index>1</index><index>2</index></subinterface></subinterfaces>"),
              {.tag = "bad-element",
               .path = fmt::format("{}/subinterfaces/subinterface[index='1']/index", kInterfacePath),
               .message = "the key 'index' stands here twice",
               .bad_element = "index"}},
        Wrong{"TextInAContainer",
              on_vlan("<match>100</match>"),
              {.tag = "bad-element",
               .path = fmt::format("{}/match", kVlanPath),
               .message = "'match' holds elements, not the text \"100\"",
               .bad_element = "match"}},
        Wrong{"ElementsInALeaf",
              on_interface("<config><mtu><value>1500</value></mtu></config>"),
              {.tag = "bad-element",
               .path = fmt::format("{}/config/mtu", kInterfacePath),
               .message = "'mtu' holds a value, not elements",
               .bad_element = "mtu"}}),
    named);

std::string vlan_id(const char* text) {
  return on_vlan(
      fmt::format("<match><single-tagged><config><vlan-id>{}</vlan-id></config></single-tagged></match>", text));
}

Wrong wrong_vlan(const char* name, const char* text) {
  return {name, vlan_id(text),
          value_error(fmt::format("{}/match/single-tagged/config", kVlanPath), "vlan-id",
                      fmt::format("'vlan-id' is \"{}\"; allowed: 1..4094", text))};
}

constexpr char kRange[] =
    R"(([1-9]|[1-9][0-9]{1,2}|[1-3][0-9]{3}|40[0-8][0-9]|409[0-4])\.\.([1-9]|[1-9][0-9]{1,2}|[1-3][0-9]{3}|40[0-8][0-9]|409[0-4]))";

Wrong wrong_trunk(const char* name, const char* text) {
  return {name, on_trunk(fmt::format("<trunk-vlans>{}</trunk-vlans>", text)),
          value_error(kTrunkPath, "trunk-vlans",
                      fmt::format("'trunk-vlans' is \"{}\"; allowed: 1..4094, or a text like {}", text, kRange))};
}

std::string mapping(std::string_view config) {
  return on_vlan(fmt::format("<ingress-mapping><config>{}</config></ingress-mapping>", config));
}

constexpr char kTpids[] =
    "openconfig-vlan-types:TPID_0X8100, openconfig-vlan-types:TPID_0X88A8, openconfig-vlan-types:TPID_0X9100, "
    "openconfig-vlan-types:TPID_0X9200, openconfig-vlan-types:TPID_ANY";

INSTANTIATE_TEST_SUITE_P(
    Values, Refusal,
    testing::Values(
        wrong_vlan("VlanZero", "0"), wrong_vlan("VlanTooHigh", "4095"), wrong_vlan("VlanMuchTooHigh", "99999"),
        wrong_vlan("VlanBeyondAllNumbers", "99999999999999999999999"), wrong_vlan("VlanNegative", "-1"),
        wrong_vlan("VlanInWords", "ten"), wrong_vlan("VlanEmpty", ""), wrong_vlan("VlanBlank", "  "),
        wrong_vlan("VlanWithAFraction", "10.0"), wrong_vlan("VlanHexadecimal", "0x10"), wrong_vlan("TwoVlans", "10 20"),
        wrong_trunk("TrunkWithDash", "20-30"), wrong_trunk("TrunkWithOneDot", "10.20"),
        wrong_trunk("TrunkWithABlankBefore", " 20..30"), wrong_trunk("TrunkWithABlankInside", "20.. 30"),
        wrong_trunk("TrunkZero", "0"), wrong_trunk("TrunkTooHigh", "4095"),
        wrong_trunk("TrunkRangeTooHigh", "20..4095"), wrong_trunk("TrunkRangeFromZero", "0..20"),
        wrong_trunk("TrunkWithComma", "10,20"), wrong_trunk("TrunkEmpty", ""),
        Wrong{"LongValuesAreCut", vlan_id(std::string(100, '9').c_str()),
              value_error(fmt::format("{}/match/single-tagged/config", kVlanPath), "vlan-id",
                          fmt::format("'vlan-id' is \"{}...\"; allowed: 1..4094", std::string(60, '9')))},
        Wrong{"LongValuesAreNotCutInACharacter", vlan_id((std::string(59, '9') + "\xc3\xa4\xc3\xa4").c_str()),
              value_error(fmt::format("{}/match/single-tagged/config", kVlanPath), "vlan-id",
                          fmt::format("'vlan-id' is \"{}...\"; allowed: 1..4094", std::string(59, '9')))},
        Wrong{"UnknownMode", on_trunk("<interface-mode>HYBRID</interface-mode>"),
              value_error(kTrunkPath, "interface-mode", "'interface-mode' is \"HYBRID\"; allowed: ACCESS, TRUNK")},
        Wrong{"UnknownModeWithPrefix", on_trunk("<interface-mode>t:HYBRID</interface-mode>"),
              value_error(kTrunkPath, "interface-mode", "'interface-mode' is \"t:HYBRID\"; allowed: ACCESS, TRUNK")},
        Wrong{
            "ModeWithUndeclaredPrefix", on_trunk("<interface-mode>p:TRUNK</interface-mode>"),
            value_error(kTrunkPath, "interface-mode",
                        "'interface-mode' is \"p:TRUNK\", but the prefix 'p' is not declared; allowed: ACCESS, TRUNK")},
        Wrong{"TpidWithUndeclaredPrefix", mapping("<tpid>p:TPID_ANY</tpid>"),
              value_error(fmt::format("{}/ingress-mapping/config", kVlanPath), "tpid",
                          fmt::format("'tpid' is \"p:TPID_ANY\", but the prefix 'p' is not declared; allowed: {}",
                                      kTpids))},
        Wrong{"TpidWithPrefixOfNoModel", mapping("<tpid xmlns:p='urn:p'>p:TPID_ANY</tpid>"),
              value_error(
                  fmt::format("{}/ingress-mapping/config", kVlanPath), "tpid",
                  fmt::format("'tpid' is \"p:TPID_ANY\", but the prefix 'p' means \"urn:p\", which no loaded model "
                              "has; allowed: {}",
                              kTpids))},
        Wrong{"TpidEmpty", mapping("<tpid/>"),
              value_error(fmt::format("{}/ingress-mapping/config", kVlanPath), "tpid",
                          fmt::format("'tpid' is \"\"; allowed: {}", kTpids))},
        Wrong{"Boolean", on_interface("<config><enabled>yes</enabled></config>"),
              value_error(fmt::format("{}/config", kInterfacePath), "enabled",
                          "'enabled' is \"yes\"; allowed: true, false")},
        Wrong{"BadValueBelowARemove", on_interface("<config><mtu nc:operation='remove'>x</mtu></config>"),
              value_error(fmt::format("{}/config", kInterfacePath), "mtu", "'mtu' is \"x\"; allowed: 0..65535")},
        Wrong{"RemovedLeafListWithoutValue",
              on_trunk("<trunk-vlans nc:operation='remove'/>"),
              {.tag = "missing-element",
               .path = fmt::format("{}/trunk-vlans", kTrunkPath),
               .message = "'trunk-vlans' is a leaf-list: say which of its values goes",
               .bad_element = "trunk-vlans"}}),
    named);

std::string json(std::string_view interface) {
  return fmt::format(R"({{"openconfig-interfaces:interfaces": {{"interface": [{{"name": "Ethernet0/0/1", {}}}]}}}})",
                     interface);
}

RpcError json_error(const char* tag, const char* below, const char* element, const char* message) {
  return {.tag = tag, .path = fmt::format("{}/{}", kInterfacePath, below), .message = message, .bad_element = element};
}

INSTANTIATE_TEST_SUITE_P(
    Json, Refusal,
    testing::Values(
        Wrong{"NoModule",
              R"({"interfaces": {}})",
              {.tag = "unknown-namespace",
               .path = "/interfaces",
               .message = "'interfaces' needs the name of its module before it, as in \"module:interfaces\"",
               .bad_element = "interfaces"}},
        Wrong{"NoModuleInAnEnvelope",
              R"({"ietf-netconf:config": {"interfaces": {}}})",
              {.tag = "unknown-namespace",
               .path = "/interfaces",
               .message = "'interfaces' needs the name of its module before it, as in \"module:interfaces\"",
               .bad_element = "interfaces",
               .bad_namespace = "ietf-netconf"}},
        Wrong{"UnknownModule",
              R"({"x:interfaces": {}})",
              {.tag = "unknown-namespace",
               .path = "/interfaces",
               .message = "'interfaces' is in the module \"x\", which no loaded model has",
               .bad_element = "interfaces",
               .bad_namespace = "x"}},
        Wrong{"ElementOfAnotherModule", json(R"("ethernet": {})"),
              json_error("unknown-element", "ethernet", "ethernet",
                         "'ethernet' in 'interface' is not of the model openconfig-interfaces; allowed: "
                         "openconfig-if-ethernet")},
        Wrong{"NumberAsText", json(R"("config": {"mtu": "1500"})"),
              json_error("invalid-value", "config/mtu", "mtu", "'mtu' is the text \"1500\"; JSON wants a number here")},
        Wrong{"TextAsNumber", json(R"("config": {"description": 5})"),
              json_error("invalid-value", "config/description", "description",
                         "'description' is the number \"5\"; JSON wants a text in quotes here")},
        Wrong{"BooleanAsText", json(R"("config": {"enabled": "true"})"),
              json_error("invalid-value", "config/enabled", "enabled",
                         "'enabled' is the text \"true\"; JSON wants true or false without quotes here")},
        Wrong{"KeyAsText", json(R"("subinterfaces": {"subinterface": [{"index": "1"}]})"),
              json_error("invalid-value", "subinterfaces/subinterface[index='1']/index", "index",
                         "'index' is the text \"1\"; JSON wants a number here")},
        Wrong{"UnionMemberAsText",
              json(R"("openconfig-if-ethernet:ethernet": {"openconfig-vlan:switched-vlan": {"config":
                      {"trunk-vlans": ["10"]}}})"),
              json_error("invalid-value",
                         "openconfig-if-ethernet:ethernet/openconfig-vlan:switched-vlan/config/trunk-vlans",
                         "trunk-vlans", "'trunk-vlans' is the text \"10\"; JSON wants a number here")},
        Wrong{"Fraction", json(R"("config": {"mtu": 1500.0})"),
              json_error("invalid-value", "config/mtu", "mtu", "'mtu' is \"1500.0\"; allowed: 0..65535")},
        Wrong{"Exponent", json(R"("config": {"mtu": 1e3})"),
              json_error("invalid-value", "config/mtu", "mtu", "'mtu' is \"1e3\"; allowed: 0..65535")},
        Wrong{"Null", json(R"("config": {"mtu": null})"),
              json_error("invalid-value", "config/mtu", "mtu", "'mtu' has no value; allowed: 0..65535")},
        Wrong{"NoValue", json(R"("config": {"mtu": [null]})"),
              json_error("invalid-value", "config/mtu", "mtu", "'mtu' has no value; allowed: 0..65535")},
        Wrong{"ObjectForALeaf", json(R"("config": {"mtu": {}})"),
              json_error("bad-element", "config/mtu", "mtu", "'mtu' wants a value, not an object")},
        Wrong{"ValueForAContainer", json(R"("config": 5)"),
              json_error("bad-element", "config", "config", "'config' wants an object")},
        Wrong{"ArrayForALeaf", json(R"("config": {"mtu": [1500]})"),
              json_error("bad-element", "config/mtu", "mtu", "'mtu' stands once and takes no array")},
        Wrong{"ArrayForAContainer", json(R"("config": [])"),
              json_error("bad-element", "config", "config", "'config' stands once and takes no array")},
        Wrong{"ObjectForAList", json(R"("subinterfaces": {"subinterface": {"index": 1}})"),
              json_error("bad-element", "subinterfaces/subinterface[index='1']", "subinterface",
                         "'subinterface' is a list and wants an array")},
        Wrong{"UnknownElementWithAnEmptyArray", json(R"("bogus": [])"),
              json_error("unknown-element", "bogus", "bogus",
                         "'bogus' is not known in 'interface'; allowed: name, config, state, hold-time, "
                         "penalty-based-aied, subinterfaces, aggregation, ethernet, routed-vlan")},
        Wrong{"ModuleThatIsNone", json(R"("openconfig-if-ethernet:ethernet": {"openconfig-vlan:switched-vlan":
                      {"config": {"interface-mode": "p:TRUNK"}}})"),
              json_error("invalid-value",
                         "openconfig-if-ethernet:ethernet/openconfig-vlan:switched-vlan/config/interface-mode",
                         "interface-mode",
                         "'interface-mode' is \"p:TRUNK\", but no loaded model is called 'p'; allowed: ACCESS, TRUNK")},
        Wrong{"IdentityAsNumber", json(R"("subinterfaces": {"subinterface": [{"index": 1, "openconfig-vlan:vlan":
                      {"ingress-mapping": {"config": {"tpid": 5}}}}]})"),
              json_error("invalid-value",
                         "subinterfaces/subinterface[index='1']/openconfig-vlan:vlan/ingress-mapping/config/tpid",
                         "tpid", fmt::format("'tpid' is \"5\"; allowed: {}", kTpids).c_str())},
        Wrong{
            "StateInJson", json(R"("state": {"mtu": 5})"),
            json_error("invalid-value", "state", "state", "'state' is state (config false) and cannot be configured")}),
    named);

RpcError attribute_error(const char* tag, const std::string& path, const char* element, const char* attribute,
                         const char* message) {
  return {.tag = tag, .path = path, .message = message, .bad_element = element, .bad_attribute = attribute};
}

INSTANTIATE_TEST_SUITE_P(
    Operations, Refusal,
    testing::Values(
        Wrong{"Misspelt", on_interface("<config nc:operation='delet'/>"),
              attribute_error(
                  "bad-attribute", fmt::format("{}/config", kInterfacePath), "config", "operation",
                  "'config' carries the operation \"delet\"; allowed: merge, replace, create, delete, remove")},
        Wrong{"InCapitals", on_interface("<config nc:operation='DELETE'/>"),
              attribute_error(
                  "bad-attribute", fmt::format("{}/config", kInterfacePath), "config", "operation",
                  "'config' carries the operation \"DELETE\"; allowed: merge, replace, create, delete, remove")},
        Wrong{"None", on_interface("<config nc:operation='none'/>"),
              attribute_error(
                  "bad-attribute", fmt::format("{}/config", kInterfacePath), "config", "operation",
                  "'config' carries the operation \"none\"; allowed: merge, replace, create, delete, remove")},
        Wrong{"Empty", on_interface("<config nc:operation=''/>"),
              attribute_error("bad-attribute", fmt::format("{}/config", kInterfacePath), "config", "operation",
                              "'config' carries the operation \"\"; allowed: merge, replace, create, delete, remove")},
        Wrong{"MisspeltWithoutNamespace", on_interface("<config operation='delet'/>"),
              attribute_error(
                  "bad-attribute", fmt::format("{}/config", kInterfacePath), "config", "operation",
                  "'config' carries the operation \"delet\"; allowed: merge, replace, create, delete, remove")},
        Wrong{"MisspeltInJson", json(R"("config": {"@": {"ietf-netconf:operation": "delet"}})"),
              attribute_error(
                  "bad-attribute", fmt::format("{}/config", kInterfacePath), "config", "operation",
                  "'config' carries the operation \"delet\"; allowed: merge, replace, create, delete, remove")},
        Wrong{"Two", on_interface("<config nc:operation='merge' operation='delete'/>"),
              attribute_error("bad-attribute", fmt::format("{}/config", kInterfacePath), "config", "operation",
                              "'config' carries two operations")},
        Wrong{"UnknownAttributeOfNetconf", on_interface("<config nc:operator='merge'/>"),
              attribute_error("unknown-attribute", fmt::format("{}/config", kInterfacePath), "config", "operator",
                              "'config' carries an attribute \"operator\" that is not known")},
        Wrong{"ForeignAttribute", on_interface("<config t:insert='first'/>"),
              attribute_error("unknown-attribute", fmt::format("{}/config", kInterfacePath), "config", "insert",
                              "'config' carries an attribute \"insert\" that is not known")},
        Wrong{"OnAKey",
              on_interface(
                  "<subinterfaces><subinterface><index nc:operation='delete'>1</index></subinterface></subinterfaces>"),
              attribute_error("bad-attribute",
                              fmt::format("{}/subinterfaces/subinterface[index='1']/index", kInterfacePath), "index",
                              "operation", "the key 'index' takes no operation; it belongs on its entry")},
        Wrong{"OnTheEnvelope",
              "<config operation='remove'/>",
              {.tag = "bad-attribute",
               .path = "/config",
               .message = "'config' takes no operation; it belongs on the data inside",
               .bad_element = "config",
               .bad_attribute = "operation"}}),
    named);

RpcError protocol_error(const char* tag, const char* path, const char* element, const char* message) {
  return {.tag = tag, .path = path, .message = message, .bad_element = element};
}

INSTANTIATE_TEST_SUITE_P(
    Protocol, Refusal,
    testing::Values(
        Wrong{"DefaultOperation", "<edit-config><default-operation>create</default-operation><config/></edit-config>",
              protocol_error("invalid-value", "/edit-config/default-operation", "default-operation",
                             "'default-operation' is \"create\"; allowed: merge, replace, none")},
        Wrong{"OtherRpc", "<rpc><lock/></rpc>",
              protocol_error("operation-not-supported", "/rpc/lock", "lock", "'lock' is not expected in 'rpc'")},
        Wrong{"GetForAnEdit", "<rpc><get/></rpc>",
              protocol_error("operation-not-supported", "/rpc/get", "get", "'get' is not expected in 'rpc'")},
        Wrong{"FilterForAnEdit", "<filter/>",
              protocol_error("operation-not-supported", "/filter", "filter", "'filter' is not what is asked for here")},
        Wrong{"NoConfig", "<rpc><edit-config><target/></edit-config></rpc>",
              protocol_error("missing-element", "/rpc/edit-config", "edit-config",
                             "'edit-config' holds nothing to work on")},
        Wrong{"Url", "<edit-config><url>file:///etc</url></edit-config>",
              protocol_error("unknown-element", "/edit-config/url", "url", "'url' is not expected in 'edit-config'")},
        Wrong{"TwoConfigs", "<edit-config><config/><config/></edit-config>",
              protocol_error("unknown-element", "/edit-config/config", "config",
                             "'config' is not expected in 'edit-config' again")},
        Wrong{"TwoDefaultOperations",
              "<edit-config><default-operation>merge</default-operation><default-operation>none</default-operation>"
              "<config/></edit-config>",
              protocol_error("bad-element", "/edit-config/default-operation", "default-operation",
                             "'default-operation' stands here twice")},
        Wrong{"TwoConfigsInJson", R"({"ietf-netconf:edit-config": {"config": {}, "config": {}}})",
              protocol_error("unknown-element", "/edit-config/config", "config",
                             "'config' is not expected in 'edit-config' again")},
        Wrong{"TwoTargetsInJson", R"({"ietf-netconf:edit-config": {"target": {}, "target": {}, "config": {}}})",
              protocol_error("bad-element", "/edit-config/target", "target", "'target' stands here twice")},
        Wrong{"TestOnly", "<edit-config><test-option>test-only</test-option><config/></edit-config>",
              protocol_error("operation-not-supported", "/edit-config/test-option", "test-option",
                             "'test-option' is \"test-only\"; allowed: test-then-set, set")},
        Wrong{"TextForData", "<config>100</config>",
              protocol_error("bad-element", "/config", "config", "'config' holds data, not a text")}),
    named);

TEST(Refusals, OfTheProtocolSaySo) {
  try {
    parse_edit(compact_models().get(), {"<rpc><lock/></rpc>"}, Operation::merge);
    FAIL() << "not refused";
  } catch (const Refused& refused) {
    EXPECT_EQ(refused.error().type, "protocol");
  }
}

}  // namespace
}  // namespace yfw::test
