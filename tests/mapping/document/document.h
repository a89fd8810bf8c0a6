// docs/mapping.md as a text.
#pragma once

#include <string>

namespace mapping {

std::string document();

}  // namespace mapping
