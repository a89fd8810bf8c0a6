// Leaves whose values are names of a fixed set on both sides: value maps, identities and their namespace.
#pragma once

#include "engine/request.h"

namespace oc_vlan {

// Identities of the VLAN types module.
inline constexpr char kPush[] = "PUSH";
inline constexpr char kPop[] = "POP";
inline constexpr char kSwap[] = "SWAP";
inline constexpr char kTpidDot1q[] = "TPID_0X8100";
inline constexpr char kTpidDot1ad[] = "TPID_0X88A8";
inline constexpr char kAccess[] = "ACCESS";
inline constexpr char kTrunk[] = "TRUNK";

// One name and what it is called on the other side.
struct ValueName {
  const char* from;
  const char* to;
};

// The other side's name of a value; null when the table does not have it.
const char* translated(std::span<const ValueName> names, const char* value);

// An OpenConfig leaf that takes identities of the VLAN types module.
struct IdentityLeaf {
  const char* name;  // as the requester knows it; names the stored error tag too
  std::span<const ValueName> names;
  void (*log_foreign)(const Frame& frame);
  const char* invalid;      // text for the requester
  bool releases_error_tag;  // whether an older error tag is released first
};

// The native name of a written identity. `refused` when its value belongs to another module; null with `refused`
// false when it has no native name, which is recorded for the requester but is the caller's to judge.
struct Identity {
  const char* native;
  bool refused;
};
Identity native_identity(const Call& call, const IdentityLeaf& leaf);

// Adds an OpenConfig leaf with an identity for its value and marks the value as one of the VLAN types module.
cerrno add_identity(const Call& call, const char* path, const char* value, AddForm form);

}  // namespace oc_vlan
