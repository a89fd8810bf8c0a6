// What reads back differently from what was asked, and what is known about it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "framework/documents/documents.h"
#include "framework/vlan/causes.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"

namespace yfw {

// The leaves in which what reads back is not what was expected, each with what is known about it. `request` is the edit
// as it was asked for.
std::vector<Difference> differences(const Data& request, Operation default_operation, const Outcome& outcome);

// Trunk entries that were asked for and do not read back.
std::vector<Difference> lost_trunk_entries(const std::vector<Difference>& found);

// The same where nothing was expected: entries that the edit writes and `after` does not have.
std::vector<Difference> lost_trunk_entries(const EditDocument& document, const Data& after);

// Throws Refused, naming the entries, where `asked` has more entries than the native text has room for: the plug-in
// drops those that do not fit.
void refuse_lost_trunks(const std::vector<Difference>& lost, const Data& asked);

// The refusal that a strict verification ends in. `found` is not empty.
RpcError refusal_of(const std::vector<Difference>& found);

}  // namespace yfw
