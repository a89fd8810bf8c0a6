// XML as it comes from outside: libxml2 reads it, without DTDs, entities of its own or anything from the network.
#include <fmt/format.h>
#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>

#include <climits>
#include <memory>
#include <mutex>
#include <vector>

#include "framework/documents_source.h"

namespace yfw {

namespace {

std::string_view view(const xmlChar* text) {
  return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

bool is_blank(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// What libxml2 calls while it reads. Nothing thrown may pass through it, so the first problem is kept and ends the run.
class XmlReader {
 public:
  XmlReader(Source& source, xmlParserCtxt* parser) : source_(source), parser_(parser) {
    open_.push_back(const_cast<Element*>(&source.top()));
  }

  void start(const xmlChar* name, const xmlChar* ns, int scopes, const xmlChar** scope, int attributes,
             const xmlChar** attribute) {
    if (!problem_.empty()) return;
    Element& parent = *open_.back();
    if (!is_blank(text_)) return stop(fmt::format("text stands beside elements in '{}'", parent.name));
    text_.clear();
    if (open_.size() > kDeepest) return stop(fmt::format("elements are nested more than {} deep", kDeepest));
    Element* const element =
        source_.add(parent, view(name), ns == nullptr ? nullptr : source_.intern(view(ns)), line());
    // Two pointers each: prefix and namespace.
    for (; scopes > 0; --scopes, scope += 2) {
      element->scope =
          source_.store(Scope{source_.intern(view(scope[0])), source_.intern(view(scope[1])), element->scope});
    }
    // Five pointers each: local name, prefix, namespace, begin and end of the value.
    for (; attributes > 0; --attributes, attribute += 5) add_attribute(*element, attribute);
    open_.push_back(element);
  }

  void characters(const xmlChar* text, int size) {
    if (!problem_.empty()) return;
    text_.append(reinterpret_cast<const char*>(text), static_cast<std::size_t>(size));
    if (text_.size() > kLongestText) stop(fmt::format("a text is longer than {} bytes", kLongestText));
  }

  void end() {
    if (!problem_.empty()) return;
    Element& element = *open_.back();
    if (element.first != nullptr && !is_blank(text_)) {
      return stop(fmt::format("text stands beside elements in '{}'", element.name));
    }
    if (element.first == nullptr && !text_.empty()) {
      element.kind = Kind::text;
      element.value = source_.keep(text_);
    }
    text_.clear();
    open_.pop_back();
  }

  void doctype() { stop("a DOCTYPE is not accepted"); }

  void complain(const xmlError& error) {
    if (error.level < XML_ERR_ERROR) return;
    std::string_view reason = error.message == nullptr ? "not well-formed" : error.message;
    stop(reason.substr(0, reason.find('\n')), error.line);
  }

  void report() const {
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

  void add_attribute(Element& element, const xmlChar** parts) {
    const std::string_view value(reinterpret_cast<const char*>(parts[3]),
                                 static_cast<std::size_t>(parts[4] - parts[3]));
    if (value.size() > kLongestAttribute) {
      return stop(fmt::format("attribute '{}' of '{}' is longer than {} bytes", view(parts[0]), element.name,
                              kLongestAttribute));
    }
    const char* const ns = parts[2] == nullptr ? nullptr : source_.intern(view(parts[2]));
    element.attributes =
        source_.store(Attribute{ns, source_.intern(view(parts[0])), source_.keep(value), element.attributes});
  }

  Source& source_;
  xmlParserCtxt* parser_;
  std::vector<Element*> open_;
  std::string text_;
  std::string problem_;
  int line_ = 0;
};

XmlReader& reader(void* user) {
  return *static_cast<XmlReader*>(user);
}

xmlSAXHandler callbacks() {
  xmlSAXHandler sax{};
  sax.initialized = XML_SAX2_MAGIC;
  sax.startElementNs = [](void* user, const xmlChar* name, const xmlChar*, const xmlChar* ns, int scopes,
                          const xmlChar** scope, int attributes, int, const xmlChar** attribute) {
    reader(user).start(name, ns, scopes, scope, attributes, attribute);
  };
  sax.endElementNs = [](void* user, const xmlChar*, const xmlChar*, const xmlChar*) { reader(user).end(); };
  sax.characters = [](void* user, const xmlChar* text, int size) { reader(user).characters(text, size); };
  sax.ignorableWhitespace = sax.characters;
  sax.cdataBlock = sax.characters;
  sax.internalSubset = [](void* user, const xmlChar*, const xmlChar*, const xmlChar*) { reader(user).doctype(); };
  sax.serror = [](void* user, xmlErrorPtr error) { reader(user).complain(*error); };
  return sax;
}

}  // namespace

void Source::read_xml(std::string_view text) {
  static std::once_flag started;
  std::call_once(started, xmlInitParser);
  if (text.size() > INT_MAX) fail(1, "the document is too large");
  const std::unique_ptr<xmlParserCtxt, void (*)(xmlParserCtxt*)> parser(
      xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size())), xmlFreeParserCtxt);
  if (parser == nullptr) fail(1, "the document cannot be read");
  XmlReader read(*this, parser.get());
  *parser->sax = callbacks();
  parser->userData = &read;
  xmlCtxtUseOptions(parser.get(), XML_PARSE_NONET);
  xmlParseDocument(parser.get());
  read.report();
  if (parser->wellFormed == 0 || top_->first == nullptr) fail(1, "the document is not well-formed");
}

}  // namespace yfw
