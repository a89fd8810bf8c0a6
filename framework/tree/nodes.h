// Nodes of data trees, opaque ones included: their operations, their paths, and those above and below them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "yfw-host/data.h"

struct lyd_node;
struct lysc_node;

namespace yfw {

inline constexpr char kNetconfNs[] = "urn:ietf:params:xml:ns:netconf:base:1.0";
inline constexpr char kNetconfModule[] = "ietf-netconf";

// The operation metadata of a node of an edit, or `fallback` when it carries none.
Operation operation_of(const lyd_node* node, Operation fallback);

// What a node with this operation passes down to nodes that carry none.
constexpr Operation passed_down(Operation operation) {
  // Below a replaced node everything is simply there afterwards.
  return operation == Operation::replace ? Operation::merge : operation;
}

// The operation of a node of an edit, passed down where it has none of its own.
Operation effective_operation(const lyd_node* node, Operation default_operation);

// Puts the operation metadata on a node, replacing what it had; `none` takes it off.
void set_operation(lyd_node* node, Operation operation);

// The operation of this name, as in "merge".
std::optional<Operation> operation_named(std::string_view text);

// Adds the removal of a leaf whose value does not matter: an opaque node with the operation `remove`.
lyd_node* new_removed_leaf(lyd_node* parent, const lysc_node* leaf);

// Keeps a container, and those around it, from being taken for one that is there by default: an empty one may carry an
// operation, or hold nothing but removals.
void mark_wanted(lyd_node* node);

// The instance path of a node, opaque ones included: /module:node/node[key='value'].
std::string path_of(const lyd_node* node);

// The name of the leaf at the end of an instance path, without module and predicate.
std::string leaf_name(std::string_view path);

// The value of a list entry's key. Throws Refused where there is none, which no walk and no document leaves behind.
const char* key_value(const lyd_node* entry);

// One predicate of an instance path: [name='value'], with the other quotes where the value needs them.
std::string predicate(std::string_view name, std::string_view value);

// True for a node of that name; a null node has none.
bool named(const lyd_node* node, std::string_view name);

// True for a key of a list entry.
bool is_key(const lyd_node* node);

// True for a node and for all that stand above it.
bool is_ancestor_or_self(const lyd_node* above, const lyd_node* node);

// The node at an instance path; null when there is none.
const lyd_node* node_at(const Data& data, const std::string& path);

// The child of a node by its schema name; null when there is none.
const lyd_node* child_named(const lyd_node* parent, std::string_view name);

// The first child of a node, opaque ones included; null when there is none.
lyd_node* first_child(const lyd_node* node);

// The node of a tree that stands where `node`, of another tree, stands there; null when there is none.
lyd_node* counterpart(const Data& tree, const lyd_node* node);
lyd_node* counterpart_among(const lyd_node* siblings, const lyd_node* node);

// True for a container that only holds what is in it.
bool is_plain_container(const lyd_node* node);

}  // namespace yfw
