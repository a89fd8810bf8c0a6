// Leaves found by paths of names, without XPath.
#include "framework/datastore/settled.h"

#include <libyang/plugins_types.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "framework/tree/schema.h"

namespace yfw {

std::vector<const lysc_node*> atoms_of(const lysc_node* node, const lysc_node* context, const lyxp_expr* expression,
                                       const lysc_prefix* prefixes) {
  ly_set* found = nullptr;
  if (lys_find_expr_atoms(context, node->module, expression, prefixes, 0, &found) != LY_SUCCESS) return {};
  const std::unique_ptr<ly_set, void (*)(ly_set*)> owner(found, [](ly_set* set) { ly_set_free(set, nullptr); });
  return {found->snodes, found->snodes + found->count};
}

const lysc_type* type_of(const lysc_node* node) {
  if (node->nodetype == LYS_LEAF) return reinterpret_cast<const lysc_node_leaf*>(node)->type;
  if (node->nodetype == LYS_LEAFLIST) return reinterpret_cast<const lysc_node_leaflist*>(node)->type;
  return nullptr;
}

const lyd_node* Place::find(const lyd_node* from) const {
  const lyd_node* node = from;
  while (node != nullptr && node->schema != common) node = lyd_parent(node);
  for (const lysc_node* const step : below) {
    const lyd_node* child = node == nullptr ? nullptr : lyd_child(node);
    while (child != nullptr && child->schema != step) child = child->next;
    node = child;
  }
  return node;
}

namespace {

Place place_of(const lysc_node* node, const lysc_node* leaf) {
  Place place;
  for (const lysc_node* step = leaf; step != nullptr; step = step->parent) {
    const lysc_node* above = node->parent;
    while (above != nullptr && above != step) above = above->parent;
    if (above != nullptr) {
      place.common = above;
      std::reverse(place.below.begin(), place.below.end());
      return place;
    }
    // There may be several of one that stands in a list.
    const bool is_one = step == leaf ? step->nodetype == LYS_LEAF : step->nodetype == LYS_CONTAINER;
    if (!is_one) return {};
    place.below.push_back(step);
  }
  return {};
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kSpace = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(kSpace);
  return begin == std::string_view::npos ? "" : text.substr(begin, text.find_last_not_of(kSpace) + 1 - begin);
}

// Takes what stands before the mark off a text, and the mark; nothing when there is none.
std::optional<std::string_view> take_until(std::string_view& text, std::string_view mark) {
  const std::size_t end = text.find(mark);
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(end + mark.size());
  return taken;
}

const lys_module* module_of(const lysc_when& when, std::string_view prefix) {
  LY_ARRAY_COUNT_TYPE i = 0;
  LY_ARRAY_FOR(when.prefixes, i) {
    if (when.prefixes[i].prefix != nullptr && prefix == when.prefixes[i].prefix) return when.prefixes[i].mod;
  }
  return nullptr;
}

// The leaf at the end of a path of names; null for any other path.
const lysc_node* leaf_at(const lysc_node* node, const lysc_when& when, std::string_view path) {
  const lysc_node* at = when.context;
  bool is_below = false;
  if (path.starts_with("current()/")) path.remove_prefix(std::strlen("current()/"));
  while (at != nullptr && !path.empty()) {
    std::string_view name = path;
    if (const auto step = take_until(path, "/")) {
      name = *step;
    } else {
      path = {};
    }
    if (name == ".") continue;
    if (name == "..") {
      // A way down and up again is none where there is nothing below.
      at = is_below ? nullptr : at->parent;
      continue;
    }
    if (name.empty()) return nullptr;
    is_below = true;
    const auto prefix = take_until(name, ":");
    const lys_module* const module = prefix.has_value() ? module_of(when, *prefix) : node->module;
    at = module == nullptr ? nullptr : lys_find_child(at, module, name.data(), name.size(), 0, 0);
  }
  return at != nullptr && at->nodetype == LYS_LEAF ? at : nullptr;
}

// How a literal is written as a value of a leaf; nothing where it may be written in several ways.
std::optional<std::string> value_of(const lysc_node* leaf, const lysc_when& when, std::string_view literal) {
  switch (type_of(leaf)->basetype) {
    case LY_TYPE_IDENT: {
      const auto prefix = take_until(literal, ":");
      const lys_module* const module = prefix.has_value() ? module_of(when, *prefix) : nullptr;
      if (module == nullptr) return std::nullopt;
      return std::string(module->name).append(":").append(literal);
    }
    case LY_TYPE_ENUM:
    case LY_TYPE_BOOL:
    case LY_TYPE_UINT8:
    case LY_TYPE_UINT16:
    case LY_TYPE_UINT32:
    case LY_TYPE_INT8:
    case LY_TYPE_INT16:
    case LY_TYPE_INT32:
      return std::string(literal);
    default:
      return std::nullopt;
  }
}

// Empty for what a look at leaves does not settle.
Condition condition_of(const lysc_node* node, const lysc_when& when) {
  Condition condition;
  std::string_view rest = lyxp_get_expr(when.cond);
  for (;;) {
    const auto path = take_until(rest, "=");
    if (!path.has_value()) return {};
    const lysc_node* const leaf = leaf_at(node, when, trimmed(*path));
    rest = trimmed(rest);
    if (leaf == nullptr || rest.empty() || (rest[0] != '\'' && rest[0] != '"')) return {};
    const std::string_view quote = rest.substr(0, 1);
    rest.remove_prefix(1);
    const auto literal = take_until(rest, quote);
    if (!literal.has_value()) return {};
    auto value = value_of(leaf, when, *literal);
    Place place = place_of(node, leaf);
    if (!value.has_value() || place.common == nullptr) return {};
    condition.push_back({std::move(place), std::move(*value)});
    rest = trimmed(rest);
    if (rest.empty()) return condition;
    if (!rest.starts_with("or ")) return {};
    rest.remove_prefix(std::strlen("or "));
  }
}

}  // namespace

Place target_of(const lysc_node* node) {
  const lysc_type* const type = type_of(node);
  if (type == nullptr || type->basetype != LY_TYPE_LEAFREF) return {};
  const auto* const leafref = reinterpret_cast<const lysc_type_leafref*>(type);
  const std::string_view path = lyxp_get_expr(leafref->path);
  if (!path.starts_with("../") || path.find('[') != std::string_view::npos) return {};
  // What the values of others depend on is not seen in a text.
  if (leafref->realtype->plugin->validate != nullptr) return {};
  const lysc_node* target = nullptr;
  for (const lysc_node* const atom : atoms_of(node, node, leafref->path, leafref->prefixes)) {
    if (is_term(atom) && atom != node) target = atom;
  }
  return place_of(node, target);
}

bool holds(const Place& target, const lyd_node* reference) {
  const lyd_node* const leaf = target.find(reference);
  return leaf != nullptr && std::strcmp(lyd_get_value(leaf), lyd_get_value(reference)) == 0;
}

std::vector<Condition> conditions_of(const lysc_node* node) {
  std::vector<Condition> conditions;
  lysc_when** const whens = lysc_node_when(node);
  LY_ARRAY_COUNT_TYPE i = 0;
  LY_ARRAY_FOR(whens, i) {
    conditions.push_back(condition_of(node, *whens[i]));
    if (conditions.back().empty()) return {};
  }
  return conditions;
}

bool hold(const std::vector<Condition>& conditions, const lyd_node* node) {
  return std::all_of(conditions.begin(), conditions.end(), [node](const Condition& condition) {
    return std::any_of(condition.begin(), condition.end(), [node](const Alternative& alternative) {
      const lyd_node* const leaf = alternative.place.find(node);
      return leaf != nullptr && alternative.value == lyd_get_value(leaf);
    });
  });
}

}  // namespace yfw
