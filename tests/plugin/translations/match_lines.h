// Pieces that the tables of single- and double-tagged matches share.
#pragma once

#include "plugin/translations/case.h"

namespace translations {

inline void l2(Recorder& framework) {
  framework.sub_interface("Ethernet0/0/1", "100");
  framework.make_l2();
}

inline void l3(Recorder& framework) {
  framework.sub_interface("Ethernet0/0/1", "100");
  framework.make_l3();
}

inline void unknown(Recorder& framework) {
  framework.sub_interface("Ethernet0/0/1", "100");
}

inline void failing_flags(Recorder& framework) {
  l2(framework);
  framework.answer("imc_flags", 0xaaf20123);
}

// The calls by which a sub-interface is classified; those after `imc_find` only for a known one.
inline const std::string kFind =
    "strncpy caller=check_subintf_l2_or_l3 size=64 source=Ethernet0_0_1.100 count=64\nimc_find name=Ethernet0_0_1.100";
inline const std::string kClassify = kFind + "\nimc_flags handle=7";

inline const std::string kRefusedEmptyList = lines(strdup("Edit request without VLAN IDs.", "YFW_MAP"), "error_path");

// A list container with `count` members of a tag, numbered from 1, and whatever else.
inline std::string list_tree(const std::string& member, int count, const std::string& rest = "",
                             const std::string& head = "config") {
  std::string tree = head + " {";
  for (int i = 1; i <= count; ++i) tree += " " + member + "=" + std::to_string(i);
  return tree + " " + rest + " }";
}

// The native leaves of `count` list members in order, the first under its own name.
inline std::string list_adds(const std::string& first, int count, const std::string& source) {
  std::string document;
  for (int i = 1; i <= count; ++i) {
    const std::string leaf = i == 1 ? first : "additional-range" + std::to_string(i - 1) + "-low";
    document += encapsulation(leaf, std::to_string(i), source) + "\n";
  }
  return document;
}

// The nine leaves and the tag type that a read of a list fetches, all with one value.
inline std::string list_fetch(const std::string& first, const std::string& tag_type, const std::string& value) {
  std::string document = encapsulation(first, value, "-") + "\n";
  for (int i = 1; i <= 8; ++i) {
    document += encapsulation("additional-range" + std::to_string(i) + "-low", value, "-") + "\n";
  }
  return document + lines(encapsulation(tag_type, value, "-"));
}

}  // namespace translations
