// Whether a port is, or is to be, in trunk mode, and what kind of interface it is.
#include "plugin/translations/case.h"

namespace translations {
namespace {

TEST(InterfaceKind, is_told_by_the_name) {
  EXPECT_EQ(check_switched_vlan_cfgd_on_ether_or_bundle(nullptr), 0);
  EXPECT_EQ(check_switched_vlan_cfgd_on_ether_or_bundle("Bundle-Ether7"), 2);
  EXPECT_EQ(check_switched_vlan_cfgd_on_ether_or_bundle("x-Bundle-Ether"), 2);
  EXPECT_EQ(check_switched_vlan_cfgd_on_ether_or_bundle("Ethernet0/1/2"), 1);
  EXPECT_EQ(check_switched_vlan_cfgd_on_ether_or_bundle("bundle-ether7"), 1);
  EXPECT_EQ(check_switched_vlan_cfgd_on_ether_or_bundle("Bundle-Ethe"), 1);
  EXPECT_EQ(check_switched_vlan_cfgd_on_ether_or_bundle(""), 1);
}

TEST(TrunkModeInRequest, is_set_by_any_interface_mode_leaf) {
  const std::vector<std::pair<std::string, int>> table{
      {"config", 0},
      {"config { }", 0},
      {"config @missing", 0},
      {"config { native-vlan=5 }", 0},
      {"config { native-vlan=TRUNK }", 0},
      {"config { interface-mode=TRUNK }", 1},
      {"config { interface-mode=ACCESS }", 0},
      {"config { interface-mode }", 0},
      {"config { interface-mode=trunk }", 0},
      {"config { x @notag native-vlan=5 interface-mode=TRUNK }", 1},
      {"config { interface-mode=TRUNK interface-mode=ACCESS }", 1},
      {"config { interface-mode=ACCESS interface-mode=TRUNK }", 1},
  };
  for (const auto& [notation, answer] : table) {
    SCOPED_TRACE(notation);
    const Recorder framework;
    Tree tree(notation);
    EXPECT_EQ(check_interface_mode_set_in_subtree(tree.root()), answer);
  }
  EXPECT_EQ(check_interface_mode_set_in_subtree(nullptr), 0);
}

TEST(TrunkModeInRequest, is_looked_for_in_every_child) {
  const Recorder framework;
  Tree tree("config { interface-mode=TRUNK native-vlan=5 interface-mode=ACCESS x @notag interface-mode=TRUNK }");
  EXPECT_EQ(check_interface_mode_set_in_subtree(tree.root()), 1);
  const auto compared = [](const std::string& left, const std::string& right) {
    return lines("do_these_match left=" + left + " right=" + right);
  };
  const std::string mode = compared("interface-mode", "interface-mode");
  EXPECT_EQ(framework.all_calls(), mode + compared("TRUNK", "TRUNK") + compared("native-vlan", "interface-mode") +
                                       mode + compared("ACCESS", "TRUNK") + mode + compared("TRUNK", "TRUNK"));
}

struct Item {
  std::string label;
  std::function<void(Recorder&)> given;
  std::string path;
  bool unpacked;
  int answer;
  std::string error;
};

class TrunkModeInDatabase : public testing::TestWithParam<Item> {};

TEST_P(TrunkModeInDatabase, is_what_the_item_says) {
  const Item& item = GetParam();
  Recorder framework;
  framework.sub_interface("Ethernet0/1/2", nullptr);
  item.given(framework);
  EXPECT_EQ(check_switched_mode_set_in_sysdb(framework.ctx()), item.answer);
  std::string calls;
  if (!item.path.empty()) calls += lines("sysdb_get connid=0 path=" + item.path + " flags=0");
  if (item.unpacked) calls += lines("tuple_unpack format=%d%d%d%s");
  EXPECT_EQ(framework.calls(), calls);
  EXPECT_EQ(framework.errors(), item.error.empty() ? "" : lines("ERR " + item.error));
  const std::string prefix = "check_switched_mode_set_in_sysdb: ";
  EXPECT_EQ(framework.trace(), item.error.empty() ? lines("TRC " + prefix + "Start", "TRC " + prefix + "End")
                                                  : lines("TRC " + prefix + "Start", "ERR " + prefix + item.error,
                                                          "TRC " + prefix + "End"));
}

const std::string kPath = "Ethernet0_1_2/vlan_trunk/vlan_switched";

std::string read_failed(const std::string& path, cerrno code) {
  return "In check_switched_mode_set_in_sysdb sysdb_item_get forpath " + path + " returned error " +
         std::to_string(static_cast<int>(code)) + " : the text of the code";
}

std::function<void(Recorder&)> named(const std::string& name) {
  return [name](Recorder& framework) {
    framework.sub_interface(name.c_str(), nullptr);
    framework.sysdb_item(1);
  };
}

INSTANTIATE_TEST_SUITE_P(
    Table, TrunkModeInDatabase,
    testing::Values(
        Item{"trunk", [](Recorder& framework) { framework.sysdb_item(1); }, kPath, true, 1, ""},
        Item{"access", [](Recorder& framework) { framework.sysdb_item(0); }, kPath, true, 0, ""},
        Item{"other_number", [](Recorder& framework) { framework.sysdb_item(2, 1, 1); }, kPath, true, 0, ""},
        Item{"negative", [](Recorder& framework) { framework.sysdb_item(-1, 1, 1); }, kPath, true, 0, ""},
        Item{"no_item", [](Recorder&) {}, kPath, false, 0, read_failed(kPath, kNotThere)},
        Item{"no_data", [](Recorder& framework) { framework.sysdb_item_without_data(); }, kPath, false, 0, ""},
        Item{"failing_read",
             [](Recorder& framework) {
               framework.sysdb_item(1);
               framework.answer("sysdb_get", 22);
             },
             kPath, false, 0, read_failed(kPath, 22)},
        Item{"failing_unpack",
             [](Recorder& framework) {
               framework.sysdb_item(1);
               framework.answer("tuple_unpack", 5);
             },
             kPath, true, 0, "In check_switched_mode_set_in_sysdb tuple_unpack failed"},
        Item{"no_name", [](Recorder& framework) { framework.sub_interface(nullptr, "1"); }, "", false, 0, ""},
        Item{"no_request", [](Recorder& framework) { framework.ctx()->req_state = nullptr; }, "", false, 0, ""},
        Item{"longest_name", named(std::string(62, 'n') + "/"), std::string(62, 'n') + "_/vlan_trunk/vlan_switched",
             true, 1, ""},
        Item{"longer_name", named(std::string(63, 'n') + "/x"), std::string(63, 'n') + "/vlan_trunk/vlan_switched",
             true, 1, ""}),
    [](const testing::TestParamInfo<Item>& info) { return info.param.label; });

TEST(TrunkModeInDatabaseItem, is_released_whatever_the_answer) {
  for (const bool unpacks : {true, false}) {
    Recorder framework;
    framework.sub_interface("Ethernet1", nullptr);
    framework.sysdb_item(1);
    if (!unpacks) framework.answer("tuple_unpack", 5);
    check_switched_mode_set_in_sysdb(framework.ctx());
    EXPECT_TRUE(recording::watched_block_is_freed());
  }
}

// The item is asked for on the connection that registration bound.
TEST(TrunkModeInDatabaseItem, is_read_on_the_bound_connection) {
  const uint64_t before = vlan_cfg_sysdb_connid;
  vlan_cfg_sysdb_connid = 77;
  Recorder framework;
  framework.sub_interface("Ethernet1", nullptr);
  framework.sysdb_item_without_data();
  check_switched_mode_set_in_sysdb(framework.ctx());
  EXPECT_EQ(framework.calls(), lines("sysdb_get connid=77 path=Ethernet1/vlan_trunk/vlan_switched flags=0"));
  vlan_cfg_sysdb_connid = before;
}

TEST(TrunkModeInDatabaseDeath, stops_the_process_on_a_null_context) {
  EXPECT_DEATH(check_switched_mode_set_in_sysdb(nullptr), "\\(\\(void \\*\\)0\\) != ctx");
}

}  // namespace
}  // namespace translations
