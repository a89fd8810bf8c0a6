// Reads the rows of src/*.def as names, and declares them.
#include "plugin/header/handlers_header.h"

#include <string_view>
#include <vector>

#include "engine/families.h"

namespace header {

namespace {

enum class Kind : std::uint8_t { walker, default_handler, container, list, leaf, hook };

struct Export {
  Kind kind;
  const char* type;
  const char* name;
};

constexpr char kWalker[] = "oc_vlan_walker";
constexpr char kContainerHandler[] = "oc_vlan_container_handler";
constexpr char kHandler[] = "oc_vlan_handler";
constexpr char kEntryHandler[] = "oc_vlan_entry_handler";

#define EXPORT(kind, type, name) {Kind::kind, type, OC_VLAN_TEXT(OC_VLAN_NAME(name))},

constexpr Export kOpenConfig[] = {
#define OC_VLAN_NAME OC_VLAN_OPENCONFIG
#include "plugin/header/exports_of_rows.h"

#include "openconfig_vlan.def"
#undef OC_VLAN_NAME
};

constexpr Export kNativeCfg[] = {
#define OC_VLAN_NAME OC_VLAN_NATIVE_CFG
#include "plugin/header/exports_of_rows.h"

#include "native_cfg.def"
#undef OC_VLAN_NAME
};

constexpr Export kNativeOper[] = {
#define OC_VLAN_NAME OC_VLAN_NATIVE_OPER
#include "plugin/header/exports_of_rows.h"

#include "native_oper.def"
#undef OC_VLAN_NAME
};

#undef EXPORT

constexpr std::string_view kHead =
    R"(/* The generated exports: entry walkers, default handlers, and every per-node handler and augment hook.
 *
 * This file is made from the plug-in's rows: scripts/make-handlers writes it anew.
 *
 * Handlers and hooks are weak: a definition of the same name in a library or a host that comes before this one in the
 * lookup order takes the place of the one here, for every walker. Include this header where you define it, so that the
 * compiler checks its type.
 *
 * A container handler may answer CERR_SKIP_SUBTREE: its node is done, and nothing below it is walked.
 */
#ifndef OC_VLAN_HANDLERS_H
#define OC_VLAN_HANDLERS_H

#include <stdint.h>

#include "yfw/yfw_map.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The four forms of a function here. */
typedef cerrno oc_vlan_walker(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output);
typedef cerrno oc_vlan_container_handler(yfw_map_ctx* ctx, const yfw_datatree* node, uint32_t count,
                                         yfw_datatree* output);
typedef cerrno oc_vlan_handler(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output); /* leaf, list, hook */
typedef cerrno oc_vlan_entry_handler(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output,
                                     yfw_datatree* children); /* entry of a native operational list */

#pragma GCC visibility push(default)
)";

constexpr std::string_view kTail = R"(
#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
)";

constexpr std::size_t kColumns = 120;

std::string heading(const std::string& title) {
  std::string line = "/* --- " + title + " ";
  line.append(kColumns - 4 - line.size(), '-');
  return "\n" + line + " */\n\n";
}

std::string declaration(const Export& each) {
  const std::string line = std::string(each.type) + " " + each.name + ";";
  return line.size() <= kColumns ? line + "\n" : std::string(each.type) + "\n    " + each.name + ";\n";
}

template <std::size_t kCount>
std::string family(const std::string& title, const Export (&exports)[kCount]) {
  struct Section {
    const char* title = "";
    std::vector<Kind> kinds;
  };
  const Section sections[] = {{"walkers and default handlers", {Kind::walker, Kind::default_handler}},
                              {"containers", {Kind::container}},
                              {"lists", {Kind::list}},
                              {"leaves", {Kind::leaf}},
                              {"augment hooks", {Kind::hook}}};
  std::string text;
  for (const Section& section : sections) {
    std::string declarations;
    for (const Kind kind : section.kinds) {
      for (const Export& each : exports) declarations += each.kind == kind ? declaration(each) : "";
    }
    if (!declarations.empty()) text += heading(title + ": " + section.title) + declarations;
  }
  return text;
}

}  // namespace

std::string handlers_header() {
  std::string text(kHead);
  text += family("OpenConfig VLAN", kOpenConfig);
  text += family("Native configuration", kNativeCfg);
  text += family("Native operational", kNativeOper);
  return text.append(kTail);
}

}  // namespace header
