// How warnings speak of native leaves that OpenConfig does not say.
#pragma once

#include <string>
#include <vector>

#include "property/model/unsaid.h"
#include "yfw-host/host.h"

namespace property {

// The leaves as warnings name them, e.g. ethernet-service/rewrite/rewrite-type "pop2". The key of a list entry is in
// the names of the other leaves of the entry.
std::vector<std::string> settings_of(const Entry& leaves);

// Whether a text is this beginning and then these settings, in any order.
bool lists(const std::string& text, const std::string& beginning, const std::vector<std::string>& settings);

// What is wrong with how an edit's warnings tell of these leaves, which they should by name and value, and of no
// others; empty when nothing is.
std::string untold_in(const std::vector<yfw::Warning>& warnings, const std::vector<UnsaidLeaf>& leaves);

}  // namespace property
