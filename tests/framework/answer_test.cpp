// Answers as a whole and in parts: whatever stands where in a configuration, and whoever looks on.
#include "framework/read/answer.h"

#include <fmt/ranges.h>
#include <gtest/gtest.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "framework/datastore/select.h"
#include "models_of_tests.h"
#include "native_entries.h"

namespace yfw::test {
namespace {

constexpr std::uint64_t kDevices = 60;

// A native configuration in which the entries of an interface need not stand together.
struct MadeUp {
  std::vector<std::string> names;  // of entries, as they stand
  std::string text;

  std::vector<std::string> interfaces() const {
    std::vector<std::string> found;
    for (const std::string& each : names) {
      const std::string interface = each.substr(0, each.find('.'));
      if (std::find(found.begin(), found.end(), interface) == found.end()) found.push_back(interface);
    }
    return found;
  }
};

class Maker {
 public:
  explicit Maker(std::uint64_t seed) : random_(seed) {}

  std::size_t number_below(std::size_t limit) { return static_cast<std::size_t>(random_() % limit); }

  template <typename T>
  const T& one_of(const std::vector<T>& all) {
    return all[number_below(all.size())];
  }

  MadeUp device() {
    MadeUp made;
    for (const char* const port : {"Ethernet0/0/1", "Ethernet0/0/2", "Bundle-Ether7", "Ethernet0_0/2"}) {
      if (number_below(4) != 0) made.names.emplace_back(port);
      for (const char* const index : {"1", "20", "4000"}) {
        if (number_below(2) == 0) made.names.push_back(std::string(port) + "." + index);
      }
    }
    if (made.names.empty()) made.names.emplace_back("Ethernet0/0/1.20");
    std::shuffle(made.names.begin(), made.names.end(), random_);
    made.text = "<interface-configurations xmlns='http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg'>";
    for (const std::string& name : made.names) made.text += entry(name);
    made.text += "</interface-configurations>";
    return made;
  }

 private:
  std::string entry(const std::string& name) {
    const bool is_sub = name.find('.') != std::string::npos;
    std::string inside = elements({{"interface-name", name}});
    if (number_below(3) == 0) inside += elements({{"description", "to " + name}});
    if (number_below(4) == 0) inside += "<shutdown/>";
    if (!is_sub) {
      if (number_below(2) == 0) {
        const std::string id = std::to_string(1 + number_below(4000));
        inside += number_below(2) == 0 ? switched_port({{"mode", "access"}, {"access-vlan", id}})
                                       : switched_port({{"mode", "trunk"}, {"trunk-tag-type", "vlan-type-dot1q"}});
      }
      return wrapped(inside);
    }
    const std::string low = std::to_string(1 + number_below(1000));
    const std::string high = std::to_string(2000 + number_below(1000));
    const Leaves tagged{{"outer-tag-type", "match-dot1q"}, {"outer-range1-low", low}};
    Leaves ranged = tagged;
    ranged.emplace_back("outer-range1-high", high);
    Leaves unsaid = ranged;
    unsaid.emplace_back("additional-range1-low", high);
    switch (number_below(6)) {
      case 0:
        return wrapped(inside + layer() + encapsulation(tagged, {{"rewrite-type", "pop1"}}));
      case 1:
        return wrapped(inside + layer() + encapsulation(ranged, {{"rewrite-type", "pop2"}}));
      case 2:
        return wrapped(inside + layer() + encapsulation(unsaid));
      case 3:
        return wrapped(inside + vlan_identifier({{"vlan-type", "vlan-type-dot1q"}, {"first-tag", low}}));
      case 4:
        return wrapped(inside + layer() + encapsulation({{"outer-range1-low", low}}));
      default:
        return wrapped(inside);
    }
  }

  static std::string wrapped(const std::string& inside) {
    return "<interface-configuration>" + inside + "</interface-configuration>";
  }

  std::mt19937_64 random_;
};

Host host_of(const MadeUp& device, HostOptions options = {.yang_dir = OC_VLAN_SOURCE_DIR "/yang"}) {
  Host host(std::move(options));
  host.load_plugin(OC_VLAN_PLUGIN_FILE);
  host.set_running({device.text, Format::xml, "running"});
  return host;
}

std::string path_of_interface(const std::string& name) {
  return "/interfaces/interface[name='" + name + "']";
}

// What stands inside the outermost element of a document.
std::string inside_of(const std::string& document) {
  const std::size_t first = document.find('\n');
  const std::size_t last = document.rfind("</");
  return first == std::string::npos || last < first ? "" : document.substr(first + 1, last - first - 1);
}

std::multiset<std::string> told_of(const std::vector<Warning>& warnings) {
  std::multiset<std::string> all;
  for (const Warning& each : warnings) all.insert(each.path + ": " + each.message);
  return all;
}

std::vector<std::string> entries_of(const std::vector<Unsaid>& unsaid) {
  std::vector<std::string> entries;
  for (const Unsaid& each : unsaid) {
    if (entries.empty() || entries.back() != each.entry) entries.push_back(each.entry);
  }
  return entries;
}

TEST(Answer, OfAllIsThatOfEachInterfacePutTogether) {
  for (std::uint64_t seed = 1; seed <= kDevices; ++seed) {
    const MadeUp device = Maker(seed).device();
    Host host = host_of(device);
    const ReadResult all = host.read();
    std::string parts;
    std::multiset<std::string> warnings;
    for (const std::string& name : device.interfaces()) {
      const std::string path = path_of_interface(name);
      const ReadResult part = host.read({path, Format::xml, "path"});
      parts += inside_of(part.data.print(Format::xml));
      warnings.merge(told_of(part.warnings));
    }
    EXPECT_EQ(inside_of(all.data.print(Format::xml)), parts) << "seed " << seed << "\n" << device.text;
    EXPECT_EQ(told_of(all.warnings), warnings) << "seed " << seed << "\n" << device.text;
  }
}

TEST(Answer, TellsInTheOrderOfTheConfiguration) {
  std::size_t told_entries = 0;
  for (std::uint64_t seed = 1; seed <= kDevices; ++seed) {
    const MadeUp device = Maker(seed).device();
    Host host = host_of(device);
    const std::vector<std::string> entries = entries_of(host.read().unsaid);
    std::vector<std::string> expected;
    std::copy_if(device.names.begin(), device.names.end(), std::back_inserter(expected), [&](const std::string& name) {
      return std::find(entries.begin(), entries.end(), name) != entries.end();
    });
    EXPECT_EQ(entries, expected) << "seed " << seed << "\n" << device.text;
    told_entries += entries.size();
  }
  EXPECT_GT(told_entries, 0U);
}

// Paths to what is there, one of which may be all, or an interface without an entry of its own.
std::string made_up_path(Maker& maker, const MadeUp& device) {
  static const std::vector<std::string> forms{
      "/interfaces",
      "/interfaces/interface",
      "/interfaces/interface/config",
      "/interfaces/interface/config/name",
      "/interfaces/interface/config/description",
      "/interfaces/interface/subinterfaces/subinterface/vlan/match",
      "/interfaces/interface/subinterfaces/subinterface/config/index",
      "/interfaces/interface[name='NAME']",
      "/interfaces/interface[name='NAME']/config",
      "/interfaces/interface[name='NAME']/config/type",
      "/interfaces/interface[name='NAME']/subinterfaces",
      "/interfaces/interface[name='NAME']/subinterfaces/subinterface/config",
      "/interfaces/interface/subinterfaces/subinterface[index='INDEX']",
      "/interfaces/interface[name='NAME']/subinterfaces/subinterface[index='INDEX']",
      "/interfaces/interface[name='NAME']/subinterfaces/subinterface[index='INDEX']/config/index",
      "/interfaces/interface[name='NAME']/subinterfaces/subinterface[index='INDEX']/vlan",
      "/interfaces/interface[name='NAME']/ethernet/switched-vlan/config",
  };
  std::string path = maker.one_of(forms);
  const std::string& entry = maker.one_of(device.names);
  const std::size_t dot = entry.find('.');
  if (path.find("INDEX") != std::string::npos && dot == std::string::npos) return "/interfaces/interface";
  const auto put = [&path](const std::string& place, const std::string& value) {
    const std::size_t at = path.find(place);
    if (at != std::string::npos) path.replace(at, place.size(), value);
  };
  put("NAME", entry.substr(0, dot));
  if (dot != std::string::npos) put("INDEX", entry.substr(dot + 1));
  return path;
}

// Interfaces of which nothing but the key is selected are there or not by what else is asked of them.
void drop_bare_entries(Data& data) {
  lyd_node* interface = data.empty() ? nullptr : lyd_child(data.get());
  while (interface != nullptr) {
    lyd_node* const next = interface->next;
    const bool is_last = interface->prev == interface;
    if (lyd_child(interface)->next == nullptr) {
      if (is_last) {
        data.reset();
      } else {
        lyd_free_tree(interface);
      }
    }
    interface = next;
  }
}

// Each interface by itself: they stand in the order of what was read of each.
std::multiset<std::string> interfaces_in(const Data& data) {
  constexpr std::string_view kBegin = "\n  <interface>\n";
  std::multiset<std::string> interfaces;
  std::string text = inside_of(data.print(Format::xml));
  while (!text.empty()) {
    const std::size_t next = text.find(kBegin);
    interfaces.insert(text.substr(0, next == std::string::npos ? next : next + 1));
    text = next == std::string::npos ? "" : text.substr(next + 1);
  }
  return interfaces;
}

TEST(Answer, ToAFilterIsWhatItSelectsOfTheWholeOne) {
  for (std::uint64_t seed = 1; seed <= kDevices; ++seed) {
    Maker maker(seed);
    const MadeUp device = maker.device();
    Host host = host_of(device);
    for (int i = 0; i < 6; ++i) {
      std::vector<std::string> paths;
      for (std::size_t k = 1 + maker.number_below(3); k > 0; --k) paths.push_back(made_up_path(maker, device));
      const std::string filter = fmt::format("{}\n", fmt::join(paths, "\n"));
      Data selected = host.read().data;
      const Data criteria = paths_to_filter(const_cast<ly_ctx*>(LYD_CTX(selected.get())), paths);
      SubtreeFilter(criteria).retain(selected);
      ReadResult answered = host.read({filter, Format::xml, "paths"});
      drop_bare_entries(selected);
      drop_bare_entries(answered.data);
      EXPECT_EQ(interfaces_in(answered.data), interfaces_in(selected)) << "seed " << seed << "\n"
                                                                       << filter << device.text;
    }
  }
}

TEST(Answer, IsTheSameWithATrace) {
  for (std::uint64_t seed = 1; seed <= kDevices; ++seed) {
    Maker maker(seed);
    const MadeUp device = maker.device();
    std::size_t lines = 0;
    Host traced =
        host_of(device, {.yang_dir = OC_VLAN_SOURCE_DIR "/yang", .trace = [&lines](const auto&) { ++lines; }});
    Host host = host_of(device);
    const std::string filter = made_up_path(maker, device) + "\n";
    for (const std::string& each : {std::string(), filter}) {
      const ReadResult with = traced.read({each, Format::xml, "paths"});
      const ReadResult without = host.read({each, Format::xml, "paths"});
      EXPECT_EQ(with.data.print(Format::xml), without.data.print(Format::xml)) << "seed " << seed;
      EXPECT_EQ(told(with.warnings), told(without.warnings)) << "seed " << seed;
    }
    EXPECT_GT(lines, 0U);
  }
}

std::string on_card(const std::string& inside) {
  return fmt::format("<vlan xmlns='{}'><nodes><node><node-id>0/0/CPU0</node-id>{}</node></nodes></vlan>", kOperNs,
                     inside);
}

// State of interfaces of which some have entries, in any order, each with what its entry reads as.
TEST(Answer, WithStateIsThatOfEachInterfacePutTogether) {
  const auto tagged = [](const std::string& name, int id) {
    return fmt::format(
        "<interface><interface>{}</interface><encapsulation-details><vlan-encapsulation>dot1q</vlan-encapsulation>"
        "<tag>{}</tag></encapsulation-details></interface>",
        name, id);
  };
  const std::string dump = on_card("<interfaces>" + tagged("Ethernet9/0/1.7", 7) + tagged("Ethernet0/0/2.20", 20) +
                                   tagged("Ethernet0/0/1.1", 1) + tagged("Ethernet9/0/1.8", 8) + "</interfaces>");
  for (std::uint64_t seed = 1; seed <= kDevices; ++seed) {
    const MadeUp device = Maker(seed).device();
    Host host = host_of(device);
    std::vector<std::string> names = device.interfaces();
    for (const char* const name : {"Ethernet9/0/1", "Ethernet0/0/2", "Ethernet0/0/1"}) {
      if (std::find(names.begin(), names.end(), name) == names.end()) names.emplace_back(name);
    }
    std::string parts;
    for (const std::string& name : names) {
      const std::string path = path_of_interface(name);
      parts +=
          inside_of(host.read_state({dump, Format::xml, "dump"}, {path, Format::xml, "path"}).data.print(Format::xml));
    }
    const ReadResult all = host.read_state({dump, Format::xml, "dump"});
    EXPECT_EQ(inside_of(all.data.print(Format::xml)), parts) << "seed " << seed << "\n" << device.text;
  }
}

// A model that ties interfaces together is asked about all of them: none would be valid by itself.
TEST(Answer, IsWholeWhereAModelLooksAtOtherInterfaces) {
  const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / "answer_test_models";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "tied.yang") << "module tied { namespace 'urn:tied'; prefix t;"
                                         "  import openconfig-interfaces { prefix oc-if; }"
                                         "  deviation /oc-if:interfaces/oc-if:interface/oc-if:config {"
                                         "    deviate add { must 'count(/oc-if:interfaces/oc-if:interface) > 1'; } } }";
  const std::string entries =
      "<interface-configuration><interface-name>Ethernet0/0/1</interface-name>"
      "</interface-configuration><interface-configuration><interface-name>Ethernet0/0/2.3"
      "</interface-name></interface-configuration>";
  const auto device = [](const std::string& inside) {
    return MadeUp{{},
                  fmt::format("<interface-configurations xmlns='{}'>{}</interface-configurations>", kVexnetNs, inside)};
  };
  const HostOptions tied{.yang_dir = OC_VLAN_SOURCE_DIR "/yang", .models_dirs = {folder.string()}};
  const std::string free_answer = host_of(device(entries)).read().data.print(Format::xml);
  Host host = host_of(device(entries), tied);
  const ReadResult both = host.read();
  EXPECT_EQ(both.data.print(Format::xml), free_answer);
  EXPECT_EQ(told(both.warnings), "");
  Host alone = host_of(device(entries.substr(0, entries.find("<interface-configuration>", 1))), tied);
  EXPECT_NE(told(alone.read().warnings).find("not valid in OpenConfig"), std::string::npos);
}

}  // namespace
}  // namespace yfw::test
