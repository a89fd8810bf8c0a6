// Native rewrite read back as the ingress mapping.
#include "plugin/translations/case.h"

namespace translations {
namespace {

class RewriteReadBack : public testing::TestWithParam<Case> {};

TEST_P(RewriteReadBack, translates) {
  check(GetParam());
}

const Function kType =
    FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_rewritetype);
const Function kTagType =
    FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_outertagtype);
const Function kTagValue =
    FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfracfg_man_leaf_lvla_ethernetservice_rewrite_outertagvalue);

constexpr char kRewrite[] = "/interface-configurations/interface-configuration/ethernet-service/rewrite";
const std::string kMapping = "/interfaces/interface/subinterfaces/subinterface/vlan/ingress-mapping/config/";
const std::string kAsked = node_info(kRewrite, "rewrite-type");

std::function<void(Recorder&)> rewrite_type(const char* type) {
  return [type](Recorder& framework) { framework.node_info(kRewrite, "rewrite-type", type); };
}

Case type(const std::string& name, const std::string& native, const std::string& told) {
  const bool maps = !told.empty();
  return {.name = "type_" + name,
          .function = kType,
          .tree = "cfg:rewrite-type" + native,
          .kinds = {kRead, kReadState, kEdit},
          .calls = maps ? lines(add(kMapping + "vlan-stack-action", "oc", told, "-", 0, 0, "yes"), kMarked) : "",
          .failures = maps ? "r" : ""};
}

Case tag_type(const std::string& name, const char* rewrite, const std::string& native, const std::string& told) {
  const bool maps = !told.empty();
  return {.name = "tag_type_" + name,
          .function = kTagType,
          .tree = "cfg:outer-tag-type" + native,
          .kinds = {kRead, kReadState, kEdit},
          .given = rewrite_type(rewrite),
          .calls = maps ? lines(kAsked, add(kMapping + "tpid", "oc", told, "-", 0, 0, "yes"), kMarked) : lines(kAsked),
          .failures = maps ? "r" : ""};
}

Case tag_value(const std::string& name, const char* rewrite, const std::string& native, const std::string& told) {
  const bool maps = !told.empty();
  return {.name = "tag_value_" + name,
          .function = kTagValue,
          .tree = "cfg:outer-tag-value" + native,
          .kinds = {kRead, kReadState, kEdit},
          .given = rewrite_type(rewrite),
          .calls = maps ? lines(kAsked, add(kMapping + "vlan-id", "oc", told, "-", 0, 0)) : lines(kAsked),
          .failures = maps ? "r" : ""};
}

INSTANTIATE_TEST_SUITE_P(
    Table, RewriteReadBack,
    testing::Values(type("push", "=push1", "PUSH"), type("pop", "=pop1", "POP"), type("swap", "=translate1to1", "SWAP"),
                    type("other", "=push2", ""), type("empty", "=''", ""), type("missing", "", ""),
                    tag_type("q", "push1", "=match-dot1q", "TPID_0X8100"),
                    tag_type("ad", "push1", "=match-dot1ad", "TPID_0X88A8"),
                    tag_type("of_a_swap", "translate1to1", "=match-dot1q", "TPID_0X8100"),
                    tag_type("of_a_pop", "pop1", "=match-dot1q", ""), tag_type("of_another", "x", "=match-dot1q", ""),
                    tag_type("of_an_empty_type", "", "=match-dot1q", ""),
                    tag_type("of_a_type_without_text", nullptr, "=match-dot1q", ""),
                    tag_type("other", "push1", "=vlan-type-dot1q", ""), tag_type("missing", "push1", "", ""),
                    tag_value("of_a_push", "push1", "=100", "100"),
                    tag_value("of_a_swap", "translate1to1", "=99999", "99999"),
                    tag_value("of_a_pop", "pop1", "=100", ""), tag_value("of_another", "push2", "=100", ""),
                    tag_value("missing", "push1", "", "-")),
    case_name);

// A rewrite type that is not there is nothing to tell, and no failure.
TEST(RewriteReadBackLookUp, does_not_pass_its_failure_on) {
  for (const Function& function : {kTagType, kTagValue}) {
    check({.name = "", .function = function, .tree = "cfg:leaf=match-dot1q", .kinds = {kRead}, .calls = lines(kAsked)});
  }
}

TEST(RewriteReadBackIdentity, is_marked_where_a_leaf_was_made) {
  for (const bool made : {true, false}) {
    for (const auto& [function, native] :
         {std::pair{kType, "cfg:rewrite-type=pop1"}, std::pair{kTagType, "cfg:outer-tag-type=match-dot1q"}}) {
      Recorder framework(kRead);
      framework.node_info(kRewrite, "rewrite-type", "push1");
      if (!made) framework.leave_slots_empty();
      Tree tree(native);
      EXPECT_EQ(function(framework.ctx(), tree.root(), 0, framework.output()), 0u);
      EXPECT_EQ(framework.calls().find(kMarked) != std::string::npos, made);
      if (made) {
        EXPECT_STREQ(framework.added().value_ns, "http://openconfig.net/yang/vlan-types");
        EXPECT_EQ(framework.added().key_flags, 0x10);
      }
    }
  }
}

}  // namespace
}  // namespace translations
