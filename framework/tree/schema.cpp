// Schema questions and the memory of paths.
#include "framework/tree/schema.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace yfw {

const lysc_node* find_child(const lysc_node* parent, const lys_module* module, std::string_view name, const char* ns) {
  const lysc_node* found = nullptr;
  const lysc_node* child = nullptr;
  const lysc_module* const compiled = parent == nullptr ? module->compiled : nullptr;
  while ((child = lys_getnext(child, parent, compiled, 0)) != nullptr) {
    if (name != child->name) continue;
    if (ns == nullptr || std::strcmp(namespace_of(child), ns) == 0) return child;
    if (found == nullptr) found = child;
  }
  return found;
}

const lysc_node* schema_of(const lyd_node* node) {
  if (node->schema != nullptr) return node->schema;
  const auto* const opaque = reinterpret_cast<const lyd_node_opaq*>(node);
  const ly_ctx* const models = opaque->ctx;
  // XML opaque nodes carry a namespace, JSON ones a module name, in the same member.
  const lys_module* module = nullptr;
  if (opaque->name.module_name != nullptr) {
    module = opaque->format == LY_VALUE_XML ? ly_ctx_get_module_implemented_ns(models, opaque->name.module_ns)
                                            : ly_ctx_get_module_implemented(models, opaque->name.module_name);
  }
  const lyd_node* const parent = lyd_parent(node);
  if (parent == nullptr) {
    return module == nullptr ? nullptr : find_child(nullptr, module, opaque->name.name, module->ns);
  }
  const lysc_node* const above = schema_of(parent);
  if (above == nullptr) return nullptr;
  const lysc_node* const found =
      find_child(above, nullptr, opaque->name.name, module == nullptr ? nullptr : module->ns);
  const bool same_module = found != nullptr && (module == nullptr || found->module == module);
  return same_module ? found : nullptr;
}

Complaint last_complaint(const ly_ctx* models) {
  const ly_err_item* const last = ly_err_last(models);
  if (last == nullptr) return {};
  Complaint complaint{last->msg == nullptr ? "" : last->msg, ""};
  // "Schema location "/...", data location "/...", line number 1."
  const std::string_view where = last->path == nullptr ? "" : last->path;
  constexpr std::string_view kData = "ata location \"";
  const std::size_t data = where.find(kData);
  if (data != std::string_view::npos) {
    const std::string_view path = where.substr(data + kData.size());
    complaint.path = path.substr(0, path.find("\", line"));
    complaint.path = complaint.path.substr(0, complaint.path.rfind("\"."));
  }
  return complaint;
}

const char* enumeration_namespace(const lysc_node* leaf) {
  // The parsed statement still names the typedef, which the compiled type has forgotten.
  const auto* const parsed = static_cast<const lysp_node*>(leaf->priv);
  if (parsed == nullptr) return namespace_of(leaf);
  const lysp_type& type = parsed->nodetype == LYS_LEAF ? reinterpret_cast<const lysp_node_leaf*>(parsed)->type
                                                       : reinterpret_cast<const lysp_node_leaflist*>(parsed)->type;
  const std::string_view name = type.name;
  const std::size_t colon = name.find(':');
  if (colon == std::string_view::npos) return type.pmod->mod->ns;
  const std::string_view prefix = name.substr(0, colon);
  LY_ARRAY_COUNT_TYPE i = 0;
  LY_ARRAY_FOR(type.pmod->imports, i) {
    if (prefix == type.pmod->imports[i].prefix) return type.pmod->imports[i].module->ns;
  }
  return type.pmod->mod->ns;
}

const lysc_node* key_of(const lysc_node* list) {
  const lysc_node* const first = lysc_node_child(list);
  return first != nullptr && lysc_is_key(first) ? first : nullptr;
}

const PathCache::Steps* PathCache::resolve(const char* path, const char* ns) {
  if (path == nullptr || *path == '\0') return nullptr;
  key_.assign(path).append(1, '\n').append(ns == nullptr ? "" : ns);
  const auto known = known_.find(key_);
  if (known != known_.end()) return known->second.empty() ? nullptr : &known->second;
  return remember(key_, nullptr, path, ns);
}

const PathCache::Steps* PathCache::resolve_below(const lysc_node* base, const char* path, const char* ns) {
  if (path == nullptr || *path == '\0') return nullptr;
  key_ = std::to_string(reinterpret_cast<std::uintptr_t>(base));
  key_.append(path).append(1, '\n').append(ns ? ns : "");
  const auto known = known_.find(key_);
  if (known != known_.end()) return known->second.empty() ? nullptr : &known->second;
  return remember(key_, base, path, ns);
}

const lysc_node* PathCache::top(std::string_view name) const {
  // Other modules have top-level nodes of the same names; only these are mapped.
  static constexpr std::array<const char*, 3> kRoots{kInterfacesModule, kNativeInterfaceModule, kNativeOperModule};
  for (const char* const root : kRoots) {
    const lys_module* const module = ly_ctx_get_module_implemented(models_, root);
    const lysc_node* const found = module == nullptr ? nullptr : find_child(nullptr, module, name, nullptr);
    if (found != nullptr) return found;
  }
  return nullptr;
}

const PathCache::Steps* PathCache::remember(std::string key, const lysc_node* base, std::string_view path,
                                            const char* ns) {
  Steps steps;
  const lysc_node* node = base;
  while (!path.empty()) {
    if (path.front() == '/') {
      path.remove_prefix(1);
      continue;
    }
    const std::string_view step = path.substr(0, path.find('/'));
    path.remove_prefix(step.size());
    const std::string_view name = step.substr(step.find(':') + 1);
    node = node == nullptr ? top(name) : find_child(node, nullptr, name, ns);
    if (node == nullptr) break;
    steps.push_back(node);
  }
  const bool right_module =
      node != nullptr && (ns == nullptr || steps.empty() || std::strcmp(namespace_of(node), ns) == 0);
  if (!right_module) steps.clear();
  const Steps& stored = known_.emplace(std::move(key), std::move(steps)).first->second;
  return stored.empty() ? nullptr : &stored;
}

}  // namespace yfw
