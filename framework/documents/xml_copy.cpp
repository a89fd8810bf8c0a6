// A subtree of an XML document written out again while it is read.
#include "framework/documents/xml_copy.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <utility>

#include "framework/documents/envelope.h"
#include "framework/documents/source.h"
#include "framework/tree/nodes.h"

namespace yfw {

namespace {

constexpr std::string_view kInText = "&<>\r";
constexpr std::string_view kInAttribute = "&<\"\t\n\r";

std::string_view view(const xmlChar* text) {
  return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

std::string qualified(const xmlChar* prefix, const xmlChar* name) {
  return prefix == nullptr ? std::string(view(name)) : fmt::format("{}:{}", view(prefix), view(name));
}

bool is_name_character(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return std::isalnum(byte) != 0 || byte >= 0x80 || c == '_' || c == '-' || c == '.';
}

}  // namespace

void XmlCopy::close_tag() {
  if (in_tag_) text_ += '>';
  in_tag_ = false;
}

void XmlCopy::end_value() {
  use_prefixes_of(value_);
  value_.clear();
}

void XmlCopy::add_escaped(std::string_view text, std::string_view special) {
  while (!text.empty()) {
    const std::size_t plain = std::min(text.find_first_of(special), text.size());
    text_ += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) return;
    text_ += text.front() == '&'   ? "&amp;"
             : text.front() == '<' ? "&lt;"
             : text.front() == '>' ? "&gt;"
             : text.front() == '"' ? "&quot;"
                                   : fmt::format("&#{};", static_cast<int>(text.front()));
    text.remove_prefix(1);
  }
}

// Values may be qualified names, or hold some (paths do): every "name:" in one counts as a prefix.
void XmlCopy::use_prefixes_of(std::string_view value) {
  for (std::size_t colon = value.find(':'); colon != std::string_view::npos; colon = value.find(':', colon + 1)) {
    std::size_t begin = colon;
    while (begin > 0 && is_name_character(value[begin - 1])) --begin;
    if (begin < colon) needed_.emplace(value.substr(begin, colon - begin));
  }
}

void XmlCopy::start(const xmlChar* name, const xmlChar* prefix, int scopes, const xmlChar** scope, int attributes,
                    const xmlChar** attribute) {
  end_value();
  close_tag();
  text_ += '<';
  text_ += qualified(prefix, name);
  if (prefix != nullptr) needed_.emplace(view(prefix));
  const bool outermost = depth_++ == 0;
  if (outermost) {
    after_name_ = text_.size();
    prefixed_ = prefix != nullptr;
  }
  // Two pointers each: prefix and namespace.
  for (; scopes > 0; --scopes, scope += 2) {
    if (outermost) own_.emplace(view(scope[0]));
    text_ += scope[0] == nullptr ? " xmlns=\"" : fmt::format(" xmlns:{}=\"", view(scope[0]));
    add_escaped(view(scope[1]), kInAttribute);
    text_ += '"';
  }
  // Five pointers each: local name, prefix, namespace, begin and end of the value.
  for (; attributes > 0; --attributes, attribute += 5) {
    const std::string_view value(reinterpret_cast<const char*>(attribute[3]),
                                 static_cast<std::size_t>(attribute[4] - attribute[3]));
    if (attribute[1] != nullptr) needed_.emplace(view(attribute[1]));
    use_prefixes_of(value);
    text_ += fmt::format(" {}=\"", qualified(attribute[1], attribute[0]));
    add_escaped(value, kInAttribute);
    text_ += '"';
  }
  in_tag_ = true;
}

void XmlCopy::characters(std::string_view text) {
  close_tag();
  value_ += text;
  add_escaped(text, kInText);
}

void XmlCopy::cdata(std::string_view text) {
  close_tag();
  value_ += text;
  text_ += fmt::format("<![CDATA[{}]]>", text);
}

void XmlCopy::comment(std::string_view text) {
  close_tag();
  text_ += fmt::format("<!--{}-->", text);
}

void XmlCopy::instruction(std::string_view target, std::string_view content) {
  close_tag();
  text_ += fmt::format("<?{}{}{}?>", target, content.empty() ? "" : " ", content);
}

void XmlCopy::end(const xmlChar* name, const xmlChar* prefix) {
  end_value();
  text_ += in_tag_ ? std::string("/>") : fmt::format("</{}>", qualified(prefix, name));
  in_tag_ = false;
  --depth_;
}

std::string XmlCopy::take(const Element& around) {
  std::string head = text_.substr(0, after_name_);
  const std::string tail = text_.substr(after_name_);
  text_ = std::move(head);
  const auto declare = [this](const std::string& prefix, const char* ns) {
    text_ += prefix.empty() ? " xmlns=\"" : fmt::format(" xmlns:{}=\"", prefix);
    add_escaped(ns, kInAttribute);
    text_ += '"';
  };
  // Unprefixed names and values mean the default namespace, which is that of the element around it once it is printed.
  if (!own_.contains("")) {
    const char* const bound = Source::bound(around, "");
    const char* const outer = bound == nullptr ? "" : bound;
    const char* const there = is_netconf(around.ns) ? kNetconfNs : around.ns;
    if (!prefixed_ || std::strcmp(outer, there) != 0) declare("", outer);
  }
  for (const std::string& prefix : needed_) {
    const char* const ns = own_.contains(prefix) ? nullptr : Source::bound(around, prefix);
    if (ns != nullptr) declare(prefix, ns);
  }
  text_ += tail;
  return std::move(text_);
}

}  // namespace yfw
