// Made-up models with made-up data: wherever the validator says that there is nothing to validate, or that each entry
// can be validated alone, libyang agrees.
#include <gtest/gtest.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>
#endif
#endif

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "property/model/random.h"
#include "validate_check.h"
#include "yfw-host/data.h"

namespace yfw::test {
namespace {

using property::Random;

enum class Kind : std::uint8_t { container, presence, list, leaf, leaf_list, choice, case_, anydata };

enum class Values : std::uint8_t { text, number, identity };

struct Node {
  Kind kind = Kind::container;
  std::string name;
  Node* parent = nullptr;
  Values values = Values::text;
  bool is_key = false;
  bool is_reference = false;  // to one that is none, as libyang does not notice circles
  bool is_state = false;
  std::vector<std::unique_ptr<Node>> children;

  bool is_data() const { return kind != Kind::choice && kind != Kind::case_; }
  bool is_value() const { return kind == Kind::leaf || kind == Kind::leaf_list; }
};

// The data node that a node stands in.
const Node* above(const Node* node) {
  for (node = node->parent; node != nullptr && !node->is_data();) node = node->parent;
  return node;
}

class ModelMaker {
 public:
  explicit ModelMaker(Random& random) : random_(random) {}

  // Its top-level nodes stand in `root`.
  std::string make() {
    Node* const top = add(&root, random_.chance(12) ? Kind::list : Kind::container);
    fill(top, 3);
    if (random_.chance(25)) fill_one(&root, 1);
    if (top->kind == Kind::container) fill(add(top, Kind::list), 2);
    std::string text =
        "module m { yang-version 1.1; namespace \"urn:m\"; prefix m;"
        " identity base; identity i1 { base base; } identity i2 { base base; }\n";
    for (const auto& child : root.children) text += statement(child.get());
    return text + "}";
  }

  Node root;

 private:
  Node* add(Node* parent, Kind kind) {
    auto node = std::make_unique<Node>();
    node->kind = kind;
    node->name = fmt::format("n{}", all_.size());
    node->parent = parent;
    node->is_state = parent->is_state || (kind != Kind::case_ && random_.chance(1));
    node->is_reference = random_.chance(12);
    all_.push_back(node.get());
    parent->children.push_back(std::move(node));
    Node* const added = all_.back();
    if (kind == Kind::leaf || kind == Kind::leaf_list) {
      added->values = static_cast<Values>(random_.below(3));
    } else if (kind == Kind::list) {
      added->is_state = parent->is_state;
      Node* const key = add(added, Kind::leaf);
      key->values = Values::text;
      key->is_key = true;
      key->is_reference = random_.chance(40);
      key->is_state = added->is_state;
    }
    return added;
  }

  void fill(Node* node, std::size_t depth) {
    const std::size_t count = random_.between(1, 4);
    for (std::size_t i = 0; i < count; ++i) fill_one(node, depth);
  }

  void fill_one(Node* node, std::size_t depth) {
    static const std::vector<Kind> kDeep{Kind::container, Kind::container, Kind::presence,  Kind::list,
                                         Kind::choice,    Kind::leaf,      Kind::leaf_list, Kind::leaf};
    static const std::vector<Kind> kFlat{Kind::leaf, Kind::leaf, Kind::leaf, Kind::leaf_list, Kind::anydata};
    const Kind kind = random_.pick(depth == 0 ? kFlat : kDeep);
    Node* const added = add(node, kind);
    if (kind == Kind::choice) {
      for (int i = 0; i < 2; ++i) fill(add(added, Kind::case_), 0);
    } else if (!added->is_value() && kind != Kind::anydata) {
      fill(added, depth - 1);
    }
  }

  // From the data node `from`, null at the top, to `to`; with a leading "/" when `is_absolute`.
  std::string path(const Node* from, const Node* to, bool is_absolute) {
    std::vector<const Node*> up;
    for (const Node* node = to; node != nullptr && node != &root; node = above(node)) up.push_back(node);
    std::string text;
    if (is_absolute) {
      while (!up.empty()) {
        text += "/" + up.back()->name;
        up.pop_back();
      }
      return text;
    }
    std::vector<const Node*> outer;
    for (const Node* node = from; node != nullptr && node != &root; node = above(node)) outer.push_back(node);
    while (!up.empty() && !outer.empty() && up.back() == outer.back()) {
      up.pop_back();
      outer.pop_back();
    }
    for (std::size_t i = 0; i < outer.size(); ++i) text += text.empty() ? ".." : "/..";
    while (!up.empty()) {
      text += (text.empty() ? "" : "/") + up.back()->name;
      up.pop_back();
    }
    return text.empty() ? "." : text;
  }

  bool is_within(const Node* node, const Node* outer) const {
    while (node != nullptr && node != outer) node = node->parent;
    return node != nullptr;
  }

  const Node* other(const Node* node, bool is_value) {
    for (int i = 0; i < 30; ++i) {
      const Node* const found = all_[random_.below(all_.size())];
      const bool fits =
          !is_within(found, node) && found->is_data() && (!is_value || found->is_value()) && !found->is_state;
      // Mostly something near.
      if (fits && (above(found) == above(node) || random_.chance(30))) return found;
    }
    return nullptr;
  }

  std::string literal(const Node* node) {
    if (node->values == Values::identity) return random_.chance(50) ? "'m:i1'" : "'i1'";
    return random_.chance(60) ? "'1'" : "'2'";
  }

  std::string comparison(const Node* context, const Node* node) {
    const Node* const target = other(node, true);
    if (target == nullptr) return "true()";
    const std::string where = (random_.chance(15) ? "current()/" : "") + path(context, target, false);
    return fmt::format("{} {} {}", where, random_.chance(85) ? "=" : "!=", literal(target));
  }

  // A condition at `context` that says something of `node`.
  std::string condition(const Node* context, const Node* node) {
    switch (random_.below(16)) {
      case 0:
      case 1:
      case 2:
      case 3:
      case 4:
        return comparison(context, node);
      case 5:
      case 6:
      case 7:
        return comparison(context, node) + " or " + comparison(context, node);
      case 8:
        return comparison(context, node) + " and " + comparison(context, node);
      case 9:
        return "count(..//*) < 6";
      case 10:
        return "count(../*) < 3";
      case 11:
        return "not(//" + all_[random_.below(all_.size())]->name + ")";
      default:
        break;
    }
    const Node* const target = other(node, false);
    if (target == nullptr) return "1 = 1";
    const std::string where = path(context, target, random_.chance(25));
    switch (random_.below(4)) {
      case 0:
        return where;
      case 1:
        return "not(" + where + ")";
      case 2:
        return fmt::format("count({}) < {}", where, random_.between(1, 2));
      default:
        return fmt::format("{}[. = '1']", where);
    }
  }

  // Little that concerns the whole, so that entries are often all that there is to look at.
  std::size_t rate(const Node* node, std::size_t percent) const {
    while (node != &root && node->kind != Kind::list) node = node->parent;
    return node != &root ? percent : (percent + 3) / 4;
  }

  std::string restrictions(const Node* node) {
    std::string text;
    // A condition of a choice or a case is one of what they stand in.
    if (!node->is_key && random_.chance(rate(node, 9))) {
      text += fmt::format("when \"{}\"; ", condition(node->is_data() ? node : above(node), node));
    }
    if (node->is_data() && random_.chance(rate(node, 4))) text += fmt::format("must \"{}\"; ", condition(node, node));
    if (node->is_state && !node->parent->is_state) text += "config false; ";
    return text;
  }

  std::string type(const Node* node) {
    static constexpr std::string_view kNumber = "uint8";
    static constexpr std::string_view kText = "string";
    if (node->values == Values::identity) return "type identityref { base base; } ";
    const Node* const target = node->is_reference ? other(node, true) : nullptr;
    if (target != nullptr && !target->is_reference && target->values != Values::identity) {
      const std::string reference =
          fmt::format("type leafref {{ path \"{}\"; {}}} ", path(node, target, random_.chance(25)),
                      random_.chance(15) ? "require-instance false; " : "");
      return random_.chance(20) ? fmt::format("type union {{ {}type uint8; }} ", reference) : reference;
    }
    if (node->values == Values::number) return fmt::format("type {}; ", kNumber);
    if (random_.chance(10)) return "type union { type uint8; type string; } ";
    if (random_.chance(4) && !node->is_key) return "type union { type instance-identifier; type string; } ";
    return fmt::format("type {}; ", kText);
  }

  std::string bounds() {
    std::string text;
    if (random_.chance(5)) text += fmt::format("min-elements {}; ", random_.between(1, 2));
    if (random_.chance(10)) text += fmt::format("max-elements {}; ", random_.between(2, 3));
    return text;
  }

  std::string children(const Node* node) {
    std::string text;
    std::string shared;
    for (const auto& child : node->children) {
      const bool is_shared = !child->is_key && child->is_data() && node->is_data() && random_.chance(rate(node, 6));
      (is_shared ? shared : text) += statement(child.get());
    }
    if (shared.empty()) return text;
    const Node* const within = node->children.back().get();
    return fmt::format("{} grouping of-{} {{ {} }} uses of-{} {{ when \"{}\"; }}\n", text, node->name, shared,
                       node->name, condition(node, within));
  }

  std::string statement(const Node* node) {
    static const std::map<Kind, std::string> kWords{{Kind::container, "container"}, {Kind::presence, "container"},
                                                    {Kind::list, "list"},           {Kind::leaf, "leaf"},
                                                    {Kind::leaf_list, "leaf-list"}, {Kind::choice, "choice"},
                                                    {Kind::case_, "case"},          {Kind::anydata, "anydata"}};
    std::string text = fmt::format("{} {} {{ {}", kWords.at(node->kind), node->name, restrictions(node));
    const std::string value = node->values == Values::identity ? "m:i1" : "1";
    switch (node->kind) {
      case Kind::presence:
        text += "presence p; ";
        break;
      case Kind::list: {
        text += fmt::format("key {}; {}", node->children.front()->name, bounds());
        const Node* const last = node->children.back().get();
        if (last->kind == Kind::leaf && !last->is_key && !last->is_state && random_.chance(10)) {
          text += fmt::format("unique {}; ", last->name);
        }
        break;
      }
      case Kind::leaf:
        text += type(node);
        if (!node->is_key && random_.chance(rate(node, 10))) {
          text += "mandatory true; ";
        } else if (!node->is_key && random_.chance(20)) {
          text += fmt::format("default {}; ", value);
        }
        break;
      case Kind::leaf_list:
        text += type(node);
        text += random_.chance(15) ? fmt::format("default {}; ", value) : bounds();
        break;
      case Kind::choice:
        if (random_.chance(20)) {
          text += "mandatory true; ";
        } else if (random_.chance(20)) {
          text += fmt::format("default {}; ", node->children.front()->name);
        }
        break;
      default:
        break;
    }
    return text + children(node) + "}\n";
  }

  Random& random_;
  std::vector<Node*> all_;
};

class DataMaker {
 public:
  DataMaker(Random& random, const Node& root) : random_(random), root_(root) {}

  std::string make() { return contents(root_, " xmlns=\"urn:m\" xmlns:m=\"urn:m\"", 80); }

 private:
  std::string value(const Node& node) {
    if (node.values == Values::identity) return random_.chance(60) ? "m:i1" : "m:i2";
    return std::to_string(random_.chance(50) ? 1 : random_.between(1, 3));
  }

  std::string contents(const Node& node, std::string_view attributes = "", std::size_t percent = 60) {
    std::string text;
    for (const auto& child : node.children) {
      if (child->is_state && random_.chance(85)) continue;
      if (child->is_key || random_.chance(percent)) text += elements(*child, attributes);
    }
    return text;
  }

  std::string elements(const Node& node, std::string_view attributes) {
    std::string text;
    const auto element = [&](const std::string& inside) {
      text += fmt::format("<{}{}>{}</{}>", node.name, attributes, inside, node.name);
    };
    switch (node.kind) {
      case Kind::container:
      case Kind::presence:
        element(contents(node));
        break;
      case Kind::leaf:
        element(value(node));
        if (!node.is_key && random_.chance(1)) element(value(node));
        break;
      case Kind::anydata:
        element("<x xmlns=\"urn:x\"/>");
        break;
      case Kind::leaf_list:
      case Kind::list: {
        std::vector<int> ids{1, 2, 3};
        if (random_.chance(2)) ids[1] = 1;
        for (const int id : ids) {
          if (!random_.chance(50)) continue;
          if (node.kind == Kind::list) {
            const Node& key = *node.children.front();
            std::string inside = fmt::format("<{}>{}</{}>", key.name, id, key.name);
            for (const auto& child : node.children) {
              if (child->is_state && random_.chance(85)) continue;
              if (!child->is_key && random_.chance(60)) inside += elements(*child, "");
            }
            element(inside);
          } else {
            element(node.values == Values::identity ? fmt::format("m:i{}", id % 2 + 1) : std::to_string(id));
          }
        }
        break;
      }
      case Kind::choice: {
        const bool is_mixed = random_.chance(5);
        const std::size_t chosen = random_.below(node.children.size());
        for (std::size_t i = 0; i < node.children.size(); ++i) {
          if (is_mixed || i == chosen) text += contents(*node.children[i], attributes);
        }
        break;
      }
      default:
        break;
    }
    return text;
  }

  Random& random_;
  const Node& root_;
};

using Context = std::unique_ptr<ly_ctx, void (*)(ly_ctx*)>;

Context make_context() {
  ly_ctx* made = nullptr;
  ly_ctx_new(nullptr, LY_CTX_NO_YANGLIBRARY, &made);
  return {made, ly_ctx_destroy};
}

Data parse(const ly_ctx* models, const std::string& text) {
  lyd_node* tree = nullptr;
  lyd_parse_data_mem(models, text.c_str(), LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_STRICT, 0, &tree);
  return Data(tree);
}

// Takes some values away, and gives others new ones; the same of data that differ only in defaults.
void change(lyd_node* siblings, std::uint64_t seed) {
  lyd_node* node = nullptr;
  lyd_node* next = nullptr;
  LY_LIST_FOR_SAFE(siblings, next, node) {
    if ((node->flags & LYD_DEFAULT) != 0 && is_term(node->schema)) continue;
    const std::unique_ptr<char, void (*)(void*)> path(lyd_path(node, LYD_PATH_STD, nullptr, 0), std::free);
    Random random(seed ^ std::hash<std::string_view>{}(path.get()));
    if (node->schema->nodetype == LYS_LEAF && !lysc_is_key(node->schema)) {
      if (random.chance(15) && node->parent != nullptr) {
        lyd_free_tree(node);
      } else if (random.chance(40)) {
        lyd_change_term(node, random.chance(50) ? "1" : "2");
      }
    } else {
      change(lyd_child(node), seed);
    }
  }
}

struct Tally {
  std::size_t models = 0;
  std::array<std::size_t, 3> reaches{};
  std::size_t ever_entry = 0;
};

constexpr std::uint64_t kModels = 1500;
constexpr int kDataPerModel = 4;

void check_changed(const Data& data, std::uint64_t seed, const std::string& trace) {
  Validator validator;
  Data ours = data.clone();
  Data theirs = data.clone();
  if (!validate_by_libyang(theirs)) return;
  ASSERT_TRUE(validator.validate(ours)) << trace;
  change(ours.get(), seed);
  change(theirs.get(), seed);
  const std::string changed = trace + "\nchanged:\n" + ours.print(Format::xml);
  EXPECT_EQ(contradiction(theirs, validator.reach(theirs.get())), "") << changed;
  EXPECT_EQ(contradiction(ours, validator.reach(ours.get())), "") << changed;
  // What validation was not asked for is missed by none that comes later.
  const bool valid = validate_by_libyang(theirs);
  EXPECT_EQ(validate_by_libyang(ours), valid) << changed;
  if (valid) {
    EXPECT_EQ(nodes_of(ours), nodes_of(theirs)) << changed;
  }
}

void check_model(std::uint64_t seed, Tally& tally) {
  Random random(seed);
  ModelMaker maker(random);
  const std::string model = maker.make();
  const Context context = make_context();
  lys_module* module = nullptr;
  // Not everything that is made up is a model: conditions may wait for each other.
  if (lys_parse_mem(context.get(), model.c_str(), LYS_IN_YANG, &module) != LY_SUCCESS) return;
  ++tally.models;
  Validator validator;
  for (int i = 0; i < kDataPerModel; ++i) {
    const std::string text = DataMaker(random, maker.root).make();
    const Data data = parse(context.get(), text);
    if (data.empty()) continue;
    const Reach reach = validator.reach(data.get());
    ++tally.reaches[static_cast<std::size_t>(reach)];
    const std::string trace = fmt::format("seed {}, {}\n{}\n{}", seed, name_of(reach), model, text);
    EXPECT_EQ(contradiction(data, reach), "") << trace;
    check_changed(data, seed, trace);
    // Data that could be an answer or an edit's result never look farther than the models make expect.
    if (validator.reach(std::vector<const lys_module*>{module}) == Reach::entry) {
      ++tally.ever_entry;
      Data whole = data.clone();
      if (validate_by_libyang(whole)) {
        EXPECT_NE(reach, Reach::beyond) << trace;
      }
    }
  }
}

// libyang loses memory of its own where it compiles an expression or stores a value of a union that is wrong, and most
// made-up models have one. What our own code loses, the tests of real models and of each construct show.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
using LibyangMayLoseMemory = __lsan::ScopedDisabler;
#define HAS_LEAK_SANITIZER
#endif
#endif
#ifndef HAS_LEAK_SANITIZER
struct LibyangMayLoseMemory {
  LibyangMayLoseMemory() {}  // NOLINT(modernize-use-equals-default): a variable of it shall not count as unused
};
#endif

TEST(MadeUpModels, AreValidatedWhereverSomethingCanFail) {
  const LibyangMayLoseMemory here;
  ly_log_options(LY_LOSTORE);
  Tally tally;
  for (std::uint64_t seed = 1; seed <= kModels && !HasFailure(); ++seed) check_model(seed, tally);
  if (HasFailure()) return;
  const std::string told =
      fmt::format("{} models, {} nowhere, {} at entries, {} beyond, {} of models with entries only", tally.models,
                  tally.reaches[0], tally.reaches[1], tally.reaches[2], tally.ever_entry);
  EXPECT_GT(tally.models, kModels / 2) << told;
  for (const std::size_t count : tally.reaches) EXPECT_GT(count, 150U) << told;
  EXPECT_GT(tally.ever_entry, 50U) << told;
}

}  // namespace
}  // namespace yfw::test
