// Values that are right one by one and wrong together.
#pragma once

#include <vector>

#include "yfw-host/data.h"
#include "yfw-host/error.h"

struct lyd_node;

namespace yfw {

// Refuses values that are right one by one but not together: a range whose low end is above its high end. `resulting`
// is the configuration that will be there, or the request's own tree where nobody knows. Trunk entries that overlap are
// told, and actions that put on a tag without its id.
void check_values(const Data& edit, Operation default_operation, const Data& resulting, std::vector<Warning>& warnings);

// False when configuration that is asked for as it stands here would be refused by one of these checks.
bool is_writable(const lyd_node* node);

}  // namespace yfw
