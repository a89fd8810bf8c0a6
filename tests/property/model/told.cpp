// The words for native leaves, made from their paths.
#include "property/model/told.h"

#include <algorithm>
#include <map>

#include "property/model/observe.h"

namespace property {

std::vector<std::string> settings_of(const Entry& leaves) {
  std::vector<std::string> settings;
  for (const auto& leaf : leaves) {
    const std::string& path = leaf.first;
    const std::string& value = leaf.second;
    const std::string parent = path.substr(0, path.rfind('/') + 1);
    const bool is_key = parent.ends_with("[" + path.substr(parent.size()) + "='" + value + "']/");
    const bool is_in_others = std::any_of(leaves.begin(), leaves.end(), [&](const auto& other) {
      return other.first != path && other.first.starts_with(parent);
    });
    if (is_key && is_in_others) continue;
    settings.push_back(path + (value.empty() ? "" : " \"" + value + "\""));
  }
  return settings;
}

bool lists(const std::string& text, const std::string& beginning, const std::vector<std::string>& settings) {
  std::size_t size = beginning.size();
  for (const std::string& setting : settings) {
    if (text.find(setting) == std::string::npos) return false;
    size += setting.size() + (&setting == &settings.front() ? 0 : 2);
  }
  return text.starts_with(beginning) && text.size() == size;
}

std::string untold_in(const std::vector<yfw::Warning>& warnings, const std::vector<UnsaidLeaf>& leaves) {
  std::map<std::pair<std::string, bool>, Entry> wanted;
  for (const UnsaidLeaf& each : leaves) wanted[{each.entry, each.goes}].emplace(each.path, each.value);
  for (const yfw::Warning& warning : warnings) {
    if (!warning.unsaid) continue;
    const auto told = std::find_if(wanted.begin(), wanted.end(), [&warning](const auto& each) {
      const auto& [entry, goes] = each.first;
      const std::string fate =
          goes ? "goes, and OpenConfig does not say it: " : "stays, and OpenConfig does not say it: ";
      return observe_native_entry(warning.path) == entry && lists(warning.message, fate, settings_of(each.second));
    });
    if (told == wanted.end()) return "not so: " + warning.path + ": " + warning.message;
    wanted.erase(told);
  }
  if (wanted.empty()) return {};
  const auto& [entry, goes] = wanted.begin()->first;
  return "no warning of what " + std::string(goes ? "goes" : "stays") + " in " + entry;
}

}  // namespace property
