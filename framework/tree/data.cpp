// Owned data trees.
#include "yfw-host/data.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "framework/tree/nodes.h"

namespace yfw {

namespace {

constexpr uint32_t kPrintOptions = LYD_PRINT_WITHSIBLINGS | LYD_PRINT_WD_EXPLICIT;

}  // namespace

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

std::size_t Data::shown() const {
  std::size_t count = 0;
  const lyd_node* node = nullptr;
  LY_LIST_FOR(first_, node) {
    if (lyd_node_should_print(node, kPrintOptions) != 0) ++count;
  }
  return count;
}

void Data::wrap() {
  lyd_node* data = nullptr;
  if (lyd_new_opaq2(nullptr, LYD_CTX(first_), "data", nullptr, nullptr, kNetconfNs, &data) != LY_SUCCESS) {
    throw std::runtime_error("<data> cannot be made");
  }
  while (first_ != nullptr) {
    lyd_node* const next = first_->next;
    lyd_unlink_tree(first_);
    lyd_insert_child(data, first_);
    first_ = next;
  }
  first_ = data;
}

std::string Data::print(Format format) const {
  if (shown() == 0) return format == Format::xml ? "" : "{}\n";
  char* text = nullptr;
  if (lyd_print_mem(&text, first_, format == Format::xml ? LYD_XML : LYD_JSON, kPrintOptions) != LY_SUCCESS) {
    throw std::runtime_error("a data tree cannot be printed");
  }
  const std::unique_ptr<char, void (*)(void*)> owner(text, std::free);
  std::string printed(text);
  if (printed.back() != '\n') printed += '\n';
  return printed;
}

std::string Data::print_document(Format format) const {
  const std::size_t roots = format == Format::xml ? shown() : 1;
  if (roots == 1) return print(format);
  if (roots == 0) return fmt::format("<data xmlns=\"{}\"/>\n", kNetconfNs);
  Data whole = clone();
  whole.wrap();
  return whole.print(format);
}

}  // namespace yfw
