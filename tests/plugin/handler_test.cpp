// Generated handlers, default handlers and hooks, each called on its own with what no walker gives it.
#include <gtest/gtest.h>

#include <fstream>

#include "plugin/rows.h"
#include "plugin/seen.h"

namespace {

using recording::kEdit;
using recording::kRead;
using recording::kReadState;
using recording::lines;
using recording::Recorder;
using recording::Tree;

constexpr char kNoContext[] = R"(Assertion `\(\(void \*\)0\) != ctx' failed)";

// Every weak export but the aliases of a default handler: what they do with null arguments is theirs to say.
std::vector<std::string> weak_exports(const std::string& kind) {
  std::ifstream list(OC_VLAN_SOURCE_DIR "/tests/plugin/exports.txt");
  std::vector<std::string> names;
  std::string binding;
  for (std::string name; list >> binding >> name;) {
    const bool is_hook = name.ends_with("_parse_augments");
    const bool wanted = kind == "hook" ? is_hook : !is_hook && name.find("_" + kind + "_lvl") != std::string::npos;
    if (binding == "W" && wanted) names.push_back(name);
  }
  return names;
}

bool is_default(const std::string& name) {
  for (const rows::Family& family : {rows::kOpenConfig, rows::kNativeCfg}) {
    for (const rows::Row& row : rows::of(family)) {
      if (family.prefix + row.handler == name) return row.translation == "default";
    }
  }
  return name.ends_with("_egressfiltering");
}

struct Arguments {
  const yfw_datatree* node;
  yfw_datatree* output;
};

cerrno call(const std::string& name, yfw_map_ctx* ctx, const Arguments& arguments) {
  if (name.find("_cont_") != std::string::npos) {
    return seen::function<yfw_map_container_fn>(name)(ctx, arguments.node, 0, arguments.output);
  }
  if (name.find("oper_list_") != std::string::npos) {
    return seen::function<yfw_map_oper_list_fn>(name)(ctx, arguments.node, arguments.output, nullptr);
  }
  return seen::function<yfw_map_walker_fn>(name)(ctx, arguments.node, arguments.output);
}

TEST(ContainerHandlers, refuse_null_arguments_after_their_start) {
  Tree node("config");
  int called = 0;
  for (const std::string& name : weak_exports("cont")) {
    if (is_default(name)) continue;
    for (const bool has_node : {true, false}) {
      Recorder recorder;
      EXPECT_EQ(call(name, recorder.ctx(), {has_node ? node.root() : nullptr, has_node ? nullptr : recorder.output()}),
                CERR_INVALID_ARGS);
      EXPECT_EQ(recorder.trace(), lines("TRC " + name + ": Start", "ERR " + name + ": Invalid arguments passed!"));
      EXPECT_EQ(recorder.log(), lines("TRC Start", "ERR Invalid arguments passed!"));
      EXPECT_EQ(recorder.calls(), lines("error_path"));
    }
    ++called;
  }
  EXPECT_EQ(called, 50);
}

TEST(LeafAndListHandlers, refuse_null_arguments_with_one_line) {
  Tree node("vlan-id=1");
  int called = 0;
  for (const char* kind : {"leaf", "list"}) {
    for (const std::string& name : weak_exports(kind)) {
      if (is_default(name)) continue;
      for (const bool has_node : {true, false}) {
        Recorder recorder;
        EXPECT_EQ(
            call(name, recorder.ctx(), {has_node ? node.root() : nullptr, has_node ? nullptr : recorder.output()}),
            CERR_INVALID_ARGS);
        EXPECT_EQ(recorder.trace(), lines("ERR " + name + ": Invalid arguments passed!"));
        EXPECT_EQ(recorder.log(), lines("ERR Invalid arguments passed!"));
        EXPECT_EQ(recorder.calls(), lines("error_path"));
      }
      ++called;
    }
  }
  EXPECT_EQ(called, 77);
}

TEST(Hooks, of_the_openconfig_family_refuse_null_arguments) {
  Tree node("x:stranger");
  int called = 0;
  for (const std::string& name : weak_exports("hook")) {
    if (!name.starts_with(rows::kOpenConfig.prefix)) continue;
    for (const bool has_node : {true, false}) {
      Recorder recorder;
      EXPECT_EQ(call(name, recorder.ctx(), {has_node ? node.root() : nullptr, has_node ? nullptr : recorder.output()}),
                CERR_INVALID_ARGS);
      EXPECT_EQ(recorder.trace(), lines("ERR " + name + ": Invalid arguments passed!"));
      EXPECT_EQ(recorder.calls(), lines("error_path"));
    }
    ++called;
  }
  EXPECT_EQ(called, 52);
}

TEST(Hooks, of_the_openconfig_family_refuse_what_is_added_and_nothing_else) {
  Tree node("x:stranger");
  for (const std::string& name : weak_exports("hook")) {
    if (!name.starts_with(rows::kOpenConfig.prefix)) continue;
    for (const uint32_t adds : {0u, 1u}) {
      Recorder recorder;
      recorder.own(recorder.state.error_tag, "older");
      recorder.answer("is_request_add", adds);
      EXPECT_EQ(call(name, recorder.ctx(), {node.root(), recorder.output()}), adds != 0 ? CERR_UNKNOWN_AUGMENT : 0u);
      EXPECT_STREQ(recorder.state.error_tag, adds != 0 ? "stranger" : "older");
      EXPECT_EQ(recorder.calls(),
                adds != 0 ? lines("free text=older", "strdup text=stranger owner='YFW MAP'", "error_path") : "");
      EXPECT_EQ(recorder.all_calls().substr(0, recorder.all_calls().find('\n')), "is_request_add node=stranger");
      EXPECT_EQ(recorder.log() + recorder.trace(), "");
    }
  }
}

TEST(Hooks, of_the_native_families_accept_everything) {
  Tree node("x:stranger");
  int called = 0;
  for (const std::string& name : weak_exports("hook")) {
    if (name.starts_with(rows::kOpenConfig.prefix)) continue;
    for (const uint32_t kind : {kEdit, kRead, kReadState}) {
      Recorder recorder(kind);
      EXPECT_EQ(call(name, recorder.ctx(), {node.root(), recorder.output()}), 0u);
      EXPECT_EQ(call(name, nullptr, {nullptr, nullptr}), 0u);
      EXPECT_EQ(recorder.all_calls(), "");
    }
    ++called;
  }
  EXPECT_EQ(called, 39);
}

// --- Defaults, under their own names and under those of the nodes that have nothing else ---

std::vector<std::string> defaults(const std::string& kind, const std::string& own_kind) {
  std::vector<std::string> names;
  for (const char* prefix : {"ymap_ov_oc_vlan_openconfigvlan_", "ymap_vo_oc_vlan_vexnetosl2ethinfracfg_",
                             "ymap_vo_oc_vlan_vexnetosl2ethinfraoper_"}) {
    names.push_back(prefix + std::string("duck_map_") + kind);
  }
  for (const std::string& name : weak_exports(own_kind)) {
    if (is_default(name)) names.push_back(name);
  }
  return names;
}

TEST(DefaultHandlers, of_containers_and_lists_do_nothing) {
  Tree node("x");
  for (const std::string& name : defaults("container", "cont")) {
    Recorder recorder;
    EXPECT_EQ(seen::function<yfw_map_container_fn>(name)(recorder.ctx(), node.root(), 3, recorder.output()), 0u);
    EXPECT_EQ(seen::function<yfw_map_container_fn>(name)(nullptr, nullptr, 0, nullptr), 0u);
    EXPECT_EQ(recorder.all_calls(), "") << name;
  }
  for (const std::string& name : defaults("list", "list")) {
    Recorder recorder;
    EXPECT_EQ(seen::function<yfw_map_walker_fn>(name)(recorder.ctx(), node.root(), recorder.output()), 0u);
    EXPECT_EQ(seen::function<yfw_map_walker_fn>(name)(nullptr, nullptr, nullptr), 0u);
    EXPECT_EQ(recorder.all_calls(), "") << name;
  }
  EXPECT_EQ(defaults("container", "cont").size(), 3u + 11u + 9u);
  EXPECT_EQ(defaults("list", "list").size(), 3u + 1u);
}

TEST(DefaultHandlers, of_leaves_refuse_every_request_by_name) {
  Tree node("tpid=1");
  for (const std::string& name : defaults("leaf", "leaf")) {
    for (const uint32_t kind : {kEdit, kRead, kReadState}) {
      Recorder recorder(kind);
      recorder.own(recorder.state.error_tag, "older");
      EXPECT_EQ(seen::function<yfw_map_walker_fn>(name)(recorder.ctx(), node.root(), recorder.output()),
                CERR_UNSUPPORTED);
      EXPECT_EQ(recorder.all_calls(), lines("error_path", "free text=older", "strdup text=tpid owner=tpid")) << name;
      EXPECT_STREQ(recorder.state.error_tag, "tpid");
    }
  }
}

TEST(DefaultHandlers, of_leaves_survive_what_is_missing) {
  for (const std::string& name : defaults("leaf", "leaf")) {
    const auto handler = seen::function<yfw_map_walker_fn>(name);
    Recorder recorder;
    Tree node("tpid");
    EXPECT_EQ(handler(nullptr, node.root(), recorder.output()), CERR_UNSUPPORTED);
    EXPECT_EQ(recorder.all_calls(), lines("error_path ctx=null")) << name;
    recorder.clear();
    EXPECT_EQ(handler(recorder.ctx(), nullptr, nullptr), CERR_UNSUPPORTED);
    EXPECT_EQ(recorder.all_calls(), lines("error_path"));
    recorder.clear();
    recorder.ctx()->req_state = nullptr;
    EXPECT_EQ(handler(recorder.ctx(), node.root(), recorder.output()), CERR_UNSUPPORTED);
    EXPECT_EQ(recorder.all_calls(), lines("error_path"));
    recorder.ctx()->req_state = &recorder.state;
  }
}

// --- A null context is a mistake of the caller ---

class NullContext : public testing::TestWithParam<const char*> {};

TEST_P(NullContext, stops_the_process) {
  Tree node("x");
  EXPECT_DEATH(call(GetParam(), nullptr, {nullptr, nullptr}), kNoContext);
  EXPECT_DEATH(call(GetParam(), nullptr, {node.root(), nullptr}), kNoContext);
}

INSTANTIATE_TEST_SUITE_P(
    Handlers, NullContext,
    testing::Values("ymap_ov_oc_vlan_openconfigvlan_cont_lvla_vlan",
                    "ymap_ov_oc_vlan_openconfigvlan_cont_lvla_switchedvlan_config",
                    "ymap_ov_oc_vlan_openconfigvlan_leaf_lvlb_vlan_config_vlanid",
                    "ymap_ov_oc_vlan_openconfigvlan_lvla_vlan_parse_augments",
                    "ymap_vo_oc_vlan_vexnetosl2ethinfracfg_cont_lvla_ethernetservice",
                    "ymap_vo_oc_vlan_vexnetosl2ethinfracfg_leaf_lvla_ethernetservice_rewrite_rewritetype",
                    "ymap_vo_oc_vlan_vexnetosl2ethinfraoper_cont_lvla_vlan",
                    "ymap_vo_oc_vlan_vexnetosl2ethinfraoper_cont_lvla_vlan_trunk_vlanswitched",
                    "ymap_vo_oc_vlan_vexnetosl2ethinfraoper_list_lvla_vlan_nodes_node",
                    "ymap_vo_oc_vlan_vexnetosl2ethinfraoper_leaf_lvla_vlan_layer3subinterfaces_nativevlan",
                    "ymap_vo_oc_vlan_vexnetosl2ethinfraoper_lvla_vlan",
                    "ymap_vo_oc_vlan_vexnetosl2ethinfracfg_lvla_ethernetfeatures"));

// Leaf and list handlers look at the context only where something else is missing, or in their translation.
TEST(ContainerHandlersAndHooks, stop_the_process_on_a_null_context_with_everything_else_given) {
  Tree node("x:stranger");
  int called = 0;
  for (const char* kind : {"cont", "hook"}) {
    for (const std::string& name : weak_exports(kind)) {
      const bool asserts = kind == std::string("cont") ? !is_default(name) : name.starts_with(rows::kOpenConfig.prefix);
      if (!asserts) continue;
      ++called;
      EXPECT_DEATH(call(name, nullptr, {node.root(), node.root()}), kNoContext) << name;
    }
  }
  EXPECT_EQ(called, 50 + 52);
}

TEST(ContainerHandlers, without_a_translation_end_without_a_line) {
  Recorder recorder;
  Tree node("vlan { config }");
  const char* const name = "ymap_ov_oc_vlan_openconfigvlan_cont_lvla_vlan";
  EXPECT_EQ(call(name, recorder.ctx(), {node.root(), recorder.output()}), 0u);
  EXPECT_EQ(recorder.trace(), lines(std::string("TRC ") + name + ": Start"));
  EXPECT_EQ(recorder.calls(), "");
}

// A translation tells an empty container by the count that it is given, not by the node's own.
TEST(ContainerHandlers, hand_the_count_of_children_on) {
  struct {
    const char* handler;
    const char* tree;
    const char* told;
  } const cases[] = {
      {"ymap_ov_oc_vlan_openconfigvlan_cont_lvla_vlan_singletaggedlist_config", "config { vlan-ids=1 }",
       "Edit request with 0 VLAN IDs in request."},
      {"ymap_ov_oc_vlan_openconfigvlan_cont_lvla_switchedvlan_config", "config { access-vlan=1 }",
       "Edit request for switched-vlan without leaves"},
      {"ymap_vo_oc_vlan_vexnetosl2ethinfraoper_cont_lvla_vlan_interface_encapsulationdetails",
       "oper:encapsulation-details { vlan-encapsulation=x }", "No subtrees"},
  };
  for (const auto& c : cases) {
    for (const uint32_t count : {0u, 1u}) {
      Recorder recorder;
      Tree tree(c.tree);
      seen::function<yfw_map_container_fn>(c.handler)(recorder.ctx(), tree.root(), count, recorder.output());
      EXPECT_EQ(recorder.log().find(c.told) != std::string::npos, count == 0) << c.handler << "\n" << recorder.log();
    }
  }
}

TEST(ListHandler, of_native_nodes_succeeds_in_silence) {
  Recorder recorder;
  Tree node("oper:node { node-id=0 }");
  EXPECT_EQ(call("ymap_vo_oc_vlan_vexnetosl2ethinfraoper_list_lvla_vlan_nodes_node", recorder.ctx(),
                 {node.root(), recorder.output()}),
            0u);
  EXPECT_EQ(recorder.all_calls(), "");
}

}  // namespace
