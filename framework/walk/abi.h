// The numbers of the binary interface in the types in which the framework counts with them.
#pragma once

#include <cstdint>

#include "yfw/yfw_map.h"

namespace yfw {

// Kinds of requests.
inline constexpr std::uint32_t kReadConfig = YFW_REQUEST_READ;
inline constexpr std::uint32_t kEdit = YFW_REQUEST_EDIT;
inline constexpr std::uint32_t kReadState = YFW_REQUEST_READ_STATE;

namespace abi {

// Operations of nodes.
inline constexpr std::uint32_t kMerge = YFW_OPERATION_MERGE;
inline constexpr std::uint32_t kReplace = YFW_OPERATION_REPLACE;
inline constexpr std::uint32_t kCreate = YFW_OPERATION_CREATE;
inline constexpr std::uint32_t kDelete = YFW_OPERATION_DELETE;
inline constexpr std::uint32_t kRemove = YFW_OPERATION_REMOVE;

// Flags of nodes.
inline constexpr std::uint8_t kSelecting = YFW_NODE_SELECTING_LEAF;
inline constexpr std::uint8_t kHasSubtrees = YFW_NODE_HAS_SUBTREES;

// Flags of an add.
inline constexpr std::uint32_t kKeyFromNativeEntry = YFW_ADD_KEY_OF_NATIVE_ENTRY;

}  // namespace abi
}  // namespace yfw
