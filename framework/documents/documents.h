// Reading documents: envelopes, limits, operations and the verdict on every node that the models do not accept.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "framework/tree/foreign.h"
#include "framework/tree/models.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

struct ly_ctx;
struct lyd_node;
struct lysc_node;

namespace yfw {

// An edit as it was asked for.
struct EditDocument {
  // OpenConfig data with `ietf-netconf:operation` metadata. Opaque nodes stand only for leaves without a value below
  // a delete or remove, and for identity values without a usable namespace, which a plug-in refuses by itself (their
  // value is the document's).
  Data tree;
  // The same as it was asked for, once it has been rewritten; empty until then.
  Data asked;
  Operation default_operation = Operation::merge;
  std::vector<Warning> warnings;
  // Namespaces of identity and enumeration values as the document binds them; a leaf that is not here has that of its
  // model. A null value: the document gives none where one is required.
  std::unordered_map<const lyd_node*, const char*> value_namespaces;
};

// An OpenConfig edit: <rpc>, <edit-config>, <config> (in NETCONF's namespace or in none), or bare data; JSON with
// RFC 7952 operations. Throws Unreadable when it is not well-formed (DOCTYPE and too deep a nesting included), Refused
// when the model does not take it: unknown elements and namespaces, state data, bad values, missing keys, misspelt
// operations. Refuses what contradicts itself, too: a node that stands there twice, whatever its operations, and one
// that is to be written below one that goes. An operation attribute in no namespace is taken as meant, with a warning.
EditDocument parse_edit(ly_ctx* ctx, const Document& document, Operation default_operation);

// A native running configuration: bare, or inside <data>, <config> or <rpc-reply>; empty containers are fine, an empty
// document is not. It is right as a whole or Unreadable. What models that are not loaded have in it is foreign.
struct RunningDocument {
  Data data;
  ForeignSubtrees foreign;
  std::vector<Warning> warnings;
};
RunningDocument parse_running(const Models& models, const Document& document);

// Native operational data, in the same envelopes, used as far as they fit the model: with `warnings`, each node left
// out is one; without, it goes unsaid.
Data parse_operational(ly_ctx* ctx, const Document& document, std::vector<Warning>* warnings = nullptr);

// Is this an OpenConfig edit, and not a native running configuration? What stands at the top tells. Throws Unreadable.
bool is_edit(ly_ctx* ctx, const Document& document);

// A subtree filter (RFC 6241 section 6): <get>, <get-config>, <filter>, or bare; JSON with null for a selection node.
// All nodes are opaque; those with a value are content-match leaves, and a value that its leaf can hold is in canonical
// form. Nothing is checked but that every element is known. <filter/>, which selects nothing, sets `selects_nothing`.
Data parse_filter(ly_ctx* ctx, const Document& document, bool* selects_nothing = nullptr);

// The filter that selects each of these paths: /interfaces/interface[name='X']/config, the prefixes of nodes optional.
// Throws Refused for a path that cannot be read or names what no model has.
Data paths_to_filter(ly_ctx* ctx, const std::vector<std::string>& paths);

}  // namespace yfw
