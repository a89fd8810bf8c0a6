// Two data trees of one model, compared.
#pragma once

#include <string>
#include <vector>

#include "yfw-host/compare.h"
#include "yfw-host/data.h"

struct lyd_node;

namespace yfw {

// The value of a leaf or leaf-list entry as it counts in a comparison.
using ValueText = std::string (*)(const lyd_node* leaf);

// As the public `compare`, with values as `text` has them.
std::vector<Delta> compare(const Data& before, const Data& after, ValueText text);

}  // namespace yfw
