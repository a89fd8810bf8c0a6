// Adds by path, and the rules by which they override and remove each other.
#include "framework/walk/output_tree.h"

#include <algorithm>
#include <cstring>

#include "framework/tree/schema.h"
#include "framework/walk/abi.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

OutputNode* node_of(yfw_datatree* data) {
  return reinterpret_cast<OutputNode*>(data);
}

void set_value(OutputNode& node, const char* value) {
  node.data.value = nullptr;
  if (value == nullptr) return;
  node.text = value;
  node.data.value = node.text.data();
}

Mark mark_of(const yfw_datatree* source) {
  if (source == nullptr) return Mark::inherit;
  if (source->operation == abi::kDelete || source->operation == abi::kRemove) return Mark::remove;
  return source->operation == abi::kReplace ? Mark::replace : Mark::inherit;
}

bool clears(const OutputNode* node) {
  return node->mark != Mark::inherit;
}

// A node that is written below something marked for removal turns the removal into a replacement.
void keep(OutputNode* node) {
  for (; node != nullptr; node = node->parent) {
    if (node->mark == Mark::remove) node->mark = Mark::replace;
  }
}

}  // namespace

std::size_t OutputTree::EntryKeyHash::operator()(const EntryKey& key) const noexcept {
  const std::size_t place = std::hash<const void*>{}(key.parent) * 31 + std::hash<const void*>{}(key.list);
  return place * 31 + std::hash<std::string_view>{}(key.key);
}

OutputTree::Current* OutputTree::current(const lysc_node* list) {
  const auto found =
      std::find_if(current_.begin(), current_.end(), [list](const Current& each) { return each.list == list; });
  return found == current_.end() ? nullptr : &*found;
}

void OutputTree::set_current(const lysc_node* list, std::string_view key) {
  Current* const known = current(list);
  if (known == nullptr) {
    current_.push_back({list, std::string(key), nullptr});
  } else if (known->node == nullptr || known->key != key) {
    known->key = key;
    known->node = nullptr;
  }
}

void OutputTree::clear() {
  root_.children.clear();
  entries_.clear();
  used_ = 0;
  left_out_ = false;
  for (Current& each : current_) each.node = nullptr;
}

OutputNode* OutputTree::make(OutputNode* parent, const lysc_node* schema) {
  if (used_ == nodes_.size()) nodes_.emplace_back();
  OutputNode& node = nodes_[used_++];
  node.data = {};
  node.children.clear();
  node.key.clear();
  node.mark = Mark::inherit;
  node.asked = false;
  node.schema = schema;
  node.parent = parent;
  node.data.tag = schema->name;
  node.data.ns = namespace_of(schema);
  parent->children.push_back(&node);
  return &node;
}

void OutputTree::name_entry(OutputNode* entry, std::string_view key) {
  entry->key = key;
  entries_.emplace(EntryKey{entry->parent, entry->schema, entry->key}, entry);
}

OutputNode* OutputTree::make_entry(OutputNode* parent, const lysc_node* list, std::string_view key) {
  OutputNode* const entry = make(parent, list);
  if (!key.empty()) name_entry(entry, key);
  return entry;
}

OutputNode* OutputTree::find_entry(const OutputNode* parent, const lysc_node* list, std::string_view key) const {
  const auto found = entries_.find(EntryKey{parent, list, key});
  return found == entries_.end() ? nullptr : found->second;
}

OutputNode* OutputTree::current_entry(OutputNode* parent, const lysc_node* list) {
  Current* const which = current(list);
  if (which == nullptr) return nullptr;
  if (which->node != nullptr && which->node->parent == parent) return which->node;
  if (which->key.empty()) return nullptr;
  OutputNode* entry = find_entry(parent, list, which->key);
  if (entry == nullptr) entry = make_entry(parent, list, which->key);
  which->node = entry;
  return entry;
}

OutputNode* OutputTree::child(OutputNode* parent, const lysc_node* schema) const {
  const auto found = std::find_if(parent->children.begin(), parent->children.end(),
                                  [schema](const OutputNode* each) { return each->schema == schema; });
  return found == parent->children.end() ? nullptr : *found;
}

const PathCache::Steps* OutputTree::resolve(const char* path, const char* ns) {
  if (path == nullptr) return nullptr;
  return recent_paths_.of(path, ns, [&] { return paths_.resolve(path, ns); });
}

cerrno OutputTree::add(yfw_datatree* tree, const char* path, const char* ns, const char* value,
                       const yfw_datatree* source, yfw_node_slot* slot, bool list_entry, std::string_view new_key) {
  if (slot != nullptr) slot->node = nullptr;
  const PathCache::Steps* const steps = resolve(path, ns);
  if (tree == nullptr || steps == nullptr) return CERR_INVALID_ARGS;
  OutputNode* parent = &root_;
  std::size_t first = 0;
  if (tree != root()) {
    // An absolute path below an entry found before: what stands above the entry is known already.
    parent = node_of(tree);
    const auto here = std::find(steps->begin(), steps->end(), parent->schema);
    if (here == steps->end()) return CERR_INVALID_ARGS;
    first = static_cast<std::size_t>(here - steps->begin()) + 1;
  }
  if (mark_of(source) == Mark::remove) return remove_steps(parent, *steps, first, slot);
  return add_steps(parent, *steps, first, value, source, slot, list_entry, new_key);
}

cerrno OutputTree::add_steps(OutputNode* parent, const PathCache::Steps& steps, std::size_t first, const char* value,
                             const yfw_datatree* source, yfw_node_slot* slot, bool list_entry,
                             std::string_view new_key) {
  OutputNode* node = parent;
  for (std::size_t i = first; i < steps.size(); ++i) {
    const lysc_node* const schema = steps[i];
    const bool last = i + 1 == steps.size();
    OutputNode* next = nullptr;
    if (is_list(schema) && last && list_entry) {
      if (!new_key.empty()) next = find_entry(node, schema, new_key);
      if (next == nullptr) next = make_entry(node, schema, new_key);
      set_current(schema, next->key);
      current(schema)->node = next;
    } else if (is_list(schema)) {
      next = current_entry(node, schema);
      if (next == nullptr) {
        left_out_ = true;
        return 0;
      }
    } else if (!(last && list_entry)) {
      next = child(node, schema);
    }
    if (next == nullptr) next = make(node, schema);
    node = next;
  }
  node->asked = true;
  if (is_term(node->schema)) {
    set_value(*node, value);
    node->mark = mark_of(source);
  }
  keep(node);
  if (node->schema->nodetype == LYS_LEAF && lysc_is_key(node->schema) && value != nullptr &&
      node->parent->key.empty()) {
    name_entry(node->parent, value);
    Current* const which = current(node->parent->schema);
    if (which != nullptr && which->node == node->parent) which->key = value;
  }
  if (slot != nullptr) slot->node = &node->data;
  return 0;
}

cerrno OutputTree::remove_steps(OutputNode* parent, const PathCache::Steps& steps, std::size_t first,
                                yfw_node_slot* slot) {
  OutputNode* node = parent;
  for (std::size_t i = first; i < steps.size(); ++i) {
    const lysc_node* const schema = steps[i];
    const bool last = i + 1 == steps.size();
    OutputNode* next = is_list(schema) ? current_entry(node, schema) : child(node, schema);
    if (next == nullptr && is_list(schema)) {
      left_out_ = true;
      return 0;
    }
    // Below what goes as a whole there is nothing left to remove but what this very walk has written.
    if (clears(node)) {
      if (next == nullptr) return 0;
      if (last) {
        std::erase(node->children, next);
        return 0;
      }
    }
    if (next == nullptr) next = make(node, schema);
    node = next;
  }
  node->asked = true;
  node->mark = Mark::remove;
  node->children.clear();
  set_value(*node, nullptr);
  if (slot != nullptr) slot->node = &node->data;
  return 0;
}

OutputNode* OutputTree::entry(yfw_datatree* tree, const char* list_path, const char* key, const char* ns, bool create) {
  if (tree == nullptr || key == nullptr) return nullptr;
  const bool from_root = tree == root();
  OutputNode* const base = from_root ? &root_ : node_of(tree);
  const PathCache::Steps* const steps =
      from_root ? resolve(list_path, ns) : paths_.resolve_below(base->schema, list_path, ns);
  if (steps == nullptr || !is_list(steps->back())) return nullptr;
  OutputNode* node = base;
  for (const lysc_node* const schema : *steps) {
    const bool last = schema == steps->back();
    OutputNode* next = nullptr;
    if (last) {
      next = find_entry(node, schema, key);
      if (next == nullptr && create) next = make_entry(node, schema, key);
    } else {
      next = is_list(schema) ? current_entry(node, schema) : child(node, schema);
      if (next == nullptr && create && !is_list(schema)) next = make(node, schema);
    }
    if (next == nullptr) return nullptr;
    node = next;
  }
  set_current(node->schema, key);
  current(node->schema)->node = node;
  return node;
}

cerrno OutputTree::touch_entry(const char* list_path, Mark mark) {
  const PathCache::Steps* const steps = resolve(list_path, nullptr);
  if (steps == nullptr) return CERR_INVALID_ARGS;
  if (mark == Mark::remove) return remove_steps(&root_, *steps, 0, nullptr);
  return add_steps(&root_, *steps, 0, nullptr, nullptr, nullptr, false, {});
}

OutputNode* OutputTree::top_entry(const char* list_path, std::string_view key) {
  const PathCache::Steps* const steps = resolve(list_path, nullptr);
  OutputNode* const list_parent = steps == nullptr ? nullptr : child(&root_, steps->front());
  return list_parent == nullptr ? nullptr : find_entry(list_parent, steps->back(), key);
}

bool OutputTree::has_entry(const char* list_path, std::string_view key) {
  return top_entry(list_path, key) != nullptr;
}

OutputNode* OutputTree::written_entry(const char* list_path, std::string_view key) {
  const auto writes = [](const auto& self, const OutputNode& node) -> bool {
    if (node.mark == Mark::remove) return false;
    if (node.children.empty()) return true;
    return std::any_of(node.children.begin(), node.children.end(),
                       [&self](const OutputNode* each) { return self(self, *each); });
  };
  OutputNode* const entry = top_entry(list_path, key);
  return entry != nullptr && writes(writes, *entry) ? entry : nullptr;
}

void OutputTree::move_last_child_first(const char* list_path, std::string_view key) {
  OutputNode* const entry = top_entry(list_path, key);
  if (entry == nullptr || entry->children.empty()) return;
  std::rotate(entry->children.begin(), entry->children.end() - 1, entry->children.end());
}

void OutputTree::roll_back(std::size_t size) {
  while (used_ > size) {
    OutputNode& node = nodes_[--used_];
    std::vector<OutputNode*>& siblings = node.parent->children;
    if (!siblings.empty() && siblings.back() == &node) siblings.pop_back();
    if (!node.key.empty()) entries_.erase(EntryKey{node.parent, node.schema, node.key});
    for (Current& each : current_) {
      if (each.node == &node) each.node = nullptr;
    }
  }
}

bool OutputTree::take_left_out() {
  const bool left_out = left_out_;
  left_out_ = false;
  return left_out;
}

}  // namespace yfw
