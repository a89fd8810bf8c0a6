// What a request is refused for before or after it is applied, whatever it becomes natively.
#pragma once

#include <vector>

#include "property/model/config.h"

namespace property {

// Of the request alone: values, names that disagree, leaves that nothing expresses, two forms of one match.
void find_request_faults(const Request& request, std::vector<Fault>& faults);

// Of what the configuration would be: conditions that do not hold and ranges that are none. A leaf whose condition
// fails and that the request does not write is taken out and noted in `dropped`.
void settle_conditions(Config& config, const Config& written, std::vector<Fault>& faults,
                       std::vector<std::string>& dropped);

// A range in a unit's leaves has its bounds in the wrong order: a device may hold that, a request may not ask for it.
bool is_upside_down(const Config& unit);

}  // namespace property
