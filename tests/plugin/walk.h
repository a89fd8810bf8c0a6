// One walk through an entry walker: what went in, and what can be looked at afterwards.
#pragma once

#include <functional>
#include <string>

#include "oc_vlan/handlers.h"
#include "plugin/seen.h"
#include "recording/recorder.h"

namespace walks {

using recording::kEdit;
using recording::kNotThere;
using recording::kRead;
using recording::kReadState;
using recording::lines;
using recording::Recorder;
using recording::Tree;

// A code that no part of the plug-in makes.
inline constexpr cerrno kFailure = 0xaaf20999;

struct Walk {
  Recorder recorder;
  Tree tree;
  cerrno code = 0;

  // `given` scripts the recorder before the walk.
  Walk(yfw_map_walker_fn walker, uint32_t kind, std::string_view notation, const std::function<void(Walk&)>& given = {})
      : recorder(kind), tree(notation) {
    if (given) given(*this);
    code = walker(recorder.ctx(), tree.root(), recorder.output());
  }

  std::string seen() const { return seen::walk(recorder); }
  std::string handlers() const { return seen::handlers(recorder); }
  const yfw_map_req_state& state() const { return recorder.state; }
};

inline Walk sub_interface(uint32_t kind, std::string_view notation, const std::function<void(Walk&)>& given = {}) {
  return {ymap_ov_oc_vlan_openconfigvlan_augment_lvla_subinterface, kind, notation, given};
}

}  // namespace walks
