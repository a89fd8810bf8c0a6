// The YANG models that a host works with.
#pragma once

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

struct ly_ctx;
struct lys_module;

namespace yfw {

// Owns a libyang context with the native and the OpenConfig modules in it. Contexts are independent of each other.
class Models {
 public:
  // `yang_dir` holds the native modules and the compact OpenConfig ones; with `openconfig_dir`, OpenConfig modules come
  // from there and never from `yang_dir`. Throws Unreadable, naming module and reason.
  // All modules in `further_dirs` are loaded beside these.
  explicit Models(const std::string& yang_dir, const std::string& openconfig_dir = {},
                  const std::vector<std::string>& further_dirs = {});

  ly_ctx* get() const noexcept { return context_.get(); }

  // The modules of the device's own configuration, the further ones among them.
  const std::vector<const lys_module*>& native() const { return native_; }

  // True for modules that only the further folders brought in.
  bool is_further(const lys_module* module) const { return further_.contains(module); }

 private:
  struct Destroy {
    void operator()(ly_ctx* context) const noexcept;
  };
  std::unique_ptr<ly_ctx, Destroy> context_;
  std::unordered_set<const lys_module*> further_;
  std::vector<const lys_module*> native_;
};

}  // namespace yfw
