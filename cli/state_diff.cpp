// Configuration against state: where an OpenConfig leaf in a `config` container says another thing than its twin in
// `state`.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/commands.h"
#include "cli/message.h"
#include "yfw-host/host.h"
#include "yfw-host/text.h"

namespace ocvlan {
namespace {

using Values = std::vector<std::string>;

struct Twins {
  Values configured;
  Values up;
};

// In the order in which leaves are first met, which keeps an interface's lines together.
class Leaves {
 public:
  Twins& operator[](const std::string& path) {
    const auto [found, added] = index_.try_emplace(path, entries_.size());
    if (added) entries_.emplace_back(path, Twins{});
    return entries_[found->second].second;
  }
  const std::vector<std::pair<std::string, Twins>>& entries() const { return entries_; }

 private:
  std::map<std::string, std::size_t> index_;
  std::vector<std::pair<std::string, Twins>> entries_;
};

std::string path_of(const lyd_node* node) {
  char* const text = lyd_path(node, LYD_PATH_STD, nullptr, 0);
  std::string path = text == nullptr ? "" : text;
  free(text);
  return path;
}

std::string_view name_of(const lyd_node* node) {
  return node->schema->name;
}

Leaves collect(const yfw::Data& data) {
  Leaves leaves;
  const lyd_node* root = nullptr;
  LY_LIST_FOR(data.get(), root) {
    lyd_node* node = nullptr;
    LYD_TREE_DFS_BEGIN(root, node) {
      const lyd_node* const parent = lyd_parent(node);
      const bool of_vlan = node->schema != nullptr && std::string_view(node->schema->module->name) == "openconfig-vlan";
      if (of_vlan && parent != nullptr && (node->schema->nodetype & LYD_NODE_TERM) != 0) {
        const bool config = name_of(parent) == "config";
        if (config || name_of(parent) == "state") {
          Twins& twins = leaves[fmt::format("{}/{}", path_of(lyd_parent(parent)), name_of(node))];
          (config ? twins.configured : twins.up).emplace_back(lyd_get_value(node));
        }
      }
      LYD_TREE_DFS_END(root, node);
    }
  }
  return leaves;
}

// The VLANs of "20..30" or "20"; false when the text is neither.
bool add_vlans(const std::string& text, std::set<int>& vlans) {
  const char* const end = text.data() + text.size();
  int low = 0;
  auto [rest, error] = std::from_chars(text.data(), end, low);
  if (error != std::errc()) return false;
  int high = low;
  if (std::string_view(rest, end).starts_with("..")) {
    const auto second = std::from_chars(rest + 2, end, high);
    if (second.ec != std::errc()) return false;
    rest = second.ptr;
  }
  if (rest != end) return false;
  for (int vlan = low; vlan <= high; ++vlan) vlans.insert(vlan);
  return true;
}

Values ranges_of(const std::set<int>& vlans) {
  Values texts;
  for (auto first = vlans.begin(); first != vlans.end();) {
    int high = *first;
    auto next = std::next(first);
    while (next != vlans.end() && *next == high + 1) high = *next++;
    texts.push_back(high == *first ? fmt::format("{}", high) : fmt::format("{}..{}", *first, high));
    first = next;
  }
  return texts;
}

// What `from` has and `other` has not. Texts that are VLANs or ranges of them count VLAN by VLAN, since a device tells
// a trunk's VLANs in ranges of its own.
Values missing(const Values& from, const Values& other) {
  std::set<int> ours;
  std::set<int> theirs;
  const auto into = [](std::set<int>& vlans) {
    return [&vlans](const std::string& text) { return add_vlans(text, vlans); };
  };
  if (std::all_of(from.begin(), from.end(), into(ours)) && std::all_of(other.begin(), other.end(), into(theirs))) {
    std::set<int> rest;
    std::set_difference(ours.begin(), ours.end(), theirs.begin(), theirs.end(), std::inserter(rest, rest.end()));
    return ranges_of(rest);
  }
  Values rest;
  std::copy_if(from.begin(), from.end(), std::back_inserter(rest), [&other](const std::string& text) {
    return std::find(other.begin(), other.end(), text) == other.end();
  });
  return rest;
}

// A leaf of which something is configured and not up, or up and not configured.
struct Difference {
  std::string path;
  Values configured;
  Values up;
};

std::vector<Difference> differences(const yfw::Data& data) {
  std::vector<Difference> found;
  const Leaves leaves = collect(data);
  for (const auto& [path, twins] : leaves.entries()) {
    Difference difference{path, missing(twins.configured, twins.up), missing(twins.up, twins.configured)};
    if (!difference.configured.empty() || !difference.up.empty()) found.push_back(std::move(difference));
  }
  return found;
}

std::string xml_elements(const char* name, const Values& values) {
  std::string text;
  for (const std::string& value : values) text += fmt::format("    <{0}>{1}</{0}>\n", name, yfw::xml_text(value));
  return text;
}

std::string as_xml(const std::vector<Difference>& differences) {
  if (differences.empty()) return "<differences/>\n";
  std::string text = "<differences>\n";
  for (const Difference& each : differences) {
    text +=
        fmt::format("  <difference>\n    <path{}>{}</path>\n{}{}  </difference>\n", yfw::prefix_declarations(each.path),
                    yfw::xml_text(each.path), xml_elements("configured", each.configured), xml_elements("up", each.up));
  }
  return text + "</differences>\n";
}

std::string json_strings(const Values& values) {
  std::string text;
  for (const std::string& value : values) {
    text += fmt::format("{}\"{}\"", text.empty() ? "" : ", ", yfw::json_text(value));
  }
  return "[" + text + "]";
}

std::string as_json(const std::vector<Difference>& differences) {
  std::string text;
  for (const Difference& each : differences) {
    text += fmt::format("{}\n    {{\n      \"path\": \"{}\",\n      \"configured\": {},\n      \"up\": {}\n    }}",
                        text.empty() ? "" : ",", yfw::json_text(each.path), json_strings(each.configured),
                        json_strings(each.up));
  }
  return "{\n  \"differences\": [" + text + (text.empty() ? "" : "\n  ") + "]\n}\n";
}

}  // namespace

std::string compare_state(const yfw::Data& data) {
  std::string text;
  const auto add = [&text](const std::string& line) { text += printable(line) + '\n'; };
  for (const Difference& each : differences(data)) {
    if (!each.configured.empty()) {
      add(fmt::format("- {}: {} configured, not up", each.path, fmt::join(each.configured, " ")));
    }
    if (!each.up.empty()) add(fmt::format("+ {}: {} up, not configured", each.path, fmt::join(each.up, " ")));
  }
  return text;
}

std::string compare_state(const yfw::Data& data, yfw::Format format) {
  const std::vector<Difference> found = differences(data);
  return format == yfw::Format::xml ? as_xml(found) : as_json(found);
}

}  // namespace ocvlan
