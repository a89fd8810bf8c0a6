// From every form to every other: nothing of the old form remains, or what remains is told. From a form to nothing:
// nothing but that form goes.
#include <gtest/gtest.h>

#include <algorithm>

#include "property/model/leaves.h"
#include "property/model/native_models.h"
#include "property/model/observe.h"
#include "property/model/runner.h"

namespace property {
namespace {

// Leaves of a unit that stand for one form, or for none.
struct Form {
  std::string name;
  Unit unit;
  Config leaves;
};

Config ids(const char* leaf, const Values& values) {
  return {{leaf, values}};
}

std::vector<Form> forms_of(Unit unit) {
  std::vector<Form> forms;
  const auto add = [&forms, unit](const std::string& name, const Config& leaves) {
    forms.push_back({name, unit, leaves});
  };
  add("nothing", {});
  switch (unit) {
    case Unit::match:
      add("single-tagged", ids("single-tagged/config/vlan-id", {"11"}));
      add("single-tagged-list", ids("single-tagged-list/config/vlan-ids", {"21", "22", "23"}));
      add("single-tagged-range",
          {{"single-tagged-range/config/low-vlan-id", {"31"}}, {"single-tagged-range/config/high-vlan-id", {"39"}}});
      add("double-tagged",
          {{"double-tagged/config/outer-vlan-id", {"41"}}, {"double-tagged/config/inner-vlan-id", {"42"}}});
      add("double-tagged-inner-list", {{"double-tagged-inner-list/config/outer-vlan-id", {"51"}},
                                       {"double-tagged-inner-list/config/inner-vlan-ids", {"52", "53"}}});
      add("double-tagged-outer-list", {{"double-tagged-outer-list/config/outer-vlan-ids", {"61", "62"}},
                                       {"double-tagged-outer-list/config/inner-vlan-id", {"63"}}});
      add("double-tagged-inner-range", {{"double-tagged-inner-range/config/outer-vlan-id", {"71"}},
                                        {"double-tagged-inner-range/config/inner-low-vlan-id", {"72"}},
                                        {"double-tagged-inner-range/config/inner-high-vlan-id", {"79"}}});
      add("double-tagged-outer-range", {{"double-tagged-outer-range/config/outer-low-vlan-id", {"81"}},
                                        {"double-tagged-outer-range/config/outer-high-vlan-id", {"88"}},
                                        {"double-tagged-outer-range/config/inner-vlan-id", {"89"}}});
      break;
    case Unit::ingress_mapping:
      add("PUSH",
          {{"config/vlan-stack-action", {"PUSH"}}, {"config/tpid", {"TPID_0X88A8"}}, {"config/vlan-id", {"11"}}});
      add("SWAP", {{"config/vlan-stack-action", {"SWAP"}}, {"config/vlan-id", {"22"}}});
      add("POP", {{"config/vlan-stack-action", {"POP"}}});
      break;
    case Unit::switched:
      add("ACCESS", {{"interface-mode", {"ACCESS"}}, {"access-vlan", {"11"}}});
      add("TRUNK", {{"interface-mode", {"TRUNK"}}, {"trunk-vlans", {"21", "22..29"}}});
      add("TRUNK with a native VLAN",
          {{"interface-mode", {"TRUNK"}}, {"trunk-vlans", {"31"}}, {"native-vlan", {"32"}}});
      break;
  }
  for (const Exception& exception : exceptions()) {
    if (exception.unit == unit) add(exception.name, exception.example);
  }
  return forms;
}

enum class Way : std::uint8_t { merge, replace, delete_then_create, delete_and_create };

const char* name_of(Way way) {
  switch (way) {
    case Way::merge:
      return "Merge";
    case Way::replace:
      return "Replace";
    case Way::delete_then_create:
      return "DeleteThenCreate";
    case Way::delete_and_create:
      break;
  }
  return "DeleteAndCreateInOneRequest";
}

// A sub-interface or interface in which a unit stands.
struct Stand {
  const char* name;
  const char* native_name;
  Unit unit;
  bool l2;
};

void PrintTo(const Stand& stand, std::ostream* out) {
  *out << stand.name;
}

constexpr Stand kStands[] = {
    {"MatchOnL2", "Ethernet0/0/1.100", Unit::match, true},
    {"MatchOnL3", "Ethernet0/0/1.100", Unit::match, false},
    {"IngressMapping", "Bundle-Ether5.100", Unit::ingress_mapping, true},
    {"EthernetPort", "Ethernet0/0/1", Unit::switched, false},
    {"Bundle", "Bundle-Ether5", Unit::switched, false},
};

// Where the unit stands in the OpenConfig tree.
std::string unit_path_of(const Stand& stand) {
  for (const Region& region : regions_of(stand.native_name)) {
    if (region.unit == stand.unit) return region.path;
  }
  return {};
}

Entry entry_of(const Stand& stand, const Form& form) {
  Entry entry = encode(stand.unit, form.leaves, stand.l2);
  if (stand.l2) entry["l2-transport"];
  entry["description"] = "stays";
  return entry;
}

bool is_plain(const Form& form) {
  return exceptions_of(form.unit, form.leaves).empty();
}

class Transitions : public testing::TestWithParam<std::tuple<Stand, Way>> {
 protected:
  const Stand& stand() const { return std::get<0>(GetParam()); }
  Way way() const { return std::get<1>(GetParam()); }

  std::string unit_path() const { return unit_path_of(stand()); }
  Entry entry_with(const Form& form) const { return entry_of(stand(), form); }

  Request writing(const Form& form, Op op) const {
    Request request;
    element_at(request, unit_path());
    for (const auto& [leaf, values] : form.leaves) add_leaf(request, unit_path() + "/" + leaf, values);
    element_at(request, unit_path()).op = op;
    return request;
  }

  Config read_of(const Form& form) const { return part(decode(stand().native_name, entry_with(form)), unit_path()); }

  // The old leaves and entries are deleted one by one, beside what is written.
  Request exchanging(const Form& from, const Form& to) const {
    Request request = writing(to, Op::inherit);
    for (const auto& [leaf, values] : read_of(from)) {
      const std::string path = unit_path() + "/" + leaf;
      const bool list = is_leaf_list(place_of(path).below);
      if (to.leaves.contains(leaf) && !list) continue;
      const std::size_t cut = path.rfind('/');
      Element& parent = element_at(request, path.substr(0, cut));
      for (const std::string& value : values) {
        if (has_value(to.leaves, leaf, value)) continue;
        parent.children.push_back({.name = path.substr(cut + 1), .value = value, .op = Op::delete_});
      }
    }
    return request;
  }

  static bool has_value(const Config& leaves, const std::string& leaf, const std::string& value) {
    const auto found = leaves.find(leaf);
    return found != leaves.end() && std::find(found->second.begin(), found->second.end(), value) != found->second.end();
  }

  // What a merge keeps of the old form: leaves of the same form of match, of the same mapping, of the same mode.
  bool stays(const std::string& leaf, const Form& to) const {
    const std::string form = leaf.substr(0, leaf.find('/'));
    if (stand().unit == Unit::match) return to.leaves.begin()->first.starts_with(form + "/");
    if (stand().unit == Unit::ingress_mapping || !to.leaves.contains("interface-mode")) return true;
    return leaf != (to.leaves.at("interface-mode").front() == "ACCESS" ? "trunk-vlans" : "access-vlan") &&
           (leaf != "native-vlan" || to.leaves.at("interface-mode").front() == "TRUNK");
  }

  Form outcome(const Form& from, const Form& to) const {
    Form result = to;
    if (way() != Way::merge) return result;
    for (const auto& [leaf, values] : read_of(from)) {
      if (!stays(leaf, to)) continue;
      Values& there = result.leaves[leaf];
      const bool list = is_leaf_list(place_of(unit_path() + "/" + leaf).below);
      if (there.empty()) {
        there = values;
      } else if (list) {
        Values all = values;
        for (const std::string& each : there) {
          if (std::find(all.begin(), all.end(), each) == all.end()) all.push_back(each);
        }
        there = all;
      }
    }
    return result;
  }

  std::vector<Request> requests(const Form& from, const Form& to) const {
    switch (way()) {
      case Way::merge:
        return {writing(to, Op::inherit)};
      case Way::replace:
        return {writing(to, Op::replace)};
      case Way::delete_then_create:
        return {writing({}, Op::remove), writing(to, Op::create)};
      case Way::delete_and_create:
        break;
    }
    return {exchanging(from, to)};
  }

  // Empty when all is well.
  std::string go(const Form& from, const Form& to) {
    const std::string start = to_document({{stand().native_name, entry_with(from)}});
    yfw::Host& host = hosts_.get(false, false);
    host.set_running({.text = start, .name = "start"});
    std::string text;
    bool told = false;
    for (const Request& request : requests(from, to)) {
      text += to_text(request);
      const std::string before = host.running().print(yfw::Format::xml);
      try {
        const std::string document = to_text(request);
        const yfw::EditResult result = host.apply({.text = document});
        told = told || !result.differences.empty() || !result.warnings.empty();
      } catch (const yfw::Refused& refused) {
        if (host.running().print(yfw::Format::xml) != before) return "refused, and yet changed";
        if (is_plain(from) && is_plain(to)) return std::string("refused: ") + refused.what() + "\n" + text;
        return {};
      }
    }
    const std::string wanted = to_text(Native{{stand().native_name, entry_with(outcome(from, to))}});
    const std::string got = to_text(observe_native(host.running()));
    const bool may_remain = told && !(is_plain(from) && is_plain(to));
    if (got == wanted || may_remain) return {};
    return text + "--- should be\n" + wanted + "--- is\n" + got;
  }

 private:
  Hosts hosts_;
};

TEST_P(Transitions, LeaveNothingBehindInSilence) {
  const std::vector<Form> forms = forms_of(stand().unit);
  for (const Form& from : forms) {
    for (const Form& to : forms) {
      // A merge of nothing, or of what is there, is no transition; creating what is there is refused.
      if (to.leaves.empty() || from.name == to.name) continue;
      EXPECT_EQ(go(from, to), "") << "from " << from.name << " to " << to.name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, Transitions,
                         testing::Combine(testing::ValuesIn(kStands),
                                          testing::Values(Way::merge, Way::replace, Way::delete_then_create,
                                                          Way::delete_and_create)),
                         [](const testing::TestParamInfo<Transitions::ParamType>& info) {
                           return std::string(std::get<0>(info.param).name) + "By" + name_of(std::get<1>(info.param));
                         });

// A container that is replaced or created by nothing, and the leaves that may be named in it.
struct Emptied {
  std::string path;
  std::string config;  // a container in it that holds the leaves, itself where it has none
  Config leaves;       // by their path below the unit
};

// How the nothing is written.
enum class Nothing : std::uint8_t {
  empty,
  empty_inside,
  removed_inside,
  removed_leaves,
  deleted_inside,
  deleted_leaves
};

constexpr Nothing kNothings[] = {Nothing::empty,          Nothing::empty_inside,   Nothing::removed_inside,
                                 Nothing::removed_leaves, Nothing::deleted_inside, Nothing::deleted_leaves};

class Emptying : public testing::TestWithParam<Stand> {
 protected:
  // The unit, what is around it, and what is in it.
  std::vector<Emptied> containers(const Form& named) const {
    const std::string unit = unit_path_of(GetParam());
    const std::string leaf = named.leaves.begin()->first;
    const std::size_t cut = leaf.rfind('/');
    const std::string config = cut == std::string::npos ? unit : unit + "/" + leaf.substr(0, cut);
    std::vector<Emptied> found{{unit, config, named.leaves}, {config, config, named.leaves}};
    if (GetParam().unit == Unit::switched) found.front().path = unit.substr(0, unit.rfind('/'));
    if (GetParam().unit == Unit::match) found.push_back({config.substr(0, config.rfind('/')), config, named.leaves});
    return found;
  }

  Request asking(const Emptied& emptied, Op op, Nothing nothing) const {
    Request request;
    element_at(request, emptied.path);
    const bool leaves = nothing == Nothing::removed_leaves || nothing == Nothing::deleted_leaves;
    const bool deletes = nothing == Nothing::deleted_leaves || nothing == Nothing::deleted_inside;
    if (leaves) {
      for (const auto& [leaf, values] : emptied.leaves)
        add_leaf(request, unit_path_of(GetParam()) + "/" + leaf, values);
      for (Element& each : element_at(request, emptied.config).children) each.op = deletes ? Op::delete_ : Op::remove;
    } else if (nothing != Nothing::empty && emptied.config != emptied.path) {
      element_at(request, emptied.config).op = nothing == Nothing::empty_inside ? Op::inherit
                                               : deletes                        ? Op::delete_
                                                                                : Op::remove;
    }
    element_at(request, emptied.path).op = op;
    return request;
  }

  // Empty when all is well.
  std::string go(const Form& from, const Emptied& emptied, Op op, Nothing nothing, Shape shape) {
    const Stand& stand = GetParam();
    const std::string unit = unit_path_of(stand);
    Config whole;
    for (const auto& [leaf, values] : from.leaves) whole[std::string(unit).append("/").append(leaf)] = values;
    const bool holds = exists(whole, emptied.path);
    const bool has_inside = nothing != Nothing::deleted_inside || emptied.config != emptied.path;
    const bool deletes = (nothing == Nothing::deleted_leaves || nothing == Nothing::deleted_inside) && has_inside;
    const bool is_vain = deletes || (holds && op == Op::create);
    Form after = from;
    if (!is_vain) {
      erase(whole, emptied.path);
      after.leaves = part(whole, unit);
    }

    yfw::Host& host = hosts_.get(false, false);
    host.set_running({.text = to_document({{stand.native_name, entry_of(stand, from)}}), .name = "start"});
    Request request = asking(emptied, op, nothing);
    request.shape = shape;
    const std::string text = to_text(request);
    std::string told;
    const auto tell = [&told](const std::string& path, const std::string& message) {
      told.append(path).append(": ").append(message).append("\n");
    };
    bool refused = false;
    try {
      const yfw::EditResult result =
          host.apply({.text = text, .format = shape == Shape::json ? yfw::Format::json : yfw::Format::xml});
      for (const yfw::Warning& each : result.warnings) tell(each.path, each.message);
      for (const yfw::Difference& each : result.differences) tell(each.path, "differs");
      if (!holds && !result.native.empty()) told += result.native.print(yfw::Format::xml);
    } catch (const yfw::Refused& refusal) {
      refused = true;
      if (!is_vain) told = std::string("refused: ") + refusal.what() + "\n";
    }
    if (is_vain && !refused) told = "not refused\n";
    const std::string wanted = to_text(Native{{stand.native_name, entry_of(stand, after)}});
    const std::string got = to_text(observe_native(host.running()));
    if (got == wanted && told.empty()) return {};
    return text + told + "--- should be\n" + wanted + "--- is\n" + got;
  }

 private:
  Hosts hosts_;
};

TEST_P(Emptying, TouchesNothingElse) {
  const std::vector<Form> forms = forms_of(GetParam().unit);
  int asked = 0;
  for (const Form& from : forms) {
    for (const Form& named : forms) {
      if (!is_plain(from) || !is_plain(named) || named.leaves.empty()) continue;
      for (const Emptied& emptied : containers(named)) {
        for (const Nothing nothing : kNothings) {
          for (const Op op : {Op::replace, Op::create}) {
            for (const Shape shape : {Shape::config, Shape::json}) {
              ++asked;
              EXPECT_EQ(go(from, emptied, op, nothing, shape), "") << "where there is " << from.name;
            }
          }
        }
      }
    }
  }
  EXPECT_GT(asked, 500);
}

INSTANTIATE_TEST_SUITE_P(All, Emptying, testing::ValuesIn(kStands),
                         [](const testing::TestParamInfo<Stand>& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace property
