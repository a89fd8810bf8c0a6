// Small questions to libyang schemas that several parts of the framework ask.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <libyang/libyang.h>

namespace yfw {

// What libyang last complained about in this context: its message, and the instance path of the node; each may be
// empty.
struct Complaint {
  std::string message;
  std::string path;
};
Complaint last_complaint(const ly_ctx* models);

// The names of the tables that the framework itself knows by heart.
inline constexpr char kInterfacesModule[] = "openconfig-interfaces";
inline constexpr char kNativeInterfaceModule[] = "Vexnet-OS-interface-cfg";
inline constexpr char kNativeInterfaceNs[] = "http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg";
inline constexpr char kNativeVlanModule[] = "Vexnet-OS-l2-eth-infra-cfg";
inline constexpr char kNativeOperModule[] = "Vexnet-OS-l2-eth-infra-oper";

// The data child of `parent` called `name`; null `parent` asks for the top-level nodes of `module`. Where two modules
// use the name, the one in namespace `ns` is preferred. Null when there is none.
const lysc_node* find_child(const lysc_node* parent, const lys_module* module, std::string_view name, const char* ns);

// Namespace of the node's module.
inline const char* namespace_of(const lysc_node* node) {
  return node->module->ns;
}

inline bool is_list(const lysc_node* node) {
  return node->nodetype == LYS_LIST;
}
inline bool is_term(const lysc_node* node) {
  return (node->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
}

// The schema node of a data node, opaque ones included; null when the models do not know it.
const lysc_node* schema_of(const lyd_node* node);

// Namespace of the module that defines the enumeration of a leaf's type; of a typedef, the typedef's module.
const char* enumeration_namespace(const lysc_node* leaf);

// The first key leaf of a list. Every list of the mapped models has one key at most.
const lysc_node* key_of(const lysc_node* list);

// Paths as mapping functions write them, "/interfaces/interface/name", turned into schema nodes and remembered.
// Prefixes and a trailing "/" are ignored.
class PathCache {
 public:
  using Steps = std::vector<const lysc_node*>;

  explicit PathCache(const ly_ctx* models) : models_(models) {}

  // From the top of the mapped models. Null when a step is unknown, or when the last one is not in `ns` (null: any).
  const Steps* resolve(const char* path, const char* ns);

  // The same, below `base`.
  const Steps* resolve_below(const lysc_node* base, const char* path, const char* ns);

 private:
  const Steps* remember(std::string key, const lysc_node* base, std::string_view path, const char* ns);
  const lysc_node* top(std::string_view name) const;

  const ly_ctx* models_;
  std::unordered_map<std::string, Steps> known_;
  std::string key_;
};

}  // namespace yfw
