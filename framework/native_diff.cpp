// What differs natively and reads alike. A leaf that both readings say differs in them as well, because a reading and
// the layer determine what is said; all others are told here.
#include "framework/native_diff.h"

#include <libyang/libyang.h>

#include <stdexcept>
#include <string>
#include <unordered_set>

#include "framework/documents.h"
#include "framework/filter.h"
#include "framework/running.h"
#include "framework/unsaid.h"

namespace yfw {

namespace {

using Paths = std::unordered_set<std::string>;

const lyd_node* find(const Data& data, const std::string& path) {
  lyd_node* found = nullptr;
  if (data.empty() || lyd_find_path(data.get(), path.c_str(), 0, &found) != LY_SUCCESS) return nullptr;
  return found;
}

void collect_unsaid(const ReadResult& reading, Paths& paths) {
  for (const Unsaid& each : reading.unsaid) paths.insert(each.path);
  for (const Misreading& each : reading.misread) paths.insert(each.makes.begin(), each.makes.end());
}

// Whether a reading has the interface or sub-interface of a native name.
bool reads(const Data& reading, std::string_view native_name) {
  const InterfaceName name = split_interface_name(native_name);
  if (!is_interface_name(native_name)) return false;
  std::string path = "/openconfig-interfaces:interfaces/interface" + predicate("name", name.name);
  if (name.is_subinterface()) path += "/subinterfaces/subinterface" + predicate("index", name.index);
  return find(reading, path) != nullptr;
}

class Judgement {
 public:
  Judgement(const NativeSide& before, const NativeSide& after) : before_(before), after_(after) {
    collect_unsaid(before.reading, unsaid_);
    collect_unsaid(after.reading, unsaid_);
  }

  // Whether a difference has to be told beside those of the readings.
  bool is_untold(const Delta& delta) const {
    const lyd_node* const node = find(delta.was_present ? before_.native : after_.native, delta.path);
    if (node == nullptr || !is_covered(node->schema) || !is_term(node->schema)) return true;
    const lyd_node* const entry = lyd_parent(node);
    const bool names_entry = lysc_is_key(node->schema) && lyd_parent(lyd_parent(entry)) == nullptr;
    if (!names_entry) return unsaid_.contains(delta.path);
    // An entry that is there or not without a difference in what reads as an interface.
    return reads(before_.reading.data, lyd_get_value(node)) == reads(after_.reading.data, lyd_get_value(node));
  }

 private:
  const NativeSide& before_;
  const NativeSide& after_;
  Paths unsaid_;
};

// Takes out the leaves and presence containers that are not named, and what is empty then.
bool keep_named(lyd_node* node, const Paths& named_paths) {
  if (is_term(node->schema) && lysc_is_key(node->schema)) return false;
  bool keeps = named_paths.contains(path_of(node));
  if (is_list(node->schema) && lyd_child(node) != nullptr) keeps = named_paths.contains(path_of(lyd_child(node)));
  lyd_node* child = lyd_child(node);
  while (child != nullptr) {
    lyd_node* const next = child->next;
    if (!is_term(child->schema) || !lysc_is_key(child->schema)) {
      if (keep_named(child, named_paths)) {
        keeps = true;
      } else {
        lyd_free_tree(child);
      }
    }
    child = next;
  }
  return keeps;
}

Data cut_down(const Data& native, const Paths& named_paths) {
  Data cut = native.clone();
  lyd_node* node = cut.get();
  while (node != nullptr) {
    lyd_node* const next = node->next;
    if (!keep_named(node, named_paths)) {
      if (node == cut.get()) *cut.out() = next;
      lyd_free_tree(node);
    }
    node = next;
  }
  return cut;
}

}  // namespace

std::vector<Delta> native_differences(const NativeSide& before, const NativeSide& after) {
  const Judgement judgement(before, after);
  std::vector<Delta> deltas = compare(before.native, after.native);
  std::erase_if(deltas, [&judgement](const Delta& delta) { return !judgement.is_untold(delta); });
  return deltas;
}

Data native_difference_tree(const NativeSide& before, const NativeSide& after, const std::vector<Delta>& deltas) {
  if (deltas.empty()) return {};
  Paths named_paths;
  for (const Delta& delta : deltas) named_paths.insert(delta.path);
  const Data ours = cut_down(before.native, named_paths);
  const Data theirs = cut_down(after.native, named_paths);
  Data tree;
  if (lyd_diff_siblings(ours.get(), theirs.get(), 0, tree.out()) != LY_SUCCESS) {
    throw std::runtime_error("the native configurations could not be compared");
  }
  return tree;
}

}  // namespace yfw
