// The values of data: leaves, leaf-lists, identities and enumerations.
#include <fmt/format.h>

#include <cstring>

#include "framework/documents/build.h"
#include "framework/documents/source.h"
#include "framework/documents/types.h"
#include "framework/tree/nodes.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

bool is_given(const Element& element) {
  return (element.kind == Kind::text && !element.is_blank()) || element.kind == Kind::number ||
         element.kind == Kind::boolean;
}

}  // namespace

void TreeBuilder::refuse_value(const Position& at, const lysc_node* schema, const char* value) {
  refuse(at, schema, "invalid-value",
         fmt::format("'{}' is {}; allowed: {}", schema->name, quoted(value), allowed_values(real_type(schema))));
}

lyd_node* TreeBuilder::try_term(const Position& at, const lysc_node* schema, const char* value) {
  lyd_node* made = nullptr;
  if (lyd_new_term(at.parent, schema->module, schema->name, value, 0, &made) == LY_SUCCESS) return attach(at, made);
  ly_err_clean(resolver_.models(), nullptr);
  return nullptr;
}

BoundName TreeBuilder::bind(const Position& at, const lysc_node* schema, const Element& element) {
  const std::string_view value = element.value;
  const std::size_t colon = value.find(':');
  const bool xml = resolver_.format() == Format::xml;
  if (colon == std::string_view::npos) {
    const char* const around = xml ? Source::bound(element, "") : nullptr;
    const lys_module* const module = xml ? (around == nullptr ? nullptr : resolver_.module_of(around)) : schema->module;
    return {element.value, module, false};
  }
  const std::string prefix(value.substr(0, colon));
  const char* const name = element.value + colon + 1;
  if (!xml) {
    const lys_module* const module = ly_ctx_get_module_implemented(resolver_.models(), prefix.c_str());
    if (module != nullptr) return {name, module, true};
    refuse(at, schema, "invalid-value",
           fmt::format("'{}' is {}, but no loaded model is called '{}'; allowed: {}", schema->name, quoted(value),
                       prefix, allowed_values(real_type(schema))));
  }
  const char* const ns = Source::bound(element, prefix);
  const lys_module* const module = ns == nullptr ? nullptr : resolver_.module_of(ns);
  if (module != nullptr) return {name, module, true};
  refuse(at, schema, "invalid-value",
         fmt::format("'{}' is {}, but {}; allowed: {}", schema->name, quoted(value),
                     ns == nullptr
                         ? fmt::format("the prefix '{}' is not declared", prefix)
                         : fmt::format("the prefix '{}' means {}, which no loaded model has", prefix, quoted(ns)),
                     allowed_values(real_type(schema))));
}

lyd_node* TreeBuilder::make_identity(const Position& at, const lysc_node* schema, const Element& element) {
  if (element.kind != Kind::text) refuse_value(at, schema, element.value);
  const BoundName bound = bind(at, schema, element);
  if (bound.module != nullptr) {
    const std::string canonical = fmt::format("{}:{}", bound.module->name, bound.name);
    lyd_node* const made = try_term(at, schema, canonical.c_str());
    if (made != nullptr) return made;
  }
  if (purpose_ != Purpose::edit) refuse_value(at, schema, element.value);
  lyd_node* open = nullptr;
  if (lyd_new_opaq2(at.parent, resolver_.models(), schema->name, element.value, nullptr, schema->module->ns, &open) !=
      LY_SUCCESS) {
    refuse_value(at, schema, element.value);
  }
  result_.value_namespaces[open] = bound.is_prefixed ? bound.module->ns : nullptr;
  return attach(at, open);
}

lyd_node* TreeBuilder::make_enumeration(const Position& at, const lysc_node* schema, const Element& element) {
  lyd_node* made = try_term(at, schema, element.value);
  if (made != nullptr) return made;
  if (purpose_ != Purpose::edit || std::strchr(element.value, ':') == nullptr) {
    refuse_value(at, schema, element.value);
  }
  const BoundName bound = bind(at, schema, element);
  made = try_term(at, schema, bound.name);
  if (made == nullptr) refuse_value(at, schema, element.value);
  result_.value_namespaces[made] = bound.module->ns;
  return made;
}

void TreeBuilder::discard(lyd_node* node) {
  if (node == result_.tree.get()) *result_.tree.out() = node->next;
  lyd_free_tree(node);
}

// Numbers, texts and booleans look different in JSON, and a wrong look is a wrong value.
void TreeBuilder::check_writing(const Position& at, lyd_node* made, const Element& element) {
  if (resolver_.format() != Format::json || made->schema == nullptr) return;
  const std::string_view wanted = wanted_in_json(reinterpret_cast<const lyd_node_term*>(made), element.kind);
  if (wanted.empty()) return;
  std::string_view written;
  if (element.kind == Kind::text) written = "the text ";
  if (element.kind == Kind::number) written = "the number ";
  refuse(at, made->schema, "invalid-value",
         fmt::format("'{}' is {}{}; JSON wants {} here", made->schema->name, written, quoted(element.value), wanted));
}

void TreeBuilder::build_leaf(Position& at, const lysc_node* schema, const Element& element) {
  const std::optional<Operation> own = own_operation(at, schema, element);
  const Operation effective = own.value_or(at.outer);
  lyd_node* const made =
      removes(effective) && !is_given(element) ? make_removed(at, schema) : make_leaf(at, schema, element);
  check_alone(at, made, schema);
  set_operation(made, own.value_or(Operation::none));
}

lyd_node* TreeBuilder::make_removed(const Position& at, const lysc_node* schema) {
  if (schema->nodetype != LYS_LEAF) {
    refuse(at, schema, "missing-element",
           fmt::format("'{}' is a leaf-list: say which of its values goes", schema->name));
  }
  return attach(at, new_removed_leaf(at.parent, schema));
}

lyd_node* TreeBuilder::make_leaf(const Position& at, const lysc_node* schema, const Element& element) {
  const lysc_type* const type = real_type(schema);
  const bool unwritten = element.kind == Kind::null || element.kind == Kind::empty || element.kind == Kind::nothing;
  if (unwritten && resolver_.format() == Format::json && type->basetype != LY_TYPE_EMPTY) {
    refuse(at, schema, "invalid-value",
           fmt::format("'{}' has no value; allowed: {}", schema->name, allowed_values(type)));
  }
  lyd_node* made = nullptr;
  if (type->basetype == LY_TYPE_IDENT && is_given(element)) {
    made = make_identity(at, schema, element);
  } else if (type->basetype == LY_TYPE_ENUM) {
    made = make_enumeration(at, schema, element);
  } else {
    made = try_term(at, schema, element.value);
    if (made == nullptr) refuse_value(at, schema, element.value);
  }
  try {
    check_writing(at, made, element);
  } catch (const Refused&) {
    discard(made);
    throw;
  }
  return made;
}

}  // namespace yfw
