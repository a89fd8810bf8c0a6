// The walk of an edit, and what of its output needs a word.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <stdexcept>

#include "framework/edit/edit.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/vlan/rules.h"
#include "framework/walk/output_tree.h"
#include "framework/walk/request_tree.h"
#include "framework/walk/walk_state.h"
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
void warn_of_container(const lyd_node* entry, const OfOneLayer& what, std::vector<Warning>& warnings) {
  const lyd_node* const parent = child_named(entry, what.parent);
  const lyd_node* const container = parent == nullptr ? nullptr : child_named(parent, what.name);
  if (container == nullptr || lyd_child(container) == nullptr) return;
  if (removes(operation_of(container, Operation::merge))) return;
  warnings.push_back({path_of(container), what.otherwise});
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
    for (const OfOneLayer& each : of_one_layer()) {
      if (each.l2 != l2) warn_of_container(entry, each, warnings);
    }
  }
}

}  // namespace

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

}  // namespace yfw
