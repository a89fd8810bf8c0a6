// The stream behind a printer.
#include "framework/tree/printer.h"

#include <libyang/libyang.h>
#include <stdio_ext.h>
#include <sys/types.h>

#include <cstdio>
#include <exception>
#include <memory>
#include <new>

#include "framework/tree/result.h"

namespace yfw {

namespace {

constexpr std::size_t kBuffer = std::size_t{1} << 16;

}  // namespace

// Into memory or to a function of ours libyang would format each piece on a heap of its own first, and go on without
// those for which there is no memory.
class Printer::Stream {
 public:
  Stream()
      : buffer_(new char[kBuffer]),
        file_(fopencookie(this, "w", {nullptr, write, nullptr, nullptr}), std::fclose),
        out_(nullptr, [](ly_out* each) { ly_out_free(each, nullptr, 0); }) {
    if (file_ == nullptr || std::setvbuf(file_.get(), buffer_.get(), _IOFBF, kBuffer) != 0) throw std::bad_alloc();
    // One thread prints.
    __fsetlocking(file_.get(), FSETLOCKING_BYCALLER);
    ly_out* opened = nullptr;
    need(ly_out_new_file(file_.get(), &opened), "a printer cannot be made");
    out_.reset(opened);
  }
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  ly_out* out() { return out_.get(); }

  void begin(const Data::Sink& sink) {
    sink_ = &sink;
    last_ = '\n';
  }

  // Everything has been printed. Throws what the sink threw.
  void finish() {
    std::fflush(file_.get());
    if (thrown_ != nullptr) std::rethrow_exception(thrown_);
    if (std::ferror(file_.get()) != 0) throw std::bad_alloc();
    if (last_ != '\n') (*sink_)("\n");
  }

 private:
  // Nothing thrown may pass through the stream; the first failure ends what goes out.
  static ssize_t write(void* self, const char* text, std::size_t size) {
    auto& stream = *static_cast<Stream*>(self);
    if (stream.thrown_ != nullptr || size == 0) return 0;
    try {
      (*stream.sink_)({text, size});
      stream.last_ = text[size - 1];
      return static_cast<ssize_t>(size);
    } catch (...) {
      stream.thrown_ = std::current_exception();
      return 0;
    }
  }

  const Data::Sink* sink_ = nullptr;
  std::exception_ptr thrown_;
  char last_ = '\n';
  std::unique_ptr<char[]> buffer_;
  // Last, as they are closed first.
  std::unique_ptr<FILE, int (*)(FILE*)> file_;
  std::unique_ptr<ly_out, void (*)(ly_out*)> out_;
};

Printer::Printer(Format format) : stream_(std::make_unique<Stream>()), format_(format) {}
Printer::~Printer() = default;

void Printer::print(const lyd_node* first, const Data::Sink& sink) {
  stream_->begin(sink);
  const LY_ERR printed =
      lyd_print_all(stream_->out(), first, format_ == Format::xml ? LYD_XML : LYD_JSON, LYD_PRINT_WD_EXPLICIT);
  stream_->finish();
  need(printed, "a data tree cannot be printed");
}

}  // namespace yfw
