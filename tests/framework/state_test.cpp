// Operational dumps as OpenConfig state: generated ones against a second opinion, and bad ones.
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <set>

#include "framework/oper_dump.h"
#include "framework/state_device.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

// VLAN leaves in `side` containers ("config" or "state"), written as the second opinion writes them.
Leaves leaves_of(const Data& data, std::string_view side) {
  Leaves leaves;
  const lyd_node* root = nullptr;
  LY_LIST_FOR(data.get(), root) {
    lyd_node* node = nullptr;
    LYD_TREE_DFS_BEGIN(root, node) {
      const lyd_node* const parent = lyd_parent(node);
      const bool leaf = (node->schema->nodetype & LYD_NODE_TERM) != 0 && parent != nullptr && side == LYD_NAME(parent);
      if (leaf && std::string_view(node->schema->module->name) == "openconfig-vlan") {
        std::string name;
        std::string index;
        std::string where;
        for (const lyd_node* above = lyd_parent(parent); above != nullptr; above = lyd_parent(above)) {
          const std::string_view tag = LYD_NAME(above);
          if (tag == "interface") {
            name = lyd_get_value(lyd_child(above));
          } else if (tag == "subinterface") {
            index = lyd_get_value(lyd_child(above));
          } else if (tag != "interfaces" && tag != "subinterfaces" && tag != "vlan" && tag != "switched-vlan") {
            where = where.empty() ? std::string(tag) : fmt::format("{}/{}", tag, where);
          }
        }
        const std::string_view value = lyd_get_value(node);
        const std::size_t colon = value.find(':');
        const std::string_view plain = colon == std::string_view::npos ? value : value.substr(colon + 1);
        leaves.insert(fmt::format("{}|{}|{}|{}={}", name, index, where, LYD_NAME(node), plain));
      }
      LYD_TREE_DFS_END(root, node);
    }
  }
  return leaves;
}

std::string shown(const Leaves& leaves) {
  return fmt::format("{}\n", fmt::join(leaves, "\n"));
}

struct DeviceCase {
  const char* name;
  bool published;
  bool with_running;
};

void PrintTo(const DeviceCase& param, std::ostream* stream) {
  *stream << param.name;
}

class GeneratedDumps : public testing::TestWithParam<DeviceCase> {};

TEST_P(GeneratedDumps, BecomeTheStateThatTheyTell) {
  if (GetParam().published && !has_published_models()) GTEST_SKIP() << "no published modules";
  Device device(GetParam().published ? OC_VLAN_PUBLISHED_YANG : "", GetParam().with_running);
  const Leaves configured = leaves_of(device.host.read().data, "config");
  EXPECT_EQ(configured.empty(), !GetParam().with_running);
  constexpr std::uint64_t kDumps = 100;
  std::size_t leaves = 0;
  for (std::uint64_t seed = first_seed(); seed < first_seed() + kDumps; ++seed) {
    const OperDump dump = generate_dump(seed);
    const Opinion opinion = opinion_of(dump);
    for (const std::string& text : {xml_of(dump), json_of(dump)}) {
      const ReadResult result = device.read(text);
      const std::string context = fmt::format("OC_VLAN_SEED={} repeats this\n{}\nwarnings:\n{}notes:\n{}", seed, text,
                                              told(result.warnings), device.notes);
      ASSERT_EQ(shown(leaves_of(result.data, "state")), shown(opinion.state)) << context;
      ASSERT_EQ(shown(leaves_of(result.data, "config")), shown(configured)) << "configuration moved\n" << context;
      const auto of_state = [](const Warning& warning) { return !warning.unsaid; };
      ASSERT_EQ(std::any_of(result.warnings.begin(), result.warnings.end(), of_state), opinion.warned) << context;
      const bool noted = device.notes.find("no entry of its list is current") != std::string::npos;
      ASSERT_EQ(noted, opinion.homeless) << "state of a main interface has no place, and the trace says so\n"
                                         << context;
      for (const Warning& warning : result.warnings) {
        ASSERT_NE(device.notes.find(warning.path + ": " + warning.message), std::string::npos) << context;
      }
    }
    leaves += opinion.state.size();
  }
  EXPECT_GT(leaves, kDumps) << "dumps that tell nothing test nothing";
}

INSTANTIATE_TEST_SUITE_P(State, GeneratedDumps,
                         testing::Values(DeviceCase{"Compact", false, false}, DeviceCase{"CompactRunning", false, true},
                                         DeviceCase{"Published", true, false},
                                         DeviceCase{"PublishedRunning", true, true}),
                         [](const auto& tested) { return tested.param.name; });

std::string tagged(const std::string& name, const std::string& vlan) {
  return fmt::format(
      "<interface><interface>{}</interface><encapsulation-details><vlan-encapsulation>dot1q</vlan-encapsulation>"
      "<tag>{}</tag></encapsulation-details></interface>",
      name, vlan);
}

struct BadDump {
  const char* name;
  std::string text;
  Leaves state;         // what is told all the same
  std::string warning;  // part of a warning; empty for none at all
};

void PrintTo(const BadDump& param, std::ostream* stream) {
  *stream << param.name;
}

class BadDumps : public testing::TestWithParam<BadDump> {};

TEST_P(BadDumps, TellWhatTheyCanAndNothingElse) {
  Device device("", false);
  const ReadResult result = device.read(GetParam().text);
  EXPECT_EQ(shown(leaves_of(result.data, "state")), shown(GetParam().state)) << result.data.print(Format::xml);
  const std::string warnings = told(result.warnings);
  EXPECT_EQ(warnings.empty(), GetParam().warning.empty()) << warnings;
  EXPECT_NE(warnings.find(GetParam().warning), std::string::npos) << warnings;
  for (const Warning& warning : result.warnings) {
    EXPECT_NE(device.notes.find(warning.message), std::string::npos) << "not in the trace: " << warning.message;
  }
}

const std::string kOther = tagged("E1.2", "9");
const Leaves kOtherState{"E1|2|match/single-tagged|vlan-id=9"};
constexpr char kMainIsUnsaid[] =
    "[interface='E1']: OpenConfig does not say: encapsulation-details/vlan-encapsulation \"dot1q\", "
    "encapsulation-details/tag \"8\"";

INSTANTIATE_TEST_SUITE_P(
    State, BadDumps,
    testing::ValuesIn<std::vector<BadDump>>({
        {"MissingKey",
         on_node("<interfaces><interface><encapsulation-details><tag>5</tag></encapsulation-details>"
                 "</interface>" +
                 kOther + "</interfaces>"),
         kOtherState, "no key 'interface'"},
        {"MissingNodeId",
         std::string(kHead) + "<nodes><node><interfaces>" + kOther + "</interfaces></node></nodes></vlan>",
         {},
         "no key 'node-id'"},
        {"EntryTwice", on_node("<interfaces>" + kOther + tagged("E1.2", "8") + "</interfaces>"), kOtherState,
         "stands here twice"},
        {"MainInterface", on_node("<interfaces>" + kOther + tagged("E1", "8") + "</interfaces>"), kOtherState,
         kMainIsUnsaid},
        {"MainInterfaceFirst", on_node("<interfaces>" + tagged("E1", "8") + kOther + "</interfaces>"), kOtherState,
         kMainIsUnsaid},
        {"DotAtTheEnd", on_node("<interfaces>" + kOther + tagged("E1.", "8") + tagged("E3.", "7") + "</interfaces>"),
         kOtherState, "[interface='E3.']: OpenConfig does not say"},
        {"TwoDots", on_node("<interfaces>" + kOther + tagged("E1.2.3", "8") + "</interfaces>"), kOtherState,
         "interface[name='E1']/subinterfaces/subinterface[index='2.3']"},
        {"EmptyNames",
         on_node("<trunks><trunk><interface/><vlan-switched><mode>access-port</mode><access-vlan>7</access-vlan>"
                 "</vlan-switched></trunk></trunks><interfaces>" +
                 tagged("", "8") + kOther + "</interfaces>"),
         kOtherState, "has no key"},
        {"OutOfRange", on_node("<interfaces>" + kOther + tagged("E1.3", "4095") + "</interfaces>"), kOtherState,
         "4095"},
        {"NoNumber", on_node("<interfaces>" + kOther + tagged("E1.3", "many") + "</interfaces>"), kOtherState, "many"},
        {"UnknownElement", on_node("<fans/><interfaces>" + kOther + "</interfaces>"), kOtherState, "fans"},
        {"NoNodes", std::string(kHead) + "<nodes/></vlan>", {}, ""},
        {"NoEntries", on_node("<interfaces/><trunks/>"), {}, ""},
        {"UnknownEthertypeOfAPush",
         on_node("<interfaces><interface><interface>E1.2</interface><encapsulation-details>"
                 "<vlan-encapsulation>service-instance</vlan-encapsulation><service-instance-details>"
                 "<tags-popped>0</tags-popped><pushe><vlan-id>5</vlan-id><ethertype>dot1x</ethertype></pushe>"
                 "</service-instance-details></encapsulation-details></interface></interfaces>"),
         {"E1|2|ingress-mapping|vlan-id=5", "E1|2|ingress-mapping|vlan-stack-action=PUSH"},
         "'tpid' was given no value"},
    }),
    [](const auto& tested) { return tested.param.name; });

struct UnreadableDump {
  const char* name;
  std::string text;
};

void PrintTo(const UnreadableDump& param, std::ostream* stream) {
  *stream << param.name;
}

class UnreadableDumps : public testing::TestWithParam<UnreadableDump> {};

TEST_P(UnreadableDumps, AreRefusedWholeAndTheHostGoesOn) {
  Device device("", false);
  EXPECT_THROW(device.read(GetParam().text), Unreadable);
  EXPECT_EQ(leaves_of(device.read(on_node("<interfaces>" + kOther + "</interfaces>")).data, "state"), kOtherState);
}

const std::string kWhole = on_node("<interfaces>" + kOther + "</interfaces>");

INSTANTIATE_TEST_SUITE_P(State, UnreadableDumps,
                         testing::ValuesIn<std::vector<UnreadableDump>>({
                             {"Empty", ""},
                             {"Blanks", " \n"},
                             {"Truncated", kWhole.substr(0, kWhole.size() / 2)},
                             {"TruncatedInTheLastTag", kWhole.substr(0, kWhole.size() - 1)},
                             {"OfAnotherModel", running_text()},
                             {"TruncatedJson", R"({"Vexnet-OS-l2-eth-infra-oper:vlan": {"nodes": )"},
                         }),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace yfw::test
