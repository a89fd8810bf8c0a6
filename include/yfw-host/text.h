// Texts on their way out: to a terminal, into a document, and refusals as NETCONF and RESTCONF write them.
#pragma once

#include <string>
#include <string_view>

#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

// The text with everything in it that a terminal would obey, hide or reorder shown by its number: \u{9b} is a
// character, \x{9b} a byte that is no UTF-8. A backslash that would begin such a form is \u{5c}, so that no two texts
// look the same. All other text stays as it is.
std::string printable(std::string_view text);

// The text inside an XML element, and inside the quotes of a JSON string.
std::string xml_text(std::string_view text);
std::string json_text(std::string_view text);

// XML namespace declarations for the modules that an instance path names, each after a blank.
std::string prefix_declarations(const std::string& path);

// The error as RFC 6241 writes it (<rpc-error>), or as RFC 8040 does in JSON, with the severity.
std::string rpc_error(const RpcError& error, Format format);

}  // namespace yfw
