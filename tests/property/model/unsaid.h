// What native entries hold and OpenConfig does not say, and which entries a request speaks of: told once more and
// without the code that they judge.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "property/model/native.h"

namespace property {

// A native leaf that the reading of its entry does not say, and what an edit does to it.
struct UnsaidLeaf {
  std::string entry;
  std::string path;  // below the entry
  std::string value;
  bool goes = false;
  auto operator<=>(const UnsaidLeaf&) const = default;
};

// An entry as writing its reading back makes it, where nothing but its layer was there before. What cannot be written
// back is not in it.
Entry written_back(const std::string& native_name, const Entry& entry);

// The leaves of an entry that writing its reading back does not make, in the order of their paths. The layer is none.
Entry unsaid_of(const std::string& native_name, const Entry& entry);

// The native entries that an edit may change: those that the request names something of, and those that are only the
// way to it.
struct Reach {
  std::set<std::string> named;
  std::set<std::string> passed;
};
Reach reach_of(const Request& request, const Native& native);

// What an edit does to what was unsaid before it. Where it only passes by, only what goes counts.
std::vector<UnsaidLeaf> unsaid_after(const Reach& reach, const Native& before, const Native& after);

std::string to_text(const std::vector<UnsaidLeaf>& leaves);

}  // namespace property
