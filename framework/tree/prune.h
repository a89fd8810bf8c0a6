// What is taken out of data trees: state, and what nobody set.
#pragma once

#include "yfw-host/data.h"

namespace yfw {

// True when there is state (`config false` nodes) in `data`.
bool holds_state(const Data& data);

// Takes the state (`config false` nodes) out of `data`, which keeps its configuration. The result has the keys above
// it.
Data take_state(Data& data);

// Takes out what nobody set: defaults and empty containers that validation added.
void strip_defaults(Data& data);

}  // namespace yfw
