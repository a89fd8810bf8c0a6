// Mapping plug-ins as the framework loads them: their file, their registration record, their entry points by name.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "yfw/yfw_map.h"

namespace yfw {

// Leaf functions that no walker calls, for whoever binds them.
struct RoutedVlanBinding {
  yfw_map_walker_fn to_native = nullptr;         // of vlan/config/vlan-id
  yfw_map_container_fn to_openconfig = nullptr;  // of the native vlan-identifier container
};

class Plugins {
 public:
  Plugins() = default;
  ~Plugins();
  Plugins(const Plugins&) = delete;
  Plugins& operator=(const Plugins&) = delete;

  // Opens the file and calls its registration entry point where it has one. Throws Unreadable when the file is no
  // plug-in: it cannot be loaded, or offers neither a registration nor an entry walker.
  void load(const std::string& path);

  bool empty() const { return handles_.empty(); }

  // Entry walkers, by the OpenConfig element below which their elements stand; null when no plug-in has one.
  yfw_map_walker_fn openconfig_entry(std::string_view below) const;

  // Entry walkers of native configuration, by the augmenting element ("ethernet-service", "l2-protocols", ...).
  yfw_map_walker_fn native_entry(std::string_view element) const;

  // Root walkers of the registration records; the OpenConfig one is the framework's own where nothing is registered.
  yfw_map_walker_fn openconfig_root() const;
  yfw_map_walker_fn operational_root() const;

  RoutedVlanBinding routed_vlan() const { return routed_vlan_; }

 private:
  void* symbol(const std::string& name) const;
  void look_up_entries();

  // Looked up once: walks ask for them at each entry.
  std::vector<std::pair<std::string_view, yfw_map_walker_fn>> openconfig_entries_;
  std::vector<std::pair<std::string_view, yfw_map_walker_fn>> native_entries_;
  RoutedVlanBinding routed_vlan_;

  std::vector<void*> handles_;
  std::vector<yfw_map_reg_mod_t> records_;
};

}  // namespace yfw
