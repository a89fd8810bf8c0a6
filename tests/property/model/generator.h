// Made-up devices and requests.
#pragma once

#include "property/model/device.h"
#include "property/model/random.h"
#include "property/model/request.h"

namespace property {

// A device and what is asked of it, one request after the other.
struct Sequence {
  Native start = {};
  bool new_entries_are_l2 = false;
  bool strict = false;
  std::vector<Request> requests = {};
};

// The same seed gives the same sequence.
Sequence make_sequence(std::uint64_t seed);

// A request to a device that reads like this.
Request make_request(Random& random, const Config& before);

// One in which a leaf, a container, an entry or a whole list is replaced.
Request make_replace(Random& random, const Config& before);

// The few names that everything made up is about.
const std::vector<std::string>& interface_names();
const std::vector<std::string>& subinterface_indexes();

// A device such as requests make it.
Native make_device(Random& random);

// A device such as no request makes it: encapsulations half written, tag types and texts of any kind, and leaves that
// OpenConfig has no place for.
Native make_odd_device(Random& random);

// A few entries of that kind, some of them with names that are none of an interface.
Native make_odd_entries(Random& random);

// Makes an entry odd: a form of its own with some leaves more or less, and leaves of any kind.
void make_odd(Random& random, const std::string& native_name, Entry& entry);

// Some leaves of a unit, by their path below it: a form of match, a mapping, a port's VLANs.
Config make_leaves(Random& random, Unit unit);

// Different ids; bounds of a range in their order.
Values make_ids(Random& random, std::size_t most);

std::string to_text(const Sequence& sequence);

}  // namespace property
