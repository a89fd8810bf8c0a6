// What the OpenConfig reading of native entries leaves unsaid, found by writing the reading back.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "framework/data.h"
#include "framework/edit.h"
#include "framework/error.h"
#include "framework/host.h"
#include "framework/session.h"

namespace yfw {

// The verdict on the reading of one native entry. Pointers are into the entry.
struct EntryVerdict {
  struct Misread {
    const lysc_node* container;  // the native container, whether or not the entry has it
    std::string reads_as;
    std::string natively;
    std::vector<const lysc_node*> makes;  // leaves that are not there, or not with this value
  };
  const lyd_node* entry;
  std::vector<const lyd_node*> unsaid;  // leaves and presence containers, in document order
  std::vector<const lyd_node*> beside;  // leaves of models that the mapping does not cover
  std::vector<Misread> misread;

  bool all_said() const { return unsaid.empty() && misread.empty(); }
};

// True for a node of the modules that the mapping covers.
bool is_covered(const lysc_node* node);

// Which containers of an entry are judged, and which leaves that stand in none; null: all.
using Scope = std::function<bool(const lyd_node* entry, const lyd_node* node)>;

// Judges `reading`, valid OpenConfig configuration (state in it does not count), as the reading of these native
// entries, which are `around.running`'s. What `scope` leaves out need not have been read. Entries that are said whole
// have no verdict.
std::vector<EntryVerdict> judge_reading(const Surroundings& around, const std::vector<const lyd_node*>& entries,
                                        const Data& reading, const Scope& scope = nullptr);

// Verdicts as records, and as a warning for each entry.
void report_unsaid(const std::vector<EntryVerdict>& verdicts, ReadResult& result);

// The leaves of operational data that their reading does not say, as records, and a warning for each entry. `scope`
// says which containers count.
void report_unsaid_state(const Surroundings& around, const Data& operational, const Scope& scope, ReadResult& result);

// What an edit did to what was unsaid before it: records, and a warning for each entry and fate. `candidate` holds the
// entries as they will be. Of bystanders only what goes is told.
void report_unsaid(const std::vector<EntryVerdict>& verdicts, const Running& candidate, const Touched& touched,
                   EditResult& result);

// "; natively ... is there" for the entry that an OpenConfig path is in or names; empty when all of that is said.
std::string unsaid_there(const std::vector<EntryVerdict>& verdicts, const std::string& openconfig_path);

// Throws Refused when something unsaid goes, naming it and what to ask for instead.
void refuse_unsaid_loss(const std::vector<Unsaid>& unsaid, const Running& candidate, const Touched& touched);

}  // namespace yfw
