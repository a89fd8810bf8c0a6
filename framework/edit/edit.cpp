// The way of an edit from request to native edit, and the proof by reading back.
#include "framework/edit/edit.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>

#include "framework/datastore/apply.h"
#include "framework/datastore/running.h"
#include "framework/documents/documents.h"
#include "framework/edit/unsaid.h"
#include "framework/edit/verify.h"
#include "framework/read/reader.h"
#include "framework/read/judge.h"
#include "framework/read/valid.h"
#include "framework/read/verdict.h"
#include "framework/tree/entries.h"
#include "framework/tree/foreign.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/trunk_text.h"
#include "framework/vlan/values.h"
#include "framework/walk/environment.h"
#include "framework/walk/output_tree.h"
#include "framework/walk/request_tree.h"
#include "framework/walk/walk_state.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

// The leaves that a plug-in takes without a namespace must not get past it.
const lyd_node* unbound_identity(const lyd_node* node, Operation outer) {
  const Operation own = operation_of(node, outer);
  if (removes(own)) return nullptr;
  if (node->schema == nullptr) return node;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    const lyd_node* const found = unbound_identity(child, own);
    if (found != nullptr) return found;
  }
  return nullptr;
}

void refuse_unbound_identities(const EditDocument& document) {
  const lyd_node* top = nullptr;
  LY_LIST_FOR(document.tree.get(), top) {
    const lyd_node* const node = unbound_identity(top, document.default_operation);
    if (node == nullptr) continue;
    throw Refused({.tag = "invalid-value",
                   .path = path_of(node),
                   .message = fmt::format("'{}' needs a value of the model", LYD_NAME(node)),
                   .bad_element = LYD_NAME(node)});
  }
}

// What an edit writes below a native entry of one layer that only means something to the other: lists and ranges are
// always written as L2 encapsulation, a bound routed VLAN always as the identifier of an L3 sub-interface.
void warn_of_container(const lyd_node* entry, bool foreign, const char* outer, const char* inner, const char* message,
                       std::vector<Warning>& warnings) {
  const lyd_node* const parent = foreign ? child_named(entry, outer) : nullptr;
  const lyd_node* const container = parent == nullptr ? nullptr : child_named(parent, inner);
  if (container == nullptr || lyd_child(container) == nullptr) return;
  if (removes(operation_of(container, Operation::merge))) return;
  warnings.push_back({path_of(container), message});
}

void warn_of_layer(const Environment& environment, const WalkState& walk_state, const Data& native,
                   std::vector<Warning>& warnings) {
  for (const std::string& name : walk_state.taken_as_l3()) {
    warnings.push_back({fmt::format("{}[interface-name='{}']", kNativeEntryPath, name),
                        "the running configuration does not know this sub-interface, it is taken as L3 (--l2 takes it "
                        "as L2)"});
  }
  const lyd_node* entry = nullptr;
  LY_LIST_FOR(native.empty() ? nullptr : lyd_child(native.get()), entry) {
    const std::string_view name = entry_name(entry);
    const lyd_node* const known = environment.running == nullptr ? nullptr : environment.running->entry(name);
    const bool l2 = known != nullptr ? is_l2(known) : is_l2(entry) || environment.layer == Layer::l2;
    warn_of_container(entry, !l2, "ethernet-service", "encapsulation", "written although the sub-interface is not L2",
                      warnings);
    warn_of_container(entry, l2, "vlan-sub-configuration", "vlan-identifier",
                      "written although the sub-interface is L2", warnings);
  }
}

class Touching {
 public:
  explicit Touching(const Running& running) : running_(running) {}

  void touch(const std::string& name) {
    if (seen_.insert(name).second) touched_.names.push_back(name);
    touched_.bystanders.erase(name);
    named_.insert(name);
  }

  void touch_subinterfaces_of(const std::string& name) {
    for (const std::string& each : running_.subinterfaces_of(name)) touch(each);
  }

  // An interface without an entry of its own is there as long as one of its sub-interfaces is.
  void pass(const std::string& name) {
    pass_one(name);
    if (running_.entry(name) != nullptr) return;
    const std::vector<std::string> subs = running_.subinterfaces_of(name);
    if (!subs.empty()) pass_one(subs.front());
  }

  void replaces(const std::string& name) { touched_.replaced.insert(name); }

  Touched take() { return std::move(touched_); }

 private:
  void pass_one(const std::string& name) {
    if (seen_.insert(name).second) touched_.names.push_back(name);
    if (!named_.contains(name)) touched_.bystanders.insert(name);
  }

  const Running& running_;
  Touched touched_;
  std::unordered_set<std::string> seen_;
  std::unordered_set<std::string> named_;
};

// True when the edit names something of an interface beside its sub-interfaces.
bool names_itself(const lyd_node* interface) {
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child_no_keys(interface), child) {
    if (!named(child, "subinterfaces")) return true;
  }
  return false;
}

// True when the node, or something in it but its sub-interfaces, is replaced.
bool replaces_below(const lyd_node* node) {
  if (operation_of(node, Operation::none) == Operation::replace) return true;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(node->schema == nullptr ? nullptr : lyd_child(node), child) {
    if (!named(child, "subinterfaces") && replaces_below(child)) return true;
  }
  return false;
}

}  // namespace

Touched touched_entries(const EditDocument& document, const Running& running) {
  Touching touching(running);
  const auto is_whole = [](Operation operation) {
    return removes(operation) || operation == Operation::replace || operation == Operation::create;
  };
  const lyd_node* top = nullptr;
  LY_LIST_FOR(document.tree.get(), top) {
    const Operation outer = operation_of(top, document.default_operation);
    if (is_whole(outer)) {
      for (const lyd_node* const entry : running.entries()) touching.touch(std::string(entry_name(entry)));
    }
    const lyd_node* interface = nullptr;
    LY_LIST_FOR(lyd_child(top), interface) {
      const std::string name = key_value(interface);
      const Operation own = operation_of(interface, outer);
      const lyd_node* const list = child_named(interface, "subinterfaces");
      const bool replaced = outer == Operation::replace || own == Operation::replace;
      touching.pass(name);
      if (replaced || replaces_below(interface)) touching.replaces(name);
      if (is_whole(own) || names_itself(interface)) touching.touch(name);
      if (is_whole(own) || (list != nullptr && is_whole(operation_of(list, own)))) {
        touching.touch_subinterfaces_of(name);
      }
      const lyd_node* sub = nullptr;
      LY_LIST_FOR(list == nullptr ? nullptr : lyd_child(list), sub) {
        const std::string sub_name = join_interface_name(name, key_value(sub));
        touching.touch(sub_name);
        if (replaced || operation_of(list, own) == Operation::replace || replaces_below(sub)) {
          touching.replaces(sub_name);
        }
      }
    }
  }
  return touching.take();
}

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

Data translate(const Environment& environment, const EditDocument& document, std::vector<Warning>& warnings) {
  WalkState walk_state(environment, kEdit);
  RequestTree tree;
  const lyd_node* top = nullptr;
  LY_LIST_FOR(document.tree.get(), top) {
    const yfw_datatree* const root = tree.edit(top, document.default_operation, document.value_namespaces);
    const cerrno result = environment.plugins->openconfig_root()(walk_state.ctx(), root, walk_state.output().root());
    if (result != 0 || walk_state.failed()) throw Refused(walk_state.refusal(result));
  }
  if (walk_state.misused_memory()) throw std::logic_error("a plug-in released memory that it does not own");
  refuse_unbound_identities(document);
  Data native = to_edit(walk_state.output());
  warn_of_layer(environment, walk_state, native, warnings);
  std::move(walk_state.warnings().begin(), walk_state.warnings().end(), std::back_inserter(warnings));
  return native;
}

namespace {

// The plug-in's own refusal of a leaf, asked for alone: what else is wrong with the request is not what it is about.
void let_plugin_refuse(const Environment& environment, const EditDocument& document, const lyd_node* leaf) {
  lyd_node* copy = nullptr;
  lyd_dup_single(leaf, nullptr, LYD_DUP_RECURSIVE | LYD_DUP_WITH_PARENTS, &copy);
  while (copy->parent != nullptr) copy = &copy->parent->node;
  EditDocument alone;
  alone.tree = Data(copy);
  alone.default_operation = document.default_operation;
  std::vector<Warning> ignored;
  translate(environment, alone, ignored);
}

// What a replace writes again in other words stays as the device has it.
void keep_stored(const Data& candidate, const Running& running) {
  lyd_node* entry = nullptr;
  LY_LIST_FOR(candidate.empty() ? nullptr : lyd_child(candidate.get()), entry) {
    const lyd_node* const stored = running.entry(entry_name(entry));
    if (stored != nullptr) keep_stored_texts(entry, stored);
  }
}

void validate_native(const Environment& environment, Data& candidate) {
  if (candidate.empty()) return;
  if (environment.validator->validate(candidate)) return;
  const Complaint complaint = last_complaint(environment.models);
  throw Refused({.tag = "operation-failed",
                 .path = complaint.path,
                 .message = fmt::format("the native configuration that results is not valid: {}", complaint.message)});
}

void note(const Environment& environment, std::string text) {
  if (environment.trace != nullptr) (*environment.trace)({TraceLine::Kind::note, 3, std::move(text)});
}

// Throws Refused when what the running configuration becomes is not valid.
void validate_whole(const Environment& environment, const std::vector<std::string>& touched, const Data& candidate) {
  Running then(environment.running->data().clone());
  then.replace(touched, candidate.clone());
  Data whole = then.take();
  validate_native(environment, whole);
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

}  // namespace

PreparedEdit prepare_edit(const Environment& environment, MappedLeaves& leaves, EditDocument document,
                          const EditSettings& settings) {
  PreparedEdit prepared;
  std::vector<Warning>& warnings = prepared.result.warnings;
  const lyd_node* const unmapped = check_claims(environment, leaves, document, settings.ignore_unmapped);
  if (unmapped != nullptr) let_plugin_refuse(environment, document, unmapped);
  warnings = std::move(document.warnings);
  check_one_form(document);

  if (environment.running == nullptr) {
    const lyd_node* top = nullptr;
    LY_LIST_FOR(document.tree.get(), top) {
      refuse_lone_entries(top, document.default_operation);
    }
    check_values(document.tree, document.default_operation, document.tree, warnings);
    drop_idle(document.tree, document.default_operation);
    spread_lists(document, nullptr, warnings);
    prepared.result.native = translate(environment, document, warnings);
    refuse_lost_trunk_entries(environment, document, prepared.result.native);
    return prepared;
  }

  std::vector<Warning> unread;
  Environment reading = environment;
  reading.trace = nullptr;
  const Touched touched = touched_entries(document, *environment.running);
  prepared.touched = touched.names;
  const Data before = read_back(reading, *environment.running, prepared.touched, unread);
  const std::vector<EntryVerdict> unsaid =
      judge_reading(reading, environment.running->entries_of(prepared.touched), before);
  if (drop_absent_removes(document.tree, before, document.default_operation)) {
    for (const Warning& each : unread) warnings.push_back({each.path, "stays, it does not read back: " + each.message});
  }
  const Expected expected = expect_told(environment, document, before, unsaid, warnings);
  check_values(document.tree, document.default_operation, expected.data, warnings);
  const Data asked = document.tree.clone();  // as it is before it is rewritten
  drop_idle(document.tree, document.default_operation);
  const std::vector<std::string> unread_units =
      rewrite_whole_containers(environment, document, before, expected.data, warnings);
  spread_lists(document, environment.running, warnings);
  prepared.result.native = translate(environment, document, warnings);
  if (expected.deferred.has_value()) throw Refused(*expected.deferred);

  prepared.candidate = environment.running->copy(prepared.touched);
  apply_edit(prepared.candidate, prepared.result.native.get(), Operation::merge);
  complete_replaces(document, prepared.result.native, prepared.candidate);
  keep_stored(prepared.candidate, *environment.running);
  const ForeignSubtrees& foreign = environment.running->foreign();
  for (const std::string& path : foreign.spare(prepared.result.native, environment.running->data(), prepared.touched)) {
    note(environment, path + " goes piece by piece: what is foreign in it stays");
  }
  if (settings.validate_everything) {
    validate_whole(environment, prepared.touched, prepared.candidate);
  } else {
    validate_native(environment, prepared.candidate);
  }
  Running then(std::move(prepared.candidate));
  std::vector<Warning> unread_after;
  const Data after = read_back(reading, then, prepared.touched, unread_after);
  report_unsaid(unsaid, then, touched, prepared.result);
  std::vector<Difference> found = differences(asked, document.default_operation,
                                              {.running = *environment.running,
                                               .before = before,
                                               .expected = expected.data,
                                               .after = after,
                                               .merged_into_unread = unread_units});
  refuse_lost_trunks(lost_trunk_entries(found), expected.data);
  if (settings.verify == Verify::strict) refuse_unsaid_loss(prepared.result.unsaid, then, touched);
  if (settings.verify == Verify::strict && !found.empty()) throw Refused(refusal_of(found));
  prepared.candidate = then.take();
  prepared.result.gone = foreign.going(prepared.touched, prepared.candidate, warnings);
  if (settings.verify != Verify::off) prepared.result.differences = std::move(found);
  return prepared;
}

}  // namespace yfw
