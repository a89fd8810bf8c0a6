// Everybody who answers requests: the library in this process, and the tool as a program of its own. One suite runs
// against both.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "yfw-host/data.h"

namespace golden_test {

struct Request {
  std::string document;  // a file; empty for none
  std::string running;   // a file; empty for none
  std::string oper;      // a file; empty for none
  std::vector<std::string> options;
  yfw::Format format = yfw::Format::xml;  // of the answer
};

struct Answer {
  std::string text;
  std::string remarks;  // warnings, differences and refusals, each a line
};

class BackEnd {
 public:
  virtual ~BackEnd() = default;
  virtual Answer translate(const Request& request) const = 0;
  virtual Answer apply(const Request& request) const = 0;
  virtual Answer read(const Request& request) const = 0;
};

// `openconfig_dir` is the folder of published modules, or empty for the compact ones.
std::unique_ptr<BackEnd> make_library(const std::string& openconfig_dir);
std::unique_ptr<BackEnd> make_tool(const std::string& openconfig_dir);

}  // namespace golden_test
