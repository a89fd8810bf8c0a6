// What the OpenConfig reading of a native entry leaves unsaid, and what it is taken for instead.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct lyd_node;
struct lysc_node;

namespace yfw {

// The verdict on the reading of one native entry. Pointers are into the entry.
struct EntryVerdict {
  struct Misread {
    const lysc_node* container;  // the native container, whether or not the entry has it
    std::string reads_as;
    std::string natively;
    std::vector<const lysc_node*> makes;  // leaves that are not there, or not with this value
  };
  const lyd_node* entry = nullptr;
  std::vector<const lyd_node*> unsaid;  // leaves and presence containers, in document order
  std::vector<const lyd_node*> beside;  // leaves of models that the mapping does not cover
  std::vector<Misread> misread;
  // Those of `unsaid` that are read all the same, beside a value that no request may have.
  std::vector<const lyd_node*> readable;

  bool all_said() const { return unsaid.empty() && misread.empty(); }
};

// "ethernet-service/rewrite/rewrite-type "pop2"": a leaf by its path below the entry.
std::string setting(const lyd_node* entry, const lyd_node* leaf);

// The value of a leaf; empty for a container.
std::string value_of(const lyd_node* leaf);

// True for the key of an inner entry that other leaves of it name as well.
bool is_named_by_others(const lyd_node* leaf);

// What the container of a leaf is taken for; empty when for nothing else.
std::string misread_as(const EntryVerdict& verdict, const lyd_node* leaf);

// Appends a part to a list in words.
void append(std::string& text, std::string_view separator, std::string_view part);

}  // namespace yfw
