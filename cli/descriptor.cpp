// Open files, and the system calls on them, which begin again where they were interrupted or had to wait.
#include "cli/descriptor.h"

#include <fcntl.h>
#include <poll.h>

#include <array>
#include <cerrno>

namespace ocvlan {
namespace {

// True when a call that failed is to be made again: after an interruption, or as soon as a descriptor that does not
// wait by itself (whoever shares it may have asked for that) is ready.
bool again(int descriptor, short event) {
  if (errno == EINTR) return true;
  if (errno != EAGAIN) return false;
  pollfd ready = {descriptor, event, 0};
  return poll(&ready, 1, -1) >= 0 || errno == EINTR;
}

}  // namespace

int read_fully(int descriptor, std::string& text) {
  std::array<char, 1 << 16> buffer = {};
  for (;;) {
    const ssize_t count = read(descriptor, buffer.data(), buffer.size());
    if (count == 0) return 0;
    if (count > 0) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
    } else if (!again(descriptor, POLLIN)) {
      return errno;
    }
  }
}

int write_fully(int descriptor, std::string_view text) noexcept {
  while (!text.empty()) {
    const ssize_t count = write(descriptor, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (!again(descriptor, POLLOUT)) {
      return errno;
    }
  }
  return 0;
}

void reserve_standard_streams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    // The lowest number that is free is the stream's.
    if (fcntl(stream, F_GETFD) < 0 && errno == EBADF) open("/", O_PATH | O_CLOEXEC);
  }
}

}  // namespace ocvlan
