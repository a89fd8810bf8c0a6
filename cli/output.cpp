// Where results go: whole or not at all.
#include "cli/output.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <filesystem>

#include "cli/descriptor.h"
#include "yfw-host/error.h"

namespace ocvlan {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& name, std::string_view why) {
  throw yfw::Unreadable(fmt::format("{}: cannot be written: {}", name, why));
}

[[noreturn]] void fail(const std::string& name, int error) {
  fail(name, std::strerror(error));
}

// The copy that a signal would leave behind. Plain memory, because a signal handler may touch nothing else.
std::array<char, PATH_MAX> unfinished = {};

constexpr std::array kSignals = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

extern "C" void remove_unfinished(int signal) {
  unlink(unfinished.data());
  // The default action ends the program as soon as this returns.
  std::signal(signal, SIG_DFL);
  raise(signal);
}

// While it lives, no signal comes.
class Quiet {
 public:
  Quiet() {
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before_);
  }
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;
  ~Quiet() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_ = {};
};

// A new file in a folder that goes again, also with the program, unless it takes another one's place.
class Temporary {
 public:
  explicit Temporary(const fs::path& folder) : name_(folder / ".ocvlan.XXXXXX"), descriptor_(make()) {}
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;
  ~Temporary() {
    if (descriptor_.number() < 0) return;
    const Quiet quiet;
    unlink(unfinished.data());
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &before_[i], nullptr);
  }
  int descriptor() const { return descriptor_.number(); }
  // 0, or the errno of the failure.
  int rename_to(const std::string& target) const { return rename(unfinished.data(), target.c_str()) == 0 ? 0 : errno; }

 private:
  int make() {
    const Quiet quiet;
    const int made = mkostemp(name_.data(), O_CLOEXEC);
    if (made < 0) return made;
    std::strncpy(unfinished.data(), name_.c_str(), unfinished.size() - 1);
    struct sigaction action = {};
    action.sa_handler = remove_unfinished;
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
      sigaction(kSignals[i], nullptr, &before_[i]);
      if (before_[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &action, nullptr);
    }
    return made;
  }

  std::string name_;
  std::array<struct sigaction, kSignals.size()> before_ = {};
  Descriptor descriptor_;
};

mode_t mode_of_new_files() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

void keep_owner_and_mode(int descriptor, const struct stat& old, const std::string& shown) {
  constexpr mode_t kMode = 07777;
  struct stat made = {};
  if (fstat(descriptor, &made) != 0) fail(shown, errno);
  const bool other_owner = made.st_uid != old.st_uid || made.st_gid != old.st_gid;
  if (other_owner && fchown(descriptor, old.st_uid, old.st_gid) != 0) {
    fail(shown, fmt::format("its owner and group cannot be kept: {}", std::strerror(errno)));
  }
  if (fchmod(descriptor, old.st_mode & kMode) != 0 || fstat(descriptor, &made) != 0) fail(shown, errno);
  if ((made.st_mode & kMode) != (old.st_mode & kMode)) fail(shown, "its mode cannot be kept");
}

// The new text is written beside the file, because only a rename within one file system is atomic. `old` is the file
// that is there; null for none.
void replace_file(const std::string& target, const struct stat* old, std::string_view text, const std::string& shown) {
  const fs::path folder = fs::path(target).parent_path();
  const Temporary copy(folder.empty() ? "." : folder);
  if (copy.descriptor() < 0) fail(shown, errno);
  int error = write_fully(copy.descriptor(), text);
  if (error != 0) fail(shown, error);
  if (old != nullptr) {
    keep_owner_and_mode(copy.descriptor(), *old, shown);
  } else if (fchmod(copy.descriptor(), mode_of_new_files()) != 0) {
    fail(shown, errno);
  }
  if (fsync(copy.descriptor()) != 0) fail(shown, errno);
  error = copy.rename_to(target);
  if (error != 0) fail(shown, error);
}

void write_stream(int descriptor, std::string_view text, const std::string& shown) {
  const int error = write_fully(descriptor, text);
  if (error == EPIPE) throw ReaderGone();
  if (error != 0) fail(shown, error);
}

}  // namespace

std::string followed(const std::string& file) {
  constexpr int kMostLinks = 40;
  fs::path name = file;
  for (int links = 0; links < kMostLinks; ++links) {
    std::error_code no_link;
    const fs::path target = fs::read_symlink(name, no_link);
    if (no_link) return name.string();
    name = name.parent_path() / target;
  }
  fail(file, ELOOP);
}

void write_output(const std::string& file, std::string_view text) {
  if (file.empty() || file == "-") return write_stream(STDOUT_FILENO, text, "standard output");
  struct stat old = {};
  if (stat(file.c_str(), &old) != 0) {
    if (errno != ENOENT) fail(file, errno);
    return replace_file(followed(file), nullptr, text, file);
  }
  if (S_ISDIR(old.st_mode)) fail(file, EISDIR);
  if (!S_ISREG(old.st_mode)) {
    // A device or a pipe is written to, not replaced.
    const Descriptor descriptor(open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (descriptor.number() < 0) fail(file, errno);
    return write_stream(descriptor.number(), text, file);
  }
  const std::string target = followed(file);
  struct stat found = {};
  if (lstat(target.c_str(), &found) != 0) fail(file, errno);
  // What /dev/stdout, say, stands for may be without a name by now.
  if (found.st_dev != old.st_dev || found.st_ino != old.st_ino) fail(file, "it has no name to be replaced under");
  replace_file(target, &old, text, file);
}

}  // namespace ocvlan
