// Made-up values, leaves and devices.
#include "property/model/generator.h"

#include <algorithm>

namespace property {

namespace {

constexpr unsigned kHighestId = 4094;

// Ids at their limits, a few that repeat, and any.
std::string make_id(Random& random) {
  static const std::vector<std::string> frequent{"1", "2", "100", "200", "4093", "4094"};
  return random.chance(60) ? random.pick(frequent) : std::to_string(random.between(1, kHighestId));
}

std::pair<std::string, std::string> make_range(Random& random) {
  if (random.chance(15)) return {"1", "4094"};
  const std::size_t low = random.between(1, kHighestId);
  const std::size_t high = random.chance(15) ? low : random.between(low, kHighestId);
  return {std::to_string(low), std::to_string(high)};
}

Values make_trunk_entries(Random& random) {
  Values entries;
  // Around forty entries the native text is full.
  const std::size_t wanted = random.chance(5) ? random.between(30, 60) : random.between(1, 4);
  while (entries.size() < wanted) {
    const auto [low, high] = make_range(random);
    const std::string entry = random.chance(60) ? make_id(random) : low + ".." + high;
    if (std::find(entries.begin(), entries.end(), entry) == entries.end()) entries.push_back(entry);
  }
  return entries;
}

Config make_match(Random& random) {
  constexpr std::size_t kForms = 8;
  const auto [low, high] = make_range(random);
  const std::string id = make_id(random);
  switch (random.below(kForms)) {
    case 0:
      return {{"single-tagged/config/vlan-id", {id}}};
    case 1:
      return {{"single-tagged-list/config/vlan-ids", make_ids(random, 9)}};
    case 2:
      return {{"single-tagged-range/config/low-vlan-id", {low}}, {"single-tagged-range/config/high-vlan-id", {high}}};
    case 3:
      return {{"double-tagged/config/outer-vlan-id", {id}}, {"double-tagged/config/inner-vlan-id", {make_id(random)}}};
    case 4:
      return {{"double-tagged-inner-list/config/outer-vlan-id", {id}},
              {"double-tagged-inner-list/config/inner-vlan-ids", make_ids(random, 9)}};
    case 5:
      return {{"double-tagged-outer-list/config/outer-vlan-ids", make_ids(random, 9)},
              {"double-tagged-outer-list/config/inner-vlan-id", {id}}};
    case 6:
      return {{"double-tagged-inner-range/config/outer-vlan-id", random.chance(10) ? make_ids(random, 3) : Values{id}},
              {"double-tagged-inner-range/config/inner-low-vlan-id", {low}},
              {"double-tagged-inner-range/config/inner-high-vlan-id", {high}}};
    default:
      break;
  }
  return {{"double-tagged-outer-range/config/outer-low-vlan-id", {low}},
          {"double-tagged-outer-range/config/outer-high-vlan-id", {high}},
          {"double-tagged-outer-range/config/inner-vlan-id", {id}}};
}

Config make_mapping(Random& random) {
  const std::string action = random.pick(std::vector<std::string>{"PUSH", "POP", "SWAP"});
  Config leaves{{"config/vlan-stack-action", {action}}};
  const bool tagged = action != "POP" || random.chance(15);
  if (tagged && random.chance(80)) leaves["config/vlan-id"] = {make_id(random)};
  if (tagged && random.chance(70)) leaves["config/tpid"] = {random.chance(50) ? "TPID_0X8100" : "TPID_0X88A8"};
  return leaves;
}

Config make_switched(Random& random) {
  if (random.chance(40)) {
    Config access{{"interface-mode", {"ACCESS"}}};
    if (random.chance(80)) access["access-vlan"] = {make_id(random)};
    return access;
  }
  Config trunk{{"interface-mode", {"TRUNK"}}};
  if (random.chance(85)) trunk["trunk-vlans"] = make_trunk_entries(random);
  if (random.chance(50)) trunk["native-vlan"] = {make_id(random)};
  return trunk;
}

}  // namespace

Values make_ids(Random& random, std::size_t most) {
  Values ids;
  const std::size_t wanted = random.chance(15) ? most : random.between(1, random.chance(70) ? 4 : most);
  while (ids.size() < wanted) {
    const std::string id = make_id(random);
    if (std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
  }
  return ids;
}

Config make_leaves(Random& random, Unit unit) {
  switch (unit) {
    case Unit::match:
      return make_match(random);
    case Unit::ingress_mapping:
      return make_mapping(random);
    case Unit::switched:
      break;
  }
  return make_switched(random);
}

const std::vector<std::string>& interface_names() {
  static const std::vector<std::string> names{"Ethernet0/0/1", "Bundle-Ether5"};
  return names;
}

const std::vector<std::string>& subinterface_indexes() {
  static const std::vector<std::string> indexes{"0", "100", "200"};
  return indexes;
}

// A trunk's text that no request makes, or one longer than any that is written.
std::string make_odd_text(Random& random) {
  static const std::vector<std::string> texts{"10, 20-30",   " 7",          "5-5",           "30-20",  "0,4095,10",
                                              "10,10,10-10", "1 - 5,9999",  "4094 ",         "1-4094", "007,0010-0020",
                                              "1,4 - 10",    "10-20,15-30", "100,0100,4097", "4097"};
  if (random.chance(85)) return random.pick(texts);
  const std::size_t count = random.between(35, 60);
  Values ids;
  for (std::size_t i = 0; i < count; ++i) ids.push_back(std::to_string(random.between(1, kHighestId)));
  return trunk_text(ids);
}

// Any value that the native leaf holds, told by its name.
std::string make_odd_value(Random& random, const std::string& leaf) {
  static const std::vector<std::string> tags{"match-dot1q", "match-dot1ad", "match-untagged"};
  static const std::vector<std::string> kinds{"vlan-type-dot1q", "vlan-type-dot1ad"};
  static const std::vector<std::string> rewrites{"pop1",          "pop2",          "push1",         "push2",
                                                 "translate1to1", "translate1to2", "translate2to1", "translate2to2"};
  static const std::vector<std::string> modes{"access", "trunk", "tunnel"};
  if (leaf.ends_with("/trunk-tag-type") || leaf.ends_with("vlan-type")) return random.pick(kinds);
  if (leaf.ends_with("tag-type")) return random.pick(tags);
  if (leaf.ends_with("rewrite-type")) return random.pick(rewrites);
  if (leaf.ends_with("vlan-switched/mode")) return random.pick(modes);
  if (leaf.ends_with("egress-filtering/mode")) return random.chance(50) ? "strict" : "disabled";
  if (leaf.ends_with("]/action")) return random.chance(50) ? "drop" : "tunnel";
  if (leaf.ends_with("trunk-vla-ns") || leaf.ends_with("outer-range")) return make_odd_text(random);
  if (leaf.ends_with("outer-range1-high") && random.chance(30)) return "4097";
  if (leaf.starts_with("carrier-delay/")) return random.chance(50) ? "0" : "4294967295";
  if (leaf == "mtu") return random.chance(50) ? "64" : "65535";
  return make_id(random);
}

// The leaves of an interface or sub-interface that OpenConfig leaves stand for, whatever their values.
const std::vector<std::string>& odd_leaves(bool sub) {
  static const std::vector<std::string> of_interface{"vlan-trunk-configuration/native-vlan-identifier/vlan-type",
                                                     "vlan-trunk-configuration/native-vlan-identifier/vlan-identifier",
                                                     "vlan-trunk-configuration/vlan-switched/mode",
                                                     "vlan-trunk-configuration/vlan-switched/access-vlan",
                                                     "vlan-trunk-configuration/vlan-switched/trunk-tag-type",
                                                     "vlan-trunk-configuration/vlan-switched/trunk-vla-ns"};
  static const std::vector<std::string> of_subinterface = [] {
    std::vector<std::string> leaves;
    for (const char* const each : {"outer-tag-type", "inner-tag-type", "outer-range1-low", "outer-range1-high",
                                   "inner-range1-low", "inner-range1-high"}) {
      leaves.push_back(std::string("ethernet-service/encapsulation/") + each);
    }
    for (std::size_t i = 1; i <= 8; ++i) {
      leaves.push_back("ethernet-service/encapsulation/additional-range" + std::to_string(i) + "-low");
    }
    for (const char* const each : {"vlan-type", "first-tag", "second-tag"}) {
      leaves.push_back(std::string("vlan-sub-configuration/vlan-identifier/") + each);
    }
    for (const char* const each : {"rewrite-type", "outer-tag-type", "outer-tag-value"}) {
      leaves.push_back(std::string("ethernet-service/rewrite/") + each);
    }
    return leaves;
  }();
  return sub ? of_subinterface : of_interface;
}

// Leaves of any entry that no OpenConfig leaf stands for.
const std::vector<std::string>& unmapped_leaves() {
  static const std::vector<std::string> leaves{"user-network-interface",
                                               "ethernet-service/local-traffic-default-encapsulation/outer-tag-type",
                                               "ethernet-service/local-traffic-default-encapsulation/outer-tag",
                                               "ethernet-bng/ambiguous-encapsulation/outer-tag-type",
                                               "ethernet-bng/ambiguous-encapsulation/outer-range",
                                               "mac-accounting/ingress",
                                               "mac-accounting/egress",
                                               "ethernet-features/egress-filtering/mode",
                                               "carrier-delay/up",
                                               "carrier-delay/down",
                                               "l2-transport/l2-protocols/l2-protocol[cdp]/action",
                                               "l2-transport/l2-protocols/l2-protocol[stp]/l2-protocol-name",
                                               "l2-transport/propagate-remote-status",
                                               "l2-transport/l2-ethernet-features/ingress-filtering"};
  return leaves;
}

bool is_empty_leaf(const std::string& leaf) {
  static const std::vector<std::string> leaves{"user-network-interface",
                                               "mac-accounting/ingress",
                                               "mac-accounting/egress",
                                               "l2-transport/propagate-remote-status",
                                               "l2-transport/l2-ethernet-features/ingress-filtering",
                                               "shutdown"};
  return std::find(leaves.begin(), leaves.end(), leaf) != leaves.end();
}

// A leaf with what has to be there along with it.
void set_leaf(Random& random, Entry& entry, const std::string& leaf) {
  const std::size_t key = leaf.find("l2-protocol[");
  const bool in_layer = leaf.starts_with("l2-transport/");
  if (in_layer) entry["l2-transport"];
  if (key != std::string::npos) {
    const std::size_t end = leaf.find(']', key);
    entry[leaf.substr(0, end) + "]/l2-protocol-name"] = leaf.substr(key + 12, end - key - 12);
  }
  if (leaf.ends_with("/l2-protocol-name")) return;
  entry[leaf] = is_empty_leaf(leaf) ? "" : make_odd_value(random, leaf);
}

void set_unmapped_leaves(Random& random, Entry& entry, std::size_t density) {
  for (const std::string& leaf : unmapped_leaves()) {
    const bool may_stand = !leaf.starts_with("l2-transport/") || is_l2(entry);
    if (may_stand && random.chance(density)) set_leaf(random, entry, leaf);
  }
}

Native make_device(Random& random) {
  Native native;
  for (const std::string& interface : interface_names()) {
    if (random.chance(60)) {
      Entry& entry = native[interface];
      if (random.chance(30)) entry["description"] = "uplink";
      if (random.chance(15)) entry["shutdown"];
      if (random.chance(15)) set_unmapped_leaves(random, entry, 20);
      if (random.chance(50)) set_region(entry, Unit::switched, encode(Unit::switched, make_switched(random), false));
    }
    for (const std::string& index : subinterface_indexes()) {
      if (!random.chance(45)) continue;
      Entry& entry = native[interface + "." + index];
      const bool l2 = random.chance(60);
      if (l2) entry["l2-transport"];
      if (random.chance(20)) entry["mtu"] = "1500";
      if (random.chance(15)) set_unmapped_leaves(random, entry, 20);
      if (random.chance(60)) set_region(entry, Unit::match, encode(Unit::match, make_match(random), l2));
      if (random.chance(30)) {
        set_region(entry, Unit::ingress_mapping, encode(Unit::ingress_mapping, make_mapping(random), l2));
      }
    }
  }
  return native;
}

Native make_odd_device(Random& random) {
  Native native = make_device(random);
  for (const std::string& interface : interface_names()) {
    for (const std::string& index : {std::string(), std::string("100"), std::string("200")}) {
      if (random.chance(25)) continue;
      const bool sub = !index.empty();
      Entry& entry = native[sub ? interface + "." + index : interface];
      if (sub && random.chance(60)) entry["l2-transport"];
      const std::size_t density = random.between(10, 80);
      for (const std::string& leaf : odd_leaves(sub)) {
        // A form of its own goes askew with a few leaves more or less.
        if (random.chance(density)) set_leaf(random, entry, leaf);
        if (random.chance(10)) entry.erase(leaf);
      }
      // Leaves that mean something in entries of the other kind.
      for (const std::string& leaf : odd_leaves(!sub)) {
        if (random.chance(2)) set_leaf(random, entry, leaf);
      }
      set_unmapped_leaves(random, entry, random.between(0, 20));
      for (const std::string leaf : {"mtu", "shutdown"}) {
        if (random.chance(10)) set_leaf(random, entry, leaf);
      }
    }
  }
  return native;
}

}  // namespace property
