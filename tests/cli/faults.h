// System calls of the tool that fail, and signals that come in their middle.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace cli_test {

// The library of tests/cli/faults.c makes a system call of the tool fail, or a signal come in its middle. A sanitizer
// wants to be the first library, and takes none before it.
#ifdef OC_VLAN_SANITIZER_OWNS_MALLOC
inline constexpr bool kCanPreload = false;
#else
inline constexpr bool kCanPreload = true;
#endif
inline std::vector<std::pair<std::string, std::string>> fault(const std::string& what) {
  return {{"LD_PRELOAD", OC_VLAN_FAULTS}, {"OC_VLAN_FAULT", what}};
}

}  // namespace cli_test
