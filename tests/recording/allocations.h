// Tells whether the code under test touched the heap.
#pragma once

#include <cstddef>

namespace recording {

// Counts the allocations made while it lives, but for those inside framework services.
//
//   const AllocationCount count;
//   oc2_vex_singletag_cfg_vlanid(...);
//   EXPECT_EQ(count.allocations(), 0u);
class AllocationCount {
 public:
  AllocationCount();
  ~AllocationCount();
  AllocationCount(const AllocationCount&) = delete;
  AllocationCount& operator=(const AllocationCount&) = delete;

  std::size_t allocations() const;
};

// Marks the time spent in a service or in the recording itself.
class NotCounted {
 public:
  NotCounted();
  ~NotCounted();
  NotCounted(const NotCounted&) = delete;
  NotCounted& operator=(const NotCounted&) = delete;
};

// Watches one block for its free(); null ends the watch.
void watch_block(const void* block);
bool watched_block_is_freed();

}  // namespace recording
