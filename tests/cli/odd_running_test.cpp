// Running configurations that a device should not have: read as far as they say anything, or refused with a reason.
#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

constexpr char kTop[] = "/Vexnet-OS-interface-cfg:interface-configurations";
constexpr char kNoName[] = ": left out: the name is none of an interface or sub-interface\n";

std::string running_of(const std::string& name) {
  return running(entry(name, access_port("7")));
}

std::string left_out(const std::string& name) {
  return "warning: " + std::string(kTop) + "/interface-configuration[interface-name='" + name + "']" + kNoName;
}

std::string port(const std::string& name, const std::string& type, const std::string& below) {
  const std::string quoted = "\"" + name + "\"";
  return "{\"openconfig-interfaces:interfaces\":{\"interface\":[{\"name\":" + quoted +
         ",\"config\":{\"name\":" + quoted + ",\"type\":\"iana-if-type:" + type + "\"},\"" + below +
         "\":{\"openconfig-vlan:switched-vlan\":{\"config\":{\"interface-mode\":\"ACCESS\",\"access-vlan\":7}}}}]}}";
}

// The warning about an access port that OpenConfig has no place for.
std::string unsaid(const std::string& name) {
  return "warning: " + std::string(kTop) + "/interface-configuration[interface-name='" + name +
         "']: OpenConfig does not say: vlan-trunk-configuration/vlan-switched/mode \"access\", "
         "vlan-trunk-configuration/vlan-switched/access-vlan \"7\"\n";
}

std::string ethernet(const std::string& name) {
  return port(name, "ethernetCsmacd", "openconfig-if-ethernet:ethernet");
}

struct OddRunning {
  std::string name;
  std::string running;
  int exit_code;
  std::string out;  // JSON without blanks
  std::string err;
};

class OddRunnings : public testing::TestWithParam<OddRunning> {};

TEST_P(OddRunnings, AreReadAsFarAsTheySayAnything) {
  const OddRunning& odd = GetParam();
  const Outcome outcome = run({"read", "--running", "-", "--format", "json"}, {.input = odd.running});
  std::string out = outcome.out;
  std::erase_if(out, [](char each) { return each == ' ' || each == '\n'; });
  EXPECT_EQ(outcome.exit_code, odd.exit_code) << outcome;
  EXPECT_EQ(out, odd.out);
  EXPECT_EQ(outcome.err, odd.err);
}

INSTANTIATE_TEST_SUITE_P(
    Names, OddRunnings,
    testing::Values(
        OddRunning{"Bundle", running_of("Bundle-Ether7"), 0,
                   port("Bundle-Ether7", "ieee8023adLag", "openconfig-if-aggregate:aggregation"), ""},
        OddRunning{"BundleInALongerName", running_of("MyBundle-Ether7x"), 0,
                   port("MyBundle-Ether7x", "ieee8023adLag", "openconfig-if-aggregate:aggregation"), ""},
        OddRunning{"NoDot", running_of("Ethernet7"), 0, ethernet("Ethernet7"), ""},
        OddRunning{"SingleQuote", running_of("Eth'7"), 0, ethernet("Eth'7"), ""},
        OddRunning{"DoubleQuote", running_of("Eth\"7"), 0, ethernet("Eth\\\"7"), ""},
        OddRunning{"BothQuotes", running_of("Eth'\"7"), 0, ethernet("Eth'\\\"7"), ""},
        OddRunning{"Brackets", running_of("Eth[7]/8"), 0, ethernet("Eth[7]/8"), ""},
        OddRunning{"ADotAndNoIndex", running_of("Ethernet7."), 0, "{}", left_out("Ethernet7.") + unsaid("Ethernet7.")},
        OddRunning{"ADotAndNoName", running_of(".7"), 0, "{}", left_out(".7") + unsaid(".7")},
        OddRunning{"APaddedIndex", running_of("Ethernet7.007"), 0, "{}",
                   left_out("Ethernet7.007") + unsaid("Ethernet7.007")},
        OddRunning{
            "VlansOfAPortBelowASubinterface", running_of("Ethernet7.5"), 0,
            "{\"openconfig-interfaces:interfaces\":{\"interface\":[{\"name\":\"Ethernet7\",\"config\":{\"name\":"
            "\"Ethernet7\",\"type\":\"iana-if-type:ethernetCsmacd\"},\"subinterfaces\":{\"subinterface\":[{"
            "\"index\":5,\"config\":{\"index\":5}}]}}]}}",
            "warning: " + std::string(kTop) +
                "/interface-configuration[interface-name='Ethernet7.5']/"
                "Vexnet-OS-l2-eth-infra-cfg:vlan-trunk-configuration: left out: a sub-interface switches no VLANs\n" +
                unsaid("Ethernet7.5")},
        OddRunning{"OnlyADot", running_of("."), 0, "{}", left_out(".") + unsaid(".")},
        OddRunning{"TwoDots", running(entry("Ethernet7", access_port("7")) + entry("Ethernet7.1.2", "")), 0,
                   ethernet("Ethernet7"),
                   "warning: /openconfig-interfaces:interfaces/interface[name='Ethernet7']/subinterfaces/"
                   "subinterface[index='1.2']: left out: 'subinterface' cannot be \"1.2\"\n"},
        OddRunning{"AnIndexThatIsNoNumber", running(entry("Ethernet7", access_port("7")) + entry("Ethernet7.x", "")), 0,
                   ethernet("Ethernet7"),
                   "warning: /openconfig-interfaces:interfaces/interface[name='Ethernet7']/subinterfaces/"
                   "subinterface[index='x']: left out: 'subinterface' cannot be \"x\"\n"}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Documents, OddRunnings,
    testing::Values(
        OddRunning{"OfAnotherModel", "<foo xmlns=\"urn:foo\"/>", 3, "",
                   "ocvlan: standard input: line 1: 'foo' is in the namespace \"urn:foo\", which no loaded model has "
                   "(/foo)\n"},
        OddRunning{
            "OfNothingButOtherModels", "<data><foo xmlns=\"urn:foo\"/></data>", 0, "{}",
            "warning: standard input: 1 subtree of models that are not loaded is carried along unread (urn:foo)\n"},
        OddRunning{"OfOpenConfig", interface(""), 3, "",
                   "ocvlan: standard input: 'openconfig-interfaces:interfaces' is not of the model "
                   "Vexnet-OS-interface-cfg\n"},
        OddRunning{"OfState", oper_access_port("7"), 3, "",
                   "ocvlan: standard input: line 1: 'vlan' is state (config false) and cannot be configured "
                   "(/Vexnet-OS-l2-eth-infra-oper:vlan)\n"},
        OddRunning{"NotValid", running(entry("Ethernet7", access_port("4095"))), 3, "",
                   "ocvlan: standard input: line 1: 'access-vlan' is \"4095\"; allowed: 1..4094 (" + std::string(kTop) +
                       "/interface-configuration[interface-name='Ethernet7']/Vexnet-OS-l2-eth-infra-cfg:"
                       "vlan-trunk-configuration/vlan-switched/access-vlan)\n"},
        OddRunning{"WithoutAName", running_of(""), 3, "",
                   "ocvlan: standard input: line 1: 'interface-name' is \"\"; allowed: a text of 1 or more "
                   "characters (" +
                       std::string(kTop) + "/interface-configuration[interface-name='']/interface-name)\n"},
        OddRunning{"AnEntryTwice", running(entry("Ethernet7", "") + entry("Ethernet7", "")), 3, "",
                   "ocvlan: standard input: line 1: the entry of 'interface-configuration' stands here twice (" +
                       std::string(kTop) + "/interface-configuration[interface-name='Ethernet7'])\n"}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace cli_test
