// The native text of a trunk's VLANs: entries joined by ",", ranges written with "-".
#pragma once

#include <cstddef>

namespace oc_vlan {

// Bounded: an entry that does not fit whole is dropped whole, with all that come after it, so that no number is ever
// cut into another one.
class TrunkText {
 public:
  // Appends a single id, or a range when `high` is given.
  void append(const char* low, const char* high);

  // No text yet; an entry without text alone makes none.
  bool empty() const { return size_ == 0; }
  const char* text() const { return text_; }

 private:
  char text_[200] = {};
  std::size_t size_ = 0;
  bool begun_ = false;
  bool full_ = false;
};

}  // namespace oc_vlan
