// Parses the notation of test trees.
#include "recording/tree.h"

#include <array>
#include <cctype>
#include <stdexcept>
#include <utility>

namespace recording {

namespace {

constexpr std::array<std::pair<std::string_view, const char*>, 7> kNamespaces{{
    {"oc", YFW_OPENCONFIG_VLAN_NS},
    {"types", YFW_OPENCONFIG_VLAN_TYPES_NS},
    {"ocif", YFW_OPENCONFIG_INTERFACES_NS},
    {"eth", YFW_OPENCONFIG_IF_ETHERNET_NS},
    {"agg", YFW_OPENCONFIG_IF_AGGREGATE_NS},
    {"cfg", YFW_VEXNET_OS_L2_ETH_INFRA_CFG_NS},
    {"oper", YFW_VEXNET_OS_L2_ETH_INFRA_OPER_NS},
}};

constexpr std::array<std::string_view, 5> kOperations{"merge", "replace", "create", "delete", "remove"};

constexpr uint32_t kReplace = 1;

bool is_word(char c) {
  return std::isspace(static_cast<unsigned char>(c)) == 0 && c != '{' && c != '}' && c != '@' && c != '=' && c != ':';
}

}  // namespace

std::string namespace_of(std::string_view short_name) {
  for (const auto& [name, ns] : kNamespaces) {
    if (name == short_name) return ns;
  }
  return "urn:" + std::string(short_name);
}

std::string short_namespace(const char* ns) {
  if (ns == nullptr) return "-";
  for (const auto& [name, known] : kNamespaces) {
    if (std::string_view(ns) == known) return std::string(name);
  }
  return ns;
}

class TreeParser {
 public:
  TreeParser(Tree& tree, std::string_view text) : tree_(tree), text_(text) {}

  void parse() {
    tree_.root_ = node(Inherited{namespace_of("oc"), 0});
    if (peek() != '\0') fail("text after the root");
  }

 private:
  struct Inherited {
    std::string ns;
    uint32_t operation;
  };

  [[noreturn]] void fail(const std::string& why) const {
    throw std::invalid_argument("tree notation: " + why + " at \"" + std::string(text_.substr(position_)) + "\"");
  }

  char peek() {
    while (position_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[position_])) != 0) ++position_;
    return position_ < text_.size() ? text_[position_] : '\0';
  }

  bool take(char c) {
    if (peek() != c) return false;
    ++position_;
    return true;
  }

  std::string word() {
    peek();
    const std::size_t start = position_;
    while (position_ < text_.size() && is_word(text_[position_])) ++position_;
    if (start == position_) fail("a word is missing");
    return std::string(text_.substr(start, position_ - start));
  }

  std::string value() {
    if (position_ >= text_.size() || text_[position_] != '\'') {
      const std::size_t start = position_;
      while (position_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[position_])) == 0) ++position_;
      return std::string(text_.substr(start, position_ - start));
    }
    const std::size_t start = ++position_;
    const std::size_t end = text_.find('\'', start);
    if (end == std::string_view::npos) fail("a quote is missing");
    position_ = end + 1;
    return std::string(text_.substr(start, end - start));
  }

  char* keep(std::string text) { return tree_.texts_.emplace_back(std::move(text)).data(); }

  void attribute(yfw_datatree& node, Inherited& below) {
    const std::string name = word();
    for (uint32_t operation = 0; operation < kOperations.size(); ++operation) {
      if (name != kOperations[operation]) continue;
      node.operation = operation;
      below.operation = operation == kReplace ? 0 : operation;
      return;
    }
    if (name == "op" && take('=')) {
      node.operation = static_cast<uint32_t>(std::stoul(word()));
    } else if (name == "vns" && take('=')) {
      node.value_ns = keep(namespace_of(word()));
    } else if (name == "select") {
      node.node_flags |= 0x02;
    } else if (name == "xpath") {
      node.key_flags |= 0x08;
      node.xpath_status = 5;
    } else if (name == "missing") {
      node.node_flags |= 0x40;
      node.subtree_count = 1;
    } else if (name == "notag") {
      node.tag = nullptr;
    } else if (name == "nons") {
      node.ns = nullptr;
    } else {
      fail("unknown attribute " + name);
    }
  }

  yfw_datatree node(Inherited inherited) {
    yfw_datatree made{};
    std::string tag = word();
    if (take(':')) {
      inherited.ns = namespace_of(tag);
      tag = word();
    }
    made.tag = keep(std::move(tag));
    made.ns = keep(inherited.ns);
    made.operation = inherited.operation;
    if (position_ < text_.size() && text_[position_] == '=') {
      ++position_;
      made.value = keep(value());
    }
    while (take('@')) attribute(made, inherited);
    if (take('{')) children(made, inherited);
    return made;
  }

  void children(yfw_datatree& parent, const Inherited& inherited) {
    std::vector<yfw_datatree> made;
    while (!take('}')) {
      if (peek() == '\0') fail("a closing brace is missing");
      made.push_back(node(inherited));
    }
    parent.node_flags |= 0x40;
    parent.subtree_count = static_cast<uint32_t>(made.size());
    parent.subtrees = made.empty() ? nullptr : tree_.arrays_.emplace_back(std::move(made)).data();
  }

  Tree& tree_;
  std::string_view text_;
  std::size_t position_ = 0;
};

Tree::Tree(std::string_view notation) {
  TreeParser(*this, notation).parse();
}

namespace {

yfw_datatree& nth_child(const yfw_datatree& parent, std::string_view tag, std::size_t n) {
  for (uint32_t i = 0; i < parent.subtree_count && parent.subtrees != nullptr; ++i) {
    yfw_datatree& child = parent.subtrees[i];
    if (child.tag != nullptr && tag == child.tag && n-- == 0) return child;
  }
  throw std::out_of_range("the tree has no " + std::string(tag) + " there");
}

}  // namespace

yfw_datatree& Tree::operator[](std::string_view path) {
  yfw_datatree* node = &root_;
  while (!path.empty()) {
    const std::size_t end = path.find('/');
    node = &nth_child(*node, path.substr(0, end), 0);
    path = end == std::string_view::npos ? std::string_view() : path.substr(end + 1);
  }
  return *node;
}

yfw_datatree& Tree::child(std::string_view tag, std::size_t n) {
  return nth_child(root_, tag, n);
}

}  // namespace recording
