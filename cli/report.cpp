// What people and programs are told: warnings, refusals, differences and trace lines.
#include "cli/report.h"

#include <fmt/format.h>

#include "yfw-host/host.h"

namespace ocvlan {

std::string refusal_line(const yfw::RpcError& error) {
  std::string line = "ocvlan: refused: ";
  if (!error.path.empty()) line += error.path + ": ";
  line += error.message;
  if (line.find(error.bad_element) == std::string::npos) line += fmt::format(" (element '{}')", error.bad_element);
  return line;
}

std::string warning_line(const yfw::Warning& warning) {
  return warning.path.empty() ? fmt::format("warning: {}", warning.message)
                              : fmt::format("warning: {}: {}", warning.path, warning.message);
}

std::vector<std::string> verify_report(const std::vector<yfw::Difference>& differences) {
  std::vector<std::string> report = {
      fmt::format("verify: {} not read back as asked",
                  differences.size() == 1 ? "1 leaf does" : fmt::format("{} leaves do", differences.size()))};
  for (const yfw::Difference& difference : differences) {
    report.push_back("  " + difference.path);
    report.push_back(fmt::format("    {:<12}{}", fmt::format("{}:", yfw::label_of(difference)),
                                 yfw::value_or_nothing(difference.asked)));
    report.push_back("    reads back: " + yfw::value_or_nothing(difference.found));
    if (!difference.advice.empty()) report.push_back("    why:        " + difference.advice);
  }
  return report;
}

std::string trace_text(const yfw::TraceLine& line) {
  switch (line.kind) {
    case yfw::TraceLine::Kind::call:
      return "call   " + line.text;
    case yfw::TraceLine::Kind::log:
      return fmt::format("log {}  {}", line.level, line.text);
    case yfw::TraceLine::Kind::buffer:
      return "buffer " + line.text;
    case yfw::TraceLine::Kind::note:
      return "note   " + line.text;
  }
  return line.text;
}

}  // namespace ocvlan
