// Holds what the validator says of data against libyang's own validation of them.
#pragma once

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "framework/datastore/validate.h"
#include "framework/tree/schema.h"

namespace yfw::test {

inline const char* name_of(Reach reach) {
  return reach == Reach::nowhere ? "nowhere" : reach == Reach::entry ? "entry" : "beyond";
}

inline bool validate_by_libyang(Data& data) {
  return lyd_validate_all(data.out(), nullptr, LYD_VALIDATE_NO_STATE | LYD_VALIDATE_PRESENT, nullptr) == LY_SUCCESS;
}

inline bool is_in_list(const lyd_node* node) {
  while (node != nullptr && (node->schema == nullptr || !is_list(node->schema))) node = lyd_parent(node);
  return node != nullptr;
}

// What somebody put there, by path; a default that is in force is not.
using Nodes = std::multiset<std::string>;

enum class Of : std::uint8_t { everything, lists };

inline void add_nodes(const lyd_node* siblings, Of part, Nodes& nodes) {
  const lyd_node* node = nullptr;
  LY_LIST_FOR(siblings, node) {
    const lysc_node* const schema = node->schema;
    const bool holds_only =
        schema != nullptr && schema->nodetype == LYS_CONTAINER && (schema->flags & LYS_PRESENCE) == 0;
    const bool counts = !holds_only && (node->flags & LYD_DEFAULT) == 0 && (part == Of::everything || is_in_list(node));
    if (counts) {
      const std::unique_ptr<char, void (*)(void*)> path(lyd_path(node, LYD_PATH_STD, nullptr, 0), std::free);
      const bool is_value = schema != nullptr && is_term(schema);
      nodes.insert(fmt::format("{} {}", path.get(), is_value ? lyd_get_value(node) : ""));
    }
    add_nodes(lyd_child(node), part, nodes);
  }
}

inline Nodes nodes_of(const Data& data, Of part = Of::everything) {
  Nodes nodes;
  add_nodes(data.get(), part, nodes);
  return nodes;
}

// Every entry of the outermost lists, alone in its containers.
inline void add_entries(const lyd_node* siblings, std::vector<Data>& entries) {
  const lyd_node* node = nullptr;
  LY_LIST_FOR(siblings, node) {
    if (!is_list(node->schema)) {
      add_entries(lyd_child(node), entries);
      continue;
    }
    lyd_node* copy = nullptr;
    lyd_dup_single(node, nullptr, LYD_DUP_RECURSIVE | LYD_DUP_WITH_PARENTS | LYD_DUP_WITH_FLAGS, &copy);
    while (copy->parent != nullptr) copy = &copy->parent->node;
    entries.emplace_back(copy);
  }
}

// How libyang contradicts what the validator says of these data; empty when it does not.
inline std::string contradiction(const Data& data, Reach reach) {
  if (reach == Reach::beyond) return {};
  Data whole = data.clone();
  const bool valid = validate_by_libyang(whole);
  if (reach == Reach::nowhere) {
    if (!valid) return "libyang refuses it";
    const Nodes before = nodes_of(data);
    const Nodes after = nodes_of(whole);
    return before == after ? "" : fmt::format("libyang makes of\n  {}\nthis:\n  {}", before, after);
  }
  std::vector<Data> entries;
  add_entries(data.get(), entries);
  bool all_valid = true;
  Nodes left;
  for (Data& entry : entries) {
    all_valid = validate_by_libyang(entry) && all_valid;
    left.merge(nodes_of(entry, Of::lists));
  }
  if (all_valid != valid) return fmt::format("the whole is {}valid, the entries are not", valid ? "" : "in");
  if (valid && left != nodes_of(whole, Of::lists)) return "the entries lose other nodes than the whole";
  return {};
}

}  // namespace yfw::test
