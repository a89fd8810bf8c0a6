// Native texts of trunk VLANs, which may say the same thing in several ways and take only so many characters.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

struct lyd_node;

namespace yfw {

// The value of a leaf or leaf-list entry as it is handed over and compared. Texts of trunk VLANs, known by their type,
// go without blanks and their ids without leading zeros, in the order in which they are stored; all others as they are.
std::string canonical_text(const lyd_node* leaf);

// Below `changed`, the node that takes the place of `stored`: texts that still say what they said, as they were stored.
void keep_stored_texts(lyd_node* changed, const lyd_node* stored);

// The longest text that a mapping function writes.
inline constexpr std::size_t kLongestTrunkText = 199;

// The text that entries as OpenConfig writes them, "10" and "20..30", become when all of them fit.
std::string native_trunk_text(const std::vector<std::string>& entries);

// Entries for the same ids with every run of them as one range, in ascending order.
std::vector<std::string> runs_as_ranges(const std::vector<std::string>& entries);

}  // namespace yfw
