// The native running configuration: owned data, and its interface entries by name.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/data.h"
#include "framework/foreign.h"

struct ly_ctx;
struct lysc_node;

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

class Running {
 public:
  // Takes the configuration over. Null data is an empty configuration.
  explicit Running(Data data = {}, ForeignSubtrees foreign = {});

  const Data& data() const { return data_; }
  const ForeignSubtrees& foreign() const { return foreign_; }

  // Gives the configuration away; what is left is empty.
  Data take();

  // The entry of a native interface; null when there is none.
  const lyd_node* entry(std::string_view native_name) const;

  // All entries, in the order of the configuration.
  const std::vector<const lyd_node*>& entries() const { return order_; }

  // The entries of these names; names without an entry are left out.
  std::vector<const lyd_node*> entries_of(const std::vector<std::string>& native_names) const;

  // Native names of the sub-interfaces of an interface that have an entry.
  std::vector<std::string> subinterfaces_of(std::string_view name) const;

  // The entries of these names, copied into a tree of their own; names without an entry are left out.
  Data copy(const std::vector<std::string>& native_names) const;

  // Puts what `changed` holds of these names in place of what is here: entries are replaced, added, or go. Foreign
  // subtrees go with the entries that they are in, and stay otherwise.
  void replace(const std::vector<std::string>& native_names, Data changed);

 private:
  void index();
  void keep_places(const std::vector<std::string>& going);

  Data data_;
  ForeignSubtrees foreign_;
  std::vector<const lyd_node*> order_;
  std::unordered_map<std::string_view, const lyd_node*> by_name_;
  std::unordered_map<std::string, std::vector<std::string>> subinterfaces_;
};

bool is_interface_entry(const lyd_node* node);

// The name of an interface entry.
std::string_view entry_name(const lyd_node* entry);

// True when the entry is an L2 transport interface.
bool is_l2(const lyd_node* entry);

// True for a node of that name; a null node has none.
bool named(const lyd_node* node, std::string_view name);

// True for a node and for all that stand above it.
bool is_ancestor_or_self(const lyd_node* above, const lyd_node* node);

// The node at an instance path; null when there is none.
const lyd_node* node_at(const Data& data, const std::string& path);

// The child of a node by its schema name; null when there is none.
const lyd_node* child_named(const lyd_node* parent, std::string_view name);

}  // namespace yfw
