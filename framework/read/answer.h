// The answer to a read: native data as OpenConfig, and what is left out or unsaid of them.
#pragma once

#include "framework/walk/environment.h"
#include "yfw-host/data.h"
#include "yfw-host/host.h"

namespace yfw {

// Adds to `result` what the filter (empty: everything) selects of the running configuration and, unless null, of these
// operational data, of which only what the last card tells of an interface is kept. Throws Refused.
void answer(const Environment& environment, const Data& filter, Data* operational, ReadResult& result);

}  // namespace yfw
