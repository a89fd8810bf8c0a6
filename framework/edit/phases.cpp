// The phases of an edit. Each hands over what the next ones need and nothing else.
#include "framework/edit/phases.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <utility>

#include "framework/datastore/apply.h"
#include "framework/edit/unsaid.h"
#include "framework/edit/verify.h"
#include "framework/read/judge.h"
#include "framework/read/reader.h"
#include "framework/read/valid.h"
#include "framework/tree/entries.h"
#include "framework/tree/foreign.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/trunk_text.h"
#include "framework/vlan/values.h"
#include "framework/walk/request_tree.h"

namespace yfw {

Data read_back(const Environment& environment, const Running& running, const std::vector<std::string>& names,
               std::vector<Warning>& warnings) {
  Environment silent = environment;
  silent.running = &running;
  Data data = read_entries(silent, running.entries_of(names), warnings);
  // A key is valid only where its entry answers it.
  complete(data);
  make_valid(environment, data, warnings);
  return data;
}

namespace {

// What a replace writes again in other words stays as the device has it.
void keep_stored(const Data& candidate, const Running& running) {
  lyd_node* entry = nullptr;
  LY_LIST_FOR(candidate.empty() ? nullptr : lyd_child(candidate.get()), entry) {
    const lyd_node* const stored = running.entry(entry_name(entry));
    if (stored != nullptr) keep_stored_texts(entry, stored);
  }
}

// An entry of a leaf-list goes by writing the list without it, which takes a list to be known.
void refuse_lone_entries(const lyd_node* node, Operation outer) {
  const Operation own = operation_of(node, outer);
  const lysc_node* const schema = schema_of(node);
  if (removes(own) && !removes(outer) && schema != nullptr && schema->nodetype == LYS_LEAFLIST) {
    throw Refused({.tag = "operation-failed",
                   .path = path_of(node),
                   .message = fmt::format("an entry of '{}' can only be removed where the running configuration says "
                                          "which entries there are (--running)",
                                          schema->name),
                   .bad_element = schema->name});
  }
  const lyd_node* child = nullptr;
  LY_LIST_FOR(node->schema == nullptr ? nullptr : lyd_child(node), child) {
    refuse_lone_entries(child, own);
  }
}

// Trunk entries that the plug-in had no room for, found where nothing else is compared.
void refuse_lost_trunk_entries(const Environment& environment, const EditDocument& document, const Data& native) {
  Data fresh;
  apply_edit(fresh, native.get(), Operation::merge);
  const Running alone(std::move(fresh));
  std::vector<std::string> names;
  for (const lyd_node* const entry : alone.entries()) names.emplace_back(entry_name(entry));
  std::vector<Warning> ignored;
  const Data after = read_entries(environment, alone.entries(), ignored);
  refuse_lost_trunks(lost_trunk_entries(document, after), document.tree);
}

// What will be there, and where something is not there to be deleted, what is there natively in its place.
Expected expect_told(const Environment& environment, const EditDocument& document, const Data& before,
                     const std::vector<EntryVerdict>& unsaid, std::vector<Warning>& warnings) {
  try {
    return expect(environment, document, before, warnings);
  } catch (const Refused& refused) {
    RpcError error = refused.error();
    if (error.tag == "data-missing") error.message += unsaid_there(unsaid, error.path);
    throw Refused(std::move(error));
  }
}

class Way {
 public:
  Way(const Environment& environment, EditDocument part, const EditSettings& settings)
      : environment_(environment), silent_(environment), part_(std::move(part)), settings_(settings) {
    silent_.trace = nullptr;
  }

  PartOutcome run() && {
    try {
      environment_.running == nullptr ? run_blind() : run_against_running();
    } catch (const Refused& refused) {
      outcome_.refusal = refused.error();
      outcome_.refused_in = phase_;
    }
    return std::move(outcome_);
  }

 private:
  // Begins a phase; what is told from now on belongs to it.
  std::vector<Warning>& begin(Phase phase) {
    phase_ = phase;
    return warnings();
  }

  std::vector<Warning>& warnings() { return outcome_.warnings[static_cast<std::size_t>(phase_)]; }

  // Nothing is known of what is there.
  void run_blind() {
    begin(Phase::before);
    const lyd_node* top = nullptr;
    LY_LIST_FOR(part_.tree.get(), top) {
      refuse_lone_entries(top, part_.default_operation);
    }
    check_values(part_.tree, part_.default_operation, part_.tree, begin(Phase::values));
    drop_idle(part_.tree, part_.default_operation);
    spread_lists(part_, nullptr, begin(Phase::lists));
    walk();
    begin(Phase::after);
    refuse_lost_trunk_entries(environment_, part_, outcome_.native);
  }

  void run_against_running() {
    const Running& running = *environment_.running;
    begin(Phase::before);
    outcome_.touched = touched_entries(part_, running);
    const std::vector<std::string>& names = outcome_.touched.names;
    std::vector<Warning> unread;
    const Data before = read_back(silent_, running, names, unread);
    const std::vector<EntryVerdict> verdicts = judge_reading(silent_, running.entries_of(names), before);
    if (drop_absent_removes(part_.tree, before, part_.default_operation)) {
      for (const Warning& each : unread) {
        warnings().push_back({each.path, "stays, it does not read back: " + each.message});
      }
    }

    const Expected expected = expect_told(environment_, part_, before, verdicts, begin(Phase::expected));
    check_values(part_.tree, part_.default_operation, expected.data, begin(Phase::values));

    begin(Phase::containers);
    if (holds_idle(part_.tree, part_.default_operation)) keep_asked(part_);
    drop_idle(part_.tree, part_.default_operation);
    const std::vector<std::string> merged_into_unread =
        rewrite_whole_containers(environment_, part_, before, verdicts, expected.data, warnings());
    spread_lists(part_, &running, begin(Phase::lists));

    walk();
    if (expected.deferred.has_value()) throw Refused(*expected.deferred);

    begin(Phase::candidate);
    outcome_.candidate = make_candidate(running);

    begin(Phase::after);
    std::vector<Warning> unread_after;
    const Data after = read_back(silent_, outcome_.candidate, names, unread_after);
    tell_unsaid(verdicts);
    const Data& asked = part_.asked.empty() ? part_.tree : part_.asked;
    std::vector<Difference> found = differences(asked, part_.default_operation,
                                                {.running = running,
                                                 .before = before,
                                                 .expected = expected.data,
                                                 .after = after,
                                                 .merged_into_unread = merged_into_unread});
    try {
      refuse_lost_trunks(lost_trunk_entries(found), expected.data);
    } catch (const Refused& refused) {
      outcome_.lost = refused.error();
    }
    outcome_.differences = std::move(found);
  }

  void walk() {
    begin(Phase::walk);
    const lyd_node* top = nullptr;
    LY_LIST_FOR(part_.tree.get(), top) {
      outcome_.removes = outcome_.removes || contains_removal(top, part_.default_operation);
    }
    outcome_.native = translate(environment_, part_, warnings());
  }

  // The touched entries with the native edit applied.
  Running make_candidate(const Running& running) {
    Data candidate = running.copy(outcome_.touched.names);
    apply_edit(candidate, outcome_.native.get(), Operation::merge);
    complete_replaces(part_, outcome_.native, candidate);
    keep_stored(candidate, running);
    const ForeignSubtrees& foreign = running.foreign();
    if (!foreign.empty()) {
      const Data there = running.copy(outcome_.touched.names);
      for (const std::string& path : foreign.spare(outcome_.native, there, outcome_.touched.names)) {
        if (environment_.trace == nullptr) continue;
        (*environment_.trace)({TraceLine::Kind::note, 3, path + " goes piece by piece: what is foreign in it stays"});
      }
    }
    if (!settings_.validate_everything) validate_native(environment_, candidate);
    return Running(std::move(candidate));
  }

  void tell_unsaid(const std::vector<EntryVerdict>& verdicts) {
    EditResult told;
    report_unsaid(verdicts, outcome_.candidate, outcome_.touched, told);
    outcome_.unsaid = std::move(told.unsaid);
    warnings() = std::move(told.warnings);
    const ForeignSubtrees& foreign = environment_.running->foreign();
    if (foreign.empty()) return;
    outcome_.gone = foreign.going(outcome_.touched.names, outcome_.candidate.whole(), outcome_.foreign_warnings);
  }

  const Environment& environment_;
  Environment silent_;
  EditDocument part_;
  const EditSettings& settings_;
  Phase phase_ = Phase::before;
  PartOutcome outcome_;
};

}  // namespace

void keep_asked(EditDocument& document) {
  if (document.asked.empty()) document.asked = document.tree.clone();
}

void validate_native(const Environment& environment, Data& candidate) {
  if (environment.validator->validate(candidate)) return;
  const Complaint complaint = last_complaint(environment.models);
  throw Refused({.tag = "operation-failed",
                 .path = complaint.path,
                 .message = fmt::format("the native configuration that results is not valid: {}", complaint.message)});
}

PartOutcome run_part(const Environment& environment, EditDocument part, const EditSettings& settings) {
  return Way(environment, std::move(part), settings).run();
}

}  // namespace yfw
