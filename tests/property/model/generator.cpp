// Made-up values, leaves and devices.
#include "property/model/generator.h"

#include <algorithm>

#include "property/model/native_models.h"

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

namespace {

bool is_in_a_region(const std::string& native_name, const std::string& leaf) {
  const std::vector<Region> regions = regions_of(native_name);
  return std::any_of(regions.begin(), regions.end(), [&leaf](const Region& region) {
    return !region_of({{leaf, ""}}, region.unit).empty();
  });
}

// A few leaves that the OpenConfig model has no place for.
void add_unmapped_leaves(Random& random, const std::string& native_name, Entry& entry) {
  for (const std::string& leaf : native_leaves()) {
    const bool may_stand = is_l2(entry) || !leaf.starts_with("l2-transport");
    if (may_stand && !is_in_a_region(native_name, leaf) && random.chance(10)) set_native_leaf(random, entry, leaf);
  }
}

}  // namespace

Native make_device(Random& random) {
  Native native;
  for (const std::string& interface : interface_names()) {
    if (random.chance(60)) {
      Entry& entry = native[interface];
      if (random.chance(30)) entry["description"] = "uplink";
      if (random.chance(15)) entry["shutdown"];
      if (random.chance(15)) add_unmapped_leaves(random, interface, entry);
      if (random.chance(50)) set_region(entry, Unit::switched, encode(Unit::switched, make_switched(random), false));
    }
    for (const std::string& index : subinterface_indexes()) {
      if (!random.chance(45)) continue;
      Entry& entry = native[interface + "." + index];
      const bool l2 = random.chance(60);
      if (l2) entry["l2-transport"];
      if (random.chance(20)) entry["mtu"] = "1500";
      if (random.chance(15)) add_unmapped_leaves(random, interface + "." + index, entry);
      if (random.chance(60)) set_region(entry, Unit::match, encode(Unit::match, make_match(random), l2));
      if (random.chance(30)) {
        set_region(entry, Unit::ingress_mapping, encode(Unit::ingress_mapping, make_mapping(random), l2));
      }
    }
  }
  return native;
}

void make_odd(Random& random, const std::string& native_name, Entry& entry) {
  const bool sub = !place_of(openconfig_path(native_name)).index.empty();
  if (random.chance(sub ? 60 : 10)) entry["l2-transport"];
  if (random.chance(70)) {
    for (const Region& region : regions_of(native_name)) {
      set_region(entry, region.unit, encode(region.unit, make_leaves(random, region.unit), is_l2(entry)));
    }
  }
  // A form of its own goes askew with a few leaves more or less.
  const std::size_t density = random.chance(50) ? random.between(0, 10) : random.between(10, 80);
  const std::size_t elsewhere = random.chance(50) ? 0 : random.between(1, 15);
  for (const std::string& leaf : native_leaves()) {
    if (leaf == "l2-transport") continue;
    if (random.chance(is_in_a_region(native_name, leaf) ? density : elsewhere)) set_native_leaf(random, entry, leaf);
    if (random.chance(5)) erase_native_leaf(entry, leaf);
  }
}

Native make_odd_device(Random& random) {
  Native native = make_device(random);
  for (const std::string& interface : interface_names()) {
    for (const std::string& index : {std::string(), std::string("100"), std::string("200")}) {
      const std::string name = index.empty() ? interface : interface + "." + index;
      if (random.chance(75)) make_odd(random, name, native[name]);
    }
  }
  return native;
}

Native make_odd_entries(Random& random) {
  static const std::vector<std::string> odd_names{"Ethernet7.007", ".7", "Eth'7", "Ethernet7.1.2", "Ethernet7.x"};
  Native native;
  const std::size_t count = random.between(1, 3);
  const std::string& interface = random.pick(interface_names());
  for (std::size_t i = 0; i < count; ++i) {
    std::string name = random.chance(4) ? random.pick(odd_names) : interface;
    if (name == interface && random.chance(60)) name += "." + random.pick(subinterface_indexes());
    make_odd(random, name, native[name]);
  }
  return native;
}

}  // namespace property
