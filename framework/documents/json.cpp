// JSON as it comes from outside (RFC 8259), with the names of RFC 7951 and the annotations of RFC 7952.
#include <fmt/format.h>

#include <charconv>
#include <string>
#include <vector>

#include "framework/documents/source.h"
#include "framework/tree/nodes.h"
#include "framework/tree/utf8.h"

namespace yfw {

namespace {

class JsonReader {
 public:
  JsonReader(Source& source, std::string_view text) : source_(source), text_(text) {}

  void document(Element& top) {
    if (text_.starts_with("\xEF\xBB\xBF")) at_ = 3;
    if (next() != '{') fail("a JSON document starts with '{'");
    object(top);
    if (top.attributes != nullptr) fail("an annotation \"@\" of the whole document is about nothing");
    if (next() != '\0' || at_ < text_.size()) fail("something follows the end of the document");
  }

 private:
  // What an object holds under one name: one element, or the entries of an array.
  struct Member {
    const char* ns;
    const char* name;
    Element* first;
  };
  // "@name": what is said about the member of that name; one list of annotations per entry of an array.
  struct Annotation {
    const char* ns;
    const char* name;
    bool is_array;
    std::vector<const Attribute*> entries;
    int line;
  };

  // The same about a foreign member, unread.
  struct ForeignAnnotation {
    const char* ns;
    const char* name;
    std::string_view text;
    int line;
  };

  [[noreturn]] void fail(std::string_view reason) const { source_.fail(line_, reason); }

  // The next character that is no blank, not taken; '\0' at the end.
  char next() {
    while (at_ < text_.size()) {
      const char c = text_[at_];
      if (c != ' ' && c != '\t' && c != '\r' && c != '\n') return c;
      if (c == '\n') ++line_;
      ++at_;
    }
    return '\0';
  }

  bool take(char expected) {
    if (next() != expected || at_ == text_.size()) return false;
    ++at_;
    return true;
  }

  void need(char expected) {
    if (take(expected)) return;
    if (at_ == text_.size()) fail("the document ends too early");
    fail(fmt::format("'{}' is expected here", expected));
  }

  // Calls `item` for each item between brackets, separated by commas.
  template <typename Item>
  void sequence(char open, char close, const Item& item) {
    need(open);
    if (++depth_ > kDeepest) fail(fmt::format("values are nested more than {} deep", kDeepest));
    if (next() != close) {
      do {
        item();
      } while (take(','));
    }
    need(close);
    --depth_;
  }

  std::uint32_t hex() {
    std::uint32_t code = 0;
    const char* const begin = text_.data() + at_;
    if (text_.size() - at_ < 4 || std::from_chars(begin, begin + 4, code, 16).ptr != begin + 4) {
      fail("\\u needs four hexadecimal digits");
    }
    at_ += 4;
    return code;
  }

  void escape(std::string& into) {
    static constexpr std::string_view kLetters = "\"\\/bfnrt";
    static constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
    if (at_ == text_.size()) fail("the document ends too early");
    const char letter = text_[at_++];
    if (letter != 'u') {
      const std::size_t known = kLetters.find(letter);
      if (known == std::string_view::npos) fail("unknown escape in a text");
      into += kMeanings[known];
      return;
    }
    std::uint32_t code = hex();
    if (code >= 0xD800 && code < 0xDC00 && text_.substr(at_, 2) == "\\u") {
      at_ += 2;
      const std::uint32_t low = hex();
      if (low < 0xDC00 || low > 0xDFFF) fail("half a surrogate pair in a text");
      code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
    }
    if (code == 0 || (code >= 0xD800 && code <= 0xDFFF)) fail("a text holds a character that is not allowed");
    append_character(into, code);
  }

  std::string string() {
    need('"');
    std::string result;
    while (true) {
      if (at_ == text_.size()) fail("the document ends too early");
      const char c = text_[at_];
      if (c == '"') break;
      if (static_cast<unsigned char>(c) < 0x20) fail("a text holds a control character");
      if (c == '\\') {
        ++at_;
        escape(result);
      } else {
        const std::size_t length = first_character(text_.substr(at_)).length;
        if (length == 0) fail("a text is not UTF-8");
        result.append(text_, at_, length);
        at_ += length;
      }
      if (result.size() > kLongestText) fail(fmt::format("a text is longer than {} bytes", kLongestText));
    }
    ++at_;
    return result;
  }

  // The rest of a word or number: the characters that either may hold.
  std::string_view word() {
    const std::size_t begin = at_;
    while (at_ < text_.size() && (std::isalnum(static_cast<unsigned char>(text_[at_])) != 0 || text_[at_] == '+' ||
                                  text_[at_] == '-' || text_[at_] == '.')) {
      ++at_;
    }
    return text_.substr(begin, at_ - begin);
  }

  static bool is_number(std::string_view text) {
    const auto digits = [&text] {
      const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
      text.remove_prefix(end);
      return end;
    };
    const auto skip = [&text](std::string_view any) {
      const bool there = !text.empty() && any.find(text.front()) != std::string_view::npos;
      if (there) text.remove_prefix(1);
      return there;
    };
    skip("-");
    const bool zero = text.starts_with('0');
    const std::size_t whole = digits();
    if (whole == 0 || (zero && whole > 1)) return false;
    if (skip(".") && digits() == 0) return false;
    if (skip("eE")) {
      skip("+-");
      if (digits() == 0) return false;
    }
    return text.empty();
  }

  void scalar(Element& element) {
    if (next() == '"') {
      element.kind = Kind::text;
      element.value = source_.keep(string());
      return;
    }
    if (at_ == text_.size()) fail("the document ends too early");
    const std::string_view text = word();
    if (text == "true" || text == "false") {
      element.kind = Kind::boolean;
    } else if (text == "null") {
      element.kind = Kind::null;
      return;
    } else if (is_number(text)) {
      element.kind = Kind::number;
    } else {
      fail(fmt::format("a value is expected here, not '{}'", text.empty() ? text_.substr(at_, 1) : text.substr(0, 40)));
    }
    element.value = source_.keep(text);
  }

  void value(Element& element) {
    if (next() != '{') return scalar(element);
    element.kind = Kind::object;
    object(element);
  }

  void array(Element& parent, const char* ns, std::string_view name, Element*& first) {
    const int line = line_;
    sequence('[', ']', [&] {
      Element* const entry = source_.add(parent, name, ns, line_);
      if (first == nullptr) first = entry;
      if (next() == '[') fail(fmt::format("'{}' holds an array in an array", name));
      value(*entry);
      entry->in_array = true;
    });
    if (first == nullptr) {
      first = source_.add(parent, name, ns, line);
      first->kind = Kind::no_entries;
    } else if (first->kind == Kind::null && first->next == nullptr) {
      first->kind = Kind::empty;
      first->in_array = false;
    }
  }

  const Attribute* annotations() {
    const Attribute* result = nullptr;
    std::size_t count = 0;
    sequence('{', '}', [&] {
      if (++count > kMostAttributes) fail(fmt::format("an annotation has more than {} members", kMostAttributes));
      const auto [ns, name] = split(string(), nullptr);
      need(':');
      Element held;
      if (next() == '{' || next() == '[') fail(fmt::format("the annotation '{}' holds more than a value", name));
      scalar(held);
      result = source_.store(Attribute{ns, name, held.value, result});
    });
    return result;
  }

  Annotation annotation(const char* ns, const char* name) {
    Annotation result{ns, name, next() == '[', {}, line_};
    if (!result.is_array) {
      result.entries.push_back(annotations());
      return result;
    }
    sequence('[', ']', [&] {
      if (next() == '{') {
        result.entries.push_back(annotations());
      } else if (word() == "null") {
        result.entries.push_back(nullptr);
      } else {
        fail("an annotation is an object or null");
      }
    });
    return result;
  }

  // "module:name" or "name", interned; the module is the parent's where none is named.
  std::pair<const char*, const char*> split(std::string_view qualified, const char* inherited) {
    const std::size_t colon = qualified.find(':');
    if (colon == std::string_view::npos) return {inherited, source_.intern(qualified)};
    return {source_.intern(qualified.substr(0, colon)), source_.intern(qualified.substr(colon + 1))};
  }

  // Reads over a value of which nothing is wanted but that it is one.
  void skip() {
    switch (next()) {
      case '{':
        return sequence('{', '}', [this] {
          string();
          need(':');
          skip();
        });
      case '[':
        return sequence('[', ']', [this] { skip(); });
      case '"':
        string();
        return;
      default:
        Element unread;
        scalar(unread);
    }
  }

  void object(Element& element) {
    std::vector<Member> members;
    std::vector<Annotation> said;
    std::vector<ForeignAnnotation> carried;
    sequence('{', '}', [&] {
      next();
      const std::size_t begin = at_;
      const int line = line_;
      const std::string qualified = string();
      need(':');
      if (qualified == "@") {
        put(element, annotations(), line_);
        return;
      }
      const bool about = qualified.starts_with('@');
      const auto [ns, name] = split(std::string_view(qualified).substr(about ? 1 : 0), element.ns);
      const bool foreign = source_.is_foreign(ns);
      if (foreign) skip();
      if (foreign && about) {
        for (const ForeignAnnotation& other : carried) {
          if (other.name == name && other.ns == ns) fail(fmt::format("'{}' is annotated twice", name));
        }
        carried.push_back({ns, name, text_.substr(begin, at_ - begin), line});
        return;
      }
      if (about) {
        said.push_back(annotation(ns, name));
        return;
      }
      // Who knows where the member stands refuses it.
      bool is_repeated = false;
      for (const Member& other : members) is_repeated = is_repeated || (other.name == name && other.ns == ns);
      if (members.size() == kMostMembers) fail(fmt::format("an object has more than {} members", kMostMembers));
      Member member{ns, name, nullptr};
      if (foreign) {
        // No model will judge it.
        if (is_repeated) fail(fmt::format("the member '{}:{}' stands here twice", ns, name));
        member.first = source_.add(element, name, ns, line);
        member.first->foreign = source_.keep(text_.substr(begin, at_ - begin));
      } else if (next() == '[') {
        array(element, ns, name, member.first);
      } else {
        member.first = source_.add(element, name, ns, line_);
        value(*member.first);
      }
      for (Element* each = member.first; is_repeated && each != nullptr; each = each->next) each->is_repeated = true;
      members.push_back(member);
    });
    if (said.size() + carried.size() > kMostMembers) {
      fail(fmt::format("an object has more than {} annotations", kMostMembers));
    }
    for (const Annotation& each : said) annotate(element, members, each);
    for (const ForeignAnnotation& each : carried) carry(element, members, each);
  }

  // What is said about a foreign member goes where it goes.
  void carry(Element& parent, const std::vector<Member>& members, const ForeignAnnotation& said) {
    for (const Member& member : members) {
      if (member.name != said.name || member.ns != said.ns) continue;
      member.first->foreign = source_.keep(fmt::format("{}, {}", member.first->foreign, said.text));
      return;
    }
    Element* const alone = source_.add(parent, fmt::format("@{}", said.name), said.ns, said.line);
    alone->foreign = source_.keep(said.text);
  }

  // Said twice, one of the two would be lost. What stands there twice itself is refused anyway.
  void put(Element& element, const Attribute* attributes, int line) {
    const bool is_free = element.attributes == nullptr || element.is_repeated;
    if (!is_free) source_.fail(line, fmt::format("'{}' is annotated twice", element.name));
    element.attributes = attributes;
  }

  void annotate(Element& parent, const std::vector<Member>& members, const Annotation& said) {
    Element* entry = nullptr;
    for (const Member& member : members) {
      if (member.name == said.name && member.ns == said.ns) entry = member.first;
    }
    if (entry == nullptr) entry = source_.add(parent, said.name, said.ns, said.line);
    if (!said.is_array && entry->in_array) {
      source_.fail(said.line, fmt::format("'@{}' is about an array and has to be one", said.name));
    }
    for (const Attribute* const attributes : said.entries) {
      if (entry == nullptr || entry->name != said.name || entry->ns != said.ns) {
        source_.fail(said.line, fmt::format("'@{}' has more entries than '{}'", said.name, said.name));
      }
      if (attributes != nullptr) put(*entry, attributes, said.line);
      entry = entry->next;
    }
  }

  Source& source_;
  std::string_view text_;
  std::size_t at_ = 0;
  int line_ = 1;
  int depth_ = 0;
};

}  // namespace

void Source::read_json(std::string_view text) {
  JsonReader(*this, text).document(*top_);
}

}  // namespace yfw
