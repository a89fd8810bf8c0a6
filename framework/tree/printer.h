// Data printed one tree after another.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "yfw-host/data.h"

struct ly_ctx;
struct lyd_node;

namespace yfw {

// A stream that libyang prints to, kept open between trees: opening one costs more than printing a small tree.
class Printer {
 public:
  explicit Printer(Format format);
  ~Printer();
  Printer(const Printer&) = delete;
  Printer& operator=(const Printer&) = delete;

  // Prints a node and its siblings, of which something shows, ending in a newline. Throws what the sink throws, and
  // std::bad_alloc when memory runs out.
  void print(const lyd_node* first, const Data::Sink& sink);

 private:
  class Stream;
  std::unique_ptr<Stream> stream_;
  Format format_;
};

}  // namespace yfw
