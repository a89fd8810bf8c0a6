// Subtree filtering (RFC 6241 section 6) of a data tree.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "yfw-host/data.h"

struct ly_ctx;

namespace yfw {

// The part of `data` that `filter` selects: containment, selection and content-match nodes, several at once; list keys
// and ancestors included. A null or empty filter selects everything.
Data select(const Data& data, const Data& filter);

// True when the filter asks for a leaf that every interface or sub-interface answers: its name, index or type.
bool selects_names(const Data& filter);

// Native names of the interfaces and sub-interfaces in `selected` that the filter selects with all that they hold.
std::unordered_set<std::string> entries_selected_whole(const Data& filter, const Data& selected);

}  // namespace yfw
