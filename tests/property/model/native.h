// What OpenConfig says natively, and what native configuration says in OpenConfig: the tables of both directions, told
// once more and without the code that they judge.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "property/model/config.h"

namespace property {

// A native entry: its leaves by the path below it, lists with their keys as in l2-protocol[l2-protocol-name='cdp'];
// `l2-transport` and empty leaves without a value.
using Entry = std::map<std::string, std::string>;

// All native entries by name, Ethernet0/0/1 or Ethernet0/0/1.100.
using Native = std::map<std::string, Entry>;

// The parts of an entry that an edit of one kind concerns as a whole.
enum class Unit : std::uint8_t { match, ingress_mapping, switched };

struct Region {
  Unit unit;
  std::string path;  // in OpenConfig, from the top
};

bool is_bundle(std::string_view interface);
bool is_l2(const Entry& entry);
std::string native_name(const Place& place);
std::string openconfig_path(const std::string& native_name);

// The regions of an interface or sub-interface.
std::vector<Region> regions_of(const std::string& native_name);

// The native leaves of the unit in an entry, and the entry with other ones in their place.
Entry region_of(const Entry& entry, Unit unit);
void set_region(Entry& entry, Unit unit, const Entry& leaves);

// What the unit's OpenConfig leaves (by their path below the unit) become. A list of more ids than the native form
// takes is cut; a trunk has room for all.
Entry encode(Unit unit, const Config& leaves, bool l2);

// Puts what a configuration says of the interface or sub-interface at the path itself (its description, say) in place
// of what the entry holds of that.
void set_own_leaves(Entry& entry, const std::string& path, const Config& config);

// What an entry says in OpenConfig, by path from the top, as far as OpenConfig can hold it.
// What OpenConfig has no value or no place for is noted in `left_out`; it has to be told.
Config decode(const std::string& native_name, const Entry& entry, std::vector<std::string>& left_out);
Config decode(const std::string& native_name, const Entry& entry);
Config decode(const Native& native);

// Whether nothing of the region is lost in OpenConfig.
bool reads_whole(const std::string& native_name, const Entry& entry, const Region& region);

// A trunk's text that says what it said stays as it is stored, whatever blanks and padding there are in it.
void keep_stored_text(Entry& changed, const Entry& stored);

// The longest text of trunk entries that is written.
inline constexpr std::size_t kLongestTrunkText = 199;

// The text of all trunk entries, however long.
std::string trunk_text(const Values& entries);

std::string to_text(const Native& native);

}  // namespace property
