// UTF-8 (RFC 3629), a character at a time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace yfw {

struct Character {
  char32_t code = 0;
  std::size_t length = 0;  // in bytes; 0 for what is no character, overlong forms and surrogates included
};

// The character that a text begins with. The text must not be empty.
Character first_character(std::string_view text);

void append_character(std::string& text, char32_t code);

}  // namespace yfw
