// Every leaf of the samples of operational data, by the samples that say it and those that do not.
#include "mapping/document/unsaid_state.h"

#include <algorithm>
#include <set>

#include "mapping/document/native_model.h"
#include "mapping/document/samples.h"
#include "mapping/document/text.h"
#include "property/model/observe.h"

namespace mapping {

namespace {

struct StateLeaf {
  std::string path;
  std::vector<std::string> said_in;
  std::vector<std::string> unsaid_in;
};

// The form by the container or the value that it is read as; a kind that stands for one form by itself.
std::string label_of(const std::vector<NativeValue>& values, const yfw::ReadResult& result, const std::string& place) {
  for (const NativeValue& each : values) {
    const bool is_kind = each.path.ends_with("vlan-encapsulation") && each.value != "service-instance";
    if (is_kind) return each.value;
  }
  std::string label;
  for (const auto& [path, read] :
       property::part(property::observe_config(result.data), property::openconfig_path(place))) {
    constexpr std::string_view kMatch = "vlan/match/";
    if (path.starts_with(kMatch)) label = path.substr(kMatch.size(), path.find('/', kMatch.size()) - kMatch.size());
    const bool is_word = path.ends_with("vlan-stack-action") || path.ends_with("state/interface-mode");
    if (is_word) label = read.front();
    if (label.empty() && path.ends_with("state/native-vlan")) label = "native-vlan";
  }
  return label;
}

// Instances of lists without their numbers, but for the tags of a form that has two.
std::string general(std::string path, bool has_two_tags) {
  const std::string tags = "tags-to-match[";
  for (std::size_t open = 0; (open = path.find('[', open)) != std::string::npos;) {
    const bool is_tag = open + 1 >= tags.size() && path.compare(open + 1 - tags.size(), tags.size(), tags) == 0;
    if (has_two_tags && is_tag) {
      ++open;
    } else {
      path.erase(open, path.find(']', open) - open + 1);
    }
  }
  return shortened(path);
}

void add(std::vector<std::string>& labels, const std::string& label) {
  if (std::find(labels.begin(), labels.end(), label) == labels.end()) labels.push_back(label);
}

void add_form(Device& device, const std::string& place, const Operational& form, std::vector<StateLeaf>& leaves) {
  const yfw::ReadResult result = device.result_of_state(form.document);
  const std::vector<NativeValue> values = operational_values(form.document);
  const std::string label = label_of(values, result, place);
  const std::size_t first_tag = form.document.find("<tags-to-match>");
  const bool has_two_tags = form.document.rfind("<tags-to-match>") != first_tag;
  std::set<std::string> unsaid;
  for (const yfw::Unsaid& each : result.unsaid) unsaid.insert(path_in_operational(each.path));
  for (const NativeValue& each : values) {
    const std::string path = general(each.path, has_two_tags);
    auto leaf =
        std::find_if(leaves.begin(), leaves.end(), [&path](const StateLeaf& known) { return known.path == path; });
    if (leaf == leaves.end()) leaf = leaves.insert(leaf, {path, {}, {}});
    add(unsaid.contains(each.path) ? leaf->unsaid_in : leaf->said_in, label);
  }
}

}  // namespace

std::string unsaid_state(Device& device) {
  const std::string port = "Ethernet0/0/1";
  const std::string sub = "Ethernet0/0/1.100";
  std::vector<StateLeaf> leaves;
  for (const Operational& form : operational_of_port(port)) add_form(device, port, form, leaves);
  for (const Operational& form : operational_of_subinterface(sub)) add_form(device, sub, form, leaves);
  for (const std::string& path : operational_paths()) {
    const auto is_in_a_form = [path = shortened(path)](const StateLeaf& leaf) {
      return general(leaf.path, false) == path;
    };
    if (std::none_of(leaves.begin(), leaves.end(), is_in_a_form)) leaves.push_back({shortened(path), {}, {}});
  }
  std::string text = table_row({"leaf", "said in", "unsaid in"}) + table_row({"---", "---", "---"});
  for (std::size_t i = 0; i < leaves.size();) {
    const StateLeaf& first = leaves[i];
    std::vector<std::string> paths;
    for (; i < leaves.size() && leaves[i].said_in == first.said_in && leaves[i].unsaid_in == first.unsaid_in; ++i) {
      paths.push_back(code(leaves[i].path));
    }
    text +=
        table_row({joined(paths, kNewLine), joined(codes(first.said_in), ", "), joined(codes(first.unsaid_in), ", ")});
  }
  return text;
}

}  // namespace mapping
