// What the framework hands out, as these tests see configuration.
#pragma once

#include <string>
#include <vector>

#include "property/model/device.h"
#include "yfw-host/host.h"

namespace property {

Native observe_native(const yfw::Data& data);
Config observe_config(const yfw::Data& data);

// Sorted; leaves that the framework answers by itself never differ.
std::vector<Change> observe_changes(const std::vector<yfw::Difference>& differences);

// The native entry that an instance path is the path of; empty when it is that of something else.
std::string observe_native_entry(const std::string& instance_path);

// The path of a native node below its entry, as these tests write it.
std::string observe_native_path(const std::string& entry, const std::string& instance_path);

// Sorted.
std::vector<UnsaidLeaf> observe_unsaid(const std::vector<yfw::Unsaid>& unsaid);

// An instance path, /module:node/node[key='value'], as these tests write it.
std::string observe_path(const std::string& instance_path);

// What the models say against the data; empty when it is valid.
std::string invalid_because(const yfw::Data& data);

}  // namespace property
