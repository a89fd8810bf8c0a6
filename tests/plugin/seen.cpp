// The stand-ins themselves, and what they write down.
#include "plugin/seen.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "oc_vlan/handlers.h"
#include "oc_vlan/oc_vlan.h"
#include "recording/services.h"

namespace seen {

namespace {

struct Count {
  bool given = false;
  uint32_t count = 0;
};

struct Answer {
  bool scripted;
  cerrno code;
};

// No code of the plug-in or of a test.
constexpr uint32_t kOwnBody = 0xdeadbeef;

template <typename Function>
Function next(const char* name) {
  void* const found = ::dlsym(RTLD_NEXT, name);
  if (found == nullptr) throw std::runtime_error(std::string("the library has no ") + name);
  return reinterpret_cast<Function>(found);
}

struct Act {
  std::string name;
  std::function<void(yfw_map_ctx*)> act;
};

Act during;

std::string hexadecimal(uint32_t value) {
  std::ostringstream text;
  text << "0x" << std::hex << value;
  return text.str();
}

Answer write(const char* name, yfw_map_ctx* ctx, const yfw_datatree* node, Count count) {
  const recording::NotCounted here;
  std::string arguments = "node=" + recording::Services::name(node);
  if (count.given) arguments += " count=" + std::to_string(count.count);
  if (node != nullptr && node->operation != 0) arguments += " op=" + std::to_string(node->operation);
  if (ctx != nullptr && ctx->req_state != nullptr) {
    const yfw_map_req_state& state = *ctx->req_state;
    if (state.pass_flags != 0) arguments += " pass=" + hexadecimal(state.pass_flags);
    if (state.replace_restore != 0) arguments += " restore=" + std::to_string(state.replace_restore);
    if (state.implicit_walk != 0) arguments += " implicit=" + std::to_string(state.implicit_walk);
  }
  if (during.name == name) during.act(ctx);
  const uint32_t code = recording::Services::write(name, arguments, kOwnBody, true);
  return {code != kOwnBody, code};
}

void check_children(const yfw_datatree* node, const yfw_datatree* children) {
  if (node == nullptr) return;
  const yfw_datatree* const announced = (node->node_flags & 0x40) != 0 ? node->subtrees : nullptr;
  EXPECT_EQ(children, announced) << "a list handler is given its entry's children";
}

constexpr std::string_view kComparison = "do_these_match ";

// Questions and messages.
constexpr std::array<std::string_view, 5> kAside{"is_request_add ", "is_request_delete ", "should_log ", "log ",
                                                 "trace "};

bool is_aside(std::string_view line) {
  return std::any_of(kAside.begin(), kAside.end(), [line](std::string_view aside) { return line.starts_with(aside); });
}

bool is_handler(std::string_view line) {
  return line.starts_with("cont_") || line.starts_with("leaf_") || line.starts_with("list_") ||
         line.find("_parse_augments ") != std::string_view::npos;
}

template <typename Wanted>
std::string selected(const recording::Recorder& recorder, Wanted wanted) {
  std::istringstream all(recorder.all_calls());
  std::string document;
  for (std::string line; std::getline(all, line);) {
    if (wanted(std::string_view(line))) document += line + '\n';
  }
  return document;
}

}  // namespace

During::During(std::string name, std::function<void(yfw_map_ctx*)> act) {
  during = {std::move(name), std::move(act)};
}

During::~During() {
  during = {};
}

std::string walk(const recording::Recorder& recorder) {
  return selected(recorder, [](std::string_view line) { return !is_aside(line) && !line.starts_with(kComparison); });
}

std::string walk_with_comparisons(const recording::Recorder& recorder) {
  return selected(recorder, [](std::string_view line) { return !is_aside(line); });
}

std::string handlers(const recording::Recorder& recorder) {
  return selected(recorder, is_handler);
}

std::string who_traced(const recording::Recorder& recorder, const std::string& text) {
  constexpr std::array<std::string_view, 3> kPrefixes{"ymap_ov_oc_vlan_openconfigvlan_",
                                                      "ymap_vo_oc_vlan_vexnetosl2ethinfracfg_",
                                                      "ymap_vo_oc_vlan_vexnetosl2ethinfraoper_"};
  std::istringstream all(recorder.trace());
  std::string document;
  for (std::string line; std::getline(all, line);) {
    if (!line.ends_with(": " + text)) continue;
    std::string name = line.substr(4, line.size() - text.size() - 6);
    for (const std::string_view prefix : kPrefixes) {
      if (name.starts_with(prefix)) name.erase(0, prefix.size());
    }
    document += name + '\n';
  }
  return document;
}

void* symbol(const std::string& name) {
  static void* const library = ::dlopen(OC_VLAN_PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD);
  if (library == nullptr) throw std::runtime_error("the plug-in is not loaded");
  void* const found = ::dlsym(library, name.c_str());
  if (found == nullptr) throw std::runtime_error("the library has no " + name);
  return found;
}

}  // namespace seen

#define OC_VLAN_NAME OC_VLAN_OPENCONFIG
#include "plugin/seen_rows.h"

#include "openconfig_vlan.def"
#undef OC_VLAN_NAME

#define OC_VLAN_NAME OC_VLAN_NATIVE_CFG
#include "plugin/seen_rows.h"

#include "native_cfg.def"
#undef OC_VLAN_NAME

#define OC_VLAN_NAME OC_VLAN_NATIVE_OPER
#include "plugin/seen_rows.h"

#include "native_oper.def"
