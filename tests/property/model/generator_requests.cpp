// Requests that are mostly sensible, about a few interfaces, so that they meet each other.
#include <algorithm>

#include "property/model/generator.h"
#include "property/model/leaves.h"

namespace property {

namespace {

Element& child_of(Element& parent, const std::string& name) {
  for (Element& child : parent.children) {
    if (child.name == name) return child;
  }
  return parent.children.emplace_back(Element{.name = name});
}

// The element at a path of plain names below another one, made where it is missing.
Element& at(Element& top, const std::string& path) {
  Element* element = &top;
  for (std::size_t begin = 0; begin <= path.size();) {
    const std::size_t end = std::min(path.find('/', begin), path.size());
    element = &child_of(*element, path.substr(begin, end - begin));
    begin = end + 1;
  }
  return *element;
}

std::string written_value(Random& random, const std::string& path, const std::string& value) {
  const Leaf& leaf = *find_leaf(path);
  if (leaf.type == Type::tpid) return "oc-vlan-types:" + value;
  const bool has_words = leaf.type == Type::mode || leaf.type == Type::action;
  return has_words && random.chance(30) ? "oc-vlan-types:" + value : value;
}

void put(Random& random, Element& entry, const std::string& path, const Values& values) {
  const std::size_t cut = path.rfind('/');
  Element& config = at(entry, path.substr(0, cut));
  const std::string name = path.substr(cut + 1);
  if (!is_leaf_list(path)) std::erase_if(config.children, [&name](const Element& each) { return each.name == name; });
  for (const std::string& value : values) {
    config.children.push_back({.name = name, .value = written_value(random, path, value)});
  }
}

// Leaves of a unit to ask for: what is there already, some of it, or something else.
Config choose_leaves(Random& random, Unit unit, const Config& there) {
  Config leaves = !there.empty() && random.chance(40) ? there : make_leaves(random, unit);
  if (random.chance(30)) {
    const auto chosen = std::next(leaves.begin(), static_cast<std::ptrdiff_t>(random.below(leaves.size())));
    const std::string leaf = chosen->first;
    const bool alone = random.chance(50);
    std::erase_if(leaves, [&leaf, alone](const auto& each) { return alone == (each.first != leaf); });
  }
  for (auto& [leaf, values] : leaves) {
    const bool same_form = there.contains(leaf);
    if (!same_form || values.size() < 2 || random.chance(40)) continue;
    values.resize(random.between(1, values.size()));
  }
  return leaves;
}

Element make_subinterface(Random& random, const std::string& interface, const Config& before) {
  const std::string index = random.pick(subinterface_indexes());
  const std::string path = subinterface_path(interface, index);
  Element entry{.name = "subinterface", .value = index};
  if (random.chance(15)) put(random, entry, "config/index", {index});
  if (random.chance(15)) put(random, entry, "config/description", {random.chance(50) ? "customer" : "<a & b>"});
  if (random.chance(10)) put(random, entry, "config/enabled", {random.chance(60) ? "false" : "true"});
  if (random.chance(75)) {
    const Config leaves = choose_leaves(random, Unit::match, part(before, path + "/vlan/match"));
    for (const auto& [leaf, values] : leaves) put(random, entry, "vlan/match/" + leaf, values);
  }
  if (random.chance(35)) {
    const Config leaves = choose_leaves(random, Unit::ingress_mapping, part(before, path + "/vlan/ingress-mapping"));
    for (const auto& [leaf, values] : leaves) put(random, entry, "vlan/ingress-mapping/" + leaf, values);
  }
  return entry;
}

Element make_interface(Random& random, const std::string& name, const Config& before) {
  Element entry{.name = "interface", .value = name};
  if (random.chance(15)) put(random, entry, "config/name", {name});
  if (random.chance(15)) put(random, entry, "config/description", {"uplink"});
  if (random.chance(10)) put(random, entry, "config/mtu", {random.chance(50) ? "1500" : "9000"});
  if (random.chance(10)) put(random, entry, "config/enabled", {random.chance(60) ? "false" : "true"});
  if (random.chance(35)) {
    const std::string config = std::string(is_bundle(name) ? "aggregation" : "ethernet") + "/switched-vlan/config";
    const Config there = part(before, interface_path(name) + "/" + config);
    for (const auto& [leaf, values] : choose_leaves(random, Unit::switched, there)) {
      put(random, entry, config + "/" + leaf, values);
    }
  }
  const std::size_t subs = random.chance(75) ? random.between(1, 2) : 0;
  for (std::size_t i = 0; i < subs; ++i) {
    Element sub = make_subinterface(random, name, before);
    Element& list = child_of(entry, "subinterfaces");
    const bool known = std::any_of(list.children.begin(), list.children.end(),
                                   [&sub](const Element& each) { return each.value == sub.value; });
    if (!known) list.children.push_back(std::move(sub));
  }
  return entry;
}

struct Target {
  Element* element;
  std::string path;
};

void collect(Element& element, const std::string& parent, std::vector<Target>& all) {
  const std::string path = path_below(parent, element);
  all.push_back({&element, path});
  for (Element& child : element.children) collect(child, path, all);
}

// Gives some element an operation, mostly one that the element is there for, or not there for. What goes is mostly
// named without anything in it.
void give_operation(Random& random, Request& request, const Config& before) {
  static const std::vector<Op> kinds{Op::replace, Op::replace, Op::create, Op::delete_, Op::delete_,
                                     Op::delete_, Op::remove,  Op::remove, Op::merge};
  std::vector<Target> all;
  collect(request.interfaces, "", all);
  // The whole of a device is seldom meant.
  const std::size_t first = all.size() > 2 && !random.chance(5) ? 2 : 0;
  const Target& target = all[random.between(first, all.size() - 1)];
  Element& element = *target.element;
  if (element.name == "name" || element.name == "index") return;
  element.op = random.pick(kinds);
  const bool is_vain = exists(before, target.path) ? element.op == Op::create : element.op == Op::delete_;
  if (is_vain && random.chance(75)) element.op = element.op == Op::create ? Op::replace : Op::remove;
  if (removes(element.op) && random.chance(85)) element.children.clear();
}

// Below what goes or comes as a whole nothing has an operation of its own.
void keep_outermost(Element& element, bool is_inside) {
  if (is_inside) element.op = Op::inherit;
  const bool is_whole = element.op != Op::inherit && element.op != Op::merge;
  for (Element& child : element.children) keep_outermost(child, is_inside || is_whole);
}

// A value that its leaf does not take.
std::string bad_value(Random& random, Type type) {
  static const std::vector<std::string> ids{"0", "4095", "99999", "ten", "-1", "1.5"};
  static const std::vector<std::string> entries{"20-30", "10.20", " 20..30", "30..20", "0", "1..4095", "5.."};
  static const std::vector<std::string> modes{"HYBRID", "oc-vlan:TRUNK", "trunk"};
  static const std::vector<std::string> actions{"NONE", "oc-vlan:PUSH", "push1"};
  static const std::vector<std::string> tpids{"oc-vlan-types:TPID_0X9100", "oc-vlan-types:TPID_ANY", "TPID_0X8100",
                                              "oc-vlan:TPID_0X8100", "oc-vlan-types:NONE"};
  switch (type) {
    case Type::trunk_entry:
      return random.pick(entries);
    case Type::mode:
      return random.pick(modes);
    case Type::action:
      return random.pick(actions);
    case Type::tpid:
      return random.pick(tpids);
    case Type::boolean:
      return "maybe";
    case Type::mtu:
      return random.chance(50) ? "63" : "70000";
    case Type::own_name:
      return "Ethernet9/9/9";
    case Type::own_index:
      return "77";
    default:
      return random.pick(ids);
  }
}

// Spoils the request in one way.
void spoil(Random& random, Request& request) {
  if (request.interfaces.children.empty()) return;
  Element& interface = request.interfaces.children.front();
  Element sub{.name = "subinterface", .value = "100"};
  Element* entry = &sub;
  for (Element& list : interface.children) {
    if (list.name == "subinterfaces" && !list.children.empty()) entry = &list.children.front();
  }
  switch (random.below(7)) {
    case 0:
      put(random, *entry, "vlan/match/double-tagged-inner-outer-range/config/outer-low-vlan-id", {"100"});
      break;
    case 1:
      put(random, *entry, "vlan/egress-mapping/config/vlan-id", {"100"});
      break;
    case 2:
      put(random, *entry, "vlan/config/vlan-id", {random.chance(50) ? "100" : "100.200"});
      break;
    case 3:
      for (const auto& [leaf, values] : make_leaves(random, Unit::match)) {
        put(random, *entry, "vlan/match/" + leaf, values);
      }
      break;
    case 4:
      put(random, *entry, "vlan/match/single-tagged-list/config/vlan-ids", make_ids(random, 12));
      break;
    case 5:
      put(random, interface, "aggregation/switched-vlan/config/interface-mode", {"ACCESS"});
      break;
    default:
      break;
  }
  if (entry == &sub && !sub.children.empty()) child_of(interface, "subinterfaces").children.push_back(sub);
}

void spoil_value(Random& random, Element& element, const std::string& parent, bool& done) {
  const std::string path = path_below(parent, element);
  const Leaf* const leaf = find_leaf(place_of(path).below);
  const bool is_value = leaf != nullptr && leaf->type != Type::text && !removes(element.op) && random.chance(40);
  if (is_value && !done) {
    element.value = bad_value(random, leaf->type);
    done = true;
  }
  for (Element& child : element.children) spoil_value(random, child, path, done);
}

// Makes some element stand there a second time, or writes something below what goes.
void contradict(Random& random, Request& request) {
  static const std::vector<Op> kinds{Op::inherit, Op::inherit, Op::merge, Op::replace,
                                     Op::create,  Op::delete_, Op::remove};
  std::vector<Target> all;
  collect(request.interfaces, "", all);
  std::erase_if(all, [](const Target& target) { return target.element->children.empty(); });
  if (all.empty()) return;
  Element& parent = *random.pick(all).element;
  Element& child = parent.children[random.below(parent.children.size())];
  if (random.chance(50)) {
    Element twin = child;
    twin.op = random.pick(kinds);
    parent.children.push_back(twin);
    return;
  }
  parent.op = random.chance(50) ? Op::remove : Op::delete_;
  child.op = random.pick(kinds);
}
}  // namespace

Request make_request(Random& random, const Config& before) {
  Request request;
  const std::size_t entries = random.chance(25) ? 2 : 1;
  const std::size_t first = random.below(interface_names().size());
  for (std::size_t i = 0; i < entries; ++i) {
    const std::string& name = interface_names()[(first + i) % interface_names().size()];
    request.interfaces.children.push_back(make_interface(random, name, before));
  }
  const std::size_t operations = random.chance(60) ? random.between(1, 2) : 0;
  for (std::size_t i = 0; i < operations; ++i) give_operation(random, request, before);
  static const std::vector<Shape> shapes{Shape::edit_config, Shape::config, Shape::bare, Shape::json};
  request.shape = random.pick(shapes);
  if (random.chance(8)) {
    request.shape = Shape::edit_config;
    request.default_operation = random.chance(70) ? Op::none : Op::replace;
  }
  if (random.chance(6)) spoil(random, request);
  bool done = false;
  if (random.chance(4)) spoil_value(random, request.interfaces, "", done);
  keep_outermost(request.interfaces, false);
  if (random.chance(4)) contradict(random, request);
  return request;
}

Request make_replace(Random& random, const Config& before) {
  Request request = make_request(random, before);
  if (random.chance(15)) {
    request.shape = Shape::edit_config;
    request.default_operation = Op::replace;
    return request;
  }
  std::vector<Target> all;
  collect(request.interfaces, "", all);
  for (const Target& each : all) each.element->op = Op::inherit;
  const std::size_t first = all.size() > 1 && !random.chance(10) ? 1 : 0;
  Element& element = *all[random.between(first, all.size() - 1)].element;
  element.op = Op::replace;
  if (random.chance(15)) element.children.clear();
  return request;
}

Sequence make_sequence(std::uint64_t seed) {
  constexpr std::size_t kMostRequests = 10;
  Random random(seed);
  Sequence sequence;
  sequence.start = random.chance(8) ? make_odd_device(random) : make_device(random);
  sequence.new_entries_are_l2 = random.chance(50);
  sequence.strict = random.chance(15);
  Device device(sequence.start, sequence.new_entries_are_l2, sequence.strict);
  const std::size_t length = random.between(1, kMostRequests);
  for (std::size_t i = 0; i < length; ++i) {
    sequence.requests.push_back(make_request(random, device.read()));
    device.apply(sequence.requests.back());
  }
  return sequence;
}

std::string to_text(const Sequence& sequence) {
  std::string text = "new sub-interfaces are " + std::string(sequence.new_entries_are_l2 ? "L2" : "L3") +
                     (sequence.strict ? ", differences are refused" : "") + "\nstart:\n" + to_text(sequence.start);
  for (const Request& request : sequence.requests) text += "request:\n" + to_text(request);
  return text;
}

}  // namespace property
