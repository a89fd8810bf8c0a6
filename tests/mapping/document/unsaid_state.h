// Which leaves of operational data are said in which of its forms.
#pragma once

#include <string>

#include "mapping/document/device.h"

namespace mapping {

std::string unsaid_state(Device& device);

}  // namespace mapping
