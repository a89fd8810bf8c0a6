// Differences of two native configurations that their readings do not show, in lines and as a tree.
#include "yfw-host/compare.h"

#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include "models_of_tests.h"
#include "native_entries.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

constexpr char kSub[] = "Ethernet0/0/1.100";

struct Pair {
  const char* name;
  std::string before;
  std::string after;
  std::string readings;  // differences of the readings
  std::string native;    // differences that these do not show
};

void PrintTo(const Pair& pair, std::ostream* out) {
  *out << pair.name;
}

std::string lines(const std::vector<Delta>& deltas) {
  std::string text;
  for (const Delta& each : deltas) {
    text += fmt::format("{}: {} -> {}\n", shortened(each.path), each.was_present ? "'" + each.before + "'" : "absent",
                        each.is_present ? "'" + each.after + "'" : "absent");
  }
  return text;
}

// Both sides of a comparison, of one host.
class Comparison {
 public:
  Comparison(const std::string& before, const std::string& after)
      : host_(host_with(before)), before_(take()), before_reading_(host_.read()) {
    host_.set_running({.text = after, .name = "after"});
    after_ = take();
    after_reading_ = host_.read();
  }

  std::vector<Delta> readings() const { return compare(before_reading_.data, after_reading_.data); }
  std::vector<Delta> native() const { return native_differences(before(), after()); }
  Data tree() const { return native_difference_tree(before(), after(), native()); }

 private:
  Data take() const { return host_.running().clone(); }
  NativeSide before() const { return {before_, before_reading_}; }
  NativeSide after() const { return {after_, after_reading_}; }

  Host host_;
  Data before_;
  ReadResult before_reading_;
  Data after_;
  ReadResult after_reading_;
};

class NativeDifferences : public testing::TestWithParam<Pair> {};

TEST_P(NativeDifferences, AreThoseThatReadingsDoNotShow) {
  const Comparison comparison(GetParam().before, GetParam().after);
  EXPECT_EQ(lines(comparison.readings()), GetParam().readings);
  EXPECT_EQ(lines(comparison.native()), GetParam().native);
  EXPECT_EQ(comparison.tree().empty(), GetParam().native.empty());
}

std::string sub(const std::string& inside) {
  return native_of({{kSub, inside}});
}

std::string ids(const Leaves& leaves) {
  Leaves all{{"outer-tag-type", "match-dot1q"}};
  all.insert(all.end(), leaves.begin(), leaves.end());
  return sub(layer() + encapsulation(all));
}

std::string trunk_of(const std::string& text) {
  return native_of(
      {{"Ethernet0/0/1",
        switched_port({{"mode", "trunk"}, {"trunk-tag-type", "vlan-type-dot1q"}, {"trunk-vla-ns", text}})}});
}

INSTANTIATE_TEST_SUITE_P(
    All, NativeDifferences,
    testing::Values(
        Pair{"Nothing", sub(layer()), sub(layer()), "", ""},
        Pair{"SaidAndChanged", ids({{"outer-range1-low", "7"}}), ids({{"outer-range1-low", "9"}}),
             "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/"
             "subinterface[index='100']/openconfig-vlan:vlan/match/single-tagged/config/vlan-id: '7' -> '9'\n",
             ""},
        Pair{"UnsaidAndChanged", sub(rewrite({{"rewrite-type", "pop2"}})), sub(rewrite({{"rewrite-type", "push2"}})),
             "", "Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type: 'pop2' -> 'push2'\n"},
        Pair{
            "FromUnsaidToSaid", sub(rewrite({{"rewrite-type", "pop2"}})), sub(rewrite({{"rewrite-type", "pop1"}})),
            "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']/"
            "openconfig-vlan:vlan/ingress-mapping/config/vlan-stack-action: absent -> 'POP'\n",
            "Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type: 'pop2' -> 'pop1'\n"},
        Pair{
            "FromSaidToUnsaid", sub(rewrite({{"rewrite-type", "pop1"}})), sub(rewrite({{"rewrite-type", "pop2"}})),
            "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']/"
            "openconfig-vlan:vlan/ingress-mapping/config/vlan-stack-action: 'POP' -> absent\n",
            "Ethernet0/0/1.100/ethernet-service/rewrite/rewrite-type: 'pop1' -> 'pop2'\n"},
        Pair{"UnsaidAndGone", sub(carrier_delay("5")), sub(""), "",
             "Ethernet0/0/1.100/carrier-delay/up: '5' -> absent\n"},
        Pair{"UnsaidAndNew", sub(""), sub(carrier_delay("5")), "",
             "Ethernet0/0/1.100/carrier-delay/up: absent -> '5'\n"},
        Pair{"TheLayerComes", sub(""), sub(layer()), "", "Ethernet0/0/1.100/l2-transport: absent -> ''\n"},
        Pair{"TheLayerGoesWithWhatIsInIt", sub(layer(protocols("cdp", "drop"))), sub(""), "",
             "Ethernet0/0/1.100/l2-transport: '' -> absent\n"
             "Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/l2-protocol-name: 'cdp' "
             "-> absent\n"
             "Ethernet0/0/1.100/l2-transport/l2-protocols/l2-protocol[l2-protocol-name='cdp']/action: 'drop' -> "
             "absent\n"},
        Pair{"OneMisreadAsTheOther",
             ids({{"outer-range1-low", "10"}, {"outer-range1-high", "20"}, {"additional-range1-low", "30"}}),
             ids({{"outer-range1-low", "10"}, {"outer-range1-high", "4097"}, {"additional-range1-low", "30"}}), "",
             "Ethernet0/0/1.100/ethernet-service/encapsulation/outer-range1-high: '20' -> '4097'\n"},
        Pair{"SpeltInAnotherWay", trunk_of("7,9"), trunk_of("7,009"), "", ""},
        Pair{"AnotherOrderOfATrunk", trunk_of("7,9"), trunk_of("9,7"), "",
             "Ethernet0/0/1/vlan-trunk-configuration/vlan-switched/trunk-vla-ns: '7,9' -> '9,7'\n"},
        Pair{"AnotherOrderOfAList",
             ids({{"outer-range1-low", "10"}, {"outer-range1-high", "4097"}, {"additional-range1-low", "30"}}),
             ids({{"outer-range1-low", "30"}, {"outer-range1-high", "4097"}, {"additional-range1-low", "10"}}), "",
             "Ethernet0/0/1.100/ethernet-service/encapsulation/outer-range1-low: '10' -> '30'\n"
             "Ethernet0/0/1.100/ethernet-service/encapsulation/additional-range1-low: '30' -> '10'\n"},
        Pair{"AnotherOrderOfSome", trunk_of("7,9,11"), trunk_of("9,7,13"),
             "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet/"
             "openconfig-vlan:switched-vlan/config/trunk-vlans[.='11']: '11' -> absent\n"
             "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/openconfig-if-ethernet:ethernet/"
             "openconfig-vlan:switched-vlan/config/trunk-vlans[.='13']: absent -> '13'\n",
             "Ethernet0/0/1/vlan-trunk-configuration/vlan-switched/trunk-vla-ns: '7,9,11' -> '9,7,13'\n"},
        Pair{
            "AnotherOrderAndOneMore",
            ids({{"outer-range1-low", "10"}, {"outer-range1-high", "4097"}, {"additional-range1-low", "30"}}),
            ids({{"outer-range1-low", "30"},
                 {"outer-range1-high", "4097"},
                 {"additional-range1-low", "10"},
                 {"additional-range2-low", "50"}}),
            "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']/"
            "openconfig-vlan:vlan/match/single-tagged-list/config/vlan-ids[.='50']: absent -> '50'\n",
            "Ethernet0/0/1.100/ethernet-service/encapsulation/outer-range1-low: '10' -> '30'\n"
            "Ethernet0/0/1.100/ethernet-service/encapsulation/additional-range1-low: '30' -> '10'\n"},
        Pair{"AnotherOrderBelow",
             native_of({{"Ethernet0/0/1", "<description>d</description>"},
                        {kSub, encapsulation({{"outer-tag-type", "match-dot1q"},
                                              {"outer-range1-low", "10"},
                                              {"outer-range1-high", "4097"},
                                              {"additional-range1-low", "30"}})}}),
             native_of({{"Ethernet0/0/1", "<description>e</description>"},
                        {kSub, encapsulation({{"outer-tag-type", "match-dot1q"},
                                              {"outer-range1-low", "30"},
                                              {"outer-range1-high", "4097"},
                                              {"additional-range1-low", "10"}})}}),
             "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/config/description: 'd' -> 'e'\n",
             "Ethernet0/0/1.100/ethernet-service/encapsulation/outer-range1-low: '10' -> '30'\n"
             "Ethernet0/0/1.100/ethernet-service/encapsulation/additional-range1-low: '30' -> '10'\n"},
        Pair{"OneReadsAsTheOther",
             sub(layer() + vlan_identifier({{"vlan-type", "vlan-type-dot1q"}, {"first-tag", "7"}})),
             ids({{"outer-range1-low", "7"}}), "",
             "Ethernet0/0/1.100/vlan-sub-configuration/vlan-identifier/vlan-type: 'vlan-type-dot1q' -> absent\n"
             "Ethernet0/0/1.100/vlan-sub-configuration/vlan-identifier/first-tag: '7' -> absent\n"
             "Ethernet0/0/1.100/ethernet-service/encapsulation/outer-tag-type: absent -> 'match-dot1q'\n"
             "Ethernet0/0/1.100/ethernet-service/encapsulation/outer-range1-low: absent -> '7'\n"},
        Pair{"AnEntryThatHoldsThePlaceOfAnother", sub(layer()), native_of({{"Ethernet0/0/1", ""}, {kSub, layer()}}), "",
             "Ethernet0/0/1/interface-name: absent -> 'Ethernet0/0/1'\n"},
        Pair{"ANameThatIsNone", native_of({{"Ethernet0/0/1.007", "<description>d</description>"}}), native_of({}), "",
             "Ethernet0/0/1.007/interface-name: 'Ethernet0/0/1.007' -> absent\n"
             "Ethernet0/0/1.007/description: 'd' -> absent\n"}),
    [](const auto& info) { return info.param.name; });

// The entry stays, and so do its other containers: only what differs has an operation of its own.
TEST(NativeDifferenceTree, HasOperationsWhereSomethingDiffers) {
  const Leaves match{{"outer-tag-type", "match-dot1q"}, {"outer-range1-low", "7"}};
  const Comparison comparison(
      native_of({{"Ethernet0/0/1", carrier_delay("5")},
                 {kSub, encapsulation(match, {{"rewrite-type", "pop2"}}) + "<mtu>1500</mtu>"},
                 {"Ethernet0/0/1.200", "<mtu>1500</mtu>"}}),
      native_of({{"Ethernet0/0/1", carrier_delay("6")}, {kSub, encapsulation(match) + "<mtu>1600</mtu>"}}));
  EXPECT_EQ(
      comparison.tree().print(Format::xml),
      R"(<interface-configurations xmlns="http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg" xmlns:yang="urn:ietf:params:xml:ns:yang:1" yang:operation="none">
  <interface-configuration>
    <interface-name>Ethernet0/0/1</interface-name>
    <carrier-delay xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
      <up yang:operation="replace" yang:orig-default="false" yang:orig-value="5">6</up>
    </carrier-delay>
  </interface-configuration>
  <interface-configuration yang:operation="none">
    <interface-name>Ethernet0/0/1.100</interface-name>
    <mtu yang:operation="replace" yang:orig-default="false" yang:orig-value="1500">1600</mtu>
    <ethernet-service xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg" yang:operation="none">
      <rewrite yang:operation="delete">
        <rewrite-type>pop2</rewrite-type>
      </rewrite>
    </ethernet-service>
  </interface-configuration>
  <interface-configuration yang:operation="delete">
    <interface-name>Ethernet0/0/1.200</interface-name>
    <mtu>1500</mtu>
  </interface-configuration>
</interface-configurations>
)");
}

}  // namespace
}  // namespace yfw::test
