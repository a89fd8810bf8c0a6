// Native documents: running configurations that are right or refused, and dumps of which the good part is used.
#include <gtest/gtest.h>

#include "framework/datastore/running.h"
#include "framework/documents/documents.h"
#include "models_of_tests.h"

namespace yfw::test {
namespace {

std::string data_outcome(std::string_view text, bool state) {
  return outcome_of([&] {
    std::vector<Warning> warnings;
    const Document document{text, format_of(text), "file"};
    Data data;
    if (state) {
      data = parse_operational(compact_models().get(), document, &warnings);
    } else {
      RunningDocument running = parse_running(compact_models(), document);
      data = std::move(running.data);
      warnings = std::move(running.warnings);
    }
    std::string result;
    for (const Warning& warning : warnings) result += fmt::format("warning: {}: {}\n", warning.path, warning.message);
    return result + data.print(Format::xml);
  });
}

std::string entries(std::string_view inside) {
  return fmt::format("<interface-configurations xmlns=\"{}\">{}</interface-configurations>", kNativeNs, inside);
}

constexpr char kEntry[] =
    "<interface-configuration><interface-name>Ethernet0/0/1.5</interface-name><l2-transport/></"
    "interface-configuration>";

constexpr char kPrinted[] =
    "<interface-configurations xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg\">\n"
    "  <interface-configuration>\n"
    "    <interface-name>Ethernet0/0/1.5</interface-name>\n"
    "    <l2-transport/>\n"
    "  </interface-configuration>\n"
    "</interface-configurations>\n";

TEST(Running, IsReadInEveryEnvelope) {
  const std::vector<std::string> shapes{
      entries(kEntry), "<config>" + entries(kEntry) + "</config>",
      "<data xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">" + entries(kEntry) + "</data>",
      "<rpc-reply xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\" message-id=\"1\"><data>" + entries(kEntry) +
          "</data></rpc-reply>",
      R"({"Vexnet-OS-interface-cfg:interface-configurations": {"interface-configuration":
          [{"interface-name": "Ethernet0/0/1.5", "l2-transport": {}}]}})"};
  for (const std::string& shape : shapes) EXPECT_EQ(data_outcome(shape, false), kPrinted) << shape;
}

TEST(Running, MayBeEmpty) {
  for (const char* const text : {"<config/>", "<data/>", "{}"}) EXPECT_EQ(data_outcome(text, false), "") << text;
}

#define ENTRIES "/Vexnet-OS-interface-cfg:interface-configurations/interface-configuration"

TEST(Running, TellsOnceThatAttributesOfOthersAreNotKept) {
  const std::string one = entries(std::string(kEntry).insert(24, " xmlns:o='urn:o' o:origin='o:intended'"));
  EXPECT_EQ(
      data_outcome(one, false),
      std::string("warning: " ENTRIES "[interface-name='Ethernet0/0/1.5']: the attribute 'origin' is not kept\n") +
          kPrinted);
  const std::string four =
      entries(
          "<interface-configuration><interface-name a='1' xml:lang='en'>Ethernet0/0/1.5</interface-name>"
          "<l2-transport b='2'/></interface-configuration>")
          .replace(0, 25, "<interface-configurations c='3' ");
  EXPECT_EQ(
      data_outcome(four, false),
      std::string("warning: /Vexnet-OS-interface-cfg:interface-configurations: the attribute 'c' is not kept, nor "
                  "are 3 more of file\n") +
          kPrinted);
  EXPECT_EQ(
      data_outcome(R"({"Vexnet-OS-interface-cfg:interface-configurations": {"interface-configuration":
          [{"interface-name": "Ethernet0/0/1.5", "l2-transport": {"@": {"o:origin": "intended", "o:by": 1}}}]}})",
                   false),
      std::string("warning: " ENTRIES "[interface-name='Ethernet0/0/1.5']/l2-transport: the attribute 'origin' is "
                  "not kept, nor is 1 more of file\n") +
          kPrinted);
}

struct BadData {
  const char* name;
  std::string text;
  const char* said;
};

void PrintTo(const BadData& bad, std::ostream* out) {
  *out << bad.name;
}

std::string named(const testing::TestParamInfo<BadData>& info) {
  return info.param.name;
}

class BadRunning : public testing::TestWithParam<BadData> {};

TEST_P(BadRunning, IsUnreadableAsAWhole) {
  EXPECT_EQ(data_outcome(GetParam().text, false), fmt::format("unreadable: file: {}\n", GetParam().said));
}

INSTANTIATE_TEST_SUITE_P(
    Files, BadRunning,
    testing::Values(
        BadData{"Empty", "", "the document is empty"},
        BadData{"Truncated", "<config>\n<interface-configurations>",
                "line 2: Premature end of data in tag interface-configurations line 2"},
        BadData{"OpenConfig", "<interfaces xmlns='http://openconfig.net/yang/interfaces'/>",
                "'openconfig-interfaces:interfaces' is not of the model Vexnet-OS-interface-cfg"},
        BadData{"UnknownModel", "<routers xmlns='urn:r'/>",
                "line 1: 'routers' is in the namespace \"urn:r\", which no loaded model has (/routers)"},
        BadData{"UnknownInALoadedModel", "<routers xmlns='http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg'/>",
                "line 1: 'routers' is not known in the model Vexnet-OS-interface-cfg; allowed: "
                "interface-configurations (/Vexnet-OS-interface-cfg:routers)"},
        BadData{"NoNamespace", entries(std::string(kEntry)).insert(84, "<x xmlns=''/>"),
                "line 1: 'x' is in no namespace of a model (/Vexnet-OS-interface-cfg:interface-configurations/x)"},
        BadData{"UnknownElement", entries("\n" + std::string(kEntry) + "\n\n<x/>"),
                "line 4: 'x' is not known in 'interface-configurations'; allowed: interface-configuration "
                "(/Vexnet-OS-interface-cfg:interface-configurations/x)"},
        BadData{
            "BadValue",
            entries(
                "<interface-configuration><interface-name>a</interface-name><mtu>1</mtu></interface-configuration>"),
            "line 1: 'mtu' is \"1\"; allowed: 64..65535 (" ENTRIES "[interface-name='a']/mtu)"},
        BadData{"NoKey", entries("<interface-configuration/>"),
                "line 1: an entry of 'interface-configuration' has no key 'interface-name' (" ENTRIES ")"},
        BadData{"EntryTwice", entries(std::string(kEntry) + kEntry),
                "line 1: the entry of 'interface-configuration' stands here twice (" ENTRIES
                "[interface-name='Ethernet0/0/1.5'])"},
        BadData{"LeafTwice",
                entries("<interface-configuration><interface-name>a</interface-name><mtu>1500</mtu><mtu>1500</mtu>"
                        "</interface-configuration>"),
                "line 1: 'mtu' stands here twice (" ENTRIES "[interface-name='a']/mtu)"},
        BadData{"ContainerTwice",
                entries("<interface-configuration><interface-name>a</interface-name><l2-transport/><l2-transport/>"
                        "</interface-configuration>"),
                "line 1: 'l2-transport' stands here twice (" ENTRIES "[interface-name='a']/l2-transport)"},
        BadData{
            "Operation",
            entries("<interface-configuration xmlns:nc='urn:ietf:params:xml:ns:netconf:base:1.0' nc:operation='delete'>"
                    "<interface-name>a</interface-name></interface-configuration>"),
            "line 1: 'interface-configuration' carries an operation, but this is data, not an edit (" ENTRIES
            "[interface-name='a'])"},
        BadData{"RpcError", "<rpc-reply><rpc-error/></rpc-reply>",
                "line 1: 'rpc-error' is not expected in 'rpc-reply' (/rpc-reply/rpc-error)"},
        BadData{"NoData", "<rpc-reply><ok/></rpc-reply>", "line 1: 'rpc-reply' holds nothing to work on (/rpc-reply)"},
        BadData{"Edit", "<edit-config><config/></edit-config>",
                "line 1: 'edit-config' is not what is asked for here (/edit-config)"}),
    named);

std::string dump(std::string_view node) {
  return fmt::format(
      "<vlan xmlns=\"{}\"><nodes><node><node-id>0</node-id><interfaces>{}</interfaces></node></nodes></vlan>", kOperNs,
      node);
}

#define NODE "/Vexnet-OS-l2-eth-infra-oper:vlan/nodes/node[node-id='0']/interfaces/interface"

struct OddDump {
  const char* name;
  std::string interfaces;
  const char* warnings;
  std::string used;  // the interfaces that are left
};

void PrintTo(const OddDump& odd, std::ostream* out) {
  *out << odd.name;
}

class Dump : public testing::TestWithParam<OddDump> {};

// What does not fit is told, and the rest counts as if it had never been there.
TEST_P(Dump, IsUsedAsFarAsItFits) {
  EXPECT_EQ(data_outcome(dump(GetParam().interfaces), true),
            GetParam().warnings + data_outcome(dump(GetParam().used), true));
}

constexpr char kGood[] = "<interface><interface>b</interface></interface>";

INSTANTIATE_TEST_SUITE_P(
    Files, Dump,
    testing::Values(
        OddDump{"Good", kGood, "", kGood},
        OddDump{"NoKey", std::string("<interface><encapsulation-details/></interface>") + kGood,
                "warning: " NODE ": left out: an entry of 'interface' has no key 'interface'\n", kGood},
        OddDump{
            "EntryTwice",
            "<interface><interface>a</interface><encapsulation-details><tag>1</tag></encapsulation-details></interface>"
            "<interface><interface>a</interface><encapsulation-details><tag>2</tag></encapsulation-details></"
            "interface>",
            "warning: " NODE "[interface='a']: left out: the entry of 'interface' stands here twice\n",
            "<interface><interface>a</interface><encapsulation-details><tag>1</tag></encapsulation-details></"
            "interface>"},
        OddDump{"BadNumber",
                "<interface><interface>a</interface><encapsulation-details><tag>x</tag>"
                "<vlan-encapsulation>dot1q</vlan-encapsulation></encapsulation-details></interface>",
                "warning: " NODE
                "[interface='a']/encapsulation-details/tag: left out: 'tag' is \"x\"; allowed: 0..4294967295\n",
                "<interface><interface>a</interface><encapsulation-details>"
                "<vlan-encapsulation>dot1q</vlan-encapsulation></encapsulation-details></interface>"},
        OddDump{"UnknownElement", std::string("<x><y/></x>") + kGood,
                "warning: /Vexnet-OS-l2-eth-infra-oper:vlan/nodes/node[node-id='0']/interfaces/x: left out: 'x' is not "
                "known "
                "in 'interfaces'; allowed: interface\n",
                kGood},
        OddDump{
            "ForeignElement", std::string("<x xmlns='urn:x'><y/></x>") + kGood,
            "warning: /Vexnet-OS-l2-eth-infra-oper:vlan/nodes/node[node-id='0']/interfaces/x: left out: 'x' is in the "
            "namespace \"urn:x\", which no loaded model has\n",
            kGood},
        OddDump{
            "LeafTwice",
            "<interface><interface>a</interface><encapsulation-details><tag>1</tag><tag>2</tag></encapsulation-details>"
            "</interface>",
            "warning: " NODE "[interface='a']/encapsulation-details/tag: left out: 'tag' stands here twice\n",
            "<interface><interface>a</interface><encapsulation-details><tag>1</tag></encapsulation-details></"
            "interface>"}),
    [](const testing::TestParamInfo<OddDump>& info) { return info.param.name; });

TEST(Dumps, WithNothingInThemAreRead) {
  for (const char* const text : {"<data/>", "{}"}) EXPECT_EQ(data_outcome(text, true), "") << text;
}

class BadDump : public testing::TestWithParam<BadData> {};

TEST_P(BadDump, IsUnreadable) {
  EXPECT_EQ(data_outcome(GetParam().text, true), fmt::format("unreadable: file: {}\n", GetParam().said));
}

INSTANTIATE_TEST_SUITE_P(
    Files, BadDump,
    testing::Values(
        BadData{"Empty", " ", "the document is empty"},
        BadData{"Truncated", "<vlan>\n<nodes>", "line 2: Premature end of data in tag nodes line 2"},
        BadData{"OfNoModel", "<x xmlns='urn:x'/>",
                "nothing in it can be used: left out: 'x' is in the namespace \"urn:x\", which no loaded model has"},
        BadData{"Configuration", entries(kEntry),
                "'Vexnet-OS-interface-cfg:interface-configurations' is not of the model "
                "Vexnet-OS-l2-eth-infra-oper"}),
    named);

}  // namespace
}  // namespace yfw::test
