// The smallest sequence that still fails.
#pragma once

#include <functional>

#include "property/model/generator.h"

namespace property {

// Takes away requests, elements, operations and parts of the start as long as what is left still fails.
Sequence shrink(Sequence sequence, const std::function<bool(const Sequence&)>& fails);

}  // namespace property
