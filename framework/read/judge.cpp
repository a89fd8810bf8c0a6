// What writing a reading back makes, held against what is there.
#include "framework/read/judge.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "framework/datastore/running.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/rules.h"
#include "framework/vlan/trunk_text.h"
#include "framework/vlan/values.h"
#include "framework/walk/output_tree.h"
#include "framework/walk/plugin.h"
#include "yfw-host/words.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

// A native leaf that writing back makes. `within` tells entries of inner lists apart by their keys.
struct WrittenLeaf {
  const lysc_node* schema = nullptr;
  std::string within;
  std::string value;
  bool matched = false;
};

using Written = std::vector<WrittenLeaf>;

bool is_config(const lyd_node* node) {
  return (node->schema->flags & LYS_CONFIG_R) == 0;
}

const lyd_node* find_container(const lyd_node* node, const lysc_node* container) {
  if (node->schema == container) return node;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (const lyd_node* const found = find_container(child, container)) return found;
  }
  return nullptr;
}

const lyd_node* child_of(const lyd_node* parent, const lysc_node* schema) {
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(parent), child) {
    if (child->schema == schema) return child;
  }
  return nullptr;
}

// False when the native model has no such value.
bool has_value(const WrittenLeaf& leaf) {
  const LY_ERR result = lyd_value_validate(leaf.schema->module->ctx, leaf.schema, leaf.value.c_str(), leaf.value.size(),
                                           nullptr, nullptr, nullptr);
  return result == LY_SUCCESS || result == LY_EINCOMPLETE;
}

void collect_written(const OutputNode& node, const std::string& within, Written& written) {
  if (node.mark == Mark::remove) return;
  if (is_term(node.schema)) {
    if (!lysc_is_key(node.schema)) {
      written.push_back({node.schema, within, node.data.value == nullptr ? "" : node.data.value});
    }
    return;
  }
  std::string inside = within;
  if (is_list(node.schema)) {
    inside += predicate(node.schema->name, node.key);
    if (const lysc_node* const key = key_of(node.schema)) written.push_back({key, inside, node.key});
  }
  for (const OutputNode* const each : node.children) collect_written(*each, inside, written);
}

// The entries of the native list in an output that are those of this name, in turn.
template <typename Work>
void for_each_written(const OutputTree& output, const lyd_node* native, const Work& work) {
  for (const OutputNode* const top : output.top().children) {
    for (const OutputNode* const each : top->children) {
      if (each->key == entry_name(native) && each->mark != Mark::remove) work(*each);
    }
  }
}

// The entry's reading on its way back, as a merge.
class WritingBack {
 public:
  // What would have come of containers that hold a value that no request may have goes to `imagined`.
  WritingBack(WalkState& walk_state, RequestTree& records, const lyd_node* native, const lyd_node* reading,
              Written& imagined)
      : walk_state_(walk_state), records_(records), native_(native), reading_(reading), imagined_(imagined) {}

  // Writes all of it; false when that is refused. The walk's output is what comes of it, as far as the native model
  // has such values.
  bool write_whole() const {
    const RequestTree::Wanted whole = [this](const lyd_node* node) { return belongs(node); };
    return is_writable_here(reading_) && walk(whole);
  }

  // What came of it, when that can be held.
  std::optional<Written> whole() const {
    Written written;
    if (!take(reading_, written)) return std::nullopt;
    return written;
  }

  // What comes of the parts that stand for themselves.
  Written parts() const {
    Written written;
    write_parts(reading_, written);
    return written;
  }

  // A text with no room for all entries is refused when it is asked for.
  static bool keeps_trunk_entries(const lyd_node* part, const char* text) {
    const std::size_t asked = count_trunk_entries(part);
    return asked == 0 || static_cast<std::size_t>(std::count(text, text + std::strlen(text), ',')) + 1 == asked;
  }

 private:
  // Sub-interfaces are entries of their own.
  bool belongs(const lyd_node* node) const {
    return is_config(node) && !(lyd_parent(node) == reading_ && named(node, "subinterfaces"));
  }

  bool is_writable_here(const lyd_node* part) const {
    if (part != reading_) return is_writable(part);
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(part), child) {
      if (belongs(child) && !is_writable(child)) return false;
    }
    return true;
  }

  void write_parts(const lyd_node* above, Written& written) const {
    const lyd_node* part = nullptr;
    LY_LIST_FOR(lyd_child(above), part) {
      if (!belongs(part) || lysc_is_key(part->schema)) continue;
      const RequestTree::Wanted alone = [part](const lyd_node* node) {
        return lysc_is_key(node->schema) || is_ancestor_or_self(node, part) || is_ancestor_or_self(part, node);
      };
      if (is_writable_here(part) && walk(alone) && take(part, written)) continue;
      if (is_whole_container(part)) {
        imagine(alone);
      } else if (!is_term(part->schema)) {
        write_parts(part, written);
      }
    }
  }

  // What would have come of a part that is refused for a value that no request may have: a trunk that is too long, a
  // range upside down.
  void imagine(const RequestTree::Wanted& wanted) const {
    if (!walk(wanted)) return;
    Written made;
    collect(made);
    if (all_held(made.begin(), made.end())) imagined_.insert(imagined_.end(), made.begin(), made.end());
  }

  // False when the plug-in refuses it.
  bool walk(const RequestTree::Wanted& wanted) const {
    walk_state_.restart();
    records_.clear();
    const yfw_datatree* const root = records_.in_place(reading_, records_.data(reading_, wanted));
    const cerrno result =
        walk_state_.environment().plugins->openconfig_root()(walk_state_.ctx(), root, walk_state_.output().root());
    return result == 0 && !walk_state_.failed();
  }

  // Appends what the part became; false, and nothing, when that cannot be held.
  bool take(const lyd_node* part, Written& written) const {
    const std::size_t before = written.size();
    collect(written);
    const bool held = all_held(written.begin() + static_cast<std::ptrdiff_t>(before), written.end());
    const auto text = std::find_if(written.rbegin(), written.rend(),
                                   [](const WrittenLeaf& leaf) { return is_trunk_leaf(leaf.schema); });
    if (held && (text == written.rend() || keeps_trunk_entries(part, text->value.c_str()))) return true;
    written.resize(before);
    return false;
  }

  void collect(Written& written) const {
    for_each_written(walk_state_.output(), native_, [&written](const OutputNode& entry) {
      for (const OutputNode* const node : entry.children) collect_written(*node, {}, written);
    });
  }

  bool all_held(Written::const_iterator first, Written::const_iterator last) const {
    return std::all_of(first, last, [this](const WrittenLeaf& leaf) { return is_held(leaf); });
  }

  // Whether the native model has such a value; what is there natively anyway needs no asking.
  bool is_held(const WrittenLeaf& leaf) const {
    const lyd_node* const container = find_container(native_, leaf.schema->parent);
    const lyd_node* const there = container == nullptr ? nullptr : child_of(container, leaf.schema);
    return (there != nullptr && leaf.value == canonical_text(there)) || has_value(leaf);
  }

  WalkState& walk_state_;
  RequestTree& records_;
  const lyd_node* native_;
  const lyd_node* reading_;
  Written& imagined_;
};

// Most entries are said whole, and an output that says so is the entry over again, node by node. This finds that out
// and nothing else: what it does not find so is for the comparison to name.
class Repetition {
 public:
  // True when the output holds the entry's leaves, all of which the mapping covers, and no others.
  static bool is_whole(const OutputTree& output, const lyd_node* entry, const lyd_node* reading) {
    Repetition repetition(reading);
    std::size_t written = 0;
    bool is_same = true;
    std::size_t entries = 0;
    for_each_written(output, entry, [&](const OutputNode& made) {
      ++entries;
      is_same = is_same && repetition.compare(lyd_child_no_keys(entry), &made);
      for (const OutputNode* const child : made.children) written += count(*child);
    });
    if (entries == 0) is_same = repetition.compare(lyd_child_no_keys(entry), nullptr);
    return is_same && entries < 2 && repetition.matched_ == written;
  }

 private:
  explicit Repetition(const lyd_node* reading) : reading_(reading) {}

  static std::size_t count(const OutputNode& node) {
    if (node.mark == Mark::remove) return 0;
    if (is_term(node.schema)) return lysc_is_key(node.schema) ? 0 : 1;
    std::size_t leaves = is_list(node.schema) && key_of(node.schema) != nullptr ? 1 : 0;
    for (const OutputNode* const child : node.children) leaves += count(*child);
    return leaves;
  }

  // The one node that an output has for a node of the entry; null when it has none, or several.
  static const OutputNode* made_of(const lyd_node* node, const OutputNode* parent) {
    const OutputNode* found = nullptr;
    if (parent == nullptr) return nullptr;
    const std::string_view key = is_list(node->schema) ? std::string_view(lyd_get_value(lyd_child(node))) : "";
    for (const OutputNode* const each : parent->children) {
      if (each->schema != node->schema || each->mark == Mark::remove) continue;
      if (is_list(each->schema) && each->key != key) continue;
      if (found != nullptr) return nullptr;
      found = each;
    }
    return found;
  }

  // The siblings of the entry against what was made in the same place; null: nothing was.
  bool compare(const lyd_node* siblings, const OutputNode* made) {
    const lyd_node* node = nullptr;
    LY_LIST_FOR(siblings, node) {
      if (!is_covered(node->schema)) return false;
      const OutputNode* const twin = made_of(node, made);
      if (is_term(node->schema)) {
        const bool is_entry_key = lysc_is_key(node->schema);
        if (is_entry_key ? made == nullptr : twin == nullptr) return false;
        const char* const value = is_entry_key ? made->key.c_str() : twin->data.value;
        if (!says(node, value == nullptr ? "" : value)) return false;
        ++matched_;
      } else if (!compare(lyd_child(node), twin)) {
        return false;
      }
    }
    return true;
  }

  bool says(const lyd_node* leaf, const char* value) const {
    if (is_trunk_leaf(leaf->schema)) {
      return canonical_text(leaf) == value && WritingBack::keeps_trunk_entries(reading_, value);
    }
    return std::strcmp(lyd_get_value(leaf), value) == 0;
  }

  const lyd_node* reading_;
  std::size_t matched_ = 0;
};

// A native entry held against what writing back made.
class Comparison {
 public:
  Comparison(const Scope& scope, EntryVerdict& verdict, Written& written, const Written& imagined)
      : scope_(scope), verdict_(verdict), written_(written), imagined_(imagined) {}

  void run(const lyd_node* reading) {
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child_no_keys(verdict_.entry), child) {
      compare(child, {});
    }
    for (const WrittenLeaf& leaf : written_) {
      if (!leaf.matched) misread(leaf.schema, reading);
    }
  }

 private:
  void compare(const lyd_node* node, const std::string& within) {
    if (is_term(node->schema)) return compare_leaf(node, within);
    std::string inside = within;
    if (is_list(node->schema)) {
      const lyd_node* const key = lyd_child(node);
      inside += predicate(node->schema->name, key == nullptr ? "" : lyd_get_value(key));
    }
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(node), child) {
      compare(child, inside);
    }
  }

  void compare_leaf(const lyd_node* leaf, const std::string& within) {
    if (!is_covered(leaf->schema)) {
      verdict_.beside.push_back(leaf);
      return;
    }
    const auto is_leaf = [&](const WrittenLeaf& each) { return each.schema == leaf->schema && each.within == within; };
    const auto made = std::find_if(written_.begin(), written_.end(), is_leaf);
    if (made != written_.end() && made->value == canonical_text(leaf)) {
      made->matched = true;
      return;
    }
    const auto same = std::find_if(imagined_.begin(), imagined_.end(), is_leaf);
    if (same != imagined_.end() && same->value == canonical_text(leaf)) verdict_.readable.push_back(leaf);
    const lyd_node* const container = lyd_parent(leaf);
    const bool own = container == verdict_.entry || is_layer(container);
    if (scope_ == nullptr || scope_(verdict_.entry, own ? leaf : container)) verdict_.unsaid.push_back(leaf);
  }

  void misread(const lysc_node* leaf, const lyd_node* reading) {
    const lysc_node* const container = leaf->parent;
    const lyd_node* const there = find_container(verdict_.entry, container);
    if (there != nullptr && scope_ != nullptr && !scope_(verdict_.entry, there)) return;
    std::vector<EntryVerdict::Misread>& all = verdict_.misread;
    auto known =
        std::find_if(all.begin(), all.end(), [container](const auto& each) { return each.container == container; });
    if (known == all.end()) {
      all.push_back(
          {container, reading_words(reading, container->name), there == nullptr ? "nothing" : native_words(there), {}});
      known = all.end() - 1;
    }
    known->makes.push_back(leaf);
  }

  const Scope& scope_;
  EntryVerdict& verdict_;
  Written& written_;
  const Written& imagined_;
};

Environment bare(Environment environment) {
  environment.layers_only = true;
  environment.trace = nullptr;
  return environment;
}

}  // namespace

Judge::Judge(const Environment& environment) : walk_state_(bare(environment), kEdit) {}

std::optional<EntryVerdict> Judge::judge(const lyd_node* entry, const lyd_node* reading, const Scope& scope) {
  Written written;
  Written imagined;
  if (reading != nullptr) {
    const WritingBack back(walk_state_, records_, entry, reading, imagined);
    const bool is_written = back.write_whole();
    if (is_written && Repetition::is_whole(walk_state_.output(), entry, reading)) return std::nullopt;
    std::optional<Written> whole = is_written ? back.whole() : std::nullopt;
    written = whole.has_value() ? std::move(*whole) : back.parts();
  }
  EntryVerdict verdict;
  verdict.entry = entry;
  Comparison(scope, verdict, written, imagined).run(reading);
  if (verdict.all_said() && verdict.beside.empty()) return std::nullopt;
  return verdict;
}

Readings::Readings(const lyd_node* interface) : interface_(interface) {
  const lyd_node* const lists = interface == nullptr ? nullptr : child_named(interface, "subinterfaces");
  list_ = next_ = lists == nullptr ? nullptr : lyd_child(lists);
}

const lyd_node* Readings::of(const lyd_node* entry) {
  const InterfaceName name = split_interface_name(entry_name(entry));
  if (interface_ == nullptr || name.name != key_value(interface_) || !is_interface_name(entry_name(entry)))
    return nullptr;
  if (!name.is_subinterface()) return interface_;
  const auto is_meant = [&name](const lyd_node* sub) { return sub != nullptr && name.index == key_value(sub); };
  const lyd_node* found = is_meant(next_) ? next_ : nullptr;
  if (found == nullptr && list_ != nullptr) {
    const std::string key = predicate("index", name.index);
    lyd_node* other = nullptr;
    lyd_find_sibling_val(list_, list_->schema, key.c_str(), key.size(), &other);
    found = other;
  }
  if (found != nullptr) next_ = found->next;
  return found;
}

std::vector<EntryVerdict> judge_reading(const Environment& environment, const std::vector<const lyd_node*>& entries,
                                        const Data& reading, const Scope& scope) {
  std::vector<EntryVerdict> verdicts;
  if (entries.empty()) return verdicts;
  std::unordered_map<std::string_view, Readings> readings;
  const lyd_node* interface = nullptr;
  LY_LIST_FOR(lyd_child(reading.get()), interface) {
    readings.emplace(key_value(interface), Readings(interface));
  }
  Judge judge(environment);
  for (const lyd_node* const entry : entries) {
    const auto found = readings.find(split_interface_name(entry_name(entry)).name);
    const lyd_node* const read = found == readings.end() ? nullptr : found->second.of(entry);
    std::optional<EntryVerdict> verdict = judge.judge(entry, read, scope);
    if (verdict.has_value()) verdicts.push_back(std::move(*verdict));
  }
  return verdicts;
}

}  // namespace yfw
