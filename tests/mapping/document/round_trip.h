// The exceptions of the round trip, each with a run of its example.
#pragma once

#include <string>

#include "mapping/document/device.h"

namespace mapping {

std::string exceptions_text(Device& device);

}  // namespace mapping
