// The tables of leaves: made from the rows of the plug-in and from what a device does with them.
#pragma once

#include <string>
#include <vector>

#include "mapping/document/readings.h"

namespace mapping {

// A heading and a table with a row for each leaf of a container.
std::string container_table(Device& device, Readings& readings, const std::string& container);

// The leaves that nothing native expresses.
std::string unmapped_table(Device& device);

// vlan/config/vlan-id and its state, on a device that binds them.
std::string bound_table(Device& device);

// The containers with mapped leaves, in the order of the rows.
std::vector<std::string> mapped_containers();

}  // namespace mapping
