// The mode of a switched VLAN on its way to the native trunk configuration.
#include "plugin/translations/case.h"

namespace translations {
namespace {

class SwitchedVlanMode : public testing::TestWithParam<Case> {};

TEST_P(SwitchedVlanMode, translates) {
  check(GetParam());
}

const Function kMode = FUNCTION(oc2_vex_switched_vlan_cfg_interfacemode);
const std::string kTypes = "http://openconfig.net/yang/vlan-types";
const std::string kValidated = "validate_data_ns node=interface-mode ns=types zero=0";
const std::string kBadMode = "Invalid value for switched-vlan/interface-mode provided";
const std::string kForeignMode = "namespace " + kTypes + " is missing for switched-vlan/interface-mode";

Case mode(const std::string& name, const std::string& value, const std::string& native) {
  return {.name = name,
          .function = kMode,
          .tree = "interface-mode=" + value + " @vns=types",
          .calls = lines(kValidated, trunk("vlan-switched/mode", native, "interface-mode")),
          .failures = "r"};
}

Case bad_mode(const std::string& name, const std::string& tree, const std::string& asked) {
  return {.name = name,
          .function = kMode,
          .tree = tree,
          .calls = asked + lines(strdup("interface-mode", "switched-vlan/interface-mode"), strdup(kBadMode, "YFW_MAP"),
                                 "error_path", trunk("vlan-switched/mode", "-", "interface-mode")),
          .failures = "r",
          .error_tag = "interface-mode",
          .error_message = kBadMode};
}

Case foreign_mode(const std::string& name, const std::string& tree) {
  return {.name = name,
          .function = kMode,
          .tree = tree,
          .calls = lines(kValidated, strdup(kForeignMode, "YFW MAP"), "error_path"),
          .result = CERR_INVALID_VALUE,
          .errors = lines("ERR  switched-vlan/interface-mode validation failed!"),
          .error_message = kForeignMode};
}

INSTANTIATE_TEST_SUITE_P(Table, SwitchedVlanMode,
                         testing::Values(mode("access", "ACCESS", "access"), mode("trunk", "TRUNK", "trunk"),
                                         bad_mode("hybrid", "interface-mode=HYBRID @vns=types", lines(kValidated)),
                                         bad_mode("missing", "interface-mode", ""),
                                         bad_mode("empty", "interface-mode=''", ""),
                                         foreign_mode("foreign", "interface-mode=TRUNK @vns=oc"),
                                         foreign_mode("of_no_module", "interface-mode=TRUNK"),
                                         Case{.name = "read",
                                              .function = kMode,
                                              .tree = "interface-mode=TRUNK",
                                              .kinds = kReads,
                                              .calls = lines(trunk("vlan-switched/mode", "TRUNK", "-"),
                                                             trunk("vlan-switched/trunk-tag-type", "TRUNK", "-")),
                                              .failures = ".r"},
                                         Case{.name = "delete_takes_the_switched_container",
                                              .function = kMode,
                                              .tree = "interface-mode=TRUNK @delete",
                                              .calls = lines(trunk("vlan-switched/", "-", "interface-mode")),
                                              .failures = "r"}),
                         case_name);

TEST(SwitchedVlanModeErrors, replace_older_texts) {
  Recorder framework;
  framework.own(framework.state.error_tag, "older-tag");
  framework.own(framework.state.error_message, "older-message");
  Tree tree("interface-mode=HYBRID @vns=types");
  oc2_vex_switched_vlan_cfg_interfacemode(framework.ctx(), tree.root(), framework.output());
  const std::string calls = framework.calls();
  EXPECT_NE(calls.find("free text=older-tag\nstrdup text=interface-mode"), std::string::npos) << calls;
  EXPECT_NE(calls.find("free text=older-message\nstrdup text='Invalid value"), std::string::npos) << calls;
}

}  // namespace
}  // namespace translations
