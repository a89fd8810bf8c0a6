// What becomes of unsaid settings in edits: told, refused by a strict host, and named where something else is missing.
#include <gtest/gtest.h>

#include "framework/read/unsaid.h"
#include "models_of_tests.h"
#include "native_entries.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

constexpr char kSub[] = "Ethernet0/0/1.100";

struct Change {
  const char* name;
  std::string request;
  std::string told;     // records and warnings of an edit
  std::string refused;  // what a strict host says; empty when it accepts
};

void PrintTo(const Change& change, std::ostream* out) {
  *out << change.name;
}

class Changes : public testing::TestWithParam<Change> {};

std::string device_for_edits() {
  const Leaves match{{"outer-tag-type", "match-dot1q"}, {"outer-range1-low", "7"}};
  return native_of({{"Ethernet0/0/1", carrier_delay("5")},
                    {kSub, layer(protocols("cdp", "drop")) + encapsulation(match, {{"rewrite-type", "pop2"}})},
                    {"Ethernet0/0/1.200", "<mtu>1500</mtu>"}});
}

TEST_P(Changes, TellWhatStaysAndWhatGoes) {
  Host host = host_with(device_for_edits());
  const EditResult result = host.edit({.text = GetParam().request});
  EXPECT_EQ(told(result.unsaid) + told(result.warnings), GetParam().told);
}

TEST_P(Changes, AreRefusedByAStrictHostWhenSomethingGoes) {
  Host host = host_with(device_for_edits(), Verify::strict);
  const std::string before = host.running().print(Format::xml);
  const std::string outcome = outcome_of([&] {
    host.apply({.text = GetParam().request});
    return std::string();
  });
  EXPECT_EQ(shortened(outcome), GetParam().refused);
  EXPECT_TRUE(outcome.empty() || host.running().print(Format::xml) == before);
}

std::string on_sub(const std::string& attributes) {
  return on_interface(
      fmt::format("<subinterfaces><subinterface{}><index>100</index></subinterface></subinterfaces>", attributes));
}

INSTANTIATE_TEST_SUITE_P(
    Edits, Changes,
    testing::Values(
        Change{"AnotherTag",
               on_vlan("<match><single-tagged><config><vlan-id>9</vlan-id></config></single-tagged></match>"),
               "stays Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name "
               "cdp\n"
               "stays Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action drop\n"
               "stays Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type pop2\n"
               "Ethernet0/0/1.100: stays, and OpenConfig does not say it: "
               "l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action \"drop\", "
               "ethernet-service/rewrite/rewrite-type \"pop2\"\n",
               ""},
        Change{
            "ARewriteInItsPlace",
            on_vlan("<ingress-mapping><config><vlan-stack-action>POP</vlan-stack-action></config>"
                    "</ingress-mapping>"),
            "stays Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name "
            "cdp\n"
            "stays Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action drop\n"
            "goes Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type pop2\n"
            "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']/"
            "openconfig-vlan:vlan/ingress-mapping: merged into what does not read back whole "
            "(Ethernet0/0/1.100/ethernet-service/rewrite), of which something may stay; operation replace takes the "
            "place of all of it\n"
            "Ethernet0/0/1.100: goes, and OpenConfig does not say it: ethernet-service/rewrite/rewrite-type \"pop2\"\n"
            "Ethernet0/0/1.100: stays, and OpenConfig does not say it: "
            "l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action \"drop\"\n",
            "refused: operation-failed\n"
            "  path: Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type\n"
            "  message: the edit takes away what OpenConfig does not say: rewrite-type \"pop2\"; what is asked for "
            "takes its place; leave --verify=strict out where that is meant\n"
            "  bad-element: rewrite-type\n"},
        Change{
            "AReplacedEntry", on_sub(" nc:operation=\"replace\""),
            "goes Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name "
            "cdp\n"
            "goes Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action drop\n"
            "goes Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type pop2\n"
            "Ethernet0/0/1.100: goes, and OpenConfig does not say it: "
            "l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action \"drop\", "
            "ethernet-service/rewrite/rewrite-type \"pop2\"\n",
            "refused: operation-failed\n"
            "  path: Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name\n"
            "  message: the edit takes away what OpenConfig does not say: l2-protocol-name \"cdp\", action \"drop\", "
            "rewrite-type \"pop2\"; merge what changes and remove what goes, which keeps it, and do not replace\n"
            "  bad-element: l2-protocol-name\n"},
        Change{
            "ADeletedEntry", on_sub(" nc:operation=\"delete\""),
            "goes Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name "
            "cdp\n"
            "goes Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action drop\n"
            "goes Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type pop2\n"
            "Ethernet0/0/1.100: goes, and OpenConfig does not say it: "
            "l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action \"drop\", "
            "ethernet-service/rewrite/rewrite-type \"pop2\"\n",
            "refused: operation-failed\n"
            "  path: Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name\n"
            "  message: the edit takes away what OpenConfig does not say: l2-protocol-name \"cdp\", action \"drop\", "
            "rewrite-type \"pop2\"; remove what is meant in the entry and not the entry, or leave --verify=strict out\n"
            "  bad-element: l2-protocol-name\n"},
        Change{"ADeletedInterface",
               fmt::format("<interfaces xmlns=\"{}\" xmlns:nc=\"{}\"><interface nc:operation=\"delete\">"
                           "<name>Ethernet0/0/1</name></interface></interfaces>",
                           kInterfacesNs, kNetconf),
               "goes Ethernet0/0/1/carrier-delay/up 5\n"
               "goes Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name "
               "cdp\n"
               "goes Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action drop\n"
               "goes Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type pop2\n"
               "goes Ethernet0/0/1.200/mtu 1500\n"
               "Ethernet0/0/1: goes, and OpenConfig does not say it: carrier-delay/up \"5\"\n"
               "Ethernet0/0/1.100: goes, and OpenConfig does not say it: "
               "l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action \"drop\", "
               "ethernet-service/rewrite/rewrite-type \"pop2\"\n"
               "Ethernet0/0/1.200: goes, and OpenConfig does not say it: mtu \"1500\"\n",
               "refused: operation-failed\n"
               "  path: Ethernet0/0/1/carrier-delay/up\n"
               "  message: the edit takes away what OpenConfig does not say: up \"5\", l2-protocol-name \"cdp\", "
               "action \"drop\", rewrite-type \"pop2\", mtu \"1500\"; remove what is meant in the entry and not the "
               "entry, or leave --verify=strict out\n"
               "  bad-element: up\n"},
        Change{"AnotherEntry",
               on_interface("<subinterfaces><subinterface><index>300</index></subinterface></subinterfaces>"), "", ""},
        Change{"TheInterface", on_interface("<config><description>d</description></config>"),
               "stays Ethernet0/0/1/carrier-delay/up 5\n"
               "Ethernet0/0/1: stays, and OpenConfig does not say it: carrier-delay/up \"5\"\n",
               ""},
        Change{
            "ReplacedEntries",
            on_interface("<subinterfaces nc:operation=\"replace\"><subinterface><index>200</index></subinterface>"
                         "</subinterfaces>"),
            "goes Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name "
            "cdp\n"
            "goes Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action drop\n"
            "goes Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type pop2\n"
            "goes Ethernet0/0/1.200/mtu 1500\n"
            "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces: replaced by a request "
            "that does not name them: subinterface '100' goes\n"
            "Ethernet0/0/1.100: goes, and OpenConfig does not say it: "
            "l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action \"drop\", "
            "ethernet-service/rewrite/rewrite-type \"pop2\"\n"
            "Ethernet0/0/1.200: goes, and OpenConfig does not say it: mtu \"1500\"\n",
            "refused: operation-failed\n"
            "  path: Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name\n"
            "  message: the edit takes away what OpenConfig does not say: l2-protocol-name \"cdp\", action \"drop\", "
            "rewrite-type \"pop2\", mtu \"1500\"; remove what is meant in the entry and not the entry, or leave "
            "--verify=strict out\n"
            "  bad-element: l2-protocol-name\n"}),
    [](const auto& info) { return info.param.name; });

// The first few of many are named.
TEST(Unsaid, OfManyAStrictHostNamesTheFirst) {
  const Leaves many{{"additional-range1-low", "1"}, {"additional-range2-low", "2"}, {"additional-range3-low", "3"},
                    {"additional-range4-low", "4"}, {"additional-range5-low", "5"}, {"additional-range6-low", "6"},
                    {"additional-range7-low", "7"}, {"additional-range8-low", "8"}};
  Host host = host_with(native_of({{kSub, "<mtu>1500</mtu>" + encapsulation(many)}}), Verify::strict);
  EXPECT_EQ(shortened(outcome_of([&] {
              host.edit({.text = on_sub(" nc:operation=\"replace\"")});
              return std::string();
            })),
            "refused: operation-failed\n"
            "  path: Ethernet0/0/1.100/mtu\n"
            "  message: the edit takes away what OpenConfig does not say: mtu \"1500\", additional-range1-low \"1\", "
            "additional-range2-low \"2\", additional-range3-low \"3\", additional-range4-low \"4\", "
            "additional-range5-low \"5\", additional-range6-low \"6\", additional-range7-low \"7\" and 1 more; merge "
            "what changes and remove what goes, which keeps it, and do not replace\n"
            "  bad-element: mtu\n");
}

struct Missing {
  const char* name;
  std::string request;
  std::string told;
};

void PrintTo(const Missing& missing, std::ostream* out) {
  *out << missing.name;
}

class MissingData : public testing::TestWithParam<Missing> {};

TEST_P(MissingData, IsToldWithWhatIsThereNatively) {
  Host host = host_with(device_for_edits());
  EXPECT_EQ(shortened(outcome_of([&] {
              host.edit({.text = GetParam().request});
              return std::string("accepted");
            })),
            GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(
    Deletes, MissingData,
    testing::Values(
        Missing{"OfTheSecondEntry",
                on_interface(fmt::format("<subinterfaces><subinterface><index>100</index></subinterface><subinterface>"
                                         "<index>200</index><vlan xmlns=\"{}\" nc:operation=\"delete\"/></subinterface>"
                                         "</subinterfaces>",
                                         kVlanNs)),
                "refused: data-missing\n"
                "  path: "
                "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/"
                "subinterface[index='200']/openconfig-vlan:vlan\n"
                "  message: 'vlan' is not there to be deleted; natively there is mtu \"1500\", which OpenConfig does "
                "not say\n"},
        Missing{"ARewrite", on_vlan("<ingress-mapping nc:operation=\"delete\"/>"),
                "refused: data-missing\n"
                "  path: "
                "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/"
                "subinterface[index='100']/openconfig-vlan:vlan/ingress-mapping\n"
                "  message: 'ingress-mapping' is not there to be deleted; natively there is "
                "l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action \"drop\", "
                "ethernet-service/rewrite/rewrite-type \"pop2\", which OpenConfig does not say\n"},
        Missing{"OfTheInterface",
                on_interface(fmt::format("<ethernet xmlns=\"{}\" nc:operation=\"delete\"/>", kEthernetNs)),
                "refused: data-missing\n"
                "  path: "
                "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet\n"
                "  message: 'ethernet' is not there to be deleted; natively there is carrier-delay/up \"5\", which "
                "OpenConfig does not say\n"},
        Missing{"OfAnEntryThatIsNotThere",
                on_interface(fmt::format("<subinterfaces><subinterface><index>300</index>"
                                         "<vlan xmlns=\"{}\" nc:operation=\"delete\"/></subinterface>"
                                         "</subinterfaces>",
                                         kVlanNs)),
                "refused: data-missing\n"
                "  path: "
                "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/"
                "subinterface[index='300']/openconfig-vlan:vlan\n"
                "  message: 'vlan' is not there to be deleted\n"}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace yfw::test
