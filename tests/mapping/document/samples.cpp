// Ids are as they come, but each is used once in a form, so that it can be told where it went.
#include "mapping/document/samples.h"

#include <fmt/format.h>

namespace mapping {

namespace {

const property::Values kNineIds{"101", "102", "103", "104", "105", "106", "107", "108", "109"};

// A leaf-list by its type only, of which one entry is of use, has a name in the singular.
bool is_list(const Leaf& leaf) {
  return leaf.name().ends_with("ids");
}

std::string leaf(const char* name, const std::string& value) {
  return fmt::format("<{0}>{1}</{0}>\n", name, value);
}

std::string list(const char* name, const std::string& content) {
  return fmt::format("<{0}>\n{1}</{0}>\n", name, content);
}

struct Range {
  const char* low;
  const char* high;
};
using Ranges = std::vector<Range>;
const Ranges kThreeIds{{"101", "101"}, {"102", "102"}, {"103", "103"}};

std::string tag(const char* ethertype, const Ranges& ranges, bool is_counted = true) {
  std::string text = leaf("ethertype", ethertype);
  if (is_counted) text += leaf("number-of-ranges", std::to_string(ranges.size()));
  for (const Range& range : ranges) {
    text += list("vlan-range", leaf("vlan-id-low", range.low) + leaf("vlan-id-high", range.high));
  }
  return list("tags-to-match", text);
}

std::string outer(const Ranges& ranges) {
  return tag("dot1ad", ranges);
}
std::string inner(const Ranges& ranges) {
  return tag("dot1q", ranges);
}
std::string pops(const char* count) {
  return leaf("tags-popped", count);
}
std::string push(const char* ethertype) {
  return list("pushe", leaf("vlan-id", "300") + leaf("ethertype", ethertype));
}

std::string of_node(const char* containers, const char* entries, const std::string& name, const std::string& content) {
  const std::string entry = list(entries, leaf("interface", name) + content);
  return "<vlan xmlns=\"http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-oper\">\n" +
         list("nodes", list("node", leaf("node-id", "0/0/CPU0") + list(containers, entry))) + "</vlan>\n";
}

Operational trunk(const std::string& name, const std::string& content) {
  return {"trunk", of_node("trunks", "trunk", name, content)};
}

Operational encapsulation(const std::string& name, const char* kind, const std::string& content) {
  const std::string details = list("encapsulation-details", leaf("vlan-encapsulation", kind) + content);
  return {"interface", of_node("interfaces", "interface", name, details)};
}

}  // namespace

bool is_sample_id(const std::string& value) {
  return value.size() == 3 && value >= "100" && value <= "399" &&
         value.find_first_not_of("0123456789") == std::string::npos;
}

std::vector<Sample> samples_of(const Leaf& leaf) {
  const std::string name = leaf.name();
  const std::string siblings = leaf.path.substr(0, leaf.path.rfind('/') + 1);
  if (name == "vlan-stack-action") return {{{"PUSH"}}, {{"POP"}}, {{"SWAP"}}};
  if (name == "interface-mode") return {{{"ACCESS"}}, {{"TRUNK"}}};
  if (name == "tpid") {
    return {{{"TPID_0X8100"}}, {{"TPID_0X88A8"}}, {{"TPID_0X9100"}}, {{"TPID_0X9200"}}, {{"TPID_ANY"}}};
  }
  if (name == "access-vlan") return {{{"100"}, {{siblings + "interface-mode", {"ACCESS"}}}}};
  if (name == "native-vlan") return {{{"100"}, {{siblings + "interface-mode", {"TRUNK"}}}}};
  if (name == "trunk-vlans") return {{{"100", "200..300"}, {{siblings + "interface-mode", {"TRUNK"}}}}};
  if (leaf.path == "vlan/config/vlan-id") return {{{"100"}}, {{"100.200"}}};
  if (!is_list(leaf)) return {{{"100"}}};
  property::Values one_more = kNineIds;
  one_more.emplace_back("110");
  return {{kNineIds}, {one_more, {}, "ten ids"}};
}

std::vector<Config> forms_of(const std::string& container) {
  const std::string config = container + "/config/";
  if (container == "vlan") return {{{config + "vlan-id", {"100"}}}, {{config + "vlan-id", {"100.200"}}}};
  if (container == "vlan/ingress-mapping") {
    return {
        {{config + "vlan-stack-action", {"PUSH"}}, {config + "vlan-id", {"100"}}, {config + "tpid", {"TPID_0X8100"}}},
        {{config + "vlan-stack-action", {"SWAP"}}, {config + "vlan-id", {"100"}}, {config + "tpid", {"TPID_0X88A8"}}},
        {{config + "vlan-stack-action", {"POP"}}}};
  }
  if (container.ends_with("switched-vlan")) {
    return {{{config + "interface-mode", {"ACCESS"}}, {config + "access-vlan", {"100"}}},
            {{config + "interface-mode", {"TRUNK"}},
             {config + "native-vlan", {"150"}},
             {config + "trunk-vlans", {"100", "200..300"}}}};
  }
  // A form of match: all of its leaves.
  Config form;
  unsigned id = 200;
  for (const Leaf& each : leaves()) {
    if (each.container() == container && each.branch() == "config")
      form[each.path] = is_list(each) ? kNineIds : property::Values{std::to_string(id++)};
  }
  return {form};
}

std::vector<Operational> operational_of_port(const std::string& name) {
  const std::string ranges = tag("dot1q", {{"100", "100"}, {"200", "300"}}, false);
  return {trunk(name, list("vlan-switched", leaf("mode", "access-port") + leaf("access-vlan", "100"))),
          trunk(name, list("vlan-switched", leaf("mode", "trunk-port") + list("trunk-vlan-ranges", ranges))),
          trunk(name, list("layer3-sub-interfaces", leaf("native-vlan", "150")))};
}

std::vector<Operational> operational_of_subinterface(const std::string& name) {
  std::vector<Operational> all{
      encapsulation(name, "dot1q", leaf("tag", "100")),
      encapsulation(name, "dot1ad-dot1q",
                    list("dot1ad-dot1q-stack", leaf("outer-tag", "100") + leaf("second-tag", "200")))};
  for (const std::string& details : {
           inner({{"100", "100"}}),
           inner(kThreeIds),
           inner({{"100", "200"}}),
           outer({{"100", "100"}}) + inner({{"200", "200"}}),
           outer({{"100", "100"}}) + inner(kThreeIds),
           outer(kThreeIds) + inner({{"200", "200"}}),
           outer({{"100", "100"}}) + inner({{"200", "300"}}),
           outer({{"100", "200"}}) + inner({{"300", "300"}}),
           pops("1"),
           pops("0") + push("dot1q"),
           pops("1") + push("dot1ad"),
       }) {
    all.push_back(encapsulation(name, "service-instance", list("service-instance-details", details)));
  }
  return all;
}

std::vector<OddOperational> odd_operational() {
  const std::string port = "Ethernet0/0/1";
  const std::string sub = "Ethernet0/0/1.100";
  const auto instance = [&sub](const std::string& details) {
    return encapsulation(sub, "service-instance", list("service-instance-details", details));
  };
  const auto switched = [&port](const char* mode, const std::string& content) {
    return trunk(port, list("vlan-switched", leaf("mode", mode) + content));
  };
  const auto ranges = [](const std::string& tags) { return list("trunk-vlan-ranges", tags); };
  return {
      {"another kind", sub, encapsulation(sub, "default", "")},
      {"a tag beside what the kind counts", sub,
       encapsulation(sub, "dot1q", leaf("tag", "100") + list("dot1ad-dot1q-stack", leaf("outer-tag", "200")))},
      {"a tag that is no id", sub, encapsulation(sub, "dot1q", leaf("tag", "4095"))},
      {"a tag of a main interface", port, encapsulation(port, "dot1q", leaf("tag", "100"))},
      {"one 802.1ad tag", sub, instance(outer({{"100", "100"}}))},
      {"two 802.1Q tags", sub, instance(inner({{"100", "100"}}) + inner({{"200", "200"}}))},
      {"a list with a range", sub, instance(inner({{"100", "110"}, {"200", "200"}}))},
      {"two tags off", sub, instance(pops("2"))},
      {"two tags on", sub, instance(pops("0") + push("dot1q") + push("dot1ad"))},
      {"another mode", port, switched("tunnel-port", leaf("access-vlan", "100"))},
      {"an access port without its VLAN", port, switched("access-port", "")},
      {"a trunk of 802.1ad tags", port, switched("trunk-port", ranges(tag("dot1ad", {{"100", "200"}}, false)))},
      {"a trunk of two tags", port,
       switched("trunk-port", ranges(tag("dot1q", {{"100", "200"}}, false) + tag("dot1q", {{"300", "300"}}, false)))},
      {"VLANs of a trunk that are none", port,
       switched("trunk-port", ranges(tag("dot1q", {{"100", "200"}, {"4095", "4096"}}, false)))},
  };
}

}  // namespace mapping
