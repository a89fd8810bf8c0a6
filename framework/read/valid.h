// OpenConfig readings made valid.
#pragma once

#include <vector>

#include "framework/walk/environment.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

// Validates OpenConfig configuration and takes out what makes it invalid, each with a warning.
void make_valid(const Environment& environment, Data& data, std::vector<Warning>& warnings);

}  // namespace yfw
