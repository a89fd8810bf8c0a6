// Owned data trees.
#include "yfw-host/data.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include "framework/tree/nodes.h"
#include "framework/tree/printer.h"
#include "framework/tree/result.h"

namespace yfw {

namespace {

constexpr uint32_t kPrintOptions = LYD_PRINT_WD_EXPLICIT;

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
  need(lyd_dup_siblings(first_, nullptr, LYD_DUP_RECURSIVE | LYD_DUP_WITH_FLAGS, &copy),
       "a data tree cannot be copied");
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
  need(lyd_new_opaq2(nullptr, LYD_CTX(first_), "data", nullptr, nullptr, kNetconfNs, &data), "<data> cannot be made");
  while (first_ != nullptr) {
    lyd_node* const next = first_->next;
    lyd_unlink_tree(first_);
    need(lyd_insert_child(data, first_), "<data> cannot be made");
    first_ = next;
  }
  first_ = data;
}

void Data::print(Format format, const Sink& sink) const {
  if (shown() == 0) {
    if (format == Format::json) sink("{}\n");
    return;
  }
  Printer(format).print(first_, sink);
}

void Data::print_document(Format format, const Sink& sink) const {
  const std::size_t roots = format == Format::xml ? shown() : 1;
  if (roots == 1) return print(format, sink);
  if (roots == 0) return sink(fmt::format("<data xmlns=\"{}\"/>\n", kNetconfNs));
  Data whole = clone();
  whole.wrap();
  whole.print(format, sink);
}

std::string Data::print(Format format) const {
  std::string text;
  print(format, [&text](std::string_view piece) { text += piece; });
  return text;
}

std::string Data::print_document(Format format) const {
  std::string text;
  print_document(format, [&text](std::string_view piece) { text += piece; });
  return text;
}

}  // namespace yfw
