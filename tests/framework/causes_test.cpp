// Why leaves read back differently: the cause goes by what was asked, what was there and what reads back.
#include "framework/vlan/causes.h"

#include <gtest/gtest.h>

#include "models_of_tests.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

constexpr char kL2EthNs[] = "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg";

std::string entry(std::string_view name, const std::string& inside) {
  return fmt::format("<interface-configuration><interface-name>{}</interface-name>{}</interface-configuration>", name,
                     inside);
}

std::string running(const std::string& entries) {
  return fmt::format("<interface-configurations xmlns=\"{}\">{}</interface-configurations>", kNativeNs, entries);
}

std::string container(const char* outer, const std::string& inside) {
  return fmt::format("<{0} xmlns=\"{1}\">{2}</{0}>", outer, kL2EthNs, inside);
}

std::string l2(const std::string& inside) {
  return running(entry("Ethernet0/0/1.100", "<l2-transport/>" + inside));
}
std::string encapsulation(const std::string& leaves) {
  return container("ethernet-service", "<encapsulation>" + leaves + "</encapsulation>");
}
std::string rewrite(const std::string& leaves) {
  return container("ethernet-service", "<rewrite>" + leaves + "</rewrite>");
}
std::string identifier(const std::string& leaves) {
  return container("vlan-sub-configuration", "<vlan-identifier>" + leaves + "</vlan-identifier>");
}
std::string port(const std::string& leaves) {
  return running(entry("Ethernet0/0/1", container("vlan-trunk-configuration", leaves)));
}

std::string match(const char* form, const std::string& leaves) {
  return on_vlan(fmt::format("<match><{0}><config>{1}</config></{0}></match>", form, leaves));
}
std::string mapping(const std::string& leaves) {
  return on_vlan("<ingress-mapping><config>" + leaves + "</config></ingress-mapping>");
}
std::string on_bundle(const char* container, const char* ns, const std::string& leaves) {
  return fmt::format(
      "<interfaces xmlns=\"{0}\"><interface><name>Bundle-Ether1</name><{1} xmlns=\"{2}\"><switched-vlan xmlns=\"{3}\">"
      "<config>{4}</config></switched-vlan></{1}></interface></interfaces>",
      kInterfacesNs, container, ns, kVlanNs, leaves);
}

struct Told {
  const char* name;
  std::string running;
  std::string request;
  std::vector<const char*> report;  // a line per leaf: its name, "asked" or "expected", the values, and why
  bool bound = false;
};

constexpr char kAccess[] = "<interface-mode>ACCESS</interface-mode><access-vlan>5</access-vlan>";
#define SEVERAL                                                                                                      \
  "an inner range without its high id reads back as double-tagged; ask for that, or for both ids; of several outer " \
  "ids "                                                                                                             \
  "the last is kept; ask for one"
#define BUNDLE "the VLANs of a bundle read back below aggregation; ask for them there"
#define THERE                                                                                                         \
  "what is there natively and did not read back takes part in what reads back now; ask for all of it with operation " \
  "replace"
#define TRUNK "mode TRUNK and native-vlan read back only where trunk-vlans are set; ask for them too"
#define TAG "a tag's type and id read back only with the actions PUSH and SWAP; "
#define OTHER \
  "what an L2 sub-interface holds in vlan-sub-configuration is out of reach of a request: it stays and reads back"

std::vector<Told> told() {
  const std::string double_tagged =
      "<outer-tag-type>match-dot1ad</outer-tag-type><outer-range1-low>1</outer-range1-low>"
      "<inner-tag-type>match-dot1q</inner-tag-type><inner-range1-low>2</inner-range1-low>";
  return {
      {"a list of one",
       l2(""),
       match("single-tagged-list", "<vlan-ids>7</vlan-ids>"),
       {"vlan-ids asked 7 found - a list of one id reads back as half a range; ask for single-tagged instead",
        "low-vlan-id expected - found 7 a list of one id reads back as half a range; ask for single-tagged instead"}},
      {"the high id of a range",
       l2(""),
       match("single-tagged-range", "<high-vlan-id>7</high-vlan-id>"),
       {"high-vlan-id asked 7 found - a range reads back only with its low id; ask for both ids"}},
      {"several outer ids of half a range",
       l2(""),
       match(
           "double-tagged-inner-range",
           "<outer-vlan-id>1</outer-vlan-id><outer-vlan-id>2</outer-vlan-id><inner-low-vlan-id>3</inner-low-vlan-id>"),
       {"inner-low-vlan-id asked 3 found - " SEVERAL, "outer-vlan-id asked 1 found - " SEVERAL,
        "outer-vlan-id asked 2 found - " SEVERAL, "inner-vlan-id expected - found 3 " SEVERAL,
        "outer-vlan-id expected - found 2 " SEVERAL}},
      {"single-tagged in the place of double-tagged",
       l2(encapsulation(double_tagged)),
       match("single-tagged", "<vlan-id>7</vlan-id>"),
       {}},
      {"single-tagged merged onto half a double tag",
       l2(encapsulation("<inner-tag-type>match-dot1q</inner-tag-type><inner-range1-low>2</inner-range1-low>")),
       match("single-tagged", "<vlan-id>7</vlan-id>"),
       {"vlan-id asked 7 found - " THERE}},
      {"the other half of a double tag",
       l2(encapsulation("<inner-tag-type>match-dot1q</inner-tag-type><inner-range1-low>2</inner-range1-low>")),
       match("double-tagged", "<outer-vlan-id>7</outer-vlan-id>"),
       {"inner-vlan-id expected - found 2 " THERE}},
      {"half a double tag",
       l2(""),
       match("double-tagged", "<outer-vlan-id>7</outer-vlan-id>"),
       {"outer-vlan-id asked 7 found - a double tag reads back only with the ids of both tags; ask for both"}},
      {"single-tagged merged onto a list's marker",
       l2(encapsulation("<outer-range1-high>4097</outer-range1-high>")),
       match("single-tagged", "<vlan-id>7</vlan-id>"),
       {"vlan-id asked 7 found - " THERE, "low-vlan-id expected - found 7 " THERE}},
      {"what belongs to L3 on L2",
       l2(identifier("<vlan-type>vlan-type-dot1ad</vlan-type><first-tag>1</first-tag><second-tag>2</second-tag>")),
       fmt::format("<interfaces xmlns=\"{}\" xmlns:nc=\"{}\"><interface><name>Ethernet0/0/1</name><subinterfaces>"
                   "<subinterface><index>100</index><vlan xmlns=\"{}\"><match nc:operation='remove'/></vlan>"
                   "</subinterface></subinterfaces></interface></interfaces>",
                   kInterfacesNs, kNetconf, kVlanNs),
       {"inner-vlan-id asked - found 2 " OTHER, "outer-vlan-id asked - found 1 " OTHER}},
      {"bound tags",
       running(entry("Ethernet0/0/1.100", "")),
       match("single-tagged", "<vlan-id>7</vlan-id>"),
       {"vlan-id asked 7 found - the tags of a routed sub-interface read back as vlan/config/vlan-id where that is "
        "bound; ask for that instead",
        "vlan-id expected - found 7 the tags of a routed sub-interface read back as vlan/config/vlan-id where that is "
        "bound; ask for that instead"},
       true},
      {"POP with a tag",
       l2(""),
       mapping("<vlan-stack-action>POP</vlan-stack-action><vlan-id>5</vlan-id>"),
       {"vlan-id asked 5 found - " TAG "ask for POP alone"}},
      {"POP in the place of PUSH",
       l2(rewrite("<rewrite-type>push1</rewrite-type><outer-tag-value>5</outer-tag-value>")),
       mapping("<vlan-stack-action>POP</vlan-stack-action>"),
       {"vlan-id expected 5 found - " TAG "ask for POP alone"}},
      {"a tag alone",
       l2(""),
       mapping("<vlan-id>5</vlan-id>"),
       {"vlan-id asked 5 found - " TAG "ask for vlan-stack-action too"}},
      {"PUSH onto a tag",
       l2(rewrite("<outer-tag-value>5</outer-tag-value>")),
       mapping("<vlan-stack-action>PUSH</vlan-stack-action>"),
       {"vlan-id expected - found 5 a tag that is there natively reads back as soon as the action is PUSH or SWAP"}},
      {"a bundle below ethernet",
       running(entry("Bundle-Ether1", "")),
       on_bundle("ethernet", kEthernetNs, kAccess),
       {"interface-mode asked ACCESS found - " BUNDLE, "access-vlan asked 5 found - " BUNDLE,
        "interface-mode expected - found ACCESS " BUNDLE, "access-vlan expected - found 5 " BUNDLE}},
      {"a bundle's trunk below ethernet",
       running(entry("Bundle-Ether1", "")),
       on_bundle("ethernet", kEthernetNs, "<interface-mode>TRUNK</interface-mode><trunk-vlans>5</trunk-vlans>"),
       {"interface-mode asked TRUNK found - " BUNDLE, "trunk-vlans asked 5 found - " BUNDLE,
        "interface-mode expected - found TRUNK " BUNDLE, "trunk-vlans expected - found 5 " BUNDLE}},
      {"a bundle below aggregation",
       running(entry("Bundle-Ether1", "")),
       on_bundle("aggregation", "http://openconfig.net/yang/interfaces/aggregate", kAccess),
       {}},
      {"a mode alone",
       running(entry("Ethernet0/0/1", "")),
       on_trunk("<interface-mode>TRUNK</interface-mode><native-vlan>4</native-vlan>"),
       {"interface-mode asked TRUNK found - " TRUNK, "native-vlan asked 4 found - " TRUNK}},
      {"the last entry of a trunk",
       port("<vlan-switched><mode>trunk</mode><trunk-tag-type>vlan-type-dot1q</trunk-tag-type>"
            "<trunk-vla-ns>5</trunk-vla-ns></vlan-switched>"),
       on_trunk("<trunk-vlans nc:operation='delete'>5</trunk-vlans>"),
       {"interface-mode expected TRUNK found - " TRUNK}},
      {"access onto an access VLAN",
       port("<vlan-switched><access-vlan>9</access-vlan></vlan-switched>"),
       on_trunk("<interface-mode>ACCESS</interface-mode>"),
       {"access-vlan expected - found 9 an access VLAN that is there natively reads back as soon as the mode is "
        "ACCESS"}},
      {"trunk onto entries",
       port("<vlan-switched><trunk-vla-ns>9</trunk-vla-ns><trunk-tag-type>vlan-type-dot1q</trunk-tag-type>"
            "</vlan-switched>"),
       on_trunk("<interface-mode>TRUNK</interface-mode>"),
       {"trunk-vlans expected - found 9 trunk entries that are there natively read back as soon as the mode is TRUNK"}},
  };
}

std::string text_or_dash(const std::string& text) {
  return text.empty() ? "-" : text;
}

std::string reported(const Told& tested, const std::string& openconfig_dir) {
  return outcome_of([&] {
    Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang",
               .openconfig_dir = openconfig_dir,
               .bind_subinterface_vlan_id = tested.bound});
    host.load_plugin(OC_VLAN_PLUGIN_FILE);
    host.set_running({tested.running, Format::xml, "running"});
    std::string text;
    for (const Difference& each : host.apply({tested.request, Format::xml, "request"}).differences) {
      const std::string leaf = each.path.substr(each.path.rfind('/') + 1);
      text +=
          fmt::format("{} {} {} found {} {}\n", leaf.substr(0, leaf.find('[')), each.is_asked ? "asked" : "expected",
                      text_or_dash(each.asked), text_or_dash(each.found), each.advice);
    }
    return text;
  });
}

class Causes : public testing::TestWithParam<const char*> {};

TEST_P(Causes, AreThoseOfTheSituation) {
  const std::string openconfig_dir = GetParam();
  if (!openconfig_dir.empty() && !has_published_models()) GTEST_SKIP() << "no published modules";
  for (const Told& tested : told()) {
    const std::string text = reported(tested, openconfig_dir);
    EXPECT_EQ(text, fmt::format("{}{}", fmt::join(tested.report, "\n"), tested.report.empty() ? "" : "\n"))
        << tested.name;
  }
}

INSTANTIATE_TEST_SUITE_P(With, Causes, testing::Values("", OC_VLAN_PUBLISHED_YANG),
                         [](const auto& info) { return *info.param == '\0' ? "CompactModules" : "PublishedModules"; });

// The other way round the model refuses.
TEST(Causes, BelowAggregationOnlyBundlesAreAskedFor) {
  const std::string request = on_interface(
      fmt::format("<aggregation xmlns=\"http://openconfig.net/yang/interfaces/aggregate\"><switched-vlan xmlns=\"{}\">"
                  "<config>{}</config></switched-vlan></aggregation>",
                  kVlanNs, kAccess));
  const std::string text = reported({"", running(entry("Ethernet0/0/1", "")), request, {}}, "");
  EXPECT_NE(text.find("'aggregation' is of bundles, and this interface is none: ask for its VLANs below 'ethernet'"),
            std::string::npos)
      << text;
}

}  // namespace
}  // namespace yfw::test
