// What the values of a type are, said to a person and checked against how JSON writes them.
#pragma once

#include <libyang/libyang.h>

#include <string>
#include <string_view>

#include "framework/documents/source.h"

namespace yfw {

// The type itself, or what a leafref finally points at.
const lysc_type* real_type(const lysc_node* leaf);

// "1..4094", "ACCESS or TRUNK", "a text": what a leaf of this type may hold.
std::string allowed_values(const lysc_type* type);

// A value between quotes, cut when it is long.
std::string quoted(std::string_view value);

// How RFC 7951 has this JSON value written where it was not, as in "a number"; empty when it is as it should be.
std::string_view wanted_in_json(const lyd_node_term* leaf, Kind written);

}  // namespace yfw
