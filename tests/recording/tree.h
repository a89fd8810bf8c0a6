// Trees for tests, written the way one would sketch them on paper.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "yfw/yfw_map.h"

namespace recording {

// A tree made from a compact notation:
//
//   Tree tree("vlan { match @replace { single-tagged { config { vlan-id=100 } } } }");
//   tree["match/single-tagged/config/vlan-id"].value   // "100"
//
//   tag                 a node without a value; tag=100 or tag='a b' gives it one (tag='' an empty one)
//   tag { ... }         with children: one contiguous array, bit 0x40 of node_flags set; `{ }` announces none
//   cfg:tag             in a namespace, inherited by what is below; see `namespace_of`; the root's default is oc
//   @merge @create @delete @remove    operation, inherited by what is below
//   @replace            operation 1; what is below carries merge
//   @op=7               any operation, not inherited
//   @select             a selecting leaf (bit 0x02 of node_flags)
//   @xpath              an xpath error node (bit 0x08 of key_flags, xpath_status 5)
//   @vns=types          the value's own namespace (value_ns)
//   @missing            bit 0x40 set and a count of 1, but no array
//   @notag              a node whose tag is null; write any word as its tag
//   @nons               a node whose namespace is null; what is below it has one all the same
class Tree {
 public:
  explicit Tree(std::string_view notation);
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;

  yfw_datatree* root() { return &root_; }

  // The node at a path of tags below the root, the first of each name ("" is the root). Throws when there is none.
  yfw_datatree& operator[](std::string_view path);

  // The n-th child of the root with the tag, counted from 0.
  yfw_datatree& child(std::string_view tag, std::size_t n = 0);

 private:
  friend class TreeParser;

  yfw_datatree root_{};
  std::deque<std::string> texts_;
  std::deque<std::vector<yfw_datatree>> arrays_;
};

// The namespace behind a short name: oc, types, ocif, eth, agg, cfg, oper; any other name x is "urn:x".
std::string namespace_of(std::string_view short_name);

// The short name of a namespace: "-" for null, the text itself where it has none.
std::string short_namespace(const char* ns);

}  // namespace recording
