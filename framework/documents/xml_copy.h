// A subtree of an XML document written out again while it is read.
#pragma once

#include <libxml/xmlstring.h>

#include <set>
#include <string>
#include <string_view>

#include "framework/documents/source.h"

namespace yfw {

// What the reader meets goes in, in its order; the text that comes out is canonically the same and stands for itself:
// declarations of the elements around it are taken along as far as a name or a value may need them.
class XmlCopy {
 public:
  // Names, declarations and attributes as libxml2 gives them.
  void start(const xmlChar* name, const xmlChar* prefix, int scopes, const xmlChar** scope, int attributes,
             const xmlChar** attribute);
  void characters(std::string_view text);
  void cdata(std::string_view text);
  void comment(std::string_view text);
  void instruction(std::string_view target, std::string_view content);
  void end(const xmlChar* name, const xmlChar* prefix);

  // How many elements are open.
  std::size_t depth() const { return depth_; }
  // How long the text is that no tag has ended yet.
  std::size_t text_size() const { return value_.size(); }

  // The text, after the last end. `around` holds the element.
  std::string take(const Element& around);

 private:
  void close_tag();
  void end_value();
  void add_escaped(std::string_view text, std::string_view special);
  void use_prefixes_of(std::string_view value);

  std::string text_;
  std::string value_;  // what stands between two tags
  std::size_t depth_ = 0;
  std::size_t after_name_ = 0;    // of the outermost element
  bool in_tag_ = false;           // the '>' of a start tag is still to come
  bool prefixed_ = false;         // the outermost element
  std::set<std::string> own_;     // prefixes that the outermost element declares; "" for the default namespace
  std::set<std::string> needed_;  // prefixes that names, and values that look like names, have
};

}  // namespace yfw
