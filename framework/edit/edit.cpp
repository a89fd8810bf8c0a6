// An edit as a whole: checked, split by interface, and put together again when the last one is through.
#include "framework/edit/edit.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <new>
#include <unordered_map>
#include <utility>

#include "framework/edit/phases.h"
#include "framework/edit/unsaid.h"
#include "framework/edit/verify.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"

namespace yfw {

namespace {

// The plug-in's own refusal of a leaf, asked for alone: what else is wrong with the request is not what it is about.
void let_plugin_refuse(const Environment& environment, const EditDocument& document, const lyd_node* leaf) {
  lyd_node* copy = nullptr;
  if (lyd_dup_single(leaf, nullptr, LYD_DUP_RECURSIVE | LYD_DUP_WITH_PARENTS, &copy) != LY_SUCCESS) {
    throw std::bad_alloc();
  }
  while (copy->parent != nullptr) copy = &copy->parent->node;
  EditDocument alone;
  alone.tree = Data(copy);
  alone.default_operation = document.default_operation;
  std::vector<Warning> ignored;
  translate(environment, alone, ignored);
}

// True for an edit whose interfaces have nothing to do with each other: no operation on all of them.
bool is_splittable(const EditDocument& document) {
  const lyd_node* const top = document.tree.get();
  if (top == nullptr || top->next != nullptr || top->schema == nullptr) return false;
  const Operation own = operation_of(top, document.default_operation);
  if (own != Operation::merge && own != Operation::none) return false;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(top), child) {
    if (child->schema == nullptr || !is_list(child->schema)) return false;
  }
  return lyd_child(top) != nullptr;
}

// A document for each interface of the edit, or the whole one.
std::vector<EditDocument> split(EditDocument document) {
  std::vector<EditDocument> parts;
  if (!is_splittable(document)) {
    parts.push_back(std::move(document));
    return parts;
  }
  std::unordered_map<const lyd_node*, std::size_t> part_of;
  lyd_node* const top = document.tree.get();
  for (lyd_node* interface = lyd_child(top); interface != nullptr;) {
    lyd_node* const next = interface->next;
    lyd_node* around = nullptr;
    if (lyd_dup_single(top, nullptr, 0, &around) != LY_SUCCESS) throw std::bad_alloc();
    EditDocument& part = parts.emplace_back();
    part.tree.reset(around);
    part.default_operation = document.default_operation;
    lyd_unlink_tree(interface);
    lyd_insert_child(around, interface);
    part_of.emplace(interface, parts.size() - 1);
    interface = next;
  }
  for (const auto& [node, ns] : document.value_namespaces) {
    const lyd_node* interface = node;
    while (lyd_parent(lyd_parent(interface)) != nullptr) interface = lyd_parent(interface);
    parts[part_of.at(interface)].value_namespaces.emplace(node, ns);
  }
  return parts;
}

// The refusal that the request as a whole would have met first.
void refuse_first(const std::vector<PartOutcome>& outcomes) {
  const PartOutcome* first = nullptr;
  for (const PartOutcome& each : outcomes) {
    if (each.refusal.has_value() && (first == nullptr || each.refused_in < first->refused_in)) first = &each;
  }
  if (first != nullptr) throw Refused(*first->refusal);
}

// Moves what a native edit holds into another one, below the containers that both have.
void add_native(Data& whole, Data part) {
  for (lyd_node* top = part.get(); top != nullptr;) {
    lyd_node* const next = top->next;
    lyd_node* const known = counterpart(whole, top);
    if (known == nullptr) {
      lyd_unlink_tree(top);
      if (top == part.get()) *part.out() = next;
      lyd_insert_sibling(whole.get(), top, whole.out());
    } else {
      for (lyd_node* child = lyd_child(top); child != nullptr;) {
        lyd_node* const after = child->next;
        lyd_unlink_tree(child);
        lyd_insert_child(known, child);
        child = after;
      }
    }
    top = next;
  }
}

template <typename Record>
void append(std::vector<Record>& to, std::vector<Record>& from) {
  std::move(from.begin(), from.end(), std::back_inserter(to));
}

// What is kept of the parts, in the order in which the request as a whole would have had it.
PreparedEdit put_together(std::vector<PartOutcome>& outcomes) {
  PreparedEdit prepared;
  EditResult& result = prepared.result;
  for (std::size_t phase = 0; phase < kPhases; ++phase) {
    for (PartOutcome& each : outcomes) append(result.warnings, each.warnings[phase]);
  }
  // A device takes away before it adds.
  for (const bool removes : {true, false}) {
    for (PartOutcome& each : outcomes) {
      if (each.removes == removes) add_native(result.native, std::move(each.native));
    }
  }
  for (PartOutcome& each : outcomes) {
    prepared.candidate.replace(each.touched.names, each.candidate);
    append(prepared.touched.names, each.touched.names);
    prepared.touched.bystanders.merge(each.touched.bystanders);
    prepared.touched.replaced.merge(each.touched.replaced);
    append(result.unsaid, each.unsaid);
    append(result.differences, each.differences);
  }
  for (PartOutcome& each : outcomes) {
    append(result.gone, each.gone);
    append(result.warnings, each.foreign_warnings);
  }
  // What should have been there comes before what should not.
  std::stable_partition(result.differences.begin(), result.differences.end(),
                        [](const Difference& difference) { return !difference.asked.empty(); });
  return prepared;
}

// Throws Refused when what the running configuration becomes is not valid.
void validate_whole(const Environment& environment, const PreparedEdit& prepared) {
  Running then(environment.running->whole());
  then.replace(prepared.touched.names, prepared.candidate);
  Data whole = then.whole();
  validate_native(environment, whole);
}

}  // namespace

PreparedEdit prepare_edit(const Environment& environment, MappedLeaves& leaves, EditDocument document,
                          const EditSettings& settings) {
  const lyd_node* const unmapped = check_claims(environment, leaves, document, settings.ignore_unmapped);
  if (unmapped != nullptr) let_plugin_refuse(environment, document, unmapped);
  std::vector<Warning> warnings = std::move(document.warnings);
  check_one_form(document);

  std::vector<EditDocument> parts = split(std::move(document));
  std::vector<PartOutcome> outcomes;
  outcomes.reserve(parts.size());
  for (EditDocument& part : parts) {
    outcomes.push_back(run_part(environment, std::move(part), settings));
  }
  refuse_first(outcomes);
  PreparedEdit prepared = put_together(outcomes);
  if (settings.validate_everything && environment.running != nullptr) validate_whole(environment, prepared);
  for (const PartOutcome& each : outcomes) {
    if (each.lost.has_value()) throw Refused(*each.lost);
  }
  EditResult& result = prepared.result;
  if (settings.verify == Verify::strict) {
    refuse_unsaid_loss(result.unsaid, prepared.candidate, prepared.touched);
    if (!result.differences.empty()) throw Refused(refusal_of(result.differences));
  }
  if (settings.verify == Verify::off) result.differences.clear();
  result.warnings.insert(result.warnings.begin(), std::make_move_iterator(warnings.begin()),
                         std::make_move_iterator(warnings.end()));
  return prepared;
}

}  // namespace yfw
