// Names of elements looked up in the models.
#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "framework/documents/build.h"
#include "framework/documents/envelope.h"
#include "framework/documents/source.h"
#include "framework/documents/types.h"
#include "framework/tree/nodes.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

constexpr std::size_t kMostShown = 12;

bool is_data(const lysc_node* node) {
  return (node->nodetype & (LYS_CONTAINER | LYS_LIST | LYS_LEAF | LYS_LEAFLIST)) != 0;
}

const lysc_node* child_in(const lysc_node* parent, const lys_module* module, const char* name) {
  const lysc_node* child = nullptr;
  while ((child = lys_getnext(child, parent, parent == nullptr ? module->compiled : nullptr, 0)) != nullptr) {
    if (child->module == module && is_data(child) && std::strcmp(child->name, name) == 0) return child;
  }
  return nullptr;
}

// The module of a child with this name, whatever module that is; null when there is none.
const lys_module* home_of(const lysc_node* parent, const char* name) {
  const lysc_node* child = nullptr;
  while (parent != nullptr && (child = lys_getnext(child, parent, nullptr, 0)) != nullptr) {
    if (is_data(child) && std::strcmp(child->name, name) == 0) return child->module;
  }
  return nullptr;
}

std::string children_of(const lysc_node* parent, const lys_module* module) {
  std::string names;
  std::size_t count = 0;
  const lysc_node* child = nullptr;
  while ((child = lys_getnext(child, parent, parent == nullptr ? module->compiled : nullptr, 0)) != nullptr) {
    if (!is_data(child)) continue;
    if (++count <= kMostShown) names += fmt::format("{}{}", names.empty() ? "" : ", ", child->name);
  }
  if (count > kMostShown) names += fmt::format(" and {} more", count - kMostShown);
  return names;
}

}  // namespace

const lys_module* Resolver::module_of(const char* ns) {
  const auto known = modules_.find(ns);
  if (known != modules_.end()) return known->second;
  const lys_module* const module = format_ == Format::xml ? ly_ctx_get_module_implemented_ns(models_, ns)
                                                          : ly_ctx_get_module_implemented(models_, ns);
  modules_.emplace(ns, module);
  return module;
}

std::size_t Resolver::Hash::operator()(const Name& name) const {
  return hash_of(name.parent, name.ns, name.name);
}

const lysc_node* Resolver::find(const lysc_node* parent, const Element& element) {
  const auto [known, added] = known_.try_emplace({parent, element.ns, element.name});
  if (added && element.ns != nullptr) {
    const lys_module* const module = module_of(element.ns);
    if (module != nullptr) known->second = child_in(parent, module, element.name);
  }
  return known->second;
}

const lysc_node* Resolver::resolve(const lysc_node* parent, const Element& element, const lyd_node* above) {
  const lysc_node* const found = find(parent, element);
  if (found != nullptr) return found;

  const lys_module* const module = element.ns == nullptr ? nullptr : module_of(element.ns);
  const bool xml = format_ == Format::xml;
  const std::string path = path_of(above);
  RpcError error{.tag = "unknown-namespace",
                 .path = fmt::format("{}/{}", path, element.name),
                 .message = {},
                 .bad_element = element.name};
  if (element.ns == nullptr || (parent == nullptr && is_netconf(element.ns))) {
    error.message = xml ? fmt::format("'{}' is in no namespace of a model", element.name)
                        : fmt::format("'{}' needs the name of its module before it, as in \"module:{}\"", element.name,
                                      element.name);
    error.bad_namespace = element.ns == nullptr ? "" : element.ns;
    throw Refused(std::move(error));
  }
  if (module == nullptr) {
    error.message = fmt::format("'{}' is in {} {}, which no loaded model has", element.name,
                                xml ? "the namespace" : "the module", quoted(element.ns));
    error.bad_namespace = element.ns;
    throw Refused(std::move(error));
  }
  const bool same = parent != nullptr && parent->module == module;
  error.tag = "unknown-element";
  if (!same) error.path = fmt::format("{}/{}:{}", path, module->name, element.name);
  const lys_module* const home = home_of(parent, element.name);
  if (home != nullptr) {
    error.message = fmt::format("'{}' in '{}' is not of the model {}; allowed: {}", element.name, parent->name,
                                module->name, xml ? fmt::format("the namespace {}", quoted(home->ns)) : home->name);
    throw Refused(std::move(error));
  }
  const std::string allowed = children_of(parent, module);
  error.message = fmt::format(
      "'{}' is not known in {}{}", element.name,
      parent == nullptr ? fmt::format("the model {}", module->name)
                        : fmt::format("'{}'{}", parent->name, same ? "" : fmt::format(" as part of {}", module->name)),
      allowed.empty() ? "" : fmt::format("; allowed: {}", allowed));
  throw Refused(std::move(error));
}

}  // namespace yfw
