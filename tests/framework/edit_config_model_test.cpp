// Random edits on random configurations, beside a second opinion: a flat map of paths that knows nothing of trees.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <vector>

#include "framework/datastore/apply.h"
#include "small_model.h"

namespace yfw::test {
namespace {

enum class Is : std::uint8_t { container, presence, entry, leaf, value };

// A node of an edit as the generator makes it.
struct Asked {
  Is is;
  std::string name;
  std::string text;  // key, or value
  std::string operation;
  std::vector<Asked> children;
};

bool removes(const Asked& node) {
  return node.operation == "delete" || node.operation == "remove";
}

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  Asked top(bool with_operations) {
    operations_ = with_operations;
    Asked top{Is::container, "top", "", "", {}};
    if (chance(2)) top.children.push_back(leaf("a"));
    values(top, "w");
    if (chance(2)) top.children.push_back(np());
    if (chance(2)) {
      top.children.push_back({Is::presence, "pc", "", operation(), {}});
      if (chance(2)) top.children.back().children.push_back(leaf("z"));
    }
    entries(top, "l", "k");
    if (!chance(20)) tidy(top, false);
    return top;
  }

  int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

 private:
  bool chance(int of) { return pick(of) == 0; }

  std::string operation() {
    static const std::vector<std::string> kNames{"merge", "replace", "create", "delete", "remove"};
    return operations_ && chance(3) ? kNames[static_cast<std::size_t>(pick(5))] : "";
  }

  Asked leaf(const char* name) { return {Is::leaf, name, std::to_string(pick(3)), operation(), {}}; }

  void values(Asked& parent, const char* name) {
    for (int i = 0; i < 3; ++i) {
      if (chance(3)) parent.children.push_back({Is::value, name, std::to_string(i), operation(), {}});
    }
  }

  // Only seldom a node stands there a second time, or something is written below what goes.
  void tidy(Asked& node, bool goes) {
    if (goes && !removes(node)) node.operation = "";
    goes = goes || removes(node);
    for (Asked& child : node.children) tidy(child, goes);
    if (!operations_ || node.children.empty() || !chance(50)) return;
    node.children.push_back(node.children[static_cast<std::size_t>(pick(static_cast<int>(node.children.size())))]);
    if (!goes) node.children.back().operation = operation();
  }

  Asked np() {
    Asked made{Is::container, "np", "", operation(), {}};
    if (chance(2)) made.children.push_back(leaf("x"));
    if (chance(2)) {
      made.children.push_back({Is::container, "deep", "", operation(), {}});
      if (chance(2)) made.children.back().children.push_back(leaf("y"));
    }
    return made;
  }

  void entries(Asked& parent, const char* name, const char* key) {
    for (int i = 0; i < 3; ++i) {
      if (chance(2)) parent.children.push_back(entry(name, key, i));
    }
  }

  Asked entry(const char* name, const char* key, int value) {
    Asked made{Is::entry, name, std::to_string(value), operation(), {}};
    if (*key == 'n') {
      if (chance(2)) made.children.push_back(leaf("o"));
      return made;
    }
    if (chance(2)) made.children.push_back(leaf("v"));
    values(made, "w");
    entries(made, "m", "n");
    return made;
  }

  std::mt19937 random_;
  bool operations_ = false;
};

std::string xml(const Asked& node) {
  const std::string attribute = node.operation.empty() ? "" : fmt::format(" nc:operation='{}'", node.operation);
  std::string inside =
      node.is == Is::entry ? fmt::format("<{0}>{1}</{0}>", node.name == "l" ? "k" : "n", node.text) : node.text;
  for (const Asked& child : node.children) inside += xml(child);
  return fmt::format("<{0}{1}>{2}</{0}>", node.name, attribute, inside);
}

// A configuration as the paths of what counts by itself: values, entries, presence containers.
using Flat = std::map<std::string, std::string>;

struct Trouble {
  std::string tag;
};

class SecondOpinion {
 public:
  explicit SecondOpinion(Flat& flat) : flat_(flat) {}

  // What a request must not say, whatever is there.
  static void judge(const Asked& node, const std::string& parent, bool goes) {
    const std::string path = path_below(parent, node);
    goes = goes || removes(node);
    std::set<std::string> seen;
    for (const Asked& child : node.children) {
      if (goes && !child.operation.empty() && !removes(child)) throw Trouble{"bad-attribute"};
      if (!seen.insert(path_below(path, child)).second) throw Trouble{"bad-element"};
      judge(child, path, goes);
    }
  }

  void apply(const Asked& node, const std::string& parent, const std::string& inherited) {
    const std::string path = path_below(parent, node);
    const std::string own = node.operation.empty() ? inherited : node.operation;
    const bool there = is_there(node, path);
    if (own == "delete" && !there) throw Trouble{"data-missing"};
    if (own == "create" && there) throw Trouble{"data-exists"};
    if (own == "none" && !there && node.is != Is::container) throw Trouble{"data-missing"};
    if (own == "delete" || own == "remove") return erase(path, true);
    if (own == "none" && (node.is == Is::leaf || node.is == Is::value)) return;
    if (own == "replace") erase(path, false);
    if (node.is != Is::container) flat_[path] = node.is == Is::leaf ? node.text : "";
    for (const Asked& child : node.children) apply(child, path, own == "replace" ? "merge" : own);
  }

 private:
  static std::string path_below(const std::string& parent, const Asked& node) {
    const bool several = node.is == Is::entry || node.is == Is::value;
    return parent + "/" + node.name + (several ? "=" + node.text : "");
  }

  bool is_there(const Asked& node, const std::string& path) const {
    if (node.is != Is::container) return flat_.contains(path);
    const auto below = flat_.lower_bound(path + "/");
    return below != flat_.end() && below->first.starts_with(path + "/");
  }

  void erase(const std::string& path, bool itself) {
    if (itself) flat_.erase(path);
    auto below = flat_.lower_bound(path + "/");
    while (below != flat_.end() && below->first.starts_with(path + "/")) below = flat_.erase(below);
  }

  Flat& flat_;
};

void flatten(const lyd_node* node, const std::string& parent, Flat& flat) {
  for (; node != nullptr; node = node->next) {
    if (lysc_is_key(node->schema)) continue;
    std::string path = parent + "/" + LYD_NAME(node);
    const bool leaf = node->schema->nodetype == LYS_LEAF;
    if (node->schema->nodetype == LYS_LIST) path += std::string("=") + lyd_get_value(lyd_child(node));
    if (node->schema->nodetype == LYS_LEAFLIST) path += std::string("=") + lyd_get_value(node);
    const bool np = node->schema->nodetype == LYS_CONTAINER && (node->schema->flags & LYS_PRESENCE) == 0;
    if (!np) flat[path] = leaf ? lyd_get_value(node) : "";
    flatten(lyd_child(node), path, flat);
  }
}

std::string shown(const Flat& flat) {
  std::string text;
  for (const auto& [path, value] : flat) text += fmt::format("{} {}\n", path, value);
  return text;
}

TEST(RandomEdits, AgreeWithASecondOpinion) {
  static const std::vector<std::pair<std::string, Operation>> kDefaults{
      {"merge", Operation::merge}, {"replace", Operation::replace}, {"none", Operation::none}};
  int refused = 0;
  int contradictory = 0;
  int applied = 0;
  for (unsigned seed = 1; seed <= 5000; ++seed) {
    Generator generator(seed);
    const Asked start = generator.top(false);
    Data target;
    Flat flat;
    SecondOpinion(flat).apply(start, "", "merge");
    const auto in_config = [](const Asked& top) {
      std::string inside;
      for (const Asked& child : top.children) inside += xml(child);
      return on_top(inside);
    };
    apply_edit(target, small_edit(in_config(start)).tree.get(), Operation::merge);
    // Several edits on top of each other, until one is refused.
    for (int step = 0; step < 3; ++step) {
      const Asked edit = generator.top(true);
      const auto& [default_name, default_operation] = kDefaults[static_cast<std::size_t>(generator.pick(3))];
      std::string expected;
      Flat after = flat;
      try {
        SecondOpinion::judge(edit, "", false);
        SecondOpinion(after).apply(edit, "", default_name);
        expected = shown(after);
      } catch (const Trouble& trouble) {
        expected = trouble.tag;
      }
      const std::string text = in_config(edit);
      std::string found;
      try {
        apply_edit(target, small_edit(text).tree.get(), default_operation);
        Flat now;
        flatten(target.get(), "", now);
        found = shown(now);
      } catch (const Refused& refusal) {
        found = refusal.error().tag;
      }
      ASSERT_EQ(found, expected) << "seed " << seed << ", step " << step << ", default " << default_name
                                 << "\nbefore:\n"
                                 << shown(flat) << "edit: " << text;
      if (expected.starts_with("data-")) {
        ++refused;
        break;
      }
      if (expected.starts_with("bad-")) {
        ++contradictory;
        break;
      }
      ++applied;
      flat = after;
    }
  }
  // Both ends are reached often, or the generator is worth nothing.
  EXPECT_GT(refused, 1000);
  EXPECT_GT(applied, 1000);
  EXPECT_GT(contradictory, 300);
}

}  // namespace
}  // namespace yfw::test
