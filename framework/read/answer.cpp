// An answer made interface by interface: what one is read from, what is made of it and what is wrong with it is dropped
// before the next one is looked at.
#include "framework/read/answer.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "framework/datastore/select.h"
#include "framework/read/fetch.h"
#include "framework/read/judge.h"
#include "framework/read/operational.h"
#include "framework/read/reader.h"
#include "framework/read/told.h"
#include "framework/read/unsaid.h"
#include "framework/read/valid.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/prune.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

// What is asked, and what there is to answer it from.
struct Question {
  const Environment& environment;
  const SubtreeFilter& filter;
  const FetchSet& fetch;
  const std::vector<const lyd_node*>& entries;  // of the running configuration, in its order
  const Data* state;                            // null: nothing is asked of it
  const std::vector<const lyd_node*>& state_entries;

  bool walks_state() const { return state != nullptr && environment.plugins->operational_root() != nullptr; }
};

// What there is of one interface: places of its entries among all, and among those of operational data.
struct Interface {
  std::string_view name;
  std::vector<std::size_t> entries = {};
  std::vector<std::size_t> state_entries = {};
};

// Interfaces in the order in which the first entry of each stands. An entry whose name is none is by itself.
std::vector<Interface> interfaces_of(const Question& question) {
  std::vector<Interface> interfaces;
  std::unordered_map<std::string_view, std::size_t> places;
  const auto place_of = [&](const lyd_node* entry) -> Interface& {
    const std::string_view name = split_interface_name(entry_name(entry)).name;
    if (!interfaces.empty() && interfaces.back().name == name) return interfaces.back();
    const auto [place, is_new] = places.try_emplace(name, interfaces.size());
    if (is_new) interfaces.push_back({name});
    return interfaces[place->second];
  };
  for (std::size_t i = 0; i < question.entries.size(); ++i) {
    const lyd_node* const entry = question.entries[i];
    if (is_interface_name(entry_name(entry))) {
      place_of(entry).entries.push_back(i);
    } else {
      interfaces.push_back({{}, {i}});
    }
  }
  for (std::size_t i = 0; i < question.state_entries.size(); ++i) {
    place_of(question.state_entries[i]).state_entries.push_back(i);
  }
  return interfaces;
}

// Moves what is at the top of one answer to the end of another.
void append(Data& answer, Data part) {
  if (part.empty()) return;
  if (answer.empty()) {
    answer = std::move(part);
    return;
  }
  lyd_node* node = lyd_child(part.get());
  while (node != nullptr) {
    lyd_node* const next = node->next;
    lyd_unlink_tree(node);
    lyd_insert_child(answer.get(), node);
    node = next;
  }
}

// One way through the configuration, interface by interface or all of them together.
class Pass {
 public:
  explicit Pass(const Question& question)
      : question_(question),
        reader_(question.environment, question.state == nullptr ? kReadConfig : kReadState),
        judge_(question.environment) {}

  // Answers for one interface; false when that cannot be done without the others.
  bool add(const Interface& interface) {
    read_entries(interface);
    std::size_t place = interface.entries.empty() ? 0 : interface.entries.front();
    for (const std::size_t i : interface.state_entries) {
      const bool is_first = reader_.empty();
      if (reader_.add_state_entry(question_.state_entries[i]) != 0) return false;
      if (is_first && !reader_.empty()) place = question_.entries.size() + i;
    }
    if (question_.walks_state()) reader_.answer_names();
    Data data = take(place);
    if (!is_only(data, interface.name)) return false;
    const Reach reach = reach_of_configuration(question_.environment, data);
    if (reach == Reach::beyond) return false;
    if (reach == Reach::nowhere) {
      strip_defaults(data);
    } else {
      make_valid(place, data);
    }
    judge(interface, data);
    question_.filter.retain(data);
    answers_.add(place, std::move(data));
    return true;
  }

  // Operational data that are no interface's; false when something comes of them.
  bool add_rest_of_state() {
    for (const lyd_node* const top : rest_of_state(*question_.state)) {
      const cerrno result = reader_.add_state(top, [](const lyd_node* node) { return !is_state_entry(node); });
      if (result != 0 || !reader_.empty()) return false;
    }
    return true;
  }

  // Answers for all of them.
  void add_together(const Interface& all) {
    read_entries(all);
    const lyd_node* top = nullptr;
    LY_LIST_FOR(question_.walks_state() ? question_.state->get() : nullptr, top) {
      if (top->schema == nullptr) continue;
      const cerrno result = reader_.add_state(top);
      if (result == 0) continue;
      walked_.add(question_.entries.size(), {path_of(top), fmt::format("left out in part: {}", cerr_strerror(result))});
    }
    if (question_.walks_state()) reader_.answer_names();
    Data data = take(0);
    make_valid(0, data);
    judge(all, data);
    question_.filter.retain(data);
    answers_.add(0, std::move(data));
  }

  void finish(ReadResult& result) {
    for (Data& each : answers_.take()) append(result.data, std::move(each));
    if (question_.state != nullptr && !question_.walks_state()) {
      walked_.add(question_.entries.size(), {"", "no plug-in translates operational data"});
    }
    for (Told<Warning>* const told : {&walked_, &unheld_, &invalid_}) {
      std::vector<Warning> warnings = told->take();
      std::move(warnings.begin(), warnings.end(), std::back_inserter(result.warnings));
    }
    report_unsaid(verdicts_.take(), result);
    if (question_.state == nullptr) return;
    const Scope scope = [this](const lyd_node* entry, const lyd_node* node) {
      return whole_.contains(entry_name(entry)) || asked_of(entry).wants(node);
    };
    report_unsaid_state(question_.environment, *question_.state, question_.filter.empty() ? nullptr : scope, result);
  }

 private:
  void read_entries(const Interface& interface) {
    std::vector<Warning> warnings;
    for (const std::size_t i : interface.entries) {
      const lyd_node* const entry = question_.entries[i];
      reader_.add(entry, question_.fetch.everything() ? nullptr : &asked_of(entry), warnings);
      if (!warnings.empty()) walked_.add(i, warnings);
    }
  }

  Data take(std::size_t place) {
    std::vector<Warning> warnings;
    Data data = reader_.take(warnings);
    if (!warnings.empty()) unheld_.add(place, warnings);
    return data;
  }

  static bool is_only(const Data& data, std::string_view name) {
    if (data.empty()) return true;
    const lyd_node* const interface = lyd_child(data.get());
    return data.get()->next == nullptr && interface != nullptr && interface->next == nullptr &&
           named(interface, "interface") && key_value(interface) == name;
  }

  // What is not valid goes, with a warning when the filter would have selected it.
  void make_valid(std::size_t place, Data& data) {
    Data unjudged = question_.filter.empty() ? Data() : data.clone();
    std::vector<Warning> warnings;
    yfw::make_valid(question_.environment, data, warnings);
    if (!warnings.empty()) question_.filter.retain(unjudged);
    std::erase_if(warnings, [&](const Warning& warning) {
      return !question_.filter.empty() && !warning.path.empty() && node_at(unjudged, warning.path) == nullptr;
    });
    invalid_.add(place, warnings);
  }

  void judge(const Interface& interface, const Data& data) {
    std::unordered_map<std::string_view, Readings> readings;
    const lyd_node* node = nullptr;
    LY_LIST_FOR(data.empty() ? nullptr : lyd_child(data.get()), node) {
      if (!named(node, "interface")) continue;
      readings.emplace(key_value(node), Readings(node));
      if (!question_.filter.empty()) note_whole(node);
    }
    Scope scope;
    if (!question_.filter.empty()) {
      scope = [this](const lyd_node* entry, const lyd_node* part) {
        return whole_.contains(entry_name(entry)) || asked_of(entry).wants(part);
      };
    }
    for (const std::size_t i : interface.entries) {
      const lyd_node* const entry = question_.entries[i];
      if (scope != nullptr && !whole_.contains(entry_name(entry)) && !asked_of(entry).of_nodes()) continue;
      const auto found = readings.find(split_interface_name(entry_name(entry)).name);
      const lyd_node* const reading = found == readings.end() ? nullptr : found->second.of(entry);
      std::optional<EntryVerdict> verdict = judge_.judge(entry, reading, scope);
      if (verdict.has_value()) verdicts_.add(i, std::move(*verdict));
    }
  }

  // Remembers an interface and its sub-interfaces that the filter selects with all that they hold.
  void note_whole(const lyd_node* interface) {
    const std::string_view name = key_value(interface);
    if (question_.filter.selects_whole(interface)) whole_.emplace(name);
    const lyd_node* const list = child_named(interface, "subinterfaces");
    const lyd_node* sub = nullptr;
    LY_LIST_FOR(list == nullptr ? nullptr : lyd_child(list), sub) {
      if (question_.filter.selects_whole(sub)) whole_.insert(join_interface_name(name, key_value(sub)));
    }
  }

  // Consecutive questions are about one entry.
  const Asked& asked_of(const lyd_node* entry) {
    if (asked_entry_ != entry) asked_ = question_.fetch.asked_of(entry_name(entry));
    asked_entry_ = entry;
    return asked_;
  }

  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>{}(text); }
  };

  const Question& question_;
  Reader reader_;
  Judge judge_;
  const lyd_node* asked_entry_ = nullptr;
  Asked asked_;
  std::unordered_set<std::string, TextHash, std::equal_to<>> whole_;
  Told<Data> answers_;
  Told<Warning> walked_;
  Told<Warning> unheld_;  // by the model
  Told<Warning> invalid_;
  Told<EntryVerdict> verdicts_;
};

// False when an interface cannot be answered without the others.
bool answer_one_by_one(const Question& question, ReadResult& result) {
  Pass pass(question);
  if (question.walks_state() && !pass.add_rest_of_state()) return false;
  for (const Interface& each : interfaces_of(question)) {
    if (!pass.add(each)) return false;
  }
  pass.finish(result);
  return true;
}

void answer_together(const Question& question, ReadResult& result) {
  Interface all;
  for (std::size_t i = 0; i < question.entries.size(); ++i) all.entries.push_back(i);
  Pass pass(question);
  pass.add_together(all);
  pass.finish(result);
}

// Whether the answer speaks of the interface with this native name.
bool speaks_of(const Data& answer, const std::string& native_name) {
  const InterfaceName name = split_interface_name(native_name);
  std::string path = "/openconfig-interfaces:interfaces/interface" + predicate("name", name.name);
  if (name.is_subinterface()) path += "/subinterfaces/subinterface" + predicate("index", name.index);
  return node_at(answer, path) != nullptr;
}

}  // namespace

void answer(const Environment& environment, const Data& filter, Data* operational, ReadResult& result) {
  const std::vector<Contradiction> contradictions =
      operational == nullptr ? std::vector<Contradiction>() : keep_last_told(*operational);
  const SubtreeFilter selection(filter);
  FetchSet fetch;
  if (!filter.empty()) {
    fetch = collect_paths(environment, filter, operational != nullptr).set;
    fetch.ask_for_names(selection, environment.running);
  }
  std::vector<const lyd_node*> entries;
  if (environment.running != nullptr) entries = fetch.entries(*environment.running);
  std::vector<const lyd_node*> state_entries;
  if (operational != nullptr) state_entries = state_entries_of(*operational);
  const Question question{environment, selection, fetch, entries, operational, state_entries};
  if (!answer_one_by_one(question, result)) answer_together(question, result);
  for (const Contradiction& each : contradictions) {
    if (filter.empty() || speaks_of(result.data, each.interface)) result.warnings.push_back(each.warning);
  }
}

}  // namespace yfw
