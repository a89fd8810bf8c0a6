// Operational dumps made from a seed, and a second opinion on the OpenConfig state that they tell, which shares no code
// with the plug-in or the framework.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace yfw::test {

// A leaf's text; without one the leaf is not in the dump. Texts may be no numbers where the model wants numbers.
using Text = std::optional<std::string>;

struct OperRange {
  Text low;
  Text high;
};

struct OperTag {
  Text ethertype;
  Text number_of_ranges;
  std::vector<OperRange> ranges;
};

struct OperPush {
  Text vlan_id;
  Text ethertype;
};

struct OperInterface {
  Text name;
  Text encapsulation;
  Text tag;
  Text outer_tag;
  Text second_tag;
  std::vector<OperTag> tags;
  Text tags_popped;
  std::vector<OperPush> pushes;
};

struct OperTrunk {
  Text name;
  Text native_vlan;
  Text mode;
  Text access_vlan;
  std::vector<OperTag> tags;  // of the container of ranges; the first one counts
};

struct OperDump {
  std::vector<OperTrunk> trunks;
  std::vector<OperInterface> interfaces;
};

// Always the same dump for a seed, on every platform.
OperDump generate_dump(std::uint64_t seed);

std::string xml_of(const OperDump& dump);
std::string json_of(const OperDump& dump);

// "NAME|INDEX|CONTAINERS|LEAF=VALUE", without an index above sub-interfaces.
using Leaves = std::set<std::string>;

struct Opinion {
  Leaves state;
  bool warned = false;    // something is left out with a warning
  bool homeless = false;  // something is told of an interface that is no sub-interface
};

Opinion opinion_of(const OperDump& dump);

}  // namespace yfw::test
