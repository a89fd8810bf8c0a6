// Texts put together from parts, without what a formatted print has to find out first.
#pragma once

#include <cstddef>

namespace oc_vlan {

// A text of less than kSize characters: what does not fit is cut off.
template <std::size_t kSize>
class Text {
 public:
  template <typename... Parts>
  explicit Text(Parts... parts) {
    (append(parts), ...);
  }

  void append(const char* part) {
    append(part, [](char each) { return each; });
  }

  // The same, with every character changed.
  template <typename Change>
  void append(const char* part, Change change) {
    std::size_t size = size_;
    for (; *part != '\0' && size + 1 < kSize; ++part) text_[size++] = change(*part);
    size_ = size;
  }

  const char* c_str() const { return text_; }

 private:
  char text_[kSize] = {};
  std::size_t size_ = 0;
};

}  // namespace oc_vlan
