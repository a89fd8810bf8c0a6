// The tables of both directions.
#include "property/model/native.h"

#include <algorithm>
#include <array>
#include <optional>
#include <sstream>

#include "property/model/leaves.h"

namespace property {

namespace {

constexpr char kEncapsulation[] = "ethernet-service/encapsulation/";
constexpr char kIdentifier[] = "vlan-sub-configuration/vlan-identifier/";
constexpr char kRewrite[] = "ethernet-service/rewrite/";
constexpr char kTrunk[] = "vlan-trunk-configuration/";
constexpr char kSwitched[] = "vlan-trunk-configuration/vlan-switched/";
constexpr char kNativeVlan[] = "vlan-trunk-configuration/native-vlan-identifier/";
constexpr char kListMarker[] = "4097";
constexpr std::size_t kListIds = 9;

// An OpenConfig leaf, the native leaf that takes its value, and the tag type that is set along with it.
struct Written {
  const char* leaf;
  const char* native;
  const char* tag_leaf = nullptr;
  const char* tag = nullptr;
};

constexpr std::array<Written, 13> kL2Leaves{{
    {"single-tagged/config/vlan-id", "outer-range1-low", "outer-tag-type", "match-dot1q"},
    {"single-tagged-range/config/low-vlan-id", "outer-range1-low", "outer-tag-type", "match-dot1q"},
    {"single-tagged-range/config/high-vlan-id", "outer-range1-high"},
    {"double-tagged/config/outer-vlan-id", "outer-range1-low", "outer-tag-type", "match-dot1ad"},
    {"double-tagged/config/inner-vlan-id", "inner-range1-low", "inner-tag-type", "match-dot1q"},
    {"double-tagged-inner-list/config/outer-vlan-id", "outer-range1-low", "outer-tag-type", "match-dot1ad"},
    {"double-tagged-outer-list/config/inner-vlan-id", "inner-range1-low", "inner-tag-type", "match-dot1q"},
    {"double-tagged-inner-range/config/outer-vlan-id", "outer-range1-low", "outer-tag-type", "match-dot1ad"},
    {"double-tagged-inner-range/config/inner-low-vlan-id", "inner-range1-low", "inner-tag-type", "match-dot1q"},
    {"double-tagged-inner-range/config/inner-high-vlan-id", "inner-range1-high"},
    {"double-tagged-outer-range/config/inner-vlan-id", "inner-range1-low", "inner-tag-type", "match-dot1q"},
    {"double-tagged-outer-range/config/outer-low-vlan-id", "outer-range1-low", "outer-tag-type", "match-dot1ad"},
    {"double-tagged-outer-range/config/outer-high-vlan-id", "outer-range1-high"},
}};

constexpr std::array<Written, 3> kL3Leaves{{
    {"single-tagged/config/vlan-id", "first-tag", "vlan-type", "vlan-type-dot1q"},
    {"double-tagged/config/outer-vlan-id", "first-tag", "vlan-type", "vlan-type-dot1ad"},
    {"double-tagged/config/inner-vlan-id", "second-tag"},
}};

// A list of ids: the first goes to a leaf of its own, the others to the additional ranges.
struct WrittenList {
  const char* leaf;
  const char* first;
  const char* tag_leaf;
  const char* tag;
  bool marked;
  const char* beside = nullptr;  // a leaf that makes the container, and with it the tag type, also without the list
};

constexpr std::array<WrittenList, 3> kLists{{
    {"single-tagged-list/config/vlan-ids", "outer-range1-low", "outer-tag-type", "match-dot1q", true},
    {"double-tagged-inner-list/config/inner-vlan-ids", "inner-range1-low", "inner-tag-type", "match-dot1q", false,
     "double-tagged-inner-list/config/outer-vlan-id"},
    {"double-tagged-outer-list/config/outer-vlan-ids", "outer-range1-low", "outer-tag-type", "match-dot1ad", true,
     "double-tagged-outer-list/config/inner-vlan-id"},
}};

struct Word {
  const char* openconfig;
  const char* native;
};
constexpr std::array<Word, 3> kActions{{{"PUSH", "push1"}, {"POP", "pop1"}, {"SWAP", "translate1to1"}}};
constexpr std::array<Word, 2> kTpids{{{"TPID_0X8100", "match-dot1q"}, {"TPID_0X88A8", "match-dot1ad"}}};
constexpr std::array<Word, 2> kModes{{{"ACCESS", "access"}, {"TRUNK", "trunk"}}};

template <std::size_t Size>
std::string to_native(const std::array<Word, Size>& words, const std::string& value) {
  for (const Word& word : words) {
    if (value == word.openconfig) return word.native;
  }
  return {};
}

template <std::size_t Size>
std::string to_openconfig(const std::array<Word, Size>& words, const std::string& value) {
  for (const Word& word : words) {
    if (value == word.native) return word.openconfig;
  }
  return {};
}

std::string additional(std::size_t number) {
  return "additional-range" + std::to_string(number) + "-low";
}

template <std::size_t Size>
void encode_leaves(const std::array<Written, Size>& rows, const std::string& container, const Config& leaves,
                   Entry& region) {
  for (const Written& row : rows) {
    const auto found = leaves.find(row.leaf);
    if (found == leaves.end() || found->second.empty()) continue;
    region[container + row.native] = found->second.back();
    if (row.tag != nullptr) region[container + row.tag_leaf] = row.tag;
  }
}

Entry encode_match(const Config& leaves, bool l2) {
  Entry region;
  Config encapsulated = leaves;
  if (!l2) {
    encode_leaves(kL3Leaves, kIdentifier, leaves, region);
    for (const Written& row : kL3Leaves) encapsulated.erase(row.leaf);
  }
  encode_leaves(kL2Leaves, kEncapsulation, encapsulated, region);
  const std::string container = kEncapsulation;
  for (const WrittenList& list : kLists) {
    const auto found = leaves.find(list.leaf);
    const Values ids = found == leaves.end() ? Values() : found->second;
    if (ids.empty() && (list.beside == nullptr || !leaves.contains(list.beside))) continue;
    if (!ids.empty()) region[container + list.first] = ids.front();
    for (std::size_t i = 1; i < std::min(ids.size(), kListIds); ++i) region[container + additional(i)] = ids[i];
    region[container + list.tag_leaf] = list.tag;
    if (list.marked) region[container + "outer-range1-high"] = kListMarker;
  }
  return region;
}

Entry encode_mapping(const Config& leaves) {
  Entry region;
  for (const auto& [leaf, values] : leaves) {
    const std::string& value = values.back();
    if (leaf == "config/vlan-stack-action") region[std::string(kRewrite) + "rewrite-type"] = to_native(kActions, value);
    if (leaf == "config/tpid") region[std::string(kRewrite) + "outer-tag-type"] = to_native(kTpids, value);
    if (leaf == "config/vlan-id") region[std::string(kRewrite) + "outer-tag-value"] = value;
  }
  return region;
}

Entry encode_switched(const Config& leaves) {
  Entry region;
  for (const auto& [leaf, values] : leaves) {
    if (leaf == "interface-mode") region[std::string(kSwitched) + "mode"] = to_native(kModes, values.back());
    if (leaf == "access-vlan") region[std::string(kSwitched) + "access-vlan"] = values.back();
    if (leaf == "native-vlan") {
      region[std::string(kNativeVlan) + "vlan-identifier"] = values.back();
      region[std::string(kNativeVlan) + "vlan-type"] = "vlan-type-dot1q";
    }
    if (leaf == "trunk-vlans" && !values.empty()) {
      region[std::string(kSwitched) + "trunk-vla-ns"] = trunk_text(values);
      region[std::string(kSwitched) + "trunk-tag-type"] = "vlan-type-dot1q";
    }
  }
  return region;
}

// The leaves of one native container.
class Leaves {
 public:
  Leaves(const Entry& entry, std::string container) : entry_(entry), container_(std::move(container)) {}

  bool has(const std::string& leaf) const { return entry_.contains(container_ + leaf); }
  std::string operator[](const std::string& leaf) const {
    const auto found = entry_.find(container_ + leaf);
    return found == entry_.end() ? std::string() : found->second;
  }

 private:
  const Entry& entry_;
  std::string container_;
};

// Collects what OpenConfig can hold; the rest is left out of an answer.
class Reader {
 public:
  explicit Reader(std::string base) : base_(std::move(base)) {}
  Config found;
  std::vector<std::string> left_out;

  void add(const std::string& leaf, const std::string& value) {
    const Leaf* const known = find_leaf(place_of(base_ + leaf).below);
    if (value.empty()) return;
    if (known->type != Type::tpid && !is_valid(*known, value)) return leave_out(leaf);
    Values& values = found[base_ + leaf];
    // Said by two containers, a leaf has the later value.
    if (!known->is_list) values.clear();
    if (std::find(values.begin(), values.end(), value) != values.end()) return leave_out(leaf);
    values.push_back(value);
  }

  void leave_out(const std::string& leaf) { left_out.push_back(base_ + leaf); }

 private:
  std::string base_;
};

void add_list(Reader& reader, const std::string& leaf, const Leaves& native, const std::string& first) {
  reader.add(leaf, native[first]);
  for (std::size_t i = 1; i < kListIds; ++i) reader.add(leaf, native[additional(i)]);
}

void decode_encapsulation(const Leaves& native, Reader& reader) {
  const std::string outer = native["outer-range1-low"];
  const std::string high = native["outer-range1-high"];
  const std::string inner = native["inner-range1-low"];
  const bool more = native.has("additional-range1-low");
  if (native["outer-tag-type"] == "match-dot1q" && !native.has("inner-tag-type")) {
    if (more) return add_list(reader, "single-tagged-list/config/vlan-ids", native, "outer-range1-low");
    if (!native.has("outer-range1-high")) return reader.add("single-tagged/config/vlan-id", outer);
    reader.add("single-tagged-range/config/low-vlan-id", outer);
    return reader.add("single-tagged-range/config/high-vlan-id", high);
  }
  if (native["outer-tag-type"] != "match-dot1ad" || native["inner-tag-type"] != "match-dot1q") return;
  std::string form = "double-tagged";
  if (more) {
    form = high == kListMarker ? "double-tagged-outer-list" : "double-tagged-inner-list";
  } else if (native.has("inner-range1-high")) {
    form = "double-tagged-inner-range";
  } else if (!high.empty() && high != kListMarker) {
    form = "double-tagged-outer-range";
  }
  const std::string config = form + "/config/";
  if (form == "double-tagged-outer-list") {
    add_list(reader, config + "outer-vlan-ids", native, "outer-range1-low");
  } else if (form == "double-tagged-outer-range") {
    reader.add(config + "outer-low-vlan-id", outer);
    reader.add(config + "outer-high-vlan-id", high);
  } else {
    reader.add(config + "outer-vlan-id", outer);
  }
  if (form == "double-tagged-inner-list") {
    add_list(reader, config + "inner-vlan-ids", native, "inner-range1-low");
  } else if (form == "double-tagged-inner-range") {
    reader.add(config + "inner-low-vlan-id", inner);
    reader.add(config + "inner-high-vlan-id", native["inner-range1-high"]);
  } else {
    reader.add(config + "inner-vlan-id", inner);
  }
}

void decode_identifier(const Leaves& native, Reader& reader) {
  const bool second = native.has("second-tag");
  if (native["vlan-type"] == "vlan-type-dot1q" && !second) {
    reader.add("single-tagged/config/vlan-id", native["first-tag"]);
  }
  if (native["vlan-type"] == "vlan-type-dot1ad" && second) {
    reader.add("double-tagged/config/outer-vlan-id", native["first-tag"]);
    reader.add("double-tagged/config/inner-vlan-id", native["second-tag"]);
  }
}

void decode_mapping(const Leaves& native, Reader& reader) {
  const std::string action = to_openconfig(kActions, native["rewrite-type"]);
  reader.add("vlan-stack-action", action);
  if (action != "PUSH" && action != "SWAP") return;
  reader.add("tpid", to_openconfig(kTpids, native["outer-tag-type"]));
  reader.add("vlan-id", native["outer-tag-value"]);
}

std::string id_without_padding(const std::string& text) {
  return text.find_first_not_of(" ") == std::string::npos ? "" : std::to_string(std::stoi(text));
}

// The ids of each entry of a native text: one, or the two of a range.
std::vector<Values> trunk_ids(const std::string& text) {
  std::vector<Values> entries;
  std::istringstream list(text);
  for (std::string entry; std::getline(list, entry, ',');) {
    Values& ids = entries.emplace_back();
    std::istringstream range(entry);
    for (std::string id; std::getline(range, id, '-');) ids.push_back(id_without_padding(id));
  }
  return entries;
}

void decode_trunk_text(const std::string& text, Reader& reader) {
  for (const Values& ids : trunk_ids(text)) {
    reader.add("trunk-vlans", ids.size() == 1 ? ids.front() : ids.front() + ".." + ids.back());
  }
}

// The native leaf says something in OpenConfig, but only beside another native leaf, and in a mode that has it.
void add_switched(Reader& reader, const std::string& leaf, const std::string& value, bool is_told, bool has_mode) {
  if (value.empty() || !is_told) return;
  if (!has_mode) return reader.leave_out(leaf);
  reader.add(leaf, value);
}

void decode_switched(const Entry& entry, Reader& reader) {
  const Leaves native_vlan(entry, kNativeVlan);
  const Leaves switched(entry, kSwitched);
  const bool tagged = switched["trunk-tag-type"] == "vlan-type-dot1q";
  const bool has_tag_type = switched.has("trunk-tag-type");
  const std::string mode = to_openconfig(kModes, switched["mode"]);
  const bool access = mode == "ACCESS";
  const bool trunk = mode == "TRUNK" && tagged;
  if (access || trunk) reader.add("interface-mode", mode);
  if (mode == "TRUNK" && !has_tag_type) reader.leave_out("interface-mode");
  add_switched(reader, "access-vlan", switched["access-vlan"], true, access);
  const bool plain = native_vlan["vlan-type"] == "vlan-type-dot1q";
  add_switched(reader, "native-vlan", native_vlan["vlan-identifier"], plain || !native_vlan.has("vlan-type"),
               trunk && plain);
  const std::string text = switched["trunk-vla-ns"];
  if (trunk) decode_trunk_text(text, reader);
  if (!trunk && !text.empty() && (tagged || !has_tag_type)) reader.leave_out("trunk-vlans");
}

std::vector<std::string> containers_of(Unit unit) {
  switch (unit) {
    case Unit::match:
      return {kEncapsulation, kIdentifier};
    case Unit::ingress_mapping:
      return {kRewrite};
    case Unit::switched:
      break;
  }
  return {kTrunk};
}

bool is_in(const std::string& leaf, Unit unit) {
  const std::vector<std::string> containers = containers_of(unit);
  return std::any_of(containers.begin(), containers.end(),
                     [&leaf](const std::string& container) { return leaf.starts_with(container); });
}

std::optional<std::string> value_of(const Config& config, const std::string& path) {
  const auto found = config.find(path);
  if (found == config.end() || found->second.empty()) return std::nullopt;
  return found->second.front();
}

}  // namespace

bool is_bundle(std::string_view interface) {
  return interface.find("Bundle-Ether") != std::string_view::npos;
}

bool is_l2(const Entry& entry) {
  return entry.contains("l2-transport");
}

std::string native_name(const Place& place) {
  return place.index.empty() ? place.interface : place.interface + "." + place.index;
}

std::string openconfig_path(const std::string& native_name) {
  const std::size_t dot = native_name.find('.');
  if (dot == std::string::npos) return interface_path(native_name);
  return subinterface_path(native_name.substr(0, dot), native_name.substr(dot + 1));
}

std::vector<Region> regions_of(const std::string& native_name) {
  const std::string path = openconfig_path(native_name);
  if (!place_of(path).index.empty()) {
    return {{Unit::match, path + "/vlan/match"}, {Unit::ingress_mapping, path + "/vlan/ingress-mapping"}};
  }
  return {{Unit::switched, path + (is_bundle(native_name) ? "/aggregation" : "/ethernet") + "/switched-vlan/config"}};
}

Entry region_of(const Entry& entry, Unit unit) {
  Entry region;
  for (const auto& leaf : entry) {
    if (is_in(leaf.first, unit)) region.insert(leaf);
  }
  return region;
}

void set_region(Entry& entry, Unit unit, const Entry& leaves) {
  std::erase_if(entry, [unit](const auto& leaf) { return is_in(leaf.first, unit); });
  entry.insert(leaves.begin(), leaves.end());
}

Entry encode(Unit unit, const Config& leaves, bool l2) {
  switch (unit) {
    case Unit::match:
      return encode_match(leaves, l2);
    case Unit::ingress_mapping:
      return encode_mapping(leaves);
    case Unit::switched:
      break;
  }
  return encode_switched(leaves);
}

void set_own_leaves(Entry& entry, const std::string& path, const Config& config) {
  const auto set = [&entry](const char* leaf, const std::optional<std::string>& value) {
    entry.erase(leaf);
    if (value.has_value()) entry[leaf] = *value;
  };
  set("description", value_of(config, path + "/config/description"));
  if (place_of(path).index.empty()) set("mtu", value_of(config, path + "/config/mtu"));
  const bool down = value_of(config, path + "/config/enabled") == "false";
  set("shutdown", down ? std::optional<std::string>("") : std::nullopt);
}

Config decode(const std::string& native_name, const Entry& entry, std::vector<std::string>& left_out) {
  const std::string path = openconfig_path(native_name);
  const Place place = place_of(path);
  const bool sub = !place.index.empty();
  const std::string interface = interface_path(place.interface);
  const char* const type = is_bundle(place.interface) ? "ieee8023adLag" : "ethernetCsmacd";
  Config found{{interface, {}}, {interface + "/config/name", {place.interface}}, {interface + "/config/type", {type}}};
  found[path];
  if (sub) found[path + "/config/index"] = {place.index};
  const Leaves own(entry, "");
  if (own.has("description")) found[path + "/config/description"] = {own["description"]};
  if (own.has("mtu") && !sub) found[path + "/config/mtu"] = {own["mtu"]};
  if (own.has("shutdown")) found[path + "/config/enabled"] = {"false"};
  for (const Region& region : regions_of(native_name)) {
    Reader reader(region.path + (region.unit == Unit::ingress_mapping ? "/config/" : "/"));
    if (region.unit == Unit::match) {
      decode_identifier(Leaves(entry, kIdentifier), reader);
      decode_encapsulation(Leaves(entry, kEncapsulation), reader);
    }
    if (region.unit == Unit::ingress_mapping) decode_mapping(Leaves(entry, kRewrite), reader);
    if (region.unit == Unit::switched) decode_switched(entry, reader);
    found.merge(reader.found);
    left_out.insert(left_out.end(), reader.left_out.begin(), reader.left_out.end());
  }
  return found;
}

Config decode(const std::string& native_name, const Entry& entry) {
  std::vector<std::string> left_out;
  return decode(native_name, entry, left_out);
}

Config decode(const Native& native) {
  Config found;
  for (const auto& [name, entry] : native) found.merge(decode(name, entry));
  return found;
}

bool reads_whole(const std::string& native_name, const Entry& entry, const Region& region) {
  const Config read = part(decode(native_name, entry), region.path);
  Entry again = encode(region.unit, read, is_l2(entry));
  keep_stored_text(again, entry);
  return again == region_of(entry, region.unit);
}

void keep_stored_text(Entry& changed, const Entry& stored) {
  const std::string leaf = std::string(kSwitched) + "trunk-vla-ns";
  const auto text = changed.find(leaf);
  const auto there = stored.find(leaf);
  if (text == changed.end() || there == stored.end()) return;
  if (trunk_ids(text->second) == trunk_ids(there->second)) text->second = there->second;
}

std::string trunk_text(const Values& entries) {
  std::string text;
  for (const std::string& entry : entries) {
    std::string native = entry;
    const std::size_t dots = native.find("..");
    if (dots != std::string::npos) native.replace(dots, 2, "-");
    text += (text.empty() ? "" : ",") + native;
  }
  return text;
}

std::string to_text(const Native& native) {
  std::string text;
  for (const auto& [name, entry] : native) {
    text += name + "\n";
    for (const auto& [leaf, value] : entry) text += "  " + leaf + (value.empty() ? "" : " " + value) + "\n";
  }
  return text;
}

}  // namespace property
