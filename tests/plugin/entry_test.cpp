// Entry walkers: what each accepts, and what becomes of everything else that they are handed.
#include <gtest/gtest.h>

#include "plugin/walk.h"

namespace {

using seen::who_traced;
using walks::kEdit;
using walks::kFailure;
using walks::kRead;
using walks::kReadState;
using walks::lines;
using walks::Recorder;
using walks::Tree;
using walks::Walk;

struct Entry {
  const char* name;      // the walker is augment_NAME
  const char* accepted;  // the element that it knows
  const char* ns;
  const char* handler;  // of that element

  std::string prefix() const {
    return std::string(ns) == "oc" ? "ymap_ov_oc_vlan_openconfigvlan_" : "ymap_vo_oc_vlan_vexnetosl2ethinfracfg_";
  }
  std::string exported() const { return prefix() + "augment_" + name; }
  yfw_map_walker_fn walker() const { return seen::function<yfw_map_walker_fn>(exported()); }
  std::string hook() const { return std::string(name) + "_parse_augments"; }
  std::string element(const std::string& attributes = "") const {
    return std::string(ns) + ":" + accepted + " " + attributes;
  }
};

std::ostream& operator<<(std::ostream& out, const Entry& entry) {
  return out << entry.name;
}

const auto kOpenConfig = testing::Values(Entry{"lvla_subinterface", "vlan", "oc", "cont_lvla_vlan"},
                                         Entry{"lvla_config", "tpid", "oc", "leaf_lvla_tpid"},
                                         Entry{"lvla_state", "tpid", "oc", "leaf_lvlb_tpid"},
                                         Entry{"lvla_ethernet", "switched-vlan", "oc", "cont_lvla_switchedvlan"},
                                         Entry{"lvla_aggregation", "switched-vlan", "oc", "cont_lvlb_switchedvlan"},
                                         Entry{"lvla_interface", "routed-vlan", "oc", "cont_lvla_routedvlan"});

const auto kNative = testing::Values(
    Entry{"lvla_interface_configuration", "user-network-interface", "cfg", "leaf_lvla_usernetworkinterface"},
    Entry{"lvlb_interface_configuration", "vlan-sub-configuration", "cfg", "cont_lvla_vlansubconfiguration"},
    Entry{"lvlc_interface_configuration", "ethernet-service", "cfg", "cont_lvla_ethernetservice"},
    Entry{"lvld_interface_configuration", "ethernet-bng", "cfg", "cont_lvla_ethernetbng"},
    Entry{"lvle_interface_configuration", "mac-accounting", "cfg", "cont_lvla_macaccounting"},
    Entry{"lvlf_interface_configuration", "ethernet-features", "cfg", "cont_lvla_ethernetfeatures"},
    Entry{"lvlg_interface_configuration", "carrier-delay", "cfg", "cont_lvla_carrierdelay"},
    Entry{"lvlh_interface_configuration", "vlan-trunk-configuration", "cfg", "cont_lvla_vlantrunkconfiguration"},
    Entry{"lvla_l2_transport", "l2-protocols", "cfg", "cont_lvla_l2protocols"},
    Entry{"lvlb_l2_transport", "propagate-remote-status", "cfg", "leaf_lvla_propagateremotestatus"},
    Entry{"lvlc_l2_transport", "l2-ethernet-features", "cfg", "cont_lvla_l2ethernetfeatures"});

std::string entry_name(const testing::TestParamInfo<Entry>& info) {
  return info.param.name;
}

// --- Every entry walker ---

class EveryEntry : public testing::TestWithParam<Entry> {};

TEST_P(EveryEntry, refuses_null_arguments) {
  for (const bool has_node : {true, false}) {
    Recorder recorder;
    Tree tree(GetParam().element());
    EXPECT_EQ(
        GetParam().walker()(recorder.ctx(), has_node ? tree.root() : nullptr, has_node ? nullptr : recorder.output()),
        CERR_INVALID_ARGS);
    EXPECT_EQ(recorder.log(), lines("TRC Start", "ERR Invalid arguments passed!"));
    EXPECT_EQ(recorder.trace(), lines("TRC " + GetParam().exported() + ": Start",
                                      "ERR " + GetParam().exported() + ": Invalid arguments passed!"));
    EXPECT_EQ(recorder.calls(), lines("error_path"));
  }
}

TEST_P(EveryEntry, stops_on_a_null_context) {
  Tree tree(GetParam().element());
  EXPECT_DEATH(GetParam().walker()(nullptr, tree.root(), tree.root()), R"(Assertion `\(\(void \*\)0\) != ctx' failed)");
  EXPECT_DEATH(GetParam().walker()(nullptr, nullptr, nullptr), R"(Assertion `\(\(void \*\)0\) != ctx' failed)");
}

TEST_P(EveryEntry, refuses_children_that_are_announced_and_absent) {
  const Walk walk(GetParam().walker(), kEdit, GetParam().element("@missing"));
  EXPECT_EQ(walk.code, CERR_BAD_TREE);
  EXPECT_EQ(walk.recorder.log(), lines("TRC Start", "ERR Failed to get subtrees!", "TRC End"));
  EXPECT_EQ(walk.seen(), "");
}

TEST_P(EveryEntry, names_the_tag_and_hands_on_the_element_that_it_accepts) {
  const Entry& entry = GetParam();
  const Walk walk(entry.walker(), kEdit, entry.element("{ }"),
                  [&entry](Walk& w) { w.recorder.answer(entry.handler, kFailure); });
  EXPECT_EQ(walk.code, kFailure);
  EXPECT_EQ(walk.recorder.trace().find(lines("TRC " + entry.exported() + ": Start",
                                             "TRC " + entry.exported() + ": Processing tag '" + entry.accepted + "'")),
            0u)
      << walk.recorder.trace();
  EXPECT_EQ(walk.handlers().find(std::string(entry.handler) + " node=" + entry.accepted), 0u) << walk.handlers();
}

TEST_P(EveryEntry, gives_a_foreign_element_to_its_hook) {
  const Entry& entry = GetParam();
  const Walk walk(entry.walker(), kEdit, "x:stranger { }",
                  [&entry](Walk& w) { w.recorder.answer(entry.hook(), kFailure); });
  EXPECT_EQ(walk.code, kFailure);
  EXPECT_EQ(walk.handlers(), lines(entry.hook() + " node=stranger"));
}

INSTANTIATE_TEST_SUITE_P(OpenConfig, EveryEntry, kOpenConfig, entry_name);
INSTANTIATE_TEST_SUITE_P(NativeCfg, EveryEntry, kNative, entry_name);

// --- The OpenConfig family's ---

class OpenConfigEntry : public testing::TestWithParam<Entry> {};

TEST_P(OpenConfigEntry, writes_no_end) {
  const Entry& entry = GetParam();
  for (const std::string& tree : {entry.element("{ }"), std::string("stranger"), std::string("x:stranger @delete")}) {
    const Walk walk(entry.walker(), kRead, tree);
    EXPECT_EQ((lines("") + who_traced(walk.recorder, "End")).find("\naugment_"), std::string::npos) << tree;
  }
}

TEST_P(OpenConfigEntry, refuses_an_unknown_element_of_its_own_namespace_in_an_edit) {
  const Walk walk(GetParam().walker(), kEdit, "stranger { }");
  EXPECT_EQ(walk.code, CERR_UNSUPPORTED);
  EXPECT_EQ(walk.recorder.log(),
            lines("TRC Start", "TRC Processing tag 'stranger'", "ERR Unsupported tag is specified in the request."));
  EXPECT_STREQ(walk.state().error_tag, "stranger");
  EXPECT_EQ(walk.recorder.calls(), lines("strdup text=stranger owner='YFW MAP'", "error_path"));
}

TEST_P(OpenConfigEntry, skips_an_unknown_element_of_its_own_namespace_in_a_read) {
  const Walk walk(GetParam().walker(), kRead, "stranger { other }");
  EXPECT_EQ(walk.code, 0u);
  EXPECT_EQ(walk.recorder.errors(), lines("ERR Unsupported tag is specified in the request."));
  EXPECT_EQ(walk.seen(), "");
}

TEST_P(OpenConfigEntry, refuses_a_foreign_element_that_is_added) {
  const Walk walk(GetParam().walker(), kEdit, "x:stranger { }");
  EXPECT_EQ(walk.code, CERR_UNKNOWN_AUGMENT);
  EXPECT_STREQ(walk.state().error_tag, "stranger");
  EXPECT_EQ(walk.recorder.errors(), "");
  EXPECT_EQ(walk.recorder.calls(), lines("strdup text=stranger owner='YFW MAP'", "error_path"));
}

TEST_P(OpenConfigEntry, releases_the_older_error_tag_first) {
  const Walk walk(GetParam().walker(), kEdit, "stranger { }",
                  [](Walk& w) { w.recorder.own(w.recorder.state.error_tag, "older"); });
  EXPECT_EQ(walk.recorder.calls(), lines("free text=older", "strdup text=stranger owner='YFW MAP'", "error_path"));
}

TEST_P(OpenConfigEntry, gives_an_element_without_a_namespace_to_its_hook) {
  for (const char* const element : {"stranger @nons { }", "x @notag @nons { }"}) {
    const Walk walk(GetParam().walker(), kRead, element);
    EXPECT_EQ(walk.code, 0u) << element;
    EXPECT_EQ(walk.handlers().find(GetParam().hook() + " node="), 0u) << walk.handlers();
  }
}

TEST_P(OpenConfigEntry, accepts_its_element_without_a_namespace) {
  const Entry& entry = GetParam();
  const Walk walk(entry.walker(), kEdit, std::string(entry.accepted) + " @nons { }",
                  [&entry](Walk& w) { w.recorder.answer(entry.handler, kFailure); });
  EXPECT_EQ(walk.code, kFailure);
}

struct MissingTag {
  uint32_t kind;
  const char* element;
  cerrno code;
};

TEST_P(OpenConfigEntry, goes_on_with_an_element_without_a_tag) {
  for (const MissingTag& c :
       {MissingTag{kEdit, "x @notag { y }", CERR_UNSUPPORTED},
        MissingTag{kEdit, "x @notag @nons { y }", CERR_UNKNOWN_AUGMENT},
        MissingTag{kRead, "x @notag { y }", CERR_BAD_TREE}, MissingTag{kReadState, "x @notag", CERR_BAD_TREE},
        MissingTag{kEdit, "x:x @notag { y }", CERR_UNKNOWN_AUGMENT}, MissingTag{kEdit, "x:x @notag @delete { y }", 0},
        MissingTag{kRead, "x:x @notag { y }", 0}}) {
    const Walk walk(GetParam().walker(), c.kind, c.element);
    EXPECT_EQ(walk.code, c.code) << c.element << " " << c.kind;
    EXPECT_EQ(
        walk.recorder.log().find(lines("TRC Start", "ERR Tag name is not available!", "TRC Processing tag '(null)'")),
        0u)
        << walk.recorder.log();
    EXPECT_EQ(walk.state().error_tag, nullptr);
  }
}

struct Childless {
  const char* name;
  uint32_t kind;
  const char* attributes;
  int walks;
  const char* second;  // arguments of the handler in the second walk
};

TEST_P(OpenConfigEntry, walks_a_childless_element_of_a_read_or_a_delete_twice) {
  const Entry& entry = GetParam();
  const std::string handler = std::string(entry.handler) + " node=" + entry.accepted;
  const std::string count = handler.find("cont_") == 0 ? " count=0" : "";
  for (const Childless& c :
       {Childless{"merge", kEdit, "", 1, ""}, Childless{"read", kRead, "", 2, ""},
        Childless{"state read", kReadState, "", 2, ""}, Childless{"delete", kEdit, "@delete", 2, " op=4"},
        Childless{"remove", kEdit, "@remove", 2, " op=4"}, Childless{"no children", kRead, "{ }", 2, ""},
        Childless{"with a child", kRead, "{ x:y }", 1, ""}}) {
    Walk walk(entry.walker(), c.kind, entry.element(c.attributes), [&entry](Walk& w) {
      const bool is_leaf = std::string(entry.handler).find("leaf_") == 0;
      w.recorder.answer(entry.handler, is_leaf ? 0 : CERR_SKIP_SUBTREE);
    });
    EXPECT_EQ(walk.code, 0u) << c.name;
    const std::string first = std::string(c.attributes) == "@delete" ? " op=3" : c.second;
    const std::string with_child = std::string(c.attributes) == "{ x:y }" && !count.empty() ? " count=1" : count;
    std::string expected = lines(handler + with_child + first);
    if (c.walks == 2) {
      const std::string hooked = std::string(c.attributes) == "@delete" ? " op=3" : c.second;
      expected += lines(handler + count + c.second, entry.hook() + " node=" + entry.accepted + hooked);
    }
    EXPECT_EQ(walk.handlers(), expected) << c.name;
    EXPECT_EQ(walk.tree.root()->operation, std::string(c.attributes) == "@delete"   ? 3u
                                           : std::string(c.attributes) == "@remove" ? 4u
                                                                                    : 0u);
    EXPECT_EQ(walk.tree.root()->node_flags & 0x10, std::string(c.attributes) == "@delete" ? 0x10 : 0) << c.name;
  }
}

TEST_P(OpenConfigEntry, does_not_walk_again_what_failed) {
  const Entry& entry = GetParam();
  const Walk walk(entry.walker(), kRead, entry.element(), [&entry](Walk& w) {
    w.recorder.answer(entry.handler, kFailure);
    w.recorder.state.implicit_walk = 1;
  });
  EXPECT_EQ(walk.code, kFailure);
  EXPECT_EQ(walk.handlers().find(entry.hook()), std::string::npos) << walk.handlers();
}

// The framework hands in the ancestor of a read or a delete for everything that augments it.
TEST_P(OpenConfigEntry, walks_below_an_ancestor_that_is_handed_in) {
  const Entry& entry = GetParam();
  Walk walk(entry.walker(), kEdit, "ocif:subinterface @delete", [&entry](Walk& w) {
    w.recorder.state.implicit_walk = 1;
    w.recorder.answer(entry.handler, CERR_SKIP_SUBTREE);
  });
  EXPECT_EQ(walk.code, 0u);
  const std::string count = std::string(entry.handler).find("cont_") == 0 ? " count=0" : "";
  EXPECT_EQ(walk.handlers(), lines(entry.hook() + " node=subinterface op=3 implicit=1",
                                   std::string(entry.handler) + " node=subinterface" + count + " op=4 implicit=1",
                                   entry.hook() + " node=subinterface op=3 implicit=1"));
  EXPECT_EQ(walk.tree.root()->operation, 3u);
  EXPECT_EQ(walk.state().implicit_walk, 1u);
}

INSTANTIATE_TEST_SUITE_P(OpenConfig, OpenConfigEntry, kOpenConfig, entry_name);

// --- The native configuration family's ---

class NativeEntry : public testing::TestWithParam<Entry> {};

TEST_P(NativeEntry, tells_like_an_inner_walker_what_it_was_given) {
  const std::string name = GetParam().exported();
  const std::string start = "TRC " + name + ": Start\n";
  const std::string end = "TRC " + name + ": End\n";
  struct {
    const char* element;
    cerrno code;
    std::string trace;
    std::string handlers;
  } const cases[] = {
      {"cfg:stranger", 0,
       lines("TRC " + name + ": Processing tag 'stranger'", "TRC " + name + ": Unsupported tag. Ignoring."), ""},
      {"x:stranger", 0, lines("TRC " + name + ": Processing tag 'stranger'"),
       lines(GetParam().hook() + " node=stranger")},
      {"stranger @nons", 0, lines("TRC " + name + ": Processing tag 'stranger'"),
       lines(GetParam().hook() + " node=stranger")},
      {"cfg:x @notag", CERR_BAD_TREE, lines("ERR " + name + ": Tag name is not available!"), ""},
      {"x @notag @nons", CERR_BAD_TREE, lines("ERR " + name + ": Tag name is not available!"), ""},
  };
  for (const auto& c : cases) {
    for (const uint32_t kind : {kEdit, kRead, kReadState}) {
      const Walk walk(GetParam().walker(), kind, c.element);
      EXPECT_EQ(walk.code, c.code) << c.element;
      EXPECT_EQ(walk.recorder.trace(), start + c.trace + end);
      EXPECT_EQ(walk.seen(), c.handlers);
      EXPECT_EQ(walk.state().error_tag, nullptr);
    }
  }
}

TEST_P(NativeEntry, gives_its_own_element_of_a_foreign_namespace_to_the_hook) {
  for (const std::string& element :
       {std::string("x:") + GetParam().accepted, GetParam().accepted + std::string(" @nons")}) {
    const Walk walk(GetParam().walker(), kRead, element);
    EXPECT_EQ(walk.code, 0u);
    EXPECT_EQ(walk.handlers(), lines(GetParam().hook() + " node=" + GetParam().accepted)) << element;
  }
}

TEST_P(NativeEntry, walks_its_element_once) {
  const Walk walk(GetParam().walker(), kRead, GetParam().element("{ }"),
                  [](Walk& w) { w.recorder.answer(GetParam().handler, 0); });
  const std::string calls = walk.handlers();
  EXPECT_EQ(calls.find(std::string(GetParam().handler) + " ", 1), std::string::npos) << calls;
  EXPECT_EQ(who_traced(walk.recorder, "End").find(std::string("augment_") + GetParam().name) != std::string::npos,
            true);
}

INSTANTIATE_TEST_SUITE_P(NativeCfg, NativeEntry, kNative, entry_name);

}  // namespace
