// Owned data trees.
#include "yfw-host/data.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <stdio_ext.h>
#include <sys/types.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <vector>

#include "framework/tree/nodes.h"
#include "framework/tree/result.h"

namespace yfw {

namespace {

constexpr uint32_t kPrintOptions = LYD_PRINT_WD_EXPLICIT;

// The stream that libyang prints to. Into memory or to a function of ours it would format each piece on a heap of its
// own first, and go on without those for which there is no memory.
class Printout {
 public:
  explicit Printout(const Data::Sink& sink)
      : sink_(sink), file_(fopencookie(this, "w", {nullptr, write, nullptr, nullptr}), std::fclose) {
    if (file_ == nullptr || std::setvbuf(file_.get(), buffer_.data(), _IOFBF, buffer_.size()) != 0) {
      throw std::bad_alloc();
    }
    // One thread prints.
    __fsetlocking(file_.get(), FSETLOCKING_BYCALLER);
  }
  Printout(const Printout&) = delete;
  Printout& operator=(const Printout&) = delete;

  FILE* file() { return file_.get(); }

  // Everything has been printed. Throws what the sink threw.
  void finish() {
    std::fflush(file_.get());
    if (thrown_ != nullptr) std::rethrow_exception(thrown_);
    if (std::ferror(file_.get()) != 0) throw std::bad_alloc();
    if (last_ != '\n') sink_("\n");
  }

 private:
  // Nothing thrown may pass through the stream; the first failure ends what goes out.
  static ssize_t write(void* self, const char* text, std::size_t size) {
    auto& printout = *static_cast<Printout*>(self);
    if (printout.thrown_ != nullptr || size == 0) return 0;
    try {
      printout.sink_({text, size});
      printout.last_ = text[size - 1];
      return static_cast<ssize_t>(size);
    } catch (...) {
      printout.thrown_ = std::current_exception();
      return 0;
    }
  }

  const Data::Sink& sink_;
  std::exception_ptr thrown_;
  char last_ = '\n';
  std::vector<char> buffer_ = std::vector<char>(std::size_t{1} << 16);
  std::unique_ptr<FILE, int (*)(FILE*)> file_;  // last, as it is closed first
};

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
  constexpr char kFailure[] = "a data tree cannot be printed";
  Printout printout(sink);
  ly_out* opened = nullptr;
  need(ly_out_new_file(printout.file(), &opened), kFailure);
  const std::unique_ptr<ly_out, void (*)(ly_out*)> out(opened, [](ly_out* each) { ly_out_free(each, nullptr, 0); });
  const LY_ERR printed = lyd_print_all(out.get(), first_, format == Format::xml ? LYD_XML : LYD_JSON, kPrintOptions);
  printout.finish();
  need(printed, kFailure);
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
