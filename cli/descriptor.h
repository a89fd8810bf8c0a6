// Open files, and the system calls on them, which begin again where they were interrupted or had to wait.
#pragma once

#include <unistd.h>

#include <string>
#include <string_view>

namespace ocvlan {

// An open file that is closed when it goes out of sight. The standard streams stay open.
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

// Both return 0, or the errno of the failure. What was read before a failure is in `text`.
int read_fully(int descriptor, std::string& text);
int write_fully(int descriptor, std::string_view text) noexcept;

// Puts something that can be neither read nor written in the place of each standard stream that is closed: the next
// file to be opened would take its place.
void reserve_standard_streams();

}  // namespace ocvlan
