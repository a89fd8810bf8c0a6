// The way of one interface through an edit, phase by phase.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "framework/datastore/running.h"
#include "framework/documents/documents.h"
#include "framework/edit/edit.h"
#include "framework/walk/environment.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"

namespace yfw {

// In their order. A phase of a request has all that its interfaces have of it: what the first interface is told in one
// comes before what the second is told in it, and that before anything of the next phase.
enum class Phase : std::uint8_t {
  before,      // what is there, and removals of what is not
  expected,    // what will be there
  values,      // whether it makes sense together
  containers,  // what the plug-in sees as a whole
  lists,       // operations on whole lists
  walk,        // the plug-in
  candidate,   // the native edit applied
  after,       // what reads back, and what was unsaid
};
inline constexpr std::size_t kPhases = static_cast<std::size_t>(Phase::after) + 1;

// What became of one interface of an edit, or of all of them where the edit is about all. What is only needed on the
// way is gone.
struct PartOutcome {
  std::array<std::vector<Warning>, kPhases> warnings;
  // Why it is refused, and in which phase; the rest says nothing then.
  std::optional<RpcError> refusal;
  Phase refused_in = Phase::before;

  Data native;
  bool removes = false;  // something in it goes
  Touched touched;
  Running candidate;           // the touched entries as they will be
  std::vector<Unsaid> unsaid;  // of them, as they were
  std::vector<Foreign> gone;   // told after what is unsaid of all interfaces
  std::vector<Warning> foreign_warnings;
  std::vector<Difference> differences;
  std::optional<RpcError> lost;  // the refusal of trunk entries for which the native text has no room
};

// Runs it. `part` is a document of its own.
PartOutcome run_part(const Environment& environment, EditDocument part, const EditSettings& settings);

// Throws Refused when native configuration is not valid.
void validate_native(const Environment& environment, Data& candidate);

}  // namespace yfw
