// Operations and paths of nodes, opaque ones included.
#include "framework/tree/nodes.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <array>
#include <cstring>

#include "framework/tree/result.h"
#include "framework/tree/schema.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

struct OperationName {
  std::string_view text;
  Operation operation;
};

constexpr std::array<OperationName, 5> kOperations{{{"merge", Operation::merge},
                                                    {"replace", Operation::replace},
                                                    {"create", Operation::create},
                                                    {"delete", Operation::delete_},
                                                    {"remove", Operation::remove}}};

constexpr char kAttribute[] = "operation";

const char* text_of(Operation operation) {
  for (const OperationName& each : kOperations) {
    if (each.operation == operation) return each.text.data();
  }
  return nullptr;
}

lyd_meta* find_meta(const lyd_node* node) {
  for (lyd_meta* meta = node->meta; meta != nullptr; meta = meta->next) {
    if (std::strcmp(meta->name, kAttribute) == 0 && std::strcmp(meta->annotation->module->name, kNetconfModule) == 0) {
      return meta;
    }
  }
  return nullptr;
}

lyd_attr* find_attribute(const lyd_node* node) {
  for (lyd_attr* attribute = reinterpret_cast<const lyd_node_opaq*>(node)->attr; attribute != nullptr;
       attribute = attribute->next) {
    if (std::strcmp(attribute->name.name, kAttribute) == 0) return attribute;
  }
  return nullptr;
}

}  // namespace

std::string leaf_name(std::string_view path) {
  // Values in the predicate of a leaf-list entry may hold anything.
  const std::size_t entry = path.ends_with(']') ? path.rfind("[.=") : std::string_view::npos;
  path = path.substr(0, entry);
  const std::string_view step = path.substr(path.rfind('/') + 1);
  return std::string(step.substr(step.find(':') + 1));
}

std::optional<Operation> operation_named(std::string_view text) {
  for (const OperationName& each : kOperations) {
    if (each.text == text) return each.operation;
  }
  return std::nullopt;
}

Operation operation_of(const lyd_node* node, Operation fallback) {
  if (node->schema == nullptr) {
    const lyd_attr* const attribute = find_attribute(node);
    return attribute == nullptr ? fallback : operation_named(attribute->value).value_or(fallback);
  }
  const lyd_meta* const meta = find_meta(node);
  return meta == nullptr ? fallback : operation_named(lyd_get_meta_value(meta)).value_or(fallback);
}

void set_operation(lyd_node* node, Operation operation) {
  const ly_ctx* const models = LYD_CTX(node);
  const char* const text = text_of(operation);
  const char* const failure = "no operation can be put on a node";
  if (node->schema == nullptr) {
    lyd_free_attr_single(models, find_attribute(node));
    if (text != nullptr) need(lyd_new_attr2(node, kNetconfNs, "nc:operation", text, nullptr), failure);
    return;
  }
  lyd_free_meta_single(find_meta(node));
  if (text == nullptr) return;
  const lys_module* const netconf = ly_ctx_get_module_implemented(models, kNetconfModule);
  // A container that carries an operation is there for its own sake, not by default.
  constexpr ly_bool kNotDefault = 1;
  need(lyd_new_meta(models, node, netconf, kAttribute, text, kNotDefault, nullptr), failure);
}

lyd_node* new_removed_leaf(lyd_node* parent, const lysc_node* leaf) {
  lyd_node* made = nullptr;
  need(lyd_new_opaq2(parent, leaf->module->ctx, leaf->name, nullptr, nullptr, leaf->module->ns, &made),
       "a removal cannot be made");
  // Prints as [null] in JSON.
  reinterpret_cast<lyd_node_opaq*>(made)->hints = LYD_VALHINT_EMPTY;
  set_operation(made, Operation::remove);
  return made;
}

void mark_wanted(lyd_node* node) {
  for (; node != nullptr; node = lyd_parent(node)) node->flags &= ~uint32_t{LYD_DEFAULT};
}

const char* key_value(const lyd_node* entry) {
  const lyd_node* const key = lyd_child(entry);
  if (key != nullptr && key->schema != nullptr && lysc_is_key(key->schema)) return lyd_get_value(key);
  throw Refused({.tag = "operation-failed",
                 .path = path_of(entry),
                 .message = fmt::format("an entry of '{}' has no key", LYD_NAME(entry)),
                 .bad_element = LYD_NAME(entry)});
}

Operation effective_operation(const lyd_node* node, Operation default_operation) {
  bool self = true;
  for (const lyd_node* each = node; each != nullptr; each = lyd_parent(each)) {
    const Operation own = operation_of(each, Operation::none);
    if (own != Operation::none) return self ? own : passed_down(own);
    self = false;
  }
  return default_operation;
}

bool named(const lyd_node* node, std::string_view name) {
  return node != nullptr && name == LYD_NAME(node);
}

bool is_key(const lyd_node* node) {
  return node->schema != nullptr && lysc_is_key(node->schema);
}

bool is_ancestor_or_self(const lyd_node* above, const lyd_node* node) {
  for (; node != nullptr; node = lyd_parent(node)) {
    if (node == above) return true;
  }
  return false;
}

const lyd_node* node_at(const Data& data, const std::string& path) {
  lyd_node* found = nullptr;
  if (data.empty() || !succeeded(lyd_find_path(data.get(), path.c_str(), 0, &found))) return nullptr;
  return found;
}

const lyd_node* child_named(const lyd_node* parent, std::string_view name) {
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(parent), child) {
    if (child->schema != nullptr && name == child->schema->name) return child;
  }
  return nullptr;
}

lyd_node* first_child(const lyd_node* node) {
  return lyd_child(node);
}

bool is_plain_container(const lyd_node* node) {
  return node->schema != nullptr && node->schema->nodetype == LYS_CONTAINER &&
         (node->schema->flags & LYS_PRESENCE) == 0;
}

lyd_node* counterpart(const Data& tree, const lyd_node* node) {
  const lyd_node* const above = lyd_parent(node);
  const lyd_node* siblings = tree.get();
  if (above != nullptr) {
    const lyd_node* const parent = counterpart(tree, above);
    siblings = parent == nullptr ? nullptr : lyd_child(parent);
  }
  return counterpart_among(siblings, node);
}

lyd_node* counterpart_among(const lyd_node* siblings, const lyd_node* node) {
  lyd_node* found = nullptr;
  const lysc_node* const schema = siblings == nullptr ? nullptr : schema_of(node);
  if (schema == nullptr) return nullptr;
  if (node->schema != nullptr && (schema->nodetype & (LYS_LIST | LYS_LEAFLIST)) != 0) {
    succeeded(lyd_find_sibling_first(siblings, node, &found));
    return found;
  }
  // Among few nodes a look at each is cheaper than the hash of a name.
  constexpr int kFew = 16;
  const lyd_node* each = lyd_first_sibling(siblings);
  for (int i = 0; each != nullptr && i < kFew; each = each->next, ++i) {
    if (each->schema == schema) return const_cast<lyd_node*>(each);
  }
  if (each != nullptr) succeeded(lyd_find_sibling_val(siblings, schema, nullptr, 0, &found));
  return found;
}

}  // namespace yfw
