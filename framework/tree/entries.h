// The entries of the native interface list, and their names.
#pragma once

#include <string>
#include <string_view>

struct lyd_node;

namespace yfw {

// The two halves of a native interface name: NAME, or NAME.INDEX split at the first dot.
struct InterfaceName {
  std::string_view name;
  std::string_view index;  // empty for a main interface
  bool is_subinterface() const { return !index.empty(); }
};

InterfaceName split_interface_name(std::string_view native);

// False for a native name without a NAME, or with a dot and no INDEX as numbers are written: OpenConfig has no place
// for such an entry.
bool is_interface_name(std::string_view native);

// NAME, or NAME.INDEX.
std::string join_interface_name(std::string_view name, std::string_view index);

// The container that holds the entries.
bool is_interface_root(const lyd_node* node);

bool is_interface_entry(const lyd_node* node);

// The name of an interface entry.
std::string_view entry_name(const lyd_node* entry);

// True when the entry is an L2 transport interface.
bool is_l2(const lyd_node* entry);

}  // namespace yfw
