// Edits as they are understood: envelopes, operations, values and their namespaces, in XML and in JSON.
#include "framework/documents/documents.h"

#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include <map>

#include "framework/tree/models.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "models_of_tests.h"

namespace yfw::test {
namespace {

const std::string kSingle100 =
    on_vlan("<match><single-tagged><config><vlan-id>100</vlan-id></config></single-tagged></match>");

// Every well-meant shape of the same request gives the same tree.
TEST(Envelopes, AreFoundAndTakenOff) {
  const std::string plain = edit_outcome(compact_models(), kSingle100);
  ASSERT_EQ(plain.substr(0, 12), "<interfaces ");
  const std::string json = edit_outcome(compact_models(), kSingle100, Format::json);
  const std::string inside = json.substr(1, json.rfind('}') - 1);
  const std::vector<std::string> shapes{
      fmt::format("<config>{}</config>", kSingle100),
      fmt::format("<config xmlns=\"{}\">{}</config>", kNetconf, kSingle100),
      fmt::format("<nc:config xmlns:nc=\"{}\">{}</nc:config>", kNetconf, kSingle100),
      fmt::format("<data>{}</data>", kSingle100),
      fmt::format("<edit-config><target><running/></target><config>{}</config></edit-config>", kSingle100),
      fmt::format(
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- a request -->\n<rpc xmlns=\"{}\" message-id=\"101\">"
          "<edit-config><target><candidate/></target><test-option>set</test-option>"
          "<error-option>rollback-on-error</error-option><config>{}</config></edit-config></rpc>",
          kNetconf, kSingle100),
      json,
      fmt::format("{{\"ietf-netconf:config\": {{{}}}}}", inside),
      fmt::format("{{\"ietf-netconf:edit-config\": {{\"target\": {{\"running\": [null]}}, \"config\": {{{}}}}}}}",
                  inside),
      "\xEF\xBB\xBF" + json,
  };
  for (const std::string& shape : shapes) {
    const Format format = shape[0] == '<' ? Format::xml : Format::json;
    const std::string outcome = outcome_of([&] {
      return parse_edit(compact_models().get(), {shape, format, "request"}, Operation::merge).tree.print(Format::xml);
    });
    EXPECT_EQ(outcome, plain) << shape;
  }
}

TEST(Envelopes, MayBeEmpty) {
  for (const char* const text : {"<config/>", "<config> \n </config>", "<edit-config><config/></edit-config>"}) {
    EXPECT_EQ(edit_outcome(compact_models(), text), "") << text;
  }
  EXPECT_EQ(edit_outcome(compact_models(), "{}", Format::json), "{}\n");
}

TEST(DefaultOperation, IsTheDocumentsOrElseTheCallers) {
  const std::map<std::string, Operation> cases{
      {"", Operation::replace},
      {"<default-operation>merge</default-operation>", Operation::merge},
      {"<default-operation> none\n</default-operation>", Operation::none},
      {"<default-operation>replace</default-operation>", Operation::replace},
  };
  for (const auto& [said, expected] : cases) {
    const std::string text = fmt::format("<edit-config>{}<config/></edit-config>", said);
    EXPECT_EQ(parse_edit(compact_models().get(), {text}, Operation::replace).default_operation, expected) << said;
  }
}

struct Understood {
  const char* name;
  std::string text;
  std::string printed;  // from the element that matters on, without indentation
};

void PrintTo(const Understood& each, std::ostream* out) {
  *out << each.name;
}

std::string squeezed(const std::string& text) {
  std::string result;
  bool begin = true;
  for (const char c : text) {
    if (c == '\n') begin = true;
    if (c == '\n' || (begin && c == ' ')) continue;
    begin = false;
    result += c;
  }
  return result;
}

class Edit : public testing::TestWithParam<Understood> {};

TEST_P(Edit, IsUnderstoodInXml) {
  const std::string outcome = squeezed(edit_outcome(compact_models(), GetParam().text));
  EXPECT_NE(outcome.find(GetParam().printed), std::string::npos) << outcome << "\n  lacks " << GetParam().printed;
}

// What is printed reads back as what it was, in either format.
TEST_P(Edit, SurvivesEitherFormat) {
  EditDocument first =
      parse_edit(compact_models().get(), {GetParam().text, format_of(GetParam().text)}, Operation::merge);
  const std::string xml = first.tree.print(Format::xml);
  for (const Format format : {Format::xml, Format::json}) {
    const std::string printed = first.tree.print(format);
    EXPECT_EQ(edit_outcome(compact_models(), printed), xml) << printed;
  }
}

#define NC "xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\" nc:operation"

INSTANTIATE_TEST_SUITE_P(
    Documents, Edit,
    testing::Values(
        Understood{"OperationOnAContainer", on_vlan("<match nc:operation='replace'/>"), "<match " NC "=\"replace\"/>"},
        Understood{"OperationOnAnEntry",
                   on_interface("<subinterfaces><subinterface nc:operation='delete'><index>7</index></subinterface>"
                                "</subinterfaces>"),
                   "<subinterface " NC "=\"delete\"><index>7</index></subinterface>"},
        Understood{"OperationOnALeaf", on_interface("<config><mtu nc:operation='create'>1500</mtu></config>"),
                   "<mtu " NC "=\"create\">1500</mtu>"},
        Understood{"OperationOnALeafList",
                   on_trunk("<trunk-vlans>10</trunk-vlans><trunk-vlans nc:operation='delete'>20..30</trunk-vlans>"),
                   "<trunk-vlans>10</trunk-vlans><trunk-vlans " NC "=\"delete\">20..30</trunk-vlans>"},
        Understood{"RemovedLeafWithoutValue", on_interface("<config><mtu nc:operation='remove'/></config>"),
                   "<config><mtu " NC "=\"remove\"/></config>"},
        Understood{"RemovedLeafWithBlanks", on_interface("<config><mtu nc:operation='delete'>\n </mtu></config>"),
                   "<config><mtu " NC "=\"delete\"/></config>"},
        Understood{"LeafBelowARemovedContainer", on_interface("<config nc:operation='remove'><mtu/></config>"),
                   "<config " NC "=\"remove\"><mtu/></config>"},
        Understood{"RemovedIdentityWithoutValue",
                   on_vlan("<ingress-mapping><config><tpid nc:operation='remove'/></config></ingress-mapping>"),
                   "<tpid " NC "=\"remove\"/>"},
        Understood{"OtherPrefixForOperations",
                   "<interfaces xmlns='http://openconfig.net/yang/interfaces'><interface "
                   "xmlns:x='urn:ietf:params:xml:ns:netconf:base:1.0' x:operation='delete'><name>e</name></interface>"
                   "</interfaces>",
                   "<interface " NC "=\"delete\"><name>e</name>"},
        Understood{
            "KeyBehindOtherChildren",
            "<interfaces xmlns='http://openconfig.net/yang/interfaces'><interface><config><mtu>9000</mtu></config>"
            "<name>e</name></interface></interfaces>",
            "<interface><name>e</name><config><mtu>9000</mtu></config></interface>"},
        Understood{"NumbersWithZerosAndBlanks", on_interface("<config><mtu> 01500\n</mtu></config>"),
                   "<mtu>1500</mtu>"},
        Understood{"References",
                   on_interface("<config><description>a &lt;&amp;&#65; <![CDATA[<b>]]></description></config>"),
                   "<description>a &lt;&amp;A &lt;b&gt;</description>"},
        Understood{"EmptyText", on_interface("<config><description/></config>"), "<description/>"},
        Understood{
            "JsonEntryAnnotatedFromOutside",
            R"({"openconfig-interfaces:interfaces": {"interface": [{"name": "e", "@": {"ietf-netconf:operation": "delete"}},
                       {"name": "f"}], "@interface": [null, {"ietf-netconf:operation": "create"}]}})",
            "<interface " NC "=\"delete\"><name>e</name></interface><interface " NC "=\"create\"><name>f</name>"},
        Understood{
            "QuotedKeys",
            "<interfaces xmlns='http://openconfig.net/yang/interfaces'><interface><name>a'b\"c]</name></interface>"
            "</interfaces>",
            "<name>a'b\"c]</name>"},
        Understood{"JsonOperations",
                   R"({"openconfig-interfaces:interfaces": {"interface": [{"@": {"ietf-netconf:operation": "replace"},
                       "name": "e", "config": {"mtu": [null], "@mtu": {"ietf-netconf:operation": "remove"}}}]}})",
                   "<interface " NC
                   "=\"replace\"><name>e</name><config><mtu nc:operation=\"remove\"/></config></interface>"},
        Understood{"JsonAnnotationAlone",
                   R"({"openconfig-interfaces:interfaces": {"interface": [{"name": "e",
                       "config": {"@mtu": {"ietf-netconf:operation": "remove"}}}]}})",
                   "<config><mtu " NC "=\"remove\"/></config>"},
        Understood{"JsonNullToRemove",
                   R"({"openconfig-interfaces:interfaces": {"interface": [{"name": "e",
                       "config": {"@mtu": {"ietf-netconf:operation": "remove"}, "mtu": null}}]}})",
                   "<config><mtu " NC "=\"remove\"/></config>"},
        Understood{"JsonLeafListOperations",
                   R"({"openconfig-interfaces:interfaces": {"interface": [{"name": "e",
                       "openconfig-if-ethernet:ethernet": {"openconfig-vlan:switched-vlan": {"config": {
                       "trunk-vlans": [10, "20..30"], "@trunk-vlans": [null, {"ietf-netconf:operation": "remove"}]}}}}]}})",
                   "<trunk-vlans>10</trunk-vlans><trunk-vlans " NC "=\"remove\">20..30</trunk-vlans>"},
        Understood{"JsonEmptyArray", R"({"openconfig-interfaces:interfaces": {"interface": [{"name": "e",
                       "subinterfaces": {"subinterface": []}, "config": {"mtu": 5}}]}})",
                   "<config><mtu>5</mtu></config>"},
        Understood{"JsonEscapes", R"({"openconfig-interfaces:interfaces": {"interface": [{"name": "e",
                       "config": {"description": "\u00e4\ud83d\ude00\t\"\/\\"}}]}})",
                   "<description>\xc3\xa4\xf0\x9f\x98\x80\t\"/\\</description>"}),
    [](const testing::TestParamInfo<Understood>& info) { return info.param.name; });

TEST(OperationWithoutNamespace, IsTakenAsMeantWithAWarning) {
  const std::string path = "/openconfig-interfaces:interfaces/interface[name='e']";
  const std::string warning =
      fmt::format("warning: {}: the operation \"delete\" is in no namespace; taken as NETCONF's operation\n", path);
  const std::string xml =
      "<interfaces xmlns='http://openconfig.net/yang/interfaces'><interface "
      "operation='delete'><name>e</name></interface>"
      "</interfaces>";
  const std::string json =
      R"({"openconfig-interfaces:interfaces": {"interface": [{"@": {"operation": "delete"}, "name": "e"}]}})";
  const std::string meant = edit_outcome(
      compact_models(),
      R"({"openconfig-interfaces:interfaces": {"interface": [{"@": {"ietf-netconf:operation": "delete"}, "name": "e"}]}})");
  EXPECT_EQ(edit_outcome(compact_models(), xml), warning + meant);
  EXPECT_EQ(edit_outcome(compact_models(), json), warning + meant);
}

// Which namespace a value is said to have, and whether its node is one of the model ("term") or open.
struct Bound {
  const char* name;
  std::string text;
  const char* leaf;
  const char* found;
};

void PrintTo(const Bound& bound, std::ostream* out) {
  *out << bound.name;
}

lyd_node* find_named(lyd_node* node, std::string_view name) {
  for (; node != nullptr; node = node->next) {
    if (LYD_NAME(node) == name) return node;
    lyd_node* const below = node->schema == nullptr ? nullptr : find_named(lyd_child(node), name);
    if (below != nullptr) return below;
  }
  return nullptr;
}

std::string bound_outcome(const Models& models, const Bound& bound) {
  return outcome_of([&]() -> std::string {
    const EditDocument edit = parse_edit(models.get(), {bound.text, format_of(bound.text)}, Operation::merge);
    const lyd_node* const leaf = find_named(edit.tree.get(), bound.leaf);
    if (leaf == nullptr) return "no such leaf";
    const auto said = edit.value_namespaces.find(leaf);
    const bool is_term = leaf->schema != nullptr;
    const char* const value = is_term ? lyd_get_value(leaf) : reinterpret_cast<const lyd_node_opaq*>(leaf)->value;
    const std::string ns = said == edit.value_namespaces.end() ? "of the model"
                           : said->second == nullptr           ? "none"
                                                               : said->second;
    return fmt::format("{} {}, namespace {}", is_term ? "term" : "open", value, ns);
  });
}

std::string on_mapping(std::string_view config) {
  return on_vlan(fmt::format("<ingress-mapping><config>{}</config></ingress-mapping>", config));
}

std::string json_mapping(std::string_view member) {
  return fmt::format(R"({{"openconfig-interfaces:interfaces": {{"interface": [{{"name": "e", "subinterfaces": {{
      "subinterface": [{{"index": 1, "openconfig-vlan:vlan": {{"ingress-mapping": {{"config": {{{}}}}}}}}}]}}}}]}}}})",
                     member);
}

class ValueNamespace : public testing::TestWithParam<Bound> {};

TEST_P(ValueNamespace, IsTheDocuments) {
  EXPECT_EQ(bound_outcome(compact_models(), GetParam()), GetParam().found);
}

TEST_P(ValueNamespace, IsTheDocumentsWithPublishedModels) {
  if (!has_published_models()) GTEST_SKIP() << "no published modules in " << OC_VLAN_PUBLISHED_YANG;
  EXPECT_EQ(bound_outcome(published_models(), GetParam()), GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(
    Documents, ValueNamespace,
    testing::Values(Bound{"IdentityWithPrefix", on_mapping("<tpid>t:TPID_0X88A8</tpid>"), "tpid",
                          "term openconfig-vlan-types:TPID_0X88A8, namespace of the model"},
                    Bound{"IdentityWithPrefixOfItsOwn",
                          on_mapping("<tpid xmlns:x='http://openconfig.net/yang/vlan-types'>x:TPID_ANY</tpid>"), "tpid",
                          "term openconfig-vlan-types:TPID_ANY, namespace of the model"},
                    Bound{"IdentityWithoutPrefix", on_mapping("<tpid>TPID_0X88A8</tpid>"), "tpid",
                          "open TPID_0X88A8, namespace none"},
                    Bound{"IdentityOfAnotherModule", on_mapping("<tpid>oc-if:TPID_0X88A8</tpid>"), "tpid",
                          "open oc-if:TPID_0X88A8, namespace http://openconfig.net/yang/interfaces"},
                    Bound{"UnknownIdentity", on_mapping("<tpid>t:TPID_0X1234</tpid>"), "tpid",
                          "open t:TPID_0X1234, namespace http://openconfig.net/yang/vlan-types"},
                    Bound{"EnumerationWithoutPrefix", on_mapping("<vlan-stack-action>PUSH</vlan-stack-action>"),
                          "vlan-stack-action", "term PUSH, namespace of the model"},
                    Bound{"EnumerationWithPrefix", on_mapping("<vlan-stack-action>t:PUSH</vlan-stack-action>"),
                          "vlan-stack-action", "term PUSH, namespace http://openconfig.net/yang/vlan-types"},
                    Bound{"EnumerationOfAnotherModule", on_mapping("<vlan-stack-action>oc-if:PUSH</vlan-stack-action>"),
                          "vlan-stack-action", "term PUSH, namespace http://openconfig.net/yang/interfaces"},
                    Bound{"ModeWithPrefix", on_trunk("<interface-mode>t:TRUNK</interface-mode>"), "interface-mode",
                          "term TRUNK, namespace http://openconfig.net/yang/vlan-types"},
                    Bound{"JsonIdentityWithModule", json_mapping(R"("tpid": "openconfig-vlan-types:TPID_0X9100")"),
                          "tpid", "term openconfig-vlan-types:TPID_0X9100, namespace of the model"},
                    Bound{"JsonIdentityWithoutModule", json_mapping(R"("tpid": "TPID_0X9100")"), "tpid",
                          "open TPID_0X9100, namespace none"},
                    Bound{"JsonIdentityOfAnotherModule", json_mapping(R"("tpid": "openconfig-interfaces:TPID_0X9100")"),
                          "tpid",
                          "open openconfig-interfaces:TPID_0X9100, namespace http://openconfig.net/yang/interfaces"},
                    Bound{"JsonEnumerationWithModule",
                          json_mapping(R"("vlan-stack-action": "openconfig-vlan-types:SWAP")"), "vlan-stack-action",
                          "term SWAP, namespace http://openconfig.net/yang/vlan-types"}),
    [](const testing::TestParamInfo<Bound>& info) { return info.param.name; });

TEST(Nodes, OperationsComeAndGo) {
  const EditDocument edit =
      parse_edit(compact_models().get(), {on_interface("<config><mtu>5</mtu></config>")}, Operation::merge);
  lyd_node* const config = find_named(edit.tree.get(), "config");
  lyd_node* const mtu = find_named(config, "mtu");
  lyd_node* const removed = new_removed_leaf(config, mtu->schema);
  EXPECT_EQ(operation_of(removed, Operation::none), Operation::remove);
  for (lyd_node* const node : {config, mtu, removed}) {
    for (const Operation operation :
         {Operation::merge, Operation::replace, Operation::create, Operation::delete_, Operation::remove}) {
      set_operation(node, operation);
      EXPECT_EQ(operation_of(node, Operation::none), operation);
    }
    set_operation(node, Operation::none);
    EXPECT_EQ(operation_of(node, Operation::replace), Operation::replace);
  }
  EXPECT_EQ(path_of(removed), fmt::format("{}/config/mtu", kInterfacePath));
}

TEST(Nodes, PathsQuoteWhatNeedsIt) {
  const std::string text = on_trunk("<trunk-vlans>20..30</trunk-vlans>");
  const EditDocument edit = parse_edit(compact_models().get(), {text}, Operation::merge);
  EXPECT_EQ(path_of(find_named(edit.tree.get(), "trunk-vlans")), fmt::format("{}/trunk-vlans[.='20..30']", kTrunkPath));
  EXPECT_EQ(predicate("name", "a'b"), "[name=\"a'b\"]");
  EXPECT_EQ(path_of(nullptr), "");
}

// A container that only holds a removal is there for a reason, and prints.
TEST(Nodes, RemovedLeavesKeepTheirContainers) {
  const std::string text =
      on_vlan("<match><single-tagged><config><vlan-id nc:operation='remove'/></config></single-tagged></match>");
  const EditDocument edit = parse_edit(compact_models().get(), {text}, Operation::merge);
  for (const lyd_node* node = lyd_parent(find_named(edit.tree.get(), "vlan-id")); node != nullptr;
       node = lyd_parent(node)) {
    EXPECT_EQ(node->flags & LYD_DEFAULT, 0U) << path_of(node);
  }
}

}  // namespace
}  // namespace yfw::test
