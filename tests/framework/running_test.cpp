// The running configuration as a set of entries: versions, what they share, their order, and the whole put together.
#include "framework/datastore/running.h"

#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include <map>
#include <random>
#include <string>
#include <vector>

#include "framework/datastore/entry_set.h"
#include "framework/documents/documents.h"
#include "framework/models_of_tests.h"
#include "framework/tree/entries.h"
#include "yfw-host/data.h"

namespace yfw {
namespace {

using test::compact_models;

constexpr char kBegin[] = "<interface-configurations xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg\">";

std::string entry_text(const std::string& name, const std::string& description) {
  return "<interface-configuration><interface-name>" + name + "</interface-name><description>" + description +
         "</description></interface-configuration>";
}

using Entries = std::vector<std::pair<std::string, std::string>>;  // names and descriptions, in order

Running running_of(const Entries& entries) {
  std::string text = kBegin;
  for (const auto& [name, description] : entries) text += entry_text(name, description);
  text += "</interface-configurations>";
  return Running(parse_running(compact_models(), {text, Format::xml, "running"}).data);
}

Entries entries_of(const Running& running) {
  Entries entries;
  for (const lyd_node* const entry : running.entries()) {
    entries.emplace_back(entry_name(entry), lyd_get_value(lyd_child(entry)->next));
  }
  return entries;
}

// What the set should hold, found by going through all.
class Model {
 public:
  void replace(const std::vector<std::string>& names, const std::map<std::string, std::string>& changed) {
    for (const std::string& name : names) {
      const auto old = find(name);
      const auto now = changed.find(name);
      if (now == changed.end()) {
        if (old != entries_.end()) entries_.erase(old);
      } else if (old != entries_.end()) {
        old->second = now->second;
      } else {
        entries_.emplace_back(name, now->second);
      }
    }
  }

  Entries::iterator find(const std::string& name) {
    return std::find_if(entries_.begin(), entries_.end(), [&](const auto& each) { return each.first == name; });
  }

  std::vector<std::string> subinterfaces_of(const std::string& name) const {
    std::vector<std::string> names;
    for (const auto& [each, description] : entries_) {
      const InterfaceName split = split_interface_name(each);
      if (split.name == name && split.is_subinterface()) names.push_back(each);
    }
    return names;
  }

  const Entries& entries() const { return entries_; }

 private:
  Entries entries_;
};

// Names that sort among and around each other: dots, digits and what comes before a dot.
std::string made_up_name(std::mt19937& random) {
  static const std::vector<std::string> kNames{
      "Ethernet0/0/1", "Ethernet0/0/10", "Ethernet0/0/1-x", "Bundle-Ether1", "A", "A.", "A..1"};
  std::string name = kNames[random() % kNames.size()];
  if (random() % 4 != 0) name += "." + std::to_string(random() % 400);
  return name;
}

TEST(Running, HoldsWhatWasPutIntoItWhateverTheOrder) {
  for (unsigned seed = 1; seed <= 4; ++seed) {
    std::mt19937 random(seed);
    Running running;
    Model model;
    for (int step = 0; step < 60; ++step) {
      std::vector<std::string> names;
      std::map<std::string, std::string> changed;
      Entries written;
      const std::size_t count = random() % (step % 10 == 0 ? 900 : 6);
      for (std::size_t i = 0; i < count; ++i) {
        const std::string name = made_up_name(random);
        if (std::find(names.begin(), names.end(), name) != names.end()) continue;
        names.push_back(name);
        if (random() % 3 == 0) continue;
        const std::string description = "d" + std::to_string(random() % 1000);
        changed.emplace(name, description);
        written.emplace_back(name, description);
      }
      running.replace(names, running_of(written));
      model.replace(names, changed);
      ASSERT_EQ(entries_of(running), model.entries()) << "seed " << seed << ", step " << step;
      for (int i = 0; i < 5; ++i) {
        const std::string name = made_up_name(random);
        const auto held = model.find(name);
        const lyd_node* const found = running.entry(name);
        ASSERT_EQ(found != nullptr, held != model.entries().end()) << name << ", seed " << seed;
        if (found != nullptr) {
          ASSERT_EQ(entry_name(found), name);
        }
        const std::string interface(split_interface_name(name).name);
        ASSERT_EQ(running.subinterfaces_of(interface), model.subinterfaces_of(interface)) << interface;
        const std::string some = running.a_subinterface_of(interface);
        const std::vector<std::string> all = model.subinterfaces_of(interface);
        ASSERT_EQ(some.empty(), all.empty()) << interface;
        if (!all.empty()) {
          ASSERT_NE(std::find(all.begin(), all.end(), some), all.end()) << some;
        }
      }
    }
  }
}

// What is printed an entry at a time is what the whole prints as.
TEST(Running, PrintsAsTheWholeDoes) {
  const std::vector<Entries> devices = {
      {},
      {{"A", "one"}},
      {{"B.1", "two\nlines"}, {"A", "&lt;data>"}, {"B", "}\n]"}},
  };
  for (const Entries& device : devices) {
    const Running running = running_of(device);
    for (const Format format : {Format::xml, Format::json}) {
      EXPECT_EQ(running.print(compact_models().get(), format), running.whole().print_document(format));
    }
  }
}

// A version that others came after stays what it was, and what they left alone is there once.
TEST(EntrySet, SharesWhatAChangeLeavesAlone) {
  std::vector<PlacedEntry> entries;
  for (int i = 0; i < 1000; ++i) {
    const Running one = running_of({{"E" + std::to_string(i), "x"}});
    entries.push_back({std::make_shared<const Entry>(one.whole()), static_cast<std::uint64_t>(i)});
  }
  const EntrySet before(entries);
  const SharedEntry fresh = std::make_shared<const Entry>(running_of({{"E500", "y"}}).whole());
  const EntrySet after = before.with({{"E500", fresh, 500}, {"E7", nullptr}});
  EXPECT_EQ(before.in_order().size(), 1000u);
  EXPECT_EQ(after.in_order().size(), 999u);
  EXPECT_NE(before.find("E7"), nullptr);
  EXPECT_EQ(after.find("E7"), nullptr);
  EXPECT_EQ(after.find("E500")->entry, fresh);
  for (const PlacedEntry& each : after.in_order()) {
    const bool shared = each.entry == before.find(each.name())->entry;
    EXPECT_EQ(shared, each.name() != "E500") << each.name();
  }
}

}  // namespace
}  // namespace yfw
