// What people are told: printable characters only, whatever a document says, and never a failure.
#pragma once

#include <string>
#include <string_view>

namespace ocvlan {

// The text with everything in it that a terminal would obey, hide or reorder shown by its number: \u{9b} is a
// character, \x{9b} a byte that is no UTF-8. A backslash that would begin such a form is \u{5c}, so that no two texts
// look the same. All other text stays as it is.
std::string printable(std::string_view text);

// A line on standard error. When that cannot be written, the line is lost and nothing else.
void tell(std::string_view line) noexcept;

}  // namespace ocvlan
