// Selection of data by a subtree filter.
#include "framework/datastore/select.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "yfw-host/data.h"

namespace yfw {

namespace {

const char* value_of(const lyd_node* filter) {
  return reinterpret_cast<const lyd_node_opaq*>(filter)->value;
}

Criterion compile(const lyd_node* filter) {
  Criterion made;
  made.schema = schema_of(filter);
  if (value_of(filter) != nullptr) made.value = value_of(filter);
  const lyd_node* child = nullptr;
  LY_LIST_FOR(first_child(filter), child) {
    Criterion below = compile(child);
    (*below.value == '\0' ? made.selections : made.matches).push_back(std::move(below));
  }
  return made;
}

lyd_node* find_match(const lyd_node* node, const Criterion& match) {
  lyd_node* found = nullptr;
  const bool leaf = match.schema->nodetype == LYS_LEAF;
  if (lyd_find_sibling_val(lyd_child(node), match.schema, leaf ? nullptr : match.value,
                           leaf ? 0 : std::strlen(match.value), &found) != LY_SUCCESS) {
    return nullptr;
  }
  return std::strcmp(lyd_get_value(found), match.value) == 0 ? found : nullptr;
}

bool holds(const lyd_node* node, const Criterion& criterion) {
  return std::all_of(criterion.matches.begin(), criterion.matches.end(),
                     [node](const Criterion& match) { return find_match(node, match) != nullptr; });
}

const char* key_text(const lyd_node* node) {
  const lyd_node* const first = is_list(node->schema) ? lyd_child(node) : nullptr;
  return first != nullptr && is_key(first) ? lyd_get_value(first) : nullptr;
}

}  // namespace

const char* Criterion::key() const {
  const lysc_node* const leaf = schema != nullptr && is_list(schema) ? key_of(schema) : nullptr;
  const auto match = std::find_if(matches.begin(), matches.end(), [leaf](const Criterion& each) {
    return each.schema != nullptr && each.schema == leaf;
  });
  return match == matches.end() ? nullptr : match->value;
}

// The selections of a criterion by what they may mean, each in the filter's order.
struct SubtreeFilter::Index {
  struct OfSchema {
    Criteria any;
    std::unordered_map<std::string_view, Criteria> by_key;
  };
  std::unordered_map<const lysc_node*, OfSchema> by_schema;
};

SubtreeFilter::SubtreeFilter(const Data& filter) {
  const lyd_node* node = nullptr;
  LY_LIST_FOR(filter.get(), node) {
    top_.selections.push_back(compile(node));
  }
  index(top_);
}

SubtreeFilter::~SubtreeFilter() = default;

void SubtreeFilter::index(const Criterion& criterion) {
  if (criterion.takes_all()) return;
  auto made = std::make_unique<Index>();
  for (const Criterion& each : criterion.selections) {
    Index::OfSchema& place = made->by_schema[each.schema];
    const char* const key = each.key();
    (key == nullptr ? place.any : place.by_key[key]).push_back(&each);
    index(each);
  }
  indexes_.emplace(&criterion, std::move(made));
}

void SubtreeFilter::collect(const Criterion& above, const lysc_node* schema, const char* key, Criteria& found) const {
  const auto index = indexes_.find(&above);
  if (index == indexes_.end()) return;
  const auto place = index->second->by_schema.find(schema);
  if (place == index->second->by_schema.end()) return;
  const std::size_t before = found.size();
  found.insert(found.end(), place->second.any.begin(), place->second.any.end());
  if (key == nullptr) return;
  const auto named = place->second.by_key.find(key);
  if (named == place->second.by_key.end()) return;
  const std::size_t middle = found.size();
  found.insert(found.end(), named->second.begin(), named->second.end());
  const auto at = [&found](std::size_t i) { return found.begin() + static_cast<std::ptrdiff_t>(i); };
  std::inplace_merge(at(before), at(middle), found.end(), std::less<>());
}

void SubtreeFilter::retain(Data& data) const {
  if (empty()) return;
  lyd_node* node = data.get();
  while (node != nullptr) {
    lyd_node* const next = node->next;
    Criteria criteria;
    collect(top_, node->schema, key_text(node), criteria);
    if (criteria.empty() || !keep(node, criteria)) {
      if (data.get() == node) *data.out() = next;
      lyd_free_tree(node);
    }
    node = next;
  }
}

// Cuts a node down to what the criteria, all of its schema node, select; false when that is nothing.
bool SubtreeFilter::keep(lyd_node* node, const Criteria& criteria) const {
  Criteria below;
  std::vector<const lyd_node*> matched;
  for (const Criterion* const each : criteria) {
    std::vector<const lyd_node*> found;
    for (const Criterion& match : each->matches) {
      const lyd_node* const leaf = find_match(node, match);
      if (leaf != nullptr) found.push_back(leaf);
    }
    if (found.size() < each->matches.size()) continue;
    if (each->takes_all()) return true;
    matched.insert(matched.end(), found.begin(), found.end());
    below.push_back(each);
  }
  if (below.empty()) return false;
  bool any = !matched.empty();
  Criteria asked;
  lyd_node* child = lyd_child(node);
  while (child != nullptr) {
    lyd_node* const next = child->next;
    asked.clear();
    for (const Criterion* const each : below) collect(*each, child->schema, key_text(child), asked);
    if (!asked.empty() && keep(child, asked)) {
      any = true;
    } else if (!is_key(child) && std::find(matched.begin(), matched.end(), child) == matched.end()) {
      lyd_free_tree(child);
    }
    child = next;
  }
  return any;
}

// Collects the criteria for a node that stand behind what its ancestors have to match; true when one for an ancestor
// takes all of it.
bool SubtreeFilter::reach(const lyd_node* node, Criteria& criteria) const {
  const lyd_node* const above = lyd_parent(node);
  if (above == nullptr) {
    collect(top_, node->schema, key_text(node), criteria);
    return false;
  }
  Criteria outer;
  if (reach(above, outer)) return true;
  for (const Criterion* const each : outer) {
    if (!holds(above, *each)) continue;
    if (each->takes_all()) return true;
    collect(*each, node->schema, key_text(node), criteria);
  }
  return false;
}

bool SubtreeFilter::selects_whole(const lyd_node* node) const {
  Criteria criteria;
  if (empty() || reach(node, criteria)) return true;
  return std::any_of(criteria.begin(), criteria.end(),
                     [node](const Criterion* each) { return each->takes_all() && holds(node, *each); });
}

}  // namespace yfw
