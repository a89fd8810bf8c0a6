// Which leaves of operational data are unsaid, against readings without each of them: generated dumps, and ids that are
// equal or beside each other.
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <optional>

#include "framework/documents/documents.h"
#include "framework/oper_dump.h"
#include "framework/read/state_shape.h"
#include "framework/read/verdict.h"
#include "framework/state_device.h"
#include "framework/tree/schema.h"
#include "property/model/random.h"
#include "yfw-host/host.h"

namespace yfw::test {
namespace {

// A leaf of operational data, or its text in place of the leaf's own; neither is nothing.
struct Trial {
  const lyd_node* leaf = nullptr;
  std::optional<std::string> text = std::nullopt;
};

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) result += c == '<' ? "&lt;" : c == '&' ? "&amp;" : std::string(1, c);
  return result;
}

// Operational data as XML, with one leaf left out or changed. `only` is the entry that stands there; null: all do.
std::string written(const lyd_node* node, const lyd_node* only, const Trial& trial) {
  const std::string_view name = LYD_NAME(node);
  const bool is_entry = name == "trunk" || (name == "interface" && (node->schema->nodetype & LYS_LIST) != 0);
  const bool is_node = name == "node";
  const auto holds = [](const lyd_node* above, const lyd_node* below) {
    while (below != nullptr && below != above) below = lyd_parent(below);
    return below != nullptr;
  };
  if (only != nullptr && (is_entry || is_node) && !holds(node, only)) return "";
  std::string inside;
  if ((node->schema->nodetype & LYD_NODE_TERM) != 0) {
    if (node == trial.leaf && !trial.text.has_value()) return "";
    inside = escaped(node == trial.leaf ? *trial.text : lyd_get_value(node));
  }
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    inside += written(child, only, trial);
  }
  if (name == "vlan") return fmt::format("{}{}</vlan>", kHead, inside);
  return fmt::format("<{0}>{1}</{0}>", name, inside);
}

std::string shown(const Leaves& leaves) {
  return fmt::format("{}\n", fmt::join(leaves, "\n"));
}

std::vector<const lyd_node*> entries_of(const Data& dump) {
  std::vector<const lyd_node*> entries;
  const lyd_node* node = nullptr;
  LY_LIST_FOR(lyd_child(lyd_child(dump.get())), node) {
    const lyd_node* list = nullptr;
    LY_LIST_FOR(lyd_child_no_keys(node), list) {
      const lyd_node* entry = nullptr;
      LY_LIST_FOR(lyd_child(list), entry) {
        entries.push_back(entry);
      }
    }
  }
  return entries;
}

// The path below an entry; instances of a list without keys are counted.
std::string path_in(const lyd_node* entry, const lyd_node* node) {
  std::string path;
  for (; node != entry; node = lyd_parent(node)) {
    std::string step = LYD_NAME(node);
    if ((node->schema->nodetype & LYS_LIST) != 0) {
      std::size_t position = 0;
      const lyd_node* each = nullptr;
      LY_LIST_FOR(lyd_child(lyd_parent(node)), each) {
        if (each->schema == node->schema) ++position;
        if (each == node) break;
      }
      step += fmt::format("[{}]", position);
    }
    path = path.empty() ? step : fmt::format("{}/{}", step, path);
  }
  return path;
}

std::string path_to(const lyd_node* entry) {
  const lyd_node* const list = lyd_parent(entry);
  return fmt::format("/Vexnet-OS-l2-eth-infra-oper:vlan/nodes/node[node-id='{}']/{}/{}[interface='{}']",
                     lyd_get_value(lyd_child(lyd_parent(list))), LYD_NAME(list), LYD_NAME(entry),
                     lyd_get_value(lyd_child(entry)));
}

// The leaves that the mapping covers.
void collect_covered(const lyd_node* node, bool covered, std::vector<const lyd_node*>& leaves) {
  if (covered && (node->schema->nodetype & LYD_NODE_TERM) != 0) leaves.push_back(node);
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    const std::string_view name = LYD_NAME(child);
    const bool is_mapped =
        name == "layer3-sub-interfaces" || name == "vlan-switched" || name == "encapsulation-details";
    collect_covered(child, covered || is_mapped, leaves);
  }
}

// Another value: the number beside it, or a text that nobody knows.
std::string other_value(const lyd_node* leaf) {
  const std::string value = lyd_get_value(leaf);
  const bool is_number = reinterpret_cast<const lysc_node_leaf*>(leaf->schema)->type->basetype == LY_TYPE_UINT32;
  if (!is_number) return value + "-of-old";
  return value == "4094" ? "4093" : std::to_string(std::stoull(value) + 1);
}

// The leaves of an entry that its reading does not say, found by reading the entry alone, without each of its leaves
// and with another value for it. As "PATH VALUE" by the path below the entry.
Leaves unsaid_by_trial(Device& device, const lyd_node* top, const lyd_node* entry) {
  const auto reading = [&](const Trial& trial) {
    return device.read(written(top, entry, trial)).data.print(Format::xml);
  };
  const std::string whole = reading({});
  std::vector<const lyd_node*> leaves;
  collect_covered(entry, false, leaves);
  Leaves unsaid;
  for (const lyd_node* const leaf : leaves) {
    if (reading({leaf}) != whole || reading({leaf, other_value(leaf)}) != whole) continue;
    unsaid.insert(fmt::format("{} \"{}\"", path_in(entry, leaf), lyd_get_value(leaf)));
  }
  return unsaid;
}

// The same, as a read of more than this entry told it; each is named in the entry's warning.
Leaves unsaid_as_told(const ReadResult& result, const lyd_node* entry) {
  const std::string path = path_to(entry);
  Leaves unsaid;
  for (const Unsaid& each : result.unsaid) {
    if (!each.path.starts_with(path + "/")) continue;
    EXPECT_EQ(each.entry, lyd_get_value(lyd_child(entry)));
    EXPECT_TRUE(each.misread_as.empty() && each.fate == Unsaid::Fate::stays) << each.path;
    const std::string leaf = fmt::format("{} \"{}\"", each.path.substr(path.size() + 1), each.value);
    EXPECT_TRUE(unsaid.insert(leaf).second) << "told twice: " << each.path;
    const bool named = std::any_of(result.warnings.begin(), result.warnings.end(), [&](const Warning& warning) {
      return warning.unsaid && warning.path == path && warning.message.find(leaf) != std::string::npos;
    });
    EXPECT_TRUE(named) << "in no warning: " << each.path << "\n" << told(result.warnings);
  }
  return unsaid;
}

// One document with each dump on a card of its own, so that verdicts on many entries are remembered.
std::string on_cards(const std::vector<std::string>& dumps) {
  std::string cards;
  for (const std::string& dump : dumps) {
    const std::size_t begin = dump.find("<node>");
    std::string card = dump.substr(begin, dump.rfind("</nodes>") - begin);
    const std::size_t id = card.find("0/0/CPU0");
    cards += card.replace(id, 8, fmt::format("0/{}/CPU0", std::count(cards.begin(), cards.end(), '\n'))) + "\n";
  }
  return fmt::format("{}<nodes>{}</nodes></vlan>", kHead, cards);
}

// Every leaf is unsaid exactly when trying it shows that it is.
void check_unsaid(Device& device, const std::string& document) {
  const ReadResult result = device.read(document);
  std::vector<Warning> ignored;
  const Data dump = parse_operational(compact_models().get(), {document, Format::xml, "dump"}, &ignored);
  std::size_t told_of = 0;
  const auto entries = entries_of(dump);
  // Of cards with the same interface the last one counts.
  std::map<std::pair<const lysc_node*, std::string>, const lyd_node*> last;
  const auto name_of = [](const lyd_node* entry) {
    return std::pair(entry->schema, std::string(lyd_get_value(lyd_child(entry))));
  };
  for (const lyd_node* const entry : entries) last[name_of(entry)] = entry;
  for (const lyd_node* const entry : entries) {
    if (last.at(name_of(entry)) != entry) continue;
    const Leaves unsaid = unsaid_by_trial(device, dump.get(), entry);
    ASSERT_EQ(shown(unsaid_as_told(result, entry)), shown(unsaid)) << written(dump.get(), entry, {});
    told_of += unsaid.size();
  }
  EXPECT_EQ(result.unsaid.size(), told_of) << "some are of no entry";
}

TEST(StateShape, IsWhatTryingEveryLeafShows) {
  Device device("", false);
  constexpr std::uint64_t kDumps = 25;
  std::vector<std::string> dumps;
  for (std::uint64_t seed = first_seed(); seed < first_seed() + kDumps; ++seed) {
    dumps.push_back(xml_of(generate_dump(seed)));
  }
  check_unsaid(device, on_cards(dumps));
}

OperRange range_of(int low, int high) {
  return {std::to_string(low), std::to_string(high)};
}

// Entries of the same few forms whose ids are equal, beside each other, or none, so that many differ in those alone.
class CloseIds {
 public:
  explicit CloseIds(std::uint64_t seed) : random_(seed) {}

  OperDump dump(std::size_t entries) {
    OperDump made;
    for (std::size_t i = 1; i <= entries; ++i) {
      ids_ = random_.pick(kPools);
      next_ = random_.between(1, 20);
      missing_ = random_.chance(25) ? 15 : 0;
      if (random_.chance(40)) {
        made.trunks.push_back({fmt::format("Ethernet0/0/{}", i),
                               id(),
                               word({"trunk-port", "trunk-port", "access-port"}),
                               id(),
                               {tag("dot1q", {1, 3, 6, 14})}});
        continue;
      }
      OperInterface each;
      each.name = fmt::format("{}.{}", random_.chance(50) ? "Ethernet0/0/1" : "Bundle-Ether1", i);
      each.encapsulation = word({"service-instance", "service-instance", "service-instance", "dot1q", "dot1ad-dot1q"});
      each.tag = id();
      each.outer_tag = id();
      each.second_tag = id();
      const bool is_double = random_.chance(50);
      each.tags.push_back(tag(is_double ? "dot1ad" : "dot1q", {1, 2, 9}));
      if (is_double) each.tags.push_back(tag("dot1q", {1, 2, 3}));
      each.tags_popped = std::to_string(random_.below(3));
      for (std::size_t pushes = random_.below(3); pushes > 0; --pushes) each.pushes.push_back({id(), word({"dot1q"})});
      made.interfaces.push_back(std::move(each));
    }
    return made;
  }

 private:
  using Ids = std::vector<std::string>;
  // None: ids as they follow on each other.
  static inline const std::vector<Ids> kPools{{"1", "2", "3", "4", "5"},
                                              {"7", "7", "7", "8"},
                                              {"0", "1", "2", "4093", "4094", "4095", "4096", "4097", "5000"},
                                              {"4094", "4093"},
                                              {"40000", "40001"},
                                              {},
                                              {},
                                              {}};

  Text id() {
    if (random_.chance(missing_)) return std::nullopt;
    if (!ids_.empty()) return random_.pick(ids_);
    static const std::vector<std::size_t> steps{0, 1, 1, 2, 9};
    next_ += random_.pick(steps);
    return std::to_string(next_);
  }

  Text word(const std::vector<std::string>& usual) {
    static const std::vector<std::string> odd{"", "dot1q?", "trunk", "dot1ad-dot1q-dot1q", "?"};
    return random_.pick(random_.chance(5) ? odd : usual);
  }

  OperTag tag(const char* ethertype, const std::vector<std::size_t>& counts) {
    OperTag made{word({ethertype}), std::nullopt, {}};
    const std::size_t count = random_.pick(counts);
    made.number_of_ranges = std::to_string(random_.chance(70) ? count : random_.below(3));
    const bool is_list = random_.chance(40);
    for (std::size_t i = 0; i < count; ++i) {
      const Text low = id();
      made.ranges.push_back({low, is_list ? low : id()});
    }
    return made;
  }

  property::Random random_;
  Ids ids_;
  std::size_t next_ = 0;
  std::size_t missing_ = 0;
};

TEST(StateShape, IsWhatTryingEveryLeafShowsWhereIdsAreClose) {
  Device device("", false);
  for (std::uint64_t seed = first_seed(); seed < first_seed() + 4; ++seed) {
    SCOPED_TRACE(fmt::format("OC_VLAN_SEED={} repeats this", seed));
    check_unsaid(device, xml_of(CloseIds(seed).dump(20)));
    if (HasFatalFailure()) return;
  }
}

struct ManyRanges {
  const char* name;
  std::function<OperRange(int)> range;
  std::size_t unsaid;
};

void PrintTo(const ManyRanges& param, std::ostream* stream) {
  *stream << param.name;
}

class ManyRangesTest : public testing::TestWithParam<ManyRanges> {};

constexpr int kRanges = 2000;
constexpr std::size_t kEnds = 4000;

// Many ranges, of which about half lack an end, have one that is no id, both at times, or are of one id.
constexpr std::size_t kKinds = 7;
std::vector<OperRange> mixed(std::size_t kind, property::Random& random) {
  std::vector<OperRange> made;
  for (int i = 0; i < 18; ++i) {
    OperRange range = range_of(10 * i + 1, 10 * i + 5);
    if (random.chance(50)) {
      if (kind == 0) range.high = "4095";
      if (kind == 1) range.low = "4095";
      if (kind == 2) range.high = std::nullopt;
      if (kind == 3) range.low = std::nullopt;
      if (kind == 4) range.high = range.low;
      if (kind == 5) range.high = random.chance(50) ? std::nullopt : Text("4095");
      if (kind == 6) range.low = random.chance(50) ? std::nullopt : Text("4095");
    }
    made.push_back(std::move(range));
  }
  return made;
}

TEST(StateShape, IsWhatTryingEveryLeafShowsInLongLists) {
  Device device("", false);
  for (std::uint64_t seed = first_seed(); seed < first_seed() + 2; ++seed) {
    SCOPED_TRACE(fmt::format("OC_VLAN_SEED={} repeats this", seed));
    property::Random random(seed);
    OperDump dump;
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
      dump.trunks.push_back({fmt::format("Ethernet0/0/{}", kind),
                             std::nullopt,
                             "trunk-port",
                             std::nullopt,
                             {{"dot1q", std::nullopt, mixed(kind, random)}}});
      OperInterface interface;
      interface.name = fmt::format("Ethernet0/0/1.{}", kind + 1);
      interface.encapsulation = "service-instance";
      interface.tags.push_back({"dot1q", "1", mixed(kind, random)});
      dump.interfaces.push_back(std::move(interface));
    }
    check_unsaid(device, xml_of(dump));
    if (HasFatalFailure()) return;
  }
}

// Judging every range by itself would take as many readings of all of them as there are ranges.
TEST_P(ManyRangesTest, IsFoundInReasonableTime) {
  OperTrunk trunk{"Ethernet0/0/1", "1", "trunk-port", std::nullopt, {{"dot1q", std::nullopt, {}}}};
  for (int i = 0; i < kRanges; ++i) trunk.tags.front().ranges.push_back(GetParam().range(i));
  Device device("", false);
  const auto begin = std::chrono::steady_clock::now();
  const ReadResult result = device.read(xml_of({{trunk}, {}}));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
  EXPECT_EQ(result.unsaid.size(), GetParam().unsaid);
}

// Where no range can be held, the ends of all are unsaid; the mode and the ethertype still say that it is a trunk.
INSTANTIATE_TEST_SUITE_P(
    State, ManyRangesTest,
    testing::Values(ManyRanges{"IdsAndRanges", [](int i) { return range_of(2 * i + 1, 2 * i + 1 + (i % 3 > 0)); }, 0},
                    ManyRanges{"ThatTouch", [](int i) { return range_of(2 * i + 1, 2 * i + 3); }, 0},
                    ManyRanges{"UpsideDown", [](int i) { return range_of(4000 - i, 3999 - i); }, 0},
                    ManyRanges{"ToNoId", [](int i) { return range_of(i + 1, 5000); }, kEnds},
                    ManyRanges{"FromNoId", [](int i) { return range_of(4095, i + 1); }, kEnds},
                    ManyRanges{"OfZeros", [](int) { return range_of(0, 0); }, kEnds}),
    [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace yfw::test
