// Native texts of trunk VLANs, which may say the same thing in several ways.
#pragma once

#include <string>

struct lyd_node;

namespace yfw {

// The value of a leaf or leaf-list entry as it is handed over and compared. Texts of trunk VLANs, known by their type,
// go without blanks and their ids without leading zeros, in the order in which they are stored; all others as they are.
std::string canonical_text(const lyd_node* leaf);

// Below `changed`, the node that takes the place of `stored`: texts that still say what they said, as they were stored.
void keep_stored_texts(lyd_node* changed, const lyd_node* stored);

}  // namespace yfw
