// Words for VLAN settings, in OpenConfig and natively.
#include "yfw-host/words.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include "framework/tree/nodes.h"
#include "yfw-host/host.h"

namespace yfw {

namespace {

// Values of a leaf or leaf-list, joined; identities go without their module. Empty when there is none.
std::string value(const lyd_node* parent, std::string_view name) {
  std::string text;
  const lyd_node* node = nullptr;
  LY_LIST_FOR(parent == nullptr ? nullptr : lyd_child(parent), node) {
    if (node->schema == nullptr || name != node->schema->name) continue;
    const std::string_view whole = lyd_get_value(node);
    if (!text.empty()) text += ',';
    text += whole.substr(whole.find(':') + 1);
  }
  return text;
}

struct MatchForm {
  const char* container;
  const char* words;  // leaves of the form in braces
};

constexpr std::array kMatchForms{
    MatchForm{"single-tagged", "dot1q {vlan-id}"},
    MatchForm{"single-tagged-list", "list {vlan-ids}"},
    MatchForm{"single-tagged-range", "dot1q {low-vlan-id}..{high-vlan-id}"},
    MatchForm{"double-tagged", "dot1ad {outer-vlan-id} / dot1q {inner-vlan-id}"},
    MatchForm{"double-tagged-inner-list", "dot1ad {outer-vlan-id} / list {inner-vlan-ids}"},
    MatchForm{"double-tagged-outer-list", "list {outer-vlan-ids} / dot1q {inner-vlan-id}"},
    MatchForm{"double-tagged-inner-range", "dot1ad {outer-vlan-id} / dot1q {inner-low-vlan-id}..{inner-high-vlan-id}"},
    MatchForm{"double-tagged-outer-range", "dot1ad {outer-low-vlan-id}..{outer-high-vlan-id} / dot1q {inner-vlan-id}"},
};

// The words with values in them, "?" for a leaf that is not there; empty when no leaf of the form is.
std::string filled(std::string_view words, const lyd_node* leaves) {
  if (leaves == nullptr || lyd_child(leaves) == nullptr) return "";
  std::string text;
  while (!words.empty()) {
    const std::size_t open = words.find('{');
    text += words.substr(0, open);
    if (open == std::string_view::npos) break;
    const std::size_t close = words.find('}', open);
    const std::string found = value(leaves, words.substr(open + 1, close - open - 1));
    text += found.empty() ? "?" : found;
    words.remove_prefix(close + 1);
  }
  return text;
}

void add(std::string& text, std::string_view separator, std::string_view part) {
  if (part.empty()) return;
  if (!text.empty()) text += separator;
  text += part;
}

std::string lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char letter) { return std::tolower(letter); });
  return text;
}

std::string ethertype(const std::string& tpid) {
  if (tpid == "TPID_0X8100") return "dot1q";
  if (tpid == "TPID_0X88A8") return "dot1ad";
  return lower(tpid.substr(tpid.find('_') + 1));
}

const lyd_node* child(const lyd_node* parent, std::string_view name) {
  return parent == nullptr ? nullptr : child_named(parent, name);
}

// The ids of one tag of an encapsulation: a low id, a high one where it is a range, and the others of a list.
std::string native_ids(const lyd_node* encapsulation, const char* low, const char* high, bool with_others) {
  constexpr std::string_view kList = "4097";
  std::string text = value(encapsulation, low);
  const std::string end = value(encapsulation, high);
  if (!end.empty() && end != kList) text += fmt::format("{}-{}", text.empty() ? "?" : "", end);
  if (!with_others) return text;
  const lyd_node* leaf = nullptr;
  LY_LIST_FOR(lyd_child(encapsulation), leaf) {
    if (std::string_view(leaf->schema->name).starts_with("additional-")) add(text, ",", lyd_get_value(leaf));
  }
  return text;
}

std::string tag_type(const lyd_node* encapsulation, const char* leaf) {
  const std::string type = value(encapsulation, leaf);
  constexpr std::string_view kPrefix = "match-";
  return type.starts_with(kPrefix) ? type.substr(kPrefix.size()) : type;
}

std::string encapsulation_words(const lyd_node* encapsulation) {
  const std::string outer_type = tag_type(encapsulation, "outer-tag-type");
  const std::string inner_type = tag_type(encapsulation, "inner-tag-type");
  const bool has_inner = child(encapsulation, "inner-range1-low") != nullptr ||
                         child(encapsulation, "inner-range1-high") != nullptr || !inner_type.empty();
  const bool outer_list = !has_inner || value(encapsulation, "outer-range1-high") == "4097";
  std::string outer = native_ids(encapsulation, "outer-range1-low", "outer-range1-high", outer_list);
  if (!has_inner && outer_type == "dot1q" && !outer.empty()) return outer;
  std::string text = outer_type;
  add(text, " ", outer);
  if (!has_inner) return text;
  if (text.empty()) text.assign(1, '?');
  add(text, " / ", inner_type.empty() ? "?" : inner_type);
  add(text, " ", native_ids(encapsulation, "inner-range1-low", "inner-range1-high", !outer_list));
  return text;
}

// Each leaf below a container with its value.
void collect_words(const lyd_node* container, std::string& text) {
  const lyd_node* node = nullptr;
  LY_LIST_FOR(lyd_child(container), node) {
    if ((node->schema->nodetype & LYD_NODE_TERM) == 0) {
      collect_words(node, text);
      continue;
    }
    add(text, ", ", node->schema->name);
    add(text, " ", lyd_get_value(node));
  }
}

const lyd_node* switched_of(const lyd_node* interface) {
  const lyd_node* const ethernet = child(child(interface, "ethernet"), "switched-vlan");
  return ethernet != nullptr ? ethernet : child(child(interface, "aggregation"), "switched-vlan");
}

}  // namespace

std::string match_words(const lyd_node* match, const char* side) {
  std::string text;
  for (const MatchForm& form : kMatchForms) {
    add(text, "; ", filled(form.words, child(child(match, form.container), side)));
  }
  return text;
}

std::string rewrite_words(const lyd_node* ingress_mapping, const char* side) {
  const lyd_node* const leaves = child(ingress_mapping, side);
  std::string text = lower(value(leaves, "vlan-stack-action"));
  add(text, " ", ethertype(value(leaves, "tpid")));
  add(text, " ", value(leaves, "vlan-id"));
  return text;
}

std::string switched_words(const lyd_node* switched_vlan, const char* side) {
  const lyd_node* const leaves = child(switched_vlan, side);
  std::string text = lower(value(leaves, "interface-mode"));
  add(text, " ", value(leaves, "access-vlan"));
  add(text, " ", value(leaves, "trunk-vlans"));
  const std::string native = value(leaves, "native-vlan");
  if (!native.empty()) add(text, " ", fmt::format("native {}", native));
  return text;
}

std::string subinterface_words(const lyd_node* subinterface, const char* side) {
  const lyd_node* const vlan = child(subinterface, "vlan");
  std::string text = filled("vlan {vlan-id}", child(vlan, side));
  add(text, "; ", match_words(child(vlan, "match"), side));
  add(text, "; ", rewrite_words(child(vlan, "ingress-mapping"), side));
  return text;
}

std::string interface_words(const lyd_node* interface, const char* side) {
  std::string text = switched_words(child(child(interface, "ethernet"), "switched-vlan"), side);
  add(text, "; ", switched_words(child(child(interface, "aggregation"), "switched-vlan"), side));
  add(text, "; ", filled("routed {vlan}", child(child(interface, "routed-vlan"), side)));
  return text;
}

std::string native_words(const lyd_node* container) {
  std::string text;
  if (named(container, "encapsulation")) text = encapsulation_words(container);
  // No words of its own.
  if (text.empty()) collect_words(container, text);
  return text;
}

std::string reading_words(const lyd_node* reading, const char* native_container) {
  constexpr char kSide[] = "config";
  const std::string_view name = native_container;
  const lyd_node* const vlan = child(reading, "vlan");
  std::string words;
  if (name == "encapsulation" || name == "vlan-identifier") words = match_words(child(vlan, "match"), kSide);
  if (name == "rewrite") words = rewrite_words(child(vlan, "ingress-mapping"), kSide);
  if (name == "native-vlan-identifier" || name == "vlan-switched") {
    words = switched_words(switched_of(reading), kSide);
  }
  return words.starts_with("list ") ? fmt::format("the {}", words) : words;
}

namespace {

// The containers of an entry that are about VLANs.
constexpr std::array<std::string_view, 4> kVlanContainers{"vlan-sub-configuration", "ethernet-service", "ethernet-bng",
                                                          "vlan-trunk-configuration"};

bool is_about_vlans(const std::string& path) {
  return std::any_of(kVlanContainers.begin(), kVlanContainers.end(), [&path](std::string_view container) {
    return path.find(fmt::format(":{}/", container)) != std::string::npos;
  });
}

}  // namespace

std::string unsaid_words(const std::vector<Unsaid>& unsaid) {
  std::string text;
  std::string last;
  for (const Unsaid& each : unsaid) {
    if (!is_about_vlans(each.path)) continue;
    const std::string leaf = leaf_name(each.path);
    const std::string container = leaf_name(std::string_view(each.path).substr(0, each.path.rfind('/')));
    // The rewrite-type of a rewrite is the rewrite.
    std::string words = leaf == container + "-type" ? "" : leaf;
    add(words, " ", each.value);
    if (container == last) {
      add(text, ", ", words);
    } else {
      add(text, "; ", fmt::format("{} {}", container, words));
    }
    last = container;
  }
  return text;
}

}  // namespace yfw
