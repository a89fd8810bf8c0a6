// Refusals that need no native configuration.
#include "property/model/faults.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <set>

#include "property/model/leaves.h"
#include "property/model/native.h"

namespace property {

namespace {

class RequestCheck {
 public:
  explicit RequestCheck(std::vector<Fault>& faults) : faults_(faults) {}

  void check(const Element& element, const std::string& parent, Op outer) {
    const std::string path = path_below(parent, element);
    const Op op = element.op == Op::inherit ? outer : element.op;
    const Place place = place_of(path);
    if (removes(outer) && element.op != Op::inherit && !removes(element.op)) refuse("bad-attribute", path);
    if (const Leaf* const leaf = find_leaf(place.below)) return check_leaf(*leaf, element, path, op, removes(outer));
    for (const Element& child : element.children) check(child, path, op);
    check_repeated(element, path);
    if (element.name == "match" && !removes(op)) check_forms(element, path, op);
  }

 private:
  void refuse(const char* tag, const std::string& path) { faults_.push_back({tag, path}); }

  // Below what goes as a whole nobody asks what nothing expresses.
  void check_leaf(const Leaf& leaf, const Element& element, const std::string& path, Op op, bool goes_anyway) {
    if (!leaf.is_mapped && !goes_anyway) refuse("operation-not-supported", path);
    if (is_own(leaf) && removes(op)) return refuse("operation-not-supported", path);
    // A leaf goes by its name, an entry of a leaf-list by its value.
    if (removes(op) && element.value.empty() && !leaf.is_list) return;
    // Identities, modules of enumeration values and native limits are judged where they are written.
    constexpr unsigned long kLargestUint16 = 65535;
    const bool has_native_limit =
        leaf.type == Type::mtu && std::strtoul(element.value.c_str(), nullptr, 10) <= kLargestUint16;
    const bool is_judged_late =
        leaf.type == Type::tpid || has_native_limit || plain_value(leaf, element.value) != element.value;
    if ((removes(op) || op == Op::none) && is_judged_late) return;
    const bool is_wrong = leaf.type == Type::trunk_entry && is_inverted(element.value) && !removes(op);
    if (is_wrong || !is_valid(leaf, element.value)) refuse("invalid-value", path);
    if (is_own(leaf) && plain_value(leaf, element.value) != own_value(leaf, place_of(path)))
      refuse("invalid-value", path);
  }

  // Everything stands there once, whatever is to become of it.
  void check_repeated(const Element& element, const std::string& path) {
    std::set<std::string> seen;
    for (const Element& child : element.children) {
      const std::string below = path_below(path, child);
      const std::string identity = is_leaf_list(place_of(below).below) ? below + "[" + child.value + "]" : below;
      if (!seen.insert(identity).second) refuse("bad-element", below);
    }
  }

  static std::string own_value(const Leaf& leaf, const Place& place) {
    if (leaf.type == Type::own_index) return place.index;
    if (leaf.type == Type::own_name) return place.interface;
    return is_bundle(place.interface) ? "ieee8023adLag" : "ethernetCsmacd";
  }

  static bool writes(const Element& element, const std::string& parent, Op outer) {
    const std::string path = path_below(parent, element);
    const Op op = element.op == Op::inherit ? outer : element.op;
    if (removes(op)) return false;
    if (find_leaf(place_of(path).below) != nullptr) return true;
    for (const Element& child : element.children) {
      if (writes(child, path, op)) return true;
    }
    return false;
  }

  void check_forms(const Element& match, const std::string& path, Op op) {
    std::set<std::string> forms;
    for (const Element& form : match.children) {
      if (writes(form, path, op)) forms.insert(form.name);
    }
    if (forms.size() > 1) refuse("invalid-value", path);
  }

  std::vector<Fault>& faults_;
};

const Values* values_at(const Config& config, const std::string& path) {
  const auto found = config.find(path);
  return found == config.end() || found->second.empty() ? nullptr : &found->second;
}

std::string parent_of(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

bool condition_holds(const Config& config, const std::string& path) {
  const std::string leaf = path.substr(path.rfind('/') + 1);
  const Place place = place_of(path);
  if (place.below.starts_with("aggregation/") && !is_bundle(place.interface)) return false;
  if (leaf != "access-vlan" && leaf != "native-vlan" && leaf != "trunk-vlans") return true;
  const Values* const mode = values_at(config, parent_of(path) + "/interface-mode");
  return mode != nullptr && mode->front() == (leaf == "access-vlan" ? "ACCESS" : "TRUNK");
}

// The ids that bound a range from below and from above, by the form of match.
struct Bounds {
  const char* low;
  const char* high;
};
constexpr Bounds kBounds[] = {
    {"single-tagged-range/config/low-vlan-id", "single-tagged-range/config/high-vlan-id"},
    {"double-tagged-inner-range/config/inner-low-vlan-id", "double-tagged-inner-range/config/inner-high-vlan-id"},
    {"double-tagged-outer-range/config/outer-low-vlan-id", "double-tagged-outer-range/config/outer-high-vlan-id"},
};

bool bound_nothing(const Values* low, const Values* high) {
  return low != nullptr && high != nullptr && is_inverted(low->front() + ".." + high->front());
}

}  // namespace

void find_request_faults(const Request& request, std::vector<Fault>& faults) {
  RequestCheck(faults).check(request.interfaces, "", request.default_operation);
}

bool is_upside_down(const Config& unit) {
  for (const auto& [leaf, values] : unit) {
    if (std::any_of(values.begin(), values.end(), is_inverted)) return true;
  }
  return std::any_of(std::begin(kBounds), std::end(kBounds), [&unit](const Bounds& bounds) {
    return bound_nothing(values_at(unit, bounds.low), values_at(unit, bounds.high));
  });
}

void settle_conditions(Config& config, const Config& written, std::vector<Fault>& faults,
                       std::vector<std::string>& dropped) {
  std::vector<std::string> failing;
  for (const auto& [path, values] : config) {
    if (!values.empty() && !condition_holds(config, path)) failing.push_back(path);
  }
  for (const std::string& path : failing) {
    if (written.contains(path)) {
      faults.push_back({"unknown-element", path});
      // Where no mode is set at all the plug-in sees it first.
      if (path.ends_with("/native-vlan")) faults.push_back({"invalid-value", path});
    } else {
      dropped.push_back(path);
      config.erase(path);
    }
  }
  for (const auto& each : written) {
    const std::size_t cut = each.first.find("/vlan/match/");
    if (cut == std::string::npos) continue;
    const std::string match = each.first.substr(0, cut + 12);
    for (const Bounds& bounds : kBounds) {
      const bool touched = each.first == match + bounds.low || each.first == match + bounds.high;
      if (touched && bound_nothing(values_at(config, match + bounds.low), values_at(config, match + bounds.high))) {
        faults.push_back({"invalid-value", each.first});
      }
    }
  }
}

}  // namespace property
