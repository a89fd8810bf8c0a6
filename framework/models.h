// The YANG models that a host works with.
#pragma once

#include <memory>
#include <string>

struct ly_ctx;

namespace yfw {

// Owns a libyang context with the native and the OpenConfig modules in it. Contexts are independent of each other.
class Models {
 public:
  // `yang_dir` holds the native modules and the compact OpenConfig ones; with `openconfig_dir`, OpenConfig modules come
  // from there and never from `yang_dir`. Throws Unreadable, naming module and reason.
  explicit Models(const std::string& yang_dir, const std::string& openconfig_dir = {});

  ly_ctx* get() const noexcept { return context_.get(); }

 private:
  struct Destroy {
    void operator()(ly_ctx* context) const noexcept;
  };
  std::unique_ptr<ly_ctx, Destroy> context_;
};

}  // namespace yfw
