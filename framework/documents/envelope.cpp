// What may stand around data, as a table of protocol elements.
#include "framework/documents/envelope.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "framework/documents/source.h"
#include "framework/tree/nodes.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

// What an element of the protocol has to do with its parent.
enum class Role : std::uint8_t {
  wrapper,            // what is asked for is inside
  content,            // its children are the data
  ignored,            // says nothing that matters here
  default_operation,  // says what happens to nodes without an operation
};

constexpr unsigned bit_of(Envelope wanted) {
  return 1U << static_cast<unsigned>(wanted);
}

constexpr unsigned kEdit = bit_of(Envelope::edit);
constexpr unsigned kData = bit_of(Envelope::data);
constexpr unsigned kFilter = bit_of(Envelope::filter);
constexpr unsigned kAny = kEdit | kData | kFilter;

struct Known {
  const char* parent;  // "" at the top
  const char* name;
  Role role;
  unsigned where;  // the envelopes that it belongs to
};

constexpr std::array<Known, 23> kKnown{{
    {"", "rpc", Role::wrapper, kEdit | kFilter},
    {"", "rpc-reply", Role::wrapper, kData},
    {"", "edit-config", Role::wrapper, kEdit},
    {"", "get", Role::wrapper, kFilter},
    {"", "get-config", Role::wrapper, kFilter},
    {"", "config", Role::content, kEdit | kData},
    {"", "data", Role::content, kEdit | kData},
    {"", "filter", Role::content, kFilter},
    {"rpc", "edit-config", Role::wrapper, kEdit},
    {"rpc", "get", Role::wrapper, kFilter},
    {"rpc", "get-config", Role::wrapper, kFilter},
    {"rpc-reply", "data", Role::content, kData},
    {"edit-config", "config", Role::content, kEdit},
    {"edit-config", "target", Role::ignored, kEdit},
    {"edit-config", "test-option", Role::ignored, kEdit},
    {"edit-config", "error-option", Role::ignored, kEdit},
    {"edit-config", "default-operation", Role::default_operation, kEdit},
    {"get", "filter", Role::content, kFilter},
    {"get", "with-defaults", Role::ignored, kFilter},
    {"get-config", "filter", Role::content, kFilter},
    {"get-config", "source", Role::ignored, kFilter},
    {"get-config", "with-defaults", Role::ignored, kFilter},
    {"rpc-reply", "ok", Role::ignored, kData},
}};

const Known* find_known(const char* parent, const char* name, unsigned where) {
  const auto* const found = std::find_if(kKnown.begin(), kKnown.end(), [&](const Known& each) {
    return (each.where & where) != 0 && std::strcmp(each.parent, parent) == 0 && std::strcmp(each.name, name) == 0;
  });
  return found == kKnown.end() ? nullptr : found;
}

[[noreturn]] void refuse(RpcError error) {
  error.type = "protocol";
  throw Refused(std::move(error));
}

// NETCONF knows operations on data only; on its own elements one would be lost.
void check_attributes(const Element& element, const std::string& path) {
  for (const Attribute* each = element.attributes; each != nullptr; each = each->next) {
    const bool filter = std::strcmp(element.name, "filter") == 0;
    const bool xpath = std::strcmp(each->name, "type") == 0 && std::strcmp(each->value, "subtree") != 0;
    if (filter && (xpath || std::strcmp(each->name, "select") == 0)) {
      refuse({.tag = "bad-attribute",
              .path = path,
              .message =
                  fmt::format("filters of type '{}' are not known; allowed: subtree", xpath ? each->value : "xpath"),
              .bad_element = element.name,
              .bad_attribute = each->name});
    }
    if (std::strcmp(each->name, "operation") == 0) {
      refuse({.tag = "bad-attribute",
              .path = path,
              .message = fmt::format("'{}' takes no operation; it belongs on the data inside", element.name),
              .bad_element = element.name,
              .bad_attribute = each->name});
    }
  }
}

class Search {
 public:
  Search(Envelope wanted) : where_(bit_of(wanted)) {}

  Payload run(const Source& source) {
    const Element& top = source.top();
    const Element* const root = top.first;
    const bool alone = root != nullptr && root == top.last;
    const Known* const known = alone && is_netconf(root->ns) ? find_known("", root->name, where_) : nullptr;
    if (known == nullptr) {
      refuse_other_envelopes(root, alone);
      return {&top, std::nullopt};
    }
    descend(*root, *known, "");
    return {content_, default_operation_};
  }

 private:
  // A <get> where an edit is wanted is not data of an unknown model.
  static void refuse_other_envelopes(const Element* root, bool alone) {
    if (!alone || !is_netconf(root->ns) || find_known("", root->name, kAny) == nullptr) return;
    refuse({.tag = "operation-not-supported",
            .path = fmt::format("/{}", root->name),
            .message = fmt::format("'{}' is not what is asked for here", root->name),
            .bad_element = root->name});
  }

  void descend(const Element& element, const Known& known, const std::string& outer) {
    const std::string path = fmt::format("{}/{}", outer, element.name);
    check_attributes(element, path);
    if (known.role == Role::content) {
      if (!element.is_blank()) {
        refuse({.tag = "bad-element",
                .path = path,
                .message = fmt::format("'{}' holds data, not a text", element.name),
                .bad_element = element.name});
      }
      content_ = &element;
      return;
    }
    for (const Element* child = element.first; child != nullptr; child = child->next) visit(element, *child, path);
    if (content_ == nullptr) {
      refuse({.tag = "missing-element",
              .path = path,
              .message = fmt::format("'{}' holds nothing to work on", element.name),
              .bad_element = element.name});
    }
  }

  void visit(const Element& parent, const Element& child, const std::string& path) {
    const Known* const known = is_netconf(child.ns) ? find_known(parent.name, child.name, where_) : nullptr;
    const bool second = known != nullptr && known->role != Role::ignored && known->role != Role::default_operation &&
                        content_ != nullptr;
    if (known == nullptr || second) {
      const bool is_rpc = std::strcmp(parent.name, "rpc") == 0;
      refuse({.tag = is_rpc ? "operation-not-supported" : "unknown-element",
              .path = fmt::format("{}/{}", path, child.name),
              .message = fmt::format("'{}' is not expected in '{}'{}", child.name, parent.name, second ? " again" : ""),
              .bad_element = child.name});
    }
    if (child.is_repeated || (known->role == Role::default_operation && default_operation_.has_value())) {
      refuse({.tag = "bad-element",
              .path = fmt::format("{}/{}", path, child.name),
              .message = fmt::format("'{}' stands here twice", child.name),
              .bad_element = child.name});
    }
    if (known->role == Role::wrapper || known->role == Role::content) descend(child, *known, path);
    if (std::strcmp(child.name, "test-option") == 0) refuse_test_only(child, path);
    if (known->role == Role::default_operation) default_operation_ = read_default(child, path);
  }

  static void refuse_test_only(const Element& option, const std::string& path) {
    if (std::strcmp(option.value, "test-only") != 0) return;
    refuse({.tag = "operation-not-supported",
            .path = fmt::format("{}/test-option", path),
            .message = "'test-option' is \"test-only\"; allowed: test-then-set, set",
            .bad_element = "test-option"});
  }

  static Operation read_default(const Element& element, const std::string& path) {
    std::string_view text = element.value;
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    text = text.substr(0, text.find_last_not_of(" \t\r\n") + 1);
    if (text == "none") return Operation::none;
    const std::optional<Operation> named = operation_named(text);
    if (named == Operation::merge || named == Operation::replace) return *named;
    refuse({.tag = "invalid-value",
            .path = fmt::format("{}/default-operation", path),
            .message = fmt::format("'default-operation' is \"{}\"; allowed: merge, replace, none", text),
            .bad_element = "default-operation"});
  }

  unsigned where_;
  const Element* content_ = nullptr;
  std::optional<Operation> default_operation_;
};

}  // namespace

bool is_netconf(const char* ns) {
  return ns == nullptr || std::strcmp(ns, kNetconfNs) == 0 || std::strcmp(ns, kNetconfModule) == 0;
}

PayloadSearch::PayloadSearch(Envelope wanted) : where_(bit_of(wanted)) {}

bool PayloadSearch::is_content(const Element& parent, const Element& child) {
  const bool at_top = !is_begun_;
  is_begun_ = true;
  if (at_top && (!is_netconf(child.ns) || find_known("", child.name, kAny) == nullptr)) return true;
  if (!at_top && &parent != inside_) return false;
  if (inside_content_) return true;
  const Known* const known = is_netconf(child.ns) ? find_known(at_top ? "" : parent.name, child.name, where_) : nullptr;
  if (known == nullptr || (known->role != Role::wrapper && known->role != Role::content)) return false;
  inside_ = &child;
  inside_content_ = known->role == Role::content;
  return false;
}

Payload find_payload(const Source& source, Envelope wanted) {
  return Search(wanted).run(source);
}

}  // namespace yfw
