// Warnings that come interface by interface, for an answer in which they stand in the order of the configuration.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace yfw {

// What is told, each with its place among the others.
template <typename Thing>
class Told {
 public:
  // Puts these, as they come, at a place.
  void add(std::size_t place, std::vector<Thing>& things) {
    for (Thing& each : things) all_.emplace_back(place, std::move(each));
    things.clear();
  }
  void add(std::size_t place, Thing thing) { all_.emplace_back(place, std::move(thing)); }

  // All of them, place by place.
  std::vector<Thing> take() {
    const auto is_before = [](const auto& left, const auto& right) { return left.first < right.first; };
    if (!std::is_sorted(all_.begin(), all_.end(), is_before)) std::stable_sort(all_.begin(), all_.end(), is_before);
    std::vector<Thing> things;
    things.reserve(all_.size());
    for (auto& [place, thing] : all_) things.push_back(std::move(thing));
    all_.clear();
    return things;
  }

 private:
  std::vector<std::pair<std::size_t, Thing>> all_;
};

}  // namespace yfw
