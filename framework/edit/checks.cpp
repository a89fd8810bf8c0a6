// What is refused before a plug-in sees it: unmapped parts, disagreeing names, two forms of one match.
#include <fmt/format.h>

#include <cstring>
#include <map>

#include "framework/datastore/apply.h"
#include "framework/documents/documents.h"
#include "framework/edit/edit.h"
#include "framework/read/mapped_leaves.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/rules.h"
#include "framework/walk/environment.h"
#include "framework/walk/interfaces_walker.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

bool named(const lysc_node* schema, const char* name) {
  return std::strcmp(schema->name, name) == 0;
}

struct ClaimCheck {
  const Environment& environment;
  MappedLeaves& leaves;
  EditDocument& document;
  bool ignore_unmapped = false;
  const lyd_node* unmapped = nullptr;

  void drop(lyd_node* node) const {
    const std::string path = path_of(node);
    const std::string message = fmt::format("'{}' is mapped by nobody", LYD_NAME(node));
    if (!ignore_unmapped) {
      throw Refused({.tag = "operation-not-supported",
                     .path = path,
                     .message = message + "; --ignore-unmapped leaves such parts out",
                     .bad_element = LYD_NAME(node)});
    }
    document.warnings.push_back({path, message + ", left out"});
    if (document.tree.get() == node) document.tree.reset(nullptr_or_next(node));
    lyd_free_tree(node);
  }

  lyd_node* nullptr_or_next(lyd_node* node) const {
    lyd_node* const next = node->next;
    document.tree.release();
    return next;
  }

  // What has a dot in its name is a sub-interface natively, and would be taken for it.
  static void check_name(const lyd_node* node) {
    if (node->schema == nullptr || !named(node->schema, "name") || !lysc_is_key(node->schema)) return;
    const std::string_view given = lyd_get_value(node);
    if (!given.empty() && given.find('.') == std::string_view::npos) return;
    throw Refused({.tag = "invalid-value",
                   .path = path_of(node),
                   .message = given.empty() ? "'name' of an interface is empty"
                                            : fmt::format("'name' of an interface is \"{}\", with a dot: a "
                                                          "sub-interface is asked for by its 'index'",
                                                          given),
                   .bad_element = "name"});
  }

  // A leaf that repeats what the entry says already must say the same.
  void check_answered(const lyd_node* node, Operation operation) const {
    const lysc_node* const schema = node->schema;
    if (schema == nullptr || schema->parent == nullptr || !named(schema->parent, "config")) return;
    if (claim_of(schema) != Claim::framework) return;
    const lyd_node* const entry = &node->parent->parent->node;
    const bool is_type = named(schema, "type");
    if (!is_type && !named(schema, "name") && !named(schema, "index")) return;
    const char* const key = key_value(entry);
    const std::string wanted = is_type ? type_of_interface(key) : key;
    std::string given = lyd_get_value(node);
    if (is_type) given = given.substr(given.find(':') + 1);
    if (removes(operation)) {
      throw Refused({.tag = "operation-not-supported",
                     .path = path_of(node),
                     .message = fmt::format("'{}' is given by the interface and cannot be removed", schema->name),
                     .bad_element = schema->name});
    }
    if (given == wanted) return;
    throw Refused(
        {.tag = "invalid-value",
         .path = path_of(node),
         .message = fmt::format("'{}' is \"{}\", but for {} only \"{}\" is possible", schema->name, given, key, wanted),
         .bad_element = schema->name});
  }

  void check(lyd_node* node, Operation outer) {
    const Operation operation = operation_of(node, outer);
    const lysc_node* const schema = schema_of(node);
    const Claim claim = schema == nullptr ? Claim::nobody : claim_of(schema);
    if (claim == Claim::nobody) {
      if (!asks_for_nothing(node, operation)) drop(node);
      return;
    }
    if (claim == Claim::plugin && is_term(schema) && !leaves.is_mapped(environment, schema)) {
      if (ignore_unmapped) return drop(node);
      // Below what goes as a whole nobody is asked.
      if (unmapped == nullptr && !removes(outer)) unmapped = node;
    }
    check_name(node);
    check_answered(node, operation);
    lyd_node* child = first_child(node);
    while (child != nullptr) {
      lyd_node* const next = child->next;
      check(child, operation);
      child = next;
    }
  }
};

// Whether anything below a form of match is written by the edit.
bool writes(const lyd_node* node, Operation outer) {
  const Operation operation = operation_of(node, outer);
  if (removes(operation)) return false;
  const lysc_node* const schema = schema_of(node);
  if (schema != nullptr && is_term(schema)) return true;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(first_child(node), child) {
    if (writes(child, operation)) return true;
  }
  return false;
}

void find_forms(const lyd_node* node, Operation outer, std::map<std::string, std::string>& form_of) {
  if (node->schema == nullptr) return;
  const Operation operation = operation_of(node, outer);
  const lyd_node* child = nullptr;
  if (!has_one_form(node)) {
    LY_LIST_FOR(lyd_child(node), child) {
      find_forms(child, operation, form_of);
    }
    return;
  }
  LY_LIST_FOR(lyd_child(node), child) {
    if (!writes(child, operation)) continue;
    const auto [known, first] = form_of.emplace(path_of(node), LYD_NAME(child));
    if (first || known->second == LYD_NAME(child)) continue;
    throw Refused({.tag = "invalid-value",
                   .path = path_of(node),
                   .message = fmt::format("'{}' and '{}' in one request: a sub-interface has one match", known->second,
                                          LYD_NAME(child)),
                   .bad_element = LYD_NAME(child)});
  }
}

}  // namespace

const lyd_node* check_claims(const Environment& environment, MappedLeaves& leaves, EditDocument& document,
                             bool ignore_unmapped) {
  ClaimCheck check{environment, leaves, document, ignore_unmapped};
  lyd_node* node = document.tree.get();
  while (node != nullptr) {
    lyd_node* const next = node->next;
    check.check(node, document.default_operation);
    node = next;
  }
  return check.unmapped;
}

void check_one_form(const EditDocument& document) {
  std::map<std::string, std::string> form_of;
  const lyd_node* node = nullptr;
  LY_LIST_FOR(document.tree.get(), node) {
    find_forms(node, document.default_operation, form_of);
  }
}

}  // namespace yfw
