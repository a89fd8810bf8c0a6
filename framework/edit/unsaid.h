// What an edit does to what OpenConfig does not say of the entries that it touches.
#pragma once

#include <string>
#include <vector>

#include "framework/datastore/running.h"
#include "framework/edit/edit.h"
#include "framework/read/verdict.h"
#include "yfw-host/host.h"

namespace yfw {

// What an edit did to what was unsaid before it: records, and a warning for each entry and fate. `candidate` holds the
// entries as they will be. Of bystanders only what goes is told.
void report_unsaid(const std::vector<EntryVerdict>& verdicts, const Running& candidate, const Touched& touched,
                   EditResult& result);

// "; natively ... is there" for the entry that an OpenConfig path is in or names; empty when all of that is said.
std::string unsaid_there(const std::vector<EntryVerdict>& verdicts, const std::string& openconfig_path);

// Throws Refused when something unsaid goes, naming it and what to ask for instead.
void refuse_unsaid_loss(const std::vector<Unsaid>& unsaid, const Running& candidate, const Touched& touched);

}  // namespace yfw
