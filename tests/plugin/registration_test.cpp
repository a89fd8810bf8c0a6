// How the framework finds the plug-in. The plug-in remembers that the database library is there for as long as it is
// loaded, so that each case runs in a process of its own.
#include <gtest/gtest.h>

#include <cstring>
#include <iostream>

#include "oc_vlan/handlers.h"
#include "oc_vlan/oc_vlan.h"
#include "recording/recorder.h"

namespace {

using recording::lines;
using recording::Recorder;

constexpr char kAccess[] = "access path=/pkg/lib/libsysdb.so mode=4";
constexpr char kBind[] = "sysdb_bind path=/cfg/if/act/ flags=4";

// Runs `check` in a child; what it expects in vain is shown by the parent.
void in_a_fresh_process(void (*check)()) {
  EXPECT_EXIT(
      {
        check();
        std::exit(testing::Test::HasFailure() ? 1 : 0);
      },
      testing::ExitedWithCode(0), "");
}

std::string copied(const std::string& text) {
  return "strcpy caller=yfw_map_reg_ocvlan_oper size=81 source=" + text;
}

const std::string kCopies = lines(copied(YFW_VEXNET_OS_L2_ETH_INFRA_OPER_NS), copied(YFW_OPENCONFIG_INTERFACES_NS),
                                  copied("'OC Vlan tree'"), copied("vlan"), copied("interfaces"));

cerrno other_walker(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*) {
  return 0;
}

struct Record : yfw_map_reg_mod_t {
  Record() : yfw_map_reg_mod_t{} {
    std::memset(static_cast<yfw_map_reg_mod_t*>(this), 0x7f, sizeof(yfw_map_reg_mod_t));
    framework_walkers[0] = other_walker;
    framework_walkers[1] = nullptr;
  }

  void expect_filled() const {
    EXPECT_STREQ(tree_name, "OC Vlan tree");
    EXPECT_STREQ(native_ns, "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-oper");
    EXPECT_STREQ(oc_ns, "http://openconfig.net/yang/interfaces");
    EXPECT_STREQ(module_name, "vlan");
    EXPECT_STREQ(oc_root, "interfaces");
    EXPECT_EQ(oc_walker, &ymap_ov_ocif_openconfiginterfaces_lvla_interfaces);
    EXPECT_EQ(native_walker, &ymap_vo_oc_vlan_vexnetosl2ethinfraoper_lvla_vlan);
    EXPECT_EQ(framework_walkers[0], &other_walker) << "the framework's own";
    EXPECT_EQ(framework_walkers[1], nullptr);
    EXPECT_EQ(extra, nullptr);
  }
};

TEST(Registration, fills_the_record_and_binds_the_database) {
  in_a_fresh_process([] {
    Recorder framework;
    Record record;
    yfw_map_reg_ocvlan_oper(&record);
    record.expect_filled();
    EXPECT_EQ(framework.all_calls(), kCopies + lines(kAccess, kBind));
    EXPECT_EQ(vlan_cfg_sysdb_connid, 4711u);
  });
}

TEST(Registration, keeps_the_record_where_the_database_library_is_absent) {
  in_a_fresh_process([] {
    Recorder framework;
    framework.answer("access", static_cast<uint32_t>(-1));
    vlan_cfg_sysdb_connid = 42;
    Record record;
    yfw_map_reg_ocvlan_oper(&record);
    record.expect_filled();
    EXPECT_EQ(framework.all_calls(), kCopies + lines(kAccess)) << "no message, no binding";
    EXPECT_EQ(vlan_cfg_sysdb_connid, 42u);
  });
}

class RegistrationCopy : public testing::TestWithParam<int> {};

TEST_P(RegistrationCopy, that_fails_stops_the_process) {
  EXPECT_DEATH(
      {
        Recorder framework;
        framework.answer("strcpy", 1, GetParam());
        Record record;
        yfw_map_reg_ocvlan_oper(&record);
      },
      "Assertion `rc == 0' failed");
}

INSTANTIATE_TEST_SUITE_P(Registration, RegistrationCopy, testing::Range(1, 6));

TEST(DatabaseBinding, tests_for_the_library_until_it_was_there_once_and_binds_each_time) {
  in_a_fresh_process([] {
    Recorder framework;
    framework.answer("access", static_cast<uint32_t>(-1), 1);
    framework.answer("access", 7, 2);
    EXPECT_EQ(yfw_vlan_sysdb_init(), -1);
    EXPECT_EQ(yfw_vlan_sysdb_init(), 7);
    EXPECT_EQ(yfw_vlan_sysdb_init(), 0);
    EXPECT_EQ(yfw_vlan_sysdb_init(), 0);
    EXPECT_EQ(yfw_vlan_sysdb_init(), 0);
    EXPECT_EQ(framework.all_calls(), lines(kAccess, kAccess, kAccess, kBind, kBind, kBind));
  });
}

TEST(DatabaseBinding, gives_its_own_result) {
  in_a_fresh_process([] {
    Recorder framework;
    framework.answer("sysdb_bind", 17, 1);
    EXPECT_EQ(yfw_vlan_sysdb_init(), 17);
    EXPECT_EQ(vlan_cfg_sysdb_connid, 0u);
    EXPECT_EQ(yfw_vlan_sysdb_init(), 0);
    EXPECT_EQ(framework.all_calls(), lines(kAccess, kBind, kBind)) << "a failed binding is no absent library";
    EXPECT_EQ(vlan_cfg_sysdb_connid, 4711u);
  });
}

}  // namespace
