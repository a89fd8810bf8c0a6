// What the OpenConfig reading of operational data leaves unsaid: a leaf of a mapped container is said when leaving it
// out, or changing it, changes what its entry reads as. Nothing is written back here, so every leaf is tried.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "framework/read/state_shape.h"
#include "framework/read/unsaid.h"
#include "framework/read/verdict.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/rules.h"
#include "framework/walk/environment.h"
#include "framework/walk/interfaces_walker.h"
#include "framework/walk/output_tree.h"
#include "framework/walk/request_tree.h"
#include "framework/walk/walk_state.h"
#include "yfw-host/data.h"
#include "yfw-host/host.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

// What the models can hold of an output, as a text.
class HeldOutput {
 public:
  static std::string text_of(const OutputNode& top) {
    std::string text;
    add(top, text);
    return text;
  }

 private:
  static bool is_held(const lysc_node* leaf, const char* value) {
    if (value == nullptr) return false;
    // Names of identities are the translation's own.
    const lysc_type* const type = leaf->nodetype == LYS_LEAF ? reinterpret_cast<const lysc_node_leaf*>(leaf)->type
                                                             : reinterpret_cast<const lysc_node_leaflist*>(leaf)->type;
    if (type->basetype == LY_TYPE_IDENT) return true;
    const LY_ERR result =
        lyd_value_validate(leaf->module->ctx, leaf, value, std::strlen(value), nullptr, nullptr, nullptr);
    return result == LY_SUCCESS || result == LY_EINCOMPLETE;
  }

  // Entries of a leaf-list count once, and containers as far as something is in them. Only what is of one list has an
  // order.
  static void add(const OutputNode& node, std::string& text) {
    std::map<std::string_view, std::string> parts;
    std::unordered_set<std::string_view> entries;
    for (const OutputNode* const each : node.children) {
      const lysc_node* const schema = each->schema;
      if (is_term(schema)) {
        if (!is_held(schema, each->data.value)) continue;
        if (schema->nodetype == LYS_LEAFLIST && !entries.insert(each->data.value).second) continue;
        parts[schema->name] += fmt::format("{}={}\n", schema->name, each->data.value);
        continue;
      }
      if (is_list(schema) && key_of(schema) != nullptr && !is_held(key_of(schema), each->key.c_str())) continue;
      std::string inside;
      add(*each, inside);
      if (!inside.empty()) parts[schema->name] += fmt::format("{}{{{}}}\n", schema->name, inside);
    }
    for (const auto& [name, part] : parts) text += part;
  }
};

// One entry of a list of operational data, and the containers above it.
class StateEntry {
 public:
  StateEntry(const Environment& environment, const lyd_node* entry) : environment_(environment), entry_(entry) {
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(entry), child) {
      if (is_read_as_state(child) && is_recorded(child)) containers_.push_back(child);
    }
  }

  std::string_view name() const { return entry_name(entry_); }

  // Entries of one shape have the same leaves said.
  StateShape shape() const {
    const lyd_node* const running = environment_.running == nullptr ? nullptr : environment_.running->entry(name());
    const char layer = running == nullptr ? '-' : is_l2(running) ? '2' : '3';
    return shape_of(fmt::format("{}{}{}/", lyd_parent(entry_)->schema->name, layer, kind_of_name()), containers_);
  }

  // Of each group of leaves, whether the reading leaves it unsaid.
  std::vector<bool> unsaid(const StateShape& shape) const {
    const std::string whole = reading(nullptr, nullptr);
    std::vector<bool> unsaid;
    for (std::size_t i = 0; i < shape.leaves.size(); ++i) {
      if (shape.groups[i] != unsaid.size()) continue;
      const lyd_node* const leaf = shape.leaves[i];
      std::string other = another_value(leaf);
      unsaid.push_back(reading(leaf, nullptr) == whole && reading(leaf, other.data()) == whole);
    }
    return unsaid;
  }

 private:
  // Names as devices give them matter by their kind only. What else may be in one is not told apart.
  std::string kind_of_name() const {
    constexpr std::size_t kUsualSize = 64;
    constexpr std::size_t kUsualDigits = 9;
    const InterfaceName split = split_interface_name(name());
    const bool is_number =
        split.index.size() <= kUsualDigits && split.index.find_first_not_of("0123456789") == std::string_view::npos;
    if (!is_interface_name(name()) || !is_number || split.name.size() > kUsualSize) return std::string(name());
    return fmt::format("{} {}", type_of_interface(name()), split.is_subinterface());
  }

  // A number beside it, or a text that nobody knows.
  static std::string another_value(const lyd_node* leaf) {
    const std::string value = lyd_get_value(leaf);
    if (reinterpret_cast<const lysc_node_leaf*>(leaf->schema)->type->basetype != LY_TYPE_UINT32) return value + "?";
    return value == "4094" ? "4093" : std::to_string(std::strtoull(value.c_str(), nullptr, 10) + 1);
  }

  // What the entry alone reads as, with this value for a leaf, or without the leaf.
  std::string reading(const lyd_node* leaf, char* value) const {
    RequestTree tree;
    const lyd_node* const gone = value == nullptr ? with_empty_containers(leaf) : nullptr;
    const RequestTree::Wanted stays = [gone](const lyd_node* node) { return node != gone; };
    yfw_datatree* const entry = tree.data(entry_, gone == nullptr ? nullptr : stays);
    if (value != nullptr) record_at(entry_, entry, leaf)->value = value;
    const yfw_datatree* const root = tree.in_place(entry_, entry);
    WalkState walk_state(environment_, kReadState);
    const cerrno result = environment_.plugins->operational_root()(walk_state.ctx(), root, walk_state.output().root());
    return (result == 0 ? "" : "failed\n") + HeldOutput::text_of(walk_state.output().top());
  }

  // The leaf, or the containers around it that hold nothing else: an empty container is none.
  const lyd_node* with_empty_containers(const lyd_node* leaf) const {
    while (leaf != nullptr && lyd_parent(leaf) != entry_ && lyd_parent(leaf)->schema->nodetype == LYS_CONTAINER) {
      const lyd_node* child = nullptr;
      LY_LIST_FOR(lyd_child(lyd_parent(leaf)), child) {
        if (child != leaf && is_recorded(child)) return leaf;
      }
      leaf = lyd_parent(leaf);
    }
    return leaf;
  }

  static bool is_recorded(const lyd_node* node) { return (node->flags & LYD_DEFAULT) == 0; }

  // Records and data have their nodes in the same order.
  static yfw_datatree* record_at(const lyd_node* node, yfw_datatree* record, const lyd_node* wanted) {
    if (node == wanted) return record;
    uint32_t i = 0;
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(node), child) {
      if (!is_recorded(child)) continue;
      if (yfw_datatree* const found = record_at(child, &record->subtrees[i++], wanted)) return found;
    }
    return nullptr;
  }

  const Environment& environment_;
  const lyd_node* entry_;
  std::vector<const lyd_node*> containers_;
};

// The path of a leaf from its entry on; entries without a key are told apart by where they stand.
std::string path_below(const lyd_node* entry, const lyd_node* node) {
  if (node == entry) return {};
  const lyd_node* const above = lyd_parent(node);
  const lysc_node* const schema = node->schema;
  std::string path = path_below(entry, above);
  path += '/';
  if (schema->module != above->schema->module) path.append(schema->module->name).append(1, ':');
  path += schema->name;
  if (lysc_is_dup_inst_list(schema)) {
    path.append(1, '[').append(std::to_string(lyd_list_pos(node))).append(1, ']');
  } else if (schema->nodetype == LYS_LEAFLIST) {
    path += predicate(".", lyd_get_value(node));
  }
  const lyd_node* key = is_list(schema) ? lyd_child(node) : nullptr;
  for (; key != nullptr && lysc_is_key(key->schema); key = key->next)
    path += predicate(LYD_NAME(key), lyd_get_value(key));
  return path;
}

}  // namespace

void report_unsaid_state(const Environment& environment, const Data& operational, const Scope& scope,
                         ReadResult& result) {
  if (environment.plugins->operational_root() == nullptr) return;
  Environment silent = environment;
  silent.trace = nullptr;
  // Which groups of a shape are unsaid.
  std::unordered_map<std::string, std::vector<bool>> known;
  const auto judge = [&](const lyd_node* entry) {
    const StateEntry judged(silent, entry);
    const StateShape shape = judged.shape();
    const auto is_asked = [&](const lyd_node* leaf) { return scope == nullptr || scope(entry, lyd_parent(leaf)); };
    if (std::none_of(shape.leaves.begin(), shape.leaves.end(), is_asked)) return;
    const auto [verdict, is_new] = known.try_emplace(shape.text);
    if (is_new) verdict->second = judged.unsaid(shape);
    std::string settings;
    const bool is_said = std::find(verdict->second.begin(), verdict->second.end(), true) == verdict->second.end();
    const std::string entry_path = is_said ? "" : path_of(entry);
    for (std::size_t i = 0; i < shape.leaves.size(); ++i) {
      const lyd_node* const leaf = shape.leaves[i];
      if (!verdict->second[shape.groups[i]] || !is_asked(leaf)) continue;
      const std::string path = path_below(entry, leaf);
      append(settings, ", ", fmt::format("{} \"{}\"", std::string_view(path).substr(1), lyd_get_value(leaf)));
      result.unsaid.push_back(
          {std::string(judged.name()), entry_path + path, lyd_get_value(leaf), Unsaid::Fate::stays, ""});
    }
    if (settings.empty()) return;
    result.warnings.push_back({entry_path, fmt::format("OpenConfig does not say: {}", settings), true});
  };
  const lyd_node* node = nullptr;
  LY_LIST_FOR(lyd_child(lyd_child(operational.get())), node) {
    const lyd_node* list = nullptr;
    LY_LIST_FOR(lyd_child_no_keys(node), list) {
      const lyd_node* entry = nullptr;
      LY_LIST_FOR(lyd_child(list), entry) {
        judge(entry);
      }
    }
  }
}

}  // namespace yfw
