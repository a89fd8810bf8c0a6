// XML as it comes from outside: libxml2 reads it, without DTDs, entities of its own or anything from the network.
#include <fmt/format.h>
#include <libxml/SAX2.h>
#include <libxml/dict.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <climits>
#include <exception>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <vector>

#include "framework/documents/source.h"
#include "framework/documents/xml_copy.h"

namespace yfw {

namespace {

int line_at(std::string_view text, std::size_t at) {
  return 1 + static_cast<int>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

std::string_view view(const xmlChar* text) {
  return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

// Names and namespaces are libxml2's: equal ones have equal addresses.
const char* name_of(const xmlChar* text) {
  return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}
const char* namespace_of(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

bool is_blank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// Where in the text the tag that begins at `at` ends, and how many attributes it has.
struct Tag {
  std::size_t end;
  std::size_t attributes;
};

Tag scan_tag(std::string_view text, std::size_t at) {
  std::size_t attributes = 0;
  for (; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '>') return {at, attributes};
    if (c == '=') ++attributes;
    if (c == '"' || c == '\'') at = std::min(text.find(c, at + 1), text.size());
  }
  return {std::string_view::npos, attributes};
}

// libxml2 compares every attribute of an element with every other one before it tells of the element, so they are
// counted in the text before. Both agree on where tags are up to the first mistake, at which libxml2 stops.
void check_tags(const Source& source, std::string_view text) {
  struct Opaque {
    std::string_view begin;
    std::string_view end;
  };
  constexpr std::array kOpaque = {Opaque{"<!--", "-->"}, Opaque{"<![CDATA[", "]]>"}, Opaque{"<?", "?>"}};
  std::size_t at = 0;
  while ((at = text.find('<', at)) != std::string_view::npos) {
    const std::string_view rest = text.substr(at);
    const auto* const opaque =
        std::find_if(kOpaque.begin(), kOpaque.end(), [&](const Opaque& each) { return rest.starts_with(each.begin); });
    if (opaque != kOpaque.end()) {
      at = text.find(opaque->end, at + opaque->begin.size());
    } else {
      const Tag tag = scan_tag(text, at);
      if (tag.attributes > kMostAttributes) {
        source.fail(line_at(text, at), fmt::format("an element has more than {} attributes", kMostAttributes));
      }
      at = tag.end;
    }
  }
}

// Encodings in which tags are the bytes that they are in ASCII, which `check_tags` relies on.
bool keeps_ascii(std::string_view encoding) {
  std::string name(encoding);
  std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
  return name == "utf-8" || name == "utf8" || name == "ascii" || name == "us-ascii" || name.starts_with("iso-8859-") ||
         name.starts_with("windows-125");
}

// What libxml2 calls while it reads. Nothing thrown may pass through it, so the first problem is kept and ends the run,
// and so does what others throw.
class XmlReader {
 public:
  XmlReader(Source& source, xmlParserCtxt* parser) : source_(source), parser_(parser) {
    open_.push_back(const_cast<Element*>(&source.top()));
    scopes_.push_back(0);
  }

  // Calls a function of this.
  template <typename Call>
  void run(const Call& function) {
    if (!problem_.empty() || thrown_ != nullptr) return;
    try {
      function(*this);
    } catch (...) {
      thrown_ = std::current_exception();
      xmlStopParser(parser_);
    }
  }

  // The encoding is what was declared, or recognised.
  void begin() {
    const xmlCharEncodingHandler* const encoder = parser_->input->buf->encoder;
    if (encoder == nullptr || keeps_ascii(encoder->name)) return;
    stop(fmt::format("the encoding is {}; UTF-8 is accepted", encoder->name));
  }

  void start(const xmlChar* name, const xmlChar* prefix, const xmlChar* ns, int scopes, const xmlChar** scope,
             int attributes, const xmlChar** attribute) {
    Element& parent = *open_.back();
    const std::size_t depth = open_.size() + (copy_.has_value() ? copy_->depth() : 0);
    if (depth > kDeepest) return stop(fmt::format("elements are nested more than {} deep", kDeepest));
    if (copy_.has_value()) return copy_start(name, prefix, scopes, scope, attributes, attribute);
    if (!is_blank(text_)) return stop(fmt::format("text stands beside elements in '{}'", parent.name));
    text_.clear();
    if (source_.is_foreign(namespace_of(ns))) {
      foreign_ = source_.begin(parent, name_of(name), namespace_of(ns), line(), true);
      copy_.emplace();
      return copy_start(name, prefix, scopes, scope, attributes, attribute);
    }
    Element* const element = source_.begin(parent, name_of(name), namespace_of(ns), line(), true);
    // Every look-up of a prefix goes through them.
    const std::size_t in_scope = scopes_.back() + static_cast<std::size_t>(scopes);
    if (in_scope > kMostScopes) return stop(fmt::format("more than {} namespaces are declared", kMostScopes));
    // Two pointers each: prefix and namespace.
    for (; scopes > 0; --scopes, scope += 2) {
      element->scope = source_.store(Scope{name_of(scope[0]), name_of(scope[1]), element->scope});
    }
    // Five pointers each: local name, prefix, namespace, begin and end of the value.
    for (; attributes > 0; --attributes, attribute += 5) {
      if (!check_attribute(name, attribute)) return;
      add_attribute(*element, attribute);
    }
    open_.push_back(element);
    scopes_.push_back(in_scope);
  }

  void characters(const xmlChar* text, int size, bool is_cdata) {
    const std::string_view added(reinterpret_cast<const char*>(text), static_cast<std::size_t>(size));
    if (!copy_.has_value()) {
      text_ += added;
    } else if (is_cdata) {
      copy_->cdata(added);
    } else {
      copy_->characters(added);
    }
    const std::size_t length = copy_.has_value() ? copy_->text_size() : text_.size();
    if (length > kLongestText) stop(fmt::format("a text is longer than {} bytes", kLongestText));
  }

  void comment(const xmlChar* text) {
    if (copy_.has_value()) copy_->comment(view(text));
  }

  void instruction(const xmlChar* target, const xmlChar* content) {
    if (copy_.has_value()) copy_->instruction(view(target), view(content));
  }

  void end(const xmlChar* name, const xmlChar* prefix) {
    if (copy_.has_value()) {
      copy_->end(name, prefix);
      if (copy_->depth() > 0) return;
      foreign_->foreign = source_.keep(copy_->take(*open_.back()));
      copy_.reset();
      source_.end(*foreign_);
      return;
    }
    Element& element = *open_.back();
    if (element.has_children && !is_blank(text_)) {
      return stop(fmt::format("text stands beside elements in '{}'", element.name));
    }
    if (!element.has_children && !text_.empty()) {
      element.kind = Kind::text;
      element.value = source_.keep(text_);
    }
    text_.clear();
    open_.pop_back();
    scopes_.pop_back();
    source_.end(element);
  }

  void doctype() { stop("a DOCTYPE is not accepted"); }

  void complain(const xmlError& error) {
    if (error.code == XML_ERR_NO_MEMORY) throw std::bad_alloc();
    if (error.level < XML_ERR_ERROR) return;
    std::string_view reason = error.message == nullptr ? "not well-formed" : error.message;
    stop(reason.substr(0, reason.find('\n')), error.line);
  }

  void report() const {
    if (thrown_ != nullptr) std::rethrow_exception(thrown_);
    if (!problem_.empty()) source_.fail(line_, problem_);
  }

 private:
  int line() const { return xmlSAX2GetLineNumber(parser_); }

  void stop(std::string_view problem, int line) {
    if (!problem_.empty()) return;
    problem_ = problem;
    line_ = line;
    xmlStopParser(parser_);
  }
  void stop(std::string_view problem) { stop(problem, line()); }

  static std::string_view value_of(const xmlChar** attribute) {
    return {reinterpret_cast<const char*>(attribute[3]), static_cast<std::size_t>(attribute[4] - attribute[3])};
  }

  // False when there was a reason to stop.
  bool check_attribute(const xmlChar* element, const xmlChar** attribute) {
    if (value_of(attribute).size() <= kLongestAttribute) return true;
    stop(fmt::format("attribute '{}' of '{}' is longer than {} bytes", view(attribute[0]), view(element),
                     kLongestAttribute));
    return false;
  }

  void copy_start(const xmlChar* name, const xmlChar* prefix, int scopes, const xmlChar** scope, int attributes,
                  const xmlChar** attribute) {
    for (int i = 0; i < attributes; ++i) {
      if (!check_attribute(name, attribute + static_cast<std::ptrdiff_t>(i) * 5)) return;
    }
    copy_->start(name, prefix, scopes, scope, attributes, attribute);
  }

  void add_attribute(Element& element, const xmlChar** parts) {
    const std::string_view value = value_of(parts);
    element.attributes =
        source_.store(Attribute{namespace_of(parts[2]), name_of(parts[0]), source_.keep(value), element.attributes});
  }

  Source& source_;
  xmlParserCtxt* parser_;
  std::vector<Element*> open_;
  std::vector<std::size_t> scopes_;  // how many namespaces are in scope in each open element
  std::string text_;
  Element* foreign_ = nullptr;   // the element whose text `copy_` is
  std::optional<XmlCopy> copy_;  // while a foreign subtree is read
  std::string problem_;
  int line_ = 0;
  std::exception_ptr thrown_;
};

// Calls a function of the reader.
template <typename Call>
void call(void* user, const Call& function) {
  static_cast<XmlReader*>(user)->run(function);
}

xmlSAXHandler callbacks() {
  xmlSAXHandler sax{};
  sax.initialized = XML_SAX2_MAGIC;
  sax.startDocument = [](void* user) { call(user, [](XmlReader& reader) { reader.begin(); }); };
  sax.startElementNs = [](void* user, const xmlChar* name, const xmlChar* prefix, const xmlChar* ns, int scopes,
                          const xmlChar** scope, int attributes, int, const xmlChar** attribute) {
    call(user, [&](XmlReader& reader) { reader.start(name, prefix, ns, scopes, scope, attributes, attribute); });
  };
  sax.endElementNs = [](void* user, const xmlChar* name, const xmlChar* prefix, const xmlChar*) {
    call(user, [&](XmlReader& reader) { reader.end(name, prefix); });
  };
  sax.characters = [](void* user, const xmlChar* text, int size) {
    call(user, [&](XmlReader& reader) { reader.characters(text, size, false); });
  };
  sax.ignorableWhitespace = sax.characters;
  sax.cdataBlock = [](void* user, const xmlChar* text, int size) {
    call(user, [&](XmlReader& reader) { reader.characters(text, size, true); });
  };
  sax.comment = [](void* user, const xmlChar* text) { call(user, [&](XmlReader& reader) { reader.comment(text); }); };
  sax.processingInstruction = [](void* user, const xmlChar* target, const xmlChar* content) {
    call(user, [&](XmlReader& reader) { reader.instruction(target, content); });
  };
  sax.internalSubset = [](void* user, const xmlChar*, const xmlChar*, const xmlChar*) {
    call(user, [](XmlReader& reader) { reader.doctype(); });
  };
  sax.serror = [](void* user, xmlErrorPtr error) { call(user, [&](XmlReader& reader) { reader.complain(*error); }); };
  return sax;
}

}  // namespace

void Source::read_xml(std::string_view text) {
  static std::once_flag started;
  std::call_once(started, xmlInitParser);
  if (text.size() > INT_MAX) fail(1, "the document is too large");
  // libxml2 takes it for the end.
  const std::size_t nul = text.find('\0');
  if (nul != std::string_view::npos) fail(line_at(text, nul), "a NUL character stands in the document");
  check_tags(*this, text);
  const std::unique_ptr<xmlParserCtxt, void (*)(xmlParserCtxt*)> parser(
      xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size())), xmlFreeParserCtxt);
  if (parser == nullptr) throw std::bad_alloc();
  xmlDictReference(parser->dict);
  names_owner_ = {parser->dict, [](void* names) { xmlDictFree(static_cast<xmlDict*>(names)); }};
  XmlReader read(*this, parser.get());
  *parser->sax = callbacks();
  parser->userData = &read;
  // Without a DOCTYPE the only entities are XML's own, which attributes would come with otherwise.
  xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET | XML_PARSE_NOENT);
  xmlParseDocument(parser.get());
  read.report();
  if (parser->wellFormed == 0 || !top_->has_children) fail(1, "the document is not well-formed");
}

}  // namespace yfw
