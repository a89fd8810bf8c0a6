// A device as it should be: what a request is refused for, what it makes of the native configuration, what reads back.
#pragma once

#include <string>
#include <vector>

#include "property/model/exceptions.h"
#include "property/model/native.h"
#include "property/model/unsaid.h"

namespace property {

// A leaf, or an entry of a leaf-list, whose value after the edit is not the one asked for.
struct Change {
  std::string path;  // an entry of a leaf-list with its value in brackets
  std::string asked;
  std::string found;
  auto operator<=>(const Change&) const = default;
};

struct Verdict {
  std::vector<Fault> faults;  // empty: the request is accepted; otherwise it is refused for one of them
  std::vector<Change> changes;
  // The exceptions that explain the changes; a change that nothing explains is a fault of the model.
  std::vector<std::string> explanations;
  // Paths of what goes though nobody asked, and of what may stay though it does not read back: it has to be told.
  std::vector<std::string> told;
  // What becomes of what OpenConfig does not say, in the entries that the request reaches.
  std::vector<UnsaidLeaf> unsaid;
};

class Device {
 public:
  Device(Native native, bool new_entries_are_l2, bool strict)
      : native_(std::move(native)), new_entries_are_l2_(new_entries_are_l2), strict_(strict) {}

  Verdict apply(const Request& asked);
  Config read() const { return decode(native_); }
  const Native& native() const { return native_; }

 private:
  Native native_;
  bool new_entries_are_l2_;
  bool strict_;
};

// What is asked for and not found, or found and not asked for. Leaves that repeat what is known anyway do not count.
std::vector<Change> changes(const Config& asked, const Config& found);

std::string to_text(const std::vector<Change>& changes);
std::string to_text(const std::vector<Fault>& faults);

}  // namespace property
