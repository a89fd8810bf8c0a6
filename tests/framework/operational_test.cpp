// Operational data of devices with several cards, and of names of any length.
#include "framework/read/operational.h"

#include <gtest/gtest.h>

#include "models_of_tests.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

std::string node(const std::string& id, const std::string& inside) {
  return fmt::format("<node><node-id>{}</node-id>{}</node>", id, inside);
}

std::string tagged(const std::string& name, const std::string& vlan) {
  return fmt::format(
      "<interfaces><interface><interface>{}</interface><encapsulation-details><vlan-encapsulation>dot1q"
      "</vlan-encapsulation><tag>{}</tag></encapsulation-details></interface></interfaces>",
      name, vlan);
}

std::string stacked(const std::string& name) {
  return fmt::format(
      "<interfaces><interface><interface>{}</interface><encapsulation-details><vlan-encapsulation>dot1ad-dot1q"
      "</vlan-encapsulation><dot1ad-dot1q-stack><outer-tag>1</outer-tag><second-tag>2</second-tag>"
      "</dot1ad-dot1q-stack></encapsulation-details></interface></interfaces>",
      name);
}

std::string port(const std::string& name, const std::string& vlan) {
  return fmt::format(
      "<trunks><trunk><interface>{}</interface><vlan-switched><mode>access-port</mode><access-vlan>{}</access-vlan>"
      "</vlan-switched></trunk></trunks>",
      name, vlan);
}

struct Answer {
  std::string text;
  std::vector<Warning> warnings;
};

Answer read(const std::string& nodes, const std::string& filter = "") {
  Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang"});
  host.load_plugin(OC_VLAN_PLUGIN_FILE);
  const std::string dump = fmt::format("<vlan xmlns=\"{}\"><nodes>{}</nodes></vlan>", kOperNs, nodes);
  const ReadResult result = host.read_state({dump, Format::xml, "dump"}, {filter, Format::xml, "filter"});
  return {result.data.print(Format::xml), result.warnings};
}

struct Cards {
  const char* name;
  std::string nodes;
  std::string same_as;                // the one card that would be answered in the same way
  std::vector<std::string> warnings;  // what they say, in order
};

std::vector<Cards> cards() {
  const std::string a = node("A", tagged("E1.2", "5"));
  const std::string b = node("B", tagged("E1.2", "6"));
  return {
      {"different interfaces",
       node("A", tagged("E1.2", "5")) + node("B", port("E1", "7")),
       node("A", tagged("E1.2", "5") + port("E1", "7")),
       {}},
      {"the same", a + node("B", tagged("E1.2", "5")), a, {}},
      {"two sub-interfaces", a + b, b, {"not used: the nodes A and B tell of E1.2 differently, and the latter counts"}},
      {"the other way round",
       b + a,
       a,
       {"not used: the nodes B and A tell of E1.2 differently, and the latter counts"}},
      {"another form of match",
       a + node("B", stacked("E1.2")),
       node("B", stacked("E1.2")),
       {"not used: the nodes A and B tell of E1.2 differently, and the latter counts"}},
      {"three",
       a + b + node("C", tagged("E1.2", "5")),
       a,
       {"not used: the nodes B and C tell of E1.2 differently, and the latter counts"}},
      {"two ports",
       node("A", port("E1", "7")) + node("B", port("E1", "8")),
       node("B", port("E1", "8")),
       {"not used: the nodes A and B tell of E1 differently, and the latter counts"}},
  };
}

TEST(Operational, IsOneCardsWordForEachInterface) {
  for (const Cards& tested : cards()) {
    const Answer result = read(tested.nodes);
    EXPECT_EQ(result.text, read(tested.same_as).text) << tested.name;
    std::vector<std::string> told;
    for (const Warning& each : result.warnings) {
      told.push_back(each.message);
      EXPECT_NE(each.path.find("/nodes/node[node-id='"), std::string::npos) << each.path;
    }
    EXPECT_EQ(told, tested.warnings) << tested.name;
  }
}

TEST(Operational, IsContradictedOnlyWhereSomebodyAsks) {
  const std::string nodes = node("A", tagged("E1.2", "5")) + node("B", tagged("E1.2", "6")) +
                            node("C", tagged("E2.2", "5")) + node("D", tagged("E2.2", "6"));
  EXPECT_EQ(read(nodes).warnings.size(), 2U);
  const Answer one = read(nodes, "/interfaces/interface[name='E2']");
  ASSERT_EQ(one.warnings.size(), 1U);
  EXPECT_NE(one.warnings.front().message.find("C and D tell of E2.2"), std::string::npos);
  EXPECT_TRUE(read(nodes, "/interfaces/interface[name='E3']").warnings.empty());
}

TEST(Operational, IsToldUnderNamesOfAnyLength) {
  for (const std::size_t length : {1U, 254U, 255U, 256U, 257U, 4000U}) {
    const std::string name(length, 'E');
    const Answer result = read(node("A", tagged(name + ".2", "5") + port(name, "7")));
    const std::string& text = result.text;
    EXPECT_NE(text.find("<name>" + name + "</name>"), std::string::npos) << length;
    EXPECT_NE(text.find("<index>2</index>"), std::string::npos) << length;
    EXPECT_NE(text.find("<vlan-id>5</vlan-id>"), std::string::npos) << length;
    EXPECT_NE(text.find("<access-vlan>7</access-vlan>"), std::string::npos) << length;
    EXPECT_TRUE(result.warnings.empty()) << result.warnings.front().message;
  }
}

}  // namespace
}  // namespace yfw::test
