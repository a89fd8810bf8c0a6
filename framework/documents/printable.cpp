// Characters that may reach a terminal.
#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "framework/tree/utf8.h"
#include "yfw-host/text.h"

namespace yfw {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Controls, format characters, line and paragraph separators, what Unicode says to ignore in display, and what has no
// agreed meaning (private use). In order.
constexpr std::array kUnprintable = {
    Range{0x0000, 0x001F},   Range{0x007F, 0x009F},   Range{0x00AD, 0x00AD},   Range{0x034F, 0x034F},
    Range{0x0600, 0x0605},   Range{0x061C, 0x061C},   Range{0x06DD, 0x06DD},   Range{0x070F, 0x070F},
    Range{0x0890, 0x0891},   Range{0x08E2, 0x08E2},   Range{0x115F, 0x1160},   Range{0x17B4, 0x17B5},
    Range{0x180B, 0x180F},   Range{0x200B, 0x200F},   Range{0x2028, 0x202E},   Range{0x2060, 0x206F},
    Range{0x3164, 0x3164},   Range{0xE000, 0xF8FF},   Range{0xFDD0, 0xFDEF},   Range{0xFE00, 0xFE0F},
    Range{0xFEFF, 0xFEFF},   Range{0xFFA0, 0xFFA0},   Range{0xFFF0, 0xFFFB},   Range{0x110BD, 0x110BD},
    Range{0x110CD, 0x110CD}, Range{0x13430, 0x1343F}, Range{0x1BCA0, 0x1BCA3}, Range{0x1D173, 0x1D17A},
    Range{0xE0000, 0xE0FFF}, Range{0xF0000, 0x10FFFF}};

bool is_printable(char32_t code) {
  const bool is_no_character = (code & 0xFFFE) == 0xFFFE;
  const auto* const range = std::lower_bound(kUnprintable.begin(), kUnprintable.end(), code,
                                             [](const Range& each, char32_t sought) { return each.last < sought; });
  return !is_no_character && (range == kUnprintable.end() || code < range->first);
}

bool looks_escaped(std::string_view text) {
  return text.starts_with("\\u{") || text.starts_with("\\x{");
}

}  // namespace

std::string printable(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const Character next = first_character(text);
    const std::size_t length = std::max<std::size_t>(next.length, 1);
    if (next.length == 0) {
      shown += fmt::format("\\x{{{:x}}}", static_cast<unsigned>(static_cast<unsigned char>(text.front())));
    } else if (!is_printable(next.code) || looks_escaped(text)) {
      shown += fmt::format("\\u{{{:x}}}", static_cast<std::uint32_t>(next.code));
    } else {
      shown += text.substr(0, length);
    }
    text.remove_prefix(length);
  }
  return shown;
}

}  // namespace yfw
