// Conversion of libyang data into the records that mapping functions walk.
#include "framework/walk/request_tree.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/trunk_text.h"
#include "framework/walk/abi.h"
#include "yfw-host/data.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

uint32_t code_of(Operation operation) {
  switch (operation) {
    case Operation::replace:
      return abi::kReplace;
    case Operation::create:
      return abi::kCreate;
    case Operation::delete_:
      return abi::kDelete;
    case Operation::remove:
      return abi::kRemove;
    case Operation::merge:
    case Operation::none:
      break;
  }
  return abi::kMerge;
}

bool is_key_node(const lyd_node* node) {
  const lysc_node* const schema = schema_of(node);
  return schema != nullptr && schema->nodetype == LYS_LEAF && lysc_is_key(schema);
}

}  // namespace

bool contains_removal(const lyd_node* node, Operation outer) {
  const Operation own = operation_of(node, outer);
  if (removes(own)) return true;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(first_child(node), child) {
    if (contains_removal(child, passed_down(own))) return true;
  }
  return false;
}

struct RequestTree::Builder {
  std::pmr::memory_resource& arena;
  const Namespaces* namespaces = nullptr;
  const Wanted* wanted = nullptr;
  bool filter = false;

  char* text(const char* source) const {
    if (source == nullptr) return nullptr;
    const std::size_t size = std::strlen(source) + 1;
    return static_cast<char*>(std::memcpy(arena.allocate(size, 1), source, size));
  }

  // The value as a leaf's text and, for identities and enumerations, the namespace that it belongs to.
  void set_value(yfw_datatree& made, const lyd_node* node) const {
    if (node->schema == nullptr) {
      const char* const value = reinterpret_cast<const lyd_node_opaq*>(node)->value;
      if (value != nullptr && *value != '\0') {
        const char* const colon = std::strrchr(value, ':');
        const lysc_node* const schema = schema_of(node);
        const bool identity = schema != nullptr && is_term(schema) && namespaces != nullptr;
        made.value = text(identity && colon != nullptr ? colon + 1 : value);
      }
    } else if (is_term(node->schema)) {
      const lyd_value& value = reinterpret_cast<const lyd_node_term*>(node)->value;
      const LY_DATA_TYPE type = value.realtype->basetype;
      if (type == LY_TYPE_IDENT) {
        made.value = text(value.ident->name);
        made.value_ns = text(value.ident->module->ns);
      } else if (type != LY_TYPE_EMPTY) {
        made.value = text(type == LY_TYPE_STRING ? canonical_text(node).c_str() : lyd_get_value(node));
        if (type == LY_TYPE_ENUM) made.value_ns = text(enumeration_namespace(node->schema));
      }
    }
    if (namespaces == nullptr) return;
    const auto bound = namespaces->find(node);
    if (bound != namespaces->end()) made.value_ns = text(bound->second);
  }

  void fill(yfw_datatree& made, const lyd_node* node, Operation outer) const {
    const lysc_node* const schema = schema_of(node);
    made.tag = schema == nullptr ? text(LYD_NAME(node)) : schema->name;
    made.ns = schema == nullptr ? nullptr : namespace_of(schema);
    made.is_key = is_key_node(node) ? 1 : 0;
    set_value(made, node);
    const Operation own = namespaces == nullptr ? Operation::merge : operation_of(node, outer);
    made.operation = code_of(own);
    if (filter && made.value != nullptr) made.node_flags |= abi::kSelecting;

    if (namespaces != nullptr) {
      fill_ordered(made, node, own);
      return;
    }
    const auto is_taken = [this](const lyd_node* child) {
      return (child->flags & LYD_DEFAULT) == 0 && (wanted == nullptr || (*wanted)(child));
    };
    // Who wants what is asked twice, which costs less than to remember it.
    std::size_t count = 0;
    const lyd_node* child = nullptr;
    LY_LIST_FOR(first_child(node), child) {
      if (is_taken(child)) ++count;
    }
    yfw_datatree* place = make_room(made, count);
    LY_LIST_FOR(count == 0 ? nullptr : first_child(node), child) {
      if (is_taken(child)) fill(*place++, child, Operation::merge);
    }
  }

  // Deletes before writes.
  void fill_ordered(yfw_datatree& made, const lyd_node* node, Operation own) const {
    std::vector<const lyd_node*> children;
    const lyd_node* child = nullptr;
    LY_LIST_FOR(first_child(node), child) {
      if (removes(own) && !is_key_node(child)) continue;
      if ((child->flags & LYD_DEFAULT) == 0) children.push_back(child);
    }
    std::stable_partition(children.begin(), children.end(),
                          [own](const lyd_node* each) { return contains_removal(each, passed_down(own)); });
    yfw_datatree* place = make_room(made, children.size());
    for (const lyd_node* const each : children) fill(*place++, each, passed_down(own));
  }

  yfw_datatree* make_room(yfw_datatree& made, std::size_t count) const {
    if (count == 0) return nullptr;
    made.subtrees = static_cast<yfw_datatree*>(arena.allocate(count * sizeof(yfw_datatree), alignof(yfw_datatree)));
    std::uninitialized_value_construct_n(made.subtrees, count);
    made.subtree_count = static_cast<uint32_t>(count);
    made.node_flags |= abi::kHasSubtrees;
    return made.subtrees;
  }

  yfw_datatree* build(const lyd_node* node, Operation outer) const {
    auto* const made = new (arena.allocate(sizeof(yfw_datatree), alignof(yfw_datatree))) yfw_datatree{};
    fill(*made, node, outer);
    return made;
  }
};

yfw_datatree* RequestTree::in_place(const lyd_node* node, yfw_datatree* record) {
  const Builder builder{arena_};
  for (const lyd_node* above = lyd_parent(node); above != nullptr; above = lyd_parent(above)) {
    // Keys stand first: what else there is, be it every entry of a list, is not looked at.
    std::size_t keys = 0;
    const lyd_node* child = lyd_child(above);
    for (; child != nullptr && is_key_node(child); child = child->next) ++keys;
    auto* const made = new (arena_.allocate(sizeof(yfw_datatree), alignof(yfw_datatree))) yfw_datatree{};
    made->tag = above->schema->name;
    made->ns = namespace_of(above->schema);
    yfw_datatree* place = builder.make_room(*made, keys + 1);
    child = lyd_child(above);
    for (std::size_t i = 0; i < keys; ++i, child = child->next) builder.fill(*place++, child, Operation::merge);
    *place = *record;
    record = made;
  }
  return record;
}

yfw_datatree* RequestTree::edit(const lyd_node* node, Operation default_operation, const Namespaces& namespaces) {
  return Builder{arena_, &namespaces}.build(node, default_operation);
}

yfw_datatree* RequestTree::filter(const lyd_node* node) {
  return Builder{arena_, nullptr, nullptr, true}.build(node, Operation::merge);
}

yfw_datatree* RequestTree::data(const lyd_node* node, const Wanted& wanted) {
  return Builder{arena_, nullptr, wanted == nullptr ? nullptr : &wanted}.build(node, Operation::merge);
}

}  // namespace yfw
