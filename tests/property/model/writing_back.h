// What is said, found with nothing but a host: a reading is written back where nothing but the layer is.
#pragma once

#include <string>

#include "property/model/native.h"
#include "yfw-host/host.h"

namespace property {

// The entry alone is read, and its reading applied to an entry that has only its layer: what that is then. A reading
// that is refused as a whole is applied by its leaves, and by the containers that mean something only as a whole.
Entry write_back(yfw::Host& host, const std::string& native_name, const Entry& entry);

// The entry with its layer alone.
Entry layer_of(const Entry& entry);

}  // namespace property
