// JSON as it comes from outside (RFC 8259), with the names of RFC 7951 and the annotations of RFC 7952.
#include <fmt/format.h>

#include <charconv>
#include <climits>
#include <string>
#include <vector>

#include "framework/documents/source.h"
#include "framework/tree/nodes.h"
#include "framework/tree/utf8.h"

namespace yfw {

namespace {

// How deep the outermost objects are nested that hold an annotation, or a name that may be one. These come before or
// after what they are about, so nothing in such an object is complete before its end.
int first_annotated_depth(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  int first = INT_MAX;
  int depth = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '{' || c == '[') ++depth;
    if (c == '}' || c == ']') --depth;
    if (c != '"') continue;
    const std::size_t begin = at + 1;
    bool may_annotate = text.substr(begin, 1) == "@";
    for (at = begin; at < text.size() && text[at] != '"'; ++at) {
      if (text[at] != '\\') continue;
      may_annotate = true;
      ++at;
    }
    if (!may_annotate || depth >= first) continue;
    const std::size_t next = text.find_first_not_of(kBlanks, at + 1);
    if (next != std::string_view::npos && text[next] == ':') first = depth;
  }
  return first;
}

class JsonReader {
 public:
  JsonReader(Source& source, std::string_view text)
      : source_(source), text_(text), annotated_depth_(first_annotated_depth(text)) {}

  void document(Element& top) {
    if (text_.starts_with("\xEF\xBB\xBF")) at_ = 3;
    if (next() != '{') fail("a JSON document starts with '{'");
    object(top);
    if (top.attributes != nullptr) fail("an annotation \"@\" of the whole document is about nothing");
    if (next() != '\0' || at_ < text_.size()) fail("something follows the end of the document");
  }

 private:
  // What an object holds under one name: one element, or the entries of an array; gone if they were taken.
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

  // What stands under one name of an object.
  struct Named {
    Element& parent;
    const char* ns;
    const char* name;
    bool is_repeated;
    bool may_be_taken;
  };

  Element* begin(const Named& named, int line) {
    Element* const element = source_.begin(named.parent, named.name, named.ns, line, named.may_be_taken);
    element->is_repeated = named.is_repeated;
    return element;
  }

  Element* array(const Named& named) {
    const int line = line_;
    Element* first = nullptr;
    // Of the only entry the end of the array has something to say.
    Element* last = nullptr;
    bool is_only = true;
    sequence('[', ']', [&] {
      is_only = last == nullptr;
      if (last != nullptr) source_.end(*last);
      last = begin(named, line_);
      if (is_only) first = last;
      if (next() == '[') fail(fmt::format("'{}' holds an array in an array", named.name));
      last->in_array = true;
      value(*last);
    });
    if (last == nullptr) {
      first = last = begin(named, line);
      last->kind = Kind::no_entries;
    } else if (is_only && last->kind == Kind::null) {
      last->kind = Kind::empty;
      last->in_array = false;
    }
    source_.end(*last);
    return first;
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
      const Named named{element, ns, name, is_repeated, depth_ < annotated_depth_};
      if (!foreign && next() == '[') {
        members.push_back({ns, name, array(named)});
        return;
      }
      // No model will judge it.
      if (foreign && is_repeated) fail(fmt::format("the member '{}:{}' stands here twice", ns, name));
      Element* const member = this->begin(named, foreign ? line : line_);
      if (foreign) {
        member->foreign = source_.keep(text_.substr(begin, at_ - begin));
      } else {
        value(*member);
      }
      source_.end(*member);
      members.push_back({ns, name, member});
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
    Element* const alone =
        source_.begin(parent, source_.intern(fmt::format("@{}", said.name)), said.ns, said.line, false);
    alone->foreign = source_.keep(said.text);
  }

  // Said twice, one of the two would be lost.
  void put(Element& element, const Attribute* attributes, int line) {
    if (element.attributes != nullptr) source_.fail(line, fmt::format("'{}' is annotated twice", element.name));
    element.attributes = attributes;
  }

  void annotate(Element& parent, const std::vector<Member>& members, const Annotation& said) {
    Element* entry = nullptr;
    for (const Member& member : members) {
      if (member.name == said.name && member.ns == said.ns) entry = member.first;
    }
    if (entry == nullptr) entry = source_.begin(parent, said.name, said.ns, said.line, false);
    if (!said.is_array && entry->in_array) {
      source_.fail(said.line, fmt::format("'@{}' is about an array and has to be one", said.name));
    }
    for (const Attribute* const attributes : said.entries) {
      if (entry == nullptr || entry->name != said.name || entry->ns != said.ns) {
        source_.fail(said.line, fmt::format("'@{}' has more entries than '{}'", said.name, said.name));
      }
      // What stands there twice itself is refused anyway.
      if (entry->is_repeated) entry->attributes = nullptr;
      if (attributes != nullptr) put(*entry, attributes, said.line);
      entry = entry->next;
    }
  }

  Source& source_;
  std::string_view text_;
  std::size_t at_ = 0;
  int line_ = 1;
  int depth_ = 0;
  int annotated_depth_;
};

}  // namespace

void Source::read_json(std::string_view text) {
  JsonReader(*this, text).document(*top_);
}

}  // namespace yfw
