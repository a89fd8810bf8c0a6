// Walks the schema, and writes entries with it.
#include "mapping/document/native_model.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string_view>

#include "framework/tree/models.h"
#include "framework/tree/schema.h"

namespace mapping {

namespace {

constexpr char kList[] = "/Vexnet-OS-interface-cfg:interface-configurations/interface-configuration";

const yfw::Models& models() {
  static const yfw::Models all(OC_VLAN_SOURCE_DIR "/yang");
  return all;
}

const lysc_node* entry_schema() {
  return lys_find_path(models().get(), nullptr, kList, 0);
}

const lysc_type* type_of(const lysc_node* leaf) {
  return reinterpret_cast<const lysc_node_leaf*>(leaf)->type;
}

bool may_be(const lysc_node* leaf, const std::string& value) {
  return lyd_value_validate(models().get(), leaf, value.data(), value.size(), nullptr, nullptr, nullptr) == LY_SUCCESS;
}

void add_values(const lysc_node* leaf, const std::string& path, std::vector<NativeValue>& values) {
  const lysc_type* const type = type_of(leaf);
  if (type->basetype == LY_TYPE_ENUM) {
    const auto* const of_enum = reinterpret_cast<const lysc_type_enum*>(type);
    LY_ARRAY_COUNT_TYPE i = 0;
    LY_ARRAY_FOR(of_enum->enums, i) {
      values.push_back({path, of_enum->enums[i].name, false});
    }
    return;
  }
  if (type->basetype == LY_TYPE_EMPTY) return values.push_back({path, "", false});
  for (const char* const value : {"300", "text"}) {
    if (!may_be(leaf, value)) continue;
    values.push_back({path, value, true});
    break;
  }
  if (type->basetype != LY_TYPE_STRING && may_be(leaf, "4097")) values.push_back({path, "4097", false});
}

void collect(const lysc_node* parent, const std::string& above, std::vector<NativeValue>& values) {
  const lysc_node* node = nullptr;
  while ((node = lys_getnext(node, parent, nullptr, 0)) != nullptr) {
    if (parent == entry_schema() && lysc_is_key(node)) continue;
    const std::string path = above.empty() ? node->name : fmt::format("{}/{}", above, node->name);
    if (yfw::is_term(node)) {
      add_values(node, path, values);
    } else {
      collect(node, path, values);
    }
  }
}

// The instance path below an entry; an inner list has one instance, whatever its key is.
std::string qualified(const std::string& path) {
  const lysc_node* node = entry_schema();
  std::string text;
  for (std::size_t begin = 0; begin < path.size();) {
    const std::size_t end = std::min(path.find('/', begin), path.size());
    node = yfw::find_child(node, nullptr, path.substr(begin, end - begin), nullptr);
    if (node == nullptr) throw std::logic_error("the native model has no " + path);
    // The key stands in the predicate.
    if (yfw::is_term(node) && lysc_is_key(node)) return text;
    text += fmt::format("{}{}:{}", text.empty() ? "" : "/", node->module->name, node->name);
    if (yfw::is_list(node)) text += fmt::format("[{}='300']", yfw::key_of(node)->name);
    begin = end + 1;
  }
  return text;
}

}  // namespace

std::vector<NativeValue> native_values() {
  std::vector<NativeValue> values;
  collect(entry_schema(), "", values);
  return values;
}

std::string native_document(const property::Native& entries) {
  yfw::Data data;
  lyd_new_path(nullptr, models().get(), "/Vexnet-OS-interface-cfg:interface-configurations", nullptr, 0, data.out());
  for (const auto& [name, leaves] : entries) {
    lyd_node* entry = nullptr;
    lyd_new_list(data.get(), nullptr, "interface-configuration", 0, &entry, name.c_str());
    for (const auto& [path, value] : leaves) {
      const std::string below = qualified(path);
      if (lyd_new_path(entry, nullptr, below.c_str(), value.c_str(), LYD_NEW_PATH_UPDATE, nullptr) != LY_SUCCESS) {
        throw std::logic_error(fmt::format("the native model has no {} {}", path, value));
      }
    }
  }
  return data.print(yfw::Format::xml);
}

std::string path_in_entry(const std::string& instance_path) {
  std::string path;
  std::size_t steps = 0;
  bool in_name = false;
  char quote = '\0';
  for (const char c : instance_path) {
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '\'' || c == '"') {
      quote = c;
    } else if (c == '/') {
      constexpr std::size_t kAbove = 2;
      if (++steps > kAbove + 1) path += '/';
      in_name = steps > kAbove;
    } else if (c == '[') {
      in_name = false;
    } else if (c == ':') {
      path.resize(path.rfind('/') + 1);
    } else if (in_name) {
      path += c;
    }
  }
  return path;
}

std::vector<NativeValue> operational_values(const std::string& document) {
  yfw::Data data;
  lyd_parse_data_mem(models().get(), document.c_str(), LYD_XML, LYD_PARSE_ONLY, 0, data.out());
  std::vector<NativeValue> values;
  lyd_node* node = nullptr;
  LYD_TREE_DFS_BEGIN(data.get(), node) {
    if (yfw::is_term(node->schema) && !lysc_is_key(node->schema)) {
      char* const path = lyd_path(node, LYD_PATH_STD, nullptr, 0);
      values.push_back({path_in_operational(path), lyd_get_value(node), false});
      std::free(path);
    }
    LYD_TREE_DFS_END(data.get(), node);
  }
  return values;
}

std::vector<std::string> operational_paths() {
  std::vector<std::string> paths;
  for (const char* const container : {"trunks/trunk/layer3-sub-interfaces", "trunks/trunk/vlan-switched",
                                      "interfaces/interface/encapsulation-details"}) {
    const std::string path = fmt::format("/Vexnet-OS-l2-eth-infra-oper:vlan/nodes/node/{}", container);
    const lysc_node* const schema = lys_find_path(models().get(), nullptr, path.c_str(), 0);
    std::vector<NativeValue> values;
    collect(schema, schema->name, values);
    for (const NativeValue& each : values) {
      if (std::find(paths.begin(), paths.end(), each.path) == paths.end()) paths.push_back(each.path);
    }
  }
  return paths;
}

std::string path_in_operational(const std::string& instance_path) {
  constexpr std::string_view kKey = "[interface='";
  return instance_path.substr(instance_path.find("']/", instance_path.find(kKey)) + 3);
}

}  // namespace mapping
