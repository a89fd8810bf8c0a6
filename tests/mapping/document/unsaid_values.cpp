// Every value is put into every native form that the samples become, and the reading asked whether it says it.
#include "mapping/document/unsaid_values.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>

#include "mapping/document/native_model.h"
#include "mapping/document/samples.h"
#include "mapping/document/tables.h"
#include "mapping/document/text.h"

namespace mapping {

namespace {

constexpr char kAlone[] = "alone";

// Where entries are tried.
struct Tried {
  std::string label;
  std::string parent;  // the interface, or what its number is put behind
  bool is_subinterface;
  bool is_l2;

  std::string name(std::size_t number) const {
    return fmt::format("{}{}{}", parent, is_subinterface ? "." : "", number);
  }
};

const std::vector<Tried> kTried{
    {"ports", "Ethernet0/0/", false, false},
    {"bundles", "Bundle-Ether", false, false},
    {"L2 sub-interfaces of ports", "Ethernet0/0/1", true, true},
    {"L2 sub-interfaces of bundles", "Bundle-Ether1", true, true},
    {"L3 sub-interfaces of ports", "Ethernet0/0/1", true, false},
    {"L3 sub-interfaces of bundles", "Bundle-Ether1", true, false},
};

// A native form that values are put into.
struct Form {
  std::size_t place;  // in kTried
  std::string label;
  Entry native;
};

std::string label_of(const std::string& container, const Config& form) {
  std::string label = container.substr(container.rfind('/') + 1);
  for (const char* const kind : {"vlan-stack-action", "interface-mode"}) {
    const auto found = form.find(container + "/config/" + kind);
    if (found != form.end()) label = found->second.front();
  }
  return label;
}

bool is_of(const std::string& container, const Tried& tried) {
  if (tried.is_subinterface) return container.starts_with("vlan/");
  return container.starts_with(property::is_bundle(tried.name(1)) ? "aggregation/" : "ethernet/");
}

std::vector<Form> forms(Device& device) {
  std::vector<Form> all;
  for (std::size_t place = 0; place < kTried.size(); ++place) {
    const Tried& tried = kTried[place];
    all.push_back({place, kAlone, {}});
    for (const std::string& container : mapped_containers()) {
      if (!is_of(container, tried)) continue;
      for (const Config& form : forms_of(container)) {
        const Written written = device.write({tried.name(1), tried.is_l2}, {}, form);
        all.push_back({place, label_of(container, form), written.native});
      }
    }
  }
  return all;
}

// Labels of forms that say a value, by place.
using SaidIn = std::map<std::size_t, std::vector<std::string>>;

std::map<std::size_t, std::vector<std::string>> labels_by_place(const std::vector<Form>& all) {
  SaidIn labels;
  for (const Form& form : all) labels[form.place].push_back(form.label);
  return labels;
}

struct Verdict {
  NativeValue value;
  SaidIn said_in;
};

std::vector<Verdict> verdicts(Device& device, const std::vector<Form>& all) {
  const std::vector<NativeValue> values = native_values();
  property::Native entries;
  std::vector<std::pair<std::string, std::string>> tried;  // the entry, and the path of the value
  for (const NativeValue& each : values) {
    for (const Form& form : all) {
      Entry entry = form.native;
      if (kTried[form.place].is_l2) entry["l2-transport"];
      // What stands for any value leaves those of the form as they are.
      if (!each.stands_for_any || !entry.contains(each.path)) entry[each.path] = each.value;
      tried.emplace_back(kTried[form.place].name(tried.size() + 1), each.path);
      entries[tried.back().first] = entry;
    }
  }
  std::set<std::pair<std::string, std::string>> unsaid;
  for (const yfw::Unsaid& each : device.result_of(native_document(entries)).unsaid) {
    unsaid.emplace(each.entry, path_in_entry(each.path));
  }
  std::vector<Verdict> found;
  std::size_t at = 0;
  for (const NativeValue& each : values) {
    Verdict verdict{each, {}};
    for (const Form& form : all) {
      if (!unsaid.contains(tried[at++])) verdict.said_in[form.place].push_back(form.label);
    }
    found.push_back(std::move(verdict));
  }
  return found;
}

std::string container_of(const std::string& path) {
  const std::size_t cut = path.rfind('/');
  return cut == std::string::npos ? "" : path.substr(0, cut);
}

// Ports and bundles, L2 and L3, those of ports and those of bundles: said together where they are the same.
std::string places_text(const std::vector<std::size_t>& places) {
  static const std::vector<std::pair<std::vector<std::size_t>, std::string>> kTogether{
      {{2, 3, 4, 5}, "sub-interfaces"}, {{0, 1}, "ports and bundles"}, {{2, 3}, "L2"}, {{4, 5}, "L3"}};
  std::vector<std::string> texts;
  std::vector<std::size_t> left = places;
  for (const auto& [together, text] : kTogether) {
    if (!std::includes(left.begin(), left.end(), together.begin(), together.end())) continue;
    texts.push_back(text);
    for (const std::size_t place : together) std::erase(left, place);
  }
  for (const std::size_t place : left) texts.push_back(kTried[place].label);
  return joined(texts, ", ");
}

// Where a value is said; places with the same forms share a line.
std::string said_in_text(const SaidIn& said_in, const SaidIn& everywhere) {
  std::vector<std::pair<std::string, std::vector<std::size_t>>> lines;  // forms, places
  for (const auto& [place, labels] : said_in) {
    const bool is_every = labels == everywhere.at(place);
    std::string forms = is_every ? "every form" : joined(codes(labels), ", ");
    const auto known =
        std::find_if(lines.begin(), lines.end(), [&forms](const auto& each) { return each.first == forms; });
    if (known == lines.end()) {
      lines.emplace_back(std::move(forms), std::vector<std::size_t>{place});
    } else {
      known->second.push_back(place);
    }
  }
  std::vector<std::string> texts;
  texts.reserve(lines.size());
  for (const auto& [forms, places] : lines) texts.push_back(places_text(places) + ": " + forms);
  return joined(texts, kNewLine);
}

// Leaves with one text, each with those of its values that are meant; none where all are.
class Rows {
 public:
  explicit Rows(const std::vector<Verdict>& all) : all_(all) {}

  void add(const std::string& text, const std::string& path, const Verdict& verdict) {
    if (rows_.empty() || rows_.back().text != text) rows_.push_back({text, {}});
    std::vector<Named>& leaves = rows_.back().leaves;
    if (leaves.empty() || leaves.back().path != path) leaves.push_back({path, {}});
    const auto is_same = [&verdict](const Verdict& each) {
      return each.value.path != verdict.value.path || each.said_in == verdict.said_in;
    };
    const bool is_any = verdict.value.stands_for_any || std::all_of(all_.begin(), all_.end(), is_same);
    if (!is_any) leaves.back().values.push_back(verdict.value.value);
  }

  // The text first, or the leaves.
  std::string text(bool text_first) const {
    std::string text;
    for (const Row& row : rows_) {
      const std::string leaves = leaves_text(row);
      text += text_first ? table_row({row.text, leaves}) : table_row({leaves, row.text});
    }
    return text;
  }

 private:
  struct Named {
    std::string path;
    std::vector<std::string> values;
  };
  struct Row {
    std::string text;
    std::vector<Named> leaves;
  };

  static std::string leaves_text(const Row& row) {
    std::vector<std::string> plain;
    std::vector<std::string> texts;
    const auto finish = [&] {
      for (std::string& each : codes(plain)) texts.push_back(std::move(each));
      plain.clear();
    };
    for (const Named& leaf : row.leaves) {
      if (leaf.values.empty()) {
        plain.push_back(leaf.path);
        continue;
      }
      finish();
      texts.push_back(code(leaf.path) + " = " + joined(codes(leaf.values), ", "));
    }
    finish();
    return joined(texts, kNewLine);
  }

  const std::vector<Verdict>& all_;
  std::vector<Row> rows_;
};

}  // namespace

UnsaidValues unsaid_values(Device& device) {
  const std::vector<Form> all_forms = forms(device);
  const SaidIn everywhere = labels_by_place(all_forms);
  const std::vector<Verdict> all = verdicts(device, all_forms);
  Rows never(all);
  Rows some(all);
  for (const Verdict& each : all) {
    const std::string& path = each.value.path;
    const std::string container = container_of(path);
    if (each.said_in.empty()) {
      never.add(container.empty() ? "the entry itself" : code(container),
                path.substr(container.empty() ? 0 : container.size() + 1), each);
    } else if (each.said_in != everywhere) {
      some.add(said_in_text(each.said_in, everywhere), shortened(path), each);
    }
  }
  const std::string line = table_row({"---", "---"});
  return {table_row({"container", "never said"}) + line + never.text(true),
          table_row({"native leaf", "said in"}) + line + some.text(false)};
}

}  // namespace mapping
