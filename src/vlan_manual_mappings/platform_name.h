// Interface names as the device's services know them.
#pragma once

#include <cstddef>

namespace oc_vlan {

// At most 63 characters of an interface name, "/" written as "_".
struct PlatformName {
  char text[64];
};

inline PlatformName platform_name(const char* interface) {
  PlatformName name{};
  for (std::size_t i = 0; i + 1 < sizeof name.text && interface[i] != '\0'; ++i) {
    name.text[i] = interface[i] == '/' ? '_' : interface[i];
  }
  return name;
}

}  // namespace oc_vlan
