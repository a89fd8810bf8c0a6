// From what was left out of native data to a line of text.
#include "mapping/document/readings.h"

#include <algorithm>
#include <stdexcept>

#include "mapping/document/origins.h"
#include "mapping/document/samples.h"
#include "mapping/document/text.h"

namespace mapping {

namespace {

std::string origin_text(const Origin& origin) {
  std::vector<std::string> sources;
  for (const Element& each : origin.sources) sources.push_back(shortened(each.path));
  std::vector<std::string> needed;
  for (const Element& each : origin.needed) {
    needed.push_back(setting(shortened(each.path), is_sample_id(each.value) ? "" : each.value));
  }
  if (sources.empty()) return with_values(origin.values, joined(needed, ", "));
  const std::string from = joined(codes(sources), ", ");
  return with_values(origin.values, needed.empty() ? from : from + " with " + joined(needed, ", "));
}

// The lines of a leaf, by its path.
using Lines = std::map<std::string, std::vector<std::string>>;

void add_lines(const std::map<std::string, Origin>& found, Lines& lines) {
  for (const auto& [path, origin] : found) {
    std::vector<std::string>& of_leaf = lines[path];
    const std::string text = origin_text(origin);
    if (std::find(of_leaf.begin(), of_leaf.end(), text) == of_leaf.end()) of_leaf.push_back(text);
  }
}

// All lines of all leaves of a container in a place.
Lines lines_of(Device& device, const Place& place, const std::string& container, From from) {
  Lines lines;
  if (from == From::operational) {
    const bool is_port = place.name.find('.') == std::string::npos;
    for (const Operational& each :
         is_port ? operational_of_port(place.name) : operational_of_subinterface(place.name)) {
      const auto read = [&](const std::string& document) { return device.read_state(place, document); };
      add_lines(origins(each.document, each.list, "interface", read), lines);
    }
    return lines;
  }
  for (const Config& form : forms_of(container)) {
    const Written written = device.write(place, {}, form);
    if (!written.refusal.empty()) throw std::runtime_error(container + " is refused: " + written.refusal);
    const auto read = [&](const std::string& document) {
      return from == From::configuration ? device.read(place, document) : device.read_with_state(place, document);
    };
    add_lines(origins(written.running, "interface-configuration", "interface-name", read), lines);
  }
  return lines;
}

}  // namespace

std::string Readings::text(const Leaf& leaf, const Place& place, From from) {
  // Operational data is not of a container, nor of L2 or L3.
  const bool is_operational = from == From::operational;
  const auto key =
      std::make_tuple(is_operational ? "" : leaf.container(), place.name, !is_operational && place.is_l2, from);
  const auto [found, is_new] = read_.try_emplace(key);
  if (is_new) found->second = lines_of(device_, place, leaf.container(), from);
  return joined(found->second[leaf.path], kNewLine);
}

}  // namespace mapping
