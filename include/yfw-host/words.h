// VLAN settings in a few words for a person: what OpenConfig says, and what a native entry holds.
#pragma once

#include <string>
#include <vector>

#include "yfw-host/host.h"

struct lyd_node;

namespace yfw {

// What a part of an OpenConfig tree says, in the words of a table; empty when it says nothing. `side` is "config" or
// "state". Null nodes say nothing.
std::string match_words(const lyd_node* match, const char* side);
std::string rewrite_words(const lyd_node* ingress_mapping, const char* side);
std::string switched_words(const lyd_node* switched_vlan, const char* side);
std::string subinterface_words(const lyd_node* subinterface, const char* side);
std::string interface_words(const lyd_node* interface, const char* side);

// What a native container of an interface entry holds, e.g. "10-20,30" for an encapsulation.
std::string native_words(const lyd_node* container);

// The OpenConfig words for what a native container means: those of the part that it is read as. `reading` is the
// OpenConfig entry; null or a container that nothing is read from has none.
std::string reading_words(const lyd_node* reading, const char* native_container);

// Those unsaid settings of one native entry that are about VLANs, by containers, e.g. "rewrite pop2"; empty when none
// is.
std::string unsaid_words(const std::vector<Unsaid>& unsaid);

}  // namespace yfw
