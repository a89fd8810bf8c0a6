// Native texts of trunk VLANs, which may say the same thing in several ways and take only so many characters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

struct lyd_node;
struct lysc_node;

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

// True for an instance path of an entry of a leaf-list that is one text natively.
bool is_trunk_entry(std::string_view path);

// How many such entries an OpenConfig node is, or holds in its own containers, as configuration.
std::size_t count_trunk_entries(const lyd_node* node);

// True for the native leaf that holds such a text.
bool is_trunk_leaf(const lysc_node* leaf);

// The native leaf below a container that holds the text; null when there is none.
const lyd_node* trunk_leaf_below(const lyd_node* container);

// True when all of a native text was read into the leaf-list of an OpenConfig container: one that is too long to be
// written again reads back whole all the same.
bool is_trunk_read_whole(const lyd_node* native_leaf, const lyd_node* config);

// Entries for the same ids with every run of them as one range, in ascending order.
std::vector<std::string> runs_as_ranges(const std::vector<std::string>& entries);

}  // namespace yfw
