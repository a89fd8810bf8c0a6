// What a reading leaves unsaid, in records and in words.
#include "framework/read/unsaid.h"

#include <gtest/gtest.h>

#include "models_of_tests.h"
#include "native_entries.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

constexpr char kSub[] = "Ethernet0/0/1.100";
constexpr char kDot1q[] = "match-dot1q";
constexpr char kDot1ad[] = "match-dot1ad";

struct Shape {
  const char* name;
  const char* entry;
  std::string inside;
  std::string told;  // misreadings and warnings
};

void PrintTo(const Shape& shape, std::ostream* out) {
  *out << shape.name;
}

class Shapes : public testing::TestWithParam<Shape> {};

TEST_P(Shapes, AreToldInFull) {
  Host host = host_with(native_of({{GetParam().entry, GetParam().inside}}));
  const ReadResult result = host.read();
  EXPECT_EQ(told(result.misread) + told(result.warnings), GetParam().told);
  EXPECT_EQ(result.unsaid.empty(), GetParam().told.empty());
}

// All that is there is said, and writing it back still makes something else.
TEST(Unsaid, WhatIsOnlyAddedMakesAMisreading) {
  const Leaves list{{"outer-tag-type", kDot1q}, {"outer-range1-low", "10"}, {"additional-range1-low", "30"}};
  Host host = host_with(native_of({{kSub, layer() + encapsulation(list)}}));
  const ReadResult result = host.read();
  EXPECT_EQ(told(result.unsaid), "");
  EXPECT_EQ(told(result.misread),
            "Ethernet0/0/1.100/ethernet-service/encapsulation is 10,30 and reads as the list 10,30: "
            "outer-range1-high\n");
  EXPECT_EQ(told(result.warnings), "Ethernet0/0/1.100: reads as the list 10,30; natively 10,30\n");
}

INSTANTIATE_TEST_SUITE_P(
    Said, Shapes,
    testing::Values(
        Shape{"Nothing", kSub, "", ""}, Shape{"TheLayer", kSub, layer(), ""},
        Shape{"OwnLeaves", kSub, "<description>d</description><shutdown/>", ""},
        Shape{"OwnLeavesOfAnInterface", "Ethernet0/0/1", "<description>d</description><mtu>1500</mtu><shutdown/>", ""},
        Shape{"ASingleTag", kSub, layer() + encapsulation({{"outer-tag-type", kDot1q}, {"outer-range1-low", "7"}}), ""},
        Shape{"ARoutedTag", kSub, vlan_identifier({{"vlan-type", "vlan-type-dot1q"}, {"first-tag", "7"}}), ""},
        Shape{"AMark", kSub,
              layer() + rewrite({{"rewrite-type", "push1"}, {"outer-tag-type", kDot1ad}, {"outer-tag-value", "7"}}),
              ""},
        Shape{"ATrunk", "Ethernet0/0/1",
              switched_port({{"mode", "trunk"}, {"trunk-tag-type", "vlan-type-dot1q"}, {"trunk-vla-ns", "7,9-20"}}),
              ""}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Unsaid, Shapes,
    testing::Values(
        Shape{"MatchUntagged", kSub, layer() + encapsulation({{"outer-tag-type", "match-untagged"}}),
              "Ethernet0/0/1.100: OpenConfig does not say: ethernet-service/encapsulation/outer-tag-type "
              "\"match-untagged\"\n"},
        Shape{"Push2WithItsTag", kSub,
              layer() + rewrite({{"rewrite-type", "push2"}, {"outer-tag-type", kDot1q}, {"outer-tag-value", "7"}}),
              "Ethernet0/0/1.100: OpenConfig does not say: ethernet-service/rewrite/rewrite-type \"push2\", "
              "ethernet-service/rewrite/outer-tag-type \"match-dot1q\", ethernet-service/rewrite/outer-tag-value "
              "\"7\"\n"},
        Shape{"PopWithATag", kSub, layer() + rewrite({{"rewrite-type", "pop1"}, {"outer-tag-value", "7"}}),
              "Ethernet0/0/1.100: OpenConfig does not say: ethernet-service/rewrite/outer-tag-value \"7\"\n"},
        Shape{"ALoneDot1adTag", kSub, layer() + encapsulation({{"outer-tag-type", kDot1ad}, {"outer-range1-low", "7"}}),
              "Ethernet0/0/1.100: OpenConfig does not say: ethernet-service/encapsulation/outer-tag-type "
              "\"match-dot1ad\", ethernet-service/encapsulation/outer-range1-low \"7\"\n"},
        Shape{"AListWithARange", kSub,
              layer() + encapsulation({{"outer-tag-type", kDot1q},
                                       {"outer-range1-low", "10"},
                                       {"outer-range1-high", "20"},
                                       {"additional-range1-low", "30"}}),
              "Ethernet0/0/1.100/ethernet-service/encapsulation is 10-20,30 and reads as the list 10,30: "
              "outer-range1-high\n"
              "Ethernet0/0/1.100: OpenConfig does not say: ethernet-service/encapsulation/outer-range1-high \"20\"; "
              "reads as the list 10,30; natively 10-20,30\n"},
        Shape{"ARangeWithoutItsLowEnd", kSub,
              layer() + encapsulation({{"outer-tag-type", kDot1q}, {"outer-range1-high", "20"}}),
              "Ethernet0/0/1.100: OpenConfig does not say: ethernet-service/encapsulation/outer-tag-type "
              "\"match-dot1q\"\n"},
        Shape{"AnInnerRangeWithoutItsLowEnd", kSub,
              layer() + encapsulation({{"outer-tag-type", kDot1ad},
                                       {"outer-range1-low", "5"},
                                       {"inner-tag-type", kDot1q},
                                       {"inner-range1-high", "20"}}),
              "Ethernet0/0/1.100: OpenConfig does not say: ethernet-service/encapsulation/inner-tag-type "
              "\"match-dot1q\"\n"},
        Shape{"ARangeUpsideDown", kSub,
              layer() +
                  encapsulation({{"outer-tag-type", kDot1q}, {"outer-range1-low", "20"}, {"outer-range1-high", "10"}}),
              "Ethernet0/0/1.100: OpenConfig does not say: ethernet-service/encapsulation/outer-tag-type "
              "\"match-dot1q\", ethernet-service/encapsulation/outer-range1-low \"20\", "
              "ethernet-service/encapsulation/outer-range1-high \"10\"\n"},
        Shape{"ARoutedTagBesideAnEncapsulation", kSub,
              vlan_identifier({{"vlan-type", "vlan-type-dot1q"}, {"first-tag", "7"}}) +
                  encapsulation({{"outer-tag-type", kDot1q}, {"outer-range1-low", "10"}, {"outer-range1-high", "20"}},
                                {{"rewrite-type", "pop1"}}),
              "Ethernet0/0/1.100: OpenConfig does not say: vlan-sub-configuration/vlan-identifier/vlan-type "
              "\"vlan-type-dot1q\", vlan-sub-configuration/vlan-identifier/first-tag \"7\", "
              "ethernet-service/encapsulation/outer-tag-type \"match-dot1q\", "
              "ethernet-service/encapsulation/outer-range1-low \"10\", "
              "ethernet-service/encapsulation/outer-range1-high \"20\"\n"},
        Shape{"ARoutedTagOnL2", kSub, layer() + vlan_identifier({{"vlan-type", "vlan-type-dot1q"}, {"first-tag", "7"}}),
              "Ethernet0/0/1.100/ethernet-service/encapsulation is nothing and reads as dot1q 7: outer-range1-low "
              "outer-tag-type\n"
              "Ethernet0/0/1.100: OpenConfig does not say: vlan-sub-configuration/vlan-identifier/vlan-type "
              "\"vlan-type-dot1q\", vlan-sub-configuration/vlan-identifier/first-tag \"7\"; reads as dot1q 7; natively "
              "nothing\n"},
        Shape{"TunnelMode", "Ethernet0/0/1", switched_port({{"mode", "tunnel"}, {"access-vlan", "7"}}),
              "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet/"
              "openconfig-vlan:switched-vlan/config/access-vlan: left out, not valid in OpenConfig: When condition "
              "\"../interface-mode = 'ACCESS'\" not satisfied.\n"
              "Ethernet0/0/1: OpenConfig does not say: vlan-trunk-configuration/vlan-switched/mode \"tunnel\", "
              "vlan-trunk-configuration/vlan-switched/access-vlan \"7\"\n"},
        Shape{"ATrunkOfDot1ad", "Bundle-Ether5",
              switched_port({{"mode", "trunk"}, {"trunk-tag-type", "vlan-type-dot1ad"}, {"trunk-vla-ns", "7"}}),
              "Bundle-Ether5: OpenConfig does not say: vlan-trunk-configuration/vlan-switched/mode \"trunk\", "
              "vlan-trunk-configuration/vlan-switched/trunk-tag-type \"vlan-type-dot1ad\", "
              "vlan-trunk-configuration/vlan-switched/trunk-vla-ns \"7\"\n"},
        Shape{
            "ATrunkSpeltOtherwise", "Ethernet0/0/1",
            switched_port({{"mode", "trunk"}, {"trunk-tag-type", "vlan-type-dot1q"}, {"trunk-vla-ns", "7, 007,9"}}),
            "Ethernet0/0/1/vlan-trunk-configuration/vlan-switched is mode trunk, trunk-tag-type vlan-type-dot1q, "
            "trunk-vla-ns 7, 007,9 and reads as trunk 7,9: trunk-vla-ns\n"
            "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet/"
            "openconfig-vlan:switched-vlan/config/trunk-vlans: left out: \"7\" is there already\n"
            "Ethernet0/0/1: OpenConfig does not say: vlan-trunk-configuration/vlan-switched/trunk-vla-ns \"7, 007,9\"; "
            "reads as trunk 7,9; natively mode trunk, trunk-tag-type vlan-type-dot1q, trunk-vla-ns 7, 007,9\n"},
        Shape{"ALayerWithMore", kSub,
              layer(protocols("x/y:z", "drop") + fmt::format("<propagate-remote-status xmlns=\"{}\"/>", kVexnetL2Ns)),
              "Ethernet0/0/1.100: OpenConfig does not say: "
              "l2-transport/l2-protocols/l2-protocol[l2-protocol-name='x/y:z']/action \"drop\", "
              "l2-transport/propagate-remote-status\n"},
        Shape{"AProtocolWithoutAnAction", kSub,
              layer(l2_module("l2-protocols", "<l2-protocol><l2-protocol-name>cdp</l2-protocol-name></l2-protocol>")),
              "Ethernet0/0/1.100: OpenConfig does not say: "
              "l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name \"cdp\"\n"},
        Shape{"AnMtuOfASubinterface", kSub, "<mtu>1500</mtu>",
              "Ethernet0/0/1.100: OpenConfig does not say: mtu \"1500\"\n"},
        Shape{"OtherContainers", "Ethernet0/0/1",
              fmt::format("<user-network-interface xmlns=\"{}\"/>", kVexnetL2Ns) + carrier_delay("5") +
                  l2_module("ethernet-features", "<egress-filtering><mode>strict</mode></egress-filtering>"),
              "Ethernet0/0/1: OpenConfig does not say: user-network-interface, ethernet-features/egress-filtering/mode "
              "\"strict\", carrier-delay/up \"5\"\n"},
        Shape{"ATagOnAnInterface", "Ethernet0/0/1",
              encapsulation({{"outer-tag-type", kDot1q}, {"outer-range1-low", "7"}}),
              "Ethernet0/0/1: OpenConfig does not say: ethernet-service/encapsulation/outer-tag-type \"match-dot1q\", "
              "ethernet-service/encapsulation/outer-range1-low \"7\"\n"},
        Shape{"ANameThatIsNone", "Ethernet0/0/1.007", "<description>d</description>",
              "Ethernet0/0/1.007: left out: the name is none of an interface or sub-interface\n"
              "Ethernet0/0/1.007: OpenConfig does not say: description \"d\"\n"}),
    [](const auto& info) { return info.param.name; });

class Rewrites : public testing::TestWithParam<const char*> {};

TEST_P(Rewrites, OfTwoTagsAreUnsaid) {
  Host host = host_with(native_of({{kSub, layer() + rewrite({{"rewrite-type", GetParam()}})}}));
  const ReadResult result = host.read();
  EXPECT_EQ(told(result.unsaid),
            fmt::format("stays Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type {}\n", GetParam()));
  EXPECT_EQ(told(result.warnings),
            fmt::format("Ethernet0/0/1.100: OpenConfig does not say: ethernet-service/rewrite/rewrite-type \"{}\"\n",
                        GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Unsaid, Rewrites,
                         testing::Values("pop2", "push2", "translate1to2", "translate2to1", "translate2to2"));

// More than the native text holds when it is asked for: a request for it would be refused.
TEST(Unsaid, IsATrunkThatIsTooLongToAskFor) {
  std::string ids = "1001";
  for (int id = 1003; id < 1083; id += 2) ids += fmt::format(",{}", id);
  ASSERT_EQ(ids.size(), 204U);
  const auto told_of = [](const std::string& text) {
    const std::string port =
        switched_port({{"mode", "trunk"}, {"trunk-tag-type", "vlan-type-dot1q"}, {"trunk-vla-ns", text}});
    return told(host_with(native_of({{"Ethernet0/0/1", "<description>d</description>" + port}})).read().unsaid);
  };
  EXPECT_EQ(told_of(ids),
            "stays Ethernet0/0/1/vlan-trunk-configuration/vlan-switched/mode trunk\n"
            "stays Ethernet0/0/1/vlan-trunk-configuration/vlan-switched/trunk-tag-type vlan-type-dot1q\n"
            "stays Ethernet0/0/1/vlan-trunk-configuration/vlan-switched/trunk-vla-ns " +
                ids + "\n");
  ids.resize(199);
  EXPECT_EQ(told_of(ids), "");
}

struct Selection {
  const char* name;
  std::string filter;
  std::string told;  // records
};

void PrintTo(const Selection& selection, std::ostream* out) {
  *out << selection.name;
}

class Filters : public testing::TestWithParam<Selection> {};

// Something unsaid in every part of two sub-interfaces and of their interface.
std::string device_for_filters() {
  const Leaves match{{"outer-tag-type", kDot1q},
                     {"outer-range1-low", "10"},
                     {"outer-range1-high", "20"},
                     {"additional-range1-low", "30"}};
  const std::string sub =
      layer(protocols("cdp", "drop")) + encapsulation(match, {{"rewrite-type", "pop2"}}) + "<mtu>1500</mtu>";
  return native_of({{"Ethernet0/0/1", switched_port({{"mode", "tunnel"}}) + carrier_delay("5")},
                    {kSub, sub},
                    {"Ethernet0/0/1.200", sub}});
}

TEST_P(Filters, TellWhatTheyAskFor) {
  Host host = host_with(device_for_filters());
  const ReadResult result = host.read({.text = GetParam().filter});
  EXPECT_EQ(told(result.unsaid) + told(result.misread), GetParam().told);
}

constexpr char kSubPath[] = "/interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']";

INSTANTIATE_TEST_SUITE_P(
    Reads, Filters,
    testing::Values(
        Selection{"AMatch", std::string(kSubPath) + "/vlan/match",
                  "stays Ethernet0/0/1.100/ethernet-service/encapsulation/outer-range1-high 20 in the list 10,30\n"
                  "Ethernet0/0/1.100/ethernet-service/encapsulation is 10-20,30 and reads as the list 10,30: "
                  "outer-range1-high\n"},
        Selection{"ARewrite", std::string(kSubPath) + "/vlan/ingress-mapping",
                  "stays Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type pop2\n"},
        Selection{"ADescription", std::string(kSubPath) + "/config/description", ""},
        Selection{
            "AnEntry", kSubPath,
            "stays Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name "
            "cdp\n"
            "stays Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action drop\n"
            "stays Ethernet0/0/1.100/mtu 1500\n"
            "stays Ethernet0/0/1.100/ethernet-service/encapsulation/outer-range1-high 20 in the list 10,30\n"
            "stays Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type pop2\n"
            "Ethernet0/0/1.100/ethernet-service/encapsulation is 10-20,30 and reads as the list 10,30: "
            "outer-range1-high\n"},
        Selection{"APort", "/interfaces/interface[name='Ethernet0/0/1']/ethernet",
                  "stays Ethernet0/0/1/vlan-trunk-configuration/vlan-switched/mode tunnel\n"},
        Selection{"TheSameAsASubtree", on_vlan("<match/>"),
                  "stays Ethernet0/0/1.100/ethernet-service/encapsulation/outer-range1-high 20 in the list 10,30\n"
                  "Ethernet0/0/1.100/ethernet-service/encapsulation is 10-20,30 and reads as the list 10,30: "
                  "outer-range1-high\n"},
        Selection{
            "AnEntryAsASubtree",
            on_interface("<subinterfaces><subinterface><index>200</index></subinterface>"
                         "</subinterfaces>"),
            "stays Ethernet0/0/1.200/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name "
            "cdp\n"
            "stays Ethernet0/0/1.200/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action drop\n"
            "stays Ethernet0/0/1.200/mtu 1500\n"
            "stays Ethernet0/0/1.200/ethernet-service/encapsulation/outer-range1-high 20 in the list 10,30\n"
            "stays Ethernet0/0/1.200/ethernet-service/rewrite/rewrite-type pop2\n"
            "Ethernet0/0/1.200/ethernet-service/encapsulation is 10-20,30 and reads as the list 10,30: "
            "outer-range1-high\n"},
        Selection{"Elsewhere", "/interfaces/interface[name='Ethernet0/0/2']", ""}),
    [](const auto& info) { return info.param.name; });

TEST(Traces, SayWhatIsUnsaid) {
  std::string notes;
  HostOptions options{.yang_dir = OC_VLAN_SOURCE_DIR "/yang"};
  options.trace = [&notes](const TraceLine& line) {
    if (line.kind == TraceLine::Kind::note) notes += shortened(line.text) + "\n";
  };
  Host host(options);
  host.load_plugin(OC_VLAN_PLUGIN_FILE);
  const std::string running = native_of({{kSub, layer() + rewrite({{"rewrite-type", "pop2"}})}});
  host.set_running({.text = running});
  const ReadResult result = host.read();
  EXPECT_EQ(notes, told(result.warnings));
  EXPECT_NE(notes.find("rewrite-type \"pop2\""), std::string::npos);
}

}  // namespace
}  // namespace yfw::test
