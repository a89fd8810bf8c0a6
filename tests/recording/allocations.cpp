// Hooks of the C allocator: interposed functions, or the sanitizer's own hooks where one owns the allocator.
#include "recording/allocations.h"

#include <cstdlib>

namespace recording {

namespace {

thread_local bool counting = false;
thread_local int not_counted = 0;
thread_local std::size_t allocation_count = 0;
thread_local const void* watched = nullptr;
thread_local bool watched_freed = false;

void on_allocation() {
  if (counting && not_counted == 0) ++allocation_count;
}

void on_free(const volatile void* block) {
  if (block != nullptr && block == watched) watched_freed = true;
}

}  // namespace

AllocationCount::AllocationCount() {
  allocation_count = 0;
  counting = true;
}

AllocationCount::~AllocationCount() {
  counting = false;
}

std::size_t AllocationCount::allocations() const {
  return allocation_count;
}

NotCounted::NotCounted() {
  ++not_counted;
}

NotCounted::~NotCounted() {
  --not_counted;
}

void watch_block(const void* block) {
  watched = block;
  watched_freed = false;
}

bool watched_block_is_freed() {
  return watched_freed;
}

}  // namespace recording

#ifdef OC_VLAN_SANITIZER_OWNS_MALLOC

extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*malloc_hook)(const volatile void*, std::size_t),
                                                         void (*free_hook)(const volatile void*));

namespace {

[[maybe_unused]] const int installed = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void*, std::size_t) { recording::on_allocation(); }, recording::on_free);

}  // namespace

#else

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) noexcept {
  recording::on_allocation();
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) noexcept {
  recording::on_allocation();
  return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) noexcept {
  recording::on_allocation();
  return __libc_realloc(block, size);
}

void free(void* block) noexcept {
  recording::on_free(block);
  __libc_free(block);
}

}  // extern "C"

#endif
