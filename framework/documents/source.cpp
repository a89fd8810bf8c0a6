// The element tree that both readers fill.
#include "framework/documents/source.h"

#include <fmt/format.h>

#include <cstring>
#include <utility>

#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

}  // namespace

bool Element::is_blank() const {
  return std::string_view(value).find_first_not_of(kBlanks) == std::string_view::npos;
}

Source::Source(const Document& document, IsForeign is_foreign)
    : is_foreign_(std::move(is_foreign)),
      format_(document.format),
      name_(document.name),
      top_(store(Element{.line = 1, .kind = Kind::object})) {
  if (document.text.find_first_not_of(kBlanks) == std::string_view::npos) {
    throw Unreadable(fmt::format("{}: the document is empty", name_));
  }
  if (format_ == Format::xml) {
    read_xml(document.text);
  } else {
    read_json(document.text);
  }
}

const char* Source::bound(const Element& element, std::string_view prefix) {
  for (const Scope* scope = element.scope; scope != nullptr; scope = scope->outer) {
    if (prefix == scope->prefix) return scope->ns;
  }
  return nullptr;
}

bool Source::is_foreign(const char* ns) {
  if (!is_foreign_ || ns == nullptr) return false;
  const auto [known, added] = foreign_.try_emplace(ns, false);
  if (added) known->second = is_foreign_(ns);
  return known->second;
}

const char* Source::intern(std::string_view text) {
  const auto known = names_.find(text);
  if (known != names_.end()) return known->data();
  const char* const kept = keep(text);
  names_.emplace(kept, text.size());
  return kept;
}

const char* Source::keep(std::string_view text) {
  if (text.empty()) return "";
  char* const kept = static_cast<char*>(arena_.allocate(text.size() + 1, 1));
  std::memcpy(kept, text.data(), text.size());
  kept[text.size()] = '\0';
  return kept;
}

Element* Source::add(Element& parent, std::string_view name, const char* ns, int line) {
  Element* const element = store(Element{.name = intern(name), .ns = ns, .scope = parent.scope, .line = line});
  (parent.last == nullptr ? parent.first : parent.last->next) = element;
  parent.last = element;
  return element;
}

void Source::fail(int line, std::string_view reason) const {
  throw Unreadable(fmt::format("{}: line {}: {}", name_, line, reason));
}

}  // namespace yfw
