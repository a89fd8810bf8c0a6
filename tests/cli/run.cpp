// Runs the finished tool as a user does: with files in a folder of its own, and everything that it says caught.
#include "run.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace cli_test {
namespace {

// The end of a pipe that nobody reads.
int unread_pipe() {
  std::array<int, 2> ends = {};
  if (pipe(ends.data()) != 0) _exit(125);
  close(ends[0]);
  return ends[1];
}

// Between fork and exec, where only plain system calls are safe.
[[noreturn]] void become(char* const* arguments, const Folder& files, const Environment& surroundings) {
  const int in = open(files.path("in").c_str(), O_RDONLY);
  const int err = surroundings.error_reader_gone
                      ? unread_pipe()
                      : open(surroundings.error_file.value_or(files.path("err")).c_str(), O_WRONLY);
  const int out = surroundings.reader_gone
                      ? unread_pipe()
                      : open(surroundings.output_file.value_or(files.path("out")).c_str(), O_WRONLY);
  if (in < 0 || out < 0 || err < 0) _exit(125);
  dup2(in, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  if (surroundings.file_size_limit != 0) {
    const rlimit limit = {surroundings.file_size_limit, surroundings.file_size_limit};
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  for (const int stream : surroundings.closed) close(stream);
  if (!surroundings.folder.empty() && chdir(surroundings.folder.c_str()) != 0) _exit(125);
  if (surroundings.user != 0) {
    const bool is_user = setgroups(0, nullptr) == 0 && setgid(surroundings.user) == 0 && setuid(surroundings.user) == 0;
    if (!is_user) _exit(125);
  }
  for (const auto& [name, value] : surroundings.variables) setenv(name.c_str(), value.c_str(), 1);
  execv(arguments[0], arguments);
  _exit(126);
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
  return stream << "exit code " << outcome.exit_code << ", signal " << outcome.signal << "\n--- standard output\n"
                << outcome.out << "--- standard error\n"
                << outcome.err;
}

Outcome run(const std::vector<std::string>& arguments, const Environment& surroundings) {
  const Folder files;
  files.file("in", surroundings.input);
  files.file("out", "");
  files.file("err", "");
  std::vector<std::string> words = {surroundings.program.empty() ? OC_VLAN_TOOL_FILE : surroundings.program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork failed");
  if (child == 0) become(pointers.data(), files, surroundings);
  int status = 0;
  if (waitpid(child, &status, 0) != child) throw std::runtime_error("waitpid failed");
  Outcome outcome;
  if (WIFEXITED(status)) outcome.exit_code = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) outcome.signal = WTERMSIG(status);
  outcome.out = contents(files.path("out"));
  outcome.err = contents(files.path("err"));
  return outcome;
}

Folder::Folder() {
  std::string name = (std::filesystem::temp_directory_path() / "ocvlan-test.XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder can be made");
  root_ = name;
}

Folder::~Folder() {
  std::error_code ignored;
  std::filesystem::remove_all(root_, ignored);
}

std::string Folder::file(std::string_view name, std::string_view text) const {
  std::ofstream(root_ / name, std::ios::binary) << text;
  return path(name);
}

std::vector<std::string> Folder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(root_)) names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

std::string trace_without_addresses(const std::string& trace) {
  static const std::regex kAddress("ctx=0x[0-9a-f]+");
  return std::regex_replace(trace, kAddress, "ctx=ADDRESS");
}

std::string contents(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

}  // namespace cli_test
