// The protocol elements around data: which ones there are, and what they say.
#pragma once

#include <optional>

#include "framework/documents/source.h"
#include "yfw-host/data.h"

namespace yfw {

enum class Envelope : std::uint8_t { edit, data, filter };

struct Payload {
  const Element* content = nullptr;                 // its children are the data
  std::optional<Operation> default_operation = {};  // as <default-operation> says
};

// Throws Refused for protocol elements that mean something else than was asked for.
Payload find_payload(const Source& source, Envelope wanted);

// Looks for the payload while a document is read. What follows may show that there is none, or another one: what
// `find_payload` says of the document counts.
class PayloadSearch {
 public:
  explicit PayloadSearch(Envelope wanted);

  // Asked as each element begins until the answer is yes: are the children of `parent` the data?
  bool is_content(const Element& parent, const Element& child);

 private:
  unsigned where_;
  bool is_begun_ = false;
  const Element* inside_ = nullptr;  // the innermost protocol element so far
  bool inside_content_ = false;
};

// True for names of NETCONF itself: in its namespace or, as many write them, in none.
bool is_netconf(const char* ns);

}  // namespace yfw
