// The output of a walk as libyang data, as a native edit, and as a list of paths.
#include <fmt/format.h>

#include <cstring>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/walk/output_tree.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

// Identity values are written with their module's name in front, as libyang reads them; that text is put in `made`.
const char* lexical_value(const OutputNode& node, std::string& made) {
  if (node.data.value == nullptr) return "";
  const lysc_type* const type = reinterpret_cast<const lysc_node_leaf*>(node.schema)->type;
  if (type->basetype != LY_TYPE_IDENT || node.data.value_ns == nullptr) return node.data.value;
  const lys_module* const module = ly_ctx_get_module_implemented_ns(node.schema->module->ctx, node.data.value_ns);
  if (module == nullptr) return node.data.value;
  made.append(module->name).append(1, ':').append(node.data.value);
  return made.c_str();
}

std::string quoted(std::string_view key) {
  const char quote = key.find('\'') == std::string_view::npos ? '\'' : '"';
  return fmt::format("{}{}{}", quote, key, quote);
}

// A step as an instance path names it. Entries that stand for all have no predicate, or one on the parent's name.
std::string step_of(const OutputNode& node) {
  const bool first = node.parent->schema == nullptr || node.parent->schema->module != node.schema->module;
  std::string step = first ? fmt::format("/{}:{}", node.schema->module->name, node.schema->name)
                           : fmt::format("/{}", node.schema->name);
  if (!is_list(node.schema) || node.key.empty() || node.key == OutputTree::kAny) return step;
  const char* const key_name = key_of(node.schema)->name;
  const bool all_below = node.key.size() > 2 && node.key.ends_with(".*");
  if (node.key == "*.*") return step;
  if (all_below) {
    return step + fmt::format("[starts-with({},{})]", key_name, quoted(node.key.substr(0, node.key.size() - 1)));
  }
  return step + fmt::format("[{}={}]", key_name, quoted(node.key));
}

std::string path_to(const OutputNode& node) {
  return node.parent == nullptr ? std::string() : path_to(*node.parent) + step_of(node);
}

struct Writer {
  bool as_edit;
  std::vector<Warning>* warnings;  // null in an edit, which refuses instead

  void failed(const OutputNode& node, const std::string& reason) const {
    const std::string path = path_to(node);
    if (warnings != nullptr) {
      warnings->push_back({path, fmt::format("left out: {}", reason)});
      return;
    }
    throw Refused({.tag = "invalid-value", .path = path, .message = reason, .bad_element = node.schema->name});
  }

  std::string last_reason(const OutputNode& node) const {
    const ly_err_item* const last = ly_err_last(node.schema->module->ctx);
    const std::string why = last == nullptr || last->msg == nullptr ? "" : last->msg;
    return fmt::format("'{}' cannot hold \"{}\"{}{}", node.schema->name, node.data.value, why.empty() ? "" : ": ", why);
  }

  lyd_node* write_term(const OutputNode& node, lyd_node* parent) const {
    if (node.mark == Mark::remove) return new_removed_leaf(parent, node.schema);
    if (node.data.value == nullptr) {
      // An empty leaf has no value to leave out.
      if (reinterpret_cast<const lysc_node_leaf*>(node.schema)->type->basetype != LY_TYPE_EMPTY) {
        failed(node, fmt::format("'{}' was given no value", node.schema->name));
        return nullptr;
      }
    }
    std::string made_value;
    const char* const value = lexical_value(node, made_value);
    lyd_node* made = nullptr;
    if (lyd_new_term(parent, node.schema->module, node.schema->name, value, 0, &made) != LY_SUCCESS) {
      failed(node, last_reason(node));
      return nullptr;
    }
    return made;
  }

  lyd_node* write_inner(const OutputNode& node, lyd_node* parent) const {
    lyd_node* made = nullptr;
    LY_ERR result = LY_SUCCESS;
    if (is_list(node.schema)) {
      if (key_of(node.schema) != nullptr && node.key.empty()) {
        failed(node, fmt::format("the entry of '{}' has no key", node.schema->name));
        return nullptr;
      }
      result = lyd_new_list(parent, node.schema->module, node.schema->name, 0, &made, node.key.c_str());
    } else {
      result = lyd_new_inner(parent, node.schema->module, node.schema->name, 0, &made);
    }
    if (result != LY_SUCCESS) {
      failed(node, fmt::format("'{}' cannot be \"{}\"", node.schema->name, node.key));
      return nullptr;
    }
    return made;
  }

  bool is_entry_key(const OutputNode& node) const {
    return node.schema->nodetype == LYS_LEAF && lysc_is_key(node.schema);
  }

  bool is_repeated(const OutputNode& node, lyd_node* parent) const {
    if (node.schema->nodetype != LYS_LEAFLIST || node.data.value == nullptr) return false;
    lyd_node* found = nullptr;
    return lyd_find_sibling_val(lyd_child(parent), node.schema, node.data.value, 0, &found) == LY_SUCCESS;
  }

  void write(const OutputNode& node, lyd_node* parent, lyd_node** first) const {
    if (parent != nullptr && is_entry_key(node)) return;
    if (parent != nullptr && is_repeated(node, parent)) {
      failed(node, fmt::format("\"{}\" is there already", node.data.value));
      return;
    }
    lyd_node* const made = is_term(node.schema) ? write_term(node, parent) : write_inner(node, parent);
    if (made == nullptr) return;
    if (parent == nullptr) lyd_insert_sibling(*first, made, first);
    if (as_edit && node.mark == Mark::replace) set_operation(made, Operation::replace);
    if (as_edit && node.mark == Mark::remove) set_operation(made, Operation::remove);
    for (const OutputNode* const each : node.children) write(*each, made, nullptr);
  }
};

Data write_all(const OutputTree& output, const Writer& writer) {
  Data data;
  for (const OutputNode* const each : output.top().children) writer.write(*each, nullptr, data.out());
  return data;
}

void collect(const OutputNode& node, std::vector<std::string>& paths) {
  if (node.asked) paths.push_back(path_to(node));
  for (const OutputNode* const each : node.children) collect(*each, paths);
}

}  // namespace

Data to_edit(const OutputTree& output) {
  return write_all(output, {true, nullptr});
}

Data to_data(const OutputTree& output, std::vector<Warning>& warnings) {
  return write_all(output, {false, &warnings});
}

std::vector<std::string> to_paths(const OutputTree& output) {
  std::vector<std::string> paths;
  for (const OutputNode* const each : output.top().children) collect(*each, paths);
  return paths;
}

}  // namespace yfw
