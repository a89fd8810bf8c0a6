// A model with one node of every kind, for tests of what does not depend on any real one.
#pragma once

#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include <string>
#include <string_view>

#include "framework/documents/documents.h"
#include "framework/tree/models.h"
#include "models_of_tests.h"

namespace yfw::test {

inline constexpr char kSmallModule[] = R"(
module small {
  yang-version 1.1;
  namespace "urn:small";
  prefix s;
  container top {
    leaf a { type uint16; }
    leaf d { type uint16; default 5; }
    leaf-list w { type string; }
    container np { leaf x { type string; } container deep { leaf y { type string; } } }
    container pc { presence "it counts by being there"; leaf z { type string; } }
    list l {
      key k;
      leaf k { type string; }
      leaf v { type string; }
      leaf-list w { type string; }
      container c { leaf x { type string; } }
      list m { key n; leaf n { type string; } leaf o { type string; } }
    }
    container st { config false; leaf up { type boolean; } list e { leaf q { type string; } } }
  }
  container other { leaf b { type string; } }
})";

inline ly_ctx* small_models() {
  static const Models models(OC_VLAN_SOURCE_DIR "/yang");
  static const LY_ERR loaded = lys_parse_mem(models.get(), kSmallModule, LYS_IN_YANG, nullptr);
  EXPECT_EQ(loaded, LY_SUCCESS);
  return models.get();
}

// <top> around `inside`, which may use nc:operation; more than one top-level node when `inside` closes it by itself.
inline std::string on_top(std::string_view inside, std::string_view attributes = "") {
  return fmt::format("<config><top xmlns=\"urn:small\" xmlns:nc=\"{}\" {}>{}</top></config>", kNetconf, attributes,
                     inside);
}

inline EditDocument small_edit(const std::string& text, Operation default_operation = Operation::merge) {
  return parse_edit(small_models(), {text, Format::xml, "small"}, default_operation);
}

// A tree in one line.
inline std::string flat(const Data& data) {
  const std::string text = data.print(Format::xml);
  std::string result;
  bool begin = true;
  for (const char c : text) {
    if (c == '\n') begin = true;
    if (c == '\n' || (begin && c == ' ')) continue;
    begin = false;
    result += c;
  }
  return result;
}

inline std::string flat_top(std::string_view inside) {
  return fmt::format("<top xmlns=\"urn:small\">{}</top>", inside);
}

}  // namespace yfw::test
