// Actions that put on a tag whose id nobody says.
#include <gtest/gtest.h>

#include "models_of_tests.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

// Leaves of ingress-mapping/config.
constexpr char kPush[] = "<vlan-stack-action>PUSH</vlan-stack-action>";
constexpr char kSwap[] = "<vlan-stack-action>SWAP</vlan-stack-action>";
constexpr char kPop[] = "<vlan-stack-action>POP</vlan-stack-action>";
constexpr char kTpid[] = "<tpid>t:TPID_0X8100</tpid>";
constexpr char kId[] = "<vlan-id>5</vlan-id>";
constexpr char kNoId[] = "<vlan-id nc:operation='remove'/>";

// Of the native rewrite.
constexpr char kPush5[] = "<rewrite-type>push1</rewrite-type><outer-tag-value>5</outer-tag-value>";

struct Tag {
  const char* there;      // leaves of the native rewrite; null: there is no running configuration
  std::string config;     // asked for
  const char* warned_of;  // the action; null: nothing is told
};

std::vector<Tag> tags() {
  return {
      {"", kPush, "PUSH"},
      {"", kSwap, "SWAP"},
      {"", std::string(kPush) + kTpid, "PUSH"},
      {"", std::string(kPush) + kId, nullptr},
      {"", kPop, nullptr},
      {kPush5, kSwap, nullptr},
      {kPush5, kNoId, "PUSH"},
      {kPush5, kPop, nullptr},
      {"<rewrite-type>push1</rewrite-type>", kId, nullptr},
      {"<rewrite-type>push1</rewrite-type>", kTpid, "PUSH"},
      {nullptr, kPush, "PUSH"},
      {nullptr, kSwap, "SWAP"},
      {nullptr, std::string(kSwap) + kId, nullptr},
      {nullptr, kPop, nullptr},
      {nullptr, kId, nullptr},
  };
}

std::string told(const Tag& tested, const std::string& openconfig_dir) {
  return outcome_of([&] {
    Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang",
               .openconfig_dir = openconfig_dir,
               .layer = Layer::l2,
               .verify = Verify::off});
    host.load_plugin(OC_VLAN_PLUGIN_FILE);
    if (tested.there != nullptr) {
      const std::string running = fmt::format(
          "<interface-configurations xmlns=\"{}\"><interface-configuration><interface-name>Ethernet0/0/1.100"
          "</interface-name><l2-transport/><ethernet-service xmlns=\"http://vexnet.com/ns/yang/"
          "Vexnet-OS-l2-eth-infra-cfg\"><rewrite>{}</rewrite></ethernet-service></interface-configuration>"
          "</interface-configurations>",
          kNativeNs, tested.there);
      host.set_running({running, Format::xml, "running"});
    }
    const std::string request = on_vlan("<ingress-mapping><config>" + tested.config + "</config></ingress-mapping>");
    std::string text;
    for (const Warning& each : host.edit({request, Format::xml, "request"}).warnings) {
      if (each.message.find("without 'vlan-id'") != std::string::npos) text += each.path + ": " + each.message + "\n";
    }
    return text;
  });
}

TEST(Values, OfATagThatHasNoIdAreTold) {
  std::vector<std::string> folders{""};
  if (has_published_models()) folders.emplace_back(OC_VLAN_PUBLISHED_YANG);
  for (const std::string& folder : folders) {
    for (const Tag& tested : tags()) {
      const std::string expected =
          tested.warned_of == nullptr
              ? ""
              : fmt::format(
                    "{}/ingress-mapping/config/vlan-stack-action: {} without 'vlan-id': no id of the tag to put "
                    "on is written natively, and none reads back unless the device holds one already\n",
                    kVlanPath, tested.warned_of);
      EXPECT_EQ(told(tested, folder), expected)
          << "asked: " << tested.config << "\nthere: " << (tested.there == nullptr ? "unknown" : tested.there);
    }
  }
}

}  // namespace
}  // namespace yfw::test
