// Why a leaf does not read back as it was asked for: the known exceptions, each told by what was asked, what was there
// and what reads back.
#pragma once

#include <string>
#include <vector>

#include "framework/datastore/running.h"
#include "yfw-host/data.h"
#include "yfw-host/host.h"

namespace yfw {

// An edit as its outcome is judged: the native configuration before it, and the OpenConfig one before it, as it should
// be and as it reads back.
struct Outcome {
  const Running& running;
  const Data& before;
  const Data& expected;
  const Data& after;
  // Paths of the containers that were merged into although what they hold natively does not read back whole.
  const std::vector<std::string>& merged_into_unread;
};

// What is known about the difference, with what to ask for instead; empty when nothing is.
std::string cause_of(const Outcome& outcome, const Difference& difference);

}  // namespace yfw
