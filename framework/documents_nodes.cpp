// Operations and paths of nodes, opaque ones included.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <array>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "framework/documents.h"
#include "framework/documents_source.h"
#include "framework/schema.h"

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

const lys_module* module_of(const lyd_node* node) {
  const lysc_node* const schema = schema_of(node);
  return schema == nullptr ? nullptr : schema->module;
}

}  // namespace

std::string leaf_name(std::string_view path) {
  // Values in the predicate of a leaf-list entry may hold anything.
  const std::size_t entry = path.ends_with(']') ? path.rfind("[.=") : std::string_view::npos;
  path = path.substr(0, entry);
  const std::string_view step = path.substr(path.rfind('/') + 1);
  return std::string(step.substr(step.find(':') + 1));
}

std::string predicate(std::string_view name, std::string_view value) {
  const char quote = value.find('\'') == std::string_view::npos ? '\'' : '"';
  return fmt::format("[{}={}{}{}]", name, quote, value, quote);
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
  if (node->schema == nullptr) {
    lyd_free_attr_single(models, find_attribute(node));
    if (text != nullptr) lyd_new_attr2(node, kNetconfNs, "nc:operation", text, nullptr);
    return;
  }
  lyd_free_meta_single(find_meta(node));
  if (text == nullptr) return;
  const lys_module* const netconf = ly_ctx_get_module_implemented(models, kNetconfModule);
  // A container that carries an operation is there for its own sake, not by default.
  constexpr ly_bool kNotDefault = 1;
  if (lyd_new_meta(models, node, netconf, kAttribute, text, kNotDefault, nullptr) != LY_SUCCESS) {
    throw std::runtime_error(fmt::format("no operation can be put on '{}'", LYD_NAME(node)));
  }
}

lyd_node* new_removed_leaf(lyd_node* parent, const lysc_node* leaf) {
  lyd_node* made = nullptr;
  if (lyd_new_opaq2(parent, leaf->module->ctx, leaf->name, nullptr, nullptr, leaf->module->ns, &made) != LY_SUCCESS) {
    throw std::runtime_error(fmt::format("'{}' cannot be made", leaf->name));
  }
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

std::string path_of(const lyd_node* node) {
  if (node == nullptr) return {};
  std::vector<const lyd_node*> steps;
  for (; node != nullptr; node = lyd_parent(node)) steps.push_back(node);
  std::string path;
  const lys_module* outer = nullptr;
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
    const lys_module* const module = module_of(*step);
    path += '/';
    if (module != nullptr && module != outer) path += fmt::format("{}:", module->name);
    outer = module;
    path += LYD_NAME(*step);
    const lysc_node* const schema = (*step)->schema;
    if (schema == nullptr) continue;
    if (schema->nodetype == LYS_LEAFLIST) path += predicate(".", lyd_get_value(*step));
    const lyd_node* key = nullptr;
    LY_LIST_FOR(schema->nodetype == LYS_LIST ? lyd_child(*step) : nullptr, key) {
      if (key->schema == nullptr || !lysc_is_key(key->schema)) break;
      path += predicate(LYD_NAME(key), lyd_get_value(key));
    }
  }
  return path;
}

}  // namespace yfw
