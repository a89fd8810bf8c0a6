// Runs the finished tool as a user does: with files in a folder of its own, and everything that it says caught.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cli_test {

struct Outcome {
  int exit_code = -1;  // -1 when a signal ended it
  int signal = 0;
  std::string out;
  std::string err;
};

// All of it, for failure messages.
std::ostream& operator<<(std::ostream& stream, const Outcome& outcome);

struct Environment {
  std::string input = "";                                           // standard input
  std::vector<std::pair<std::string, std::string>> variables = {};  // of the environment, beside those there are
  std::optional<std::string> output_file = {};                      // standard output goes there instead
  bool reader_gone = false;                                         // standard output is a pipe that nobody reads
  std::optional<std::string> error_file = {};                       // the same of standard error
  bool error_reader_gone = false;
  std::vector<int> closed = {};     // standard streams that are closed, by number
  std::string folder = "";          // to work in, where it is another one
  unsigned user = 0;                // who runs it; 0 for who runs the tests
  std::size_t file_size_limit = 0;  // writes beyond fail, as on a full disk; 0 for none
  std::string program = "";         // another one than the built tool
};

// Runs the tool and waits for it.
Outcome run(const std::vector<std::string>& arguments, const Environment& surroundings = {});

// A folder that goes with everything in it.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  // A file in it; returns its path.
  std::string file(std::string_view name, std::string_view text) const;
  std::string path(std::string_view name) const { return (root_ / name).string(); }
  // Names of everything in it, sorted.
  std::vector<std::string> names() const;

 private:
  std::filesystem::path root_;
};

std::string contents(const std::string& file);

// A trace without what differs from run to run.
std::string trace_without_addresses(const std::string& trace);

// Tests with files of their own.
class CliTest : public testing::Test {
 protected:
  Folder folder;
};

}  // namespace cli_test
