// References and conditions that a look at a leaf settles.
#pragma once

#include <string>
#include <vector>

#include <libyang/libyang.h>

namespace yfw {

// What an expression at a node looks at; nothing when that cannot be told.
std::vector<const lysc_node*> atoms_of(const lysc_node* node, const lysc_node* context, const lyxp_expr* expression,
                                       const lysc_prefix* prefixes);

// Of a leaf or leaf-list; null of any other node.
const lysc_type* type_of(const lysc_node* node);

// Where the one leaf stands that a node looks at, like a key at the leaf of its name in `config`.
struct Place {
  const lysc_node* common = nullptr;    // what both stand in; null when there may be several such leaves, or none
  std::vector<const lysc_node*> below;  // from there to the leaf

  // Null when it is absent.
  const lyd_node* find(const lyd_node* from) const;
};

// Of the leaf that a reference refers to.
Place target_of(const lysc_node* node);
bool holds(const Place& target, const lyd_node* reference);

// A condition such as "../mode = 'TRUNK' or ../mode = 'ACCESS'": one of these leaves has its value.
struct Alternative {
  Place place;
  std::string value;
};
using Condition = std::vector<Alternative>;

// All that have to hold; none where a look at leaves does not settle each of them.
std::vector<Condition> conditions_of(const lysc_node* node);
bool hold(const std::vector<Condition>& conditions, const lyd_node* node);

}  // namespace yfw
