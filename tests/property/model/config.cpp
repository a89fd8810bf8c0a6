// RFC 6241's edit-config on plain data structures.
#include "property/model/config.h"

#include <algorithm>

#include "property/model/leaves.h"

namespace property {

namespace {

bool is_below(const std::string& path, const std::string& above) {
  return path.size() > above.size() && path.starts_with(above) && path[above.size()] == '/';
}

Config::const_iterator first_below(const Config& config, const std::string& path) {
  const auto found = config.lower_bound(path + "/");
  return found != config.end() && is_below(found->first, path) ? found : config.end();
}

class Editor {
 public:
  Editor(Config& config, std::vector<Fault>& faults) : config_(config), faults_(faults) {}

  void apply(const Element& element, const std::string& parent, Op outer) {
    const std::string path = path_below(parent, element);
    const Op op = element.op == Op::inherit ? outer : element.op;
    if (find_leaf(place_of(path).below) != nullptr) return apply_term(element, path, op);
    const bool there = exists(config_, path);
    if (op == Op::delete_ || op == Op::remove) {
      if (!there && op == Op::delete_) refuse("data-missing", path);
      erase(config_, path);
      return;
    }
    if (op == Op::create && there) refuse("data-exists", path);
    if (op == Op::replace) erase(config_, path);
    if (op == Op::none) {
      if (!there && is_list(element.name)) refuse("data-missing", path);
    } else if (is_list(element.name)) {
      add_entry(path);
    }
    const Op inner = op == Op::replace ? Op::merge : op;
    for (const Element& child : element.children) apply(child, path, inner);
  }

 private:
  void refuse(const char* tag, const std::string& path) { faults_.push_back({tag, path}); }

  // An entry, and the ones in which it stands.
  void add_entry(const std::string& path) {
    const Place place = place_of(path);
    config_[interface_path(place.interface)];
    config_[path];
  }

  void apply_term(const Element& element, const std::string& path, Op op) {
    const Leaf& leaf = *find_leaf(place_of(path).below);
    const std::string value = plain_value(leaf, element.value);
    const auto found = config_.find(path);
    const bool there = found != config_.end() && (!leaf.is_list || std::find(found->second.begin(), found->second.end(),
                                                                             value) != found->second.end());
    switch (op) {
      case Op::delete_:
      case Op::remove:
        if (!there && op == Op::delete_) refuse("data-missing", path);
        if (there) take_out(path, leaf.is_list, value);
        break;
      case Op::none:
        if (!there) refuse("data-missing", path);
        break;
      case Op::create:
        if (there) refuse("data-exists", path);
        [[fallthrough]];
      case Op::merge:
      case Op::replace:
      case Op::inherit:
        if (!leaf.is_list) config_[path] = {value};
        if (leaf.is_list && !there) config_[path].push_back(value);
        break;
    }
  }

  void take_out(const std::string& path, bool is_list, const std::string& value) {
    Values& values = config_[path];
    if (is_list) std::erase(values, value);
    if (!is_list || values.empty()) config_.erase(path);
  }

  Config& config_;
  std::vector<Fault>& faults_;
};

void collect_written(const Element& element, const std::string& parent, Op outer, Config& written) {
  const std::string path = path_below(parent, element);
  const Op op = element.op == Op::inherit ? outer : element.op;
  if (removes(op)) return;
  const Leaf* const leaf = find_leaf(place_of(path).below);
  if (leaf != nullptr && op != Op::none) written[path].push_back(plain_value(*leaf, element.value));
  for (const Element& child : element.children) collect_written(child, path, op, written);
}

}  // namespace

std::string interface_path(std::string_view name) {
  return "interfaces/interface[" + std::string(name) + "]";
}

std::string subinterface_path(std::string_view name, std::string_view index) {
  return interface_path(name) + "/subinterfaces/subinterface[" + std::string(index) + "]";
}

Place place_of(const std::string& path) {
  Place place;
  std::string_view rest = path;
  const auto take = [&rest](std::string_view head, std::string& key) {
    if (!rest.starts_with(head)) return false;
    const std::size_t end = rest.find(']');
    key = rest.substr(head.size(), end - head.size());
    rest.remove_prefix(end + 1);
    if (!rest.empty()) rest.remove_prefix(1);
    return true;
  };
  if (take("interfaces/interface[", place.interface)) take("subinterfaces/subinterface[", place.index);
  place.below = rest;
  return place;
}

std::string path_below(const std::string& parent, const Element& element) {
  std::string path = parent.empty() ? element.name : parent + "/" + element.name;
  if (is_list(element.name)) path += "[" + element.value + "]";
  return path;
}

bool exists(const Config& config, const std::string& path) {
  return config.contains(path) || first_below(config, path) != config.end();
}

void erase(Config& config, const std::string& path) {
  config.erase(path);
  std::erase_if(config, [&path](const auto& each) { return is_below(each.first, path); });
}

void edit_config(Config& config, const Request& request, std::vector<Fault>& faults) {
  Editor(config, faults).apply(request.interfaces, "", request.default_operation);
}

Config written_by(const Request& request) {
  Config written;
  collect_written(request.interfaces, "", request.default_operation, written);
  return written;
}

Config part(const Config& config, const std::string& path) {
  Config found;
  for (auto each = first_below(config, path); each != config.end() && is_below(each->first, path); ++each) {
    found.emplace(each->first.substr(path.size() + 1), each->second);
  }
  return found;
}

std::string to_text(const Config& config) {
  std::string text;
  for (const auto& [path, values] : config) {
    text += path;
    for (const std::string& value : values) text += " " + value;
    text += "\n";
  }
  return text;
}

}  // namespace property
