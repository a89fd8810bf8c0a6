// A device with one interface or sub-interface, on which leaves are tried out.
#pragma once

#include <string>
#include <vector>

#include "property/model/config.h"
#include "property/model/native.h"
#include "yfw-host/host.h"

namespace mapping {

using property::Config;  // here: OpenConfig leaves by their path below the entry
using property::Entry;   // native leaves by their path below the entry

// What the device has, natively: a port or a bundle, or a sub-interface of one.
struct Place {
  std::string name;  // Ethernet0/0/1, or Ethernet0/0/1.100
  bool is_l2 = false;
};

struct Written {
  std::string refusal;  // empty when accepted
  Entry native;         // what the place holds afterwards
  std::string running;  // the native configuration afterwards
  std::vector<yfw::Warning> warnings;
  std::vector<yfw::Difference> differences;
};

class Device {
 public:
  // `binds_vlan_id`: vlan/config/vlan-id of a sub-interface is mapped too.
  explicit Device(bool binds_vlan_id);

  // An edit of the place, where these native leaves are configured.
  Written write(const Place& place, const Entry& there, const Config& leaves);

  // What native documents say of the place.
  Config read(const Place& place, const std::string& running);
  Config read_state(const Place& place, const std::string& operational);

  // The state of the place that comes from the native configuration.
  Config read_with_state(const Place& place, const std::string& running);

  // Everything that a read tells of a native document.
  yfw::ReadResult result_of(const std::string& running);
  yfw::ReadResult result_of_state(const std::string& operational);

  // The native paths that a read of a leaf asks for; the path is that of the models, from the top.
  std::vector<std::string> fetched(const std::string& path);

 private:
  yfw::Host host_;
};

}  // namespace mapping
