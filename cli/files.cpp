// Files in and out: documents are read whole, output is written whole or not at all.
#include "cli/files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "framework/error.h"

namespace ocvlan {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& name, const char* what, int error) {
  throw yfw::Unreadable(fmt::format("{}: {}: {}", name, what, std::strerror(error)));
}

// An open file that is closed when it goes out of sight.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (number_ > STDERR_FILENO) close(number_);
  }
  int number() const { return number_; }

 private:
  int number_;
};

// Removes a file unless told to keep it.
class Temporary {
 public:
  explicit Temporary(std::string name) : name_(std::move(name)) {}
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;
  ~Temporary() {
    if (!name_.empty()) unlink(name_.c_str());
  }
  void keep() { name_.clear(); }

 private:
  std::string name_;
};

std::string read_all(int descriptor, const std::string& name) {
  std::string text;
  std::array<char, 1 << 16> buffer = {};
  for (;;) {
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail(name, "cannot be read", errno);
    if (count == 0) return text;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

void write_all(int descriptor, std::string_view text, const std::string& name) {
  while (!text.empty()) {
    const ssize_t count = write(descriptor, text.data(), text.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0 && errno == EPIPE && descriptor == STDOUT_FILENO) throw ReaderGone();
    if (count < 0) fail(name, "cannot be written", errno);
    text.remove_prefix(static_cast<std::size_t>(count));
  }
}

mode_t mode_of_new_files() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// Beside the file, because only a rename within one file system is atomic.
void replace_file(const std::string& file, mode_t mode, std::string_view text) {
  std::string name = file + ".XXXXXX";
  const Descriptor descriptor(mkstemp(name.data()));
  if (descriptor.number() < 0) fail(file, "cannot be written", errno);
  Temporary temporary(name);
  write_all(descriptor.number(), text, file);
  if (fchmod(descriptor.number(), mode) != 0 || fsync(descriptor.number()) != 0 ||
      rename(name.c_str(), file.c_str()) != 0) {
    fail(file, "cannot be written", errno);
  }
  temporary.keep();
}

std::string beside_program(const char* path) {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return (program.parent_path() / path).lexically_normal().string();
}

std::string from_environment(const char* variable, const char* path_beside_program) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0' ? value : beside_program(path_beside_program);
}

}  // namespace

Input read_input(const std::string& file) {
  const bool standard = file == "-";
  Input input;
  input.name = standard ? "standard input" : file;
  const Descriptor descriptor(standard ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (descriptor.number() < 0) fail(input.name, "cannot be read", errno);
  input.text = read_all(descriptor.number(), input.name);

  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (std::string_view(input.text).starts_with(kByteOrderMark)) input.text.erase(0, kByteOrderMark.size());
  const auto first = input.text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) throw yfw::Unreadable(input.name + ": empty");
  switch (input.text[first]) {
    case '<':
      input.format = yfw::Format::xml;
      break;
    case '{':
      input.format = yfw::Format::json;
      break;
    default:
      throw yfw::Unreadable(input.name + ": neither XML, which begins with '<', nor JSON, which begins with '{'");
  }
  return input;
}

void write_output(const std::string& file, std::string_view text) {
  if (file.empty() || file == "-") {
    write_all(STDOUT_FILENO, text, "standard output");
    return;
  }
  // A link stays a link, and a device or a pipe is written to, not replaced.
  std::error_code error;
  const fs::path target = fs::weakly_canonical(file, error);
  const std::string name = error ? file : target.string();
  struct stat status = {};
  const bool exists = stat(name.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) fail(file, "cannot be written", EISDIR);
  if (exists && !S_ISREG(status.st_mode)) {
    const Descriptor descriptor(open(name.c_str(), O_WRONLY | O_CLOEXEC));
    if (descriptor.number() < 0) fail(file, "cannot be written", errno);
    write_all(descriptor.number(), text, file);
    return;
  }
  replace_file(name, exists ? status.st_mode & 07777 : mode_of_new_files(), text);
}

void LineFile::Close::operator()(std::FILE* file) const {
  if (file != stderr) std::fclose(file);
}

LineFile::LineFile(const std::string& file)
    : name_(file), file_(file == "-" ? stderr : std::fopen(file.c_str(), "we")) {
  if (!file_) fail(name_, "cannot be written", errno);
}

void LineFile::add(std::string_view line) {
  std::fwrite(line.data(), 1, line.size(), file_.get());
  std::fputc('\n', file_.get());
}

void LineFile::finish() {
  errno = 0;
  const bool flushed = std::fflush(file_.get()) == 0;
  if (file_.get() != stderr && (!flushed || std::ferror(file_.get()) != 0)) {
    fail(name_, "cannot be written", errno != 0 ? errno : EIO);
  }
}

std::string default_plugin() {
  return from_environment("OCVLAN_PLUGIN", OC_VLAN_PLUGIN_BESIDE);
}

std::string default_yang_dir() {
  return from_environment("OCVLAN_YANG", OC_VLAN_YANG_BESIDE);
}

}  // namespace ocvlan
