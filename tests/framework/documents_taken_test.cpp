// Data are built while their document is read. Whatever stands in it, and wherever it breaks off, that says the same as
// a document which is read as a whole before anything is built.
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

#include "framework/documents/build.h"
#include "framework/documents/documents.h"
#include "framework/documents/envelope.h"
#include "framework/documents/source.h"
#include "models_of_tests.h"

namespace yfw::test {
namespace {

using Purpose = TreeBuilder::Purpose;

constexpr char kL2Ns[] = "http://vexnet.com/ns/yang/Vexnet-OS-l2-eth-infra-cfg";
constexpr char kForeignNs[] = "urn:foreign";

// How many elements the builder held on to when it was told of an element: what was not taken is still there.
class Counting : public TreeBuilder {
 public:
  using TreeBuilder::TreeBuilder;
  void take(const Element& element) override {
    most_ = std::max(most_, held(element));
    TreeBuilder::take(element);
  }
  std::size_t most() const { return most_; }

 private:
  static std::size_t held(const Element& element) {
    std::size_t count = 1;
    for (const Element* child = element.first; child != nullptr; child = child->next) count += held(*child);
    return count;
  }
  std::size_t most_ = 0;
};

struct Outcome {
  std::string text;
  std::size_t held = 0;
};

// All that comes of a document, refusals with their line.
Outcome outcome(Purpose purpose, const Document& document, bool as_a_whole) {
  ly_ctx* const models = compact_models().get();
  EditDocument result;
  std::vector<ForeignSubtree> foreign;
  Counting builder(models, document.format, purpose, result);
  if (purpose == Purpose::configuration) builder.keep_foreign(foreign);
  Outcome all;
  all.text = outcome_of([&] {
    const Source source(
        document,
        [purpose](const char* ns) {
          return purpose == Purpose::configuration && std::string_view(ns).find("foreign") != std::string_view::npos;
        },
        as_a_whole ? nullptr : &builder);
    const Payload payload = find_payload(source, purpose == Purpose::edit ? Envelope::edit : Envelope::data);
    try {
      builder.finish(*payload.content);
    } catch (const Refused& refused) {
      return fmt::format("line {}: {}", builder.line(), described(refused.error()));
    }
    std::string text = result.tree.print(Format::xml);
    for (const Warning& each : result.warnings) text += fmt::format("warning: {}: {}\n", each.path, each.message);
    for (const ForeignSubtree& each : foreign) text += fmt::format("{}: {}\n", each.path(), each.text());
    for (const auto& [node, ns] : result.value_namespaces) text += fmt::format("value in {}\n", ns ? ns : "none");
    const TreeBuilder::LeftAttributes& left = builder.left_attributes();
    return text + fmt::format("{} attributes left, {} at {}\n", left.count, left.name, left.path);
  });
  all.held = builder.most();
  return all;
}

// An element of a document that is made up.
struct Made {
  std::string ns;      // "" is that of the parent
  std::string module;  // the same in JSON
  std::string name;
  std::string value = {};
  bool is_entry = false;
  std::string operation = {};
  std::vector<Made> children = {};
};

Made leaf(const std::string& name, const std::string& value) {
  return {"", "", name, value};
}

Made edit() {
  const Made vlan{
      kVlanNs,
      "openconfig-vlan",
      "vlan",
      "",
      false,
      "",
      {{"",
        "",
        "match",
        "",
        false,
        "",
        {{"", "", "single-tagged", "", false, "", {{"", "", "config", "", false, "", {leaf("vlan-id", "7")}}}}}}}};
  const auto subinterface = [&vlan](const char* index) {
    return Made{"",
                "",
                "subinterface",
                "",
                true,
                "",
                {leaf("index", index), {"", "", "config", "", false, "", {leaf("index", index)}}, vlan}};
  };
  const auto interface = [&](const char* name) {
    return Made{"",
                "",
                "interface",
                "",
                true,
                "",
                {leaf("name", name),
                 {"", "", "config", "", false, "", {leaf("name", name)}},
                 {"", "", "subinterfaces", "", false, "", {subinterface("1"), subinterface("2")}}}};
  };
  return {kInterfacesNs, "openconfig-interfaces", "interfaces", "", false, "", {interface("a"), interface("b")}};
}

Made running() {
  const auto entry = [](const char* name) {
    return Made{"",
                "",
                "interface-configuration",
                "",
                true,
                "",
                {leaf("interface-name", name),
                 leaf("description", "\xC3\xA9 \\ & text"),
                 {kForeignNs, "foreign", "unread", "1"},
                 {kL2Ns,
                  "Vexnet-OS-l2-eth-infra-cfg",
                  "ethernet-service",
                  "",
                  false,
                  "",
                  {{"",
                    "",
                    "encapsulation",
                    "",
                    false,
                    "",
                    {leaf("outer-tag-type", "match-dot1q"), leaf("outer-range1-low", "5")}}}}}};
  };
  return {kNativeNs,
          "Vexnet-OS-interface-cfg",
          "interface-configurations",
          "",
          false,
          "",
          {entry("a.1"), entry("a.2"), entry("b")}};
}

Made state() {
  const auto entry = [](const char* name) {
    return Made{"",
                "",
                "interface",
                "",
                true,
                "",
                {leaf("interface", name),
                 {"", "", "encapsulation-details", "", false, "", {leaf("vlan-encapsulation", "service-instance")}}}};
  };
  const auto node = [&](const char* id) {
    return Made{"",
                "",
                "node",
                "",
                true,
                "",
                {leaf("node-id", id), {"", "", "interfaces", "", false, "", {entry("a.1"), entry("a.2")}}}};
  };
  return {kOperNs,
          "Vexnet-OS-l2-eth-infra-oper",
          "vlan",
          "",
          false,
          "",
          {{"", "", "nodes", "", false, "", {node("0"), node("1")}}}};
}

Made in_envelope(Purpose purpose, const Made& data, unsigned kind) {
  const auto around = [](const char* name, Made inside) {
    return Made{kNetconf, "ietf-netconf", name, "", false, "", {std::move(inside)}};
  };
  if (kind == 0) return data;
  if (kind == 1) return around(purpose == Purpose::edit ? "config" : "data", data);
  if (purpose != Purpose::edit) return around("rpc-reply", around("data", data));
  Made edit_config = around("edit-config", around("config", data));
  edit_config.children.push_back(leaf("default-operation", "replace"));
  edit_config.children.insert(edit_config.children.begin(), leaf("error-option", "stop-on-error"));
  return around("rpc", edit_config);
}

std::string escaped(const std::string& text, bool xml) {
  std::string result;
  for (const char c : text) result += xml && c == '&' ? "&amp;" : !xml && c == '\\' ? "\\\\" : std::string(1, c);
  return result;
}

std::string xml(const Made& made) {
  std::string text = "<" + made.name;
  if (!made.ns.empty()) text += fmt::format(" xmlns=\"{}\"", made.ns);
  if (!made.operation.empty()) text += fmt::format(" xmlns:nc=\"{}\" nc:operation=\"{}\"", kNetconf, made.operation);
  text += ">" + escaped(made.value, true);
  for (const Made& child : made.children) text += "\n" + xml(child);
  return text + "</" + made.name + ">";
}

std::string json_members(const std::vector<Made>& members, bool annotations_first);

std::string annotation(const Made& made) {
  return fmt::format("\"ietf-netconf:operation\": \"{}\"", made.operation);
}

std::string json_value(const Made& made, bool annotations_first) {
  const bool is_number = !made.value.empty() && made.value.find_first_not_of("0123456789") == std::string::npos;
  if (!made.value.empty()) return is_number ? made.value : fmt::format("\"{}\"", escaped(made.value, false));
  const std::string about = made.operation.empty() ? "" : fmt::format("\"@\": {{{}}}", annotation(made));
  const std::string members = json_members(made.children, annotations_first);
  const std::string comma = about.empty() || members.empty() ? "" : ",\n";
  return "{" + (annotations_first ? about + comma + members : members + comma + about) + "}";
}

std::string json_members(const std::vector<Made>& members, bool annotations_first) {
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < members.size(); ++i) {
    const Made& each = members[i];
    const std::string name = each.module.empty() ? each.name : fmt::format("{}:{}", each.module, each.name);
    std::string value = json_value(each, annotations_first);
    if (each.is_entry) {
      while (i + 1 < members.size() && members[i + 1].name == each.name && members[i + 1].is_entry) {
        value += ",\n" + json_value(members[++i], annotations_first);
      }
      value = "[" + value + "]";
    }
    texts.push_back(fmt::format("\"{}\": {}", name, value));
    if (each.value.empty() || each.operation.empty()) continue;
    const std::string about = fmt::format("\"@{}\": {{{}}}", name, annotation(each));
    texts.insert(annotations_first ? texts.end() - 1 : texts.end(), about);
  }
  return fmt::format("{}", fmt::join(texts, ",\n"));
}

std::string written(const Made& document, Format format, bool annotations_first) {
  return format == Format::xml ? xml(document) : fmt::format("{{{}}}", json_members({document}, annotations_first));
}

class Chance {
 public:
  explicit Chance(unsigned seed) : engine_(seed) {}
  std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(engine_); }

 private:
  std::mt19937 engine_;
};

Made* any(Made& made, Chance& chance) {
  if (made.children.empty() || chance.below(4) == 0) return &made;
  return any(made.children[chance.below(made.children.size())], chance);
}

// Does something to the document that someone may do by mistake, or on purpose.
void change(Made& document, Chance& chance) {
  static const std::vector<const char*> kNames{"config",       "data",       "rpc",     "name",         "index",
                                               "interface",    "interfaces", "unknown", "subinterface", "description",
                                               "l2-transport", "operation",  "node",    "vlan"};
  static const std::vector<const char*> kValues{"", "1", "99999", "a.1", "no such", "t:ACCESS", "0"};
  static const std::vector<std::array<const char*, 2>> kModules{{kInterfacesNs, "openconfig-interfaces"},
                                                                {kNativeNs, "Vexnet-OS-interface-cfg"},
                                                                {kOperNs, "Vexnet-OS-l2-eth-infra-oper"},
                                                                {kVlanNs, "openconfig-vlan"},
                                                                {kForeignNs, "foreign"},
                                                                {kNetconf, "ietf-netconf"},
                                                                {"urn:unknown", "unknown"}};
  static const std::vector<const char*> kOperations{"merge", "replace", "create", "delete", "remove", "wrong"};
  Made& parent = *any(document, chance);
  std::vector<Made>& children = parent.children;
  const std::size_t one = children.empty() ? 0 : chance.below(children.size());
  const std::size_t other = children.empty() ? 0 : chance.below(children.size());
  switch (chance.below(9)) {
    case 0:
      if (!children.empty()) children.erase(children.begin() + static_cast<std::ptrdiff_t>(one));
      return;
    case 1:
      if (!children.empty())
        children.insert(children.begin() + static_cast<std::ptrdiff_t>(one), Made(children[other]));
      return;
    case 2:
      if (!children.empty()) std::swap(children[one], children[other]);
      return;
    case 3:
      parent.name = kNames[chance.below(kNames.size())];
      return;
    case 4:
      parent.value = kValues[chance.below(kValues.size())];
      return;
    case 5: {
      const auto& module = kModules[chance.below(kModules.size())];
      parent.ns = module[0];
      parent.module = module[1];
      return;
    }
    case 6:
      parent.is_entry = !parent.is_entry;
      return;
    case 7:
      children.insert(children.begin() + static_cast<std::ptrdiff_t>(one), Made(*any(document, chance)));
      return;
    default:
      parent.operation = kOperations[chance.below(kOperations.size())];
  }
}

struct Subject {
  const char* name;
  Purpose purpose;
  Made (*make)();
};

void PrintTo(const Subject& subject, std::ostream* out) {
  *out << subject.name;
}

class Taken : public testing::TestWithParam<Subject> {
 protected:
  static void expect_the_same(const std::string& text, Format format) {
    const Document document{text, format, "request"};
    ASSERT_EQ(outcome(GetParam().purpose, document, false).text, outcome(GetParam().purpose, document, true).text)
        << text;
  }
};

INSTANTIATE_TEST_SUITE_P(Documents, Taken,
                         testing::Values(Subject{"Edit", Purpose::edit, edit},
                                         Subject{"Running", Purpose::configuration, running},
                                         Subject{"State", Purpose::state, state}),
                         [](const testing::TestParamInfo<Subject>& info) { return info.param.name; });

TEST_P(Taken, SaysTheSameWhereverTheDocumentBreaksOff) {
  for (const Format format : {Format::xml, Format::json}) {
    const std::string text = written(in_envelope(GetParam().purpose, GetParam().make(), 2), format, false);
    ASSERT_EQ(outcome(GetParam().purpose, {text, format, "request"}, true).text.find("refused"), std::string::npos);
    for (std::size_t size = 0; size <= text.size(); ++size) expect_the_same(text.substr(0, size), format);
  }
}

TEST_P(Taken, SaysTheSameWhateverStandsInTheDocument) {
  constexpr unsigned kDocuments = 6000;
  std::size_t accepted = 0;
  for (unsigned seed = 0; seed < kDocuments; ++seed) {
    Chance chance(seed);
    Made made = in_envelope(GetParam().purpose, GetParam().make(), seed % 3);
    for (std::size_t changes = chance.below(4); changes > 0; --changes) change(made, chance);
    const Format format = chance.below(2) == 0 ? Format::xml : Format::json;
    std::string text = written(made, format, chance.below(2) == 0);
    // A second root, and a slip of the pen.
    if (format == Format::json && chance.below(8) == 0) text = text.substr(0, text.size() - 1) + ", " + text.substr(1);
    if (chance.below(8) == 0) text[chance.below(text.size())] = "<>\"@{}[],:& x"[chance.below(14)];
    expect_the_same(text, format);
    if (HasFatalFailure()) return;
    const std::string outcome_text = outcome(GetParam().purpose, {text, format, "request"}, false).text;
    if (outcome_text.starts_with("<")) ++accepted;
  }
  // Most is refused, and much is not.
  EXPECT_GT(accepted, kDocuments / 10);
}

// However many entries there are.
TEST_P(Taken, HoldsAFewElementsOnly) {
  for (const Format format : {Format::xml, Format::json}) {
    const std::string text = written(in_envelope(GetParam().purpose, GetParam().make(), 2), format, false);
    const Outcome taken = outcome(GetParam().purpose, {text, format, "request"}, false);
    EXPECT_GT(taken.held, 0U);
    EXPECT_LE(taken.held, 2U) << text;
  }
}

}  // namespace
}  // namespace yfw::test
