// Foreign subtrees of two configurations compared, without a model to say what they mean: as canonical texts.
#include <fmt/format.h>
#include <libxml/c14n.h>
#include <libxml/parser.h>

#include <algorithm>
#include <climits>
#include <iterator>
#include <list>
#include <memory>
#include <stdexcept>
#include <unordered_map>

#include "yfw-host/compare.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

// Canonical XML without comments, and without the blanks between elements that only lay a document out.
std::string canonical_xml(const std::string& text) {
  if (text.size() > INT_MAX) throw std::runtime_error("a foreign subtree is too large to be compared");
  const std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> document(
      xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, "UTF-8",
                    XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOBLANKS | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
      xmlFreeDoc);
  xmlChar* canonical = nullptr;
  const int size =
      document == nullptr ? -1 : xmlC14NDocDumpMemory(document.get(), nullptr, XML_C14N_1_0, nullptr, 0, &canonical);
  const std::unique_ptr<xmlChar, void (*)(void*)> owner(canonical, [](void* memory) { xmlFree(memory); });
  if (size < 0) throw std::runtime_error("a foreign subtree cannot be made canonical");
  return {reinterpret_cast<const char*>(canonical), static_cast<std::size_t>(size)};
}

// JSON that is known to be right: without blanks, the members of each object in the order of their names.
class CanonicalJson {
 public:
  explicit CanonicalJson(std::string_view text) : text_(text) {}

  std::string members() {
    return sequence(
        '\0', [this] { return member(); }, true);
  }

 private:
  char next() {
    at_ = std::min(text_.find_first_not_of(" \t\r\n", at_), text_.size());
    return at_ == text_.size() ? '\0' : text_[at_];
  }

  std::string_view string() {
    const std::size_t begin = at_++;
    while (text_[at_] != '"') at_ += text_[at_] == '\\' ? 2 : 1;
    return text_.substr(begin, ++at_ - begin);
  }

  std::string member() {
    std::string name(string());
    next();
    ++at_;
    return fmt::format("{}:{}", name, value());
  }

  template <typename Item>
  std::string sequence(char close, const Item& item, bool sorted) {
    std::vector<std::string> items;
    while (next() != close) {
      items.push_back(item());
      if (next() == ',') ++at_;
      next();
    }
    if (sorted) std::sort(items.begin(), items.end());
    return fmt::format("{}", fmt::join(items, ","));
  }

  std::string value() {
    const char first = next();
    if (first == '"') return std::string(string());
    if (first == '{' || first == '[') {
      ++at_;
      std::string inside = first == '{' ? sequence(
                                              '}', [this] { return member(); }, true)
                                        : sequence(
                                              ']', [this] { return value(); }, false);
      ++at_;
      return fmt::format("{}{}{}", first, inside, first == '{' ? '}' : ']');
    }
    const std::size_t begin = at_;
    at_ = std::min(text_.find_first_of(" \t\r\n,]}", at_), text_.size());
    return std::string(text_.substr(begin, at_ - begin));
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

std::string canonical(const Foreign& foreign) {
  return foreign.text.starts_with('"') ? CanonicalJson(foreign.text).members() : canonical_xml(foreign.text);
}

// Those of one name below one parent.
struct Namesakes {
  const Foreign* first;
  std::vector<std::string> before;
  std::vector<std::string> after;
};

// How many of `texts`, both in order, `others` has not.
std::size_t only_in(const std::vector<std::string>& texts, const std::vector<std::string>& others) {
  std::vector<std::string> rest;
  std::set_difference(texts.begin(), texts.end(), others.begin(), others.end(), std::back_inserter(rest));
  return rest.size();
}

}  // namespace

std::vector<ForeignDelta> compare_foreign(const std::vector<Foreign>& before, const std::vector<Foreign>& after) {
  const auto is_json = [](const std::vector<Foreign>& some) { return some.front().text.starts_with('"'); };
  if (!before.empty() && !after.empty() && is_json(before) != is_json(after)) {
    throw Refused({.tag = "operation-not-supported",
                   .path = before.front().path,
                   .message = fmt::format("'{}' is of a model that is not loaded ({}): what came in XML cannot be "
                                          "compared with what came in JSON",
                                          before.front().name, before.front().ns),
                   .bad_element = before.front().name});
  }
  std::list<Namesakes> groups;
  std::unordered_map<std::string, Namesakes*> by_place;
  const auto of = [&](const Foreign& each) -> Namesakes& {
    Namesakes*& found = by_place[fmt::format("{}\n{}", each.path, each.ns)];
    if (found == nullptr) found = &groups.emplace_back(Namesakes{&each, {}, {}});
    return *found;
  };
  for (const Foreign& each : before) of(each).before.push_back(canonical(each));
  for (const Foreign& each : after) of(each).after.push_back(canonical(each));
  std::vector<ForeignDelta> deltas;
  for (Namesakes& group : groups) {
    std::sort(group.before.begin(), group.before.end());
    std::sort(group.after.begin(), group.after.end());
    std::size_t removed = only_in(group.before, group.after);
    std::size_t added = only_in(group.after, group.before);
    while (removed > 0 || added > 0) {
      const ForeignDelta::Kind kind = removed == 0 ? ForeignDelta::Kind::added
                                      : added == 0 ? ForeignDelta::Kind::removed
                                                   : ForeignDelta::Kind::changed;
      deltas.push_back({kind, group.first->path, group.first->ns});
      removed -= kind == ForeignDelta::Kind::added ? 0 : 1;
      added -= kind == ForeignDelta::Kind::removed ? 0 : 1;
    }
  }
  return deltas;
}

}  // namespace yfw
