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

void collect_native(const lyd_node* node, const std::string& path, Entry& entry) {
  std::string here = path.empty() ? node->schema->name : path + "/" + node->schema->name;
  if (node->schema->nodetype == LYS_LIST) here += std::string("[") + lyd_get_value(lyd_child(node)) + "]";
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

constexpr char kInterfaceNs[] = "http://vexnet.com/ns/yang/Vexnet-OS-interface-cfg";
constexpr char kInfraNs[] = "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg";

bool is_of_interface(std::string_view element) {
  return element == "l2-transport" || element == "description" || element == "mtu" || element == "shutdown";
}

// The name of a step, without the key of a list.
std::string element_of(const std::string& step) {
  return step.substr(0, step.find('['));
}

// The elements of an entry, written from its sorted paths: a container stays open as long as paths go through it.
void write_entry(const Entry& entry, std::string& text) {
  std::vector<std::string> open;
  const auto close_to = [&text, &open](std::size_t depth) {
    while (open.size() > depth) {
      text += "</" + element_of(open.back()) + ">";
      open.pop_back();
    }
  };
  for (const auto& [path, value] : entry) {
    std::vector<std::string> steps;
    for (std::size_t begin = 0; begin <= path.size();) {
      const std::size_t end = std::min(path.find('/', begin), path.size());
      steps.push_back(path.substr(begin, end - begin));
      begin = end + 1;
    }
    std::size_t shared = 0;
    while (shared < open.size() && shared + 1 < steps.size() && open[shared] == steps[shared]) ++shared;
    close_to(shared);
    for (std::size_t i = shared; i < steps.size(); ++i) {
      const bool in_layer = i == 1 && steps[0] == "l2-transport";
      const bool of_infra = in_layer || (i == 0 && !is_of_interface(steps[i]));
      text += "<" + element_of(steps[i]);
      if (of_infra) text += " xmlns=\"" + std::string(kInfraNs) + "\"";
      text += ">";
      open.push_back(steps[i]);
    }
    text += value;
  }
  close_to(0);
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

std::vector<UnsaidLeaf> observe_unsaid(const std::vector<yfw::Unsaid>& unsaid) {
  std::vector<UnsaidLeaf> observed;
  for (const yfw::Unsaid& each : unsaid) {
    const std::string entry = "interface-configurations/interface-configuration[" + each.entry + "]/";
    const std::string path = observe_path(each.path);
    const std::string below = path.starts_with(entry) ? path.substr(entry.size()) : each.path;
    observed.push_back({each.entry, below, each.value, each.fate == yfw::Unsaid::Fate::goes});
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

std::string to_document(const Native& native) {
  std::string text = "<interface-configurations xmlns=\"" + std::string(kInterfaceNs) + "\">\n";
  for (const auto& [name, entry] : native) {
    text += "  <interface-configuration><interface-name>" + name + "</interface-name>";
    write_entry(entry, text);
    text += "</interface-configuration>\n";
  }
  return text + "</interface-configurations>\n";
}

}  // namespace property
