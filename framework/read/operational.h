// Native operational data as a device tells it: by card, of which several may tell of one interface.
#pragma once

#include <string>
#include <vector>

#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

// An interface of which two cards say different things.
struct Contradiction {
  std::string interface;  // native name
  Warning warning;        // names both cards, and the one that is used
};

// Leaves each trunk and each sub-interface to the last card that tells of it. OpenConfig has one place for what all of
// them say; parts of several would make up a state that no card is in.
std::vector<Contradiction> keep_last_told(Data& operational);

// The entries of a card's lists of trunks and of sub-interfaces, card by card.
std::vector<const lyd_node*> state_entries_of(const Data& operational);
bool is_state_entry(const lyd_node* node);

// The trees that hold something beside these entries.
std::vector<const lyd_node*> rest_of_state(const Data& operational);

}  // namespace yfw
