// What is known of texts that come again and again.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>

namespace yfw {

// Mapping functions name paths as literals, which stand in one place. So what is known of a text is looked for by where
// the text stands, and believed as long as the text there says the same.
template <typename Value>
class RecentTexts {
 public:
  // What is known of these texts, the second of which may be null; `find` is asked when that is nothing.
  template <typename Find>
  const Value& of(const char* text, const char* other, const Find& find) {
    Place& place = places_[place_of(text)];
    if (!place.holds(text, other)) {
      Value found = find();
      place = {true, other != nullptr, text, other == nullptr ? "" : other, std::move(found)};
    }
    return place.value;
  }

 private:
  static constexpr std::size_t kPlaces = 128;

  struct Place {
    bool is_taken = false;
    bool has_other = false;
    std::string text;
    std::string other;
    Value value{};

    bool holds(const char* wanted, const char* wanted_other) const {
      return is_taken && has_other == (wanted_other != nullptr) && std::strcmp(text.c_str(), wanted) == 0 &&
             (wanted_other == nullptr || std::strcmp(other.c_str(), wanted_other) == 0);
    }
  };

  static std::size_t place_of(const char* text) {
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U;
    return static_cast<std::size_t>((reinterpret_cast<std::uintptr_t>(text) * kSpread) >> 57U) % kPlaces;
  }

  std::array<Place, kPlaces> places_;
};

}  // namespace yfw
