// What people are told, and never a failure.
#include "cli/message.h"

#include <unistd.h>

#include <exception>

#include "cli/descriptor.h"

namespace ocvlan {

void tell(std::string_view line) noexcept {
  try {
    write_fully(STDERR_FILENO, printable(line) + '\n');
  } catch (const std::exception&) {
    write_fully(STDERR_FILENO, "ocvlan: there is no memory for a message\n");
  }
}

}  // namespace ocvlan
