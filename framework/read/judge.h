// The reading of a native entry judged by writing it back.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "framework/read/verdict.h"
#include "framework/walk/environment.h"
#include "framework/walk/request_tree.h"
#include "framework/walk/walk_state.h"
#include "yfw-host/data.h"

namespace yfw {

// Which containers of an entry are judged, and which leaves that stand in none; null: all.
using Scope = std::function<bool(const lyd_node* entry, const lyd_node* node)>;

// Writes readings of entries of a running configuration back, onto an entry that has only its layer, and compares what
// comes of it with what is there.
class Judge {
 public:
  explicit Judge(const Environment& environment);

  // The verdict on the reading of a native entry (null: nothing is read of it), valid OpenConfig; state in it does not
  // count, and what `scope` leaves out need not have been read. Nothing for an entry that is said whole and has nothing
  // beside that.
  std::optional<EntryVerdict> judge(const lyd_node* entry, const lyd_node* reading, const Scope& scope = nullptr);

 private:
  WalkState walk_state_;
  RequestTree records_;
};

// The OpenConfig nodes of entries of one interface, asked for in the order of the entries, which is also theirs as far
// as they were read.
class Readings {
 public:
  // `interface` may be null.
  explicit Readings(const lyd_node* interface);

  // The node that an entry is read as; null when there is none.
  const lyd_node* of(const lyd_node* entry);

 private:
  const lyd_node* interface_;
  const lyd_node* list_;  // of sub-interfaces
  const lyd_node* next_;
};

// Judges `reading` as the reading of these native entries, which are `environment.running`'s. Entries that are said
// whole have no verdict.
std::vector<EntryVerdict> judge_reading(const Environment& environment, const std::vector<const lyd_node*>& entries,
                                        const Data& reading, const Scope& scope = nullptr);

}  // namespace yfw
