// Files in, and the one that grows while the tool works.
#include "cli/files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "cli/output.h"
#include "yfw-host/error.h"

namespace ocvlan {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& name, const char* what, int error) {
  throw yfw::Unreadable(fmt::format("{}: {}: {}", name, what, std::strerror(error)));
}

std::optional<FileIdentity> identity_of(const struct stat& status) {
  if (S_ISCHR(status.st_mode) || S_ISDIR(status.st_mode)) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino, "", S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode)};
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
  const int error = read_fully(descriptor.number(), input.text);
  if (error != 0) fail(input.name, "cannot be read", error);

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

LineFile::LineFile(const std::string& file)
    : name_(file), descriptor_(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, 0666)) {
  if (descriptor_.number() < 0) fail(name_, "cannot be written", errno);
}

// A run that comes to nothing is what a trace is most often wanted for.
LineFile::~LineFile() {
  write_fully(descriptor_.number(), waiting_);
}

void LineFile::add(std::string_view line) {
  constexpr std::size_t kOneWrite = 1 << 16;
  waiting_.append(line).append(1, '\n');
  if (waiting_.size() >= kOneWrite) finish();
}

void LineFile::finish() {
  const int error = write_fully(descriptor_.number(), waiting_);
  if (error != 0) fail(name_, "cannot be written", error);
  waiting_.clear();
}

std::optional<FileIdentity> identity_of(int descriptor) {
  struct stat status = {};
  if (fstat(descriptor, &status) != 0) return std::nullopt;
  return identity_of(status);
}

std::optional<FileIdentity> identity_of(const std::string& file) {
  struct stat status = {};
  if (stat(file.c_str(), &status) == 0) return identity_of(status);
  if (errno != ENOENT) return std::nullopt;
  const fs::path target = followed(file);
  const fs::path folder = target.parent_path();
  if (stat(folder.empty() ? "." : folder.c_str(), &status) != 0) return std::nullopt;
  return FileIdentity{status.st_dev, status.st_ino, target.filename(), false};
}

std::string default_plugin() {
  return from_environment("OCVLAN_PLUGIN", OC_VLAN_PLUGIN_BESIDE);
}

std::string default_yang_dir() {
  return from_environment("OCVLAN_YANG", OC_VLAN_YANG_BESIDE);
}

}  // namespace ocvlan
