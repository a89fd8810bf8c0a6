// An edit of several interfaces and the same edits one by one: what comes of one interface has nothing to do with the
// others, and what the whole is refused for is what it would have met first.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "framework/native_entries.h"
#include "yfw-host/host.h"

namespace yfw {
namespace {

using namespace test;  // NOLINT(google-build-using-namespace)

constexpr char kOcNs[] = "http://openconfig.net/yang/interfaces";
constexpr char kOcVlanNs[] = "http://openconfig.net/yang/vlan";

// What is asked of one interface, in its sub-interface 100.
struct Part {
  const char* name;
  const char* operation;  // of the vlan element
  const char* inside;
  int phase;  // in which it is refused, in their order; 0: it is not
};

constexpr Part kParts[] = {
    {"another id", "merge", "<match><single-tagged><config><vlan-id>7</vlan-id></config></single-tagged></match>", 0},
    {"a form in place of another", "merge",
     "<match nc:operation=\"replace\"><double-tagged><config><inner-vlan-id>2</inner-vlan-id><outer-vlan-id>3"
     "</outer-vlan-id></config></double-tagged></match>",
     0},
    {"nothing any more", "remove", "", 0},
    {"half of a tag", "merge",
     "<match nc:operation=\"replace\"><double-tagged><config><outer-vlan-id>3</outer-vlan-id></config></double-tagged>"
     "</match>",
     0},
    {"what is not there goes", "merge", "<match><double-tagged nc:operation=\"delete\"/></match>", 1},
    {"upside down", "merge",
     "<match nc:operation=\"replace\"><single-tagged-range><config><low-vlan-id>9</low-vlan-id><high-vlan-id>3"
     "</high-vlan-id></config></single-tagged-range></match>",
     2},
    {"a tag type of nobody", "merge",
     "<ingress-mapping><config><vlan-stack-action>SWAP</vlan-stack-action><tpid xmlns:t=\"urn:none\">NONE</tpid>"
     "</config></ingress-mapping>",
     3},
};
constexpr std::size_t kCount = std::size(kParts);

std::string port(std::size_t i) {
  return fmt::format("Ethernet0/0/{}", i);
}

std::string interface_of(std::size_t at, const Part& part) {
  return fmt::format(
      "<interface><name>{}</name><subinterfaces><subinterface><index>100</index><vlan xmlns=\"{}\" "
      "nc:operation=\"{}\">{}</vlan></subinterface></subinterfaces></interface>",
      port(at), kOcVlanNs, part.operation, part.inside);
}

std::string request_of(const std::string& interfaces) {
  return fmt::format("<interfaces xmlns=\"{}\" xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\">{}</interfaces>",
                     kOcNs, interfaces);
}

std::string device() {
  std::string text = fmt::format("<interface-configurations xmlns=\"{}\">", kVexnetNs);
  for (std::size_t i = 0; i < 3; ++i) {
    text += fmt::format(
        "<interface-configuration><interface-name>{}.100</interface-name><l2-transport/>{}</interface-configuration>",
        port(i),
        encapsulation({{"outer-tag-type", "match-dot1q"}, {"outer-range1-low", "5"}}, {{"rewrite-type", "pop2"}}));
  }
  return text + "</interface-configurations>";
}

struct Told {
  std::vector<std::string> warnings;
  std::vector<std::string> differences;
  std::vector<std::string> unsaid;
  std::string running;
  std::optional<RpcError> refusal;
};

void tell(Host& host, const std::string& request, Told& told) {
  try {
    const EditResult result = host.apply({request, Format::xml, "request"});
    for (const Warning& each : result.warnings) told.warnings.push_back(each.path + ": " + each.message);
    for (const Difference& each : result.differences) told.differences.push_back(each.path + " " + each.asked);
    for (const Unsaid& each : result.unsaid) told.unsaid.push_back(each.path + " " + each.value);
  } catch (const Refused& refused) {
    if (!told.refusal.has_value()) told.refusal = refused.error();
  }
  told.running = host.print_running(Format::xml);
}

Host new_host() {
  Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang"});
  host.load_plugin(OC_VLAN_PLUGIN_FILE);
  const std::string running = device();
  host.set_running({running, Format::xml, "running"});
  return host;
}

TEST(EditParts, HaveNothingToDoWithEachOther) {
  for (std::size_t i = 0; i < kCount * kCount * kCount; ++i) {
    const Part* const parts[] = {&kParts[i % kCount], &kParts[i / kCount % kCount], &kParts[i / kCount / kCount]};
    const std::string what = fmt::format("{}; {}; {}", parts[0]->name, parts[1]->name, parts[2]->name);
    std::string interfaces;
    Told alone;
    Host one_by_one = new_host();
    std::vector<std::optional<RpcError>> refusals;
    for (std::size_t at = 0; at < 3; ++at) {
      const std::string interface = interface_of(at, *parts[at]);
      interfaces += interface;
      Told told;
      tell(one_by_one, request_of(interface), told);
      refusals.push_back(told.refusal);
      ASSERT_EQ(told.refusal.has_value(), parts[at]->phase != 0) << parts[at]->name << " alone";
      alone.warnings.insert(alone.warnings.end(), told.warnings.begin(), told.warnings.end());
      alone.differences.insert(alone.differences.end(), told.differences.begin(), told.differences.end());
      alone.unsaid.insert(alone.unsaid.end(), told.unsaid.begin(), told.unsaid.end());
      alone.running = told.running;
    }
    Host together = new_host();
    const std::string untouched = together.print_running(Format::xml);
    Told whole;
    tell(together, request_of(interfaces), whole);

    // The earliest phase counts, and in it the first interface.
    std::optional<RpcError> expected;
    int phase = 0;
    for (std::size_t at = 0; at < 3; ++at) {
      if (parts[at]->phase == 0 || (phase != 0 && phase <= parts[at]->phase)) continue;
      phase = parts[at]->phase;
      expected = refusals[at];
    }
    ASSERT_EQ(whole.refusal.has_value(), expected.has_value()) << what;
    if (expected.has_value()) {
      EXPECT_EQ(whole.refusal->tag, expected->tag) << what;
      EXPECT_EQ(whole.refusal->path, expected->path) << what;
      EXPECT_EQ(whole.refusal->message, expected->message) << what;
      EXPECT_EQ(whole.running, untouched) << what;
      continue;
    }
    EXPECT_EQ(whole.running, alone.running) << what;
    EXPECT_EQ(whole.differences, alone.differences) << what;
    EXPECT_EQ(whole.unsaid, alone.unsaid) << what;
    std::sort(whole.warnings.begin(), whole.warnings.end());
    std::sort(alone.warnings.begin(), alone.warnings.end());
    EXPECT_EQ(whole.warnings, alone.warnings) << what;
  }
}

}  // namespace
}  // namespace yfw
