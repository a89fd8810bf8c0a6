// A list of shapes; what is said of each is what a read of it tells.
#include "mapping/document/unsaid_shapes.h"

#include <string_view>

#include "mapping/document/native_model.h"
#include "mapping/document/samples.h"
#include "mapping/document/text.h"
#include "property/model/observe.h"

namespace mapping {

namespace {

const Place kPort{"Ethernet0/0/1"};
const Place kL2{"Ethernet0/0/1.100", true};
const Place kL3{"Ethernet0/0/1.100"};

struct Shape {
  const char* name;
  Place place;
  Entry native;
};

#define ENCAPSULATION "ethernet-service/encapsulation/"
#define REWRITE "ethernet-service/rewrite/"
#define ROUTED "vlan-sub-configuration/vlan-identifier/"
#define NATIVE "vlan-trunk-configuration/native-vlan-identifier/"
#define SWITCHED "vlan-trunk-configuration/vlan-switched/"

Entry rewrite(const char* type) {
  return {
      {REWRITE "rewrite-type", type}, {REWRITE "outer-tag-type", "match-dot1q"}, {REWRITE "outer-tag-value", "300"}};
}

Entry single_tag(Entry ids) {
  ids[ENCAPSULATION "outer-tag-type"] = "match-dot1q";
  return ids;
}

Entry double_tag(Entry ids) {
  ids[ENCAPSULATION "outer-tag-type"] = "match-dot1ad";
  ids[ENCAPSULATION "inner-tag-type"] = "match-dot1q";
  return ids;
}

Entry trunk(Entry leaves) {
  leaves[SWITCHED "mode"] = "trunk";
  return leaves;
}

std::vector<Shape> shapes() {
  const Entry one_tag = single_tag({{ENCAPSULATION "outer-range1-low", "10"}});
  const Entry list = single_tag({{ENCAPSULATION "outer-range1-low", "10"},
                                 {ENCAPSULATION "outer-range1-high", "4097"},
                                 {ENCAPSULATION "additional-range1-low", "30"}});
  const Entry routed{{ROUTED "vlan-type", "vlan-type-dot1q"}, {ROUTED "first-tag", "10"}};
  Entry both = one_tag;
  both.insert(routed.begin(), routed.end());
  const Entry all_vlans = trunk({{SWITCHED "trunk-tag-type", "vlan-type-dot1q"}, {SWITCHED "trunk-vla-ns", "1-4094"}});
  Entry native_dot1ad = all_vlans;
  native_dot1ad.insert({{NATIVE "vlan-type", "vlan-type-dot1ad"}, {NATIVE "vlan-identifier", "5"}});
  Entry access_of_trunk = all_vlans;
  access_of_trunk[SWITCHED "access-vlan"] = "10";
  return {
      {"no tag", kL2, {{ENCAPSULATION "outer-tag-type", "match-untagged"}}},
      {"one 802.1ad tag",
       kL2,
       {{ENCAPSULATION "outer-tag-type", "match-dot1ad"}, {ENCAPSULATION "outer-range1-low", "10"}}},
      {"one 802.1ad tag, routed", kL3, {{ROUTED "vlan-type", "vlan-type-dot1ad"}, {ROUTED "first-tag", "10"}}},
      {"two 802.1Q tags", kL2,
       single_tag({{ENCAPSULATION "outer-range1-low", "10"},
                   {ENCAPSULATION "inner-tag-type", "match-dot1q"},
                   {ENCAPSULATION "inner-range1-low", "20"}})},
      {"10-20 and 30", kL2,
       single_tag({{ENCAPSULATION "outer-range1-low", "10"},
                   {ENCAPSULATION "outer-range1-high", "20"},
                   {ENCAPSULATION "additional-range1-low", "30"}})},
      {"a list of one id", kL2,
       single_tag({{ENCAPSULATION "outer-range1-low", "10"}, {ENCAPSULATION "outer-range1-high", "4097"}})},
      {"a list with a gap", kL2,
       single_tag({{ENCAPSULATION "outer-range1-low", "10"},
                   {ENCAPSULATION "outer-range1-high", "4097"},
                   {ENCAPSULATION "additional-range1-low", "30"},
                   {ENCAPSULATION "additional-range3-low", "50"}})},
      {"a list without the mark of one", kL2,
       single_tag({{ENCAPSULATION "outer-range1-low", "10"}, {ENCAPSULATION "additional-range1-low", "30"}})},
      {"a list on L3", kL3, list},
      {"a range upside down", kL2,
       single_tag({{ENCAPSULATION "outer-range1-low", "20"}, {ENCAPSULATION "outer-range1-high", "10"}})},
      {"a range without its low end", kL2, single_tag({{ENCAPSULATION "outer-range1-high", "20"}})},
      {"a range without its tag type",
       kL2,
       {{ENCAPSULATION "outer-range1-low", "10"}, {ENCAPSULATION "outer-range1-high", "20"}}},
      {"an inner range without its low end", kL2,
       double_tag({{ENCAPSULATION "outer-range1-low", "10"}, {ENCAPSULATION "inner-range1-high", "20"}})},
      {"ranges of both tags", kL2,
       double_tag({{ENCAPSULATION "outer-range1-low", "10"},
                   {ENCAPSULATION "outer-range1-high", "20"},
                   {ENCAPSULATION "inner-range1-low", "30"},
                   {ENCAPSULATION "inner-range1-high", "40"}})},
      {"an inner list beside an outer range", kL2,
       double_tag({{ENCAPSULATION "outer-range1-low", "10"},
                   {ENCAPSULATION "outer-range1-high", "20"},
                   {ENCAPSULATION "inner-range1-low", "30"},
                   {ENCAPSULATION "additional-range1-low", "40"}})},
      {"an encapsulation on L3", kL3, one_tag},
      {"a routed tag on L2", kL2, routed},
      {"a routed tag beside an encapsulation, L2", kL2, both},
      {"a routed tag beside an encapsulation, L3", kL3, both},
      {"two tags off", kL2, {{REWRITE "rewrite-type", "pop2"}}},
      {"two tags on", kL2, rewrite("push2")},
      {"two tags for one", kL2, rewrite("translate1to2")},
      {"one tag for two", kL2, rewrite("translate2to1")},
      {"two tags for two", kL2, rewrite("translate2to2")},
      {"one tag off, and a tag", kL2, rewrite("pop1")},
      {"a tag and no action", kL2, {{REWRITE "outer-tag-type", "match-dot1q"}, {REWRITE "outer-tag-value", "300"}}},
      {"mode tunnel", kPort, {{SWITCHED "mode", "tunnel"}, {SWITCHED "access-vlan", "10"}}},
      {"a trunk of 802.1ad tags", kPort,
       trunk({{SWITCHED "trunk-tag-type", "vlan-type-dot1ad"}, {SWITCHED "trunk-vla-ns", "10-20"}})},
      {"a trunk without its VLANs", kPort, trunk({{SWITCHED "trunk-tag-type", "vlan-type-dot1q"}})},
      {"VLANs of a trunk in other words", kPort,
       trunk({{SWITCHED "trunk-tag-type", "vlan-type-dot1q"}, {SWITCHED "trunk-vla-ns", "10, 20 - 30"}})},
      {"VLANs of a trunk that are none", kPort,
       trunk({{SWITCHED "trunk-tag-type", "vlan-type-dot1q"}, {SWITCHED "trunk-vla-ns", "10,0,4095"}})},
      {"VLANs of a trunk upside down", kPort,
       trunk({{SWITCHED "trunk-tag-type", "vlan-type-dot1q"}, {SWITCHED "trunk-vla-ns", "30-20"}})},
      {"the VLAN of an access port on a trunk", kPort, access_of_trunk},
      {"a native VLAN of an access port",
       kPort,
       {{SWITCHED "mode", "access"},
        {SWITCHED "access-vlan", "10"},
        {NATIVE "vlan-type", "vlan-type-dot1q"},
        {NATIVE "vlan-identifier", "5"}}},
      {"an 802.1ad native VLAN", kPort, native_dot1ad},
      {"switched VLANs of a sub-interface", kL2, all_vlans},
  };
}

// The VLAN settings of what is read, by the container that holds `config` or `state`.
std::string reading_text(const yfw::Data& data, const Place& place) {
  std::vector<std::string> texts;
  for (const auto& [path, values] :
       property::part(property::observe_config(data), property::openconfig_path(place.name))) {
    if (values.empty() || path.starts_with("config/") || path.starts_with("state/")) continue;
    std::string text = path;
    for (const std::string_view above : {"vlan/match/", "vlan/", "ethernet/"}) {
      if (text.starts_with(above)) text.erase(0, above.size());
    }
    texts.push_back(setting(text, joined(values, ", ")));
  }
  return texts.empty() ? "nothing" : joined(texts, kNewLine);
}

// What is not said, of that many leaves.
std::string unsaid_text(const std::vector<std::string>& paths, std::size_t leaves) {
  if (paths.empty()) return "nothing";
  return paths.size() == leaves ? "all of it" : joined(codes(paths), ", ");
}

std::string misread_text(const std::vector<yfw::Misreading>& misread) {
  std::vector<std::string> texts;
  for (const yfw::Misreading& each : misread) {
    std::vector<std::string> makes;
    for (const std::string& path : each.makes) makes.push_back(shortened(path_in_entry(path)));
    texts.push_back(each.reads_as + ", which makes " + joined(codes(makes), ", "));
  }
  return joined(texts, kNewLine);
}

}  // namespace

std::string unsaid_shapes(Device& device) {
  std::string text = table_row({"", "natively", "is read as", "unsaid", "misread as"}) +
                     table_row({"---", "---", "---", "---", "---"});
  for (const Shape& shape : shapes()) {
    Entry entry = shape.native;
    if (shape.place.is_l2) entry["l2-transport"];
    const yfw::ReadResult result = device.result_of(native_document({{shape.place.name, entry}}));
    std::vector<std::string> unsaid;
    for (const yfw::Unsaid& each : result.unsaid) unsaid.push_back(shortened(path_in_entry(each.path)));
    text += table_row({shape.name, settings(shape.native), reading_text(result.data, shape.place),
                       unsaid_text(unsaid, shape.native.size()), misread_text(result.misread)});
  }
  return text;
}

std::string unsaid_state_shapes(Device& device) {
  std::string text = table_row({"", "natively", "is read as", "unsaid"}) + table_row({"---", "---", "---", "---"});
  for (const OddOperational& shape : odd_operational()) {
    const yfw::ReadResult result = device.result_of_state(shape.operational.document);
    std::vector<std::string> natively;
    for (const NativeValue& each : operational_values(shape.operational.document)) {
      natively.push_back(setting(shortened(each.path), each.value));
    }
    std::vector<std::string> unsaid;
    for (const yfw::Unsaid& each : result.unsaid) unsaid.push_back(shortened(path_in_operational(each.path)));
    text += table_row({shape.name, joined(natively, kNewLine), reading_text(result.data, {shape.place}),
                       unsaid_text(unsaid, natively.size())});
  }
  return text;
}

}  // namespace mapping
