// The exceptions of the round trip: what OpenConfig can say and native configuration does not give back.
#pragma once

#include <vector>

#include "property/model/native.h"

namespace property {

struct Exception {
  const char* name;
  Unit unit;
  bool (*applies)(const Config& leaves);  // by their path below the unit
  const char* happens;                    // what is to be seen
  const char* instead;                    // what to ask for
  const char* told;                       // how it is reported
  Config example;                         // leaves of the unit
};

const std::vector<Exception>& exceptions();

// Those that the leaves of a unit meet.
std::vector<const Exception*> exceptions_of(Unit unit, const Config& leaves);

}  // namespace property
