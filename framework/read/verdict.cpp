// Verdicts in words.
#include "framework/read/verdict.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"

namespace yfw {

// "ethernet-service/rewrite/rewrite-type "pop2"": a leaf by its path below the entry.
std::string setting(const lyd_node* entry, const lyd_node* leaf) {
  std::string path;
  for (const lyd_node* node = leaf; node != entry; node = lyd_parent(node)) {
    std::string step = LYD_NAME(node);
    if (is_list(node->schema)) step += predicate(LYD_NAME(lyd_child(node)), lyd_get_value(lyd_child(node)));
    path = path.empty() ? step : fmt::format("{}/{}", step, path);
  }
  const std::string_view value = lyd_get_value(leaf);
  return value.empty() ? path : fmt::format("{} \"{}\"", path, value);
}

std::string value_of(const lyd_node* leaf) {
  return is_term(leaf->schema) ? lyd_get_value(leaf) : "";
}

// The key of an inner entry that other leaves of it name as well.
bool is_named_by_others(const lyd_node* leaf) {
  return is_term(leaf->schema) && lysc_is_key(leaf->schema) && leaf->next != nullptr;
}

void append(std::string& text, std::string_view separator, std::string_view part) {
  if (!text.empty()) text += separator;
  text += part;
}

// What the container of a leaf is taken for; empty when for nothing else.
std::string misread_as(const EntryVerdict& verdict, const lyd_node* leaf) {
  for (const EntryVerdict::Misread& each : verdict.misread) {
    if (each.container == leaf->schema->parent) return each.reads_as;
  }
  return {};
}

}  // namespace yfw
