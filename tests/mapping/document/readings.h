// Where leaves that are read come from, by runs that the leaves of a container share.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "mapping/document/device.h"
#include "mapping/document/rows.h"

namespace mapping {

// The native data behind what is read.
enum class From : std::uint8_t { configuration, configuration_as_state, operational };

// A line of text for each native form from which a leaf is read, by the leaf's path.
using Lines = std::map<std::string, std::vector<std::string>>;

class Readings {
 public:
  explicit Readings(Device& device) : device_(device) {}

  // Empty where the leaf is never read.
  std::string text(const Leaf& leaf, const Place& place, From from);

 private:
  Device& device_;
  std::map<std::tuple<std::string, std::string, bool, From>, Lines> read_;
};

}  // namespace mapping
