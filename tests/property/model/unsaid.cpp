// Said and unsaid by the tables of both directions.
#include "property/model/unsaid.h"

#include <algorithm>

#include "property/model/faults.h"

namespace property {

namespace {

bool is_one_form(const Config& match) {
  const auto form = [](const auto& leaf) { return leaf.first.substr(0, leaf.first.find('/')); };
  return std::all_of(match.begin(), match.end(), [&](const auto& leaf) { return form(leaf) == form(*match.begin()); });
}

// Whether a request for these leaves of a unit is taken.
bool can_be_asked(Unit unit, const Config& leaves) {
  if (is_upside_down(leaves)) return false;
  if (unit == Unit::match) return is_one_form(leaves);
  const auto trunk = leaves.find("trunk-vlans");
  return trunk == leaves.end() || trunk_text(trunk->second).size() <= kLongestTrunkText;
}

bool is_whole(Op op) {
  return removes(op) || op == Op::replace || op == Op::create;
}

class Reaching {
 public:
  explicit Reaching(const Native& native) : native_(native) {}

  Reach reach;

  void interfaces(const Request& request) {
    const Op outer = own(request.interfaces, request.default_operation);
    if (is_whole(outer)) {
      for (const auto& each : native_) reach.named.insert(each.first);
    }
    for (const Element& interface : request.interfaces.children) one(interface, own(interface, outer));
    for (const std::string& name : reach.named) reach.passed.erase(name);
  }

 private:
  static Op own(const Element& element, Op outer) { return element.op == Op::inherit ? outer : element.op; }

  std::vector<std::string> subs_of(const std::string& interface) const {
    std::vector<std::string> subs;
    for (const auto& each : native_) {
      if (each.first.starts_with(interface + ".")) subs.push_back(each.first);
    }
    return subs;
  }

  void one(const Element& interface, Op op) {
    const std::vector<std::string> subs = subs_of(interface.value);
    reach.passed.insert(interface.value);
    // A sub-interface holds the place of an interface that has no entry.
    if (!native_.contains(interface.value) && !subs.empty()) reach.passed.insert(subs.front());
    if (is_whole(op)) {
      reach.named.insert(interface.value);
      reach.named.insert(subs.begin(), subs.end());
    }
    for (const Element& child : interface.children) {
      if (child.name != "subinterfaces") {
        reach.named.insert(interface.value);
        continue;
      }
      if (is_whole(own(child, op))) reach.named.insert(subs.begin(), subs.end());
      for (const Element& sub : child.children) reach.named.insert(interface.value + "." + sub.value);
    }
  }

  const Native& native_;
};

}  // namespace

Entry written_back(const std::string& native_name, const Entry& entry) {
  const Config read = decode(native_name, entry);
  const std::string path = openconfig_path(native_name);
  Entry written;
  set_own_leaves(written, path, read);
  for (const Region& region : regions_of(native_name)) {
    const Config leaves = part(read, region.path);
    if (can_be_asked(region.unit, leaves)) written.merge(encode(region.unit, leaves, is_l2(entry)));
  }
  keep_stored_text(written, entry);
  return written;
}

Entry unsaid_of(const std::string& native_name, const Entry& entry) {
  const Entry written = written_back(native_name, entry);
  Entry unsaid;
  for (const auto& [leaf, value] : entry) {
    const auto made = written.find(leaf);
    const bool is_said = made != written.end() && made->second == value;
    if (!is_said && leaf != "l2-transport") unsaid.emplace(leaf, value);
  }
  return unsaid;
}

Reach reach_of(const Request& request, const Native& native) {
  Reaching reaching(native);
  reaching.interfaces(request);
  return std::move(reaching.reach);
}

std::vector<UnsaidLeaf> unsaid_after(const Reach& reach, const Native& before, const Native& after) {
  std::vector<UnsaidLeaf> leaves;
  for (const auto& [name, entry] : before) {
    const bool passed = reach.passed.contains(name);
    if (!passed && !reach.named.contains(name)) continue;
    const auto then = after.find(name);
    for (const auto& [leaf, value] : unsaid_of(name, entry)) {
      const bool stays = then != after.end() && then->second.contains(leaf) && then->second.at(leaf) == value;
      if (!stays || !passed) leaves.push_back({name, leaf, value, !stays});
    }
  }
  return leaves;
}

std::string to_text(const std::vector<UnsaidLeaf>& leaves) {
  std::string text;
  for (const UnsaidLeaf& each : leaves) {
    text += each.entry + " " + each.path + (each.value.empty() ? "" : " " + each.value) +
            (each.goes ? " goes\n" : " stays\n");
  }
  return text;
}

}  // namespace property
