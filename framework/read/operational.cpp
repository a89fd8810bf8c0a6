// One card's word for each interface.
#include "framework/read/operational.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <array>
#include <map>

#include "framework/tree/nodes.h"
#include "yfw-host/data.h"

namespace yfw {

namespace {

// The lists of a card, and their entries.
struct List {
  const char* container;
  const char* entry;
};
constexpr std::array<List, 2> kLists{{{"trunks", "trunk"}, {"interfaces", "interface"}}};

std::string key_of(const lyd_node* entry) {
  const lyd_node* const key = lyd_child(entry);
  return key == nullptr ? "" : lyd_get_value(key);
}

const lyd_node* node_of(const lyd_node* entry) {
  return &entry->parent->parent->node;
}

std::vector<lyd_node*> entries_of(const Data& operational, const List& list) {
  std::vector<lyd_node*> entries;
  const lyd_node* top = nullptr;
  LY_LIST_FOR(operational.get(), top) {
    const lyd_node* const nodes = child_named(top, "nodes");
    const lyd_node* node = nullptr;
    LY_LIST_FOR(nodes == nullptr ? nullptr : lyd_child(nodes), node) {
      const lyd_node* const container = child_named(node, list.container);
      lyd_node* entry = nullptr;
      LY_LIST_FOR(container == nullptr ? nullptr : lyd_child(container), entry) {
        if (named(entry, list.entry)) entries.push_back(entry);
      }
    }
  }
  return entries;
}

}  // namespace

std::vector<Contradiction> keep_last_told(Data& operational) {
  std::vector<Contradiction> contradictions;
  for (const List& list : kLists) {
    const std::vector<lyd_node*> entries = entries_of(operational, list);
    std::map<std::string, lyd_node*> last;
    for (lyd_node* const entry : entries) last[key_of(entry)] = entry;
    for (lyd_node* const entry : entries) {
      const std::string interface = key_of(entry);
      const lyd_node* const used = last.at(interface);
      if (entry == used) continue;
      if (lyd_compare_single(entry, used, LYD_COMPARE_FULL_RECURSION) != LY_SUCCESS) {
        contradictions.push_back(
            {interface,
             {path_of(entry), fmt::format("not used: the nodes {} and {} tell of {} differently, and the latter counts",
                                          key_of(node_of(entry)), key_of(node_of(used)), interface)}});
      }
      lyd_free_tree(entry);
    }
  }
  return contradictions;
}

}  // namespace yfw
