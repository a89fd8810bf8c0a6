// The exceptions by which edits are judged, with what to ask for instead; both are run.
#include "mapping/document/round_trip.h"

#include <fmt/format.h>

#include <cctype>
#include <map>
#include <set>
#include <stdexcept>

#include "mapping/document/text.h"
#include "property/model/exceptions.h"

namespace mapping {

namespace {

using property::Unit;

// A request that reads back otherwise than asked. Leaves by their path below the unit.
struct Case {
  std::string name;
  Unit unit;
  std::string happens;
  std::string advice;
  Entry there;  // natively, before
  Config asked;
  Config instead;
};

// What to ask for instead, for each exception by its name.
const std::map<std::string, Config> kInstead{
    {"single-tagged list of one id", {{"single-tagged/config/vlan-id", {"100"}}}},
    {"range without its high id", {{"single-tagged/config/vlan-id", {"100"}}}},
    {"range without its low id",
     {{"single-tagged-range/config/low-vlan-id", {"100"}}, {"single-tagged-range/config/high-vlan-id", {"200"}}}},
    {"half a double tag",
     {{"double-tagged/config/outer-vlan-id", {"100"}}, {"double-tagged/config/inner-vlan-id", {"200"}}}},
    {"inner list of one id",
     {{"double-tagged/config/outer-vlan-id", {"100"}}, {"double-tagged/config/inner-vlan-id", {"200"}}}},
    {"outer list of one id",
     {{"double-tagged/config/outer-vlan-id", {"100"}}, {"double-tagged/config/inner-vlan-id", {"200"}}}},
    {"inner range without its high id",
     {{"double-tagged/config/outer-vlan-id", {"100"}}, {"double-tagged/config/inner-vlan-id", {"200"}}}},
    {"outer range without its high id",
     {{"double-tagged/config/outer-vlan-id", {"100"}}, {"double-tagged/config/inner-vlan-id", {"200"}}}},
    {"inner range with several outer ids",
     {{"double-tagged-inner-range/config/outer-vlan-id", {"101"}},
      {"double-tagged-inner-range/config/inner-low-vlan-id", {"200"}},
      {"double-tagged-inner-range/config/inner-high-vlan-id", {"300"}}}},
    {"POP with a tag", {{"config/vlan-stack-action", {"POP"}}}},
    {"tag without an action", {{"config/vlan-stack-action", {"PUSH"}}, {"config/vlan-id", {"100"}}}},
    {"TRUNK without trunk-vlans", {{"interface-mode", {"TRUNK"}}, {"trunk-vlans", {"1..4094"}}}},
};

std::vector<Case> cases() {
  std::vector<Case> all;
  for (const property::Exception& each : property::exceptions()) {
    all.push_back({each.name, each.unit, each.happens, each.instead, {}, each.example, kInstead.at(each.name)});
  }
  all.push_back({"merged into what does not read",
                 Unit::switched,
                 "what is there natively, and says nothing in OpenConfig by itself, says something together with what "
                 "is asked",
                 "all leaves of the container in the same request",
                 {{"vlan-trunk-configuration/vlan-switched/access-vlan", "100"}},
                 {{"interface-mode", {"ACCESS"}}},
                 {{"interface-mode", {"ACCESS"}}, {"access-vlan", {"200"}}}});
  return all;
}

std::vector<Place> places_of(Unit unit) {
  if (unit == Unit::switched) return {{"Ethernet0/0/1"}};
  return {{"Ethernet0/0/1.100", true}, {"Ethernet0/0/1.100", false}};
}

// Where the leaves of a unit stand, below the entry.
std::string container_of(Unit unit, const Place& place) {
  for (const property::Region& region : property::regions_of(place.name)) {
    if (region.unit == unit) return region.path.substr(property::openconfig_path(place.name).size() + 1);
  }
  throw std::logic_error("no place for a unit");
}

// What an edit of the unit comes to.
struct Outcome {
  Written written;
  Config read;
};

Outcome outcome(Device& device, const Place& place, const Case& of, const Config& leaves) {
  const std::string container = container_of(of.unit, place);
  Config asked;
  for (const auto& [path, values] : leaves) asked[fmt::format("{}/{}", container, path)] = values;
  Outcome result{device.write(place, of.there, asked), {}};
  if (result.written.refusal.empty()) {
    result.read = property::part(device.read(place, result.written.running), container);
  }
  return result;
}

std::string or_nothing(const std::string& text) {
  return text.empty() ? "nothing" : text;
}

std::string sentence(std::string text) {
  text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
  return text;
}

// An example that is none, or that does not help, is a mistake of the tables.
void check(const Case& of, const Outcome& asked, const Outcome& instead) {
  if (!asked.written.refusal.empty()) throw std::runtime_error(of.name + " is refused: " + asked.written.refusal);
  if (asked.read == of.asked) throw std::runtime_error(of.name + " reads back as asked");
  if (instead.read != of.instead) throw std::runtime_error("instead of " + of.name + " something else is needed");
}

std::string text_of(Device& device, const Case& of) {
  std::vector<std::pair<std::string, std::string>> native;
  std::vector<std::pair<std::string, std::string>> read;
  std::set<std::string> reports;
  for (const Place& place : places_of(of.unit)) {
    const Outcome asked = outcome(device, place, of, of.asked);
    check(of, asked, outcome(device, place, of, of.instead));
    const std::string label = place.is_l2 ? "L2" : "L3";
    native.emplace_back(label, settings(asked.written.native));
    read.emplace_back(label, or_nothing(settings(asked.read)));
    for (const yfw::Difference& each : asked.written.differences) reports.insert(each.advice);
  }
  std::string text = "### " + sentence(of.name) + "\n\n" + sentence(of.happens) + ". Ask for: " + of.advice + ".\n\n";
  text +=
      table_row({"", "below " + code(container_of(of.unit, places_of(of.unit).front()))}) + table_row({"---", "---"});
  if (!of.there.empty()) text += table_row({"there natively", settings(of.there)});
  text += table_row({"asked for", settings(of.asked)});
  text += table_row({"becomes natively", merged(native)});
  text += table_row({"reads back", merged(read)});
  text += table_row({"is reported as", joined({reports.begin(), reports.end()}, kNewLine)});
  text += table_row({"ask for instead", settings(of.instead)});
  return text + "\n";
}

}  // namespace

std::string exceptions_text(Device& device) {
  std::string text;
  for (const Case& each : cases()) text += text_of(device, each);
  return text;
}

}  // namespace mapping
