// The native models as they stand: every value that an entry of configuration may have, documents of many entries, and
// what is in a document of operational data.
#pragma once

#include <string>
#include <vector>

#include "mapping/document/device.h"

namespace mapping {

struct NativeValue {
  std::string path;  // below the entry
  std::string value;
  bool stands_for_any;  // of its leaf, but for those that the leaf is listed with
};

// Each value of an enumeration, each leaf without a value, the keys of inner lists; numbers and texts by one that
// stands for any, and 4097, where a number may be that, by itself.
std::vector<NativeValue> native_values();

// A native configuration with these entries.
std::string native_document(const property::Native& entries);

// A native instance path below its entry, by the names of its steps.
std::string path_in_entry(const std::string& instance_path);

// The leaves of mapped containers of a document of operational data, in order. In paths, instances of lists have a
// number.
std::vector<NativeValue> operational_values(const std::string& document);

// The paths that such leaves may have, without numbers.
std::vector<std::string> operational_paths();

// The path of one of them below the entry.
std::string path_in_operational(const std::string& instance_path);

}  // namespace mapping
