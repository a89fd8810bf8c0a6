// Opening the OpenConfig sub-interface of a native operational interface entry.
#include "plugin/translations/case.h"

namespace translations {
namespace {

const Function kEntry = FUNCTION(ymap_vo_oc_vlan_vexnetosl2ethinfraoper_list_lvla_vlan_interfaces_interface);

const std::string kAsked = node_info("/vlan/nodes/node/interfaces/interface", "interface");

std::function<void(Recorder&)> named(const char* name) {
  return
      [name](Recorder& framework) { framework.node_info("/vlan/nodes/node/interfaces/interface", "interface", name); };
}

std::string search_interface(const std::string& parent) {
  return "search_list tree=output slot=yes path=/interfaces/interface value=" + parent + " key=name ns=ocif";
}

std::string search_subinterface(const std::string& parent, const std::string& index) {
  return "search_list tree=/interfaces/interface[" + parent +
         "] slot=yes path=/subinterfaces/subinterface value=" + index + " key=index ns=-";
}

std::string add_subinterface(const std::string& tree) {
  return lines("copy_trim_path path=/interfaces/interface",
               "add_path tree=" + tree +
                   " path=/interfaces/interface/subinterfaces/subinterface ns=ocif value=- source=- slot=list_slot "
                   "list=1 flags=32",
               "free_trim_path");
}

const std::string kClosing = lines("copy_trim_path path=/interfaces/interface/subinterfaces/subinterface");

// The calls for an interface that the output does not have.
std::string new_interface(const std::string& parent) {
  return lines(kAsked, search_interface(parent), add("/interfaces/interface", "ocif", "-", "-", 1, 0, "yes"),
               add("/interfaces/interface/name", "ocif", parent, "-", 0, 0)) +
         add_subinterface("/interfaces/interface");
}

Case entry(const std::string& name, std::function<void(Recorder&)> given, std::string calls, std::string failures) {
  return {.name = name,
          .function = kEntry,
          .tree = "oper:interface { encapsulation-details }",
          .kinds = {kReadState, kRead, kEdit},
          .given = std::move(given),
          .calls = std::move(calls),
          .failures = std::move(failures)};
}

class SubinterfaceEntry : public testing::TestWithParam<Case> {};

TEST_P(SubinterfaceEntry, is_opened) {
  check(GetParam());
}

// An interface that is there, with or without the sub-interface.
void known_interface(Recorder& framework) {
  named("Bundle-Ether1.100")(framework);
  framework.list_entry("/interfaces/interface", "Bundle-Ether1");
}

void known_subinterface(Recorder& framework) {
  known_interface(framework);
  framework.list_entry("/subinterfaces/subinterface", "100");
}

const std::string kLongParent(255, 'n');
const std::string kLongName = kLongParent + ".7";
const std::string kLongerParent = "n" + kLongParent;
const std::string kLongerName = kLongerParent + ".7";

// What is done while the copy of a longer name is held.
std::string with_copy_of(const std::string& name, const std::string& calls) {
  return lines("strdup text=" + name + " owner=YFW_MAP") + calls + lines("free text=" + name);
}

INSTANTIATE_TEST_SUITE_P(
    Table, SubinterfaceEntry,
    testing::Values(
        entry("known_subinterface", known_subinterface,
              lines(kAsked, search_interface("Bundle-Ether1"), search_subinterface("Bundle-Ether1", "100")) + kClosing,
              ""),
        entry(
            "second_dot_belongs_to_the_index",
            [](Recorder& framework) {
              named("Ethernet1.2.3")(framework);
              framework.list_entry("/interfaces/interface", "Ethernet1");
              framework.list_entry("/subinterfaces/subinterface", "2.3");
            },
            lines(kAsked, search_interface("Ethernet1"), search_subinterface("Ethernet1", "2.3")) + kClosing, ""),
        entry("main_interface", named("Bundle-Ether1"), lines(kAsked), ""),
        entry("nothing_before_the_dot", named(".100"), lines(kAsked), ""),
        entry("nothing_after_the_dot", named("Ethernet1."), lines(kAsked), ""),
        entry("only_a_dot", named("."), lines(kAsked), ""), entry("empty", named(""), lines(kAsked), ""),
        entry("no_text", named(nullptr), lines(kAsked), ""),
        entry("main_interface_of_a_longer_name", named(kLongerParent.c_str()), lines(kAsked), ""),
        entry(
            "longer_name",
            [](Recorder& framework) {
              named(kLongerName.c_str())(framework);
              framework.list_entry("/interfaces/interface", kLongerParent);
              framework.list_entry("/subinterfaces/subinterface", "7");
            },
            lines(kAsked) + with_copy_of(kLongerName, lines(search_interface(kLongerParent),
                                                            search_subinterface(kLongerParent, "7")) +
                                                          kClosing),
            "")),
    case_name);

// Adds in a tree of their own, so the failing ones are told one by one below.
TEST(SubinterfaceEntryOfNewInterface, is_added_with_its_interface) {
  for (const auto& [name, parent] :
       {std::pair<std::string, std::string>{"Bundle-Ether1.100", "Bundle-Ether1"}, {kLongName, kLongParent}}) {
    Recorder framework(kReadState);
    named(name.c_str())(framework);
    Tree tree("oper:interface");
    EXPECT_EQ(kEntry(framework.ctx(), tree.root(), 0, framework.output()), 0u);
    EXPECT_EQ(framework.calls(), new_interface(parent)) << "and no trimmed path left behind";
    EXPECT_EQ(framework.state.list_slot.node, &framework.added(1));
  }
}

TEST(SubinterfaceEntryOfNewInterface, is_added_under_a_longer_name) {
  Recorder framework(kReadState);
  named(kLongerName.c_str())(framework);
  Tree tree("oper:interface");
  EXPECT_EQ(kEntry(framework.ctx(), tree.root(), 0, framework.output()), 0u);
  const std::string asked = lines(kAsked);
  EXPECT_EQ(framework.calls(), asked + with_copy_of(kLongerName, new_interface(kLongerParent).substr(asked.size())));
}

TEST(SubinterfaceEntryFailures, of_the_copy_of_a_longer_name) {
  Recorder framework(kReadState);
  named(kLongerName.c_str())(framework);
  framework.answer("strdup", 1);
  Tree tree("oper:interface");
  EXPECT_EQ(kEntry(framework.ctx(), tree.root(), 0, framework.output()), CERR_INVALID_ARGS);
  EXPECT_EQ(framework.calls(), lines(kAsked, "strdup text=" + kLongerName + " owner=YFW_MAP", "error_path"));
  EXPECT_EQ(framework.errors(), lines("ERR Failed to copy the interface name!"));
}

// An interface that the framework added without telling where: what is below it is still asked for.
TEST(SubinterfaceEntryOfNewInterface, is_added_below_nothing_where_the_interface_is_not_told) {
  Recorder framework(kReadState);
  named("Bundle-Ether1.100")(framework);
  framework.leave_slots_empty();
  Tree tree("oper:interface");
  EXPECT_EQ(kEntry(framework.ctx(), tree.root(), 0, framework.output()), 0u);
  EXPECT_EQ(framework.calls(), lines(kAsked, search_interface("Bundle-Ether1"),
                                     add("/interfaces/interface", "ocif", "-", "-", 1, 0, "yes"),
                                     add("/interfaces/interface/name", "ocif", "Bundle-Ether1", "-", 0, 0)) +
                                   add_subinterface("-"));
  EXPECT_EQ(framework.state.list_slot.node, nullptr);
}

TEST(SubinterfaceEntryOfNewInterface, returns_the_failure_of_any_add) {
  const std::vector<std::string> calls{
      lines(kAsked, search_interface("Ethernet1"), add("/interfaces/interface", "ocif", "-", "-", 1, 0, "yes")),
      lines(kAsked, search_interface("Ethernet1"), add("/interfaces/interface", "ocif", "-", "-", 1, 0, "yes"),
            add("/interfaces/interface/name", "ocif", "Ethernet1", "-", 0, 0)),
      new_interface("Ethernet1")};
  for (int n = 1; n <= 3; ++n) {
    Recorder framework(kReadState);
    named("Ethernet1.5")(framework);
    framework.answer("add_path", 0xaaf20055, n);
    Tree tree("oper:interface");
    EXPECT_EQ(kEntry(framework.ctx(), tree.root(), 0, framework.output()), 0xaaf20055);
    EXPECT_EQ(framework.calls(), calls[static_cast<std::size_t>(n - 1)]);
  }
}

// Both trimmed paths are seen to, whether the add between them succeeds or not.
TEST(SubinterfaceEntryOfKnownInterface, is_added_below_it) {
  for (const cerrno result : {cerrno{0}, cerrno{0xaaf20055}}) {
    Recorder framework(kReadState);
    known_interface(framework);
    framework.answer("add_path", result);
    Tree tree("oper:interface");
    EXPECT_EQ(kEntry(framework.ctx(), tree.root(), 0, framework.output()), result);
    EXPECT_EQ(framework.calls(),
              lines(kAsked, search_interface("Bundle-Ether1"), search_subinterface("Bundle-Ether1", "100")) +
                  add_subinterface("/interfaces/interface[Bundle-Ether1]") + kClosing);
  }
}

TEST(SubinterfaceEntryOfKnownInterface, is_current_where_it_was_there) {
  Recorder framework(kReadState);
  known_subinterface(framework);
  Tree tree("oper:interface");
  kEntry(framework.ctx(), tree.root(), 0, framework.output());
  ASSERT_NE(framework.state.list_slot.node, nullptr);
  EXPECT_STREQ(framework.state.list_slot.node->tag, "subinterface[100]");
}

// Any failure of a search means that the entry is not there; that of the key is the result.
TEST(SubinterfaceEntryFailures, of_look_ups) {
  for (const int nth : {1, 2}) {
    Recorder framework(kReadState);
    known_subinterface(framework);
    framework.answer("search_list", 0xaaf2a000, nth);
    Tree tree("oper:interface");
    EXPECT_EQ(kEntry(framework.ctx(), tree.root(), 0, framework.output()), 0u);
    EXPECT_NE(framework.calls().find("path=/interfaces/interface/subinterfaces/subinterface ns=ocif"),
              std::string::npos);
  }
  Case unknown = entry(
      "", [](Recorder&) {}, lines(kAsked), "");
  unknown.result = kNotThere;
  check(unknown);
}

TEST(SubinterfaceEntryFailures, of_trimming_change_nothing) {
  Recorder framework(kReadState);
  known_interface(framework);
  framework.answer("copy_trim_path", 5);
  Tree tree("oper:interface");
  EXPECT_EQ(kEntry(framework.ctx(), tree.root(), 0, framework.output()), 0u);
}

}  // namespace
}  // namespace translations
