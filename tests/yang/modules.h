// The YANG modules of this repository and the published ones, loaded as a host loads them but without any of its code.
#pragma once

#include <libyang/libyang.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace yang_test {

inline const std::string kOwnYang = OC_VLAN_SOURCE_DIR "/yang";
inline const std::string kPublishedYang = OC_VLAN_PUBLISHED_YANG;

inline bool has_published() {
  return std::filesystem::is_directory(kPublishedYang);
}

// The order matters: the enumerations and identities that openconfig-vlan uses must be there before it.
inline const std::vector<std::string> kOpenConfigModules = {
    "openconfig-vlan-types",  "openconfig-vlan",         "openconfig-interfaces",
    "openconfig-if-ethernet", "openconfig-if-aggregate", "iana-if-type",
};
inline const std::vector<std::string> kNativeModules = {
    "Vexnet-OS-interface-cfg",
    "Vexnet-OS-l2-eth-infra-cfg",
    "Vexnet-OS-l2-eth-infra-oper",
};

struct FreeContext {
  void operator()(ly_ctx* ctx) const { ly_ctx_destroy(ctx); }
};
using Context = std::unique_ptr<ly_ctx, FreeContext>;

// A context that looks in the folders, the last one first.
inline Context make_context(const std::vector<std::string>& folders) {
  ly_log_options(LY_LOSTORE);  // what libyang has to say is asked for, not printed
  ly_ctx* ctx = nullptr;
  ly_ctx_new(nullptr, LY_CTX_DISABLE_SEARCHDIR_CWD, &ctx);
  for (const std::string& folder : folders) ly_ctx_set_searchdir(ctx, folder.c_str());
  return Context(ctx);
}

// Loads modules; what went wrong, or an empty text.
inline std::string load(const Context& ctx, const std::vector<std::string>& modules) {
  for (const std::string& module : modules) {
    if (ly_ctx_load_module(ctx.get(), module.c_str(), nullptr, nullptr) != nullptr) continue;
    return module + ": " + (ly_errmsg(ctx.get()) == nullptr ? "cannot be loaded" : ly_errmsg(ctx.get()));
  }
  return "";
}

// The data node at a path of names, "interfaces/interface/config/mtu", below the top of a module; null when absent.
inline const lysc_node* find_node(const Context& ctx, const std::string& module, std::string_view path) {
  const lys_module* const top = ly_ctx_get_module_implemented(ctx.get(), module.c_str());
  const lysc_node* node = nullptr;
  while (top != nullptr && !path.empty()) {
    const std::string_view name = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(path.size(), name.size() + 1));
    const lysc_node* child = nullptr;
    while ((child = lys_getnext(child, node, node == nullptr ? top->compiled : nullptr, 0)) != nullptr) {
      if (name == child->name) break;
    }
    if (child == nullptr) return nullptr;
    node = child;
  }
  return node;
}

// What a leaf makes of a value: its canonical form, or nothing when it does not take it. Modules are named in front of
// identities, as in JSON.
inline std::string canonical(const Context& ctx, const lysc_node* leaf, std::string_view value) {
  const char* result = nullptr;
  const LY_ERR status = lyd_value_validate(ctx.get(), leaf, value.data(), value.size(), nullptr, nullptr, &result);
  if (status != LY_SUCCESS && status != LY_EINCOMPLETE) return "refused";
  const std::string text = result == nullptr ? std::string(value) : result;
  lydict_remove(ctx.get(), result);
  return "taken as '" + text + "'";
}

}  // namespace yang_test
