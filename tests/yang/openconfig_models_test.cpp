// The compact OpenConfig modules say what the published ones say of every node that they share.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "modules.h"

namespace yang_test {
namespace {

std::string in_one_line(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

// One node as a client sees it, each fact a line.
std::string describe(const lysc_node* node) {
  std::string text = std::string(lys_nodetype2str(node->nodetype)) + " of " + node->module->ns + "\n";
  text += (node->flags & LYS_CONFIG_W) != 0 ? "configuration\n" : "state\n";
  if ((node->flags & LYS_STATUS_DEPRC) != 0) text += "deprecated\n";
  if (node->nodetype == LYS_CONTAINER && (node->flags & LYS_PRESENCE) != 0) text += "presence\n";
  if (lysc_is_key(node)) text += "key\n";
  if (node->nodetype == LYS_LEAF) {
    if ((node->flags & LYS_MAND_TRUE) != 0) text += "mandatory\n";
    const auto* const leaf = reinterpret_cast<const lysc_node_leaf*>(node);
    if (leaf->dflt != nullptr)
      text += std::string("default ") + lyd_value_get_canonical(node->module->ctx, leaf->dflt) + "\n";
  }
  if (node->nodetype == LYS_LEAFLIST && lysc_is_userordered(node)) text += "ordered by user\n";
  lysc_when** const conditions = lysc_node_when(node);
  LY_ARRAY_COUNT_TYPE i = 0;
  LY_ARRAY_FOR(conditions, i) {
    char* where =
        conditions[i]->context == nullptr ? nullptr : lysc_path(conditions[i]->context, LYSC_PATH_DATA, nullptr, 0);
    text +=
        "when " + in_one_line(lyxp_get_expr(conditions[i]->cond)) + " at " + (where == nullptr ? "/" : where) + "\n";
    std::free(where);
  }
  return text;
}

// Structure of a type, without what its name and its patterns are written like.
std::string describe(const lysc_type* type) {
  std::string text = std::to_string(type->basetype);
  if (type->basetype == LY_TYPE_UNION) {
    const auto* const members = reinterpret_cast<const lysc_type_union*>(type);
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(members->types, i) {
      text += " | " + describe(members->types[i]);
    }
  }
  if (type->basetype == LY_TYPE_ENUM) {
    const auto* const enumeration = reinterpret_cast<const lysc_type_enum*>(type);
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(enumeration->enums, i) {
      text += std::string(" ") + enumeration->enums[i].name + "=" + std::to_string(enumeration->enums[i].value);
    }
  }
  if (type->basetype == LY_TYPE_IDENT) {
    const auto* const identity = reinterpret_cast<const lysc_type_identityref*>(type);
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(identity->bases, i) {
      text += std::string(" ") + identity->bases[i]->module->name + ":" + identity->bases[i]->name;
    }
  }
  if (type->basetype == LY_TYPE_LEAFREF) {
    const auto* const reference = reinterpret_cast<const lysc_type_leafref*>(type);
    text += std::string(" ") + lyxp_get_expr(reference->path) + " " + describe(reference->realtype);
  }
  return text;
}

// Every child of `node` (null: of the module's top), by module and name, in the order of the schema.
std::vector<const lysc_node*> children_of(const lysc_node* node, const lys_module* module) {
  std::vector<const lysc_node*> children;
  const lysc_node* child = nullptr;
  while ((child = lys_getnext(child, node, node == nullptr ? module->compiled : nullptr, 0)) != nullptr) {
    children.push_back(child);
  }
  return children;
}

const lysc_node* same_in(const std::vector<const lysc_node*>& nodes, const lysc_node* wanted) {
  for (const lysc_node* const node : nodes) {
    if (std::string_view(node->name) == wanted->name && std::string_view(node->module->ns) == wanted->module->ns) {
      return node;
    }
  }
  return nullptr;
}

class OpenConfigModels : public testing::Test {
 protected:
  void SetUp() override {
    if (!has_published()) GTEST_SKIP() << "no published modules at " << kPublishedYang;
    compact_ = make_context({kOwnYang});
    published_ = make_context({kOwnYang, kPublishedYang});
    ASSERT_EQ(load(compact_, kOpenConfigModules), "");
    ASSERT_EQ(load(published_, kOpenConfigModules), "");
  }

  // Calls `compare` with every node of the compact tree and its published counterpart; tells of those without one.
  template <typename Compare>
  void for_each_shared(const Compare& compare) const {
    const auto module_of = [](const Context& ctx) {
      return ly_ctx_get_module_implemented(ctx.get(), "openconfig-interfaces");
    };
    walk(children_of(nullptr, module_of(compact_)), children_of(nullptr, module_of(published_)), compare);
  }

  static std::string path_of(const lysc_node* node) {
    char* const text = lysc_path(node, LYSC_PATH_LOG, nullptr, 0);
    std::string path = text;
    std::free(text);
    return path;
  }

  Context compact_;
  Context published_;

 private:
  template <typename Compare>
  static void walk(const std::vector<const lysc_node*>& own, const std::vector<const lysc_node*>& published,
                   const Compare& compare) {
    for (const lysc_node* const node : own) {
      const lysc_node* const other = same_in(published, node);
      if (other == nullptr) {
        ADD_FAILURE() << path_of(node) << " is not published";
        continue;
      }
      compare(node, other);
      walk(children_of(node, nullptr), children_of(other, nullptr), compare);
    }
  }
};

TEST_F(OpenConfigModels, SayTheSameOfEveryNode) {
  int compared = 0;
  for_each_shared([&compared](const lysc_node* own, const lysc_node* published) {
    ++compared;
    EXPECT_EQ(describe(own), describe(published)) << path_of(own);
  });
  EXPECT_GT(compared, 100);
}

TEST_F(OpenConfigModels, HaveTheSameTypes) {
  for_each_shared([](const lysc_node* own, const lysc_node* published) {
    if ((own->nodetype & (LYS_LEAF | LYS_LEAFLIST)) == 0) return;
    EXPECT_EQ(describe(reinterpret_cast<const lysc_node_leaf*>(own)->type),
              describe(reinterpret_cast<const lysc_node_leaf*>(published)->type))
        << path_of(own);
  });
}

TEST_F(OpenConfigModels, TakeTheSameValues) {
  std::vector<std::string> values = {
      "",
      " ",
      "01",
      "-1",
      "1.5",
      "ten",
      "1..2..3",
      "..2",
      "1..",
      "1...2",
      " 1..2",
      "1-2",
      "1.*",
      "*.1",
      "*",
      "1.2.3",
      "a.b",
      "PUSH",
      "push",
      "POP",
      "SWAP",
      "ACCESS",
      "TRUNK",
      "HYBRID",
      "true",
      "false",
      "4294967295",
      "4294967296",
      "TPID_ANY",
      "TPID_NONE",
      "ethernetCsmacd",
      "openconfig-vlan-types:TPID_0X8100",
      "openconfig-vlan-types:TPID_0X88A8",
      "openconfig-vlan-types:TPID_0X9100",
      "openconfig-vlan-types:TPID_0X9200",
      "openconfig-vlan-types:TPID_ANY",
      "openconfig-vlan:TPID_0X8100",
      "openconfig-vlan-types:TPID_TYPES",
      "iana-if-type:ethernetCsmacd",
      "iana-if-type:ieee8023adLag",
      "iana-if-type:l3ipvlan",
      "iana-if-type:softwareLoopback",
      "iana-if-type:l2vlan",
  };
  // Ids at the borders of what patterns and ranges spell out, alone, as ranges and as pairs.
  for (const std::string id :
       {"0",    "1",    "9",    "10",   "99",   "100",  "999",  "1000", "3999", "4000",  "4009",
        "4080", "4089", "4090", "4094", "4095", "4099", "4100", "5000", "9999", "65535", "65536"}) {
    for (const std::string& value : {id, id + "..1", "1.." + id, id + ".1", "1." + id, id + ".*"})
      values.push_back(value);
  }
  for_each_shared([&](const lysc_node* own, const lysc_node* published) {
    if ((own->nodetype & (LYS_LEAF | LYS_LEAFLIST)) == 0) return;
    for (const std::string& value : values) {
      EXPECT_EQ(canonical(compact_, own, value), canonical(published_, published, value))
          << "'" << value << "' for " << path_of(own);
    }
  });
}

// Documents are printed in the order of the schema, so answers are equal only where the orders are.
TEST_F(OpenConfigModels, OrderSiblingsAlike) {
  for_each_shared([](const lysc_node* own, const lysc_node* published) {
    const std::vector<const lysc_node*> own_children = children_of(own, nullptr);
    std::string own_order;
    std::string published_order;
    for (const lysc_node* const child : own_children) own_order += std::string(" ") + child->name;
    for (const lysc_node* const child : children_of(published, nullptr)) {
      if (same_in(own_children, child) != nullptr) published_order += std::string(" ") + child->name;
    }
    EXPECT_EQ(own_order, published_order) << path_of(own);
  });
}

// An empty container is taken wherever it is known, so both have to know the same ones.
TEST_F(OpenConfigModels, HaveTheSameContainers) {
  int compared = 0;
  for_each_shared([&compared](const lysc_node* own, const lysc_node* published) {
    std::string own_containers;
    std::string published_containers;
    for (const lysc_node* const child : children_of(own, nullptr)) {
      if (child->nodetype == LYS_CONTAINER) own_containers += std::string(" ") + child->name;
    }
    for (const lysc_node* const child : children_of(published, nullptr)) {
      if (child->nodetype != LYS_CONTAINER) continue;
      published_containers += std::string(" ") + child->name;
      ++compared;
    }
    EXPECT_EQ(own_containers, published_containers) << path_of(own);
  });
  EXPECT_GT(compared, 50);
}

TEST_F(OpenConfigModels, UseThePublishedPrefixes) {
  for (const std::string& name : kOpenConfigModules) {
    const lys_module* const own = ly_ctx_get_module_implemented(compact_.get(), name.c_str());
    const lys_module* const published = ly_ctx_get_module_implemented(published_.get(), name.c_str());
    ASSERT_NE(own, nullptr) << name;
    ASSERT_NE(published, nullptr) << name;
    EXPECT_STREQ(own->prefix, published->prefix) << name;
    EXPECT_STREQ(own->ns, published->ns) << name;
  }
}

TEST_F(OpenConfigModels, GiveWayToThePublishedOnesWhereBothAreThere) {
  for (const std::string& name : kOpenConfigModules) {
    const lys_module* const module = ly_ctx_get_module_implemented(published_.get(), name.c_str());
    ASSERT_NE(module, nullptr) << name;
    const std::filesystem::path file = module->filepath;
    EXPECT_EQ(file.parent_path(), std::filesystem::canonical(kPublishedYang)) << name;
  }
}

}  // namespace
}  // namespace yang_test
