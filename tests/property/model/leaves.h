// The OpenConfig leaves that a request may name: where they stand, what they hold, and whether they are mapped.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace property {

enum class Type : std::uint8_t {
  vlan_id,      // 1..4094
  trunk_entry,  // 1..4094, or two of them around ".."
  inline_id,    // 1..4094, or two of them around "."
  mode,         // ACCESS, TRUNK
  action,       // PUSH, POP, SWAP
  tpid,         // an identity
  boolean,
  mtu,
  text,
  own_index,  // repeats the key of the sub-interface
  own_name,   // repeats the key of the interface
  own_type,   // follows from the name of the interface
};

// Below which entry a leaf stands.
enum class At : std::uint8_t { interface, subinterface };

struct Leaf {
  At at;
  std::string_view path;  // below the entry
  Type type;
  bool is_list = false;
  bool is_mapped = true;
};

// The prefixes that values may carry.
struct Prefix {
  std::string_view prefix;
  std::string_view module;
  std::string_view ns;
};
inline constexpr std::array<Prefix, 3> kPrefixes{{
    {"oc-vlan-types", "openconfig-vlan-types", "http://openconfig.net/yang/vlan-types"},
    {"oc-vlan", "openconfig-vlan", "http://openconfig.net/yang/vlan"},
    {"ianaift", "iana-if-type", "urn:ietf:params:xml:ns:yang:iana-if-type"},
}};

// Says what is known anyway.
inline bool is_own(const Leaf& leaf) {
  return leaf.type == Type::own_index || leaf.type == Type::own_name || leaf.type == Type::own_type;
}

const std::vector<Leaf>& leaves();

// Null when there is none: the path is that of a container, or of nothing.
const Leaf* find_leaf(std::string_view path);

// The value without the prefix that an identity or enumeration may carry.
std::string plain_value(const Leaf& leaf, const std::string& value);

// Whether the model takes the value. A prefix has to be the one of the module that defines the value.
bool is_valid(const Leaf& leaf, const std::string& value);

// A range of trunk entries with its bounds in the wrong order: a device may hold it, a request may not ask for it.
bool is_inverted(const std::string& entry);

// The value as JSON writes it: numbers bare, everything else quoted.
std::string json_value(const std::string& path, const std::string& value);

}  // namespace property
