// Replaces of entries: the entry and its layer stay, and nothing else of the covered modules.
#include <gtest/gtest.h>

#include "framework/datastore/apply.h"

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "models_of_tests.h"
#include "native_entries.h"
#include "yfw-host/compare.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

struct Replace {
  const char* name;
  std::string request;
  std::string native;   // the native edit
  std::string becomes;  // the entries afterwards
  std::string told;
  Operation default_operation = Operation::merge;
};

void PrintTo(const Replace& replace, std::ostream* out) {
  *out << replace.name;
}

// Leaves, presence containers, entries, and what carries an operation: a line each.
void list(const lyd_node* node, std::string& text) {
  const std::string path = shortened(path_of(node));
  const bool term = (schema_of(node)->nodetype & LYD_NODE_TERM) != 0;
  const bool removed = removes(operation_of(node, Operation::none));
  const bool replaced = operation_of(node, Operation::none) == Operation::replace;
  const bool presence = node->schema != nullptr && (node->schema->flags & LYS_PRESENCE) != 0;
  const bool entry = node->schema != nullptr && node->schema->nodetype == LYS_LIST;
  if (removed) {
    text += "remove " + path + "\n";
  } else if (term && !lysc_is_key(node->schema)) {
    text += path + " " + lyd_get_value(node) + "\n";
  } else if (replaced || presence || entry) {
    text += (replaced ? "replace " : "") + path + "\n";
  }
  const lyd_node* child = nullptr;
  LY_LIST_FOR(removed || term ? nullptr : lyd_child(node), child) {
    list(child, text);
  }
}

std::string listed(const Data& data) {
  std::string text;
  const lyd_node* top = nullptr;
  LY_LIST_FOR(data.get(), top) {
    list(top, text);
  }
  return text;
}

// Everything that an entry can hold and OpenConfig does not say, beside something that it says.
std::string device() {
  const Leaves match{{"outer-tag-type", "match-dot1q"}, {"outer-range1-low", "7"}};
  return native_of({{"Ethernet0/0/1", "<description>d</description>" + carrier_delay("5")},
                    {"Ethernet0/0/1.5", layer(protocols("cdp", "drop")) + "<mtu>1500</mtu>" +
                                            encapsulation(match, {{"rewrite-type", "pop2"}})},
                    {"Ethernet0/0/1.6", layer()},
                    {"Ethernet0/0/2", carrier_delay("6")}});
}

Host host_for(const Replace& replace) {
  Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang", .default_operation = replace.default_operation});
  host.load_plugin(OC_VLAN_PLUGIN_FILE);
  const std::string running = device();
  host.set_running({.text = running, .name = "running"});
  return host;
}

class Replaces : public testing::TestWithParam<Replace> {};

TEST_P(Replaces, SayTheWholeEdit) {
  Host host = host_for(GetParam());
  const EditResult result = host.edit({.text = GetParam().request, .format = format_of(GetParam().request)});
  EXPECT_EQ(listed(result.native), GetParam().native);
}

TEST_P(Replaces, LeaveWhatWasAsked) {
  Host host = host_for(GetParam());
  host.apply({.text = GetParam().request, .format = format_of(GetParam().request)});
  EXPECT_EQ(listed(host.running()), GetParam().becomes);
}

TEST_P(Replaces, TellWhatTheyTake) {
  Host host = host_for(GetParam());
  const EditResult result = host.edit({.text = GetParam().request, .format = format_of(GetParam().request)});
  EXPECT_EQ(told(result.warnings), GetParam().told);
}

// The native edit, applied by whoever gets it, makes the same.
TEST_P(Replaces, AreCompleteAsANativeEdit) {
  Host host = host_for(GetParam());
  const Data before = host.running().clone();
  const EditResult result = host.apply({.text = GetParam().request, .format = format_of(GetParam().request)});
  Data applied = before.clone();
  apply_edit(applied, result.native.get(), Operation::merge);
  EXPECT_TRUE(compare(applied, host.running()).empty()) << applied.print(Format::xml);
}

std::string subs(const std::string& operation, const std::string& inside) {
  return on_interface(fmt::format("<subinterfaces{}><subinterface><index>5</index>{}</subinterface></subinterfaces>",
                                  operation, inside));
}

std::string sub(const std::string& operation, const std::string& inside) {
  return on_interface(fmt::format("<subinterfaces><subinterface{}><index>5</index>{}</subinterface></subinterfaces>",
                                  operation, inside));
}

std::string vlan_of(const std::string& operation, const std::string& inside = "") {
  return fmt::format("<vlan xmlns=\"{}\"{}>{}</vlan>", kVlanNs, operation, inside);
}

std::string whole(const std::string& operation, const std::string& inside) {
  return fmt::format(
      "<interfaces xmlns=\"{}\" xmlns:nc=\"{}\"><interface{}><name>Ethernet0/0/1</name>{}</interface>"
      "</interfaces>",
      kInterfacesNs, kNetconf, operation, inside);
}

constexpr char kReplace[] = " nc:operation=\"replace\"";
constexpr char kRemove[] = " nc:operation=\"remove\"";

// What becomes of entries of the device, as lines.
const std::string kOneGoes =
    "Ethernet0/0/1\n"
    "remove Ethernet0/0/1/carrier-delay\n"
    "remove Ethernet0/0/1/vlan-trunk-configuration\n"
    "remove Ethernet0/0/1/description\n"
    "remove Ethernet0/0/1/mtu\n"
    "remove Ethernet0/0/1/shutdown\n";
const std::string kFiveGoes =
    "Ethernet0/0/1.5\n"
    "Ethernet0/0/1.5/l2-transport\n"
    "remove Ethernet0/0/1.5/l2-transport/l2-protocols\n"
    "remove Ethernet0/0/1.5/ethernet-service/encapsulation\n"
    "remove Ethernet0/0/1.5/ethernet-service/rewrite\n"
    "remove Ethernet0/0/1.5/description\n"
    "remove Ethernet0/0/1.5/shutdown\n"
    "remove Ethernet0/0/1.5/mtu\n";
const std::string kFiveIsTold =
    "Ethernet0/0/1.5: goes, and OpenConfig does not say it: "
    "l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action \"drop\", mtu \"1500\", "
    "ethernet-service/rewrite/rewrite-type \"pop2\"\n";
const std::string kOneStays =
    "Ethernet0/0/1\n"
    "Ethernet0/0/1/description d\n"
    "Ethernet0/0/1/carrier-delay/up 5\n";
const std::string kTwoStays =
    "Ethernet0/0/2\n"
    "Ethernet0/0/2/carrier-delay/up 6\n";

INSTANTIATE_TEST_SUITE_P(
    All, Replaces,
    testing::Values(
        Replace{"AnEntryByNothing", sub(kReplace, ""), kFiveGoes,
                kOneStays +
                    "Ethernet0/0/1.5\n"
                    "Ethernet0/0/1.5/l2-transport\n"
                    "Ethernet0/0/1.6\n"
                    "Ethernet0/0/1.6/l2-transport\n" +
                    kTwoStays,
                kFiveIsTold},
        Replace{"AnEntryByATag",
                sub(kReplace, vlan_of("",
                                      "<match><single-tagged><config><vlan-id>9</vlan-id></config></single-tagged>"
                                      "</match>")),
                "Ethernet0/0/1.5\n"
                "Ethernet0/0/1.5/l2-transport\n"
                "remove Ethernet0/0/1.5/l2-transport/l2-protocols\n"
                "replace Ethernet0/0/1.5/ethernet-service/encapsulation\n"
                "Ethernet0/0/1.5/ethernet-service/encapsulation/outer-tag-type match-dot1q\n"
                "Ethernet0/0/1.5/ethernet-service/encapsulation/outer-range1-low 9\n"
                "remove Ethernet0/0/1.5/ethernet-service/rewrite\n"
                "remove Ethernet0/0/1.5/description\n"
                "remove Ethernet0/0/1.5/shutdown\n"
                "remove Ethernet0/0/1.5/mtu\n",
                kOneStays +
                    "Ethernet0/0/1.5\n"
                    "Ethernet0/0/1.5/l2-transport\n"
                    "Ethernet0/0/1.5/ethernet-service/encapsulation/outer-tag-type match-dot1q\n"
                    "Ethernet0/0/1.5/ethernet-service/encapsulation/outer-range1-low 9\n"
                    "Ethernet0/0/1.6\n"
                    "Ethernet0/0/1.6/l2-transport\n" +
                    kTwoStays,
                kFiveIsTold},
        Replace{"AnEntryByAnEmptyMatch", sub(kReplace, vlan_of("", "<match nc:operation=\"replace\"/>")), kFiveGoes,
                kOneStays +
                    "Ethernet0/0/1.5\n"
                    "Ethernet0/0/1.5/l2-transport\n"
                    "Ethernet0/0/1.6\n"
                    "Ethernet0/0/1.6/l2-transport\n" +
                    kTwoStays,
                kFiveIsTold},
        Replace{"AnEntryOfALayerAlone",
                on_interface("<subinterfaces><subinterface nc:operation=\"replace\"><index>6</index></subinterface>"
                             "</subinterfaces>"),
                "Ethernet0/0/1.6\n"
                "remove Ethernet0/0/1.6/ethernet-service/encapsulation\n"
                "remove Ethernet0/0/1.6/ethernet-service/rewrite\n"
                "remove Ethernet0/0/1.6/description\n"
                "remove Ethernet0/0/1.6/shutdown\n",
                "Ethernet0/0/1\n"
                "Ethernet0/0/1/description d\n"
                "Ethernet0/0/1/carrier-delay/up 5\n"
                "Ethernet0/0/1.5\n"
                "Ethernet0/0/1.5/l2-transport\n"
                "Ethernet0/0/1.5/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']\n"
                "Ethernet0/0/1.5/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action drop\n"
                "Ethernet0/0/1.5/mtu 1500\n"
                "Ethernet0/0/1.5/ethernet-service/encapsulation/outer-tag-type match-dot1q\n"
                "Ethernet0/0/1.5/ethernet-service/encapsulation/outer-range1-low 7\n"
                "Ethernet0/0/1.5/ethernet-service/rewrite/rewrite-type pop2\n"
                "Ethernet0/0/1.6\n"
                "Ethernet0/0/1.6/l2-transport\n"
                "Ethernet0/0/2\n"
                "Ethernet0/0/2/carrier-delay/up 6\n",
                ""},
        Replace{"AListWithARemoveInIt", subs(kReplace, vlan_of(kRemove)), "remove Ethernet0/0/1.6\n" + kFiveGoes,
                kOneStays +
                    "Ethernet0/0/1.5\n"
                    "Ethernet0/0/1.5/l2-transport\n" +
                    kTwoStays,
                "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces: replaced by a "
                "request that does not name them: subinterface '6' goes\n" +
                    kFiveIsTold},
        Replace{"TheSameInJson",
                R"({"openconfig-interfaces:interfaces":{"interface":[{"name":"Ethernet0/0/1","subinterfaces":{
                "@":{"ietf-netconf:operation":"replace"},"subinterface":[{"index":5,"openconfig-vlan:vlan":{
                "@":{"ietf-netconf:operation":"remove"}}}]}}]}})",
                "remove Ethernet0/0/1.6\n" + kFiveGoes,
                kOneStays +
                    "Ethernet0/0/1.5\n"
                    "Ethernet0/0/1.5/l2-transport\n" +
                    kTwoStays,
                "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces: replaced by a "
                "request that does not name them: subinterface '6' goes\n" +
                    kFiveIsTold},
        Replace{"AnInterface", whole(kReplace, ""),
                kOneGoes + "remove Ethernet0/0/1.5\n"
                           "remove Ethernet0/0/1.6\n",
                "Ethernet0/0/1\n" + kTwoStays,
                "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces: replaced by a "
                "request that does not name them: 2 entries of 'subinterface' go, the first is '5'\n"
                "Ethernet0/0/1: goes, and OpenConfig does not say it: carrier-delay/up \"5\"\n" +
                    kFiveIsTold},
        Replace{"AnInterfaceThatKeepsAnEntry",
                whole(kReplace, "<subinterfaces><subinterface><index>5</index></subinterface></subinterfaces>"),
                kOneGoes + "remove Ethernet0/0/1.6\n" + kFiveGoes,
                "Ethernet0/0/1\n"
                "Ethernet0/0/1.5\n"
                "Ethernet0/0/1.5/l2-transport\n" +
                    kTwoStays,
                "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces: replaced by a "
                "request that does not name them: subinterface '6' goes\n"
                "Ethernet0/0/1: goes, and OpenConfig does not say it: carrier-delay/up \"5\"\n" +
                    kFiveIsTold},
        Replace{"AUnit", sub("", vlan_of("", "<match nc:operation=\"replace\"/>")),
                "Ethernet0/0/1.5\n"
                "remove Ethernet0/0/1.5/ethernet-service/encapsulation\n",
                kOneStays +
                    "Ethernet0/0/1.5\n"
                    "Ethernet0/0/1.5/l2-transport\n"
                    "Ethernet0/0/1.5/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']\n"
                    "Ethernet0/0/1.5/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action drop\n"
                    "Ethernet0/0/1.5/mtu 1500\n"
                    "Ethernet0/0/1.5/ethernet-service/rewrite/rewrite-type pop2\n"
                    "Ethernet0/0/1.6\n"
                    "Ethernet0/0/1.6/l2-transport\n" +
                    kTwoStays,
                "Ethernet0/0/1.5: stays, and OpenConfig does not say it: "
                "l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action \"drop\", mtu \"1500\", "
                "ethernet-service/rewrite/rewrite-type \"pop2\"\n"},
        Replace{"TheDefaultOperation",
                whole("", "<subinterfaces><subinterface><index>5</index></subinterface></subinterfaces>"),
                kOneGoes + "remove Ethernet0/0/1.6\n" + kFiveGoes + "remove Ethernet0/0/2\n",
                "Ethernet0/0/1\n"
                "Ethernet0/0/1.5\n"
                "Ethernet0/0/1.5/l2-transport\n",
                "/openconfig-interfaces:interfaces: replaced by a request that does not name them: interface "
                "'Ethernet0/0/2' goes\n"
                "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces: replaced by a "
                "request that does not name them: subinterface '6' goes\n"
                "Ethernet0/0/1: goes, and OpenConfig does not say it: carrier-delay/up \"5\"\n" +
                    kFiveIsTold + "Ethernet0/0/2: goes, and OpenConfig does not say it: carrier-delay/up \"6\"\n",
                Operation::replace}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace yfw::test
