// Reads of a part: each leaf can be asked for alone, and what nobody maps selects nothing.
#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

constexpr char kPort[] = "/interfaces/interface[name='Ethernet0/0/1']/ethernet/switched-vlan/config";

std::string device() {
  const std::string trunk =
      "<native-vlan-identifier><vlan-type>vlan-type-dot1q</vlan-type><vlan-identifier>5</vlan-identifier>"
      "</native-vlan-identifier><vlan-switched><mode>trunk</mode><trunk-tag-type>vlan-type-dot1q</trunk-tag-type>"
      "<trunk-vla-ns>10,20-30</trunk-vla-ns></vlan-switched>";
  return running(entry("Ethernet0/0/1", trunk_configuration(trunk)) +
                 entry("Ethernet0/0/1.100", encapsulation("<outer-range1-low>100</outer-range1-low>")) +
                 entry("Bundle-Ether5", access_port("7")));
}

std::string on_port(const std::string& inside) {
  return "{\"openconfig-interfaces:interfaces\":{\"interface\":[{\"name\":\"Ethernet0/0/1\"," + inside + "}]}}";
}

// An entry whose key matches is there, also when nothing else that is asked for is.
constexpr char kOnlyTheKey[] = R"({"openconfig-interfaces:interfaces":{"interface":[{"name":"Ethernet0/0/1"}]}})";

std::string of_port(const std::string& config) {
  return on_port("\"openconfig-if-ethernet:ethernet\":{\"openconfig-vlan:switched-vlan\":{\"config\":{" + config +
                 "}}}");
}

struct Selection {
  std::string name;
  std::vector<std::string> arguments;  // beside those of the device
  std::string input;
  std::string out;  // JSON without blanks
  std::string err = {};
};

class Selections : public testing::TestWithParam<Selection> {};

TEST_P(Selections, AnswerWhatIsAskedAndNoMore) {
  const Selection& selection = GetParam();
  const Folder folder;
  std::vector<std::string> arguments{"read", "--running", folder.file("running", device()), "--format", "json"};
  arguments.insert(arguments.end(), selection.arguments.begin(), selection.arguments.end());
  const Outcome outcome = run(arguments, {.input = selection.input});
  std::string out = outcome.out;
  std::erase_if(out, [](char each) { return each == ' ' || each == '\n'; });
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(out, selection.out);
  EXPECT_EQ(outcome.err, selection.err);
}

Selection by_path(const std::string& name, const std::string& path, const std::string& out,
                  const std::string& err = "") {
  return {name, {"--path", path}, "", out, err};
}

std::string pruned(const std::string& path) {
  return "warning: /openconfig-interfaces:interfaces/interface/" + path + ": not mapped, left out of the filter\n";
}

INSTANTIATE_TEST_SUITE_P(
    Leaves, Selections,
    testing::Values(by_path("Mode", std::string(kPort) + "/interface-mode", of_port("\"interface-mode\":\"TRUNK\"")),
                    by_path("NativeVlan", std::string(kPort) + "/native-vlan", of_port("\"native-vlan\":5")),
                    by_path("TrunkVlans", std::string(kPort) + "/trunk-vlans",
                            of_port("\"trunk-vlans\":[10,\"20..30\"]")),
                    by_path("AccessVlanOfATrunk", std::string(kPort) + "/access-vlan", kOnlyTheKey),
                    by_path("OnlyOneKindOfPort", "/interfaces/interface/aggregation/switched-vlan/config/access-vlan",
                            "{\"openconfig-interfaces:interfaces\":{\"interface\":[{\"name\":\"Bundle-Ether5\","
                            "\"openconfig-if-aggregate:aggregation\":{\"openconfig-vlan:switched-vlan\":{\"config\":{"
                            "\"access-vlan\":7}}}}]}}"),
                    by_path("Names", "/interfaces/interface/name",
                            "{\"openconfig-interfaces:interfaces\":{\"interface\":[{\"name\":\"Ethernet0/0/1\"},"
                            "{\"name\":\"Bundle-Ether5\"}]}}"),
                    by_path("Indexes", "/interfaces/interface/subinterfaces/subinterface/index",
                            on_port("\"subinterfaces\":{\"subinterface\":[{\"index\":100}]}")),
                    by_path("Types", "/interfaces/interface[name='Ethernet0/0/1']/config/type",
                            on_port("\"config\":{\"type\":\"iana-if-type:ethernetCsmacd\"}"))),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Unmapped, Selections,
    testing::Values(
        by_path(
            "LeafOfASubinterface",
            "/interfaces/interface[name='Ethernet0/0/1']/subinterfaces/subinterface[index='100']/vlan/config/vlan-id",
            "{}", pruned("subinterfaces/subinterface/openconfig-vlan:vlan/config/vlan-id")),
        by_path("LeafOfAnInterface", "/interfaces/interface[name='Ethernet0/0/1']/config/tpid", "{}",
                pruned("config/openconfig-vlan:tpid")),
        Selection{"BesideWhatIsMapped",
                  {"-"},
                  interface("<ethernet xmlns=\"http://openconfig.net/yang/interfaces/ethernet\"><switched-vlan "
                            "xmlns=\"http://openconfig.net/yang/vlan\"><config><native-vlan/></config></switched-vlan>"
                            "</ethernet><config><tpid xmlns=\"http://openconfig.net/yang/vlan\"/></config>"),
                  of_port("\"native-vlan\":5"),
                  pruned("config/openconfig-vlan:tpid")}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    ContentMatches, Selections,
    testing::Values(
        Selection{"TakeWhatStandsBeside",
                  {"-"},
                  switched("<interface-mode>TRUNK</interface-mode>"),
                  of_port("\"interface-mode\":\"TRUNK\",\"native-vlan\":5,\"trunk-vlans\":[10,\"20..30\"]")},
        Selection{"OfAnEntryTakeWhatStandsBeside",
                  {"-"},
                  switched("<trunk-vlans>20..30</trunk-vlans>"),
                  of_port("\"interface-mode\":\"TRUNK\",\"native-vlan\":5,\"trunk-vlans\":[10,\"20..30\"]")},
        Selection{"ThatFailTakeNothing", {"-"}, switched("<interface-mode>ACCESS</interface-mode>"), kOnlyTheKey}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace cli_test
