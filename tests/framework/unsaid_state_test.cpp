// What a read tells of operational data that it does not say: in which words, of which nodes, and for which filter.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "framework/state_device.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

constexpr char kCard[] = "/Vexnet-OS-l2-eth-infra-oper:vlan/nodes/node[node-id='0/0/CPU0']";

std::string leaf(const char* name, const std::string& value) {
  return fmt::format("<{0}>{1}</{0}>", name, value);
}

std::string range(const char* low, const char* high) {
  return leaf("vlan-range", leaf("vlan-id-low", low) + leaf("vlan-id-high", high));
}

std::string tag(const char* ethertype, const char* count, const std::string& ranges) {
  return leaf("tags-to-match", leaf("ethertype", ethertype) + leaf("number-of-ranges", count) + ranges);
}

std::string interface(const std::string& name, const std::string& details) {
  return leaf("interface", leaf("interface", name) + leaf("encapsulation-details", details));
}

std::string instance(const std::string& name, const std::string& details) {
  return interface(name, leaf("vlan-encapsulation", "service-instance") + leaf("service-instance-details", details));
}

std::string trunk(const std::string& name, const std::string& native_vlan, const std::string& switched) {
  return leaf("trunk",
              leaf("interface", name) + leaf("layer3-sub-interfaces", native_vlan) + leaf("vlan-switched", switched));
}

std::string lists(const std::string& trunks, const std::string& interfaces) {
  return leaf("trunks", trunks) + leaf("interfaces", interfaces);
}

// What is told of an entry.
struct Told {
  std::string list;  // trunk or interface
  std::string name;
  std::vector<std::pair<std::string, std::string>> settings;  // the path below the entry, and the value
};

std::string path_of(const Told& told) {
  return fmt::format("{}/{}s/{}[interface='{}']", kCard, told.list, told.list, told.name);
}

std::string records(const std::vector<Unsaid>& unsaid) {
  std::string text;
  for (const Unsaid& each : unsaid) text += fmt::format("{}: {} = {}\n", each.entry, each.path, each.value);
  return text;
}

std::string records(const std::vector<Told>& all) {
  std::vector<Unsaid> unsaid;
  for (const Told& told : all) {
    for (const auto& [path, value] : told.settings) {
      unsaid.push_back({told.name, fmt::format("{}/{}", path_of(told), path), value, Unsaid::Fate::stays, ""});
    }
  }
  return records(unsaid);
}

std::string warnings(const std::vector<Warning>& all) {
  std::string text;
  for (const Warning& each : all) {
    if (each.unsaid) text += fmt::format("{}: {}\n", each.path, each.message);
  }
  return text;
}

std::string warnings(const std::vector<Told>& all) {
  std::string text;
  for (const Told& told : all) {
    std::vector<std::string> settings;
    for (const auto& [path, value] : told.settings) settings.push_back(fmt::format("{} \"{}\"", path, value));
    text += fmt::format("{}: OpenConfig does not say: {}\n", path_of(told), fmt::join(settings, ", "));
  }
  return text;
}

struct StateCase {
  const char* name;
  std::string lists;
  std::vector<Told> told;
};

void PrintTo(const StateCase& param, std::ostream* stream) {
  *stream << param.name;
}

class UnsaidStateTest : public testing::TestWithParam<StateCase> {};

TEST_P(UnsaidStateTest, IsToldByLeafAndByEntry) {
  Device device("", false);
  const ReadResult result = device.read(on_node(GetParam().lists));
  EXPECT_EQ(records(result.unsaid), records(GetParam().told)) << result.data.print(Format::xml);
  EXPECT_EQ(warnings(result.warnings), warnings(GetParam().told));
  EXPECT_TRUE(result.misread.empty()) << "only configuration is written back";
  for (const Warning& each : result.warnings) {
    EXPECT_NE(device.notes.find(fmt::format("{}: {}\n", each.path, each.message)), std::string::npos) << device.notes;
  }
}

#define KIND "encapsulation-details/vlan-encapsulation"
#define TAG_1 "encapsulation-details/service-instance-details/tags-to-match[1]/"
#define TAG_2 "encapsulation-details/service-instance-details/tags-to-match[2]/"
#define POPPED "encapsulation-details/service-instance-details/tags-popped"
#define PUSHED "encapsulation-details/service-instance-details/pushe"
#define RANGES "vlan-switched/trunk-vlan-ranges/"

INSTANTIATE_TEST_SUITE_P(
    State, UnsaidStateTest,
    testing::ValuesIn<std::vector<StateCase>>({
        {"AllSaid",
         lists(trunk("E1", leaf("native-vlan", "5"), leaf("mode", "access-port") + leaf("access-vlan", "7")),
               instance("E1.2", tag("dot1q", "1", range("5", "9")) + leaf("tags-popped", "1"))),
         {}},
        {"NothingThere", lists(trunk("E1", "", ""), interface("E1.2", "")), {}},
        {"EndsOfAList",
         lists("", instance("E1.2", tag("dot1q", "2", range("5", "5") + range("7", "9")))),
         {{"interface",
           "E1.2",
           {{TAG_1 "vlan-range[1]/vlan-id-high", "5"}, {TAG_1 "vlan-range[2]/vlan-id-high", "9"}}}}},
        {"CountBesideAList",
         lists("", instance("E1.2", tag("dot1ad", "2", range("5", "5") + range("7", "7")) +
                                        tag("dot1q", "1", range("3", "3")))),
         {{"interface",
           "E1.2",
           {{TAG_1 "vlan-range[1]/vlan-id-high", "5"},
            {TAG_1 "vlan-range[2]/vlan-id-high", "7"},
            {TAG_2 "number-of-ranges", "1"},
            {TAG_2 "vlan-range[1]/vlan-id-high", "3"}}}}},
        {"LoneProviderTag",
         lists("", instance("E1.2", tag("dot1ad", "1", range("5", "5")))),
         {{"interface",
           "E1.2",
           {{KIND, "service-instance"},
            {TAG_1 "ethertype", "dot1ad"},
            {TAG_1 "number-of-ranges", "1"},
            {TAG_1 "vlan-range[1]/vlan-id-low", "5"},
            {TAG_1 "vlan-range[1]/vlan-id-high", "5"}}}}},
        {"AnotherKind",
         lists("", interface("E1.2", leaf("vlan-encapsulation", "a&lt;b"))),
         {{"interface", "E1.2", {{KIND, "a<b"}}}}},
        {"WhatTheKindDoesNotCount",
         lists("", interface("E1.2", leaf("vlan-encapsulation", "dot1q") + leaf("tag", "5") +
                                         leaf("dot1ad-dot1q-stack", leaf("outer-tag", "6")))),
         {{"interface", "E1.2", {{"encapsulation-details/dot1ad-dot1q-stack/outer-tag", "6"}}}}},
        {"OfAMainInterface",
         lists("", interface("E1", leaf("vlan-encapsulation", "dot1q") + leaf("tag", "5"))),
         {{"interface", "E1", {{KIND, "dot1q"}, {"encapsulation-details/tag", "5"}}}}},
        {"TwoPopped",
         lists("", instance("E1.2", leaf("tags-popped", "2"))),
         {{"interface", "E1.2", {{KIND, "service-instance"}, {POPPED, "2"}}}}},
        {"TwoPushed",
         lists("", instance("E1.2", leaf("tags-popped", "1") + leaf("pushe", leaf("vlan-id", "5")) +
                                        leaf("pushe", leaf("vlan-id", "6")))),
         {{"interface",
           "E1.2",
           {{KIND, "service-instance"}, {POPPED, "1"}, {PUSHED "[1]/vlan-id", "5"}, {PUSHED "[2]/vlan-id", "6"}}}}},
        {"AnotherMode",
         lists(trunk("E1", leaf("native-vlan", "5"), leaf("mode", "tunnel-port") + leaf("access-vlan", "7")), ""),
         {{"trunk", "E1", {{"vlan-switched/mode", "tunnel-port"}, {"vlan-switched/access-vlan", "7"}}}}},
        {"ModeWithoutItsVlan",
         lists(trunk("E1", leaf("native-vlan", "4095"), leaf("mode", "access-port")), ""),
         {{"trunk", "E1", {{"layer3-sub-interfaces/native-vlan", "4095"}, {"vlan-switched/mode", "access-port"}}}}},
        {"SecondTagOfATrunk",
         lists(trunk("E1", "",
                     leaf("mode", "trunk-port") +
                         leaf("trunk-vlan-ranges", leaf("tags-to-match", leaf("ethertype", "dot1q") + range("5", "9")) +
                                                       leaf("tags-to-match", range("6", "6")))),
               ""),
         {{"trunk",
           "E1",
           {{RANGES "tags-to-match[2]/vlan-range[1]/vlan-id-low", "6"},
            {RANGES "tags-to-match[2]/vlan-range[1]/vlan-id-high", "6"}}}}},
        {"OneNameInBothLists",
         lists(trunk("E2", "", leaf("mode", "x")), interface("E2", leaf("vlan-encapsulation", "y"))),
         {{"trunk", "E2", {{"vlan-switched/mode", "x"}}}, {"interface", "E2", {{KIND, "y"}}}}},
        // Alike but for what makes an entry none, or an id none.
        {"NamesOfOneShape",
         lists("", interface("E1.2", leaf("vlan-encapsulation", "dot1q") + leaf("tag", "5")) +
                       interface("E1.2.3", leaf("vlan-encapsulation", "dot1q") + leaf("tag", "5")) +
                       interface("E1.4294967296", leaf("vlan-encapsulation", "dot1q") + leaf("tag", "5")) +
                       interface("E1.3", leaf("vlan-encapsulation", "dot1q") + leaf("tag", "5"))),
         {{"interface", "E1.2.3", {{KIND, "dot1q"}, {"encapsulation-details/tag", "5"}}},
          {"interface", "E1.4294967296", {{KIND, "dot1q"}, {"encapsulation-details/tag", "5"}}}}},
        {"NoIds",
         lists("", interface("E1.1", leaf("vlan-encapsulation", "dot1q") + leaf("tag", "4094")) +
                       interface("E1.2", leaf("vlan-encapsulation", "dot1q") + leaf("tag", "4095")) +
                       interface("E1.3", leaf("vlan-encapsulation", "dot1q") + leaf("tag", "4097"))),
         {{"interface", "E1.2", {{KIND, "dot1q"}, {"encapsulation-details/tag", "4095"}}},
          {"interface", "E1.3", {{KIND, "dot1q"}, {"encapsulation-details/tag", "4097"}}}}},
    }),
    [](const auto& tested) { return tested.param.name; });

// Entries with something unsaid in each container: a main interface, a sub-interface of it, and one of another.
std::string filtered_lists() {
  return lists(trunk("E1", leaf("native-vlan", "4095"), leaf("mode", "x")) + trunk("E2", "", leaf("mode", "y")),
               interface("E1.2", leaf("vlan-encapsulation", "a")) + interface("E2.2", leaf("vlan-encapsulation", "b")));
}

struct ScopeCase {
  const char* name;
  std::string filter;
  std::vector<std::string> values;  // of what is told
};

void PrintTo(const ScopeCase& param, std::ostream* stream) {
  *stream << param.name;
}

class UnsaidStateScopeTest : public testing::TestWithParam<ScopeCase> {};

TEST_P(UnsaidStateScopeTest, IsWhatTheFilterAsksFor) {
  Device device("", false);
  const std::string dump = on_node(filtered_lists());
  const ReadResult result =
      device.host.read_state({dump, Format::xml, "dump"}, {GetParam().filter, Format::xml, "filter"});
  std::vector<std::string> values;
  for (const Unsaid& each : result.unsaid) {
    values.push_back(each.value);
    EXPECT_NE(warnings(result.warnings).find(fmt::format("\"{}\"", each.value)), std::string::npos) << each.path;
  }
  EXPECT_EQ(values, GetParam().values) << warnings(result.warnings);
}

#define SUBINTERFACES "/interfaces/interface/subinterfaces/subinterface"

INSTANTIATE_TEST_SUITE_P(
    State, UnsaidStateScopeTest,
    testing::ValuesIn<std::vector<ScopeCase>>({
        {"Everything", "", {"4095", "x", "y", "a", "b"}},
        {"AllInterfaces", "/interfaces", {"4095", "x", "y", "a", "b"}},
        {"OneInterface", "/interfaces/interface[name='E1']", {"4095", "x", "a"}},
        {"OneSubinterface", "/interfaces/interface[name='E1']/subinterfaces/subinterface[index='2']", {"a"}},
        {"SubinterfacesOfOneIndex", SUBINTERFACES "[index='2']", {"a", "b"}},
        {"NativeVlans", "/interfaces/interface/ethernet/switched-vlan/state/native-vlan", {"4095"}},
        {"AccessVlans", "/interfaces/interface/ethernet/switched-vlan/state/access-vlan", {"x", "y"}},
        {"Matches", SUBINTERFACES "/vlan/match", {"a", "b"}},
        {"Configuration", SUBINTERFACES "/vlan/match/single-tagged/config", {}},
        {"Names", "/interfaces/interface/config/name", {}},
        {"AnotherInterface", "/interfaces/interface[name='E3']", {}},
    }),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace yfw::test
