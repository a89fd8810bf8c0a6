// What the reading of native entries leaves unsaid, whatever they hold: found once more by writing readings back.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "property/model/native_models.h"
#include "property/model/observe.h"
#include "property/model/runner.h"
#include "property/model/shrink.h"
#include "property/model/told.h"
#include "property/model/writing_back.h"

namespace property {
namespace {

std::string joined(const std::set<std::string>& lines) {
  std::string text;
  for (const std::string& each : lines) text += each + "\n";
  return text;
}

std::string parent_of(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

// An entry by what a read tells of it and by what writing its reading back makes.
class Judged {
 public:
  Judged(const std::string& name, const Entry& entry, const Entry& written, const yfw::ReadResult& read)
      : name_(name), entry_(entry), written_(written), read_(read) {}

  // Empty when all is well.
  std::string fault() const {
    if (const std::string fault = differing("unsaid", unsaid(), told_unsaid()); !fault.empty()) return fault;
    if (const std::string fault = differing("made by writing back", made(), told_made()); !fault.empty()) return fault;
    for (const yfw::Unsaid& each : read_.unsaid) {
      if (each.entry == name_ && each.misread_as != misread_as(each)) {
        return each.path + " is in what reads as " + misread_as(each) + ", not as " + each.misread_as + "\n";
      }
    }
    return warning_fault();
  }

 private:
  static std::string differing(const char* what, const std::set<std::string>& should, const std::set<std::string>& is) {
    if (should == is) return {};
    return std::string(what) + "\n--- should be\n" + joined(should) + "--- is\n" + joined(is);
  }

  bool is_said(const std::string& leaf, const std::string& value) const {
    const auto found = written_.find(leaf);
    return found != written_.end() && found->second == value;
  }

  Entry unsaid_leaves() const {
    Entry leaves;
    for (const auto& [leaf, value] : entry_) {
      if (leaf != "l2-transport" && !is_said(leaf, value)) leaves.emplace(leaf, value);
    }
    return leaves;
  }

  std::set<std::string> unsaid() const {
    std::set<std::string> leaves;
    for (const auto& [leaf, value] : unsaid_leaves()) leaves.insert(leaf + " " + value);
    return leaves;
  }

  std::set<std::string> told_unsaid() const {
    std::set<std::string> leaves;
    for (const yfw::Unsaid& each : read_.unsaid) {
      if (each.entry != name_) continue;
      const std::string leaf = observe_native_path(name_, each.path) + " " + each.value;
      const bool stays = each.fate == yfw::Unsaid::Fate::stays;
      leaves.insert(leaf + (leaves.contains(leaf) ? " (twice)" : "") + (stays ? "" : " (goes)"));
    }
    return leaves;
  }

  std::set<std::string> made() const {
    std::set<std::string> leaves;
    for (const auto& [leaf, value] : written_) {
      const auto there = entry_.find(leaf);
      if (there == entry_.end() || there->second != value) leaves.insert(leaf);
    }
    return leaves;
  }

  std::set<std::string> told_made() const {
    std::set<std::string> leaves;
    for (const yfw::Misreading& each : read_.misread) {
      if (each.entry != name_) continue;
      for (const std::string& path : each.makes) {
        const std::string leaf = observe_native_path(name_, path);
        const bool elsewhere = parent_of(path) != each.path;
        leaves.insert(leaf + (leaves.contains(leaf) ? " (twice)" : "") + (elsewhere ? " in " + each.path : ""));
      }
    }
    return leaves;
  }

  std::string misread_as(const yfw::Unsaid& unsaid) const {
    for (const yfw::Misreading& each : read_.misread) {
      if (each.path == parent_of(unsaid.path)) return each.reads_as;
    }
    return {};
  }

  // One warning, that names every unsaid leaf with its value and says in words what is misread.
  std::string warning_fault() const {
    std::string tail;
    for (const yfw::Misreading& each : read_.misread) {
      if (each.entry != name_) continue;
      if (each.natively.empty()) return "no words for " + each.path;
      const std::string reads_as = each.reads_as.empty() ? "something else" : each.reads_as;
      tail += (tail.empty() ? "reads as " : "; reads as ") + reads_as + "; natively " + each.natively;
    }
    const std::vector<std::string> settings = settings_of(unsaid_leaves());
    std::vector<std::string> told;
    for (const yfw::Warning& each : read_.warnings) {
      if (each.unsaid && observe_native_entry(each.path) == name_) told.push_back(each.message);
    }
    const std::size_t wanted = settings.empty() && tail.empty() ? 0 : 1;
    if (told.size() != wanted) return std::to_string(told.size()) + " warnings instead of " + std::to_string(wanted);
    if (wanted == 0) return {};
    std::string text = told.front();
    if (!text.ends_with(tail)) return "not told: " + tail + "\nbut: " + text;
    text.resize(text.size() - tail.size());
    if (!tail.empty() && text.ends_with("; ")) text.resize(text.size() - 2);
    const bool right = settings.empty() ? text.empty() : lists(text, "OpenConfig does not say: ", settings);
    return right ? "" : "told differently: " + told.front();
  }

  const std::string& name_;
  const Entry& entry_;
  const Entry& written_;
  const yfw::ReadResult& read_;
};

class WhatReadingsSay : public testing::TestWithParam<Models> {
 protected:
  void SetUp() override {
    if (GetParam() == Models::published && published_modules().empty()) {
      GTEST_SKIP() << "no published modules in " << OC_VLAN_PUBLISHED_YANG;
    }
  }

  std::string fault_of(const Native& device) {
    yfw::Host& host = hosts_.get(false, false);
    const std::string document = to_document(device);
    host.set_running({.text = document, .name = "device"});
    const Native native = observe_native(host.running());
    const yfw::ReadResult read = host.read();
    for (const yfw::Unsaid& each : read.unsaid) {
      if (!native.contains(each.entry)) return "there is no " + each.entry;
    }
    for (const auto& [name, entry] : native) {
      const Entry written = write_back(host, name, entry);
      const std::string fault = Judged(name, entry, written, read).fault();
      if (!fault.empty()) return name + ": " + fault;
    }
    return {};
  }

 private:
  Hosts hosts_{GetParam()};
};

TEST_P(WhatReadingsSay, AndWhatTheyLeaveUnsaidIsAllThereIs) {
  const std::uint64_t only = number_from("OC_VLAN_SEED", 0);
  const std::uint64_t count = only != 0 ? 1 : sequences() / (GetParam() == Models::compact ? 4 : 40);
  std::set<std::string> met;
  for (std::uint64_t seed = only != 0 ? only : 1; count > 0 && seed < (only != 0 ? only : 1) + count; ++seed) {
    Random random(seed);
    const Native native = make_odd_entries(random);
    for (const auto& each : native) {
      for (const auto& leaf : each.second) met.insert(leaf.first);
    }
    const std::string fault = fault_of(native);
    if (fault.empty()) continue;
    const Sequence small =
        shrink({.start = native}, [this](const Sequence& each) { return !fault_of(each.start).empty(); });
    FAIL() << "seed " << seed << "\n" << to_text(small.start) << "\n" << fault_of(small.start);
  }
  constexpr std::uint64_t kEnoughForAll = 200;
  for (const std::string& leaf : native_leaves()) {
    EXPECT_TRUE(met.contains(leaf) || count < kEnoughForAll) << leaf << " was in no device";
  }
}

INSTANTIATE_TEST_SUITE_P(With, WhatReadingsSay, testing::Values(Models::compact, Models::published),
                         [](const testing::TestParamInfo<Models>& info) {
                           return info.param == Models::compact ? "CompactModules" : "PublishedModules";
                         });

}  // namespace
}  // namespace property
