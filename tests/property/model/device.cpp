// The way of an edit through the model.
#include "property/model/device.h"

#include <algorithm>
#include <set>

#include "property/model/faults.h"
#include "property/model/leaves.h"

namespace property {

namespace {

// What the request says about places, whatever stands in them.
class Mentions {
 public:
  Mentions(const Request& request, const Config& before) : before_(before) {
    collect(request.interfaces, "", request.default_operation);
  }

  // The request names the place or something in it.
  bool names(const std::string& path) const { return below(named_, path); }
  // An entry of a leaf-list in the place.
  bool names_leaf_list(const std::string& path) const { return below(leaf_lists_, path); }

  // The place goes as a whole, or comes anew as a whole.
  bool clears(const std::string& path) const {
    for (std::size_t end = path.size(); end != std::string::npos;
         end = end == 0 ? std::string::npos : path.rfind('/', end - 1)) {
      if (cleared_.contains(path.substr(0, end))) return true;
    }
    return false;
  }

  // The containers in the place that are replaced, while the place as a whole is not.
  std::vector<std::string> replaced_inside(const std::string& path) const {
    std::vector<std::string> found;
    for (auto each = replaced_.lower_bound(path + "/"); each != replaced_.end() && each->starts_with(path + "/");
         ++each) {
      found.push_back(each->substr(path.size() + 1));
    }
    return found;
  }

  // The place itself is replaced.
  bool replaces(const std::string& path) const { return replaced_.contains(path); }

  // Containers that are written without anything in them.
  const std::vector<std::string>& written_empty() const { return written_empty_; }

  // The request wants the entry as such: it names it alone, or says something of what stands in it, if only that it
  // goes.
  bool wants_entry(const std::string& path) const { return wanted_entries_.contains(path); }

 private:
  // Taking away what is there speaks of it; an empty element does not.
  bool has_subs(const Element& entry, const std::string& path) const {
    return std::any_of(entry.children.begin(), entry.children.end(), [this, &path](const Element& child) {
      const bool takes_away = removes(child.op) || child.op == Op::replace;
      return child.name == "subinterfaces" &&
             (!child.children.empty() || (takes_away && exists(before_, path_below(path, child))));
    });
  }

  // Leaves that are known anyway say nothing, and neither does an empty element.
  static bool says_something(const Element& element, const std::string& path) {
    if (!is_list(element.name) && (removes(element.op) || element.op == Op::replace)) return true;
    const Leaf* const leaf = find_leaf(place_of(path).below);
    if (leaf != nullptr) return !is_own(*leaf);
    return std::any_of(element.children.begin(), element.children.end(), [&path](const Element& child) {
      return child.name != "subinterfaces" && says_something(child, path_below(path, child));
    });
  }

  static bool below(const std::set<std::string>& paths, const std::string& path) {
    const auto found = paths.lower_bound(path);
    return found != paths.end() && (*found == path || found->starts_with(path + "/"));
  }

  void collect(const Element& element, const std::string& parent, Op outer) {
    const std::string path = path_below(parent, element);
    const Op op = element.op == Op::inherit ? outer : element.op;
    const bool term = find_leaf(place_of(path).below) != nullptr;
    named_.insert(path);
    if (is_leaf_list(place_of(path).below)) leaf_lists_.insert(path);
    if (!term && (removes(op) || op == Op::replace)) cleared_.insert(path);
    if (!term && op == Op::replace) replaced_.insert(path);
    if (removes(op)) return;
    if (!term && element.children.empty()) written_empty_.push_back(path);
    const bool named_alone = !has_subs(element, path);
    if (is_list(element.name) && (named_alone || says_something(element, path))) wanted_entries_.insert(path);
    for (const Element& child : element.children) collect(child, path, op == Op::replace ? Op::merge : op);
  }

  const Config& before_;
  std::set<std::string> named_;
  std::set<std::string> leaf_lists_;
  std::set<std::string> cleared_;
  std::set<std::string> replaced_;
  std::set<std::string> wanted_entries_;
  std::vector<std::string> written_empty_;
};

bool is_there(const Config& config, const Element& element, const std::string& path) {
  if (!is_leaf_list(place_of(path).below)) return exists(config, path);
  const auto found = config.find(path);
  return found != config.end() &&
         std::find(found->second.begin(), found->second.end(), element.value) != found->second.end();
}

// No leaf, no entry, nor anything that goes.
bool holds_nothing(const Element& element, const std::string& path) {
  if (find_leaf(place_of(path).below) != nullptr) return false;
  return std::all_of(element.children.begin(), element.children.end(), [&path](const Element& child) {
    return !is_list(child.name) && !removes(child.op) && holds_nothing(child, path_below(path, child));
  });
}

// What is not there needs no removal, and what was named only for its sake is not asked for, but for entries in what is
// `replaced`: there, each that is named is meant. True when nothing is left. What is replaced is empty before its new
// content comes.
bool drop_absent(Element& element, const std::string& parent, Op outer, const Config& there, bool replaced = false) {
  const std::string path = path_below(parent, element);
  const Op op = element.op == Op::inherit ? outer : element.op;
  if (op == Op::remove) return !is_there(there, element, path);
  if (op == Op::delete_) return false;
  // An entry that the operation none does not find is a fault, whatever it holds.
  if (op == Op::none && is_list(element.name) && !exists(there, path)) return false;
  const Config below = op == Op::replace ? Config() : there;
  const bool replaces = replaced || op == Op::replace;
  const std::size_t dropped = std::erase_if(element.children, [&](Element& child) {
    return drop_absent(child, path, op == Op::replace ? Op::merge : op, below, replaces);
  });
  if (op == Op::replace && !is_list(element.name) && holds_nothing(element, path) && !exists(there, path)) return true;
  const bool meant = (replaced && is_list(element.name)) || op == Op::replace;
  return dropped > 0 && element.children.empty() && element.op == Op::inherit && !meant;
}

// True for what asks for nothing: leaves that the operation none leaves alone, and what holds nothing.
bool drop_idle(Element& element, const std::string& parent, Op outer) {
  const std::string path = path_below(parent, element);
  const Op op = element.op == Op::inherit ? outer : element.op;
  if (removes(op)) return false;
  std::erase_if(element.children,
                [&](Element& child) { return drop_idle(child, path, op == Op::replace ? Op::merge : op); });
  if (find_leaf(place_of(path).below) != nullptr) return op == Op::none;
  if (!element.children.empty()) return false;
  if (is_list(element.name)) return op == Op::none;
  return element.op != Op::replace && op != Op::replace;
}

bool has_all(const Values& values, const Values& wanted) {
  return std::all_of(wanted.begin(), wanted.end(), [&values](const std::string& value) {
    return std::find(values.begin(), values.end(), value) != values.end();
  });
}

// Something of a region goes: a leaf, or an entry of a leaf-list. A changed value is no loss.
bool loses(const Config& before, const Config& after, const std::string& region) {
  const Config there = part(before, region);
  return std::any_of(there.begin(), there.end(), [&after, &region](const auto& leaf) {
    const std::string path = region + "/" + leaf.first;
    const auto found = after.find(path);
    if (found == after.end()) return true;
    return is_leaf_list(place_of(path).below) && !has_all(found->second, leaf.second);
  });
}

std::string form_of(const std::string& path) {
  const std::size_t begin = path.find("/vlan/match/");
  if (begin == std::string::npos) return {};
  return path.substr(0, path.find('/', begin + 12));
}

// The form that the request brings takes the place of the others.
void keep_one_form(Config& config, const Config& written, std::vector<std::string>& dropped) {
  for (const auto& each : written) {
    const std::string form = form_of(each.first);
    if (form.empty()) continue;
    const std::string match = form.substr(0, form.rfind('/'));
    for (const auto& other : part(config, match)) {
      const std::string path = match + "/" + other.first;
      const std::string other_form = form_of(path);
      if (other_form == form) continue;
      if (std::find(dropped.begin(), dropped.end(), other_form) == dropped.end()) dropped.push_back(other_form);
      config.erase(path);
    }
  }
}

// Every entry says its name and kind.
void complete(Config& config) {
  Config own;
  for (const auto& each : config) {
    const Place place = place_of(each.first);
    if (place.interface.empty()) continue;
    own.merge(decode(native_name(place), {}));
  }
  config.merge(own);
}

// A trunk that is written has to fit.
void check_trunk(const Region& region, const Config& leaves, std::vector<Fault>& faults) {
  const auto trunk = leaves.find("trunk-vlans");
  if (trunk != leaves.end() && trunk_text(trunk->second).size() > kLongestTrunkText) {
    faults.push_back({"invalid-value", region.path + "/trunk-vlans"});
  }
}

// The limits of the native form, as far as the request meets them.
void check_limits(const Region& region, const Config& after, const Config& written, std::vector<Fault>& faults) {
  constexpr std::size_t kListIds = 9;
  for (const auto& [leaf, values] : part(after, region.path)) {
    const std::string path = region.path + "/" + leaf;
    if (!written.contains(path)) continue;
    const bool list = leaf.ends_with("vlan-ids");
    if (list && values.size() > kListIds) faults.push_back({"invalid-value", path});
    if (leaf == "trunk-vlans") check_trunk(region, part(after, region.path), faults);
  }
}

struct Edit {
  const Config& before;
  const Config& after;
  const Config& written;
  const Mentions& mentions;
};

Entry l3_leaves(const Entry& region) {
  Entry leaves;
  for (const auto& leaf : region) {
    if (leaf.first.starts_with("vlan-sub-configuration/")) leaves.insert(leaf);
  }
  return leaves;
}

// The native container in which a form of match stands goes with any of its containers.
void clear_native(Entry& region, Unit unit, const std::string& container, bool l2) {
  const std::string form = container.substr(0, container.find('/'));
  const bool identifier = !l2 && (form == "single-tagged" || form == "double-tagged");
  const std::string native = unit != Unit::match ? ""
                             : identifier        ? "vlan-sub-configuration/vlan-identifier/"
                                                 : "ethernet-service/encapsulation/";
  std::erase_if(region, [&native](const auto& leaf) { return leaf.first.starts_with(native); });
}

// Containers that only make sense with something in them: a port's VLANs, and lists.
void check_empty(const Edit& edit, std::vector<Fault>& faults) {
  for (const std::string& path : edit.mentions.written_empty()) {
    const bool switched = path.ends_with("/switched-vlan/config");
    const bool list = path.ends_with("-list/config");
    // What goes is taken away together with its match.
    if ((switched && !edit.mentions.replaces(path)) || (list && !exists(edit.before, path)))
      faults.push_back({"invalid-value", path});
  }
}

// The native leaves of a region after the edit; a region that does not read whole cannot be edited in part.
Entry new_region(const std::string& name, const Entry& entry, const Region& region, const Edit& edit,
                 std::vector<Fault>& faults, std::vector<std::string>& told) {
  Entry there = region_of(entry, region.unit);
  const Config after = part(edit.after, region.path);
  if (edit.mentions.clears(region.path)) {
    Entry fresh = encode(region.unit, after, is_l2(entry));
    // What belongs to L3 is out of reach where the sub-interface is L2.
    if (is_l2(entry)) fresh.merge(l3_leaves(there));
    return fresh;
  }
  if (!edit.mentions.names(region.path)) return there;
  const bool goes = loses(edit.before, edit.after, region.path);
  const bool lists = !there.empty() && edit.mentions.names_leaf_list(region.path);
  if ((goes || lists) && !there.empty() && !reads_whole(name, entry, region)) {
    faults.push_back({"operation-failed", region.path});
    return there;
  }
  if (goes) {
    check_trunk(region, after, faults);
    return encode(region.unit, after, is_l2(entry));
  }
  if (!there.empty() && !reads_whole(name, entry, region)) told.push_back(region.path);
  Config asked = part(edit.written, region.path);
  for (auto& [leaf, values] : asked) {
    const auto whole = after.find(leaf);
    if (whole != after.end()) values = whole->second;
  }
  for (const std::string& container : edit.mentions.replaced_inside(region.path)) {
    clear_native(there, region.unit, container, is_l2(entry));
  }
  Entry merged = encode(region.unit, asked, is_l2(entry));
  merged.insert(there.begin(), there.end());
  return merged;
}

bool is_known_anyway(const std::string& path) {
  const Leaf* const leaf = find_leaf(place_of(path).below);
  return leaf == nullptr || leaf->type == Type::own_index || leaf->type == Type::own_name ||
         leaf->type == Type::own_type;
}

bool is_default(const std::string& path, const std::string& value) {
  return path.ends_with("/config/enabled") && value == "true";
}

}  // namespace

std::vector<Change> changes(const Config& asked, const Config& found) {
  std::map<std::string, Change> by_path;
  const auto collect = [&by_path](const Config& config, std::string Change::*side) {
    for (const auto& [path, values] : config) {
      if (is_known_anyway(path)) continue;
      for (const std::string& value : values) {
        if (is_default(path, value)) continue;
        const std::string key = is_leaf_list(place_of(path).below) ? path + "[" + value + "]" : path;
        by_path[key].path = key;
        by_path[key].*side = value;
      }
    }
  };
  collect(asked, &Change::asked);
  collect(found, &Change::found);
  std::vector<Change> differing;
  for (const auto& each : by_path) {
    if (each.second.asked != each.second.found) differing.push_back(each.second);
  }
  return differing;
}

std::string to_text(const std::vector<Change>& changes) {
  std::string text;
  for (const Change& each : changes)
    text += each.path + ": asked \"" + each.asked + "\", found \"" + each.found + "\"\n";
  return text;
}

std::string to_text(const std::vector<Fault>& faults) {
  std::string text;
  for (const Fault& each : faults) text += each.tag + " " + each.path + "\n";
  return text;
}

Verdict Device::apply(const Request& asked) {
  Verdict verdict;
  find_request_faults(asked, verdict.faults);
  const Config before = read();
  Request request = asked;
  if (drop_absent(request.interfaces, "", request.default_operation, before)) request.interfaces.children.clear();
  Config after = before;
  edit_config(after, request, verdict.faults);
  const Config written = written_by(request);
  keep_one_form(after, written, verdict.told);
  complete(after);
  settle_conditions(after, written, verdict.faults, verdict.told);

  if (drop_idle(request.interfaces, "", request.default_operation)) request.interfaces.children.clear();
  const Mentions mentions(request, before);
  const Edit edit{before, after, written, mentions};
  check_empty(edit, verdict.faults);
  Native changed = native_;
  std::erase_if(changed, [&after](const auto& each) { return !exists(after, openconfig_path(each.first)); });
  std::vector<std::string> unwhole;
  for (const auto& each : after) {
    const Place place = place_of(each.first);
    const std::string name = native_name(place);
    const std::string path = openconfig_path(name);
    if (place.interface.empty() || path != each.first) continue;
    const bool known = changed.contains(name);
    Entry entry = known ? changed.at(name) : Entry();
    if (!known && !place.index.empty() && new_entries_are_l2_) entry["l2-transport"];
    // Of what is replaced, the layer stays.
    if (mentions.clears(path)) std::erase_if(entry, [](const auto& leaf) { return leaf.first != "l2-transport"; });
    set_own_leaves(entry, path, after);
    for (const Region& region : regions_of(name)) {
      check_limits(region, after, written, verdict.faults);
      if (known && !reads_whole(name, entry, region)) unwhole.push_back(region.path);
      Entry leaves = new_region(name, entry, region, edit, verdict.faults, verdict.told);
      keep_stored_text(leaves, entry);
      set_region(entry, region.unit, leaves);
    }
    const bool comes = !place.index.empty() || mentions.wants_entry(path) || mentions.clears(path);
    if (known || comes) changed[name] = entry;
  }
  const Config found = decode(changed);
  verdict.changes = changes(after, found);
  for (const auto& [name, entry] : changed) {
    for (const Region& region : regions_of(name)) {
      for (const Exception* const each : exceptions_of(region.unit, part(after, region.path))) {
        verdict.explanations.emplace_back(each->name);
      }
    }
  }
  if (!unwhole.empty()) verdict.explanations.emplace_back("merged into what does not read whole");
  verdict.unsaid = unsaid_after(reach_of(asked, native_), native_, changed);
  const auto goes =
      std::find_if(verdict.unsaid.begin(), verdict.unsaid.end(), [](const auto& leaf) { return leaf.goes; });
  if (strict_ && goes != verdict.unsaid.end()) verdict.faults.push_back({"operation-failed", goes->path});
  if (strict_ && !verdict.changes.empty()) verdict.faults.push_back({"operation-failed", verdict.changes.front().path});
  if (verdict.faults.empty()) native_ = std::move(changed);
  return verdict;
}

}  // namespace property
