// What libyang itself takes for a file: parse, validate, print. Every cost of the tool is told as a multiple of this.
//   libyang_alone YANG_DIR (running|request|oper FILE)...
// A request is a whole one, in which keys stand below `config` too: as configuration, libyang validates nothing less.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

constexpr std::array kModules{"ietf-netconf",
                              "iana-if-type",
                              "openconfig-vlan-types",
                              "openconfig-interfaces",
                              "openconfig-if-ethernet",
                              "openconfig-if-aggregate",
                              "openconfig-vlan",
                              "Vexnet-OS-interface-cfg",
                              "Vexnet-OS-l2-eth-infra-cfg",
                              "Vexnet-OS-l2-eth-infra-oper"};

struct Destroy {
  void operator()(ly_ctx* context) const noexcept { ly_ctx_destroy(context); }
  void operator()(lyd_node* tree) const noexcept { lyd_free_all(tree); }
  void operator()(char* text) const noexcept { std::free(text); }
};
using Context = std::unique_ptr<ly_ctx, Destroy>;

void check(LY_ERR result, std::string_view what) {
  if (result != LY_SUCCESS) throw std::runtime_error(fmt::format("libyang fails on {}", what));
}

Context load_models(const char* yang_dir) {
  ly_ctx* context = nullptr;
  check(ly_ctx_new(yang_dir, LY_CTX_NO_YANGLIBRARY | LY_CTX_REF_IMPLEMENTED, &context), yang_dir);
  Context owned(context);
  for (const char* const module : kModules) {
    if (ly_ctx_load_module(context, module, nullptr, nullptr) == nullptr) check(LY_EINVAL, module);
  }
  return owned;
}

void parse_validate_print(const ly_ctx* context, std::string_view kind, const char* file) {
  if (kind != "running" && kind != "request" && kind != "oper") check(LY_EINVAL, kind);
  const std::uint32_t no_state = kind == "oper" ? 0 : LYD_VALIDATE_NO_STATE;
  lyd_node* parsed = nullptr;
  const LY_ERR result =
      lyd_parse_data_path(context, file, LYD_XML, LYD_PARSE_STRICT, LYD_VALIDATE_PRESENT | no_state, &parsed);
  const std::unique_ptr<lyd_node, Destroy> tree(parsed);
  check(result, file);
  char* printed = nullptr;
  check(lyd_print_mem(&printed, tree.get(), LYD_XML, LYD_PRINT_WITHSIBLINGS), file);
  const std::unique_ptr<char, Destroy> text(printed);
  std::fputs(text.get(), stdout);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4 || argc % 2 != 0) {
    std::fputs("usage: libyang_alone YANG_DIR (running|request|oper FILE)...\n", stderr);
    return 2;
  }
  try {
    const Context context = load_models(argv[1]);
    for (int i = 2; i < argc; i += 2) parse_validate_print(context.get(), argv[i], argv[i + 1]);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "libyang_alone: %s\n", error.what());
    return 1;
  }
}
