// A request as these tests see it: elements with values and operations, and how they are written as XML and JSON.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace property {

// `inherit`: the element carries no operation attribute.
enum class Op : std::uint8_t { inherit, merge, replace, create, delete_, remove, none };

inline bool removes(Op op) {
  return op == Op::delete_ || op == Op::remove;
}

const char* name_of(Op op);

// A container, a leaf, an entry of a leaf-list, or an entry of a list (then `value` is its key).
struct Element {
  std::string name;
  std::string value = {};
  Op op = Op::inherit;
  std::vector<Element> children = {};
};

// How the request is written down.
enum class Shape : std::uint8_t { edit_config, config, bare, json };

struct Request {
  Element interfaces{.name = "interfaces"};
  Op default_operation = Op::merge;
  Shape shape = Shape::edit_config;
};

// Lists, and the leaf-lists of the model by the path below their entry.
bool is_list(const std::string& name);
bool is_leaf_list(const std::string& path);

// A leaf or an entry of a leaf-list, by its path below the entry of interface or subinterface.
bool is_term(const std::string& path);

// The element at a path from the top, made where it is missing; of a leaf-list none, see add_leaf.
Element& element_at(Request& request, const std::string& path);

// Adds a leaf, or entries of a leaf-list, with these values. Identities get the prefix that they need.
void add_leaf(Request& request, const std::string& path, const std::vector<std::string>& values);

// The document. A default-operation other than merge needs the shape `edit_config`.
std::string to_text(const Request& request);

}  // namespace property
