// The structure of data: containers, list entries and their keys, operations.
#include "framework/documents/build.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "framework/documents/envelope.h"
#include "framework/documents/source.h"
#include "framework/documents/types.h"
#include "framework/tree/nodes.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

constexpr char kXmlNs[] = "http://www.w3.org/XML/1998/namespace";

// What tells a new node from others of its kind below one parent: its value, its keys, or nothing.
std::string identity_of(const lyd_node* made, const lysc_node* schema) {
  if (schema->nodetype == LYS_LEAFLIST) return lyd_get_value(made);
  std::string keys;
  const lyd_node* key = nullptr;
  LY_LIST_FOR(schema->nodetype == LYS_LIST ? lyd_child(made) : nullptr, key) {
    keys += lyd_get_value(key);
    // No value holds this.
    keys += '\0';
  }
  return keys;
}

bool is_keyless(const lysc_node* schema) {
  return schema->nodetype == LYS_LIST && (schema->flags & LYS_KEYLESS) != 0;
}

// State may hold a value of a leaf-list more than once, and lists without a key (RFC 7950, sections 7.7 and 7.8.2).
bool may_repeat(const lysc_node* schema) {
  return is_keyless(schema) || (schema->nodetype == LYS_LEAFLIST && (schema->flags & LYS_CONFIG_R) != 0);
}

}  // namespace

bool Seen::add(const lysc_node* once) {
  if (std::find(once_.begin(), once_.end(), once) != once_.end()) return false;
  once_.push_back(once);
  return true;
}

std::size_t Seen::count(const lysc_node* list, const std::string& identity) {
  return ++entries_[list][identity];
}

std::string TreeBuilder::path(const Position& at, const lysc_node* schema) {
  const bool same = at.parent != nullptr && at.schema()->module == schema->module;
  std::string path =
      fmt::format("{}/{}{}", path_of(at.parent), same ? "" : fmt::format("{}:", schema->module->name), schema->name);
  // An entry that is refused has no node yet, but perhaps its keys.
  const lysc_node* key = schema->nodetype == LYS_LIST ? lysc_node_child(schema) : nullptr;
  for (; key != nullptr && lysc_is_key(key); key = key->next) {
    const Element* const given = find_key(key, *judged_);
    if (given != nullptr) path += predicate(key->name, given->value);
  }
  return path;
}

void TreeBuilder::refuse(const Position& at, const lysc_node* schema, const char* tag, std::string message) {
  throw Refused({.tag = tag, .path = path(at, schema), .message = std::move(message), .bad_element = schema->name});
}

void TreeBuilder::refuse_attribute(const Position& at, const lysc_node* schema, const char* tag,
                                   const Attribute& attribute, std::string message) {
  throw Refused({.tag = tag,
                 .path = path(at, schema),
                 .message = std::move(message),
                 .bad_element = schema->name,
                 .bad_attribute = attribute.name});
}

void TreeBuilder::check_alone(const Position& at, lyd_node* made, const lysc_node* schema) {
  const bool is_entry = (schema->nodetype & (LYS_LIST | LYS_LEAFLIST)) != 0;
  if (may_repeat(schema)) return;
  if (is_entry ? at.seen.count(schema, identity_of(made, schema)) == 1 : at.seen.add(schema)) return;
  RpcError error{.tag = "bad-element",
                 .path = path_of(made),
                 .message = fmt::format("{}'{}' stands here twice", is_entry ? "the entry of " : "", schema->name),
                 .bad_element = schema->name};
  discard(made);
  throw Refused(std::move(error));
}

lyd_node* TreeBuilder::attach(const Position& at, lyd_node* made) {
  if (at.parent == nullptr) lyd_insert_sibling(result_.tree.get(), made, result_.tree.out());
  attached_ = made;
  return made;
}

void TreeBuilder::build(const Element& content, Operation outer) {
  build_children(nullptr, outer, content);
}

void TreeBuilder::build_children(lyd_node* parent, Operation outer, const Element& element) {
  Seen seen;
  const Position at{parent, outer, seen};
  for (const Element* child = element.first; child != nullptr; child = child->next) {
    if (child->foreign != nullptr && foreign_ != nullptr) {
      build_foreign(at, *child);
      continue;
    }
    if (purpose_ != Purpose::state) {
      build_node(at, *child);
      continue;
    }
    try {
      build_node(at, *child);
    } catch (const Refused& refused) {
      ly_err_clean(resolver_.models(), nullptr);
      const RpcError& error = refused.error();
      result_.warnings.push_back({error.path, fmt::format("left out: {}", error.message)});
    }
  }
}

void TreeBuilder::build_foreign(const Position& at, const Element& element) {
  // The sibling before it is the node that was made last, or holds that.
  const lyd_node* before = attached_ == at.parent ? nullptr : attached_;
  while (before != nullptr && lyd_parent(before) != at.parent) before = lyd_parent(before);
  foreign_->emplace_back(element.ns, element.name, element.foreign, at.parent, before);
}

void TreeBuilder::build_node(const Position& at, const Element& element) {
  judged_ = &element;
  const lysc_node* const parent = at.schema();
  const lysc_node* const schema = resolver_.resolve(parent, element, at.parent);
  if (element.is_repeated) refuse(at, schema, "bad-element", fmt::format("'{}' stands here twice", schema->name));
  // The keys made the entry; they are not built again.
  if (lysc_is_key(schema)) return check_key(at, element);
  if (purpose_ != Purpose::state && (schema->flags & LYS_CONFIG_R) != 0) {
    refuse(at, schema, "invalid-value",
           fmt::format("'{}' is state (config false) and cannot be configured", schema->name));
  }
  check_shape(at, schema, element);
  if (element.kind == Kind::no_entries) return;
  switch (schema->nodetype) {
    case LYS_CONTAINER:
      return build_container(at, schema, element);
    case LYS_LIST:
      return build_entry(at, schema, element);
    default:
      return build_leaf(at, schema, element);
  }
}

void TreeBuilder::check_shape(const Position& at, const lysc_node* schema, const Element& element) {
  const bool inner = (schema->nodetype & (LYS_CONTAINER | LYS_LIST)) != 0;
  if (!inner && element.first != nullptr) {
    refuse(at, schema, "bad-element", fmt::format("'{}' holds a value, not elements", schema->name));
  }
  if (resolver_.source().format() == Format::xml) {
    if (inner && !element.is_blank()) {
      refuse(at, schema, "bad-element",
             fmt::format("'{}' holds elements, not the text {}", schema->name, quoted(element.value)));
    }
    return;
  }
  // A member that is only annotated has no value to be shaped wrongly.
  if (element.kind == Kind::nothing) return;
  const bool many = (schema->nodetype & (LYS_LIST | LYS_LEAFLIST)) != 0;
  const bool is_array = element.in_array || element.kind == Kind::no_entries ||
                        (element.kind == Kind::empty && schema->nodetype == LYS_LEAFLIST);
  if (many != is_array) {
    refuse(
        at, schema, "bad-element",
        fmt::format("'{}' {}", schema->name, many ? "is a list and wants an array" : "stands once and takes no array"));
  }
  if (element.kind == Kind::no_entries) return;
  if (inner != (element.kind == Kind::object)) {
    refuse(at, schema, "bad-element",
           fmt::format("'{}' wants {}", schema->name, inner ? "an object" : "a value, not an object"));
  }
}

void TreeBuilder::leave_attribute(const Position& at, const lysc_node* schema, const Attribute& attribute) {
  // The attributes of an element come with the last one first.
  if (left_attributes_.count++ != 0 && left_attributes_.element != judged_) return;
  left_attributes_ = {left_attributes_.count, judged_, path(at, schema), attribute.name};
}

std::optional<Operation> TreeBuilder::own_operation(const Position& at, const lysc_node* schema,
                                                    const Element& element) {
  std::optional<Operation> own;
  for (const Attribute* each = element.attributes; each != nullptr; each = each->next) {
    if (purpose_ == Purpose::edit && each->ns != nullptr && std::strcmp(each->ns, kXmlNs) == 0) continue;
    const bool ours = each->ns != nullptr && is_netconf(each->ns);
    const bool operation = (ours || each->ns == nullptr) && std::strcmp(each->name, "operation") == 0;
    if (purpose_ != Purpose::edit) {
      if (operation) {
        refuse_attribute(at, schema, "unknown-attribute", *each,
                         fmt::format("'{}' carries an operation, but this is data, not an edit", schema->name));
      }
      leave_attribute(at, schema, *each);
      continue;
    }
    if (!operation) {
      refuse_attribute(at, schema, "unknown-attribute", *each,
                       fmt::format("'{}' carries an attribute {} that is not known", schema->name, quoted(each->name)));
    }
    if (own.has_value()) {
      refuse_attribute(at, schema, "bad-attribute", *each, fmt::format("'{}' carries two operations", schema->name));
    }
    own = operation_named(each->value);
    if (!own.has_value()) {
      refuse_attribute(at, schema, "bad-attribute", *each,
                       fmt::format("'{}' carries the operation {}; allowed: merge, replace, create, delete, remove",
                                   schema->name, quoted(each->value)));
    }
    if (removes(at.outer) && !removes(*own)) {
      refuse_attribute(at, schema, "bad-attribute", *each,
                       fmt::format("'{}' carries the operation {}, but what it stands in goes; allowed: delete, remove",
                                   schema->name, quoted(each->value)));
    }
    if (!ours) {
      result_.warnings.push_back({path(at, schema), fmt::format("the operation \"{}\" is in no namespace; taken as "
                                                                "NETCONF's operation",
                                                                each->value)});
    }
  }
  return own;
}

void TreeBuilder::build_container(const Position& at, const lysc_node* schema, const Element& element) {
  const std::optional<Operation> own = own_operation(at, schema, element);
  const Operation effective = own.value_or(at.outer);
  lyd_node* node = nullptr;
  if (lyd_new_inner(at.parent, schema->module, schema->name, 0, &node) != LY_SUCCESS) {
    refuse(at, schema, "operation-failed", fmt::format("'{}' cannot be made", schema->name));
  }
  attach(at, node);
  check_alone(at, node, schema);
  if (own.has_value()) set_operation(node, *own);
  build_children(node, passed_down(effective), element);
}

const Element* TreeBuilder::find_key(const lysc_node* key, const Element& entry) {
  for (const Element* child = entry.first; child != nullptr; child = child->next) {
    if (std::strcmp(child->name, key->name) == 0 && child->ns != nullptr &&
        resolver_.module_of(child->ns) == key->module) {
      return child;
    }
  }
  return nullptr;
}

void TreeBuilder::build_entry(const Position& at, const lysc_node* schema, const Element& element) {
  const std::optional<Operation> own = own_operation(at, schema, element);
  const Operation effective = own.value_or(at.outer);
  constexpr std::size_t kMostKeys = 4;
  std::array<const char*, kMostKeys> keys{};
  std::size_t count = 0;
  for (const lysc_node* key = lysc_node_child(schema); key != nullptr && lysc_is_key(key); key = key->next) {
    const Element* const given = find_key(key, element);
    if (given == nullptr) {
      throw Refused({.tag = "missing-element",
                     .path = path(at, schema),
                     .message = fmt::format("an entry of '{}' has no key '{}'", schema->name, key->name),
                     .bad_element = key->name});
    }
    if (count == kMostKeys) {
      refuse(at, schema, "operation-not-supported", fmt::format("'{}' has too many keys", schema->name));
    }
    keys[count++] = given->value;
  }
  if (is_keyless(schema) && at.seen.count(schema, "") > kMostAlike) {
    refuse(at, schema, "bad-element",
           fmt::format("more than {} entries of '{}' stand here without a key", kMostAlike, schema->name));
  }
  lyd_node* node = nullptr;
  // As many keys are read as the list has.
  if (lyd_new_list(at.parent, schema->module, schema->name, 0, &node, keys[0], keys[1], keys[2], keys[3]) !=
      LY_SUCCESS) {
    std::size_t i = 0;
    for (const lysc_node* key = lysc_node_child(schema); i < count; key = key->next, ++i) {
      const LY_ERR valid =
          lyd_value_validate(resolver_.models(), key, keys[i], std::strlen(keys[i]), nullptr, nullptr, nullptr);
      if (valid == LY_SUCCESS || valid == LY_EINCOMPLETE) continue;
      std::string where = fmt::format("{}/{}", path(at, schema), key->name);
      judged_ = find_key(key, element);
      throw Refused({.tag = "invalid-value",
                     .path = std::move(where),
                     .message = fmt::format("'{}' is {}; allowed: {}", key->name, quoted(keys[i]),
                                            allowed_values(real_type(key))),
                     .bad_element = key->name});
    }
    refuse(at, schema, "operation-failed", fmt::format("an entry of '{}' cannot be made", schema->name));
  }
  attach(at, node);
  check_alone(at, node, schema);
  if (own.has_value()) set_operation(node, *own);
  build_children(node, passed_down(effective), element);
}

void TreeBuilder::check_key(const Position& at, const Element& key) {
  lyd_node* made = lyd_child(at.parent);
  while (std::strcmp(LYD_NAME(made), key.name) != 0) made = made->next;
  check_shape(at, made->schema, key);
  // The first one made the entry.
  if (!at.seen.add(made->schema)) {
    refuse(at, made->schema, "bad-element", fmt::format("the key '{}' stands here twice", key.name));
  }
  check_writing(at, made, key);
  const std::optional<Operation> own = own_operation(at, made->schema, key);
  if (own.has_value() && removes(*own) != removes(at.outer)) {
    refuse_attribute(at, made->schema, "bad-attribute", *key.attributes,
                     fmt::format("the key '{}' takes no operation; it belongs on its entry", key.name));
  }
}

}  // namespace yfw
