// Interface names as the device's services know them.
#pragma once

#include "engine/text.h"

namespace oc_vlan {

// As much of an interface name as fits, "/" written as "_".
template <std::size_t kSize = 64>
Text<kSize> platform_name(const char* interface) {
  Text<kSize> name;
  name.append(interface, [](char each) { return each == '/' ? '_' : each; });
  return name;
}

}  // namespace oc_vlan
