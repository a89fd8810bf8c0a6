// The numbers by which records and services of the binary interface say what they mean.
#pragma once

#include <cstdint>

namespace yfw {

// Kinds of requests.
inline constexpr std::uint32_t kReadConfig = 0;
inline constexpr std::uint32_t kEdit = 1;
inline constexpr std::uint32_t kReadState = 10;

namespace abi {

// Operations of nodes.
inline constexpr std::uint32_t kMerge = 0;
inline constexpr std::uint32_t kReplace = 1;
inline constexpr std::uint32_t kCreate = 2;
inline constexpr std::uint32_t kDelete = 3;
inline constexpr std::uint32_t kRemove = 4;

// Flags of nodes.
inline constexpr std::uint8_t kSelecting = 0x02;
inline constexpr std::uint8_t kHasSubtrees = 0x40;

// Flags of an add.
inline constexpr std::uint32_t kKeyFromNativeEntry = 0x20;

}  // namespace abi
}  // namespace yfw
