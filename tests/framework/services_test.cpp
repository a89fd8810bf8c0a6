// The services as a plug-in calls them, under a session of their own.
#include <gtest/gtest.h>

#include <cstdlib>

#include "framework/datastore/running.h"
#include "framework/documents/documents.h"
#include "framework/tree/models.h"
#include "framework/tree/schema.h"
#include "framework/walk/environment.h"
#include "framework/walk/walk_state.h"
#include "yfw-host/host.h"

namespace yfw {
namespace {

constexpr char kRunning[] = R"(<interface-configurations xmlns="http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg">
  <interface-configuration><interface-name>Ethernet0/0/1</interface-name>
    <vlan-trunk-configuration xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
      <vlan-switched><mode>trunk</mode></vlan-switched></vlan-trunk-configuration></interface-configuration>
  <interface-configuration><interface-name>Ethernet0/0/2</interface-name>
    <vlan-trunk-configuration xmlns="http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg">
      <vlan-switched><mode>access</mode></vlan-switched></vlan-trunk-configuration></interface-configuration>
  <interface-configuration><interface-name>Ethernet0/0/3</interface-name></interface-configuration>
  <interface-configuration><interface-name>Ethernet0/0/1.100</interface-name><l2-transport/></interface-configuration>
  <interface-configuration><interface-name>Ethernet0/0/1.200</interface-name></interface-configuration>
</interface-configurations>)";

class ServicesTest : public testing::Test {
 protected:
  Environment around(Layer layer = Layer::from_running) {
    Environment result;
    result.models = models_.get();
    result.paths = &paths_;
    result.running = &running_;
    result.layer = layer;
    return result;
  }

  // The interface manager's answer as the plug-in gets it: -1 unknown, 0 L3, 1 L2.
  static int asked_layer(const char* name) {
    imc_find_request request{};
    std::snprintf(request.name, sizeof request.name, "%s", name);
    imc_find_reply found{};
    if (imc_interface_find(yfw_ocifmgr_im_conn, 1, &request, &found) != 0 || found.status != 0) return -1;
    imc_flags_reply flags{};
    if (imc_interface_get_flags(yfw_ocifmgr_im_conn, 1, &found.handle, &flags) != 0 || flags.status != 0) return -1;
    return (flags.flags & 0x1000u) != 0 ? 1 : 0;
  }

  // The first integer of a system-database item: -1 when there is no such item.
  static int switched_item(const char* path) {
    uint64_t connection = 0;
    EXPECT_EQ(_sysdb_bind(&connection, "/cfg/if/act/", 4), 0);
    void* value = nullptr;
    uint32_t length = 0;
    uint32_t type = 0;
    if (sysdb_item_get(connection, path, &value, &length, &type, 0) != 0) return -1;
    int32_t numbers[3] = {};
    const char* text = nullptr;
    EXPECT_EQ(tuple_unpack_mask(value, length, "%d%d%d%s", &numbers[0], &numbers[1], &numbers[2], &text), 0u);
    EXPECT_NE(text, nullptr);
    std::free(value);
    return numbers[0];
  }

  Models models_{OC_VLAN_SOURCE_DIR "/yang", ""};
  PathCache paths_{models_.get()};
  Running running_{parse_running(models_, {kRunning, Format::xml, "running"}).data};
};

TEST_F(ServicesTest, InterfaceManagerAnswersFromTheRunningConfiguration) {
  WalkState session(around(), kEdit);
  session.enter_interface("Ethernet0/0/1", "100");
  EXPECT_EQ(asked_layer("Ethernet0_0_1.100"), 1);
  session.enter_interface("Ethernet0/0/1", "200");
  EXPECT_EQ(asked_layer("Ethernet0_0_1.200"), 0);
  EXPECT_EQ(asked_layer("Ethernet0_0_1.100"), 1) << "another interface than the current one";
  EXPECT_TRUE(session.taken_as_l3().empty());
}

TEST_F(ServicesTest, AnUnknownSubinterfaceIsToldOnceAndNotInAnImplicitWalk) {
  WalkState session(around(), kEdit);
  session.enter_interface("Ethernet0/0/1", "300");
  session.state().implicit_walk = 1;
  EXPECT_EQ(asked_layer("Ethernet0_0_1.300"), -1);
  EXPECT_TRUE(session.taken_as_l3().empty());
  session.state().implicit_walk = 0;
  EXPECT_EQ(asked_layer("Ethernet0_0_1.300"), -1);
  EXPECT_EQ(asked_layer("Ethernet0_0_1.300"), -1);
  EXPECT_EQ(session.taken_as_l3(), std::vector<std::string>{"Ethernet0/0/1.300"});
}

TEST_F(ServicesTest, TheLayerAskedForHoldsForUnknownSubinterfacesOnly) {
  WalkState l2(around(Layer::l2), kEdit);
  l2.enter_interface("Ethernet0/0/1", "300");
  EXPECT_EQ(asked_layer("Ethernet0_0_1.300"), 1);
  l2.enter_interface("Ethernet0/0/1", "200");
  EXPECT_EQ(asked_layer("Ethernet0_0_1.200"), 0);
  WalkState l3(around(Layer::l3), kEdit);
  l3.enter_interface("Ethernet0/0/1", "300");
  EXPECT_EQ(asked_layer("Ethernet0_0_1.300"), 0);
  EXPECT_TRUE(l3.taken_as_l3().empty());
}

TEST_F(ServicesTest, ANameLongerThanTheLookUpCarriesIsStillTheCurrentOne) {
  const std::string name(70, 'x');
  WalkState session(around(Layer::l2), kEdit);
  session.enter_interface(name, "1");
  EXPECT_EQ(asked_layer(name.substr(0, 62).c_str()), 1);
}

TEST_F(ServicesTest, SystemDatabaseHoldsTheSwitchedMode) {
  WalkState session(around(), kEdit);
  EXPECT_EQ(switched_item("Ethernet0_0_1/vlan_trunk/vlan_switched"), 1);
  EXPECT_EQ(switched_item("Ethernet0_0_2/vlan_trunk/vlan_switched"), 0);
  EXPECT_EQ(switched_item("Ethernet0_0_3/vlan_trunk/vlan_switched"), -1);
  EXPECT_EQ(switched_item("Ethernet0_0_9/vlan_trunk/vlan_switched"), -1);
  EXPECT_EQ(switched_item("Ethernet0_0_1/vlan_trunk/other"), -1);
  EXPECT_EQ(switched_item(""), -1);
}

TEST_F(ServicesTest, UnpackingRefusesWhatIsNoItem) {
  int32_t number = 7;
  const char* text = nullptr;
  EXPECT_NE(tuple_unpack_mask(nullptr, 0, "%d%d%d%s", &number, &number, &number, &text), 0u);
  EXPECT_NE(tuple_unpack_mask(&number, sizeof number, "%d%d%d%s", &number, &number, &number, &text), 0u);
  EXPECT_EQ(number, 7);
}

TEST_F(ServicesTest, ErrorPathIsTheHierarchyAtTheFirstCall) {
  WalkState session(around(), kEdit);
  yfw_datatree key{};
  std::string name = "Ethernet0/0/1";
  key.tag = "name";
  key.value = name.data();
  key.is_key = 1;
  yfw_datatree interfaces{};
  interfaces.tag = "interfaces";
  interfaces.ns = YFW_OPENCONFIG_INTERFACES_NS;
  yfw_datatree interface {};
  interface.tag = "interface";
  interface.ns = YFW_OPENCONFIG_INTERFACES_NS;
  interface.subtrees = &key;
  interface.subtree_count = 1;
  yfw_map_add_to_node_hierarchy(session.ctx(), &interfaces, 1);
  yfw_map_add_to_node_hierarchy(session.ctx(), &interface, 2);
  session.state().implicit_walk = 1;
  yfw_oc_error_path(session.ctx());
  EXPECT_FALSE(session.failed()) << "an error path in an implicit walk means nothing";
  session.state().implicit_walk = 0;
  yfw_oc_error_path(session.ctx());
  yfw_map_remove_from_node_hierarchy(session.ctx(), &interface);
  yfw_oc_error_path(session.ctx());
  ASSERT_TRUE(session.failed());
  EXPECT_EQ(session.refusal(CERR_INVALID_VALUE).path,
            "/openconfig-interfaces:interfaces/interface[name='Ethernet0/0/1']");
}

TEST_F(ServicesTest, AFailureWithoutErrorPathIsAtTheNodeEnteredLast) {
  WalkState session(around(), kEdit);
  yfw_datatree interfaces{};
  interfaces.tag = "interfaces";
  interfaces.ns = YFW_OPENCONFIG_INTERFACES_NS;
  yfw_map_add_to_node_hierarchy(session.ctx(), &interfaces, 1);
  yfw_map_remove_from_node_hierarchy(session.ctx(), &interfaces);
  const RpcError error = session.refusal(CERR_BAD_TREE);
  EXPECT_EQ(error.path, "/openconfig-interfaces:interfaces");
  EXPECT_EQ(error.tag, "malformed-message");
}

struct RefusalCase {
  const char* name;
  cerrno code;
  const char* tag;
  const char* element;
  const char* message;
  const char* expected_tag;
  const char* expected_message;
};

class RefusalTest : public ServicesTest, public testing::WithParamInterface<RefusalCase> {};

TEST_P(RefusalTest, SaysItInNetconfsTerms) {
  const RefusalCase& tested = GetParam();
  WalkState session(around(), kEdit);
  if (tested.element != nullptr) session.state().error_tag = yfw_strdup(tested.element, "YFW MAP");
  if (tested.message != nullptr) session.state().error_message = yfw_strdup(tested.message, "YFW_MAP");
  const RpcError error = session.refusal(tested.code);
  EXPECT_EQ(error.tag, tested.expected_tag);
  EXPECT_EQ(error.message, tested.expected_message);
  EXPECT_EQ(error.bad_element, tested.element == nullptr ? "" : tested.element);
}

INSTANTIATE_TEST_SUITE_P(
    Services, RefusalTest,
    testing::Values(RefusalCase{"Unsupported", CERR_UNSUPPORTED, "", "tpid", nullptr, "operation-not-supported",
                                "'tpid' is not supported: nothing native expresses it"},
                    RefusalCase{"UnknownAugment", CERR_UNKNOWN_AUGMENT, "", "x", nullptr, "unknown-element",
                                "'x' belongs to no known augmentation"},
                    RefusalCase{"Value", CERR_INVALID_VALUE, "", nullptr, "Edit request without VLAN IDs.",
                                "invalid-value", "Edit request without VLAN IDs."},
                    RefusalCase{"ErrorPathAndSuccess", 0, "", "tpid", "Invalid value for tpid provided",
                                "invalid-value", "Invalid value for tpid provided"},
                    RefusalCase{"PlainErrno", 22, "", nullptr, nullptr, "invalid-value", "the value is refused"},
                    RefusalCase{"Framework", CERR_INVALID_ARGS, "", nullptr, nullptr, "operation-failed",
                                "invalid arguments"}),
    [](const auto& tested) { return tested.param.name; });

TEST_F(ServicesTest, RequestQueries) {
  yfw_datatree node{};
  const auto queries = [&](WalkState& session) {
    std::string answers;
    for (uint32_t operation = 0; operation <= 4; ++operation) {
      node.operation = operation;
      answers += yfw_map_is_request_add(session.ctx(), &node, nullptr) != 0 ? 'a' : '-';
      answers += yfw_map_is_request_delete(&node) != 0 ? 'd' : '-';
    }
    return answers;
  };
  WalkState edit(around(), kEdit);
  EXPECT_EQ(queries(edit), "a-a-a--d-d");
  WalkState read(around(), kReadConfig);
  EXPECT_EQ(queries(read), "-------d-d");
  WalkState state(around(), kReadState);
  EXPECT_EQ(queries(state), "-------d-d");
  EXPECT_EQ(yfw_map_is_request_delete(nullptr), 0);
}

TEST_F(ServicesTest, MatchingTextsAndNamespaces) {
  WalkState session(around(), kEdit);
  EXPECT_NE(yfw_map_do_these_match("a", "a"), 0);
  EXPECT_EQ(yfw_map_do_these_match("a", "ab"), 0);
  EXPECT_EQ(yfw_map_do_these_match(nullptr, nullptr), 0);
  yfw_datatree node{};
  EXPECT_NE(yfw_map_validate_data_ns(session.ctx(), &node, "urn:a", 0), 0) << "no namespace at all";
  std::string ns = "urn:a";
  node.value_ns = ns.data();
  EXPECT_EQ(yfw_map_validate_data_ns(session.ctx(), &node, "urn:a", 0), 0);
  EXPECT_NE(yfw_map_validate_data_ns(session.ctx(), &node, "urn:b", 0), 0);
}

TEST_F(ServicesTest, BoundedCopies) {
  char place[5] = "----";
  EXPECT_EQ(yfw_strcpy_s("test", place, sizeof place, "abcd"), 0);
  EXPECT_STREQ(place, "abcd");
  EXPECT_NE(yfw_strcpy_s("test", place, sizeof place, "abcde"), 0);
  EXPECT_EQ(yfw_strncpy_s("test", place, sizeof place, "abcdef", 3), 0);
  EXPECT_STREQ(place, "abc");
  EXPECT_NE(yfw_strncpy_s("test", place, sizeof place, "abcdef", 6), 0);
  EXPECT_NE(yfw_strncpy_s("test", nullptr, 0, "a", 1), 0);
}

TEST_F(ServicesTest, ReleasingForeignMemoryIsFound) {
  WalkState session(around(), kEdit);
  char* const copy = yfw_strdup("text", "YFW_MAP");
  ASSERT_STREQ(copy, "text");
  kos_named_free(copy);
  EXPECT_FALSE(session.misused_memory());
  int elsewhere = 0;
  kos_named_free(&elsewhere);
  EXPECT_TRUE(session.misused_memory());
}

TEST_F(ServicesTest, SessionsNestAndRestore) {
  EXPECT_EQ(WalkState::running(), nullptr);
  WalkState outer(around(), kEdit);
  {
    const WalkState inner(around(), kReadConfig);
    EXPECT_EQ(WalkState::running(), &inner);
  }
  EXPECT_EQ(WalkState::running(), &outer);
}

TEST_F(ServicesTest, WithoutASessionServicesRefuse) {
  yfw_node_info info{};
  EXPECT_NE(yfw_map_get_node_info(nullptr, "/a", "b", &info), 0u);
  EXPECT_NE(yfw_map_datatree_add_path_flagged(nullptr, nullptr, "/a", "b", "c", nullptr, nullptr, 0, 1), 0u);
  char* const copy = yfw_strdup("text", "owner");
  EXPECT_STREQ(copy, "text");
  kos_named_free(copy);
}

TEST_F(ServicesTest, TraceHasCallsLogsAndBufferLines) {
  std::vector<std::string> lines;
  const std::function<void(const TraceLine&)> sink = [&lines](const TraceLine& line) {
    lines.push_back(std::to_string(static_cast<int>(line.kind)) + std::to_string(line.level) + " " + line.text);
  };
  Environment traced = around();
  traced.trace = &sink;
  WalkState session(traced, kEdit);
  yfw_map_ctx* const ctx = session.ctx();
  EXPECT_NE(yfw_debug_should_log(&ctx->debug_filter, 0), 0);
  EXPECT_NE(ctx->trace_on, 0u);
  uint32_t site = 0xffffffff;
  _kos_dt_log_filter_adv(ctx->err_log, 0, 0, 0, 0, 0, &site, "ERR: YFW: ctx=%s,%d", "x", 5);
  _kos_dt_log_filter_adv(ctx->trc_log, 0, 0, 0, 0, 0, &site, "TRC: YFW: ctx=%s,Start", "x");
  _lstrace(ctx->trace_handle, 0x10101000000, "#1: TRC: f:1 ctx=x,Start");
  yfw_map_add_to_node_hierarchy(ctx, nullptr, 1);
  yfw_oc_error_path(ctx);
  EXPECT_EQ(lines, (std::vector<std::string>{"10 ERR: YFW: ctx=x,5", "13 TRC: YFW: ctx=x,Start",
                                             "23 #1: TRC: f:1 ctx=x,Start", "03 error path "}));
  EXPECT_EQ(ret_nc_yfw_trace_index_incr(), 1u);
  EXPECT_EQ(ret_nc_yfw_trace_index_incr(), 2u);
}

TEST_F(ServicesTest, EveryCallIsTraced) {
  std::vector<std::string> lines;
  const std::function<void(const TraceLine&)> sink = [&lines](const TraceLine& line) { lines.push_back(line.text); };
  Environment traced = around();
  traced.trace = &sink;
  WalkState session(traced, kEdit);
  yfw_map_ctx* const ctx = session.ctx();
  std::string tag = "vlan-id";
  std::string key = "5";
  yfw_datatree node{};
  node.tag = tag.data();
  node.value = key.data();
  yfw_datatree* const output = session.output().root();
  yfw_datatree* children = nullptr;
  uint32_t count = 0;
  yfw_node_slot slot{};
  yfw_node_info info{nullptr};
  char place[8];
  uint64_t connection = 0;
  const imc_find_request request{"Ethernet0_0_1.200"};
  imc_find_reply found{};
  imc_flags_reply flags{};
  void* item = nullptr;
  uint32_t length = 0;
  uint32_t type = 0;
  const std::vector<std::pair<std::function<void()>, std::string>> calls = {
      {[&] { yfw_map_is_request_add(ctx, &node, output); }, "is vlan-id added -> true"},
      {[&] { yfw_map_is_request_delete(&node); }, "is vlan-id deleted -> false"},
      {[&] { yfw_map_do_these_match("a", "b"); }, "match \"a\" \"b\" -> false"},
      {[&] { yfw_map_datatree_add_path_flagged(ctx, output, "", "urn:a", "5", &node, nullptr, 0, 1); },
       "add  value=5 source=vlan-id list=0 flags=1 -> 0xaaf2a000"},
      {[&] { yfw_map_add_to_node_hierarchy(ctx, &node, 2); }, "enter vlan-id level=2"},
      {[&] { yfw_oc_error_path(ctx); }, "error path /vlan-id"},
      {[&] { yfw_map_remove_from_node_hierarchy(ctx, &node); }, "leave vlan-id"},
      {[&] { yfw_map_get_node_info(ctx, "/a/b", "c", &info); }, "look-up /a/b/c -> -"},
      {[&] { yfw_map_get_subtrees(ctx, &node, &children, &count); }, "children of vlan-id -> 0"},
      {[&] { yfw_map_search_list(ctx, output, &slot, "/a/b", "5", "k", "urn:a"); }, "search /a/b[k=5] -> not there"},
      {[&] { yfw_map_search_or_add_list(ctx, output, &slot, "/a/b", "5", "k", "urn:a"); }, "search or add /a/b[k=5]"},
      {[&] { yfw_map_update_current_list_node(ctx, "/a/b"); }, "current entry of /a/b"},
      {[&] { yfw_map_validate_data_ns(ctx, &node, "urn:a", 0); }, "namespace of vlan-id is -, wanted urn:a"},
      {[&] { yfw_map_copy_trim_path_list_ctx(ctx, "/a"); }, "trim /a"},
      {[&] { yfw_map_free_trim_path_list_ctx(ctx); }, "trim ends"},
      {[&] { yfw_add_to_output_list_ctx(ctx, &node, output); }, "output list gets vlan-id"},
      {[&] { yfw_remove_from_output_list_ctx(ctx, &node, output); }, "output list loses vlan-id"},
      {[&] { kos_named_free(yfw_strdup("text", "YFW_MAP")); }, "copy \"text\" for YFW_MAP; release a copy"},
      {[&] { yfw_strcpy_s("f", place, sizeof place, "abc"); }, "copy \"abc\" into 8 bytes of f"},
      {[&] { yfw_strncpy_s("f", place, sizeof place, "abc", 2); }, "copy at most 2 of \"abc\" into 8 bytes of f"},
      {[&] { cerr_strerror(CERR_UNSUPPORTED); }, "text of 0xaaf2ee00"},
      {[&] { imc_interface_find(nullptr, 1, &request, &found); }, "interface Ethernet0_0_1.200 -> L3"},
      {[&] { imc_interface_get_flags(nullptr, 1, &found.handle, &flags); }, "flags of interface handle 3 -> 0x0"},
      {[&] { _sysdb_bind(&connection, "/path", 1); }, "system database bound at /path"},
      {[&] { sysdb_item_get(0, "Ethernet9/vlan_trunk/vlan_switched", &item, &length, &type, 0); },
       "system database Ethernet9/vlan_trunk/vlan_switched -> no such item"},
  };
  for (const auto& [call, line] : calls) {
    lines.clear();
    call();
    std::string said;
    for (const std::string& each : lines) said += (said.empty() ? "" : "; ") + each;
    EXPECT_EQ(said, line);
  }
}

}  // namespace
}  // namespace yfw
