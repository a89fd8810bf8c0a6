// Memory for what is needed only while a part of a document is read.
#include "framework/documents/arena.h"

#include <algorithm>
#include <functional>

namespace yfw {

void* Arena::allocate_in_new(std::size_t size) {
  constexpr std::size_t kBlock = 1U << 15;
  const std::size_t block = std::max(size, kBlock);
  sizes_.reserve(sizes_.size() + 1);
  blocks_.push_back(std::unique_ptr<std::byte[]>(new std::byte[block]));
  sizes_.push_back(block);
  size_ = block;
  used_ = size;
  return blocks_.back().get();
}

void Arena::rewind(const void* allocated) {
  const auto* const place = static_cast<const std::byte*>(allocated);
  const std::less<> before;
  while (before(place, blocks_.back().get()) || !before(place, blocks_.back().get() + sizes_.back())) {
    blocks_.pop_back();
    sizes_.pop_back();
  }
  size_ = sizes_.back();
  used_ = static_cast<std::size_t>(place - blocks_.back().get());
}

}  // namespace yfw
