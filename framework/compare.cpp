// Configurations compared, and what differs natively and reads alike. A leaf that both readings say differs in them as
// well, because a reading and the layer determine what is said, and so does the order of what they list, which no
// comparison of readings tells. All others are told here.
#include "yfw-host/compare.h"

#include <libyang/libyang.h>

#include <stdexcept>
#include <string>
#include <unordered_set>
#include <utility>

#include "framework/datastore/compare.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/rules.h"
#include "framework/vlan/trunk_text.h"
#include "yfw-host/data.h"
#include "yfw-host/host.h"

namespace yfw {

namespace {

using Paths = std::unordered_set<std::string>;

void collect_unsaid(const ReadResult& reading, Paths& paths) {
  for (const Unsaid& each : reading.unsaid) paths.insert(each.path);
  for (const Misreading& each : reading.misread) paths.insert(each.makes.begin(), each.makes.end());
}

// The interface or sub-interface of a native name in a reading; null when there is none.
const lyd_node* reading_of(const Data& reading, std::string_view native_name) {
  const InterfaceName name = split_interface_name(native_name);
  if (!is_interface_name(native_name)) return nullptr;
  std::string path = "/openconfig-interfaces:interfaces/interface" + predicate("name", name.name);
  if (name.is_subinterface()) path += "/subinterfaces/subinterface" + predicate("index", name.index);
  return node_at(reading, path);
}

// The entries of the leaf-lists in a node that are in another one as well.
std::vector<std::pair<const lysc_node*, std::string_view>> listed_in_both(const lyd_node* node, const lyd_node* other) {
  std::vector<std::pair<const lysc_node*, std::string_view>> entries;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    lyd_node* found = nullptr;
    if (child->schema->nodetype != LYS_LEAFLIST) continue;
    if (lyd_find_sibling_first(lyd_child(other), child, &found) != LY_SUCCESS) continue;
    entries.emplace_back(child->schema, lyd_get_value(child));
  }
  return entries;
}

// Whether two readings of one entry list the same in another order. Sub-interfaces are entries of their own.
bool is_reordered(const lyd_node* before, const lyd_node* after) {
  if (before == nullptr || after == nullptr) return false;
  if (listed_in_both(before, after) != listed_in_both(after, before)) return true;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(before), child) {
    if (child->schema->nodetype != LYS_CONTAINER) continue;
    if (is_reordered(child, child_named(after, child->schema->name))) return true;
  }
  return false;
}

class Judgement {
 public:
  Judgement(const NativeSide& before, const NativeSide& after) : before_(before), after_(after) {
    collect_unsaid(before.reading, unsaid_);
    collect_unsaid(after.reading, unsaid_);
  }

  // Whether a difference has to be told beside those of the readings.
  bool is_untold(const Delta& delta) const {
    const lyd_node* const node = node_at(delta.was_present ? before_.native : after_.native, delta.path);
    if (node == nullptr || !is_covered(node->schema) || !is_term(node->schema)) return true;
    const lyd_node* const entry = lyd_parent(node);
    const bool names_entry = lysc_is_key(node->schema) && lyd_parent(lyd_parent(entry)) == nullptr;
    if (!names_entry) return unsaid_.contains(delta.path) || is_order(delta, node);
    // An entry that is there or not without a difference in what reads as an interface.
    const std::string_view name = lyd_get_value(node);
    return (reading_of(before_.reading.data, name) == nullptr) == (reading_of(after_.reading.data, name) == nullptr);
  }

 private:
  // A value that differs in an entry of which the readings list something in another order.
  bool is_order(const Delta& delta, const lyd_node* node) const {
    if (!delta.was_present || !delta.is_present) return false;
    const lyd_node* entry = node;
    while (lyd_parent(lyd_parent(entry)) != nullptr) entry = lyd_parent(entry);
    const std::string_view name = entry_name(entry);
    return is_reordered(reading_of(before_.reading.data, name), reading_of(after_.reading.data, name));
  }

  const NativeSide& before_;
  const NativeSide& after_;
  Paths unsaid_;
};

// What a comparison as a tree is about: leaves and presence containers, and the nodes in which they stand. These are
// kept on both sides, so that an entry that only loses something does not look like one that goes.
struct Named {
  Paths leaves;
  Paths around;
};

Named named_in(const NativeSide& before, const NativeSide& after, const std::vector<Delta>& deltas) {
  Named all;
  for (const Delta& delta : deltas) {
    all.leaves.insert(delta.path);
    const lyd_node* node = node_at(delta.was_present ? before.native : after.native, delta.path);
    while (node != nullptr && (node = lyd_parent(node)) != nullptr) all.around.insert(path_of(node));
  }
  return all;
}

void cut_below(lyd_node* parent, const Named& kept) {
  lyd_node* child = lyd_child_no_keys(parent);
  while (child != nullptr) {
    lyd_node* const next = child->next;
    const std::string path = path_of(child);
    if (!kept.leaves.contains(path) && !kept.around.contains(path)) {
      lyd_free_tree(child);
    } else if (!is_term(child->schema)) {
      cut_below(child, kept);
    }
    child = next;
  }
  mark_wanted(parent);
}

Data cut_down(const Data& native, const Named& kept) {
  Data cut = native.clone();
  lyd_node* node = nullptr;
  LY_LIST_FOR(cut.get(), node) {
    cut_below(node, kept);
  }
  return cut;
}

}  // namespace

std::vector<Delta> compare(const Data& before, const Data& after) {
  return compare(before, after, canonical_text);
}

std::vector<Delta> native_differences(const NativeSide& before, const NativeSide& after) {
  const Judgement judgement(before, after);
  std::vector<Delta> deltas = compare(before.native, after.native);
  std::erase_if(deltas, [&judgement](const Delta& delta) { return !judgement.is_untold(delta); });
  return deltas;
}

Data native_difference_tree(const NativeSide& before, const NativeSide& after, const std::vector<Delta>& deltas) {
  if (deltas.empty()) return {};
  const Named kept = named_in(before, after, deltas);
  const Data ours = cut_down(before.native, kept);
  const Data theirs = cut_down(after.native, kept);
  Data tree;
  if (lyd_diff_siblings(ours.get(), theirs.get(), 0, tree.out()) != LY_SUCCESS) {
    throw std::runtime_error("the native configurations could not be compared");
  }
  return tree;
}

}  // namespace yfw
