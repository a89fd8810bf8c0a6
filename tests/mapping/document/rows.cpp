// Reads the rows of src/openconfig_vlan.def as names.
#include "mapping/document/rows.h"

#include <cstdint>
#include <map>
#include <string_view>

namespace mapping {

namespace {

enum class Kind : std::uint8_t { entry, container, mapped, unmapped };

struct Row {
  Kind kind;
  const char* name;
  const char* parent;
  const char* tag;
};

constexpr Row kRows[] = {
#define ENTRY(name) {Kind::entry, "augment_" #name, "", ""},
#define CONTAINER(walker, parent, tag) {Kind::container, #walker, #parent, tag},
#define CONTAINER_TO(walker, parent, tag, translation) CONTAINER(walker, parent, tag)
#define CONTAINER_UNMAPPED(walker, parent, tag) CONTAINER(walker, parent, tag)
#define LEAF_TO(walker, parent, tag, translation) {Kind::mapped, #walker, #parent, tag},
#define LEAF_UNMAPPED(walker, parent, tag) {Kind::unmapped, #walker, #parent, tag},
#include "openconfig_vlan.def"
};

// What each entry walker augments.
struct Place {
  bool is_subinterface;
  std::string path;
};
const std::map<std::string_view, Place> kPlaces{
    {"augment_lvla_subinterface", {true, ""}}, {"augment_lvla_config", {false, "config"}},
    {"augment_lvla_state", {false, "state"}},  {"augment_lvla_ethernet", {false, "ethernet"}},
    {"augment_lvla_interface", {false, ""}},   {"augment_lvla_aggregation", {false, "aggregation"}},
};

std::vector<Leaf> make_leaves() {
  std::vector<Leaf> found;
  std::map<std::string_view, Place> places = kPlaces;
  for (const Row& row : kRows) {
    if (row.kind == Kind::entry) continue;
    const Place& parent = places.at(row.parent);
    const std::string path = parent.path.empty() ? row.tag : parent.path + "/" + row.tag;
    if (row.kind == Kind::container) {
      places.insert({row.name, {parent.is_subinterface, path}});
    } else {
      found.push_back({parent.is_subinterface, path, row.kind == Kind::mapped});
    }
  }
  return found;
}

// The path without its last steps.
std::string above(const std::string& path, int steps) {
  std::string rest = path;
  for (; steps > 0; --steps) {
    const std::size_t cut = rest.rfind('/');
    rest.resize(cut == std::string::npos ? 0 : cut);
  }
  return rest;
}

}  // namespace

std::string Leaf::name() const {
  return path.substr(path.rfind('/') + 1);
}

std::string Leaf::branch() const {
  const std::string parent = above(path, 1);
  return parent.substr(parent.rfind('/') + 1);
}

std::string Leaf::container() const {
  return above(path, 2);
}

const std::vector<Leaf>& leaves() {
  static const std::vector<Leaf> all = make_leaves();
  return all;
}

}  // namespace mapping
