// A walker family as data: one row per node, and what makes a row wrong.
#pragma once

#include <cstdint>

#include "yfw/yfw_map.h"

namespace oc_vlan {

enum class Kind : uint8_t {
  kEntry,  // accepts one augmenting element and hands it to the walker of its only child row
  kContainer,
  kList,  // handler with three arguments, or with four (`oper_list`)
  kLeaf,
};

inline constexpr int kNone = -1;

// One node. Handlers and hooks are reached through these pointers only: they are bound to the exported names when the
// library is loaded, so that a definition elsewhere takes the place of the one here.
struct Row {
  Kind kind = Kind::kLeaf;
  const char* walker = nullptr;  // exported or internal, the name that messages carry
  const char* tag = nullptr;     // null for an entry and a root
  int parent = kNone;            // index of the parent's row, kNone for an entry and a root
  int line = 0;                  // where the row is written

  yfw_map_container_fn container = nullptr;
  yfw_map_walker_fn leaf_or_list = nullptr;
  yfw_map_oper_list_fn oper_list = nullptr;
  yfw_map_walker_fn hook = nullptr;  // every row but a leaf

  const char* key = nullptr;  // of a list
  const char* list_path = nullptr;

  // Filled in by `link`: how many rows further on, 0 where there is none.
  int to_first_child = 0;
  int to_next_sibling = 0;
  bool holds_state = false;
};

constexpr const Row* first_child(const Row& row) {
  return row.to_first_child != 0 ? &row + row.to_first_child : nullptr;
}

constexpr const Row* next_sibling(const Row& row) {
  return row.to_next_sibling != 0 ? &row + row.to_next_sibling : nullptr;
}

template <int N>
struct Table {
  Row rows[N];
};

constexpr bool same_text(const char* left, const char* right) {
  while (*left != '\0' && *left == *right) ++left, ++right;
  return *left == *right;
}

// Makes children reachable, in the order of their rows.
template <int N>
constexpr Table<N> link(const Row (&rows)[N]) {
  Table<N> table{};
  for (int i = 0; i < N; ++i) table.rows[i] = rows[i];
  for (int i = N - 1; i >= 0; --i) {
    Row& row = table.rows[i];
    // OpenConfig separates what is from what was asked by this name of a container.
    row.holds_state = row.tag != nullptr && same_text(row.tag, "state");
    if (row.parent < 0 || row.parent >= i) continue;
    Row& parent = table.rows[row.parent];
    if (parent.to_first_child != 0) row.to_next_sibling = row.parent + parent.to_first_child - i;
    parent.to_first_child = i - row.parent;
  }
  return table;
}

template <int N>
constexpr bool parents_come_first(const Table<N>& table) {
  for (int i = 0; i < N; ++i) {
    if (table.rows[i].parent != kNone && (table.rows[i].parent < 0 || table.rows[i].parent >= i)) return false;
  }
  return true;
}

template <int N>
constexpr bool only_entries_and_roots_have_no_parent(const Table<N>& table) {
  for (const Row& row : table.rows) {
    if ((row.parent == kNone) != (row.tag == nullptr)) return false;
    if (row.kind == Kind::kEntry && row.parent != kNone) return false;
  }
  return true;
}

template <int N>
constexpr bool leaves_have_no_children(const Table<N>& table) {
  for (const Row& row : table.rows) {
    if (row.kind == Kind::kLeaf && first_child(row) != nullptr) return false;
  }
  return true;
}

template <int N>
constexpr bool entries_have_one_child(const Table<N>& table) {
  for (const Row& row : table.rows) {
    if (row.kind != Kind::kEntry) continue;
    if (first_child(row) == nullptr || next_sibling(*first_child(row)) != nullptr) return false;
  }
  return true;
}

template <int N>
constexpr bool tags_are_unique_under_their_parent(const Table<N>& table) {
  for (const Row& row : table.rows) {
    for (const Row* other = next_sibling(row); other != nullptr; other = next_sibling(*other)) {
      if (same_text(row.tag, other->tag)) return false;
    }
  }
  return true;
}

template <int N>
constexpr bool lists_have_a_key_and_a_path(const Table<N>& table) {
  for (const Row& row : table.rows) {
    if ((row.kind == Kind::kList) != (row.key != nullptr && row.list_path != nullptr)) return false;
  }
  return true;
}

// Says which sentence a table breaks; use as static_assert(check<kTable>()).
template <const auto& kTable>
constexpr bool check() {
  static_assert(parents_come_first(kTable), "a row's parent is not a row above it");
  static_assert(only_entries_and_roots_have_no_parent(kTable), "a node without a parent is an entry or a root");
  static_assert(leaves_have_no_children(kTable), "a leaf's row is named as a parent");
  static_assert(entries_have_one_child(kTable), "an entry accepts exactly one element");
  static_assert(tags_are_unique_under_their_parent(kTable), "two rows under one parent have the same tag");
  static_assert(lists_have_a_key_and_a_path(kTable), "a list, and only a list, has a key and a list path");
  return true;
}

}  // namespace oc_vlan
