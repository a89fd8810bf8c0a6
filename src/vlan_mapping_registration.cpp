// How the framework finds this plug-in: the registration record, and the binding to the system database.
#include <unistd.h>

// The header declares the C library's assertion failure only where NDEBUG is not set, and release builds need it too.
#undef NDEBUG
#include <cassert>

#include "oc_vlan/handlers.h"
#include "oc_vlan/oc_vlan.h"
#include "yfw/platform.h"

uint64_t vlan_cfg_sysdb_connid;

namespace {

constexpr char kRegistration[] = "yfw_map_reg_ocvlan_oper";
constexpr char kDatabaseLibrary[] = "/pkg/lib/libsysdb.so";
constexpr char kDatabasePath[] = "/cfg/if/act/";
constexpr std::size_t kTextSize = 81;

bool database_library_is_present;

// A text that does not fit is a mistake of this library, in every build type.
void copy_text(char (&destination)[kTextSize], const char* text) {
  const int rc = yfw_strcpy_s(kRegistration, destination, sizeof destination, text);
  if (rc != 0) __assert_fail("rc == 0", __FILE__, __LINE__, kRegistration);
}

}  // namespace

void yfw_map_reg_ocvlan_oper(yfw_map_reg_mod_t* record) {
  copy_text(record->native_ns, YFW_VEXNET_OS_L2_ETH_INFRA_OPER_NS);
  copy_text(record->oc_ns, YFW_OPENCONFIG_INTERFACES_NS);
  copy_text(record->tree_name, "OC Vlan tree");
  copy_text(record->module_name, "vlan");
  copy_text(record->oc_root, "interfaces");
  record->oc_walker = ymap_ov_ocif_openconfiginterfaces_lvla_interfaces;
  record->native_walker = ymap_vo_oc_vlan_vexnetosl2ethinfraoper_lvla_vlan;
  record->extra = nullptr;
  yfw_vlan_sysdb_init();
}

int yfw_vlan_sysdb_init(void) {
  if (!database_library_is_present) {
    const int rc = access(kDatabaseLibrary, R_OK);
    if (rc != 0) return rc;
    database_library_is_present = true;
  }
  return _sysdb_bind(&vlan_cfg_sysdb_connid, kDatabasePath, SYSDB_BIND_FLAGS);
}
