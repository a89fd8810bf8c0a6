// Texts of trunk VLANs: one form for all that say the same, and the stored one where nobody writes.
#include "framework/vlan/trunk_text.h"

#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include "framework/datastore/apply.h"
#include "framework/documents/documents.h"
#include "models_of_tests.h"
#include "yfw-host/compare.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

constexpr char kTrunkNs[] = "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg";

std::string running_of(std::string_view text, std::string_view description = "1, 04 - 010") {
  return fmt::format(
      "<interface-configurations xmlns=\"{}\"><interface-configuration><interface-name>Ethernet0/0/1</interface-name>"
      "<description>{}</description><vlan-trunk-configuration xmlns=\"{}\"><vlan-switched><mode>trunk</mode>"
      "<trunk-tag-type>vlan-type-dot1q</trunk-tag-type><trunk-vla-ns>{}</trunk-vla-ns></vlan-switched>"
      "<native-vlan-identifier><vlan-type>vlan-type-dot1q</vlan-type><vlan-identifier>7</vlan-identifier>"
      "</native-vlan-identifier></vlan-trunk-configuration></interface-configuration></interface-configurations>",
      kNativeNs, description, kTrunkNs, text);
}

Data native(const std::string& text) {
  return parse_running(compact_models(), {text, Format::xml, "running"}).data;
}

const lyd_node* at(const Data& data, const std::string& below) {
  lyd_node* found = nullptr;
  lyd_find_path(data.get(),
                ("/Vexnet-OS-interface-cfg:interface-configurations/interface-configuration[interface-name="
                 "'Ethernet0/0/1']/" +
                 below)
                    .c_str(),
                0, &found);
  return found;
}

struct Form {
  const char* stored;
  const char* canonical;
};

constexpr Form kForms[] = {
    {"1,4-10", "1,4-10"},   {"1,4 - 10", "1,4-10"},   {" 1 , 4 -  10 ", "1,4-10"},    {"0001,010-0100", "1,10-100"},
    {"0,00,0000", "0,0,0"}, {"100,20,3", "100,20,3"}, {"10,10,10-10", "10,10,10-10"}, {"10 -5", "10-5"},
};

TEST(TrunkText, HasOneFormForAllThatSayTheSame) {
  for (const Form& form : kForms) {
    const Data data = native(running_of(form.stored));
    EXPECT_EQ(
        canonical_text(at(data, "Vexnet-OS-l2-eth-infra-cfg:vlan-trunk-configuration/vlan-switched/trunk-vla-ns")),
        form.canonical)
        << '"' << form.stored << '"';
  }
}

TEST(TrunkText, IsKnownByItsTypeAndNotByWhatItLooksLike) {
  const Data data = native(running_of("1"));
  EXPECT_EQ(canonical_text(at(data, "description")), "1, 04 - 010");
}

TEST(TrunkText, IsComparedByWhatItSays) {
  for (const Form& form : kForms) {
    EXPECT_TRUE(compare(native(running_of(form.stored)), native(running_of(form.canonical))).empty()) << form.stored;
    EXPECT_TRUE(compare(native(running_of(form.canonical)), native(running_of(form.stored))).empty()) << form.stored;
  }
  EXPECT_FALSE(compare(native(running_of("1,4 - 10")), native(running_of("1,4,10"))).empty());
  EXPECT_FALSE(compare(native(running_of("1", "a b")), native(running_of("1", "ab"))).empty());
}

struct Written {
  std::vector<std::string> entries;
  const char* text;
  std::vector<std::string> ranges;
};

const Written kWritten[] = {
    {{}, "", {}},
    {{"10"}, "10", {"10"}},
    {{"10", "20..30"}, "10,20-30", {"10", "20..30"}},
    {{"3", "1", "2"}, "3,1,2", {"1..3"}},
    {{"1", "2..4", "5", "7"}, "1,2-4,5,7", {"1..5", "7"}},
    {{"1..10", "3..4", "10", "12"}, "1-10,3-4,10,12", {"1..10", "12"}},
    {{"9..5", "6"}, "9-5,6", {"6", "9..5"}},
    {{"4094", "4093"}, "4094,4093", {"4093..4094"}},
};

TEST(TrunkText, IsWrittenFromEntries) {
  for (const Written& each : kWritten) {
    EXPECT_EQ(native_trunk_text(each.entries), each.text);
    EXPECT_EQ(runs_as_ranges(each.entries), each.ranges) << each.text;
  }
}

Host make_host(const std::string& running) {
  Host host({.yang_dir = OC_VLAN_SOURCE_DIR "/yang"});
  host.load_plugin(OC_VLAN_PLUGIN_FILE);
  host.set_running({running, Format::xml, "running"});
  return host;
}

TEST(TrunkText, ReadsWholeHoweverItIsWritten) {
  for (const Form& form : kForms) {
    Host stored = make_host(running_of(form.stored));
    Host canonical = make_host(running_of(form.canonical));
    EXPECT_EQ(stored.read().data.print(Format::xml), canonical.read().data.print(Format::xml)) << form.stored;
  }
  Host host = make_host(running_of("1,4 - 10"));
  const std::string text = host.read().data.print(Format::xml);
  EXPECT_NE(text.find("<trunk-vlans>4..10</trunk-vlans>"), std::string::npos) << text;
}

struct Edit {
  const char* name;
  const char* config;
  const char* after;  // the native text
};

constexpr Edit kEdits[] = {
    {"of something else", "<native-vlan>5</native-vlan>", "1 ,04 - 10"},
    {"of what is there already", "<trunk-vlans>4..10</trunk-vlans>", "1 ,04 - 10"},
    {"away from something else", "<native-vlan nc:operation='remove'>5</native-vlan>", "1 ,04 - 10"},
    {"of the whole, with the same entries",
     "<interface-mode>TRUNK</interface-mode><trunk-vlans>1</trunk-vlans><trunk-vlans>4..10</trunk-vlans>",
     "1 ,04 - 10"},
    {"of another entry", "<trunk-vlans>20</trunk-vlans>", "1,4-10,20"},
    {"away from it", "<trunk-vlans nc:operation='delete'>1</trunk-vlans>", "4-10"},
};

TEST(TrunkText, StaysAsItIsStoredUnlessAnEditChangesWhatItSays) {
  for (const Edit& edit : kEdits) {
    Host host = make_host(running_of("1 ,04 - 10"));
    const std::string outcome = outcome_of([&] {
      const EditResult result = host.apply({on_trunk(edit.config), Format::xml, "request"});
      for (const Warning& warning : result.warnings) ADD_FAILURE() << warning.path << ": " << warning.message;
      EXPECT_TRUE(result.differences.empty());
      return host.running().print(Format::xml);
    });
    EXPECT_NE(outcome.find(fmt::format("<trunk-vla-ns>{}</trunk-vla-ns>", edit.after)), std::string::npos)
        << "an edit " << edit.name << " makes:\n"
        << outcome;
  }
}

}  // namespace
}  // namespace yfw::test
