// Ingress mapping on its way to the native rewrite, and state leaves on theirs to operational data.
#include "plugin/translations/case.h"

namespace translations {
namespace {

class IngressMapping : public testing::TestWithParam<Case> {};

TEST_P(IngressMapping, translates) {
  check(GetParam());
}

const Function kAction = FUNCTION(oc2_vex_ingress_mapping_cfg_vlanstackaction);
const Function kId = FUNCTION(oc2_vex_ingress_mapping_cfg_vlanid);
const Function kTpid = FUNCTION(oc2_vex_ingress_mapping_cfg_tpid);

const std::string kTypes = "http://openconfig.net/yang/vlan-types";

std::string validated(const std::string& node) {
  return "validate_data_ns node=" + node + " ns=types zero=0";
}

Case action(const std::string& name, const std::string& tree, const std::string& native) {
  return {.name = name,
          .function = kAction,
          .tree = tree,
          .calls = lines(validated("vlan-stack-action"), rewrite("rewrite-type", native, "vlan-stack-action")),
          .failures = "r"};
}

const std::string kBadAction = "Invalid value for vlan-stack-action provided";
const std::string kActionRecorded =
    lines(strdup("vlan-stack-action", "vlan-stack-action"), strdup(kBadAction, "YFW_MAP"), "error_path");

Case bad_action(const std::string& name, const std::string& tree, const std::string& asked) {
  return {.name = name,
          .function = kAction,
          .tree = tree,
          .calls = asked + kActionRecorded + lines(rewrite("rewrite-type", "-", "vlan-stack-action")),
          .failures = "r",
          .error_tag = "vlan-stack-action",
          .error_message = kBadAction};
}

Case foreign(const std::string& name, const Function& function, const std::string& leaf, const std::string& tree) {
  const std::string message = "namespace " + kTypes + " is missing for " + leaf;
  return {.name = name,
          .function = function,
          .tree = tree,
          .calls = lines(validated(leaf), strdup(message, "YFW MAP"), "error_path"),
          .result = CERR_INVALID_VALUE,
          .errors = lines("ERR  " + leaf + " node validation failed!"),
          .error_message = message};
}

INSTANTIATE_TEST_SUITE_P(
    StackAction, IngressMapping,
    testing::Values(action("push", "vlan-stack-action=PUSH @vns=types", "push1"),
                    action("pop", "vlan-stack-action=POP @create @vns=types", "pop1"),
                    action("swap", "vlan-stack-action=SWAP @replace @vns=types", "translate1to1"),
                    bad_action("unknown", "vlan-stack-action=push @vns=types", lines(validated("vlan-stack-action"))),
                    bad_action("missing", "vlan-stack-action", ""), bad_action("empty", "vlan-stack-action=''", ""),
                    foreign("unbound", kAction, "vlan-stack-action", "vlan-stack-action=PUSH"),
                    foreign("of_another_module", kAction, "vlan-stack-action", "vlan-stack-action=PUSH @vns=oc"),
                    Case{.name = "read",
                         .function = kAction,
                         .tree = "vlan-stack-action=PUSH",
                         .kinds = kReads,
                         .calls = lines(rewrite("rewrite-type", "PUSH", "-")),
                         .failures = "r"},
                    Case{.name = "read_without_value",
                         .function = kAction,
                         .tree = "vlan-stack-action",
                         .kinds = kReads,
                         .calls = lines(rewrite("rewrite-type", "-", "-")),
                         .failures = "r"},
                    Case{.name = "delete_takes_the_container",
                         .function = kAction,
                         .tree = "vlan-stack-action=PUSH @delete",
                         .calls = lines(rewrite("", "-", "vlan-stack-action")),
                         .failures = "r"}),
    case_name);

Case tpid(const std::string& name, const std::string& tree, const std::string& native) {
  return {.name = name,
          .function = kTpid,
          .tree = tree,
          .calls = lines(validated("tpid"), rewrite("outer-tag-type", native, "tpid")),
          .failures = "r"};
}

const std::string kBadTpid = "Invalid value for tpid provided";

Case bad_tpid(const std::string& name, const std::string& tree, const std::string& asked) {
  return {.name = name,
          .function = kTpid,
          .tree = tree,
          .calls = asked + lines(strdup("tpid", "tpid"), strdup(kBadTpid, "YFW_MAP"), "error_path"),
          .result = CERR_INVALID_VALUE,
          .error_tag = "tpid",
          .error_message = kBadTpid};
}

INSTANTIATE_TEST_SUITE_P(Tpid, IngressMapping,
                         testing::Values(tpid("q", "tpid=TPID_0X8100 @vns=types", "match-dot1q"),
                                         tpid("ad", "tpid=TPID_0X88A8 @vns=types", "match-dot1ad"),
                                         bad_tpid("another", "tpid=TPID_0X9100 @vns=types", lines(validated("tpid"))),
                                         bad_tpid("lower_case", "tpid=tpid_0x8100 @vns=types",
                                                  lines(validated("tpid"))),
                                         bad_tpid("missing", "tpid", ""), bad_tpid("empty", "tpid=''", ""),
                                         foreign("unbound", kTpid, "tpid", "tpid=TPID_0X8100"),
                                         foreign("of_another_module", kTpid, "tpid", "tpid=TPID_0X8100 @vns=cfg"),
                                         Case{.name = "read",
                                              .function = kTpid,
                                              .tree = "tpid=TPID_0X8100",
                                              .kinds = kReads,
                                              .calls = lines(rewrite("outer-tag-type", "TPID_0X8100", "-")),
                                              .failures = "r"},
                                         Case{.name = "read_without_value",
                                              .function = kTpid,
                                              .tree = "tpid",
                                              .kinds = kReads,
                                              .calls = lines(rewrite("outer-tag-type", "-", "-")),
                                              .failures = "r"},
                                         Case{.name = "delete_takes_the_leaf",
                                              .function = kTpid,
                                              .tree = "tpid @remove",
                                              .calls = lines(rewrite("outer-tag-type", "-", "tpid")),
                                              .failures = "r"}),
                         case_name);

INSTANTIATE_TEST_SUITE_P(VlanId, IngressMapping,
                         testing::Values(Case{.name = "read",
                                              .function = kId,
                                              .tree = "vlan-id=77",
                                              .kinds = kReads,
                                              .calls = lines(rewrite("outer-tag-value", "77", "-")),
                                              .failures = "r"},
                                         Case{.name = "read_without_value",
                                              .function = kId,
                                              .tree = "vlan-id",
                                              .kinds = kReads,
                                              .calls = lines(rewrite("outer-tag-value", "-", "-")),
                                              .failures = "r"},
                                         Case{.name = "write_takes_the_text_as_it_is",
                                              .function = kId,
                                              .tree = "vlan-id=70000",
                                              .calls = lines(rewrite("outer-tag-value", "70000", "vlan-id")),
                                              .failures = "r"},
                                         Case{.name = "delete_takes_the_leaf",
                                              .function = kId,
                                              .tree = "vlan-id=77 @delete",
                                              .calls = lines(rewrite("outer-tag-value", "-", "vlan-id")),
                                              .failures = "r"}),
                         case_name);

// The older tag stays with the framework, which frees it with the request; the older message is released.
TEST(IngressMappingErrors, leave_an_older_tag_alone_and_release_an_older_message) {
  for (const Function& function : {kAction, kTpid}) {
    Recorder framework;
    framework.own(framework.state.error_tag, "older-tag");
    framework.own(framework.state.error_message, "older-message");
    framework.expect_unreleased(1);
    Tree tree("leaf=x @vns=types");
    function(framework.ctx(), tree.root(), 0, framework.output());
    const std::string calls = framework.calls();
    EXPECT_EQ(calls.find("free text=older-tag"), std::string::npos) << calls;
    EXPECT_NE(calls.find("free text=older-message"), std::string::npos) << calls;
    EXPECT_STREQ(framework.state.error_tag, "leaf");
  }
}

TEST(IngressMappingErrors, of_a_foreign_value_do_not_touch_the_tag) {
  Recorder framework;
  framework.own(framework.state.error_tag, "older-tag");
  Tree tree("tpid=TPID_0X8100");
  oc2_vex_ingress_mapping_cfg_tpid(framework.ctx(), tree.root(), framework.output());
  EXPECT_STREQ(framework.state.error_tag, "older-tag");
}

TEST(StateLeaves, point_at_the_encapsulation_of_the_sub_interface) {
  for (const Function& function :
       {FUNCTION(oc2_vex_match_container_state_leaves), FUNCTION(oc2_vex_ingressmapping_container_state_leaves)}) {
    for (const auto& [tree, value] : {std::pair{"vlan-id", "-"}, std::pair{"vlan-id=100", "100"}}) {
      check(
          {.name = "",
           .function = function,
           .tree = tree,
           .kinds = kReads,
           .calls = lines(add("/vlan/nodes/node/interfaces/interface/encapsulation-details", "oper", value, "-", 0, 1)),
           .failures = "r"});
    }
    for (const char* const tree : {"vlan-id=100", "vlan-id=100 @delete", "vlan-id @remove", "vlan-id=1 @replace"}) {
      check({.name = "", .function = function, .tree = tree});
    }
  }
}

}  // namespace
}  // namespace translations
