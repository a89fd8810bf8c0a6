// What an edit will make of the configuration that is there.
#include <fmt/format.h>

#include <algorithm>

#include "framework/datastore/apply.h"
#include "framework/datastore/compare.h"
#include "framework/documents/documents.h"
#include "framework/edit/edit.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/rules.h"
#include "framework/vlan/trunk_text.h"
#include "framework/walk/environment.h"
#include "framework/walk/interfaces_walker.h"
#include "yfw-host/compare.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

lyd_node* child_of(const lyd_node* parent, const char* name) {
  return const_cast<lyd_node*>(child_named(parent, name));
}

void add_if_missing(lyd_node* config, const char* leaf, const std::string& value) {
  if (child_of(config, leaf) != nullptr) return;
  lyd_new_term(config, config->schema->module, leaf, value.c_str(), 0, nullptr);
}

lyd_node* config_of(lyd_node* entry) {
  lyd_node* config = child_of(entry, "config");
  if (config == nullptr) lyd_new_inner(entry, entry->schema->module, "config", 0, &config);
  return config;
}

}  // namespace

void complete(Data& data) {
  lyd_node* entry = nullptr;
  LY_LIST_FOR(lyd_child(data.get()), entry) {
    const std::string name = key_value(entry);
    lyd_node* const config = config_of(entry);
    add_if_missing(config, "name", name);
    add_if_missing(config, "type", fmt::format("iana-if-type:{}", type_of_interface(name)));
    lyd_node* const list = child_of(entry, "subinterfaces");
    lyd_node* sub = nullptr;
    LY_LIST_FOR(list == nullptr ? nullptr : lyd_child(list), sub) {
      add_if_missing(config_of(sub), "index", key_value(sub));
    }
  }
}

namespace {

// True when the request itself writes the leaf at this path.
bool request_writes(const EditDocument& document, const std::string& path) {
  lyd_node* found = nullptr;
  if (document.tree.empty() || lyd_find_path(document.tree.get(), path.c_str(), 0, &found) != LY_SUCCESS) return false;
  const Operation operation = effective_operation(found, document.default_operation);
  return !removes(operation) && operation != Operation::none;
}

// True when the request writes a leaf at or below the node.
bool request_writes_below(const EditDocument& document, const lyd_node* node) {
  if (is_term(node->schema)) return request_writes(document, path_of(node));
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (request_writes_below(document, child)) return true;
  }
  return false;
}

// The single form that a merge brings replaces the others.
void keep_one_form(const EditDocument& document, lyd_node* container, std::vector<Warning>& warnings) {
  std::vector<lyd_node*> forms;
  lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(container), child) {
    forms.push_back(child);
  }
  if (forms.size() < 2) return;
  const auto asked = std::find_if(forms.begin(), forms.end(),
                                  [&document](const lyd_node* form) { return request_writes_below(document, form); });
  if (asked == forms.end()) return;
  for (lyd_node* const form : forms) {
    if (form == *asked) continue;
    warnings.push_back({path_of(form), fmt::format("goes: '{}' takes its place", LYD_NAME(*asked))});
    lyd_free_tree(form);
  }
}

void keep_one_form_each(lyd_node* node, const EditDocument& document, std::vector<Warning>& warnings) {
  if (has_one_form(node)) {
    keep_one_form(document, node, warnings);
    return;
  }
  lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    keep_one_form_each(child, document, warnings);
  }
}

RpcError validation_error(const ly_ctx* models) {
  const Complaint complaint = last_complaint(models);
  // A node whose condition does not hold is none of the model (RFC 7950, section 8.3.2).
  const bool is_condition = complaint.message.starts_with("When condition");
  RpcError error{
      .tag = is_condition ? "unknown-element" : "invalid-value", .path = complaint.path, .message = complaint.message};
  const std::string_view leaf = std::string_view(error.path).substr(error.path.rfind('/') + 1);
  const std::string_view name = leaf.substr(leaf.find(':') + 1);
  error.bad_element = name.substr(0, name.find('['));
  const char* const words = is_condition ? condition_in_words(error.bad_element) : nullptr;
  if (words != nullptr) {
    error.message = words;
    return error;
  }
  if (!error.bad_element.empty()) error.message = fmt::format("'{}': {}", error.bad_element, error.message);
  return error;
}

bool is_for_plugin(const Data& data, const RpcError& error) {
  const lyd_node* const node = node_at(data, error.path);
  return node != nullptr && plugin_says_better(node);
}

}  // namespace

Expected expect(const Environment& environment, const EditDocument& document, const Data& before,
                std::vector<Warning>& warnings) {
  Expected expected{.data = before.clone(), .valid = true, .deferred = {}};
  apply_edit(expected.data, document.tree.get(), document.default_operation);
  lyd_node* top = nullptr;
  LY_LIST_FOR(expected.data.get(), top) {
    keep_one_form_each(top, document, warnings);
  }
  complete(expected.data);

  if (environment.validator->reach(expected.data.get()) == Reach::nowhere) return expected;
  const Data before_conditions = expected.data.clone();
  if (!environment.validator->validate(expected.data)) {
    RpcError error = validation_error(environment.models);
    if (!is_for_plugin(expected.data, error)) throw Refused(std::move(error));
    expected.deferred = std::move(error);
    expected.valid = false;
    return expected;
  }
  for (const Delta& gone : compare(before_conditions, expected.data, canonical_text)) {
    if (gone.is_present) continue;
    if (request_writes(document, gone.path)) {
      const std::string leaf = gone.path.substr(gone.path.find_last_of('/') + 1);
      throw Refused({.tag = "unknown-element",
                     .path = gone.path,
                     .message = fmt::format("'{}' cannot be set: its condition does not hold afterwards", leaf),
                     .bad_element = leaf.substr(0, leaf.find('['))});
    }
    warnings.push_back({gone.path, "goes: its condition no longer holds"});
  }
  return expected;
}

}  // namespace yfw
