// Memory for what is needed only while a part of a document is read.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace yfw {

// Works as a stack does: what was allocated last is given back first, all from one place on.
class Arena {
 public:
  void* allocate(std::size_t size, std::size_t alignment) {
    const std::size_t begin = (used_ + alignment - 1) / alignment * alignment;
    if (begin + size > size_) return allocate_in_new(size);
    used_ = begin + size;
    return blocks_.back().get() + begin;
  }

  // Gives back this one and all that came after it.
  void rewind(const void* allocated);

 private:
  void* allocate_in_new(std::size_t size);

  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  std::vector<std::size_t> sizes_;
  std::size_t size_ = 0;  // of the last block, and how much of it is in use
  std::size_t used_ = 0;
};

}  // namespace yfw
