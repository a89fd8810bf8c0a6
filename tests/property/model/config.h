// OpenConfig configuration in plain data structures, and RFC 6241's edit-config on it.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "property/model/request.h"

namespace property {

using Values = std::vector<std::string>;

// Leaves by path, a leaf with one value, a leaf-list with several, a list entry with none. Containers are where
// something is below them. Paths look like interfaces/interface[Ethernet0/0/1]/subinterfaces/subinterface[5]/vlan.
using Config = std::map<std::string, Values>;

std::string interface_path(std::string_view name);
std::string subinterface_path(std::string_view name, std::string_view index);

// A path taken apart; what is missing is empty.
struct Place {
  std::string interface;
  std::string index;
  std::string below;  // the entry of interface or subinterface
};
Place place_of(const std::string& path);

// The path of an element below the path of its parent.
std::string path_below(const std::string& parent, const Element& element);

bool exists(const Config& config, const std::string& path);
void erase(Config& config, const std::string& path);

// What a request is refused for.
struct Fault {
  std::string tag;
  std::string path;
};

// Applies the request; what RFC 6241 refuses is added to the faults.
void edit_config(Config& config, const Request& request, std::vector<Fault>& faults);

// The leaves that the request writes, with their values.
Config written_by(const Request& request);

// The part of a configuration below a path, by the rest of the path.
Config part(const Config& config, const std::string& path);

std::string to_text(const Config& config);

}  // namespace property
