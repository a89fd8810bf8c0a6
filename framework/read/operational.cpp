// One card's word for each interface.
#include "framework/read/operational.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "yfw-host/data.h"

namespace yfw {

namespace {

// The lists of a card, and their entries.
struct List {
  const char* container;
  const char* entry;
};
constexpr std::array<List, 2> kLists{{{"trunks", "trunk"}, {"interfaces", "interface"}}};

std::string_view key_of(const lyd_node* entry) {
  const lyd_node* const key = lyd_child(entry);
  return key == nullptr ? "" : lyd_get_value(key);
}

const lyd_node* node_of(const lyd_node* entry) {
  return &entry->parent->parent->node;
}

bool is_list_of_card(const lyd_node* node) {
  return std::any_of(kLists.begin(), kLists.end(), [node](const List& list) { return named(node, list.container); }) &&
         named(lyd_parent(node), "node");
}

template <typename Work>
void for_each_card(const Data& operational, const Work& work) {
  const lyd_node* top = nullptr;
  LY_LIST_FOR(operational.get(), top) {
    const lyd_node* const nodes = child_named(top, "nodes");
    const lyd_node* node = nullptr;
    LY_LIST_FOR(nodes == nullptr ? nullptr : lyd_child(nodes), node) {
      work(node);
    }
  }
}

std::vector<lyd_node*> entries_of(const Data& operational, const List& list) {
  std::vector<lyd_node*> entries;
  for_each_card(operational, [&](const lyd_node* node) {
    const lyd_node* const container = child_named(node, list.container);
    lyd_node* entry = nullptr;
    LY_LIST_FOR(container == nullptr ? nullptr : lyd_child(container), entry) {
      if (named(entry, list.entry)) entries.push_back(entry);
    }
  });
  return entries;
}

// True when something stands in the node that is neither the way to an entry of a card nor such an entry.
bool holds_more(const lyd_node* node) {
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (child->schema == nullptr) return true;
    if (is_state_entry(child) || (is_term(child->schema) && lysc_is_key(child->schema))) continue;
    const bool is_way = named(child, "nodes") || named(child, "node") || is_list_of_card(child);
    if (!is_way || holds_more(child)) return true;
  }
  return false;
}

}  // namespace

std::vector<const lyd_node*> state_entries_of(const Data& operational) {
  std::vector<const lyd_node*> entries;
  for_each_card(operational, [&](const lyd_node* node) {
    const lyd_node* list = nullptr;
    LY_LIST_FOR(lyd_child(node), list) {
      const lyd_node* entry = nullptr;
      LY_LIST_FOR(is_list_of_card(list) ? lyd_child(list) : nullptr, entry) {
        if (is_state_entry(entry)) entries.push_back(entry);
      }
    }
  });
  return entries;
}

bool is_state_entry(const lyd_node* node) {
  const lyd_node* const container = lyd_parent(node);
  return container != nullptr && node->schema != nullptr && is_list(node->schema) && is_list_of_card(container);
}

std::vector<const lyd_node*> rest_of_state(const Data& operational) {
  std::vector<const lyd_node*> rest;
  const lyd_node* top = nullptr;
  LY_LIST_FOR(operational.get(), top) {
    if (top->schema != nullptr && holds_more(top)) rest.push_back(top);
  }
  return rest;
}

// What the last card tells is found from behind, and only once: of an entry that goes nothing is kept.
std::vector<Contradiction> keep_last_told(Data& operational) {
  std::vector<Contradiction> contradictions;
  for (const List& list : kLists) {
    const std::vector<lyd_node*> entries = entries_of(operational, list);
    std::unordered_map<std::string_view, lyd_node*> last;
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) last.try_emplace(key_of(*entry), *entry);
    for (lyd_node* const entry : entries) {
      const std::string_view interface = key_of(entry);
      const lyd_node* const used = last.at(interface);
      if (entry == used) continue;
      if (lyd_compare_single(entry, used, LYD_COMPARE_FULL_RECURSION) != LY_SUCCESS) {
        contradictions.push_back(
            {std::string(interface),
             {path_of(entry), fmt::format("not used: the nodes {} and {} tell of {} differently, and the latter counts",
                                          key_of(node_of(entry)), key_of(node_of(used)), interface)}});
      }
      lyd_free_tree(entry);
    }
  }
  return contradictions;
}

}  // namespace yfw
