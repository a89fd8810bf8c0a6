// What the command line asks for.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "yfw-host/data.h"
#include "yfw-host/host.h"

namespace ocvlan {

enum class Command : std::uint8_t { help, translate, apply, read, fetch, diff };

// A command line that cannot be meant; the text says why.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// File names are empty where none was given and "-" for standard input or, of the trace, standard error.
struct Options {
  Command command = Command::help;
  std::string help;  // of Command::help: what to print

  std::string input;   // REQUEST, FILTER or A
  std::string second;  // B
  std::string running;
  std::string oper;
  std::vector<std::string> paths;
  std::string output;
  std::string trace;
  std::string plugin;

  yfw::Format format = yfw::Format::xml;
  bool format_given = false;
  bool text = false;  // of read: a table instead of a document
  bool quiet = false;
  bool state = false;
  bool config = false;
  bool strict = false;

  yfw::HostOptions host;  // all but `trace`, which needs an open file
};

// Throws UsageError.
Options parse_options(int argc, const char* const* argv);

}  // namespace ocvlan
