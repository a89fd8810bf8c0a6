// From libyang's trees to plain data structures.
#include "property/model/observe.h"

#include <libyang/libyang.h>

#include <algorithm>
#include <string_view>

namespace property {

namespace {

bool is_term_node(const lyd_node* node) {
  return (node->schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
}

bool is_key_node(const lyd_node* node) {
  return node->schema->nodetype == LYS_LEAF && lysc_is_key(node->schema);
}

std::string local(const std::string& value) {
  return value.substr(value.rfind(':') + 1);
}

std::string value_of(const lyd_node* node) {
  const auto* const type = reinterpret_cast<const lysc_node_leaf*>(node->schema)->type;
  const std::string value = lyd_get_value(node);
  return type->basetype == LY_TYPE_IDENT ? local(value) : value;
}

// The predicate of an entry of a list with one key.
std::string predicate_of(const lyd_node* entry) {
  const lyd_node* const key = lyd_child(entry);
  return std::string("[") + key->schema->name + "='" + lyd_get_value(key) + "']";
}

void collect_native(const lyd_node* node, const std::string& path, Entry& entry) {
  std::string here = path.empty() ? node->schema->name : path + "/" + node->schema->name;
  if (node->schema->nodetype == LYS_LIST) here += predicate_of(node);
  if (is_term_node(node)) {
    entry[here] = value_of(node);
    return;
  }
  if (node->schema->nodetype == LYS_CONTAINER && lysc_is_np_cont(node->schema) == 0) entry[here];
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    collect_native(child, here, entry);
  }
}

void collect_config(const lyd_node* node, const std::string& parent, Config& config) {
  if (node->flags & LYD_DEFAULT) return;
  std::string path = parent.empty() ? node->schema->name : parent + "/" + node->schema->name;
  if (is_term_node(node)) {
    if (!is_key_node(node)) config[path].push_back(value_of(node));
    return;
  }
  if (node->schema->nodetype == LYS_LIST) {
    path += std::string("[") + lyd_get_value(lyd_child(node)) + "]";
    config[path];
  }
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    collect_config(child, path, config);
  }
}

// The part of a path from a place on, without the modules of its steps.
std::string without_modules(const std::string& path, std::size_t begin) {
  std::string plain;
  bool quoted = false;
  std::size_t step = 0;
  for (const char each : path.substr(begin)) {
    if (each == '\'') quoted = !quoted;
    if (each == ':' && !quoted) {
      plain.resize(step);
      continue;
    }
    plain += each;
    if (each == '/' && !quoted) step = plain.size();
  }
  return plain;
}

}  // namespace

Native observe_native(const yfw::Data& data) {
  Native native;
  const lyd_node* top = nullptr;
  LY_LIST_FOR(data.get(), top) {
    const lyd_node* node = nullptr;
    LY_LIST_FOR(lyd_child(top), node) {
      Entry& entry = native[lyd_get_value(lyd_child(node))];
      const lyd_node* child = nullptr;
      LY_LIST_FOR(lyd_child_no_keys(node), child) {
        collect_native(child, "", entry);
      }
    }
  }
  return native;
}

Config observe_config(const yfw::Data& data) {
  Config config;
  const lyd_node* top = nullptr;
  LY_LIST_FOR(data.get(), top) {
    collect_config(top, "", config);
  }
  return config;
}

std::vector<Change> observe_changes(const std::vector<yfw::Difference>& differences) {
  std::vector<Change> observed;
  for (const yfw::Difference& each : differences) {
    observed.push_back({observe_path(each.path), local(each.asked), local(each.found)});
  }
  std::sort(observed.begin(), observed.end());
  return observed;
}

std::string observe_native_entry(const std::string& instance_path) {
  constexpr std::string_view kHead =
      "/Vexnet-OS-interface-cfg:interface-configurations/interface-configuration[interface-name=";
  if (!instance_path.starts_with(kHead) || !instance_path.ends_with(']')) return {};
  // Quoted, in single or double quotes.
  const std::string quoted = instance_path.substr(kHead.size(), instance_path.size() - kHead.size() - 1);
  const std::string name = quoted.substr(1, quoted.size() - 2);
  return name.find(quoted.front()) == std::string::npos ? name : "";
}

std::string observe_native_path(const std::string& entry, const std::string& instance_path) {
  const bool has_quote = entry.find('\'') != std::string::npos;
  const std::string predicate = "[interface-name=" + (has_quote ? "\"" + entry + "\"" : "'" + entry + "'") + "]/";
  const std::size_t found = instance_path.find(predicate);
  return found == std::string::npos ? instance_path : without_modules(instance_path, found + predicate.size());
}

std::vector<UnsaidLeaf> observe_unsaid(const std::vector<yfw::Unsaid>& unsaid) {
  std::vector<UnsaidLeaf> observed;
  for (const yfw::Unsaid& each : unsaid) {
    const bool goes = each.fate == yfw::Unsaid::Fate::goes;
    observed.push_back({each.entry, observe_native_path(each.entry, each.path), each.value, goes});
  }
  std::sort(observed.begin(), observed.end());
  return observed;
}

std::string observe_path(const std::string& instance_path) {
  std::string path;
  std::size_t at = 0;
  while (at < instance_path.size()) {
    const std::size_t begin = at + 1;
    const std::size_t bracket = instance_path.find('[', begin);
    std::size_t end = instance_path.find('/', begin);
    std::string step;
    if (bracket < end) {
      const char quote = instance_path[instance_path.find('=', bracket) + 1];
      const std::size_t first = instance_path.find(quote, bracket) + 1;
      const std::size_t last = instance_path.find(quote, first);
      step = instance_path.substr(begin, bracket - begin);
      step = step.substr(step.find(':') + 1) + "[" + instance_path.substr(first, last - first) + "]";
      end = last + 2;
    } else {
      step = local(instance_path.substr(begin, std::min(end, instance_path.size()) - begin));
    }
    path += (path.empty() ? "" : "/") + step;
    at = end;
  }
  return path;
}

std::string invalid_because(const yfw::Data& data) {
  if (data.empty()) return {};
  yfw::Data copy = data.clone();
  const ly_ctx* const models = LYD_CTX(copy.get());
  ly_err_clean(const_cast<ly_ctx*>(models), nullptr);
  if (lyd_validate_all(copy.out(), nullptr, LYD_VALIDATE_NO_STATE | LYD_VALIDATE_PRESENT, nullptr) == LY_SUCCESS)
    return {};
  const ly_err_item* const last = ly_err_last(models);
  return last == nullptr || last->msg == nullptr ? "not valid" : last->msg;
}

}  // namespace property
