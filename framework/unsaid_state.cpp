// What the OpenConfig reading of operational data leaves unsaid: a leaf of a mapped container is said when leaving it out,
// or changing it, changes what its entry reads as. Nothing is written back here, so every leaf is tried.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <unordered_map>

#include "framework/documents.h"
#include "framework/request_tree.h"
#include "framework/sibling.h"
#include "framework/unsaid.h"

namespace yfw {

namespace {

// The containers of an operational entry that are read as OpenConfig.
constexpr std::array<std::string_view, 3> kMapped{"layer3-sub-interfaces", "vlan-switched", "encapsulation-details"};

// Leaves that hold a VLAN id: which one it is makes no difference to whether it is said. A leaf that is missing here
// costs time and nothing else.
constexpr std::array<std::string_view, 8> kIds{"vlan-id",    "vlan-id-low", "vlan-id-high", "tag",
                                               "second-tag", "outer-tag",   "native-vlan",  "access-vlan"};

bool is_one_of(std::span<const std::string_view> names, const lyd_node* node) {
  return std::find(names.begin(), names.end(), std::string_view(LYD_NAME(node))) != names.end();
}

using Leaves = std::vector<const lyd_node*>;

void collect_leaves(const lyd_node* node, Leaves& leaves) {
  if (is_term(node->schema)) {
    leaves.push_back(node);
    return;
  }
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    collect_leaves(child, leaves);
  }
}

std::optional<int> id_of(const lyd_node* leaf) {
  constexpr int kFirst = 1;
  constexpr int kLast = 4094;
  const char* const text = lyd_get_value(leaf);
  const std::size_t size = std::strlen(text);
  if (!is_one_of(kIds, leaf) || size > 4 || size == 0) return std::nullopt;
  const int id = std::atoi(text);
  if (id < kFirst || id > kLast) return std::nullopt;
  return id;
}

// One entry of a list of operational data, and the containers above it.
class StateEntry {
 public:
  StateEntry(const Surroundings& around, const lyd_node* entry) : around_(around), entry_(entry) {
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(entry), child) {
      if (is_one_of(kMapped, child)) collect_leaves(child, leaves_);
    }
  }

  const Leaves& leaves() const { return leaves_; }

  std::string_view name() const { return entry_name(entry_); }

  // Entries of one shape have the same leaves said: the same leaves in the same places, with the same values but for the
  // ids, which are valid in both and stand in the same order.
  std::string shape() const {
    std::string shape;
    const InterfaceName split = split_interface_name(name());
    const lyd_node* const running = around_.running == nullptr ? nullptr : around_.running->entry(name());
    shape += is_interface_name(name()) ? 'n' : '-';
    shape += split.is_subinterface() ? 's' : '-';
    shape += type_of_interface(name());
    shape += running == nullptr ? '-' : is_l2(running) ? '2' : '3';
    int last = 0;
    add_shape(entry_, shape, last);
    return shape;
  }

  Leaves unsaid() const {
    const std::string whole = reading(nullptr, Trial::as_it_is);
    Leaves unsaid;
    for (const lyd_node* const leaf : leaves_) {
      if (reading(leaf, Trial::left_out) == whole && reading(leaf, Trial::changed) == whole) unsaid.push_back(leaf);
    }
    return unsaid;
  }

 private:
  enum class Trial : std::uint8_t { as_it_is, left_out, changed };

  void add_shape(const lyd_node* node, std::string& shape, int& last) const {
    shape.append(reinterpret_cast<const char*>(&node->schema), sizeof node->schema);
    if (is_term(node->schema)) {
      const std::optional<int> id = lysc_is_key(node->schema) ? std::nullopt : id_of(node);
      if (lysc_is_key(node->schema)) return;
      if (!id.has_value()) {
        shape.append(1, '=').append(lyd_get_value(node)).append(1, '\0');
        return;
      }
      shape += *id == last ? 'e' : *id == last + 1 ? 'n' : *id > last ? 'g' : 'l';
      last = *id;
      return;
    }
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(node), child) {
      if (node != entry_ || is_one_of(kMapped, child)) add_shape(child, shape, last);
    }
    shape += ')';
  }

  // What the entry alone reads as, with one leaf treated in this way.
  std::string reading(const lyd_node* leaf, Trial trial) const {
    RequestTree tree;
    const RequestTree::Wanted others = [leaf](const lyd_node* node) { return node != leaf; };
    yfw_datatree* const entry = tree.data(entry_, trial == Trial::left_out ? others : nullptr);
    std::string other;
    if (trial == Trial::changed) {
      other = changed(leaf);
      yfw_datatree* const record = record_at(entry_, entry, leaf);
      if (record != nullptr) record->value = other.data();
    }
    const lyd_node* const list = lyd_parent(entry_);
    const lyd_node* const node = lyd_parent(list);
    yfw_datatree inside[2] = {*tree.data(lyd_child(node)), record_of(list, entry, 1)};
    yfw_datatree nodes = record_of(node, inside, 2);
    yfw_datatree container = record_of(lyd_parent(node), &nodes, 1);
    const yfw_datatree root = record_of(lyd_parent(lyd_parent(node)), &container, 1);
    Session session(around_, kReadState);
    const cerrno result = around_.plugins->operational_root()(session.ctx(), &root, session.output().root());
    std::string text = result == 0 ? "" : "failed\n";
    for (const OutputNode* const each : session.output().top().children) add_reading(*each, text);
    return text;
  }

  // A number beside it, or a text that nobody knows.
  static std::string changed(const lyd_node* leaf) {
    const std::string value = lyd_get_value(leaf);
    if (reinterpret_cast<const lysc_node_leaf*>(leaf->schema)->type->basetype != LY_TYPE_UINT32) return value + "?";
    const std::string next = std::to_string(std::strtoull(value.c_str(), nullptr, 10) + 1);
    return id_of(leaf) == 4094 ? "4093" : next;
  }

  // Records and data have their nodes in the same order.
  static yfw_datatree* record_at(const lyd_node* node, yfw_datatree* record, const lyd_node* wanted) {
    if (node == wanted) return record;
    uint32_t i = 0;
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(node), child) {
      if ((child->flags & LYD_DEFAULT) != 0) continue;
      yfw_datatree* const found = record_at(child, &record->subtrees[i++], wanted);
      if (found != nullptr) return found;
    }
    return nullptr;
  }

  // What of the output the models can hold.
  static void add_reading(const OutputNode& node, std::string& text) {
    if (is_term(node.schema)) {
      const std::string_view value = node.data.value == nullptr ? "" : node.data.value;
      if (is_held(node.schema, value)) text += fmt::format("{}={}\n", node.schema->name, value);
      return;
    }
    text += fmt::format("{}{}{{\n", node.schema->name, node.key);
    for (const OutputNode* const each : node.children) add_reading(*each, text);
    text += "}\n";
  }

  static bool is_held(const lysc_node* leaf, std::string_view value) {
    // Names of identities are the translation's own.
    const lysc_type* const type = leaf->nodetype == LYS_LEAF ? reinterpret_cast<const lysc_node_leaf*>(leaf)->type
                                                             : reinterpret_cast<const lysc_node_leaflist*>(leaf)->type;
    if (type->basetype == LY_TYPE_IDENT) return true;
    const LY_ERR result =
        lyd_value_validate(leaf->module->ctx, leaf, value.data(), value.size(), nullptr, nullptr, nullptr);
    return result == LY_SUCCESS || result == LY_EINCOMPLETE;
  }

  const Surroundings& around_;
  const lyd_node* entry_;
  Leaves leaves_;
};

std::string instance_path(const lyd_node* node) {
  const std::unique_ptr<char, void (*)(void*)> text(lyd_path(node, LYD_PATH_STD, nullptr, 0), std::free);
  return text == nullptr ? path_of(node) : text.get();
}

// The leaf by its path below the entry, and its value.
std::string setting(const std::string& entry, const std::string& path, const lyd_node* leaf) {
  return fmt::format("{} \"{}\"", path.substr(std::min(path.size(), entry.size() + 1)), lyd_get_value(leaf));
}

}  // namespace

void report_unsaid_state(const Surroundings& around, const Data& operational, const Scope& scope, ReadResult& result) {
  if (around.plugins->operational_root() == nullptr) return;
  Surroundings silent = around;
  silent.trace = nullptr;
  // Which leaves of a shape are unsaid, by their number.
  std::unordered_map<std::string, std::vector<std::size_t>> known;
  const auto judge = [&](const lyd_node* entry) {
    const StateEntry judged(silent, entry);
    if (judged.leaves().empty()) return;
    const auto [shape, is_new] = known.try_emplace(judged.shape());
    if (is_new) {
      const Leaves unsaid = judged.unsaid();
      for (std::size_t i = 0; i < judged.leaves().size(); ++i) {
        if (std::find(unsaid.begin(), unsaid.end(), judged.leaves()[i]) != unsaid.end()) shape->second.push_back(i);
      }
    }
    std::string settings;
    const std::string entry_path = shape->second.empty() ? "" : instance_path(entry);
    for (const std::size_t i : shape->second) {
      const lyd_node* const leaf = judged.leaves()[i];
      if (scope != nullptr && !scope(entry, lyd_parent(leaf))) continue;
      std::string path = instance_path(leaf);
      settings += (settings.empty() ? "" : ", ") + setting(entry_path, path, leaf);
      result.unsaid.push_back(
          {std::string(judged.name()), std::move(path), lyd_get_value(leaf), Unsaid::Fate::stays, ""});
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
