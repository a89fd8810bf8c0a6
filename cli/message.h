// What people are told: printable characters only, whatever a document says, and never a failure.
#pragma once

#include <string_view>

#include "yfw-host/text.h"

namespace ocvlan {

using yfw::printable;

// A line on standard error. When that cannot be written, the line is lost and nothing else.
void tell(std::string_view line) noexcept;

}  // namespace ocvlan
