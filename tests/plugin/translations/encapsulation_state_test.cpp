// Encapsulation details to the VLAN state of a sub-interface.
#include "plugin/translations/case.h"

namespace translations {
namespace {

const Function kDetails = FUNCTION(vex2_oc_encapsulationdetails);

const std::string kVlan = "/interfaces/interface/subinterfaces/subinterface/vlan/";

std::string leaf(const std::string& path, const std::string& value) {
  return add(kVlan + "match/" + path, "oc", value, "-", 0, 0) + "\n";
}

std::string entry(const std::string& path, const std::string& value) {
  return add(kVlan + "match/" + path, "oc", value, "-", 1, 0) + "\n";
}

std::string identity(const std::string& name, const std::string& value) {
  return add(kVlan + "ingress-mapping/state/" + name, "oc", value, "-", 0, 0, "yes") + "\n" + kMarked + "\n";
}

std::string pushed_id(const std::string& value) {
  return add(kVlan + "ingress-mapping/state/vlan-id", "oc", value, "-", 0, 0) + "\n";
}

// Every failing add but the last is covered by a later one; `failures` says otherwise.
Case details(const std::string& name, const std::string& children, const std::string& calls,
             std::string failures = "") {
  std::size_t adds = 0;
  for (std::size_t at = calls.find("add_path "); at != std::string::npos; at = calls.find("add_path ", at + 1)) ++adds;
  if (failures.empty() && adds > 0) failures = std::string(adds - 1, '.') + "r";
  return {.name = name,
          .function = kDetails,
          .tree = "oper:encapsulation-details { " + children + " }",
          .kinds = {kReadState, kRead, kEdit},
          .calls = calls,
          .failures = failures};
}

// A service instance with the given tags, pushed tags and popped tags.
Case service(const std::string& name, const std::string& instance, const std::string& calls,
             std::string failures = "") {
  return details(name, "vlan-encapsulation=service-instance service-instance-details { " + instance + " }", calls,
                 std::move(failures));
}

std::string range(const std::string& low, const std::string& high) {
  return " vlan-range { vlan-id-low=" + low + " vlan-id-high=" + high + " }";
}

std::string tag(const std::string& ethertype, const std::string& count, const std::string& ranges) {
  return " tags-to-match { ethertype=" + ethertype + " number-of-ranges=" + count + ranges + " }";
}

class EncapsulationState : public testing::TestWithParam<Case> {};

TEST_P(EncapsulationState, is_told) {
  check(GetParam());
}

const std::string kSingle = "single-tagged/state/vlan-id";
const std::string kOuter = "double-tagged/state/outer-vlan-id";
const std::string kInner = "double-tagged/state/inner-vlan-id";

INSTANTIATE_TEST_SUITE_P(
    Kinds, EncapsulationState,
    testing::Values(
        details("dot1q", "vlan-encapsulation=dot1q tag=5", leaf(kSingle, "5")),
        details("dot1q_tag_before_kind", "tag=5 vlan-encapsulation=dot1q", leaf(kSingle, "5")),
        details("dot1q_twice", "vlan-encapsulation=dot1q tag=5 tag=6", leaf(kSingle, "5") + leaf(kSingle, "6")),
        details("dot1q_odd_text", "vlan-encapsulation=dot1q tag=99999x", leaf(kSingle, "99999x")),
        details("dot1q_without_tag", "vlan-encapsulation=dot1q dot1ad-dot1q-stack { outer-tag=1 }", ""),
        details("stack", "vlan-encapsulation=dot1ad-dot1q dot1ad-dot1q-stack { outer-tag=1 second-tag=2 }",
                leaf(kOuter, "1") + leaf(kInner, "2")),
        details("stack_in_its_order",
                "vlan-encapsulation=dot1ad-dot1q dot1ad-dot1q-stack { second-tag=2 x outer-tag=1 }",
                leaf(kInner, "2") + leaf(kOuter, "1")),
        details("stack_without_tags", "vlan-encapsulation=dot1ad-dot1q dot1ad-dot1q-stack tag=5", ""),
        details("last_kind_wins", "vlan-encapsulation=dot1ad-dot1q tag=5 vlan-encapsulation=dot1q", leaf(kSingle, "5")),
        details("unknown_kind", "vlan-encapsulation=qinany tag=5", ""), details("no_kind", "tag=5", ""),
        details("kind_without_text", "vlan-encapsulation tag=5", ""), details("children_without_tags", "x @notag", ""),
        details("no_ingress_mapping_of_dot1q",
                "vlan-encapsulation=dot1q tag=5 service-instance-details { tags-popped=1 }", leaf(kSingle, "5")),
        details("service_instance_without_details", "vlan-encapsulation=service-instance", "")),
    case_name);

const std::string kLow = "single-tagged-range/state/low-vlan-id";
const std::string kHigh = "single-tagged-range/state/high-vlan-id";
const std::string kIds = "single-tagged-list/state/vlan-ids";

INSTANTIATE_TEST_SUITE_P(
    OneTag, EncapsulationState,
    testing::Values(
        service("single", tag("dot1q", "1", range("10", "10")), leaf(kSingle, "10")),
        service("range", tag("dot1q", "1", range("10", "20")), leaf(kLow, "10") + leaf(kHigh, "20")),
        service("range_by_text", tag("dot1q", "1", range("10", "010")), leaf(kLow, "10") + leaf(kHigh, "010")),
        service("list", tag("dot1q", "3", range("1", "2") + range("3", "3") + range("5", "9")),
                entry(kIds, "1") + entry(kIds, "3") + entry(kIds, "5")),
        service("list_by_the_devices_count", tag("dot1q", "2", range("1", "2")), entry(kIds, "1")),
        service("more_ranges_than_counted", tag("dot1q", "1", range("1", "1") + range("2", "3")),
                leaf(kSingle, "1") + leaf(kLow, "2") + leaf(kHigh, "3")),
        service("count_of_none", tag("dot1q", "0", range("1", "1")), ""),
        service("count_below_none", tag("dot1q", "-3", range("1", "1")), ""),
        service("count_of_no_number", tag("dot1q", "many", range("1", "1")), ""),
        service("count_with_a_tail", tag("dot1q", "1x", range("1", "1")), leaf(kSingle, "1")),
        service("count_beyond_all_numbers", tag("dot1q", "99999999999999999999", range("1", "1")), entry(kIds, "1")),
        service("no_count", "tags-to-match { ethertype=dot1q vlan-range { vlan-id-low=1 } }", ""),
        service("no_ranges", tag("dot1q", "1", ""), ""),
        service("no_high_end", tag("dot1q", "1", " vlan-range { vlan-id-low=7 }"), leaf(kLow, "7") + leaf(kHigh, "-")),
        service("no_low_end", tag("dot1q", "1", " vlan-range { vlan-id-high=7 }"), leaf(kLow, "-") + leaf(kHigh, "7")),
        service("list_without_a_low_end", tag("dot1q", "2", " vlan-range { vlan-id-high=7 }" + range("8", "9")),
                entry(kIds, "-") + entry(kIds, "8")),
        service("outer_type", tag("dot1ad", "1", range("1", "1")), ""),
        service("no_type", "tags-to-match { number-of-ranges=1 }", "")),
    case_name);

// A double tag with each side's count and ranges.
std::string two(const std::string& outer_count, const std::string& outer, const std::string& inner_count,
                const std::string& inner) {
  return tag("dot1ad", outer_count, outer) + tag("dot1q", inner_count, inner);
}

std::string eleven_ranges() {
  std::string ranges;
  for (int i = 0; i < 11; ++i) ranges += range(std::to_string(i), std::to_string(i));
  return ranges;
}

std::string eleven_entries(const std::string& path) {
  std::string document;
  for (int i = 0; i < 11; ++i) document += entry(path, std::to_string(i));
  return document;
}

const std::string kOuterIds = "double-tagged-outer-list/state/outer-vlan-ids";
const std::string kOuterListInner = "double-tagged-outer-list/state/inner-vlan-id";
const std::string kInnerIds = "double-tagged-inner-list/state/inner-vlan-ids";
const std::string kInnerListOuter = "double-tagged-inner-list/state/outer-vlan-id";

INSTANTIATE_TEST_SUITE_P(
    TwoTags, EncapsulationState,
    testing::Values(
        service("double_tag", two("1", range("1", "1"), "1", range("2", "2")), leaf(kOuter, "1") + leaf(kInner, "2")),
        service("outer_range", two("1", range("1", "5"), "1", range("2", "2")),
                leaf("double-tagged-outer-range/state/outer-low-vlan-id", "1") +
                    leaf("double-tagged-outer-range/state/outer-high-vlan-id", "5") +
                    leaf("double-tagged-outer-range/state/inner-vlan-id", "2")),
        service("no_outer_range", two("1", "", "1", range("2", "2")),
                leaf("double-tagged-outer-range/state/outer-low-vlan-id", "-") +
                    leaf("double-tagged-outer-range/state/outer-high-vlan-id", "-") +
                    leaf("double-tagged-outer-range/state/inner-vlan-id", "2")),
        service("no_inner_range", two("1", range("1", "1"), "1", ""),
                leaf("double-tagged-inner-range/state/outer-vlan-id", "1") +
                    leaf("double-tagged-inner-range/state/inner-low-vlan-id", "-") +
                    leaf("double-tagged-inner-range/state/inner-high-vlan-id", "-")),
        service("outer_range_over_inner_range", two("1", range("1", "5"), "1", range("2", "9")),
                leaf("double-tagged-outer-range/state/outer-low-vlan-id", "1") +
                    leaf("double-tagged-outer-range/state/outer-high-vlan-id", "5") +
                    leaf("double-tagged-outer-range/state/inner-vlan-id", "2")),
        service("inner_range", two("1", range("1", "1"), "1", range("2", "9")),
                leaf("double-tagged-inner-range/state/outer-vlan-id", "1") +
                    leaf("double-tagged-inner-range/state/inner-low-vlan-id", "2") +
                    leaf("double-tagged-inner-range/state/inner-high-vlan-id", "9")),
        service("outer_list", two("3", range("1", "1") + range("2", "4") + range("3", "3"), "1", range("9", "9")),
                entry(kOuterIds, "1") + entry(kOuterIds, "2") + entry(kOuterIds, "3") + leaf(kOuterListInner, "9"),
                "..sr"),
        service("outer_list_over_all",
                two("2", range("1", "8") + range("2", "2"), "2", range("9", "10") + range("7", "7")),
                entry(kOuterIds, "1") + entry(kOuterIds, "2") + entry(kOuterIds, "7") + leaf(kOuterListInner, "9"),
                "..sr"),
        service("outer_list_of_one_range", two("2", range("1", "8"), "1", range("9", "9")),
                entry(kOuterIds, "1") + leaf(kOuterListInner, "9"), "sr"),
        service("inner_list", two("1", range("1", "1"), "3", range("5", "5") + range("6", "6") + range("7", "7")),
                leaf(kInnerListOuter, "1") + entry(kInnerIds, "5") + entry(kInnerIds, "6") + entry(kInnerIds, "7")),
        service("inner_list_over_outer_range", two("1", range("1", "4"), "2", range("5", "5") + range("6", "6")),
                leaf(kInnerListOuter, "1") + entry(kInnerIds, "5") + entry(kInnerIds, "6")),
        service("inner_list_takes_further_outer_ids_first",
                two("1", range("1", "1") + range("2", "2"), "2", range("5", "5") + range("6", "6")),
                leaf(kInnerListOuter, "1") + entry(kInnerIds, "5") + entry(kInnerIds, "2") + entry(kInnerIds, "6")),
        service("eleven_outer_ranges", two("11", eleven_ranges(), "1", range("9", "9")),
                eleven_entries(kOuterIds) + leaf(kOuterListInner, "9"), std::string(10, '.') + "sr"),
        service("eleven_inner_ranges", two("1", range("9", "9"), "11", eleven_ranges()),
                leaf(kInnerListOuter, "9") + eleven_entries(kInnerIds)),
        service("tags_of_two_instances",
                tag("dot1ad", "1", range("1", "1")) + " } service-instance-details { " +
                    tag("dot1q", "1", range("2", "2")),
                leaf(kOuter, "1") + leaf(kInner, "2")),
        service("wrong_outer_type", tag("dot1q", "1", range("1", "1")) + tag("dot1q", "1", range("2", "2")), ""),
        service("wrong_inner_type", tag("dot1ad", "1", range("1", "1")) + tag("dot1ad", "1", range("2", "2")), ""),
        service("wrong_order", tag("dot1q", "1", range("1", "1")) + tag("dot1ad", "1", range("2", "2")), ""),
        service("three_tags", two("1", range("1", "1"), "1", range("2", "2")) + tag("dot1q", "1", range("3", "3")), ""),
        service("no_tags", "x", "")),
    case_name);

std::string push(const std::string& leaves) {
  return " pushe { " + leaves + " }";
}

INSTANTIATE_TEST_SUITE_P(
    IngressMapping, EncapsulationState,
    testing::Values(service("pop", "tags-popped=1", identity("vlan-stack-action", "POP")),
                    service("push_ad", "tags-popped=0" + push("vlan-id=200 ethertype=dot1ad"),
                            identity("vlan-stack-action", "PUSH") + identity("tpid", "TPID_0X88A8") + pushed_id("200")),
                    service("push_q", "tags-popped=0" + push("ethertype=dot1q vlan-id=200"),
                            identity("vlan-stack-action", "PUSH") + identity("tpid", "TPID_0X8100") + pushed_id("200")),
                    service("swap", push("vlan-id=200 ethertype=dot1ad") + " tags-popped=1",
                            identity("vlan-stack-action", "SWAP") + identity("tpid", "TPID_0X88A8") + pushed_id("200")),
                    service("push_of_an_unknown_type", "tags-popped=0" + push("vlan-id=200 ethertype=dot1ah"),
                            identity("vlan-stack-action", "PUSH") + identity("tpid", "-") + pushed_id("200")),
                    service("swap_without_type", "tags-popped=1" + push("vlan-id=200"),
                            identity("vlan-stack-action", "SWAP") + identity("tpid", "-") + pushed_id("200")),
                    service("nothing", "tags-popped=0", ""), service("pop_of_two", "tags-popped=2", ""),
                    service("pop_of_no_number", "tags-popped=01", ""), service("pop_of_nothing_said", "x", ""),
                    service("push_of_nothing_said", push("vlan-id=200"), ""),
                    service("push_with_two_popped", "tags-popped=2" + push("vlan-id=200"), ""),
                    service("two_pushes", "tags-popped=0" + push("vlan-id=1") + push("vlan-id=2"), ""),
                    service("two_pushes_and_a_pop", "tags-popped=1" + push("vlan-id=1") + push("vlan-id=2"), ""),
                    service("of_the_last_instance", "tags-popped=1 } service-instance-details { tags-popped=0", ""),
                    service("after_the_match", "tags-popped=1" + tag("dot1q", "1", range("5", "5")),
                            leaf(kSingle, "5") + identity("vlan-stack-action", "POP"))),
    case_name);

// A failure of the match is covered by the ingress mapping that follows, also where it cuts an outer list short.
TEST(EncapsulationStateResult, is_that_of_the_last_add) {
  Recorder framework(kReadState);
  framework.answer("add_path", 0xaaf20055, 2);
  Tree tree("oper:encapsulation-details { vlan-encapsulation=service-instance service-instance-details { " +
            two("2", range("1", "1") + range("2", "2"), "1", range("9", "9")) + " tags-popped=1 } }");
  EXPECT_EQ(kDetails(framework.ctx(), tree.root(), 2, framework.output()), 0u);
  EXPECT_EQ(framework.calls(), entry(kOuterIds, "1") + entry(kOuterIds, "2") + identity("vlan-stack-action", "POP"));
}

TEST(EncapsulationStateIdentity, is_marked_where_a_leaf_was_made) {
  for (const bool made : {true, false}) {
    Recorder framework(kReadState);
    if (!made) framework.leave_slots_empty();
    Tree tree(
        "oper:encapsulation-details { vlan-encapsulation=service-instance service-instance-details { "
        "tags-popped=0 pushe { vlan-id=7 ethertype=dot1q } } }");
    EXPECT_EQ(kDetails(framework.ctx(), tree.root(), 2, framework.output()), 0u);
    EXPECT_EQ(framework.calls().find(kMarked) != std::string::npos, made);
    for (const std::size_t n : made ? std::vector<std::size_t>{0, 1} : std::vector<std::size_t>{}) {
      EXPECT_STREQ(framework.added(n).value_ns, "http://openconfig.net/yang/vlan-types");
      EXPECT_EQ(framework.added(n).key_flags, 0x10);
    }
  }
}

TEST(EncapsulationStateTrace, tells_of_a_container_without_children) {
  Recorder framework(kReadState);
  Tree tree("oper:encapsulation-details { vlan-encapsulation=dot1q tag=5 }");
  EXPECT_EQ(kDetails(framework.ctx(), tree.root(), 0, framework.output()), 0u);
  EXPECT_EQ(framework.calls(), "");
  EXPECT_EQ(framework.trace(),
            lines("TRC vex2_oc_encapsulationdetails: Start", "TRC vex2_oc_encapsulationdetails: No subtrees",
                  "TRC vex2_oc_encapsulationdetails: End"));
}

}  // namespace
}  // namespace translations
