// The leaves of the OpenConfig VLAN model as the plug-in's own table of nodes has them.
#pragma once

#include <string>
#include <vector>

namespace mapping {

struct Leaf {
  bool of_subinterface;  // or else of an interface
  std::string path;      // below that entry: vlan/match/single-tagged/config/vlan-id
  bool is_mapped;

  std::string name() const;       // vlan-id
  std::string branch() const;     // config, or state
  std::string container() const;  // vlan/match/single-tagged; empty for the entry itself
};

// In the order of the table.
const std::vector<Leaf>& leaves();

}  // namespace mapping
