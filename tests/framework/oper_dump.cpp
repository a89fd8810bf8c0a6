// Operational dumps made from a seed, in both formats.
#include "framework/oper_dump.h"

#include <fmt/format.h>

#include <algorithm>

#include "property/model/random.h"

namespace yfw::test {
namespace {

using property::Random;

class Generator {
 public:
  explicit Generator(std::uint64_t seed) : random_(seed) {}

  OperDump dump() {
    OperDump dump;
    for (std::size_t i = random_.below(4); i > 0; --i) dump.trunks.push_back(trunk());
    for (std::size_t i = random_.below(7); i > 0; --i) dump.interfaces.push_back(interface());
    return dump;
  }

 private:
  // Mostly there and sensible, sometimes neither.
  Text id() {
    if (random_.chance(3)) return std::nullopt;
    static const std::vector<std::string> strange{"0", "4094", "4095", "70000", "4294967296", "many"};
    if (random_.chance(5)) return random_.pick(strange);
    return std::to_string(random_.between(1, 4094));
  }

  Text word(const std::vector<std::string>& usual) {
    if (random_.chance(3)) return std::nullopt;
    return random_.chance(4) ? "strange" : random_.pick(usual);
  }

  Text interface_name() {
    static const std::vector<std::string> parents{"Ethernet0/0/1", "Ethernet0/0/9", "Bundle-Ether5"};
    static const std::vector<std::string> indexes{".100", ".200", ".300", ".1", ".4294967295"};
    static const std::vector<std::string> strange{"", ".", ".100.200", ".x", ".4294967296"};
    if (random_.chance(2)) return std::nullopt;
    if (random_.chance(2)) return ".100";
    return random_.pick(parents) + random_.pick(random_.chance(15) ? strange : indexes);
  }

  Text trunk_name() {
    static const std::vector<std::string> names{"Ethernet0/0/1",   "Ethernet0/0/6",   "Bundle-Ether5",
                                                "Bundle-Ether5.9", "Ethernet0/0/6.1", "MyBundle-Ether1"};
    if (random_.chance(3)) return std::nullopt;
    return random_.pick(names);
  }

  std::vector<OperRange> ranges(std::size_t count) {
    std::vector<OperRange> made;
    for (std::size_t i = 0; i < count; ++i) {
      const Text low = id();
      made.push_back({low, random_.chance(50) ? low : id()});
    }
    return made;
  }

  OperTag tag(const std::string& usual_ethertype) {
    static const std::vector<std::size_t> counts{0, 1, 1, 1, 1, 2, 3, 5, 11};
    const std::size_t count = random_.pick(counts);
    // The device's own count need not be that of the ranges that it lists.
    const std::string said = std::to_string(random_.chance(8) ? random_.below(4) : count);
    return {random_.chance(8) ? word({"dot1q", "dot1ad"}) : usual_ethertype,
            random_.chance(3) ? std::nullopt : Text(said), ranges(count)};
  }

  OperTrunk trunk() {
    OperTrunk made;
    made.name = trunk_name();
    if (random_.chance(40)) made.native_vlan = id();
    made.mode = word({"access-port", "trunk-port", "trunk-port"});
    if (random_.chance(60)) made.access_vlan = id();
    if (random_.chance(80)) made.tags.push_back(tag("dot1q"));
    if (!made.tags.empty() && random_.chance(10)) made.tags.push_back(tag("dot1q"));
    return made;
  }

  OperInterface interface() {
    OperInterface made;
    made.name = interface_name();
    made.encapsulation = word({"dot1q", "dot1ad-dot1q", "service-instance", "service-instance", "service-instance"});
    if (random_.chance(60)) made.tag = id();
    if (random_.chance(60)) made.outer_tag = id();
    if (random_.chance(60)) made.second_tag = id();
    static const std::vector<std::size_t> numbers{0, 1, 1, 1, 2, 2, 2, 2, 3};
    const std::size_t tags = random_.pick(numbers);
    for (std::size_t i = 0; i < tags; ++i) made.tags.push_back(tag(tags > 1 && i == 0 ? "dot1ad" : "dot1q"));
    keep_to_eleven(made.tags);
    if (random_.chance(90)) made.tags_popped = std::to_string(random_.below(random_.chance(10) ? 4 : 2));
    for (std::size_t i = random_.below(random_.chance(10) ? 4 : 2); i > 0; --i) {
      made.pushes.push_back({id(), word({"dot1q", "dot1ad"})});
    }
    return made;
  }

  // No device lists more ids for both tags together.
  static void keep_to_eleven(std::vector<OperTag>& tags) {
    if (tags.size() != 2 || tags[0].ranges.size() + tags[1].ranges.size() <= 12) return;
    tags[1].ranges.resize(std::min<std::size_t>(1, tags[1].ranges.size()));
  }

  Random random_;
};

// Writes elements or members; what is not there is not written.
class Writer {
 public:
  explicit Writer(bool json) : json_(json) {}

  static bool is_number(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  }

  std::string text(const char* name, const Text& value) const {
    if (!value) return "";
    return json_ ? fmt::format(R"("{}":"{}",)", name, *value) : fmt::format("<{0}>{1}</{0}>", name, *value);
  }
  std::string number(const char* name, const Text& value) const {
    if (json_ && value && is_number(*value)) return fmt::format(R"("{}":{},)", name, *value);
    return text(name, value);
  }
  std::string container(const char* name, const std::string& inside) const {
    return json_ ? fmt::format(R"("{}":{{{}}},)", name, without_comma(inside))
                 : fmt::format("<{0}>{1}</{0}>", name, inside);
  }
  std::string list(const char* name, const std::vector<std::string>& entries) const {
    std::string all;
    for (const std::string& entry : entries) {
      all += json_ ? fmt::format("{{{}}},", without_comma(entry)) : container(name, entry);
    }
    if (!json_) return all;
    return entries.empty() ? "" : fmt::format(R"("{}":[{}],)", name, without_comma(all));
  }

 private:
  static std::string without_comma(const std::string& inside) {
    return inside.empty() ? inside : inside.substr(0, inside.size() - (inside.back() == ',' ? 1 : 0));
  }
  bool json_;
};

template <typename Entry, typename Write>
std::vector<std::string> each(const std::vector<Entry>& entries, Write write) {
  std::vector<std::string> texts;
  std::transform(entries.begin(), entries.end(), std::back_inserter(texts), write);
  return texts;
}

std::string tags_of(const Writer& out, const std::vector<OperTag>& tags, bool counted) {
  return out.list("tags-to-match", each(tags, [&out, counted](const OperTag& tag) {
                    return out.text("ethertype", tag.ethertype) +
                           (counted ? out.number("number-of-ranges", tag.number_of_ranges) : "") +
                           out.list("vlan-range", each(tag.ranges, [&out](const OperRange& range) {
                                      return out.number("vlan-id-low", range.low) +
                                             out.number("vlan-id-high", range.high);
                                    }));
                  }));
}

std::string trunk_of(const Writer& out, const OperTrunk& trunk) {
  return out.text("interface", trunk.name) +
         out.container("layer3-sub-interfaces", out.number("native-vlan", trunk.native_vlan)) +
         out.container("vlan-switched", out.text("mode", trunk.mode) + out.number("access-vlan", trunk.access_vlan) +
                                            out.container("trunk-vlan-ranges", tags_of(out, trunk.tags, false)));
}

std::string interface_of(const Writer& out, const OperInterface& interface) {
  return out.text("interface", interface.name) +
         out.container(
             "encapsulation-details",
             out.text("vlan-encapsulation", interface.encapsulation) + out.number("tag", interface.tag) +
                 out.container("dot1ad-dot1q-stack", out.number("outer-tag", interface.outer_tag) +
                                                         out.number("second-tag", interface.second_tag)) +
                 out.container("service-instance-details",
                               tags_of(out, interface.tags, true) + out.number("tags-popped", interface.tags_popped) +
                                   out.list("pushe", each(interface.pushes, [&out](const OperPush& push) {
                                              return out.number("vlan-id", push.vlan_id) +
                                                     out.text("ethertype", push.ethertype);
                                            }))));
}

std::string nodes_of(const Writer& out, const OperDump& dump) {
  return out.container(
      "nodes",
      out.list("node", {out.text("node-id", "0/0/CPU0") +
                        out.container("trunks", out.list("trunk", each(dump.trunks,
                                                                       [&out](const OperTrunk& trunk) {
                                                                         return trunk_of(out, trunk);
                                                                       }))) +
                        out.container("interfaces", out.list("interface", each(dump.interfaces,
                                                                               [&out](const OperInterface& interface) {
                                                                                 return interface_of(out, interface);
                                                                               })))}));
}

}  // namespace

OperDump generate_dump(std::uint64_t seed) {
  return Generator(seed).dump();
}

std::string xml_of(const OperDump& dump) {
  return fmt::format("<vlan xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-oper\">{}</vlan>",
                     nodes_of(Writer(false), dump));
}

std::string json_of(const OperDump& dump) {
  std::string nodes = nodes_of(Writer(true), dump);
  nodes.pop_back();
  return fmt::format(R"({{"Vexnet-OS-l2-eth-infra-oper:vlan":{{{}}}}})", nodes);
}

}  // namespace yfw::test
