// What the OpenConfig reading of native entries leaves unsaid, told.
#pragma once

#include <vector>

#include "framework/read/judge.h"
#include "framework/read/verdict.h"
#include "framework/walk/environment.h"
#include "yfw-host/data.h"
#include "yfw-host/host.h"

namespace yfw {

// Verdicts as records, and as a warning for each entry.
void report_unsaid(const std::vector<EntryVerdict>& verdicts, ReadResult& result);

// The leaves of operational data that their reading does not say, as records, and a warning for each entry. `scope`
// says which containers count.
void report_unsaid_state(const Environment& environment, const Data& operational, const Scope& scope,
                         ReadResult& result);

}  // namespace yfw
