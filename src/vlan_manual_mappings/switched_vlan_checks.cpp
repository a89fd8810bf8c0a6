// Whether a port is, or is to be, in trunk mode, and what kind of interface it is.
#include <cstdlib>
#include <cstring>

#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/identity.h"
#include "vlan_manual_mappings/platform_name.h"

namespace oc_vlan {
namespace {

constexpr std::size_t kItemPathSize = 257;
constexpr int32_t kSwitchedMode = 1;

// The item's data, released whatever becomes of it.
class ItemValue {
 public:
  ItemValue() = default;
  ItemValue(const ItemValue&) = delete;
  ItemValue& operator=(const ItemValue&) = delete;
  ~ItemValue() { std::free(data); }

  void* data = nullptr;
  uint32_t length = 0;
};

bool switched_in_database(const Frame& frame) {
  const char* const interface = interface_name(frame.ctx);
  if (interface == nullptr) return false;
  const Text<kItemPathSize> path(platform_name(interface).c_str(), "/vlan_trunk/vlan_switched");

  ItemValue value;
  uint32_t type = 0;
  const cerrno read = sysdb_item_get(vlan_cfg_sysdb_connid, path.c_str(), &value.data, &value.length, &type, 0);
  if (read != 0) {
    const char* const reason = cerr_strerror(read);
    OC_VLAN_ERROR(frame, "In check_switched_mode_set_in_sysdb sysdb_item_get forpath %s returned error %d : %s",
                  path.c_str(), static_cast<int>(read), reason);
    return false;
  }
  if (value.data == nullptr) return false;

  int32_t mode = 0;
  int32_t second = 0;
  int32_t third = 0;
  const char* text = nullptr;
  if (tuple_unpack_mask(value.data, value.length, "%d%d%d%s", &mode, &second, &third, &text) != 0) {
    OC_VLAN_ERROR(frame, "In check_switched_mode_set_in_sysdb tuple_unpack failed");
    return false;
  }
  return mode == kSwitchedMode;
}

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

int check_interface_mode_set_in_subtree(const yfw_datatree* config) {
  if (config == nullptr) return 0;
  int found = 0;
  for (const yfw_datatree& child : children(*config)) {
    if (same(child.tag, "interface-mode") && same(child.value, kTrunk)) found = 1;
  }
  return found;
}

int check_switched_mode_set_in_sysdb(yfw_map_ctx* ctx) {
  OC_VLAN_REQUIRE_CONTEXT(ctx, __func__);
  const Frame frame{ctx, __func__};
  OC_VLAN_TRACE(frame, "Start");
  const int answer = switched_in_database(frame) ? 1 : 0;
  OC_VLAN_TRACE(frame, "End");
  return answer;
}

int check_switched_vlan_cfgd_on_ether_or_bundle(const char* name) {
  if (name == nullptr) return 0;
  return std::strstr(name, "Bundle-Ether") != nullptr ? 2 : 1;
}
