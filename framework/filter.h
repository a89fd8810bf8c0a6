// Subtree filtering (RFC 6241 section 6) of a data tree.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "framework/data.h"

struct ly_ctx;

namespace yfw {

// The part of `data` that `filter` selects: containment, selection and content-match nodes, several at once; list keys
// and ancestors included. A null or empty filter selects everything.
Data select(const Data& data, const Data& filter);

// True when the filter asks for a leaf that every interface or sub-interface answers: its name, index or type.
bool selects_names(const Data& filter);

// Native names of the interfaces and sub-interfaces in `selected` that the filter selects with all that they hold.
std::unordered_set<std::string> entries_selected_whole(const Data& filter, const Data& selected);

// The filter that selects each of these paths: /interfaces/interface[name='X']/config, the prefixes of nodes optional.
// Throws Refused for a path that cannot be read or names what no model has.
Data paths_to_filter(ly_ctx* ctx, const std::vector<std::string>& paths);

// True when there is state (`config false` nodes) in `data`.
bool holds_state(const Data& data);

// Takes the state (`config false` nodes) out of `data`, which keeps its configuration. The result has the keys above
// it.
Data take_state(Data& data);

// Takes out what nobody set: defaults and empty containers that validation added.
void strip_defaults(Data& data);

}  // namespace yfw
