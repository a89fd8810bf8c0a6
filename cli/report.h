// What people and programs are told, before cli/message.h makes it fit for a terminal: warnings, refusals, differences
// and trace lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "framework/data.h"
#include "framework/error.h"
#include "framework/host.h"

namespace ocvlan {

// The text inside an XML element, and inside the quotes of a JSON string.
std::string xml_text(std::string_view text);
std::string json_text(std::string_view text);

// XML namespace declarations for the modules that an instance path names, each after a blank.
std::string prefix_declarations(const std::string& path);

// "ocvlan: refused: PATH: MESSAGE", naming the element where neither of them does.
std::string refusal_line(const yfw::RpcError& error);

// The error as RFC 6241 writes it, or as RFC 8040 does in JSON, with the severity.
std::string rpc_error(const yfw::RpcError& error, yfw::Format format);

// "warning: PATH: MESSAGE"
std::string warning_line(const yfw::Warning& warning);

// Each leaf that does not read back as asked, in lines: what was asked, what reads back, what to ask for instead.
std::vector<std::string> verify_report(const std::vector<yfw::Difference>& differences);

// "KIND LEVEL text" of a trace line, e.g. "log 0 ERR: ..."
std::string trace_text(const yfw::TraceLine& line);

}  // namespace ocvlan
