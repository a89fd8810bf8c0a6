// Which native elements an OpenConfig leaf comes from: found out by leaving each of them out.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "mapping/document/device.h"

namespace mapping {

// An element of a native document.
struct Element {
  std::string path;   // below the entry, an element that stands there several times with its number
  std::string value;  // empty for a container
};

struct Origin {
  property::Values values;       // of the OpenConfig leaf
  std::vector<Element> sources;  // their values are, or are part of, the leaf's
  std::vector<Element> needed;   // the leaf, or another value of it, is not there without them
};

using Read = std::function<Config(const std::string& document)>;

// For every OpenConfig leaf that a native document says. The document has one element a line, and one entry, which is
// the list of this name with the key `key`.
std::map<std::string, Origin> origins(const std::string& document, const std::string& entry, const std::string& key,
                                      const Read& read);

}  // namespace mapping
