// Numbers that depend on nothing but the seed, on every platform.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace property {

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  std::size_t below(std::size_t limit) { return static_cast<std::size_t>(engine_() % limit); }
  std::size_t between(std::size_t low, std::size_t high) { return low + below(high - low + 1); }
  bool chance(std::size_t percent) { return below(100) < percent; }

  template <typename T>
  const T& pick(const std::vector<T>& values) {
    return values[below(values.size())];
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace property
