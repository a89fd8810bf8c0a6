// Small pieces of Markdown.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "mapping/document/device.h"

namespace mapping {

inline constexpr char kNewLine[] = "<br>";

std::string code(const std::string& text);

// `path` = `value`; the path alone where there is no value.
std::string setting(const std::string& path, const std::string& value);

std::string joined(const std::vector<std::string>& parts, const std::string& separator);

// Paths as code, with "a1 to a8" for those that count on from one to the next.
std::vector<std::string> codes(const std::vector<std::string>& paths);

// A native path without its first steps, where those say nothing that the rest does not.
inline constexpr const char* kLeftOut[] = {"ethernet-service/", "vlan-sub-configuration/", "vlan-trunk-configuration/",
                                           "encapsulation-details/service-instance-details/", "encapsulation-details/"};
std::string shortened(const std::string& path);

std::string table_row(const std::vector<std::string>& cells);

// Names the values of a leaf in front of what is said about them; sample ids stand for any.
std::string with_values(const std::vector<std::string>& values, const std::string& text);

// What is the same under all labels stands there without one.
std::string merged(const std::vector<std::pair<std::string, std::string>>& labelled);

// A line for each leaf, as settings; native paths are shortened.
std::string settings(const Config& leaves);
std::string settings(const Entry& leaves);

}  // namespace mapping
