// Native settings of which OpenConfig says something else, a part or nothing, with what it says.
#pragma once

#include <string>

#include "mapping/document/device.h"

namespace mapping {

// A table of configurations, and one of operational data.
std::string unsaid_shapes(Device& device);
std::string unsaid_state_shapes(Device& device);

}  // namespace mapping
