// What the schemas say, walked once and then asked by path.
#include "property/model/native_models.h"

#include <libyang/libyang.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "framework/tree/models.h"
#include "yfw-host/data.h"

namespace property {

namespace {

constexpr char kInterfaceModule[] = "Vexnet-OS-interface-cfg";
constexpr char kInfraModule[] = "Vexnet-OS-l2-eth-infra-cfg";

struct NativeLeaf {
  const lysc_node* schema;
  Entry along;  // presence containers around it, and keys
};

const yfw::Models& models() {
  static const yfw::Models compact(OC_VLAN_SOURCE_DIR "/yang");
  return compact;
}

const lysc_node* child_of(const lysc_node* parent, std::string_view name) {
  const lysc_node* child = nullptr;
  while ((child = lys_getnext(child, parent, nullptr, 0)) != nullptr) {
    if (name == child->name) return child;
  }
  throw std::logic_error("the native models have no '" + std::string(name) + "'");
}

const lysc_node* top() {
  const lys_module* const module = ly_ctx_get_module_implemented(models().get(), kInterfaceModule);
  return lys_getnext(nullptr, nullptr, module->compiled, 0);
}

// The value as the leaf keeps it; none when the leaf does not take it.
std::optional<std::string> kept_value(const lysc_node* leaf, const std::string& value) {
  const char* kept = nullptr;
  ly_ctx* const context = models().get();
  if (lyd_value_validate(context, leaf, value.c_str(), value.size(), nullptr, nullptr, &kept) != LY_SUCCESS) return {};
  std::string text = kept;
  lydict_remove(context, kept);
  return text;
}

class Collection {
 public:
  std::map<std::string, NativeLeaf> leaves;

  void below(const lysc_node* parent, const std::string& path, const Entry& along) {
    const lysc_node* node = nullptr;
    while ((node = lys_getnext(node, parent, nullptr, 0)) != nullptr) {
      const std::string_view module = node->module->name;
      const bool native = module == kInterfaceModule || module == kInfraModule;
      const bool names_entry = path.empty() && lysc_is_key(node);
      if (native && !names_entry && (node->flags & LYS_CONFIG_R) == 0) one(node, path + node->name, along);
    }
  }

 private:
  void one(const lysc_node* node, const std::string& path, Entry along) {
    switch (node->nodetype) {
      case LYS_LEAF:
        leaves[path] = {node, along};
        return;
      case LYS_CONTAINER:
        if ((node->flags & LYS_PRESENCE) != 0) {
          leaves[path] = {node, along};
          along[path];
        }
        return below(node, path + "/", along);
      case LYS_LIST:
        // A key may hold what separates the steps of a path.
        for (const char* const key : {"cdp", "x/y"}) {
          const char* const name = lys_getnext(nullptr, node, nullptr, 0)->name;
          const std::string entry = path + "[" + name + "='" + key + "']/";
          Entry inside = along;
          inside[entry + name] = key;
          below(node, entry, inside);
        }
        return;
      default:
        throw std::logic_error("'" + path + "' is of a kind that is not made up");
    }
  }
};

const std::map<std::string, NativeLeaf>& all() {
  static const std::map<std::string, NativeLeaf> leaves = [] {
    Collection collection;
    collection.below(lys_getnext(nullptr, top(), nullptr, 0), "", {});
    return std::move(collection.leaves);
  }();
  return leaves;
}

// Numbers at limits, a few that are equal or neighbours, and any.
std::string make_number(Random& random) {
  static const std::vector<std::string> frequent{"1",  "2",   "9",    "10",   "11",   "19",   "20",    "21",
                                                 "30", "100", "4093", "4094", "4095", "4097", "65535", "4294967295"};
  return random.chance(70) ? random.pick(frequent) : std::to_string(random.below(5000));
}

std::string make_word(Random& random) {
  static const std::vector<std::string> words{"uplink", "a & <b>", "it's \"x\"", "10,20 - 30", "", " "};
  return random.pick(words);
}

std::string make_value(Random& random, const lysc_node* node) {
  if (node->nodetype == LYS_CONTAINER) return "";
  const lysc_type* const type = reinterpret_cast<const lysc_node_leaf*>(node)->type;
  if (type->basetype == LY_TYPE_EMPTY) return "";
  if (type->basetype == LY_TYPE_ENUM) {
    const lysc_type_bitenum_item* const items = reinterpret_cast<const lysc_type_enum*>(type)->enums;
    return items[random.below(LY_ARRAY_COUNT(items))].name;
  }
  constexpr int kTries = 1000;
  for (int i = 0; i < kTries; ++i) {
    const std::size_t kind = random.below(type->basetype == LY_TYPE_STRING ? 2 : 4);
    const std::string value = kind == 0 ? make_word(random) : kind == 1 ? make_trunk_text(random) : make_number(random);
    if (const std::optional<std::string> kept = kept_value(node, value)) return *kept;
  }
  throw std::logic_error("no value is made up that '" + std::string(node->name) + "' takes");
}

struct Step {
  std::string name;
  std::string predicates;
};

std::vector<Step> steps_of(const std::string& path) {
  std::vector<Step> steps{{}};
  bool quoted = false;
  bool in_predicate = false;
  for (const char each : path) {
    if (each == '\'') quoted = !quoted;
    if (each == '[' && !quoted) in_predicate = true;
    if (each == '/' && !quoted) {
      steps.emplace_back();
    } else {
      (in_predicate ? steps.back().predicates : steps.back().name) += each;
    }
    if (each == ']' && !quoted) in_predicate = false;
  }
  return steps;
}

// The node of a step, made where it is missing.
lyd_node* node_at(lyd_node* parent, const Step& step, const std::string& value) {
  const lysc_node* const schema = child_of(parent->schema, step.name);
  lyd_node* node = nullptr;
  if (schema->nodetype == LYS_LEAF) {
    lyd_find_sibling_val(lyd_child(parent), schema, nullptr, 0, &node);
    if (node == nullptr) lyd_new_term(parent, schema->module, schema->name, value.c_str(), 0, &node);
  } else if (schema->nodetype == LYS_LIST) {
    lyd_find_sibling_val(lyd_child(parent), schema, step.predicates.c_str(), step.predicates.size(), &node);
    if (node == nullptr) lyd_new_list2(parent, schema->module, schema->name, step.predicates.c_str(), 0, &node);
  } else {
    lyd_find_sibling_val(lyd_child(parent), schema, nullptr, 0, &node);
    if (node == nullptr) lyd_new_inner(parent, schema->module, schema->name, 0, &node);
  }
  if (node == nullptr) throw std::logic_error("'" + step.name + "' does not take \"" + value + "\"");
  return node;
}

}  // namespace

const std::vector<std::string>& native_leaves() {
  static const std::vector<std::string> paths = [] {
    std::vector<std::string> found;
    for (const auto& each : all()) found.push_back(each.first);
    return found;
  }();
  return paths;
}

void set_native_leaf(Random& random, Entry& entry, const std::string& leaf) {
  const NativeLeaf& known = all().at(leaf);
  for (const auto& [path, value] : known.along) entry[path] = value;
  if (!known.along.contains(leaf)) entry[leaf] = make_value(random, known.schema);
}

void erase_native_leaf(Entry& entry, const std::string& leaf) {
  std::erase_if(entry, [&leaf](const auto& each) {
    const auto known = all().find(each.first);
    return each.first == leaf || (known != all().end() && known->second.along.contains(leaf));
  });
}

std::string make_trunk_text(Random& random) {
  const auto number = [&random] {
    std::string text = random.chance(85) ? std::to_string(random.between(1, 4094)) : make_number(random);
    text = text.substr(0, 4);
    if (random.chance(8)) text.insert(0, 4 - text.size(), '0');
    return text;
  };
  const auto blank = [&random] { return random.chance(6) ? " " : ""; };
  const std::size_t count = random.chance(10) ? random.between(35, 60) : random.between(1, 5);
  const bool plain = random.chance(40);
  std::vector<std::string> entries;
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0 && random.chance(8)) {
      entries.push_back(random.pick(entries));
      continue;
    }
    const bool range = random.chance(40);
    const std::string first = plain ? std::to_string(10 * i + 10) : blank() + number() + blank();
    const std::string last = plain ? std::to_string(10 * i + 15) : blank() + number() + blank();
    entries.push_back(range ? first + "-" + last : first);
  }
  std::string text;
  for (const std::string& entry : entries) text += (text.empty() ? "" : ",") + entry;
  return text;
}

std::string to_document(const Native& native) {
  lyd_node* root = nullptr;
  lyd_new_inner(nullptr, top()->module, top()->name, 0, &root);
  const yfw::Data data(root);
  for (const auto& [name, entry] : native) {
    lyd_node* list = nullptr;
    lyd_new_list(root, top()->module, lys_getnext(nullptr, top(), nullptr, 0)->name, 0, &list, name.c_str());
    for (const auto& [path, value] : entry) {
      lyd_node* node = list;
      for (const Step& step : steps_of(path)) node = node_at(node, step, value);
    }
  }
  char* text = nullptr;
  lyd_print_mem(&text, data.get(), LYD_XML, LYD_PRINT_KEEPEMPTYCONT);
  const std::unique_ptr<char, void (*)(void*)> owner(text, std::free);
  return text;
}

}  // namespace property
