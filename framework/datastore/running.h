// The native running configuration: entries by name, and what stands beside them.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "framework/datastore/entry_set.h"
#include "framework/tree/foreign.h"
#include "yfw-host/data.h"

struct ly_ctx;
struct lyd_node;

namespace yfw {

// One version of a configuration. What it points at stays as it is for as long as it lives.
class Running {
 public:
  // Takes the configuration over. Null data is an empty configuration.
  explicit Running(Data data = {}, ForeignSubtrees foreign = {});

  const ForeignSubtrees& foreign() const { return foreign_; }

  // All of it as one tree, copied.
  Data whole() const;

  // As a document that can be read again. Throws Refused where foreign subtrees came in another format.
  std::string print(const ly_ctx* models, Format format) const;

  // The entry of a native interface; null when there is none.
  const lyd_node* entry(std::string_view native_name) const;

  // All entries, in the order of the configuration.
  const std::vector<const lyd_node*>& entries() const;

  // The entries of these names; names without an entry are left out.
  std::vector<const lyd_node*> entries_of(const std::vector<std::string>& native_names) const;

  // Native names of the sub-interfaces of an interface that have an entry, in the order of the configuration.
  std::vector<std::string> subinterfaces_of(std::string_view name) const;

  // The native name of some sub-interface of an interface; empty when none has an entry.
  std::string a_subinterface_of(std::string_view name) const;

  // The entries of these names, copied into a tree of their own; names without an entry are left out.
  Data copy(const std::vector<std::string>& native_names) const;

  // Puts what `changed` holds of these names in place of what is here: entries are replaced, added, or go, and are
  // shared from then on. Foreign subtrees go with the entries that they are in, and stay otherwise.
  void replace(const std::vector<std::string>& native_names, const Running& changed);

 private:
  struct Order {
    std::once_flag made;
    std::vector<PlacedEntry> entries;
    std::vector<const lyd_node*> nodes;
  };

  void keep_places(const std::unordered_set<std::string_view>& going);
  const Order& order() const;

  EntrySet entries_;
  Data beside_;  // everything but the entries, their container among it where there is one
  bool is_beside_empty_ = true;
  std::uint64_t next_place_ = 0;
  ForeignSubtrees foreign_;
  std::unique_ptr<Order> order_ = std::make_unique<Order>();  // made when it is asked for
};

}  // namespace yfw
