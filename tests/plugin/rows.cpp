// Reads the lists of nodes.
#include "plugin/rows.h"

#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>

#include "plugin/seen.h"

namespace rows {

namespace {

std::vector<Row> load(const std::string& file) {
  std::ifstream stream(std::string(OC_VLAN_SOURCE_DIR "/tests/plugin/") + file);
  std::vector<Row> rows;
  Row row;
  while (stream >> row.entry >> row.path >> row.walker >> row.handler >> row.translation) rows.push_back(row);
  if (rows.empty()) throw std::runtime_error("no rows in " + file);
  return rows;
}

}  // namespace

const std::vector<Row>& of(const Family& family) {
  static std::map<std::string, std::vector<Row>> loaded;
  auto [place, is_new] = loaded.try_emplace(family.file);
  if (is_new) place->second = load(family.file);
  return place->second;
}

const Row& at(const Family& family, const std::string& entry, const std::string& path) {
  for (const Row& row : of(family)) {
    if (row.entry == entry && row.path == path) return row;
  }
  throw std::out_of_range("no row " + entry + " " + path);
}

std::vector<Row> below(const Family& family, const std::string& entry, const std::string& path) {
  std::vector<Row> found;
  for (const Row& row : of(family)) {
    if (row.entry == entry && row.parent() == path) found.push_back(row);
  }
  return found;
}

std::string tree(const Family& family, const std::string& path, const std::string& value) {
  std::istringstream tags(path);
  std::string text = family.ns + ":";
  std::string closing;
  bool is_first = true;
  for (std::string tag; std::getline(tags, tag, '/'); is_first = false) {
    text += (is_first ? "" : " { ") + tag;
    if (!is_first) closing += " }";
  }
  return text + (value.empty() ? "" : "=" + value) + closing;
}

cerrno enter(const Family& family, const std::string& entry, recording::Recorder& recorder, recording::Tree& tree) {
  return seen::function<yfw_map_walker_fn>(family.prefix + entry)(recorder.ctx(), tree.root(), recorder.output());
}

}  // namespace rows
