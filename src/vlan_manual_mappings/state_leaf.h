// OpenConfig state leaves: a read fetches the native operational data behind them, an edit writes nothing.
#pragma once

#include "engine/request.h"

namespace oc_vlan {

cerrno state_leaf(const Call& call, const char* path);

}  // namespace oc_vlan
