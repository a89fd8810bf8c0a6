// VLAN settings in words: what OpenConfig says, what a native container holds, and what of it OpenConfig does not say.
#include "yfw-host/words.h"

#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include "framework/datastore/running.h"
#include "models_of_tests.h"
#include "native_entries.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

constexpr char kSub[] = "Ethernet0/0/1.100";

struct Words {
  const char* name;
  std::string inside;  // of the entry
  std::string native;  // of its first container
  std::string reads;   // of the entry's reading
};

void PrintTo(const Words& words, std::ostream* out) {
  *out << words.name;
}

// The first container of an entry that holds leaves.
const lyd_node* container_in(const lyd_node* node) {
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child_no_keys(node), child) {
    if ((child->schema->nodetype & LYD_NODE_TERM) != 0) return node;
    if (const lyd_node* const found = container_in(child)) return found;
  }
  return nullptr;
}

class NativeWords : public testing::TestWithParam<Words> {};

TEST_P(NativeWords, SayWhatIsThereAndWhatIsRead) {
  Host host = host_with(native_of({{kSub, GetParam().inside}}));
  const Running running(host.running().clone());
  const lyd_node* const container = container_in(running.entry(kSub));
  EXPECT_EQ(native_words(container), GetParam().native);
  const ReadResult reading = host.read();
  const lyd_node* sub = nullptr;
  ASSERT_EQ(lyd_find_path(reading.data.get(),
                          "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']/subinterfaces/"
                          "subinterface[index='100']",
                          0, const_cast<lyd_node**>(&sub)),
            LY_SUCCESS);
  EXPECT_EQ(reading_words(sub, LYD_NAME(container)), GetParam().reads);
}

std::string tags(const Leaves& leaves) {
  return encapsulation(leaves);
}

INSTANTIATE_TEST_SUITE_P(
    Encapsulations, NativeWords,
    testing::Values(
        Words{"OneId", tags({{"outer-tag-type", "match-dot1q"}, {"outer-range1-low", "7"}}), "7", "dot1q 7"},
        Words{"ARange",
              tags({{"outer-tag-type", "match-dot1q"}, {"outer-range1-low", "7"}, {"outer-range1-high", "9"}}), "7-9",
              "dot1q 7..9"},
        Words{"ARangeWithoutItsLowEnd", tags({{"outer-tag-type", "match-dot1q"}, {"outer-range1-high", "9"}}), "?-9",
              "dot1q ?..9"},
        Words{"AList",
              tags({{"outer-tag-type", "match-dot1q"},
                    {"outer-range1-low", "7"},
                    {"outer-range1-high", "4097"},
                    {"additional-range1-low", "9"},
                    {"additional-range2-low", "11"}}),
              "7,9,11", "the list 7,9,11"},
        Words{"AListWithARange",
              tags({{"outer-tag-type", "match-dot1q"},
                    {"outer-range1-low", "10"},
                    {"outer-range1-high", "20"},
                    {"additional-range1-low", "30"}}),
              "10-20,30", "the list 10,30"},
        Words{"Dot1ad", tags({{"outer-tag-type", "match-dot1ad"}, {"outer-range1-low", "7"}}), "dot1ad 7", ""},
        Words{"Untagged", tags({{"outer-tag-type", "match-untagged"}}), "untagged", ""},
        Words{"IdsWithoutAType", tags({{"outer-range1-low", "7"}}), "7", ""},
        Words{"TwoTags",
              tags({{"outer-tag-type", "match-dot1ad"},
                    {"outer-range1-low", "7"},
                    {"inner-tag-type", "match-dot1q"},
                    {"inner-range1-low", "9"}}),
              "dot1ad 7 / dot1q 9", "dot1ad 7 / dot1q 9"},
        Words{"AnInnerListWithAnOuterRange",
              tags({{"outer-tag-type", "match-dot1ad"},
                    {"outer-range1-low", "7"},
                    {"outer-range1-high", "8"},
                    {"inner-tag-type", "match-dot1q"},
                    {"inner-range1-low", "9"},
                    {"additional-range1-low", "11"}}),
              "dot1ad 7-8 / dot1q 9,11", "dot1ad 7 / list 9,11"},
        Words{"AnOuterList",
              tags({{"outer-tag-type", "match-dot1ad"},
                    {"outer-range1-low", "7"},
                    {"outer-range1-high", "4097"},
                    {"inner-tag-type", "match-dot1q"},
                    {"inner-range1-low", "9"},
                    {"additional-range1-low", "11"}}),
              "dot1ad 7,11 / dot1q 9", "the list 7,11 / dot1q 9"},
        Words{"AnInnerTagAlone", tags({{"inner-range1-low", "9"}}), "? / ? 9", ""},
        Words{"AHighInnerIdAlone", tags({{"inner-range1-high", "9"}}), "? / ? ?-9", ""},
        Words{"TheMarkOfAListAlone", tags({{"outer-range1-high", "4097"}}), "outer-range1-high 4097", ""}),
    [](const auto& info) { return info.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Others, NativeWords,
    testing::Values(Words{"ARewrite", rewrite({{"rewrite-type", "push1"}, {"outer-tag-value", "7"}}),
                          "rewrite-type push1, outer-tag-value 7", "push 7"},
                    Words{"ARewriteOfTwoTags", rewrite({{"rewrite-type", "pop2"}}), "rewrite-type pop2", ""},
                    Words{"ARoutedTag", vlan_identifier({{"vlan-type", "vlan-type-dot1q"}, {"first-tag", "7"}}),
                          "vlan-type vlan-type-dot1q, first-tag 7", "dot1q 7"},
                    Words{"SomethingElse", carrier_delay("5"), "up 5", ""}),
    [](const auto& info) { return info.param.name; });

struct Unread {
  const char* name;
  const char* entry;
  std::string inside;
  std::string words;
};

void PrintTo(const Unread& unread, std::ostream* out) {
  *out << unread.name;
}

class UnsaidWords : public testing::TestWithParam<Unread> {};

TEST_P(UnsaidWords, AreThoseAboutVlans) {
  Host host = host_with(native_of({{GetParam().entry, GetParam().inside}}));
  EXPECT_EQ(unsaid_words(host.read().unsaid), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    All, UnsaidWords,
    testing::Values(
        Unread{"Nothing", kSub, "", ""}, Unread{"AboutSomethingElse", kSub, carrier_delay("5") + "<mtu>1500</mtu>", ""},
        Unread{"ARewrite", kSub, rewrite({{"rewrite-type", "pop2"}}), "rewrite pop2"},
        Unread{"ARewriteWithItsTag", kSub, rewrite({{"rewrite-type", "push2"}, {"outer-tag-value", "7"}}),
               "rewrite push2, outer-tag-value 7"},
        Unread{"TwoContainers", kSub, encapsulation({{"outer-tag-type", "match-untagged"}}, {{"rewrite-type", "pop2"}}),
               "encapsulation outer-tag-type match-untagged; rewrite pop2"},
        Unread{"APort", "Ethernet0/0/1", switched_port({{"mode", "tunnel"}, {"access-vlan", "7"}}) + carrier_delay("5"),
               "vlan-switched mode tunnel, access-vlan 7"}),
    [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace yfw::test
