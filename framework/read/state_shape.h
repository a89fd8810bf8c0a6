// The shape of an entry of operational data: what decides which of its leaves its OpenConfig reading says. Which VLAN
// id a leaf has is no part of it, only how ids stand to each other.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct lyd_node;

namespace yfw {

struct StateShape {
  std::string text;                     // entries with the same text have the same groups said
  std::vector<const lyd_node*> leaves;  // in document order
  // Of each leaf, numbered by first appearance: the leaves of a group are said or unsaid together.
  std::vector<std::size_t> groups;
};

// The shape of an entry with these containers. `surroundings` is what else decides.
StateShape shape_of(std::string surroundings, const std::vector<const lyd_node*>& containers);

}  // namespace yfw
