// Subtree filters as they come in: everything stays opaque, because a filter need not be data of its model.
#include <fmt/format.h>

#include <cstring>

#include "framework/documents/build.h"
#include "framework/documents/documents.h"
#include "framework/documents/envelope.h"
#include "framework/documents/source.h"
#include "framework/documents/types.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

// A node of a filter; `value` null or blank selects, anything else is compared with the leaf's canonical text.
lyd_node* add_filter_node(Data& tree, lyd_node* parent, const lysc_node* schema, const char* value) {
  const ly_ctx* const models = schema->module->ctx;
  std::string text(value == nullptr ? "" : value);
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  text = first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
  const char* canonical = nullptr;
  if (!text.empty() && is_term(schema)) {
    const LY_ERR valid = lyd_value_validate(models, schema, text.c_str(), text.size(), nullptr, nullptr, &canonical);
    if (valid == LY_SUCCESS && canonical != nullptr) text = canonical;
    lydict_remove(models, canonical);
    ly_err_clean(const_cast<ly_ctx*>(models), nullptr);
  }
  lyd_node* made = nullptr;
  if (lyd_new_opaq2(parent, models, schema->name, text.empty() ? nullptr : text.c_str(), nullptr, schema->module->ns,
                    &made) != LY_SUCCESS) {
    throw std::runtime_error(fmt::format("no filter can be made of '{}'", schema->name));
  }
  if (parent == nullptr) lyd_insert_sibling(tree.get(), made, tree.out());
  return made;
}

// A node by its name alone, or with the name or prefix of its module.
const lysc_node* find_by_name(const ly_ctx* models, const lysc_node* parent, std::string_view prefix,
                              std::string_view name) {
  constexpr int kData = LYS_CONTAINER | LYS_LIST | LYS_LEAF | LYS_LEAFLIST;
  uint32_t index = 0;
  while (const lys_module* const module = ly_ctx_get_module_iter(models, &index)) {
    const bool meant = prefix.empty() || prefix == module->name || prefix == module->prefix;
    if (module->implemented == 0 || !meant) continue;
    const lysc_node* const found = find_child(parent, module, name, module->ns);
    if (found != nullptr && found->module == module && (found->nodetype & kData) != 0) return found;
  }
  return nullptr;
}

class FilterBuilder {
 public:
  FilterBuilder(ly_ctx* models, const Source& source, Data& tree) : resolver_(models, source.format()), tree_(tree) {}

  void build(lyd_node* parent, const lysc_node* parent_schema, const Element& element) {
    for (const Element* child = element.first; child != nullptr; child = child->next) {
      if (child->kind != Kind::no_entries) build_node(parent, parent_schema, *child);
    }
  }

 private:
  void build_node(lyd_node* parent, const lysc_node* parent_schema, const Element& element) {
    // A filter without namespaces means a node of any (RFC 6241 section 6.2.1).
    const lysc_node* schema = nullptr;
    if (is_netconf(element.ns)) schema = find_by_name(resolver_.models(), parent_schema, "", element.name);
    if (schema == nullptr) schema = resolver_.resolve(parent_schema, element, parent);
    if (element.is_repeated) {
      refuse(parent, schema, "bad-element", fmt::format("'{}' stands here twice", schema->name));
    }
    const bool term = is_term(schema);
    if (!term && !element.is_blank()) {
      refuse(parent, schema, "bad-element",
             fmt::format("'{}' holds elements, not the text {}", schema->name, quoted(element.value)));
    }
    if (term && element.first != nullptr) {
      refuse(parent, schema, "bad-element", fmt::format("'{}' holds a value, not elements", schema->name));
    }
    if (element.attributes != nullptr) {
      const char* const name = element.attributes->name;
      RpcError error{.tag = "unknown-attribute",
                     .path = path(parent, schema),
                     .message = fmt::format("'{}' is filtered by the attribute {}; filters compare elements only",
                                            schema->name, quoted(name)),
                     .bad_element = schema->name,
                     .bad_attribute = name};
      throw Refused(std::move(error));
    }
    build(add_filter_node(tree_, parent, schema, value_of(schema, element).c_str()), schema, element);
  }

  // Identities are compared as "module:name", whatever prefix the filter uses.
  std::string value_of(const lysc_node* schema, const Element& element) {
    const std::string_view value = element.value;
    const std::size_t colon = value.find(':');
    const bool identity = is_term(schema) && real_type(schema)->basetype == LY_TYPE_IDENT;
    if (!identity || colon == std::string_view::npos || resolver_.format() == Format::json) return element.value;
    const char* const ns = Source::bound(element, value.substr(0, colon));
    const lys_module* const module = ns == nullptr ? nullptr : resolver_.module_of(ns);
    return module == nullptr ? std::string(value) : fmt::format("{}:{}", module->name, value.substr(colon + 1));
  }

  static std::string path(const lyd_node* parent, const lysc_node* schema) {
    return fmt::format("{}/{}{}", path_of(parent), parent == nullptr ? fmt::format("{}:", schema->module->name) : "",
                       schema->name);
  }

  [[noreturn]] static void refuse(const lyd_node* parent, const lysc_node* schema, const char* tag,
                                  std::string message) {
    throw Refused(
        {.tag = tag, .path = path(parent, schema), .message = std::move(message), .bad_element = schema->name});
  }

  Resolver resolver_;
  Data& tree_;
};

// Paths as people write them: /interfaces/interface[name='Ethernet0/0/1']/config, prefixes optional.
class PathReader {
 public:
  PathReader(ly_ctx* models, std::string_view path) : models_(models), all_(path), rest_(path) {}

  // False for "/", which asks for everything.
  bool read(Data& tree) {
    lyd_node* node = nullptr;
    const lysc_node* schema = nullptr;
    if (all_.find('\0') != std::string_view::npos) fail("a NUL character stands in it");
    trim();
    if (rest_.empty() && all_.find('/') != std::string_view::npos) return false;
    do {
      if (!take('/')) fail("a '/' is expected");
      schema = find(schema, name());
      node = add_filter_node(tree, node, schema, nullptr);
      while (take('[')) predicate(tree, node, schema);
    } while (!rest_.empty());
    return true;
  }

 private:
  void trim() {
    while (!rest_.empty() && (rest_.back() == ' ' || rest_.back() == '\r' || rest_.back() == '/'))
      rest_.remove_suffix(1);
    while (!rest_.empty() && rest_.front() == ' ') rest_.remove_prefix(1);
  }

  [[noreturn]] void fail(std::string_view reason) const {
    throw Refused({.tag = "invalid-value",
                   .path = {},
                   .message = fmt::format("the path \"{}\" cannot be read: {} before \"{}\"", all_, reason, rest_)});
  }

  bool take(char expected) {
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::string_view name() {
    const std::string_view found = rest_.substr(0, rest_.find_first_of("/[]='\" "));
    if (found.empty()) fail("a name is expected");
    rest_.remove_prefix(found.size());
    return found;
  }

  void predicate(Data& tree, lyd_node* node, const lysc_node* schema) {
    const lysc_node* const leaf = find(schema, name());
    if (!take('=')) fail("a '=' is expected");
    const char quote = rest_.empty() ? '\0' : rest_.front();
    const bool is_quoted = quote == '\'' || quote == '"';
    if (is_quoted) rest_.remove_prefix(1);
    const std::size_t end = rest_.find(is_quoted ? quote : ']');
    if (end == std::string_view::npos) fail("the end of the value is missing");
    const std::string value(rest_.substr(0, end));
    rest_.remove_prefix(end + (is_quoted ? 1 : 0));
    if (!take(']')) fail("a ']' is expected");
    if (!is_term(leaf)) fail(fmt::format("'{}' has no value to compare", leaf->name));
    add_filter_node(tree, node, leaf, value.c_str());
  }

  const lysc_node* find(const lysc_node* parent, std::string_view qualified) {
    const std::size_t colon = qualified.find(':');
    const std::string_view prefix = colon == std::string_view::npos ? "" : qualified.substr(0, colon);
    const std::string_view local = colon == std::string_view::npos ? qualified : qualified.substr(colon + 1);
    const lysc_node* const found = find_by_name(models_, parent, prefix, local);
    if (found != nullptr) return found;
    throw Refused({.tag = "unknown-element",
                   .path = std::string(all_.substr(0, all_.size() - rest_.size())),
                   .message = fmt::format("'{}' is not known in {}", qualified,
                                          parent == nullptr ? "the models" : fmt::format("'{}'", parent->name)),
                   .bad_element = std::string(local)});
  }

  ly_ctx* models_;
  std::string_view all_;
  std::string_view rest_;
};

}  // namespace

Data parse_filter(ly_ctx* ctx, const Document& document, bool* selects_nothing) {
  const Source source(document);
  const Payload payload = find_payload(source, Envelope::filter);
  Data tree;
  FilterBuilder(ctx, source, tree).build(nullptr, nullptr, *payload.content);
  if (selects_nothing != nullptr) *selects_nothing = tree.empty();
  return tree;
}

Data paths_to_filter(ly_ctx* ctx, const std::vector<std::string>& paths) {
  Data tree;
  for (const std::string& path : paths) {
    Data one;
    if (!PathReader(ctx, path).read(one)) return {};
    lyd_insert_sibling(tree.get(), one.release(), tree.out());
  }
  return tree;
}

}  // namespace yfw
