// Files in, and the one that grows while the tool works; cli/output.h has where results go.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/descriptor.h"
#include "yfw-host/data.h"

namespace ocvlan {

// A document and the text that it is a view of.
struct Input {
  std::string text;
  std::string name;
  yfw::Format format = yfw::Format::xml;

  yfw::Document document() const { return {text, format, name}; }
};

// Reads a file, or standard input for "-", and tells its format by its first character. Throws yfw::Unreadable.
Input read_input(const std::string& file);

// A text file that grows line by line. Throws yfw::Unreadable when it cannot be written.
class LineFile {
 public:
  explicit LineFile(const std::string& file);
  LineFile(const LineFile&) = delete;
  LineFile& operator=(const LineFile&) = delete;
  ~LineFile();
  void add(std::string_view line);
  void finish();

 private:
  std::string name_;
  Descriptor descriptor_;
  std::string waiting_;
};

// Which file a name means, whatever it is called: equal for two names of one file, links included, also for a file that
// is not there yet. Empty for terminals and other devices, which any number of streams may share, and for folders.
struct FileIdentity {
  unsigned long device;
  unsigned long number;
  std::string name;   // in the folder that the numbers are of; empty when they are the file's own
  bool is_read_once;  // a pipe: what was read from it is gone

  bool operator==(const FileIdentity& other) const = default;
};
std::optional<FileIdentity> identity_of(const std::string& file);
std::optional<FileIdentity> identity_of(int descriptor);

// Where the plug-in and the native models are: as the environment says, or beside the running program.
std::string default_plugin();
std::string default_yang_dir();

}  // namespace ocvlan
