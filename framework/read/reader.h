// Native data as OpenConfig.
#pragma once

#include <vector>

#include "framework/read/fetch.h"
#include "framework/walk/environment.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

// Native entries as OpenConfig, optionally with operational data. What cannot be translated, or not be held by the
// OpenConfig model, is left out with a warning; everything else is answered.
Data read_entries(const Environment& environment, const std::vector<const lyd_node*>& entries, const FetchSet& fetch,
                  const Data* operational, std::vector<Warning>& warnings);

}  // namespace yfw
