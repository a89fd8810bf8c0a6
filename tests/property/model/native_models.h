// The native models themselves: every leaf that an entry can hold, any value that its type takes, and documents. A leaf
// that is added to the models is here without further ado.
#pragma once

#include <string>
#include <vector>

#include "property/model/native.h"
#include "property/model/random.h"

namespace property {

// Every leaf and presence container of an entry but its name; of each list, two entries.
const std::vector<std::string>& native_leaves();

// Puts any value that the leaf takes into the entry, and what has to be there along with it.
void set_native_leaf(Random& random, Entry& entry, const std::string& leaf);

// Takes the leaf out, and what cannot be there without it.
void erase_native_leaf(Entry& entry, const std::string& leaf);

// A trunk's text as no request writes it: blanks, zeros, ranges upside down, repetitions, or more than fits.
std::string make_trunk_text(Random& random);

// A native running configuration as a document.
std::string to_document(const Native& native);

}  // namespace property
