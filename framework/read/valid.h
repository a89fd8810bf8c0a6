// OpenConfig readings made valid.
#pragma once

#include <vector>

#include "framework/datastore/validate.h"
#include "framework/walk/environment.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

// How far one has to look to know whether the configuration in a reading is valid.
Reach reach_of_configuration(const Environment& environment, Data& data);

// Validates OpenConfig configuration and takes out what makes it invalid, each with a warning.
void make_valid(const Environment& environment, Data& data, std::vector<Warning>& warnings);

}  // namespace yfw
