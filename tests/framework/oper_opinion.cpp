// The second opinion on operational dumps: what state they tell, written down from the rules alone.
#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

#include "framework/oper_dump.h"

namespace yfw::test {
namespace {

std::optional<std::uint64_t> number_in(const std::string& text) {
  const bool digits = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (text.empty() || text.size() > 10 || !digits) return std::nullopt;
  const std::uint64_t number = std::stoull(text);
  return number <= UINT32_MAX ? std::optional(number) : std::nullopt;
}

bool is_vlan(const std::string& text) {
  const auto number = number_in(text);
  return number && *number >= 1 && *number <= 4094;
}

bool is_trunk_entry(const std::string& text) {
  const std::size_t dots = text.find("..");
  if (dots == std::string::npos) return is_vlan(text);
  return is_vlan(text.substr(0, dots)) && is_vlan(text.substr(dots + 2));
}

// What is said of one interface or sub-interface, before it is known whether OpenConfig can hold it.
struct Said {
  std::map<std::string, Text> leaves;  // the last one counts
  std::vector<std::pair<std::string, Text>> entries;
};

class Judge {
 public:
  Opinion opinion() && { return std::move(opinion_); }

  void trunks(const std::vector<OperTrunk>& trunks) {
    std::set<std::string> seen;
    for (const OperTrunk& trunk : trunks) {
      if (is_entry(trunk.name, seen)) file(*trunk.name, "", said_of(trunk));
    }
  }

  void interfaces(const std::vector<OperInterface>& interfaces) {
    std::set<std::string> seen;
    for (const OperInterface& interface : interfaces) {
      if (!is_entry(interface.name, seen)) continue;
      const Said said = said_of(interface);
      const std::size_t dot = interface.name->find('.');
      const bool sub = dot != std::string::npos && dot > 0 && dot + 1 < interface.name->size();
      if (!sub) {
        if (!said.leaves.empty() || !said.entries.empty()) opinion_.homeless = true;
        continue;
      }
      const std::string index = interface.name->substr(dot + 1);
      if (number_in(index)) {
        file(interface.name->substr(0, dot), index, said);
      } else {
        opinion_.warned = true;
      }
    }
  }

 private:
  // Dumps hold each entry once, by its key.
  bool is_entry(const Text& name, std::set<std::string>& seen) {
    const bool good = name && seen.insert(*name).second;
    if (!good) opinion_.warned = true;
    return good;
  }

  // A number as the dump can hold it.
  Text number(const Text& text) {
    if (text && !number_in(*text)) {
      opinion_.warned = true;
      return std::nullopt;
    }
    return text;
  }

  std::vector<OperRange> ranges(const OperTag& tag) {
    std::vector<OperRange> good;
    for (const OperRange& range : tag.ranges) good.push_back({number(range.low), number(range.high)});
    return good;
  }

  void file(const std::string& name, const std::string& index, const Said& said) {
    const auto keep = [&](const std::string& path, const Text& value, bool good) {
      const bool kept =
          good && opinion_.state.insert(fmt::format("{}|{}|{}={}", name, index, path, value.value_or(""))).second;
      if (!kept) opinion_.warned = true;
    };
    for (const auto& [path, value] : said.leaves) {
      const bool word = path.ends_with("-mode") || path.ends_with("-action") || path.ends_with("tpid");
      keep(path, value, value && (word || is_vlan(*value)));
    }
    for (const auto& [path, value] : said.entries) keep(path, value, value && is_trunk_entry(*value));
  }

  Said said_of(const OperTrunk& trunk) {
    Said said;
    const bool bundle = trunk.name->find("Bundle-Ether") != std::string::npos;
    const std::string place = bundle ? "aggregation|" : "ethernet|";
    const Text native = number(trunk.native_vlan);
    const Text access = number(trunk.access_vlan);
    if (native) said.leaves[place + "native-vlan"] = native;
    std::vector<std::vector<OperRange>> all;
    for (const OperTag& tag : trunk.tags) all.push_back(ranges(tag));
    if (trunk.mode == "access-port" && access) {
      said.leaves[place + "interface-mode"] = "ACCESS";
      said.leaves[place + "access-vlan"] = access;
    }
    if (trunk.mode != "trunk-port" || trunk.tags.empty() || trunk.tags[0].ethertype != "dot1q") return said;
    said.leaves[place + "interface-mode"] = "TRUNK";
    Text low;
    Text high;
    for (const OperRange& range : all[0]) {
      if (range.low) low = range.low;
      if (range.high) high = range.high;
      if (!low || !high) continue;
      const std::string text = *low == *high ? *low : *low + ".." + *high;
      said.entries.emplace_back(place + "trunk-vlans", text.substr(0, 19));
    }
    return said;
  }

  struct Tag {
    Text ethertype;
    std::uint64_t count;
    std::vector<OperRange> ranges;
    OperRange first;
  };

  Said said_of(const OperInterface& interface) {
    Said said;
    const Text tag = number(interface.tag);
    const Text outer = number(interface.outer_tag);
    const Text second = number(interface.second_tag);
    std::vector<Tag> tags;
    for (const OperTag& each : interface.tags) {
      const Text count = number(each.number_of_ranges);
      Tag made{each.ethertype, count ? std::stoull(*count) : 0, ranges(each), {}};
      if (!made.ranges.empty()) made.first = made.ranges.front();
      tags.push_back(std::move(made));
    }
    std::vector<OperPush> pushes = interface.pushes;
    for (OperPush& push : pushes) push.vlan_id = number(push.vlan_id);
    if (interface.encapsulation == "dot1q" && tag) said.leaves["match/single-tagged|vlan-id"] = tag;
    if (interface.encapsulation == "dot1ad-dot1q") {
      if (outer) said.leaves["match/double-tagged|outer-vlan-id"] = outer;
      if (second) said.leaves["match/double-tagged|inner-vlan-id"] = second;
    }
    if (interface.encapsulation != "service-instance") return said;
    if (tags.size() == 1) one_tag(said, tags[0]);
    if (tags.size() == 2) two_tags(said, tags[0], tags[1]);
    rewrite(said, interface.tags_popped, pushes);
    return said;
  }

  // Two ends that are not there are not the same.
  static bool is_single(const OperRange& range) { return range.low && range.low == range.high; }

  static void one_tag(Said& said, const Tag& tag) {
    if (tag.ethertype != "dot1q") return;
    for (const OperRange& range : tag.ranges) {
      if (tag.count > 1) said.entries.emplace_back("match/single-tagged-list|vlan-ids", range.low);
      if (tag.count != 1) continue;
      if (is_single(range)) {
        said.leaves["match/single-tagged|vlan-id"] = range.low;
      } else {
        said.leaves["match/single-tagged-range|low-vlan-id"] = range.low;
        said.leaves["match/single-tagged-range|high-vlan-id"] = range.high;
      }
    }
  }

  static void two_tags(Said& said, const Tag& outer, const Tag& inner) {
    if (outer.ethertype != "dot1ad" || inner.ethertype != "dot1q") return;
    std::vector<Text> further;
    for (const Tag* const tag : {&outer, &inner}) {
      for (std::size_t i = 1; i < tag->ranges.size(); ++i) further.push_back(tag->ranges[i].low);
    }
    const auto list = [&said, &further](const char* path, const Text& first) {
      said.entries.emplace_back(path, first);
      for (const Text& id : further) said.entries.emplace_back(path, id);
    };
    if (outer.count > 1) {
      list("match/double-tagged-outer-list|outer-vlan-ids", outer.first.low);
      said.leaves["match/double-tagged-outer-list|inner-vlan-id"] = inner.first.low;
    } else if (inner.count > 1) {
      said.leaves["match/double-tagged-inner-list|outer-vlan-id"] = outer.first.low;
      list("match/double-tagged-inner-list|inner-vlan-ids", inner.first.low);
    } else if (!is_single(outer.first)) {
      said.leaves["match/double-tagged-outer-range|outer-low-vlan-id"] = outer.first.low;
      said.leaves["match/double-tagged-outer-range|outer-high-vlan-id"] = outer.first.high;
      said.leaves["match/double-tagged-outer-range|inner-vlan-id"] = inner.first.low;
    } else if (!is_single(inner.first)) {
      said.leaves["match/double-tagged-inner-range|outer-vlan-id"] = outer.first.low;
      said.leaves["match/double-tagged-inner-range|inner-low-vlan-id"] = inner.first.low;
      said.leaves["match/double-tagged-inner-range|inner-high-vlan-id"] = inner.first.high;
    } else {
      said.leaves["match/double-tagged|outer-vlan-id"] = outer.first.low;
      said.leaves["match/double-tagged|inner-vlan-id"] = inner.first.low;
    }
  }

  static void rewrite(Said& said, const Text& popped, const std::vector<OperPush>& pushes) {
    const bool pops = popped == "1";
    if (pushes.size() > 1 || (!pops && popped != "0") || (pushes.empty() && !pops)) return;
    const char* const action = pushes.empty() ? "POP" : (pops ? "SWAP" : "PUSH");
    said.leaves["ingress-mapping|vlan-stack-action"] = action;
    if (pushes.empty()) return;
    Text& tpid = said.leaves["ingress-mapping|tpid"];
    if (pushes[0].ethertype == "dot1ad") tpid = "TPID_0X88A8";
    if (pushes[0].ethertype == "dot1q") tpid = "TPID_0X8100";
    said.leaves["ingress-mapping|vlan-id"] = pushes[0].vlan_id;
  }

  Opinion opinion_;
};

}  // namespace

Opinion opinion_of(const OperDump& dump) {
  Judge judge;
  judge.trunks(dump.trunks);
  judge.interfaces(dump.interfaces);
  return std::move(judge).opinion();
}

}  // namespace yfw::test
