// Files in and out: documents are read whole, output is written whole or not at all.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "framework/data.h"

namespace ocvlan {

// Whoever read standard output went away; nothing is wrong and nothing is left to do.
class ReaderGone {};

// A document and the text that it is a view of.
struct Input {
  std::string text;
  std::string name;
  yfw::Format format = yfw::Format::xml;

  yfw::Document document() const { return {text, format, name}; }
};

// Reads a file, or standard input for "-", and tells its format by its first character. Throws yfw::Unreadable.
Input read_input(const std::string& file);

// Writes to a file, or to standard output when `file` is empty or "-". A regular file is replaced when everything is
// on disk and stays as it was otherwise. Throws yfw::Unreadable when it cannot be written, or ReaderGone.
void write_output(const std::string& file, std::string_view text);

// A text file that grows line by line; standard error for "-". Throws yfw::Unreadable when it cannot be written.
class LineFile {
 public:
  explicit LineFile(const std::string& file);
  void add(std::string_view line);
  void finish();

 private:
  struct Close {
    void operator()(std::FILE* file) const;
  };
  std::string name_;
  std::unique_ptr<std::FILE, Close> file_;
};

// Where the plug-in and the native models are: as the environment says, or beside the running program.
std::string default_plugin();
std::string default_yang_dir();

}  // namespace ocvlan
