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

const char* copy(std::string_view text, char* to) {
  std::memcpy(to, text.data(), text.size());
  to[text.size()] = '\0';
  return to;
}

}  // namespace

bool Element::is_blank() const {
  return std::string_view(value).find_first_not_of(kBlanks) == std::string_view::npos;
}

Source::Source(const Document& document, IsForeign is_foreign, Taker* taker)
    : is_foreign_(std::move(is_foreign)),
      taker_(taker),
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
  if (text.empty()) return "";
  const auto known = names_.find(text);
  if (known != names_.end()) return known->data();
  const char* const kept = copy(text, static_cast<char*>(names_memory_.allocate(text.size() + 1, 1)));
  names_.emplace(kept, text.size());
  return kept;
}

const char* Source::keep(std::string_view text) {
  return text.empty() ? "" : copy(text, static_cast<char*>(arena_.allocate(text.size() + 1, 1)));
}

Element* Source::begin(Element& parent, const char* name, const char* ns, int line, bool may_be_taken) {
  Element* const element = store(Element{.name = name, .ns = ns, .scope = parent.scope, .line = line});
  element->is_taken = may_be_taken && taker_ != nullptr && is_to_be_taken(parent, *element);
  parent.has_children = true;
  if (element->is_taken) return element;
  (parent.last == nullptr ? parent.first : parent.last->next) = element;
  parent.last = element;
  return element;
}

bool Source::is_to_be_taken(const Element& parent, const Element& child) {
  if (!taken_from_.empty() && taken_from_.back() == &parent) return true;
  const bool may_go_on = parent.is_taken && (!parent.has_children || parent.first == parent.last);
  const bool is_taken =
      taken_from_.empty() ? taker_->begins_in(parent, child) : may_go_on && taker_->goes_on_in(parent);
  if (is_taken) taken_from_.push_back(&parent);
  return is_taken;
}

void Source::end(const Element& element) {
  if (!taken_from_.empty() && taken_from_.back() == &element) taken_from_.pop_back();
  if (!element.is_taken) return;
  taker_->take(element);
  arena_.rewind(&element);
}

void Source::fail(int line, std::string_view reason) const {
  throw Unreadable(fmt::format("{}: line {}: {}", name_, line, reason));
}

}  // namespace yfw
