// Requests that contradict themselves, said of every kind of node with every pair of operations.
#include <gtest/gtest.h>

#include <array>

#include "framework/documents/documents.h"
#include "framework/tree/models.h"
#include "models_of_tests.h"

namespace yfw::test {
namespace {

constexpr std::array<const char*, 6> kOperations{"", "merge", "replace", "create", "delete", "remove"};

std::string in_xml(const char* operation) {
  return *operation == '\0' ? "" : fmt::format(" nc:operation='{}'", operation);
}

// What stands between the braces of an object, or of an entry.
std::string in_json(const char* operation) {
  return *operation == '\0' ? "" : fmt::format(R"("@": {{"ietf-netconf:operation": "{}"}})", operation);
}

// "@NAME" for a leaf, with the comma before it.
std::string beside(const char* name, const char* operation) {
  return *operation == '\0' ? "" : fmt::format(R"(, "@{}": {{"ietf-netconf:operation": "{}"}})", name, operation);
}

std::string in_list(const char* operation) {
  return *operation == '\0' ? "null" : fmt::format(R"({{"ietf-netconf:operation": "{}"}})", operation);
}

std::string with_key(const char* key, const char* operation) {
  const std::string annotation = in_json(operation);
  return fmt::format("{{{}{}}}", key, annotation.empty() ? "" : ", " + annotation);
}

constexpr char kHead[] =
    "<interfaces xmlns='http://openconfig.net/yang/interfaces' xmlns:nc='urn:ietf:params:xml:ns:netconf:base:1.0'";

std::string json_interface(const std::string& inside) {
  return fmt::format(R"({{"openconfig-interfaces:interfaces": {{"interface": [{{"name": "Ethernet0/0/1", {}}}]}}}})",
                     inside);
}

std::string json_trunk(const std::string& config) {
  return json_interface(fmt::format(
      R"("openconfig-if-ethernet:ethernet": {{"openconfig-vlan:switched-vlan": {{"config": {{{}}}}}}})", config));
}

// A node that stands in a request twice, with an operation each ("" for none).
struct Twin {
  const char* name;
  std::string (*xml)(const char* first, const char* second);
  std::string (*json)(const char* first, const char* second);
  std::string path;
  const char* said;
};

const std::vector<Twin>& twins() {
  static const std::vector<Twin> all{
      {"the container at the top",
       [](const char* first, const char* second) {
         return fmt::format("<config>{0}{1}/>{0}{2}/></config>", kHead, in_xml(first), in_xml(second));
       },
       [](const char* first, const char* second) {
         return fmt::format(
             R"({{"openconfig-interfaces:interfaces": {{{}}}, "openconfig-interfaces:interfaces": {{{}}}}})",
             in_json(first), in_json(second));
       },
       "/openconfig-interfaces:interfaces", "'interfaces' stands here twice"},
      {"a container",
       [](const char* first, const char* second) {
         return on_interface(fmt::format("<config{}/><config{}/>", in_xml(first), in_xml(second)));
       },
       [](const char* first, const char* second) {
         return json_interface(fmt::format(R"("config": {{{}}}, "config": {{{}}})", in_json(first), in_json(second)));
       },
       fmt::format("{}/config", kInterfacePath), "'config' stands here twice"},
      {"a leaf with the same value",
       [](const char* first, const char* second) {
         return on_interface(
             fmt::format("<config><mtu{}>1500</mtu><description>d</description><mtu{}>1500</mtu></config>",
                         in_xml(first), in_xml(second)));
       },
       [](const char* first, const char* second) {
         return json_interface(fmt::format(R"("config": {{"mtu": 1500{}, "description": "d", "mtu": 1500{}}})",
                                           beside("mtu", first), beside("mtu", second)));
       },
       fmt::format("{}/config/mtu", kInterfacePath), "'mtu' stands here twice"},
      {"a leaf with another value",
       [](const char* first, const char* second) {
         return on_interface(
             fmt::format("<config><mtu{}>1500</mtu><mtu{}>9000</mtu></config>", in_xml(first), in_xml(second)));
       },
       [](const char* first, const char* second) {
         return json_interface(
             fmt::format(R"("config": {{"mtu": 1500{}, "mtu": 9000{}}})", beside("mtu", first), beside("mtu", second)));
       },
       fmt::format("{}/config/mtu", kInterfacePath), "'mtu' stands here twice"},
      {"an entry of a leaf-list",
       [](const char* first, const char* second) {
         return on_trunk(
             fmt::format("<trunk-vlans{}>10</trunk-vlans><trunk-vlans>11</trunk-vlans><trunk-vlans{}>10</trunk-vlans>",
                         in_xml(first), in_xml(second)));
       },
       [](const char* first, const char* second) {
         return json_trunk(fmt::format(R"("trunk-vlans": [10, 11, 10], "@trunk-vlans": [{}, null, {}])", in_list(first),
                                       in_list(second)));
       },
       fmt::format("{}/trunk-vlans[.='10']", kTrunkPath), "the entry of 'trunk-vlans' stands here twice"},
      {"an interface",
       [](const char* first, const char* second) {
         return fmt::format(
             "{}><interface{}><name>a</name></interface><interface><name>b</name></interface>"
             "<interface{}><name>a</name></interface></interfaces>",
             kHead, in_xml(first), in_xml(second));
       },
       [](const char* first, const char* second) {
         return fmt::format(R"({{"openconfig-interfaces:interfaces": {{"interface": [{}, {{"name": "b"}}, {}]}}}})",
                            with_key(R"("name": "a")", first), with_key(R"("name": "a")", second));
       },
       "/openconfig-interfaces:interfaces/interface[name='a']", "the entry of 'interface' stands here twice"},
      {"a sub-interface, its index written in two ways",
       [](const char* first, const char* second) {
         return on_interface(
             fmt::format("<subinterfaces><subinterface{}><index>1</index></subinterface>"
                         "<subinterface{}><index>+1</index></subinterface></subinterfaces>",
                         in_xml(first), in_xml(second)));
       },
       [](const char* first, const char* second) {
         return json_interface(fmt::format(R"("subinterfaces": {{"subinterface": [{}, {}]}})",
                                           with_key(R"("index": 1)", first), with_key(R"("index": 1)", second)));
       },
       fmt::format("{}/subinterfaces/subinterface[index='1']", kInterfacePath),
       "the entry of 'subinterface' stands here twice"},
  };
  return all;
}

// Both model sets, where the published one is at hand.
std::vector<const Models*> all_models() {
  std::vector<const Models*> all{&compact_models()};
  if (has_published_models()) all.push_back(&published_models());
  return all;
}

TEST(Contradictions, OfANodeThatStandsThereTwiceAreRefused) {
  for (const Models* const models : all_models()) {
    for (const Twin& twin : twins()) {
      const std::string_view last = std::string_view(twin.path).substr(twin.path.rfind('/') + 1);
      const std::string_view name = last.substr(last.find(':') + 1);
      const RpcError wanted{.tag = "bad-element",
                            .path = twin.path,
                            .message = twin.said,
                            .bad_element = std::string(name.substr(0, name.find('[')))};
      for (const char* const first : kOperations) {
        for (const char* const second : kOperations) {
          const std::string where = fmt::format("{}, first '{}', second '{}'", twin.name, first, second);
          EXPECT_EQ(edit_outcome(*models, twin.xml(first, second)), described(wanted)) << where << " in XML";
          EXPECT_EQ(edit_outcome(*models, twin.json(first, second)), described(wanted)) << where << " in JSON";
        }
      }
    }
  }
}

// What the table above cannot say in both formats.
TEST(Contradictions, OfOneFormatAreRefused) {
  const auto twice = [](const std::string& path, const char* element, const char* message) {
    return described({.tag = "bad-element", .path = path, .message = message, .bad_element = element});
  };
  const std::string sub = fmt::format("{}/subinterfaces/subinterface[index='1']", kInterfacePath);
  EXPECT_EQ(
      edit_outcome(compact_models(), on_interface("<config><mtu nc:operation='remove'/><mtu>9000</mtu></config>")),
      twice(fmt::format("{}/config/mtu", kInterfacePath), "mtu", "'mtu' stands here twice"));
  EXPECT_EQ(
      edit_outcome(compact_models(), on_interface("<config><mtu>9000</mtu><mtu nc:operation='remove'/></config>")),
      twice(fmt::format("{}/config/mtu", kInterfacePath), "mtu", "'mtu' stands here twice"));
  EXPECT_EQ(edit_outcome(compact_models(), on_interface("<subinterfaces><subinterface><index>1</index><index>1</index>"
                                                        "</subinterface></subinterfaces>")),
            twice(fmt::format("{}/index", sub), "index", "the key 'index' stands here twice"));
  EXPECT_EQ(edit_outcome(compact_models(),
                         json_interface(R"("subinterfaces": {"subinterface": [{"index": 1, "index": 1}]})")),
            twice(fmt::format("{}/index", sub), "index", "'index' stands here twice"));
  EXPECT_EQ(edit_outcome(compact_models(), json_interface(R"("subinterfaces": {"subinterface": [{"index": 2}],
                                                             "subinterface": [{"index": 1}]})")),
            twice(sub, "subinterface", "'subinterface' stands here twice"));
  EXPECT_EQ(edit_outcome(compact_models(), json_trunk(R"("trunk-vlans": [10], "trunk-vlans": [11])")),
            twice(fmt::format("{}/trunk-vlans", kTrunkPath), "trunk-vlans", "'trunk-vlans' stands here twice"));
  EXPECT_EQ(edit_outcome(compact_models(), json_interface(R"("config": {"@mtu": {"ietf-netconf:operation": "remove"},
                                                             "@mtu": {"ietf-netconf:operation": "delete"}})")),
            twice(fmt::format("{}/config/mtu", kInterfacePath), "mtu", "'mtu' stands here twice"));
}

TEST(Contradictions, OfAFilterWithAMemberTwiceAreRefused) {
  const std::string text =
      R"({"openconfig-interfaces:interfaces": {"interface": [{"name": "a", "config": null, "config": {"mtu": null}}]}})";
  EXPECT_EQ(outcome_of([&text] {
              return parse_filter(compact_models().get(), {text, Format::json, "filter"}).print(Format::xml);
            }),
            described({.tag = "bad-element",
                       .path = "/openconfig-interfaces:interfaces/interface/config",
                       .message = "'config' stands here twice",
                       .bad_element = "config"}));
}

// A node below one that goes, in both formats.
struct Below {
  const char* name;
  std::string (*xml)(const char* outer, const char* inner);
  std::string (*json)(const char* outer, const char* inner);
  std::string path;
  const char* element;
};

const std::vector<Below>& below() {
  static const std::vector<Below> all{
      {"a container",
       [](const char* outer, const char* inner) {
         return on_interface(
             fmt::format("<subinterfaces{}><subinterface><index>1</index><config{}/></subinterface>"
                         "</subinterfaces>",
                         in_xml(outer), in_xml(inner)));
       },
       [](const char* outer, const char* inner) {
         return json_interface(
             fmt::format(R"("subinterfaces": {{{}, "subinterface": [{{"index": 1, "config": {{{}}}}}]}})",
                         in_json(outer), in_json(inner)));
       },
       fmt::format("{}/subinterfaces/subinterface[index='1']/config", kInterfacePath), "config"},
      {"an entry",
       [](const char* outer, const char* inner) {
         return on_interface(
             fmt::format("<subinterfaces{}><subinterface{}><index>1</index></subinterface>"
                         "</subinterfaces>",
                         in_xml(outer), in_xml(inner)));
       },
       [](const char* outer, const char* inner) {
         return json_interface(fmt::format(R"("subinterfaces": {{{}, "subinterface": [{}]}})", in_json(outer),
                                           with_key(R"("index": 1)", inner)));
       },
       fmt::format("{}/subinterfaces/subinterface[index='1']", kInterfacePath), "subinterface"},
      {"a leaf",
       [](const char* outer, const char* inner) {
         return on_interface(fmt::format("<config{}><mtu{}>1500</mtu></config>", in_xml(outer), in_xml(inner)));
       },
       [](const char* outer, const char* inner) {
         return json_interface(fmt::format(R"("config": {{{}, "mtu": 1500{}}})", in_json(outer), beside("mtu", inner)));
       },
       fmt::format("{}/config/mtu", kInterfacePath), "mtu"},
      {"an entry of a leaf-list",
       [](const char* outer, const char* inner) {
         return on_interface(
             fmt::format("<ethernet xmlns='{}'><switched-vlan xmlns='{}'{}><config><trunk-vlans{}>10"
                         "</trunk-vlans></config></switched-vlan></ethernet>",
                         kEthernetNs, kVlanNs, in_xml(outer), in_xml(inner)));
       },
       [](const char* outer, const char* inner) {
         return json_interface(fmt::format(
             R"("openconfig-if-ethernet:ethernet": {{"openconfig-vlan:switched-vlan": {{{},
                "config": {{"trunk-vlans": [10], "@trunk-vlans": [{}]}}}}}})",
             in_json(outer), in_list(inner)));
       },
       fmt::format("{}/trunk-vlans", kTrunkPath), "trunk-vlans"},
  };
  return all;
}

TEST(Contradictions, OfAWriteBelowARemovalAreRefused) {
  for (const Models* const models : all_models()) {
    for (const Below& each : below()) {
      for (const char* const outer : {"delete", "remove"}) {
        for (const char* const inner : kOperations) {
          const std::string_view operation = inner;
          const bool writes = operation == "merge" || operation == "replace" || operation == "create";
          const RpcError wanted{
              .tag = "bad-attribute",
              .path = each.path,
              .message =
                  fmt::format("'{}' carries the operation \"{}\", but what it stands in goes; allowed: delete, remove",
                              each.element, inner),
              .bad_element = each.element,
              .bad_attribute = "operation"};
          for (const std::string& text : {each.xml(outer, inner), each.json(outer, inner)}) {
            const std::string outcome = edit_outcome(*models, text);
            if (writes) {
              EXPECT_EQ(outcome, described(wanted)) << text;
            } else {
              EXPECT_EQ(outcome.find("refused"), std::string::npos) << outcome << text;
            }
          }
        }
      }
    }
  }
}

// Entries that nothing tells apart are what a list without a key is for, but not without end.
TEST(Contradictions, AreNotWhatAListWithoutAKeyHolds) {
  const auto dump = [](int entries) {
    std::string text = fmt::format(
        "<vlan xmlns='{}'><nodes><node><node-id>0</node-id><trunks><trunk><interface>a</interface><vlan-switched>"
        "<trunk-vlan-ranges>",
        kOperNs);
    for (int i = 0; i < entries; ++i) text += "<tags-to-match><ethertype>dot1q</ethertype></tags-to-match>";
    return text + "</trunk-vlan-ranges></vlan-switched></trunk></trunks></node></nodes></vlan>";
  };
  std::vector<Warning> warnings;
  const Data full = parse_operational(compact_models().get(), {dump(4096)}, &warnings);
  EXPECT_TRUE(warnings.empty());
  const Data more = parse_operational(compact_models().get(), {dump(4098)}, &warnings);
  ASSERT_EQ(warnings.size(), 2U);
  EXPECT_EQ(warnings.front().path,
            "/Vexnet-OS-l2-eth-infra-oper:vlan/nodes/node[node-id='0']/trunks/trunk[interface='a']/vlan-switched/"
            "trunk-vlan-ranges/tags-to-match");
  EXPECT_EQ(warnings.front().message, "left out: more than 4096 entries of 'tags-to-match' stand here without a key");
  EXPECT_EQ(more.print(Format::xml), full.print(Format::xml));
}

}  // namespace
}  // namespace yfw::test
