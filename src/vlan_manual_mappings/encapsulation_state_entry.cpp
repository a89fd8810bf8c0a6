// Opens the OpenConfig sub-interface of a native operational interface entry, "Bundle-Ether1.100".
#include <cstring>

#include "engine/request.h"
#include "oc_vlan/oc_vlan.h"
#include "vlan_manual_mappings/paths.h"

namespace oc_vlan {
namespace {

// Both halves of a native interface name, split at the first ".". A copy is split; that of an ordinary name lives here,
// on the stack: one entry is opened for each sub-interface of a device, and none is worth an allocation. The copy of a
// longer name is owned.
class SubinterfaceName {
 public:
  explicit SubinterfaceName(const char* name) {
    const char* const dot = name != nullptr ? std::strchr(name, '.') : nullptr;
    if (dot == nullptr || dot == name || dot[1] == '\0') return;
    index_ = dot + 1;
    const auto length = static_cast<std::size_t>(dot - name);
    if (length < sizeof short_) {
      std::memcpy(short_, name, length);
      parent_ = short_;
      return;
    }
    owned_ = yfw_strdup(name, kNameOwner);
    if (owned_ != nullptr) owned_[length] = '\0';
    parent_ = owned_;
  }
  ~SubinterfaceName() {
    if (owned_ != nullptr) kos_named_free(owned_);
  }
  SubinterfaceName(const SubinterfaceName&) = delete;
  SubinterfaceName& operator=(const SubinterfaceName&) = delete;

  // False for a main interface, and for a name that cannot be split in two.
  bool is_subinterface() const { return index_ != nullptr; }
  // Null where no copy could be had.
  const char* parent() const { return parent_; }
  const char* index() const { return index_; }

 private:
  static constexpr const char* kNameOwner = kMessageOwner;  // as for all texts that translations copy

  char short_[256] = {};
  char* owned_ = nullptr;
  const char* parent_ = nullptr;
  const char* index_ = nullptr;
};

cerrno add_entry(const Call& call, yfw_datatree* tree, const char* path, const char* value, yfw_node_slot* slot,
                 AddForm form) {
  return yfw_map_datatree_add_path_flagged(call.ctx, tree, path, YFW_OPENCONFIG_INTERFACES_NS, value, nullptr, slot,
                                           form.list_flag, form.flags);
}

// Adds the sub-interface below its interface; the framework takes its key from the native entry.
cerrno add_subinterface(const Call& call, const yfw_node_slot& interface) {
  yfw_map_copy_trim_path_list_ctx(call.ctx, OC_INTERFACE);
  const cerrno result = add_entry(call, interface.node, OC_SUBINTERFACE, nullptr, list_slot(call.ctx), kKeyedEntry);
  yfw_map_free_trim_path_list_ctx(call.ctx);
  return result;
}

cerrno add_interface(const Call& call, const SubinterfaceName& name) {
  yfw_node_slot interface { nullptr };
  cerrno result = add_entry(call, call.output, OC_INTERFACE, nullptr, &interface, kPlainEntry);
  if (result != 0) return result;
  result = add_entry(call, call.output, OC_INTERFACE "/name", name.parent(), nullptr, kPlain);
  if (result != 0) return result;
  // No trimmed path is left behind here, unlike below an interface that was there: the entry just added is current.
  return add_subinterface(call, interface);
}

cerrno find_or_add_subinterface(const Call& call, const SubinterfaceName& name, const yfw_node_slot& interface) {
  yfw_node_slot found{nullptr};
  cerrno result = 0;
  if (yfw_map_search_list(call.ctx, interface.node, &found, OC_BELOW_INTERFACE, name.index(), "index", nullptr) != 0) {
    result = add_subinterface(call, interface);
  } else if (list_slot(call.ctx) != nullptr) {
    *list_slot(call.ctx) = found;
  }
  yfw_map_copy_trim_path_list_ctx(call.ctx, OC_SUBINTERFACE);
  return result;
}

cerrno no_copy(const Call& call) {
  OC_VLAN_ERROR(call, "Failed to copy the interface name!");
  yfw_oc_error_path(call.ctx);
  return CERR_INVALID_ARGS;
}

cerrno open_entry(const Call& call) {
  const Lookup key = look_up(call.ctx, OPER_INTERFACE, "interface");
  const SubinterfaceName name(key.text);
  if (!name.is_subinterface()) return key.status;
  if (name.parent() == nullptr) return no_copy(call);
  yfw_node_slot interface { nullptr };
  const cerrno searched = yfw_map_search_list(call.ctx, call.output, &interface, OC_INTERFACE, name.parent(), "name",
                                              YFW_OPENCONFIG_INTERFACES_NS);
  return searched != 0 ? add_interface(call, name) : find_or_add_subinterface(call, name, interface);
}

}  // namespace
}  // namespace oc_vlan

using namespace oc_vlan;

cerrno ymap_vo_oc_vlan_vexnetosl2ethinfraoper_list_lvla_vlan_interfaces_interface(yfw_map_ctx* ctx,
                                                                                  const yfw_datatree* node,
                                                                                  yfw_datatree* output,
                                                                                  yfw_datatree* /*children*/) {
  const Call call{{ctx, __func__}, node, output};
  if (!begin(call)) return CERR_INVALID_ARGS;
  return end(call, open_entry(call));
}
