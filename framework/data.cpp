// Owned data trees.
#include "framework/data.h"

#include <libyang/libyang.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace yfw {

Data::~Data() {
  reset();
}

void Data::reset(lyd_node* first) noexcept {
  lyd_free_all(first_);
  first_ = first;
}

Data Data::clone() const {
  if (empty()) return {};
  lyd_node* copy = nullptr;
  if (lyd_dup_siblings(first_, nullptr, LYD_DUP_RECURSIVE | LYD_DUP_WITH_FLAGS, &copy) != LY_SUCCESS) {
    throw std::runtime_error("a data tree cannot be copied");
  }
  return Data(copy);
}

std::string Data::print(Format format) const {
  constexpr uint32_t kOptions = LYD_PRINT_WITHSIBLINGS | LYD_PRINT_WD_EXPLICIT;
  bool any = false;
  const lyd_node* node = nullptr;
  LY_LIST_FOR(first_, node) {
    any = any || lyd_node_should_print(node, kOptions) != 0;
  }
  if (!any) return format == Format::xml ? "" : "{}\n";
  char* text = nullptr;
  if (lyd_print_mem(&text, first_, format == Format::xml ? LYD_XML : LYD_JSON, kOptions) != LY_SUCCESS) {
    throw std::runtime_error("a data tree cannot be printed");
  }
  const std::unique_ptr<char, void (*)(void*)> owner(text, std::free);
  std::string printed(text);
  if (printed.back() != '\n') printed += '\n';
  return printed;
}

}  // namespace yfw
