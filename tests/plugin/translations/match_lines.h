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

inline void failing_flags_status(Recorder& framework) {
  l2(framework);
  framework.flags_status(4);
}

inline void failing_copy(Recorder& framework) {
  l2(framework);
  framework.answer("strncpy", 34);
}

// The calls by which a sub-interface is classified; those after `imc_find` only for a known one.
inline const std::string kCopy = "strncpy caller=check_subintf_l2_or_l3 size=64 source=Ethernet0_0_1.100 count=64";
inline const std::string kFind = kCopy + "\nimc_find name=Ethernet0_0_1.100";
inline const std::string kClassify = kFind + "\nimc_flags handle=7";

inline const std::string kRefusedEmptyList = lines(strdup("Edit request without VLAN IDs.", "YFW_MAP"), "error_path");

// A translation tells between its start and its end how the sub-interface was classified.
inline void expect_classification_told(const Function& function) {
  for (const bool is_l2 : {true, false}) {
    Recorder framework;
    (is_l2 ? l2 : l3)(framework);
    Tree tree("id=100");
    function(framework.ctx(), tree.root(), 0, framework.output());
    const std::string prefix = "TRC " + function.name() + ": ";
    EXPECT_EQ(framework.trace(),
              lines(prefix + "Start", prefix + " is subintf l2 " + (is_l2 ? "TRUE" : "FALSE"), prefix + "End"));
  }
}

// A list container tells that it has no children to visit, before anything else that it tells.
inline void expect_empty_list_told(const Function& function) {
  const std::string prefix = ' ' + function.name() + ": ";
  const std::string told = lines("TRC" + prefix + "Start", "TRC" + prefix + "No subtrees");
  struct {
    uint32_t kind;
    const char* tree;
    std::string error;
  } const cases[] = {{kRead, "config { x }", ""},
                     {kReadState, "config", ""},
                     {kEdit, "config @delete", ""},
                     {kEdit, "config", "ERR" + prefix + "Edit request with 0 VLAN IDs in request.\n"}};
  for (const auto& c : cases) {
    Recorder framework(c.kind);
    Tree tree(c.tree);
    function(framework.ctx(), tree.root(), 0, framework.output());
    EXPECT_EQ(framework.trace(), told + c.error + lines("TRC" + prefix + "End")) << c.tree;
  }
}

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
