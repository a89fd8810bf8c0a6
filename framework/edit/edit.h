// An OpenConfig edit on its way to native configuration: what it asks for, what will be there, and how the plug-in is
// asked so that this comes out.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "framework/datastore/running.h"
#include "framework/documents/documents.h"
#include "framework/read/mapped_leaves.h"
#include "framework/read/verdict.h"
#include "framework/walk/environment.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"

namespace yfw {

// What an edit needs of its host.
struct EditSettings {
  Verify verify = Verify::report;
  bool ignore_unmapped = false;
  // A model ties entries to what is not part of them, so that all of the result has to be validated.
  bool validate_everything = false;
};

// The native names that an edit may change.
struct Touched {
  std::vector<std::string> names;
  // Those of which the edit names nothing: they are only the way to what it names, or hold the place of an interface.
  std::unordered_set<std::string> bystanders;
  // Those that the edit replaces, or of which it replaces something.
  std::unordered_set<std::string> replaced;
};

// The outcome, not applied yet.
struct PreparedEdit {
  EditResult result;
  Touched touched;
  Running candidate;  // the touched entries as they will be
};

// Runs the edit against `around.running` (null: existence is not checked and nothing is compared). Throws Refused;
// nothing outside the result changes.
PreparedEdit prepare_edit(const Environment& environment, MappedLeaves& leaves, EditDocument document,
                          const EditSettings& settings);

// The pieces of the way, each in a file of its own.

// Refuses, or drops with a warning, what nobody maps; refuses config/name, config/type and config/index that do not
// agree with the entry. Returns the first leaf that a plug-in knows and does not map; null when there is none.
const lyd_node* check_claims(const Environment& environment, MappedLeaves& leaves, EditDocument& document,
                             bool ignore_unmapped);

// Refuses two forms of match for one sub-interface in one request.
void check_one_form(const EditDocument& document);

// The native names that the edit may change.
Touched touched_entries(const EditDocument& document, const Running& running);

// OpenConfig configuration of native entries, valid as far as it goes.
Data read_back(const Environment& environment, const Running& running, const std::vector<std::string>& names,
               std::vector<Warning>& warnings);

// Every interface answers its name and kind, and every sub-interface its index, whoever made it.
void complete(Data& data);

// What will be there: `before` changed as the edit says, a new form of match in place of the old one, and without
// leaves whose condition no longer holds. A condition that only the plug-in can word better is left in `deferred`.
struct Expected {
  Data data;
  bool valid = true;
  std::optional<RpcError> deferred;
};
Expected expect(const Environment& environment, const EditDocument& document, const Data& before,
                std::vector<Warning>& warnings);

// To be called before an edit is rewritten: what was asked for is kept.
void keep_asked(EditDocument& document);

// Rewrites what container handlers of the plug-in see as a whole, where something of it goes or a list in it grows.
// `verdicts` are those on `before`. Returns the paths of those that are merged into what does not read back whole.
std::vector<std::string> rewrite_whole_containers(const Environment& environment, EditDocument& document,
                                                  const Data& before, const std::vector<EntryVerdict>& verdicts,
                                                  const Data& expected, std::vector<Warning>& warnings);

// Spreads operations on whole lists over their entries.
void spread_lists(EditDocument& document, const Running* running, std::vector<Warning>& warnings);

// Completes a native edit, `candidate` being what it makes of the entries: of an entry that the document replaces, only
// the entry itself, its layer, and what no loaded model of the mapping covers are kept.
void complete_replaces(const EditDocument& document, Data& native, Data& candidate);

// Walks the edit and turns its output into a native edit.
Data translate(const Environment& environment, const EditDocument& document, std::vector<Warning>& warnings);

}  // namespace yfw
