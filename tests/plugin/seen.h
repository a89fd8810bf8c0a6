// Every per-node handler and augment hook, put in the place of the plug-in's own by this executable: a call is written
// down, answered by the test or handed on to the plug-in's own.
#pragma once

#include <functional>
#include <string>

#include "recording/recorder.h"

namespace seen {

// A call is a line of all_calls(): "cont_lvla_vlan node=vlan count=2", names without the family's prefix. Where they
// are not 0, op= (the node's operation) and pass=, restore= and implicit= (pass_flags, replace_restore and
// implicit_walk of the request) follow. `recorder.answer("cont_lvla_vlan", code)` makes a handler or hook answer
// without its own body.

// The calls of handlers, hooks and services in their order, without messages, comparisons and questions.
std::string walk(const recording::Recorder& recorder);

// The same with the comparisons of texts.
std::string walk_with_comparisons(const recording::Recorder& recorder);

// The handlers and hooks alone.
std::string handlers(const recording::Recorder& recorder);

// The functions whose trace says `text`, without their family's prefix, in their order.
std::string who_traced(const recording::Recorder& recorder, const std::string& text);

// What a handler or hook of that name does beside, for as long as this lives.
class During {
 public:
  During(std::string name, std::function<void(yfw_map_ctx*)> act);
  ~During();
  During(const During&) = delete;
  During& operator=(const During&) = delete;
};

// The function behind an exported name of the finished library; ends the test when there is none.
void* symbol(const std::string& name);

template <typename Function>
Function function(const std::string& name) {
  return reinterpret_cast<Function>(symbol(name));
}

}  // namespace seen
