// Reads and fetches: what a filter asks for, what is answered, what is left out and told.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <thread>

#include "framework/read/reader.h"
#include "yfw-host/host.h"

namespace yfw {
namespace {

constexpr char kRunning[] = R"(<interface-configurations xmlns="http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg">
  <interface-configuration>
    <interface-name>Ethernet0/0/1</interface-name>
    <description>uplink</description>
    <vlan-trunk-configuration xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
      <vlan-switched><mode>trunk</mode><access-vlan>7</access-vlan></vlan-switched>
    </vlan-trunk-configuration>
  </interface-configuration>
  <interface-configuration>
    <interface-name>Ethernet0/0/1.100</interface-name>
    <l2-transport/>
    <ethernet-service xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
      <encapsulation><outer-tag-type>match-dot1q</outer-tag-type><outer-range1-low>100</outer-range1-low></encapsulation>
      <rewrite><rewrite-type>pop1</rewrite-type></rewrite>
    </ethernet-service>
  </interface-configuration>
  <interface-configuration>
    <interface-name>Ethernet0/0/1.200</interface-name>
    <vlan-sub-configuration xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
      <vlan-identifier><vlan-type>vlan-type-dot1q</vlan-type><first-tag>200</first-tag></vlan-identifier>
    </vlan-sub-configuration>
  </interface-configuration>
</interface-configurations>)";

constexpr char kEntries[] = "/Vexnet-OS-interface-cfg:interface-configurations/interface-configuration";

Host make_host(bool with_running = true, HostOptions options = {.yang_dir = OC_VLAN_SOURCE_DIR "/yang"}) {
  Host host(std::move(options));
  host.load_plugin(OC_VLAN_PLUGIN_FILE);
  if (with_running) host.set_running({kRunning, Format::xml, "running"});
  return host;
}

std::string filter_of(const std::string& inside) {
  return "<interfaces xmlns=\"http://openconfig.net/yang/interfaces\">" + inside + "</interfaces>";
}

std::string told(const std::vector<Warning>& warnings) {
  std::string text;
  for (const Warning& warning : warnings) text += warning.path + ": " + warning.message + "\n";
  return text;
}

TEST(Read, AnswersWhatCanBeAnsweredAndTellsTheRest) {
  Host host = make_host();
  const ReadResult result = host.read();
  const std::string text = result.data.print(Format::xml);
  EXPECT_NE(text.find("<vlan-id>100</vlan-id>"), std::string::npos) << text;
  EXPECT_NE(text.find("<vlan-id>200</vlan-id>"), std::string::npos) << text;
  EXPECT_NE(text.find("<vlan-stack-action>POP</vlan-stack-action>"), std::string::npos) << text;
  EXPECT_NE(text.find("<description>uplink</description>"), std::string::npos) << text;
  EXPECT_EQ(text.find("interface-mode"), std::string::npos) << text;
  const std::string warnings = told(result.warnings);
  EXPECT_NE(warnings.find("vlan-switched/mode: left out: it needs 'trunk-tag-type', which is not there"),
            std::string::npos)
      << warnings;
}

struct FilterCase {
  const char* name;
  std::string filter;
  std::vector<std::string> present;
  std::vector<std::string> absent;
  const char* warning = "";
};

class FilterTest : public testing::TestWithParam<FilterCase> {};

TEST_P(FilterTest, Selects) {
  Host host = make_host();
  const ReadResult result = host.read({GetParam().filter, Format::xml, "filter"});
  const std::string text = result.data.print(Format::xml);
  for (const std::string& part : GetParam().present)
    EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
  for (const std::string& part : GetParam().absent)
    EXPECT_EQ(text.find(part), std::string::npos) << part << "\n" << text;
  const std::string warnings = told(result.warnings);
  if (*GetParam().warning == '\0') {
    EXPECT_EQ(warnings, "");
  } else {
    EXPECT_NE(warnings.find(GetParam().warning), std::string::npos) << warnings;
  }
}

const std::string kSub100 = "<interface><name>Ethernet0/0/1</name><subinterfaces><subinterface><index>100</index>";
const std::string kEnd = "</subinterface></subinterfaces></interface>";

INSTANTIATE_TEST_SUITE_P(
    Read, FilterTest,
    testing::Values(
        FilterCase{"OneSubinterface", filter_of(kSub100 + kEnd), {"<vlan-id>100</vlan-id>", "POP"}, {"200", "uplink"}},
        FilterCase{"OneContainer",
                   filter_of(kSub100 + "<vlan xmlns=\"http://openconfig.net/yang/vlan\"><match/></vlan>" + kEnd),
                   {"<vlan-id>100</vlan-id>", "<name>Ethernet0/0/1</name>", "<index>100</index>"},
                   {"POP", "200"}},
        FilterCase{"EverySubinterface",
                   filter_of("<interface><subinterfaces><subinterface><vlan xmlns=\"http://openconfig.net/yang/vlan\">"
                             "<match/></vlan>" +
                             kEnd),
                   {"<vlan-id>100</vlan-id>", "<vlan-id>200</vlan-id>"},
                   {"POP", "uplink"}},
        FilterCase{"NothingMatches", filter_of("<interface><name>Ethernet9/9/9</name></interface>"), {}, {"interface"}},
        FilterCase{"Paths",
                   "/interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='200']/vlan\n"
                   "/interfaces/interface[name='Ethernet0/0/1']/config/description\n",
                   {"<vlan-id>200</vlan-id>", "uplink"},
                   {"<vlan-id>100</vlan-id>", "POP"}},
        FilterCase{"UnmappedLeafIsPruned",
                   filter_of(kSub100 +
                             "<vlan xmlns=\"http://openconfig.net/yang/vlan\"><match/><config><vlan-id/>"
                             "</config></vlan>" +
                             kEnd),
                   {"<vlan-id>100</vlan-id>"},
                   {"200"},
                   "not mapped, left out of the filter"}),
    [](const auto& tested) { return tested.param.name; });

TEST(Read, RefusesAFilterWithAnUnknownElement) {
  Host host = make_host();
  try {
    host.read({filter_of("<interface><name>Ethernet0/0/1</name><nothing/></interface>"), Format::xml, "filter"});
    FAIL() << "went through";
  } catch (const Refused& refused) {
    EXPECT_EQ(refused.error().tag, "unknown-element");
    EXPECT_NE(refused.error().path.find("nothing"), std::string::npos) << refused.error().path;
  }
}

struct FetchCase {
  const char* name;
  const char* path;
  std::vector<std::string> expected;
  bool with_state = false;
};

class FetchTest : public testing::TestWithParam<FetchCase> {};

TEST_P(FetchTest, AsksFor) {
  Host host = make_host();
  EXPECT_EQ(host.fetch({GetParam().path, Format::xml, "path"}, GetParam().with_state).paths, GetParam().expected);
}

const std::string kEntry100 = std::string(kEntries) + "[interface-name='Ethernet0/0/1.100']";
const std::string kEntry200 = std::string(kEntries) + "[interface-name='Ethernet0/0/1.200']";
const std::string kEntry = std::string(kEntries) + "[interface-name='Ethernet0/0/1']";
const std::string kEncapsulation = "/Vexnet-OS-l2-eth-infra-cfg:ethernet-service/encapsulation";
const std::string kIdentifier = "/Vexnet-OS-l2-eth-infra-cfg:vlan-sub-configuration/vlan-identifier";

INSTANTIATE_TEST_SUITE_P(
    Fetch, FetchTest,
    testing::Values(
        FetchCase{"L2Leaf",
                  "/interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']/vlan/match/"
                  "single-tagged/config/vlan-id",
                  {kEntry100 + kEncapsulation + "/outer-range1-low", kEntry100 + kEncapsulation + "/outer-tag-type"}},
        FetchCase{"L3Leaf",
                  "/interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='200']/vlan/match/"
                  "single-tagged/config/vlan-id",
                  {kEntry200 + kIdentifier + "/first-tag", kEntry200 + kIdentifier + "/vlan-type"}},
        FetchCase{"EveryEntryMayBeEither",
                  "/interfaces/interface/subinterfaces/subinterface/vlan/match/single-tagged/config/vlan-id",
                  {kEntries + kEncapsulation + "/outer-range1-low", kEntries + kEncapsulation + "/outer-tag-type",
                   kEntries + kIdentifier + "/first-tag", kEntries + kIdentifier + "/vlan-type"}},
        FetchCase{"TrunkMode",
                  "/interfaces/interface[name='Ethernet0/0/1']/ethernet/switched-vlan/config/interface-mode",
                  {kEntry + "/Vexnet-OS-l2-eth-infra-cfg:vlan-trunk-configuration/vlan-switched/mode",
                   kEntry + "/Vexnet-OS-l2-eth-infra-cfg:vlan-trunk-configuration/vlan-switched/trunk-tag-type"}},
        FetchCase{"State",
                  "/interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']/vlan/match/"
                  "single-tagged/state/vlan-id",
                  {"/Vexnet-OS-l2-eth-infra-oper:vlan/nodes/node/interfaces/interface[interface='Ethernet0/0/1.100']/"
                   "encapsulation-details"},
                  true}),
    [](const auto& tested) { return tested.param.name; });

TEST(Host, TwoHostsOnTwoThreads) {
  const auto work = [](const char* id, std::string* answer) {
    Host host = make_host();
    const std::string request =
        filter_of(kSub100 + "<vlan xmlns=\"http://openconfig.net/yang/vlan\"><match><single-tagged><config><vlan-id>" +
                  std::string(id) + "</vlan-id></config></single-tagged></match></vlan>" + kEnd);
    for (int i = 0; i < 20; ++i) {
      host.apply({request, Format::xml, "request"});
      *answer = host.read({filter_of(kSub100 + kEnd), Format::xml, "filter"}).data.print(Format::xml);
    }
  };
  std::string first;
  std::string second;
  std::thread one(work, "11", &first);
  std::thread two(work, "22", &second);
  one.join();
  two.join();
  EXPECT_NE(first.find("<vlan-id>11</vlan-id>"), std::string::npos) << first;
  EXPECT_NE(second.find("<vlan-id>22</vlan-id>"), std::string::npos) << second;
}

TEST(Host, NothingIsCarriedFromOneRequestToTheNext) {
  Host host = make_host();
  const std::string before = host.read().data.print(Format::xml);
  const std::string refused = filter_of(
      kSub100 + "<vlan xmlns=\"http://openconfig.net/yang/vlan\"><config><vlan-id>5</vlan-id></config></vlan>" + kEnd);
  EXPECT_THROW(host.apply({refused, Format::xml, "request"}), Refused);
  EXPECT_EQ(host.read().data.print(Format::xml), before);
}

TEST(Host, RefusesAFileThatIsNoPlugin) {
  Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang"});
  EXPECT_THROW(host.load_plugin("/dev/null"), Unreadable);
  EXPECT_THROW(host.load_plugin("/nowhere.so"), Unreadable);
  EXPECT_THROW(host.load_plugin(OC_VLAN_YFW_FILE), Unreadable) << "a library, but no plug-in";
  EXPECT_THROW(host.read(), Unreadable) << "nothing can be asked without a plug-in";
}

}  // namespace
}  // namespace yfw
