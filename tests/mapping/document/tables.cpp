// Every cell is what a run showed; what the runs of all places agree on is said once.
#include "mapping/document/tables.h"

#include <algorithm>
#include <set>

#include "mapping/document/rows.h"
#include "mapping/document/samples.h"
#include "mapping/document/text.h"

namespace mapping {

namespace {

struct Labelled {
  std::string label;
  std::vector<Place> places;
};

// Where the leaves of an entry are tried.
std::vector<Labelled> places_of(const Leaf& leaf) {
  if (leaf.of_subinterface) {
    return {{"L2", {{"Ethernet0/0/1.100", true}, {"Bundle-Ether1.100", true}}},
            {"L3", {{"Ethernet0/0/1.100", false}, {"Bundle-Ether1.100", false}}}};
  }
  if (leaf.path.starts_with("aggregation")) return {{"", {{"Bundle-Ether1"}}}};
  return {{"", {{"Ethernet0/0/1"}}}};
}

// The text of a leaf in every place, as one.
template <typename TextIn>
std::string everywhere(const Leaf& leaf, const TextIn& text_in) {
  std::vector<std::pair<std::string, std::string>> texts;
  for (const Labelled& each : places_of(leaf)) {
    std::vector<std::pair<std::string, std::string>> of_kind;
    for (const Place& place : each.places) {
      of_kind.emplace_back(property::is_bundle(place.name) ? "bundle" : "port", text_in(place));
    }
    texts.emplace_back(each.label, merged(of_kind));
  }
  return merged(texts);
}

// Names, in the order in which a leaf's own values are copied to them, and then the other settings.
std::string native_text(const Entry& native, const property::Values& asked) {
  std::vector<std::string> copied;
  for (const std::string& value : asked) {
    for (const auto& [path, found] : native) {
      if (found == value) copied.push_back(shortened(path));
    }
  }
  std::vector<std::string> texts = codes(copied);
  for (const auto& [path, value] : native) {
    if (std::find(asked.begin(), asked.end(), value) == asked.end()) texts.push_back(setting(shortened(path), value));
  }
  return joined(texts, ", ");
}

std::string refusal_text(const Written& written) {
  return written.refusal.empty() ? "taken" : "refused, \"" + written.refusal + "\"";
}

// Names what was asked for, where it matters.
std::string of_sample(const Sample& sample, const std::string& text) {
  return sample.label.empty() ? with_values(sample.values, text) : sample.label + ": " + text;
}

// What requests of a table were warned of, and where.
using Warned = std::set<std::string>;

std::string request_text(Device& device, const Place& place, const Leaf& leaf, const Sample& sample, Warned& warned) {
  Config leaves = sample.beside;
  leaves[leaf.path] = sample.values;
  Written written = device.write(place, {}, leaves);
  if (!written.refusal.empty()) return of_sample(sample, refusal_text(written));
  if (!sample.beside.empty()) {
    for (const auto& [path, value] : device.write(place, {}, sample.beside).native) written.native.erase(path);
  }
  for (const yfw::Warning& each : written.warnings) {
    warned.insert(std::string(place.is_l2 ? "L2" : "L3") + ": \"" + each.message + "\"");
  }
  std::string text = native_text(written.native, sample.values);
  if (text.empty()) text = "nothing";
  for (const auto& [path, values] : sample.beside) {
    text += ", beside " + setting(path.substr(path.rfind('/') + 1), values.front());
  }
  return of_sample(sample, text);
}

std::string request_cell(Device& device, const Leaf& leaf, Warned& warned) {
  return everywhere(leaf, [&](const Place& place) {
    std::vector<std::string> lines;
    for (const Sample& sample : samples_of(leaf)) {
      lines.push_back(request_text(device, place, leaf, sample, warned));
    }
    return joined(lines, kNewLine);
  });
}

std::string read_cell(Readings& readings, const Leaf& leaf, From from) {
  const std::string text = everywhere(leaf, [&](const Place& place) { return readings.text(leaf, place, from); });
  return text.empty() ? "nothing" : text;
}

const Leaf* find(const std::string& container, const std::string& branch, const std::string& name) {
  const auto found = std::find_if(leaves().begin(), leaves().end(), [&](const Leaf& each) {
    return each.container() == container && each.branch() == branch && each.name() == name;
  });
  return found == leaves().end() ? nullptr : &*found;
}

std::string table(Device& device, Readings& readings, const std::string& container, From state) {
  std::string text =
      table_row({"leaf", "`config` asked for becomes", "`config` read comes from", "`state` read comes from"}) +
      table_row({"---", "---", "---", "---"});
  Warned warned;
  for (const Leaf& leaf : leaves()) {
    if (leaf.container() != container || leaf.branch() != "config") continue;
    const Leaf* const as_state = find(container, "state", leaf.name());
    text += table_row({code(leaf.name()), request_cell(device, leaf, warned),
                       read_cell(readings, leaf, From::configuration),
                       as_state == nullptr ? "no such leaf" : read_cell(readings, *as_state, state)});
  }
  if (!warned.empty()) {
    text += "\nThe request is answered with a warning on " +
            joined(std::vector<std::string>(warned.begin(), warned.end()), " and on ") + ".\n";
  }
  return text;
}

}  // namespace

std::vector<std::string> mapped_containers() {
  std::vector<std::string> containers;
  for (const Leaf& leaf : leaves()) {
    const bool is_new = std::find(containers.begin(), containers.end(), leaf.container()) == containers.end();
    if (leaf.is_mapped && is_new) containers.push_back(leaf.container());
  }
  return containers;
}

std::string container_table(Device& device, Readings& readings, const std::string& container) {
  return "### " + code(container) + "\n\n" + table(device, readings, container, From::operational);
}

std::string bound_table(Device& device) {
  Readings readings(device);
  return table(device, readings, "vlan", From::configuration_as_state);
}

std::string unmapped_table(Device& device) {
  std::string text =
      table_row({"leaf", "asked for", "native paths that a read asks for"}) + table_row({"---", "---", "---"});
  for (const Leaf& leaf : leaves()) {
    if (leaf.is_mapped) continue;
    const std::string asked = everywhere(leaf, [&](const Place& place) {
      return refusal_text(device.write(place, {}, {{leaf.path, samples_of(leaf).front().values}}));
    });
    const std::string entry =
        leaf.of_subinterface ? "/interfaces/interface/subinterfaces/subinterface/" : "/interfaces/interface/";
    const std::vector<std::string> fetched = device.fetched(entry + leaf.path);
    text += table_row({code(leaf.path), asked, fetched.empty() ? "none" : joined(codes(fetched), ", ")});
  }
  return text;
}

}  // namespace mapping
