// The values of the native configuration model that OpenConfig does not say, or says only beside others.
#pragma once

#include <string>

#include "mapping/document/device.h"

namespace mapping {

struct UnsaidValues {
  std::string never;          // a table of values that no form says, by container
  std::string in_some_forms;  // a table of those that some forms say, with these
};
UnsaidValues unsaid_values(Device& device);

}  // namespace mapping
