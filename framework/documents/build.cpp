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

Identity identity_of(const lyd_node* made, const lysc_node* schema) {
  Identity identity{};
  if (schema->nodetype == LYS_LEAFLIST) {
    identity.front() = lyd_get_value(made);
    return identity;
  }
  const lyd_node* key = lyd_child(made);
  // Entries have no more keys, and nothing else yet.
  for (std::size_t i = 0; key != nullptr && i < identity.size(); key = key->next, ++i) identity[i] = lyd_get_value(key);
  return identity;
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

std::size_t Seen::Hash::operator()(const Entry& entry) const {
  return hash_of(entry.list, entry.identity[0], entry.identity[1], entry.identity[2], entry.identity[3]);
}

std::size_t Seen::count(const lysc_node* list, const Identity& identity) {
  return ++entries_[{list, identity}];
}

TreeBuilder::TreeBuilder(ly_ctx* models, Format format, Purpose purpose, EditDocument& result)
    : resolver_(models, format),
      purpose_(purpose),
      result_(result),
      search_(purpose == Purpose::edit ? Envelope::edit : Envelope::data) {
  ly_err_clean(models, nullptr);
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

void TreeBuilder::check_alone(Position& at, lyd_node* made, const lysc_node* schema) {
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

bool TreeBuilder::begins_in(const Element& parent, const Element& child) {
  if (content_ != nullptr || !search_.is_content(parent, child)) return false;
  found(parent);
  open_.push_back({&parent, Position{nullptr, Operation::merge}});
  return true;
}

void TreeBuilder::found(const Element& content) {
  content_ = &content;
  is_bare_xml_ = resolver_.format() == Format::xml && *content.name == '\0';
}

bool TreeBuilder::goes_on_in(const Element& parent) {
  std::optional<Position>& outer = open_.back().position;
  std::optional<Position> made;
  if (outer.has_value() && !refused_.has_value()) {
    const lysc_node* const schema = resolver_.find(outer->schema(), parent);
    if (schema == nullptr || !is_complete_enough(schema, parent)) return false;
    attempt([&] { made = make_node(*outer, parent); });
    if (made.has_value()) build_children(*made, parent);
  }
  open_.push_back({&parent, std::move(made)});
  return true;
}

bool TreeBuilder::is_complete_enough(const lysc_node* schema, const Element& element) {
  if (schema->nodetype == LYS_CONTAINER) return true;
  const lysc_node* const key = schema->nodetype == LYS_LIST ? lysc_node_child(schema) : nullptr;
  const bool has_one_key = key != nullptr && lysc_is_key(key) && (key->next == nullptr || !lysc_is_key(key->next));
  return has_one_key && find_key(key, element) != nullptr;
}

void TreeBuilder::take(const Element& element) {
  if (open_.back().element == &element) return open_.pop_back();
  std::optional<Position>& at = open_.back().position;
  if (at.has_value()) build_child(*at, element);
}

void TreeBuilder::finish(const Element& content) {
  // Rarely, the end of a document tells what its beginning is.
  if (content_ != nullptr && content_ != &content) restart();
  found(content);
  Position top{nullptr, Operation::merge};
  build_children(top, content);
  if (refused_.has_value()) throw Refused(refused_->error);
}

void TreeBuilder::restart() {
  result_.tree.reset();
  result_.warnings.clear();
  result_.value_namespaces.clear();
  if (foreign_ != nullptr) foreign_->clear();
  left_attributes_ = {};
  attached_ = nullptr;
  refused_.reset();
}

template <typename Step>
bool TreeBuilder::attempt(const Step& step) {
  if (refused_.has_value()) return false;
  try {
    step();
    return true;
  } catch (const Refused& refused) {
    const RpcError& error = refused.error();
    if (purpose_ == Purpose::state) {
      ly_err_clean(resolver_.models(), nullptr);
      result_.warnings.push_back({error.path, fmt::format("left out: {}", error.message)});
    } else {
      refused_ = {error, judged_->line};
    }
    return false;
  }
}

void TreeBuilder::build_children(Position& at, const Element& element) {
  for (const Element* child = element.first; child != nullptr; child = child->next) build_child(at, *child);
}

void TreeBuilder::build_child(Position& at, const Element& element) {
  // A root element of another model is another document. JSON has no such root.
  const bool is_root = at.parent == nullptr && is_bare_xml_;
  if (element.foreign != nullptr && foreign_ != nullptr && !is_root) {
    if (!refused_.has_value()) build_foreign(at, element);
    return;
  }
  std::optional<Position> made;
  attempt([&] { made = make_node(at, element); });
  if (made.has_value()) build_children(*made, element);
}

void TreeBuilder::build_foreign(const Position& at, const Element& element) {
  // The sibling before it is the node that was made last, or holds that.
  const lyd_node* before = attached_ == at.parent ? nullptr : attached_;
  while (before != nullptr && lyd_parent(before) != at.parent) before = lyd_parent(before);
  foreign_->emplace_back(element.ns, element.name, element.foreign, at.parent, before);
}

std::optional<TreeBuilder::Position> TreeBuilder::make_node(Position& at, const Element& element) {
  judged_ = &element;
  ++judged_count_;
  const lysc_node* const schema = resolver_.resolve(at.schema(), element, at.parent);
  if (element.is_repeated) refuse(at, schema, "bad-element", fmt::format("'{}' stands here twice", schema->name));
  // The keys made the entry; they are not built again.
  if (lysc_is_key(schema)) {
    check_key(at, element);
    return std::nullopt;
  }
  if (purpose_ != Purpose::state && (schema->flags & LYS_CONFIG_R) != 0) {
    refuse(at, schema, "invalid-value",
           fmt::format("'{}' is state (config false) and cannot be configured", schema->name));
  }
  check_shape(at, schema, element);
  if (element.kind == Kind::no_entries) return std::nullopt;
  if (schema->nodetype == LYS_CONTAINER) return make_container(at, schema, element);
  if (schema->nodetype == LYS_LIST) return make_entry(at, schema, element);
  build_leaf(at, schema, element);
  return std::nullopt;
}

void TreeBuilder::check_shape(const Position& at, const lysc_node* schema, const Element& element) {
  const bool inner = (schema->nodetype & (LYS_CONTAINER | LYS_LIST)) != 0;
  if (!inner && element.first != nullptr) {
    refuse(at, schema, "bad-element", fmt::format("'{}' holds a value, not elements", schema->name));
  }
  if (resolver_.format() == Format::xml) {
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
  if (left_attributes_.count++ != 0 && left_attributes_.judged != judged_count_) return;
  left_attributes_ = {left_attributes_.count, judged_count_, path(at, schema), attribute.name};
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

TreeBuilder::Position TreeBuilder::make_container(Position& at, const lysc_node* schema, const Element& element) {
  const std::optional<Operation> own = own_operation(at, schema, element);
  const Operation effective = own.value_or(at.outer);
  lyd_node* node = nullptr;
  if (lyd_new_inner(at.parent, schema->module, schema->name, 0, &node) != LY_SUCCESS) {
    refuse(at, schema, "operation-failed", fmt::format("'{}' cannot be made", schema->name));
  }
  attach(at, node);
  check_alone(at, node, schema);
  if (own.has_value()) set_operation(node, *own);
  return {node, passed_down(effective)};
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

TreeBuilder::Position TreeBuilder::make_entry(Position& at, const lysc_node* schema, const Element& element) {
  const std::optional<Operation> own = own_operation(at, schema, element);
  const Operation effective = own.value_or(at.outer);
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
  if (is_keyless(schema) && at.seen.count(schema, {}) > kMostAlike) {
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
  return {node, passed_down(effective)};
}

void TreeBuilder::check_key(Position& at, const Element& key) {
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
