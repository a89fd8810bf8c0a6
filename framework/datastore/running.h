// The native running configuration: owned data, and its interface entries by name.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/tree/foreign.h"
#include "yfw-host/data.h"

struct ly_ctx;
struct lysc_node;

namespace yfw {

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

}  // namespace yfw
