// What is told of an edit that does not read back as asked, and what of one whose trunk has no room natively.
#include "framework/edit/verify.h"

#include <gtest/gtest.h>

#include "framework/vlan/trunk_text.h"
#include "models_of_tests.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

constexpr char kTrunkNs[] = "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg";

std::string running_of(const std::string& inside, std::string_view name = "Ethernet0/0/1") {
  return fmt::format(
      "<interface-configurations xmlns=\"{}\"><interface-configuration><interface-name>{}</interface-name>{}"
      "</interface-configuration></interface-configurations>",
      kNativeNs, name, inside);
}

std::string trunk_of(const std::string& text) {
  return running_of(
      fmt::format("<vlan-trunk-configuration xmlns=\"{}\"><vlan-switched><mode>trunk</mode>"
                  "<trunk-tag-type>vlan-type-dot1q</trunk-tag-type><trunk-vla-ns>{}</trunk-vla-ns></vlan-switched>"
                  "<native-vlan-identifier><vlan-type>vlan-type-dot1q</vlan-type><vlan-identifier>7</vlan-identifier>"
                  "</native-vlan-identifier></vlan-trunk-configuration>",
                  kTrunkNs, text));
}

std::vector<std::string> ids(int low, int high, int step) {
  std::vector<std::string> result;
  for (int id = low; id <= high; id += step) result.push_back(std::to_string(id));
  return result;
}

std::string asked(const std::vector<std::string>& entries, const char* attributes = "") {
  std::string text;
  for (const std::string& entry : entries) text += fmt::format("<trunk-vlans{}>{}</trunk-vlans>", attributes, entry);
  return text;
}

constexpr char kDelete[] = " nc:operation='delete'";

struct LongTrunk {
  const char* name;
  std::vector<std::string> there;  // entries of the running configuration
  std::string config;              // what is asked below switched-vlan/config
  const char* says;                // a part of the refusal's message; null: the request is accepted
  std::vector<std::string> after;  // entries that read back then
};

std::vector<std::string> joined(std::vector<std::string> first, const std::vector<std::string>& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

// 80 ids in a run, 320 characters; 100 ids with gaps, 399 characters; 50 ids with gaps and a short one, 201 characters.
const std::vector<std::string> kRun = ids(100, 179, 1);
const std::vector<std::string> kGaps = ids(100, 298, 2);
const std::vector<std::string> kNearly = joined({"1"}, ids(100, 198, 2));

std::vector<LongTrunk> long_trunks() {
  return {
      {"merged into, with runs",
       kRun,
       asked({"200"}),
       "'trunk-vlans' would need 323 characters of native text, which has room for 199, and lose 150, 151, 152, 153, "
       "154, 155, 156, 157, 158, 159, 160, 161, 162, 163, 164, 165, 166, 167, 168, 169 and 11 more; write runs of ids "
       "as ranges: 100..179 200 in the place of all entries takes 11",
       {}},
      {"deleted from, with runs",
       kRun,
       asked({"100"}, kDelete),
       "would need 315 characters of native text, which has room for 199",
       {}},
      {"merged into, with gaps",
       kGaps,
       asked({"301"}),
       "and 31 more; with every run of ids written as a range it would still need 403: ask for fewer entries",
       {}},
      {"deleted from, with gaps",
       kGaps,
       asked({"100"}, kDelete),
       "with every run of ids written as a range it would still need 395: ask for fewer entries",
       {}},
      {"asked for, with gaps", {"5"}, asked(kGaps), "would still need 401: ask for fewer entries", {}},
      {"asked for, with runs", {"5"}, asked(kRun), "write runs of ids as ranges: 5 100..179 in the place of", {}},
      {"beside a native VLAN that goes",
       kRun,
       "<native-vlan nc:operation='delete'>7</native-vlan>",
       "'trunk-vlans' would need 319 characters of native text",
       {}},
      {"deleted from until it fits", kNearly, asked({"1"}, kDelete), nullptr, ids(100, 198, 2)},
      {"beside a native VLAN that comes", kRun, "<native-vlan>8</native-vlan>", nullptr, kRun},
      {"with nothing but what fits",
       {"100..170", "172", "173"},
       asked({"300"}),
       nullptr,
       {"100..170", "172", "173", "300"}},
  };
}

TEST(Verify, SaysOfALongTrunkWhatItNeedsAndWhatFits) {
  for (const LongTrunk& tested : long_trunks()) {
    Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang", .verify = Verify::off});
    host.load_plugin(OC_VLAN_PLUGIN_FILE);
    host.set_running({trunk_of(native_trunk_text(tested.there)), Format::xml, "running"});
    const std::string before = host.running().print(Format::xml);
    const std::string outcome = outcome_of([&] {
      const EditResult result = host.apply({on_trunk(tested.config), Format::xml, "request"});
      for (const Warning& each : result.warnings) {
        if (!each.unsaid) ADD_FAILURE() << tested.name << ": " << each.message;
      }
      return host.running().print(Format::xml);
    });
    if (tested.says != nullptr) {
      EXPECT_NE(outcome.find("refused: invalid-value"), std::string::npos) << tested.name << "\n" << outcome;
      EXPECT_NE(outcome.find(tested.says), std::string::npos) << tested.name << "\n" << outcome;
      EXPECT_EQ(outcome.find("operation replace"), std::string::npos) << tested.name << "\n" << outcome;
      EXPECT_EQ(host.running().print(Format::xml), before) << tested.name;
    } else {
      const std::string text = fmt::format("<trunk-vla-ns>{}</trunk-vla-ns>", native_trunk_text(tested.after));
      EXPECT_NE(outcome.find(text), std::string::npos) << tested.name << "\n" << outcome;
    }
  }
}

// Whoever does what the refusal says gets what was asked for. What cannot be written back as it stands there is unsaid,
// so that nothing strict takes its place.
TEST(Verify, ProposesForALongTrunkWhatIsAccepted) {
  Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang", .verify = Verify::report});
  host.load_plugin(OC_VLAN_PLUGIN_FILE);
  host.set_running({trunk_of(native_trunk_text(kRun)), Format::xml, "running"});
  const std::string request =
      on_trunk("<interface-mode>TRUNK</interface-mode><native-vlan>7</native-vlan>" + asked({"100..179", "200"}));
  const std::string replaced = fmt::format(
      "<edit-config xmlns='{}'><default-operation>merge</default-operation><config>{}</config></edit-config>", kNetconf,
      std::string(request).replace(request.find("<config>"), 8, "<config nc:operation='replace'>"));
  const std::string outcome = outcome_of([&] {
    EXPECT_TRUE(host.apply({replaced, Format::xml, "request"}).differences.empty());
    return host.running().print(Format::xml);
  });
  EXPECT_NE(outcome.find("<trunk-vla-ns>100-179,200</trunk-vla-ns>"), std::string::npos) << outcome;
}

TEST(Verify, SaysOfALongTrunkTheSameWithoutARunningConfiguration) {
  Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang"});
  host.load_plugin(OC_VLAN_PLUGIN_FILE);
  const std::string request = on_trunk("<interface-mode>TRUNK</interface-mode>" + asked(kRun));
  const std::string outcome = outcome_of([&] {
    return host.edit({request, Format::xml, "request"}).native.print(Format::xml);
  });
  EXPECT_NE(
      outcome.find("'trunk-vlans' would need 319 characters of native text, which has room for 199, and lose 150"),
      std::string::npos)
      << outcome;
}

}  // namespace
}  // namespace yfw::test
