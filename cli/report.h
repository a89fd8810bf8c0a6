// What people and programs are told, before cli/message.h makes it fit for a terminal: warnings, refusals, differences
// and trace lines.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "yfw-host/data.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"

namespace ocvlan {

// "ocvlan: refused: PATH: MESSAGE", naming the element where neither of them does.
std::string refusal_line(const yfw::RpcError& error);

// "warning: PATH: MESSAGE"
std::string warning_line(const yfw::Warning& warning);

// Each leaf that does not read back as asked, in lines: what was asked, what reads back, what to ask for instead.
std::vector<std::string> verify_report(const std::vector<yfw::Difference>& differences);

// "KIND LEVEL text" of a trace line, e.g. "log 0 ERR: ..."
std::string trace_text(const yfw::TraceLine& line);

}  // namespace ocvlan
