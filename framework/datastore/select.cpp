// Selection of data by a subtree filter.
#include "framework/datastore/select.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "yfw-host/data.h"

namespace yfw {

namespace {

const lyd_node* first_child(const lyd_node* filter) {
  return reinterpret_cast<const lyd_node_opaq*>(filter)->child;
}

const char* value_of(const lyd_node* filter) {
  return reinterpret_cast<const lyd_node_opaq*>(filter)->value;
}

// A filter node, its schema looked up once and its children sorted by what they do.
struct Criterion {
  const lysc_node* schema = nullptr;
  const char* value = "";             // of content-match nodes
  std::vector<Criterion> matches;     // content-match children: all have to hold
  std::vector<Criterion> selections;  // the others
  bool takes_all() const { return selections.empty(); }
};

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

bool selects_names(const Criterion& criterion) {
  const std::string_view name = criterion.schema == nullptr ? "" : criterion.schema->name;
  const bool own = name == "name" || name == "index" || name == "type";
  if (own && std::strcmp(criterion.schema->module->name, "openconfig-interfaces") == 0) return true;
  return std::any_of(criterion.selections.begin(), criterion.selections.end(),
                     [](const Criterion& below) { return selects_names(below); });
}

using Criteria = std::vector<const Criterion*>;

lyd_node* find_match(const lyd_node* node, const Criterion& match) {
  lyd_node* found = nullptr;
  const bool leaf = match.schema->nodetype == LYS_LEAF;
  if (lyd_find_sibling_val(lyd_child(node), match.schema, leaf ? nullptr : match.value,
                           leaf ? 0 : std::strlen(match.value), &found) != LY_SUCCESS) {
    return nullptr;
  }
  return std::strcmp(lyd_get_value(found), match.value) == 0 ? found : nullptr;
}

class Selection {
 public:
  explicit Selection(Data& result) : result_(result) {}

  // Copies of `node` what the criteria, all of its schema node, select; false when that is nothing.
  bool copy(const lyd_node* node, const Criteria& criteria, lyd_node* parent) {
    Criteria below;
    std::vector<const lyd_node*> matched;
    for (const Criterion* const each : criteria) {
      std::vector<const lyd_node*> found;
      for (const Criterion& match : each->matches) {
        const lyd_node* const leaf = find_match(node, match);
        if (leaf != nullptr) found.push_back(leaf);
      }
      if (found.size() < each->matches.size()) continue;
      if (each->takes_all()) {
        duplicate(node, parent, LYD_DUP_RECURSIVE | LYD_DUP_WITH_FLAGS);
        return true;
      }
      matched.insert(matched.end(), found.begin(), found.end());
      for (const Criterion& selection : each->selections) below.push_back(&selection);
    }
    if (below.empty()) return false;
    return copy_part(node, below, matched, parent);
  }

 private:
  bool copy_part(const lyd_node* node, const Criteria& below, const std::vector<const lyd_node*>& matched,
                 lyd_node* parent) {
    lyd_node* const made = duplicate(node, parent, 0);
    std::unordered_map<const lysc_node*, Criteria> by_schema;
    for (const Criterion* const each : below) by_schema[each->schema].push_back(each);
    bool any = false;
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(node), child) {
      const auto asked = by_schema.find(child->schema);
      if (asked != by_schema.end()) any = copy(child, asked->second, made) || any;
    }
    for (const lyd_node* const leaf : matched) {
      lyd_node* there = nullptr;
      if (lyd_find_sibling_first(lyd_child(made), leaf, &there) != LY_SUCCESS) duplicate(leaf, made, 0);
    }
    if (any || !matched.empty()) return true;
    if (parent == nullptr) *result_.out() = made->next;
    lyd_free_tree(made);
    return false;
  }

  lyd_node* duplicate(const lyd_node* node, lyd_node* parent, uint32_t options) {
    lyd_node* made = nullptr;
    if (lyd_dup_single(node, reinterpret_cast<lyd_node_inner*>(parent), options, &made) != LY_SUCCESS) {
      throw std::runtime_error("data cannot be copied");
    }
    if (parent == nullptr) lyd_insert_sibling(result_.get(), made, result_.out());
    return made;
  }

  Data& result_;
};

}  // namespace

bool selects_names(const Data& filter) {
  const lyd_node* top = nullptr;
  LY_LIST_FOR(filter.get(), top) {
    if (selects_names(compile(top))) return true;
  }
  return false;
}

Data select(const Data& data, const Data& filter) {
  if (filter.empty()) return data.clone();
  std::vector<Criterion> compiled;
  const lyd_node* node = nullptr;
  LY_LIST_FOR(filter.get(), node) {
    compiled.push_back(compile(node));
  }
  Data result;
  Selection selection(result);
  LY_LIST_FOR(data.get(), node) {
    Criteria criteria;
    for (const Criterion& each : compiled) {
      if (each.schema == node->schema) criteria.push_back(&each);
    }
    if (!criteria.empty()) selection.copy(node, criteria, nullptr);
  }
  return result;
}

namespace {

// Whether a criterion for an entry can mean the one with this key.
bool means(const Criterion& entry, std::string_view key) {
  return std::all_of(entry.matches.begin(), entry.matches.end(), [key](const Criterion& match) {
    return match.schema == nullptr || !lysc_is_key(match.schema) || match.value == key;
  });
}

// Whether the path of names, each below the one before, is selected whole; `keys` are those of the lists on it.
bool selects_whole(const std::vector<Criterion>& criteria, std::span<const std::string_view> path,
                   std::span<const std::string_view> keys) {
  return std::any_of(criteria.begin(), criteria.end(), [&](const Criterion& each) {
    if (each.schema == nullptr || each.schema->name != path.front()) return false;
    const bool list = is_list(each.schema);
    if (list && !means(each, keys.front())) return false;
    if (each.takes_all()) return true;
    return path.size() > 1 && selects_whole(each.selections, path.subspan(1), list ? keys.subspan(1) : keys);
  });
}

}  // namespace

std::unordered_set<std::string> entries_selected_whole(const Data& filter, const Data& selected) {
  static constexpr std::array<std::string_view, 4> kPath{"interfaces", "interface", "subinterfaces", "subinterface"};
  const std::span<const std::string_view> path(kPath);
  std::vector<Criterion> criteria;
  const lyd_node* node = nullptr;
  LY_LIST_FOR(filter.get(), node) {
    criteria.push_back(compile(node));
  }
  std::unordered_set<std::string> names;
  const auto add = [&](std::string_view name, std::string_view index) {
    const std::array<std::string_view, 2> keys{name, index};
    if (selects_whole(criteria, index.empty() ? path.first(2) : path, keys)) {
      names.insert(join_interface_name(name, index));
    }
  };
  LY_LIST_FOR(lyd_child(selected.get()), node) {
    const std::string_view name = lyd_get_value(lyd_child(node));
    add(name, {});
    const lyd_node* const list = child_named(node, "subinterfaces");
    const lyd_node* sub = nullptr;
    LY_LIST_FOR(list == nullptr ? nullptr : lyd_child(list), sub) {
      add(name, lyd_get_value(lyd_child(sub)));
    }
  }
  return names;
}

}  // namespace yfw
