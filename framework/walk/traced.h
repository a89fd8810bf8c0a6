// Lines of the trace that cost nothing where nobody reads them.
#pragma once

#include <fmt/format.h>

#include <utility>

#include "framework/walk/walk_state.h"
#include "yfw-host/host.h"

namespace yfw {

// A part of a line that is put together only for a line that is written.
template <typename Make>
struct Late {
  Make make;
};
template <typename Make>
Late(Make) -> Late<Make>;

template <typename Argument>
const Argument& shown_in_trace(const Argument& argument) {
  return argument;
}
template <typename Make>
auto shown_in_trace(const Late<Make>& late) {
  return late.make();
}

template <typename Argument>
using ShownInTrace = decltype(shown_in_trace(std::declval<const Argument&>()));

// One call that the plug-in makes, as a line of the trace of the walk that runs.
template <typename... Arguments>
void traced(fmt::format_string<ShownInTrace<Arguments>...> format, const Arguments&... arguments) {
  const WalkState* const walk_state = WalkState::running();
  if (walk_state == nullptr || !walk_state->tracing()) return;
  walk_state->trace(TraceLine::Kind::call, 3, fmt::format(format, shown_in_trace(arguments)...));
}

}  // namespace yfw
