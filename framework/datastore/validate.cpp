// What validation can find at a node, by what the schema says of it.
#include "framework/datastore/validate.h"

#include <libyang/libyang.h>
#include <libyang/plugins_exts.h>
#include <libyang/plugins_types.h>

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "framework/datastore/settled.h"
#include "framework/tree/schema.h"

namespace yfw {

namespace {

bool is_state(const lysc_node* node) {
  return (node->flags & LYS_CONFIG_R) != 0;
}

// One that only holds what is in it.
bool is_plain_container(const lysc_node* node) {
  return node->nodetype == LYS_CONTAINER && (node->flags & LYS_PRESENCE) == 0;
}

Reach farther(Reach left, Reach right) {
  return std::max(left, right);
}

// The outermost list around a node, or itself; null when it stands in none.
const lysc_node* outermost_list(const lysc_node* node) {
  const lysc_node* found = nullptr;
  for (; node != nullptr; node = node->parent) {
    if (is_list(node)) found = node;
  }
  return found;
}

// A complaint about the node itself, or about those beside it.
Reach reach_of_siblings(const lysc_node* node) {
  return node->parent != nullptr && outermost_list(node->parent) != nullptr ? Reach::entry : Reach::beyond;
}

// True for what finds other entries without going through what is around them: along an axis, or by a reference. What
// is around a list at the top is no node.
bool may_jump(const lysc_node* home, const lyxp_expr* expression) {
  const std::string_view text = lyxp_get_expr(expression);
  const auto holds = [text](std::string_view part) { return text.find(part) != std::string_view::npos; };
  return home->parent == nullptr || holds("::") || holds("//") || holds("deref");
}

// How far it looks.
Reach reach_of(const lysc_node* node, const lysc_node* context, const lyxp_expr* expression,
               const lysc_prefix* prefixes) {
  const lysc_node* const home = outermost_list(node);
  if (home == nullptr || may_jump(home, expression)) return Reach::beyond;
  const std::vector<const lysc_node*> atoms = atoms_of(node, context, expression, prefixes);
  const bool stays = !atoms.empty() && std::all_of(atoms.begin(), atoms.end(),
                                                   [home](auto* atom) { return outermost_list(atom) == home; });
  return stays ? Reach::entry : Reach::beyond;
}

Reach reach_of_conditions(const lysc_node* node) {
  Reach reach = Reach::nowhere;
  lysc_when** const whens = lysc_node_when(node);
  LY_ARRAY_COUNT_TYPE i = 0;
  LY_ARRAY_FOR(whens, i) {
    reach = farther(reach, reach_of(node, whens[i]->context, whens[i]->cond, whens[i]->prefixes));
  }
  return reach;
}

// False where looking at the condition may be an error: functions want arguments of certain types.
bool can_be_told(const lysc_when& when) {
  std::string text = lyxp_get_expr(when.cond);
  for (const std::string_view harmless : {"current(", "not("}) {
    for (std::size_t at = text.find(harmless); at != std::string::npos; at = text.find(harmless)) {
      text.erase(at, harmless.size());
    }
  }
  return text.find_first_of("(|") == std::string::npos;
}

// Of those that are looked at for a node that is absent.
Reach reach_of_doubtful_conditions(const lysc_node* node) {
  lysc_when** const whens = lysc_node_when(node);
  LY_ARRAY_COUNT_TYPE i = 0;
  LY_ARRAY_FOR(whens, i) {
    if (!can_be_told(*whens[i])) return reach_of_conditions(node);
  }
  return Reach::nowhere;
}

Reach reach_of_musts(const lysc_node* node) {
  Reach reach = Reach::nowhere;
  const lysc_must* const musts = lysc_node_musts(node);
  LY_ARRAY_COUNT_TYPE i = 0;
  LY_ARRAY_FOR(musts, i) {
    reach = farther(reach, reach_of(node, node, musts[i].cond, musts[i].prefixes));
  }
  return reach;
}

// Extensions may have a say of their own.
Reach reach_of_extensions(const lysc_node* node) {
  LY_ARRAY_COUNT_TYPE i = 0;
  LY_ARRAY_FOR(node->exts, i) {
    const lyplg_ext* const plugin = node->exts[i].def->plugin;
    if (plugin != nullptr && plugin->validate != nullptr) return Reach::beyond;
  }
  return Reach::nowhere;
}

// Of values that name other nodes, but for references that a look at their target settles.
Reach reach_of_values(const lysc_node* node, const lysc_type* type) {
  switch (type->basetype) {
    case LY_TYPE_INST: {
      const auto* const identifier = reinterpret_cast<const lysc_type_instanceid*>(type);
      return identifier->require_instance != 0 ? Reach::beyond : Reach::nowhere;
    }
    case LY_TYPE_LEAFREF: {
      const auto* const reference = reinterpret_cast<const lysc_type_leafref*>(type);
      if (reference->require_instance == 0) return Reach::nowhere;
      return reach_of(node, node, reference->path, reference->prefixes);
    }
    case LY_TYPE_UNION: {
      const auto* const choices = reinterpret_cast<const lysc_type_union*>(type);
      Reach reach = Reach::nowhere;
      LY_ARRAY_COUNT_TYPE i = 0;
      LY_ARRAY_FOR(choices->types, i) {
        reach = farther(reach, reach_of_values(node, choices->types[i]));
      }
      return reach;
    }
    default:
      return type->plugin->validate == nullptr ? Reach::nowhere : Reach::beyond;
  }
}

Reach reach_of_values(const lysc_node* node) {
  const lysc_type* const type = type_of(node);
  return type == nullptr ? Reach::nowhere : reach_of_values(node, type);
}

// How many instances there may be.
struct Bounds {
  std::uint32_t least = 0;
  std::uint32_t most = UINT32_MAX;
};

Bounds bounds_of(const lysc_node* node) {
  Bounds bounds;
  if (node->nodetype == LYS_LIST) {
    const auto* const list = reinterpret_cast<const lysc_node_list*>(node);
    bounds = {list->min, list->max};
  } else if (node->nodetype == LYS_LEAFLIST) {
    const auto* const list = reinterpret_cast<const lysc_node_leaflist*>(node);
    bounds = {list->min, list->max};
  }
  if (bounds.most == 0) bounds.most = UINT32_MAX;
  return bounds;
}

bool has_unique(const lysc_node* node) {
  return is_list(node) && LY_ARRAY_COUNT(reinterpret_cast<const lysc_node_list*>(node)->uniques) > 0;
}

// What tells an entry of a list from others. Equal values are one text in libyang's dictionary.
using Identity = std::vector<const char*>;

struct IdentityHash {
  std::size_t operator()(const Identity& identity) const noexcept {
    std::size_t hash = 0;
    for (const char* const value : identity) hash = hash * 31 + std::hash<const void*>{}(value);
    return hash;
  }
};

Identity identity_of(const lyd_node* entry) {
  Identity identity;
  if (entry->schema->nodetype == LYS_LEAFLIST) return {lyd_get_value(entry)};
  for (const lyd_node* key = lyd_child(entry); key != nullptr && lysc_is_key(key->schema); key = key->next) {
    identity.push_back(lyd_get_value(key));
  }
  return identity;
}

// The instances of one schema node, which stand together.
struct Instances {
  const lyd_node* first;
  std::uint32_t count;
  const lyd_node* next;  // what follows them

  explicit Instances(const lyd_node* node) : first(node), count(0), next(node) {
    for (; next != nullptr && next->schema == first->schema; next = next->next) ++count;
  }

  // Defaults beside values that somebody set.
  bool has_outdated() const {
    if (count < 2 || first->schema->nodetype != LYS_LEAFLIST) return false;
    for (const lyd_node* node = first; node != next; node = node->next) {
      if (((node->flags ^ first->flags) & LYD_DEFAULT) != 0) return true;
    }
    return false;
  }

  // Two entries with one identity, or two nodes of which there may be one.
  bool has_equal() const {
    if (count < 2) return false;
    if ((first->schema->nodetype & (LYS_LIST | LYS_LEAFLIST)) == 0) return true;
    if (is_list(first->schema) && (first->schema->flags & LYS_KEYLESS) != 0) return false;
    std::unordered_set<Identity, IdentityHash> seen;
    for (const lyd_node* node = first; node != next; node = node->next) {
      if (!seen.insert(identity_of(node)).second) return true;
    }
    return false;
  }

  bool is_in_bounds() const {
    const Bounds bounds = bounds_of(first->schema);
    return count >= bounds.least && count <= bounds.most;
  }
};

}  // namespace

struct Validator::Judged {
  Reach reach;    // of a node of this schema
  Wanted wanted;  // children whose absence may be wrong
  Place target;   // of its value that is a reference
  Reach unheld;   // where that is another
  std::vector<Condition> conditions;
  Reach unmet;  // where they do not hold
};

Validator::Validator() = default;
Validator::~Validator() = default;

const Validator::Judged& Validator::judged(const lysc_node* node) {
  const auto known = judged_.find(node);
  if (known != judged_.end()) return *known->second;
  const Reach value = reach_of_values(node);
  // Beyond its entry there is another leaf for each part of the data.
  Place target = value == Reach::beyond && outermost_list(node) != nullptr ? Place() : target_of(node);
  const Reach unheld = target.common == nullptr ? Reach::nowhere : value;
  // The containers of an entry keep what theirs depend on only together.
  const Reach condition = reach_of_conditions(node);
  std::vector<Condition> conditions = condition == Reach::entry ? conditions_of(node) : std::vector<Condition>();
  const Reach unmet = conditions.empty() ? Reach::nowhere : condition;
  Reach reach = farther(reach_of_musts(node), reach_of_extensions(node));
  if (conditions.empty()) reach = farther(reach, condition);
  if (target.common == nullptr) reach = farther(reach, value);
  if ((node->nodetype & (LYS_RPC | LYS_ACTION | LYS_NOTIF)) != 0) reach = Reach::beyond;
  // What stands in a choice may have to give way to what stands in another case of it, and has its conditions.
  for (const lysc_node* above = node->parent; above != nullptr; above = above->parent) {
    if ((above->nodetype & (LYS_CHOICE | LYS_CASE)) == 0) break;
    reach = farther(reach, farther(reach_of_siblings(node), reach_of_conditions(above)));
  }
  if (is_state(node) || has_unique(node)) reach = farther(reach, reach_of_siblings(node));
  auto made = std::make_unique<Judged>(
      Judged{reach, wanted_among(lysc_node_child(node)), std::move(target), unheld, std::move(conditions), unmet});
  return *judged_.emplace(node, std::move(made)).first->second;
}

Validator::Wanted Validator::wanted_among(const lysc_node* first) {
  Wanted wanted;
  const lysc_node* child = nullptr;
  LY_LIST_FOR(first, child) {
    const Reach reach = reach_when_absent(child);
    if (reach != Reach::nowhere) wanted.emplace_back(child, reach);
  }
  return wanted;
}

// Where a node is absent its defaults are in force, and so are the containers that only hold what is in them.
Reach Validator::reach_when_absent(const lysc_node* node) {
  if (is_state(node)) return Reach::nowhere;
  Reach reach = Reach::nowhere;
  // As what needs entries is, too.
  if ((node->flags & LYS_MAND_TRUE) != 0) reach = reach_of_siblings(node);
  bool is_in_force = false;
  bool holds_others = false;
  switch (node->nodetype) {
    case LYS_LEAF:
      is_in_force = reinterpret_cast<const lysc_node_leaf*>(node)->dflt != nullptr;
      break;
    case LYS_LEAFLIST:
      is_in_force = reinterpret_cast<const lysc_node_leaflist*>(node)->dflts != nullptr;
      break;
    case LYS_CONTAINER:
      is_in_force = holds_others = is_plain_container(node);
      break;
    case LYS_CHOICE:
    case LYS_CASE:
      is_in_force = holds_others = true;
      break;
    default:
      break;
  }
  if (is_in_force) {
    reach = farther(farther(reach, reach_of_extensions(node)), farther(reach_of_musts(node), reach_of_values(node)));
    reach = farther(reach, reach_of_doubtful_conditions(node));
  }
  if (holds_others) {
    for (const auto& [child, wanted] : wanted_among(lysc_node_child(node))) reach = farther(reach, wanted);
  }
  // A condition says whether it is.
  return reach == Reach::nowhere ? reach : farther(reach, reach_of_conditions(node));
}

namespace {

// Of what belongs to a node but is not in the models.
Reach reach_beside_models(const lyd_node* node) {
  if ((node->flags & LYD_EXT) != 0) return Reach::beyond;
  const lyd_meta* meta = nullptr;
  LY_LIST_FOR(node->meta, meta) {
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(meta->annotation->substmts, i) {
      const lysc_ext_substmt& statement = meta->annotation->substmts[i];
      if (statement.stmt != LY_STMT_TYPE || statement.storage == nullptr) continue;
      if ((*static_cast<lysc_type* const*>(statement.storage))->plugin->validate != nullptr) return Reach::beyond;
    }
  }
  return Reach::nowhere;
}

bool has_child(const lyd_node* siblings, const lysc_node* schema) {
  const lyd_node* child = nullptr;
  LY_LIST_FOR(siblings, child) {
    if (child->schema == schema) return true;
  }
  return false;
}

}  // namespace

Reach Validator::reach_below(lyd_node* siblings) {
  Reach reach = Reach::nowhere;
  lyd_node* node = siblings;
  while (node != nullptr && reach != Reach::beyond) {
    // What the models do not know is for libyang to judge.
    if (node->schema == nullptr) return Reach::beyond;
    const Instances instances(node);
    const Judged& schema = judged(node->schema);
    reach = farther(reach, schema.reach);
    if (!instances.is_in_bounds() || instances.has_equal() || instances.has_outdated()) {
      reach = farther(reach, reach_of_siblings(node->schema));
    }
    for (; node != instances.next; node = node->next) {
      if (schema.unmet != Reach::nowhere) {
        if (hold(schema.conditions, node)) {
          met_.push_back(node);
        } else {
          reach = farther(reach, schema.unmet);
        }
      }
      // What extensions know of, and annotations that refer to something.
      if (node->meta != nullptr || (node->flags & LYD_EXT) != 0) reach = farther(reach, reach_beside_models(node));
      lyd_node* const children = lyd_child(node);
      if (schema.unheld > reach && !holds(schema.target, node)) reach = schema.unheld;
      for (const auto& [child, wanted] : schema.wanted) {
        if (wanted > reach && !has_child(children, child)) reach = wanted;
      }
      if (children != nullptr) reach = farther(reach, reach_below(children));
    }
  }
  return reach;
}

Reach Validator::reach(lyd_node* siblings) {
  met_.clear();
  Reach reach = Reach::nowhere;
  const lyd_node* node = nullptr;
  LY_LIST_FOR(siblings, node) {
    if (node->schema == nullptr) return Reach::beyond;
    const lys_module* const module = node->schema->module;
    auto known = wanted_at_top_.find(module);
    if (known == wanted_at_top_.end()) {
      known = wanted_at_top_.emplace(module, wanted_among(module->compiled->data)).first;
    }
    for (const auto& [child, wanted] : known->second) {
      if (!has_child(siblings, child)) reach = farther(reach, wanted);
    }
  }
  reach = farther(reach, reach_below(siblings));
  // As libyang would: once a condition has held, its node goes with it instead of being refused.
  if (reach == Reach::nowhere) {
    for (lyd_node* const met : met_) met->flags |= LYD_WHEN_TRUE;
  }
  return reach == Reach::entry && wants_beside_lists(siblings) ? Reach::beyond : reach;
}

// Entries alone lack what else there is around them.
bool Validator::wants_beside_lists(const lyd_node* siblings) {
  const lyd_node* node = nullptr;
  LY_LIST_FOR(siblings, node) {
    if (node->parent == nullptr && !wanted_at_top_.at(node->schema->module).empty()) return true;
    if (is_list(node->schema)) continue;
    if (!judged(node->schema).wanted.empty() || wants_beside_lists(lyd_child(node))) return true;
  }
  return false;
}

Reach Validator::reach_of_schema(const lysc_node* first) {
  Reach reach = Reach::nowhere;
  const lysc_node* node = nullptr;
  LY_LIST_FOR(first, node) {
    if (is_state(node)) continue;
    if ((node->nodetype & (LYS_CHOICE | LYS_CASE)) == 0) {
      reach = farther(reach, farther(judged(node).reach, farther(judged(node).unheld, judged(node).unmet)));
    }
    if (bounds_of(node).most != UINT32_MAX) reach = farther(reach, reach_of_siblings(node));
    reach = farther(reach, farther(reach_when_absent(node), reach_of_schema(lysc_node_child(node))));
  }
  return reach;
}

Reach Validator::reach(const std::vector<const lys_module*>& modules) {
  Reach reach = Reach::nowhere;
  for (const lys_module* const module : modules) {
    if (module->compiled != nullptr) reach = farther(reach, reach_of_schema(module->compiled->data));
  }
  return reach;
}

bool Validator::validate(Data& data) {
  if (data.empty() || reach(data.get()) == Reach::nowhere) return true;
  return lyd_validate_all(data.out(), nullptr, LYD_VALIDATE_NO_STATE | LYD_VALIDATE_PRESENT, nullptr) == LY_SUCCESS;
}

}  // namespace yfw
