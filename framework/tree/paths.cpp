// Instance paths. libyang's own have no names for opaque nodes and predicates for entries without keys.
#include "framework/tree/paths.h"

#include <libyang/libyang.h>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"

namespace yfw {

InstancePath::InstancePath(const lyd_node* node) {
  if (node == nullptr) return;
  *this = InstancePath(lyd_parent(node));
  const lysc_node* const known = schema_of(node);
  step(known == nullptr ? nullptr : known->module, LYD_NAME(node));
  if (node->schema == nullptr) return;
  if (node->schema->nodetype == LYS_LEAFLIST) predicate(".", lyd_get_value(node));
  const lyd_node* key = nullptr;
  LY_LIST_FOR(node->schema->nodetype == LYS_LIST ? lyd_child(node) : nullptr, key) {
    if (key->schema == nullptr || !lysc_is_key(key->schema)) break;
    predicate(LYD_NAME(key), lyd_get_value(key));
  }
}

InstancePath& InstancePath::step(const lys_module* module, std::string_view name) {
  text_ += '/';
  if (module != nullptr && module != module_) text_.append(module->name) += ':';
  module_ = module;
  text_ += name;
  return *this;
}

InstancePath& InstancePath::predicate(std::string_view name, std::string_view value) {
  const char quote = value.find('\'') == std::string_view::npos ? '\'' : '"';
  text_.append(1, '[').append(name).append(1, '=').append(1, quote).append(value).append(1, quote) += ']';
  return *this;
}

std::string predicate(std::string_view name, std::string_view value) {
  return InstancePath().predicate(name, value).take();
}

std::string path_of(const lyd_node* node) {
  return InstancePath(node).take();
}

}  // namespace yfw
