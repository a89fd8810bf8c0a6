// What the OpenConfig reading of native entries leaves unsaid, found by writing the reading back.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "framework/read/verdict.h"
#include "framework/walk/environment.h"
#include "yfw-host/data.h"
#include "yfw-host/host.h"

namespace yfw {

// Which containers of an entry are judged, and which leaves that stand in none; null: all.
using Scope = std::function<bool(const lyd_node* entry, const lyd_node* node)>;

// Judges `reading`, valid OpenConfig configuration (state in it does not count), as the reading of these native
// entries, which are `around.running`'s. What `scope` leaves out need not have been read. Entries that are said whole
// have no verdict.
std::vector<EntryVerdict> judge_reading(const Environment& environment, const std::vector<const lyd_node*>& entries,
                                        const Data& reading, const Scope& scope = nullptr);

// Verdicts as records, and as a warning for each entry.
void report_unsaid(const std::vector<EntryVerdict>& verdicts, ReadResult& result);

// The leaves of operational data that their reading does not say, as records, and a warning for each entry. `scope`
// says which containers count.
void report_unsaid_state(const Environment& environment, const Data& operational, const Scope& scope,
                         ReadResult& result);

}  // namespace yfw
