// Loading of plug-ins and the names by which their functions are found.
#include "framework/walk/plugin.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <mutex>
#include <utility>

#include "yfw-host/error.h"
#include "yfw/platform.h"

namespace yfw {

namespace {

constexpr char kRegistration[] = "yfw_map_reg_ocvlan_oper";
constexpr char kOpenConfigPrefix[] = "ymap_ov_oc_vlan_openconfigvlan_augment_lvla_";
constexpr char kNativePrefix[] = "ymap_vo_oc_vlan_vexnetosl2ethinfracfg_augment_";
constexpr char kSysdbConnection[] = "vlan_cfg_sysdb_connid";
constexpr char kSysdbRoot[] = "/cfg/if/act/";
constexpr uint32_t kSysdbFlags = 4;

// The elements below which those of a plug-in stand.
constexpr std::array<const char*, 6> kOpenConfigEntries{"config",   "state",       "subinterface",
                                                        "ethernet", "aggregation", "interface"};

struct NativeEntry {
  std::string_view element;
  const char* walker;
};

constexpr std::array<NativeEntry, 11> kNativeEntries{{
    {"user-network-interface", "lvla_interface_configuration"},
    {"vlan-sub-configuration", "lvlb_interface_configuration"},
    {"ethernet-service", "lvlc_interface_configuration"},
    {"ethernet-bng", "lvld_interface_configuration"},
    {"mac-accounting", "lvle_interface_configuration"},
    {"ethernet-features", "lvlf_interface_configuration"},
    {"carrier-delay", "lvlg_interface_configuration"},
    {"vlan-trunk-configuration", "lvlh_interface_configuration"},
    {"l2-protocols", "lvla_l2_transport"},
    {"propagate-remote-status", "lvlb_l2_transport"},
    {"l2-ethernet-features", "lvlc_l2_transport"},
}};

template <typename Function>
Function as_function(void* symbol) {
  return reinterpret_cast<Function>(symbol);
}

}  // namespace

Plugins::~Plugins() {
  for (void* const handle : handles_) dlclose(handle);
}

void* Plugins::symbol(const std::string& name) const {
  for (void* const handle : handles_) {
    void* const found = dlsym(handle, name.c_str());
    if (found != nullptr) return found;
  }
  return nullptr;
}

void Plugins::load(const std::string& path) {
  void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) throw Unreadable(fmt::format("cannot load plug-in {}: {}", path, dlerror()));
  const auto has = [handle](const std::string& name) { return dlsym(handle, name.c_str()) != nullptr; };
  if (!has(kRegistration) && !has(std::string(kOpenConfigPrefix) + "subinterface")) {
    dlclose(handle);
    throw Unreadable(fmt::format("{} is no mapping plug-in: it has neither a registration nor an entry walker", path));
  }
  handles_.push_back(handle);
  look_up_entries();
  // A plug-in's own state is one per process, whichever host loads it.
  static std::mutex registration;
  const std::lock_guard<std::mutex> lock(registration);
  const auto register_module = as_function<void (*)(yfw_map_reg_mod_t*)>(dlsym(handle, kRegistration));
  if (register_module == nullptr) return;
  yfw_map_reg_mod_t record{};
  register_module(&record);
  records_.push_back(record);
  // Without the device's database library the plug-in leaves its connection alone; the framework is the database here.
  auto* const connection = static_cast<uint64_t*>(dlsym(handle, kSysdbConnection));
  if (connection != nullptr && *connection == 0) _sysdb_bind(connection, kSysdbRoot, kSysdbFlags);
}

void Plugins::look_up_entries() {
  openconfig_entries_.clear();
  for (const char* const below : kOpenConfigEntries) {
    openconfig_entries_.emplace_back(
        below, as_function<yfw_map_walker_fn>(symbol(fmt::format("{}{}", kOpenConfigPrefix, below))));
  }
  native_entries_.clear();
  for (const NativeEntry& each : kNativeEntries) {
    native_entries_.emplace_back(
        each.element, as_function<yfw_map_walker_fn>(symbol(fmt::format("{}{}", kNativePrefix, each.walker))));
  }
  routed_vlan_ = {as_function<yfw_map_walker_fn>(symbol("map_oc_to_vex_l3_vlan")),
                  as_function<yfw_map_container_fn>(symbol("map_vex_to_oc_l3_vlan"))};
}

namespace {

template <typename Entries>
yfw_map_walker_fn walker_of(const Entries& entries, std::string_view name) {
  const auto found =
      std::find_if(entries.begin(), entries.end(), [name](const auto& each) { return each.first == name; });
  return found == entries.end() ? nullptr : found->second;
}

}  // namespace

yfw_map_walker_fn Plugins::openconfig_entry(std::string_view below) const {
  return walker_of(openconfig_entries_, below);
}

yfw_map_walker_fn Plugins::native_entry(std::string_view element) const {
  return walker_of(native_entries_, element);
}

yfw_map_walker_fn Plugins::openconfig_root() const {
  for (const yfw_map_reg_mod_t& record : records_) {
    if (record.oc_walker != nullptr) return record.oc_walker;
  }
  return ymap_ov_ocif_openconfiginterfaces_lvla_interfaces;
}

yfw_map_walker_fn Plugins::operational_root() const {
  for (const yfw_map_reg_mod_t& record : records_) {
    if (record.native_walker != nullptr) return record.native_walker;
  }
  return nullptr;
}

}  // namespace yfw
