// Native data as OpenConfig.
#pragma once

#include <vector>

#include "framework/read/fetch.h"
#include "framework/walk/environment.h"
#include "framework/walk/request_tree.h"
#include "framework/walk/walk_state.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

// Walks native entries one after the other. What cannot be translated, or not be held by the OpenConfig model, is left
// out with a warning; everything else is answered.
class Reader {
 public:
  // `kind` is that of a read.
  Reader(const Environment& environment, uint32_t kind);

  // An entry of the configuration, or what is asked of it; null: all.
  void add(const lyd_node* entry, const Asked* asked, std::vector<Warning>& warnings);

  // Operational data: an entry of a card's list, in what it stands in, or a whole tree without the nodes that are not
  // wanted (null: with all). False when the walk did not come to its end.
  cerrno add_state_entry(const lyd_node* entry);
  cerrno add_state(const lyd_node* top, const RequestTree::Wanted& wanted = nullptr);

  // Interfaces that only the operational data know answer their names as the others do.
  void answer_names();

  // What has been read since the last call, and whether that is anything.
  bool empty() { return walk_state_.output().top().children.empty(); }
  Data take(std::vector<Warning>& warnings);

 private:
  WalkState walk_state_;
  RequestTree records_;
};

// Native entries as OpenConfig configuration.
Data read_entries(const Environment& environment, const std::vector<const lyd_node*>& entries,
                  std::vector<Warning>& warnings);

}  // namespace yfw
