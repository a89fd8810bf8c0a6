// What validation can find at each construct of YANG, and that libyang agrees.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "models_of_tests.h"
#include "validate_check.h"
#include "yfw-host/data.h"

namespace yfw::test {
namespace {

constexpr Reach kNowhere = Reach::nowhere;
constexpr Reach kEntry = Reach::entry;
constexpr Reach kBeyond = Reach::beyond;

using Context = std::unique_ptr<ly_ctx, void (*)(ly_ctx*)>;

// The extension that libyang validates in its own way.
constexpr char kSchemaMount[] =
    "module ietf-yang-schema-mount { yang-version 1.1; namespace "
    "\"urn:ietf:params:xml:ns:yang:ietf-yang-schema-mount\"; "
    "prefix yangmnt; revision 2019-01-14; extension mount-point { argument label; } }";

// With the module `m` of these statements.
Context context_with(const std::string& statements) {
  ly_log_options(LY_LOSTORE);
  ly_ctx* made = nullptr;
  EXPECT_EQ(ly_ctx_new(nullptr, LY_CTX_NO_YANGLIBRARY, &made), LY_SUCCESS);
  EXPECT_EQ(lys_parse_mem(made, kSchemaMount, LYS_IN_YANG, nullptr), LY_SUCCESS);
  const std::string model = fmt::format(
      "module m {{ yang-version 1.1; namespace \"urn:m\"; prefix m; import ietf-yang-metadata {{ prefix md; }} "
      "import ietf-yang-schema-mount {{ prefix mount; }} identity base; identity i {{ base base; }} {} }}",
      statements);
  EXPECT_EQ(lys_parse_mem(made, model.c_str(), LYS_IN_YANG, nullptr), LY_SUCCESS) << model << "\n"
                                                                                  << last_complaint(made).message;
  return {made, ly_ctx_destroy};
}

Data parse(const Context& models, const std::string& text) {
  lyd_node* tree = nullptr;
  EXPECT_EQ(lyd_parse_data_mem(models.get(), text.c_str(), LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_OPAQ, 0, &tree),
            LY_SUCCESS)
      << text << "\n"
      << last_complaint(models.get()).message;
  return Data(tree);
}

void check(const Context& models, const std::string& text, Reach expected) {
  const Data data = parse(models, text);
  const Reach reach = Validator().reach(data.get());
  EXPECT_STREQ(name_of(reach), name_of(expected)) << text;
  EXPECT_EQ(contradiction(data, reach), "") << text;
}

// The same nodes in an entry and in a container at the top.
struct Case {
  const char* name;
  const char* model;
  const char* data;
  Reach in_entry;
  Reach at_top;
};

void PrintTo(const Case& tested, std::ostream* out) {
  *out << tested.name;
}

class Construct : public testing::TestWithParam<Case> {};

TEST_P(Construct, IsJudgedInAnEntry) {
  const Case& tested = GetParam();
  check(context_with(fmt::format("container top {{ list l {{ key k; leaf k {{ type string; }} {} }} }}", tested.model)),
        fmt::format("<top xmlns=\"urn:m\" xmlns:m=\"urn:m\"><l><k>1</k>{}</l><l><k>2</k>{}</l></top>", tested.data,
                    tested.data),
        tested.in_entry);
}

TEST_P(Construct, IsJudgedAtTheTop) {
  const Case& tested = GetParam();
  check(context_with(fmt::format("container top {{ {} }}", tested.model)),
        fmt::format("<top xmlns=\"urn:m\" xmlns:m=\"urn:m\">{}</top>", tested.data), tested.at_top);
}

const Case kConstructs[] = {
    {"leaf", "leaf a { type string; }", "<a>1</a>", kNowhere, kNowhere},
    {"default", "leaf a { type string; default 1; }", "", kNowhere, kNowhere},
    {"obsolete", "leaf a { status obsolete; type string; }", "<a>1</a>", kNowhere, kNowhere},
    {"two leaves", "leaf a { type string; }", "<a>1</a><a>1</a>", kEntry, kBeyond},
    {"two containers", "container c { leaf a { type string; } }", "<c><a>1</a></c><c/>", kEntry, kBeyond},
    {"state", "leaf a { config false; type string; }", "<a>1</a>", kEntry, kBeyond},
    {"absent state", "leaf a { config false; type string; mandatory true; }", "", kNowhere, kNowhere},
    {"keyless list", "list s { config false; leaf a { type string; } }", "<s><a>1</a></s><s><a>1</a></s>", kEntry,
     kBeyond},
    {"anydata", "anydata a;", "<a><x xmlns=\"urn:x\"/></a>", kNowhere, kNowhere},
    {"anyxml", "anyxml a;", "<a><x xmlns=\"urn:x\"/></a>", kNowhere, kNowhere},
    {"mandatory anydata", "anydata a { mandatory true; }", "", kEntry, kBeyond},
    {"unknown node", "leaf a { type string; }", "<x>1</x>", kBeyond, kBeyond},
    {"unknown value", "leaf a { type uint8; }", "<a>x</a>", kBeyond, kBeyond},

    {"condition that holds", "leaf a { when \"../b\"; type string; } leaf b { type string; }", "<a>1</a><b>1</b>",
     kEntry, kBeyond},
    {"condition that does not", "leaf a { when \"../b\"; type string; } leaf b { type string; }", "<a>1</a>", kEntry,
     kBeyond},
    {"condition of what is absent", "leaf a { when \"../b\"; type string; }  leaf b { type string; }", "", kNowhere,
     kNowhere},
    {"condition of a default that is absent",
     "leaf a { when \"../b\"; type string; default 1; } leaf b { type string; }", "", kNowhere, kNowhere},
    {"condition by a default", "leaf a { when \"../b = '1'\"; type string; } leaf b { type uint8; default 1; }",
     "<a>1</a>", kEntry, kBeyond},
    {"value that is there", "leaf a { when \"../b = '1'\"; type string; } leaf b { type uint8; }", "<a>1</a><b>1</b>",
     kNowhere, kBeyond},
    {"value in quotes of the other kind", "leaf a { when '../b = \"1\"'; type string; } leaf b { type uint8; }",
     "<a>1</a><b>1</b>", kNowhere, kBeyond},
    {"value that is not", "leaf a { when \"../b = '1'\"; type string; } leaf b { type uint8; }", "<a>1</a><b>2</b>",
     kEntry, kBeyond},
    {"value that is absent", "leaf a { when \"../b = '1'\"; type string; } leaf b { type uint8; }", "<a>1</a>", kEntry,
     kBeyond},
    {"one of two values", "leaf a { when \"../b = '1' or ../b = '2'\"; type string; } leaf b { type uint8; }",
     "<a>1</a><b>2</b>", kNowhere, kBeyond},
    {"two values at once",
     "leaf a { when \"../b = '1' and ../c = '2'\"; type string; } leaf b { type uint8; } "
     "leaf c { type uint8; }",
     "<a>1</a><b>1</b><c>1</c>", kEntry, kBeyond},
    {"other than a value", "leaf a { when \"../b != '1'\"; type string; } leaf b { type uint8; }", "<a>1</a><b>1</b>",
     kEntry, kBeyond},
    {"identity", "leaf a { when \"../b = 'm:i'\"; type string; } leaf b { type identityref { base base; } }",
     "<a>1</a><b>m:i</b>", kNowhere, kBeyond},
    {"value deeper", "leaf a { when \"../c/b = '1'\"; type string; } container c { leaf b { type uint8; } }",
     "<a>1</a><c><b>1</b></c>", kNowhere, kBeyond},
    {"value beyond what is absent",
     "leaf a { when \"../p/../b = '1'\"; type string; } container p { presence p; } "
     "leaf b { type uint8; }",
     "<a>1</a><b>1</b>", kEntry, kBeyond},
    {"value in a list", "leaf a { when \"../s/b = '1'\"; type string; } list s { key b; leaf b { type uint8; } }",
     "<a>1</a><s><b>1</b></s>", kEntry, kBeyond},
    {"values of two kinds",
     "leaf a { when \"../b = '1.0'\"; type string; } leaf b { type decimal64 { fraction-digits 2; } }",
     "<a>1</a><b>1.0</b>", kEntry, kBeyond},
    {"condition of a uses",
     "grouping g { leaf a { type string; } } uses g { when \"b = '1'\"; } leaf b { type uint8; }", "<a>1</a><b>2</b>",
     kEntry, kBeyond},
    {"condition of a uses that holds",
     "grouping g { leaf a { type string; } } uses g { when \"b = '1'\"; } leaf b { type uint8; }", "<a>1</a><b>1</b>",
     kNowhere, kBeyond},
    {"two conditions",
     "grouping g { leaf a { when \"../b = '2'\"; type string; } } uses g { when \"b = '1'\"; } leaf b { type uint8; }",
     "<a>1</a><b>1</b>", kEntry, kBeyond},
    {"condition of a container", "container c { when \"../b\"; leaf a { type string; } } leaf b { type string; }",
     "<c><a>1</a></c>", kEntry, kBeyond},
    {"condition of a choice",
     "choice h { when \"b = '1'\"; case x { leaf a { type string; } } } leaf b { type uint8; }", "<a>1</a><b>2</b>",
     kEntry, kBeyond},
    {"condition of a case", "choice h { case x { when \"b = '1'\"; leaf a { type string; } } } leaf b { type uint8; }",
     "<a>1</a><b>2</b>", kEntry, kBeyond},

    {"condition that cannot be told", "leaf a { when \"count('x') = 1\"; type string; default 1; }", "", kBeyond,
     kBeyond},
    {"condition that cannot be told, by what is there",
     "leaf a { when \"sum(../b) = 1\"; type string; default 1; } leaf b { type string; }", "<b>x</b>", kEntry, kBeyond},
    {"must that holds", "leaf a { must \"../b\"; type string; } leaf b { type string; }", "<a>1</a><b>1</b>", kEntry,
     kBeyond},
    {"must that does not", "leaf a { must \"../b\"; type string; } leaf b { type string; }", "<a>1</a>", kEntry,
     kBeyond},
    {"must of what is absent", "leaf a { must \"../b\"; type string; } leaf b { type string; }", "", kNowhere,
     kNowhere},
    {"must of a default", "leaf a { must \"../b\"; type string; default 1; } leaf b { type string; }", "", kEntry,
     kBeyond},
    {"must of a leaf-list's default", "leaf-list a { must \"../b\"; type string; default 1; } leaf b { type string; }",
     "", kEntry, kBeyond},
    {"must of an absent container", "container c { must \"../b\"; } leaf b { type string; }", "", kEntry, kBeyond},
    {"must deep in absent containers", "container c { container d { must \"../../b\"; } } leaf b { type string; }", "",
     kEntry, kBeyond},
    {"must of absent presence", "container c { presence p; must \"../b\"; } leaf b { type string; }", "", kNowhere,
     kNowhere},
    {"must of a default case",
     "choice h { default x; case x { leaf a { must \"../b\"; type string; default 1; } } } "
     "leaf b { type string; }",
     "", kEntry, kBeyond},

    {"mandatory leaf", "leaf a { type string; mandatory true; }", "", kEntry, kBeyond},
    {"mandatory leaf that is there", "leaf a { type string; mandatory true; }", "<a>1</a>", kNowhere, kNowhere},
    {"mandatory in an absent container", "container c { container d { leaf a { type string; mandatory true; } } }", "",
     kEntry, kBeyond},
    {"mandatory in absent presence", "container c { presence p; leaf a { type string; mandatory true; } }", "",
     kNowhere, kNowhere},
    {"mandatory with a condition", "leaf a { when \"../b\"; type string; mandatory true; } leaf b { type string; }",
     "<b>1</b>", kEntry, kBeyond},
    {"mandatory choice", "choice h { mandatory true; leaf a { type string; } }", "", kEntry, kBeyond},
    {"mandatory in a case", "choice h { case x { leaf a { type string; mandatory true; } leaf b { type string; } } }",
     "<b>1</b>", kEntry, kBeyond},
    {"choice", "choice h { leaf a { type string; } leaf b { type string; } }", "<a>1</a>", kEntry, kBeyond},
    {"two cases", "choice h { leaf a { type string; } leaf b { type string; } }", "<a>1</a><b>1</b>", kEntry, kBeyond},
    {"choice in a choice", "choice h { case x { choice i { leaf a { type string; } } } leaf b { type string; } }",
     "<a>1</a><b>1</b>", kEntry, kBeyond},

    {"min-elements", "leaf-list a { type string; min-elements 2; }", "<a>1</a>", kEntry, kBeyond},
    {"min-elements of none", "leaf-list a { type string; min-elements 1; }", "", kEntry, kBeyond},
    {"min-elements of a list", "list s { key b; leaf b { type string; } min-elements 1; }", "", kEntry, kBeyond},
    {"max-elements", "leaf-list a { type string; max-elements 1; }", "<a>1</a><a>2</a>", kEntry, kBeyond},
    {"max-elements of a list", "list s { key b; leaf b { type string; } max-elements 1; }",
     "<s><b>1</b></s><s><b>2</b></s>", kEntry, kBeyond},
    {"within bounds", "leaf-list a { type string; min-elements 1; max-elements 2; }", "<a>1</a><a>2</a>", kNowhere,
     kNowhere},
    {"equal values", "leaf-list a { type uint8; }", "<a>1</a><a>2</a><a>01</a>", kEntry, kBeyond},
    {"equal keys", "list s { key \"b c\"; leaf b { type uint8; } leaf c { type string; } }",
     "<s><b>1</b><c>1</c></s><s><b>01</b><c>1</c></s>", kEntry, kBeyond},
    {"keys half equal", "list s { key \"b c\"; leaf b { type uint8; } leaf c { type string; } }",
     "<s><b>1</b><c>1</c></s><s><b>1</b><c>2</c></s>", kNowhere, kNowhere},
    {"unique", "list s { key b; unique c; leaf b { type string; } leaf c { type string; } }",
     "<s><b>1</b><c>1</c></s><s><b>2</b><c>1</c></s>", kEntry, kBeyond},

    {"reference that holds", "leaf a { type leafref { path \"../b\"; } } leaf b { type string; }", "<a>1</a><b>1</b>",
     kNowhere, kNowhere},
    {"reference to another", "leaf a { type leafref { path \"../b\"; } } leaf b { type string; }", "<a>1</a><b>2</b>",
     kEntry, kBeyond},
    {"reference to none", "leaf a { type leafref { path \"../b\"; } } leaf b { type string; }", "<a>1</a>", kEntry,
     kBeyond},
    {"reference that needs none",
     "leaf a { type leafref { path \"../b\"; require-instance false; } } leaf b { type string; }", "<a>1</a>", kNowhere,
     kNowhere},
    {"reference into a list", "leaf a { type leafref { path \"../s/b\"; } } list s { key b; leaf b { type string; } }",
     "<a>1</a><s><b>2</b></s>", kEntry, kBeyond},
    {"reference with a key",
     "leaf a { type leafref { path \"../s[b=current()/../c]/d\"; } } leaf c { type string; } "
     "list s { key b; leaf b { type string; } leaf d { type string; } }",
     "<a>1</a><c>1</c><s><b>2</b><d>1</d></s>", kEntry, kBeyond},
    {"reference to another entry than its own",
     "list s { key b; leaf b { type string; } leaf c { type string; } "
     "leaf a { type leafref { path \"../../s[b=current()/../c]/b\"; } } }",
     "<s><b>1</b><c>2</c><a>1</a></s><s><b>2</b></s>", kEntry, kBeyond},
    {"reference by a default", "leaf a { type leafref { path \"../b\"; } default 1; } leaf b { type string; }", "",
     kEntry, kBeyond},
    {"reference in a union",
     "leaf a { type union { type leafref { path \"../b\"; } type uint8; } } leaf b { type string; }", "<a>x</a>",
     kEntry, kBeyond},
    {"reference to a union",
     "leaf a { type leafref { path \"../b\"; } } leaf b { type union { type uint8; type string; } }",
     "<a>1</a><b>1</b>", kEntry, kBeyond},
    {"union", "leaf a { type union { type uint8; type string; } }", "<a>x</a>", kNowhere, kNowhere},
    {"instance-identifier", "leaf a { type instance-identifier; } leaf b { type string; }", "<a>/m:top</a>", kBeyond,
     kBeyond},
    {"instance-identifier to none", "leaf a { type instance-identifier; } leaf b { type string; }",
     "<a>/m:top/m:l[m:k='9']</a>", kBeyond, kBeyond},
    {"instance-identifier that needs none", "leaf a { type instance-identifier { require-instance false; } }",
     "<a>/m:top</a>", kNowhere, kNowhere},
};

INSTANTIATE_TEST_SUITE_P(Yang, Construct, testing::ValuesIn(kConstructs));

// Where it matters what is around a list.
struct Model {
  const char* name;
  const char* model;
  const char* data;
  Reach reach;
};

TEST(Validator, JudgesWhatIsAroundEntries) {
  const std::string list =
      "list l { key k; leaf k { type uint8; } leaf a { type string; } leaf-list s { type string; "
      "max-elements 1; } ";
  // Each second entry has something to be looked at.
  const std::string entries = "<l><k>1</k></l><l><k>2</k><s>1</s><s>2</s></l>";
  struct {
    const char* name;
    std::string model;
    std::string data;
    Reach reach;
  } const cases[] = {
      {"nothing", "container top { " + list + "} }", entries, kEntry},
      {"mandatory leaf", "container top { leaf x { type string; mandatory true; } " + list + "} }",
       "<x>1</x><l><k>1</k><s>1</s><s>2</s></l>", kBeyond},
      {"min-elements", "container top { " + list + "min-elements 2; } }", entries, kBeyond},
      {"max-elements", "container top { " + list + "max-elements 1; } }", entries, kBeyond},
      {"unique", "container top { " + list + "unique a; } }", "<l><k>1</k><a>1</a></l><l><k>2</k><a>1</a></l>",
       kBeyond},
      {"equal entries", "container top { " + list + "} }", "<l><k>1</k></l><l><k>1</k></l>", kBeyond},
      {"must of the container", "container top { must \"count(l) < 2\"; " + list + "} }", entries, kBeyond},
      {"must of an absent container", "container top { container c { must \"../l[k=9]\"; } " + list + "} }", entries,
       kBeyond},
      {"must about what is around", "container top { leaf x { type string; } " + list + "must \"../x\"; } }",
       "<l><k>1</k></l>", kBeyond},
      {"must about other entries", "container top { " + list + "must \"count(../l) < 2\"; } }", entries, kBeyond},
      {"must about other entries from the top", "container top { " + list + "must \"count(/top/l) < 2\"; } }", entries,
       kBeyond},
      {"must about any entries", "container top { " + list + "must \"count(//a) < 2\"; } }", entries, kBeyond},
      {"must about the entry before",
       "container top { " + list + "must \"not(preceding-sibling::l/a = current()/a)\"; } }", entries, kBeyond},
      {"must by a reference",
       "container top { " + list + "leaf r { type leafref { path \"../../l/k\"; } must \"deref(.)/../a\"; } } }",
       "<l><k>1</k><a>1</a></l><l><k>2</k><r>1</r></l>", kBeyond},
      {"must by a reference that needs none",
       "container top { " + list +
           "leaf r { type leafref { path \"../../l/k\"; require-instance false; } must \"deref(.) > 1\"; } } }",
       "<l><k>1</k></l><l><k>2</k><r>1</r></l>", kBeyond},
      {"must about nothing", "container top { " + list + "must \"false()\"; } }", entries, kBeyond},
      {"reference to other entries", "container top { " + list + "leaf r { type leafref { path \"../../l/k\"; } } } }",
       "<l><k>1</k></l><l><k>2</k><r>1</r></l>", kBeyond},
      {"reference that holds to what is around",
       "container top { leaf x { type string; } " + list + "leaf r { type leafref { path \"../../x\"; } } } }",
       "<x>1</x><l><k>1</k><r>1</r><s>1</s><s>2</s></l>", kBeyond},
      {"condition that holds about what is around",
       "container top { leaf x { type uint8; } " + list + "leaf r { when \"../../x = '1'\"; type string; } } }",
       "<x>1</x><l><k>1</k><r>1</r></l>", kBeyond},
      {"mandatory by a condition about what is around",
       "container top { leaf x { type uint8; } " + list +
           "leaf r { when \"../../x = '1'\"; type string; mandatory true; } } }",
       "<x>1</x><l><k>1</k></l>", kBeyond},
      {"extension", "container top { " + list + "container c { mount:mount-point \"p\"; } } }", "<l><k>1</k><c/></l>",
       kBeyond},
  };
  for (const auto& tested : cases) {
    SCOPED_TRACE(tested.name);
    check(context_with(tested.model), "<top xmlns=\"urn:m\">" + tested.data + "</top>", tested.reach);
  }
}

TEST(Validator, JudgesTheTop) {
  const Model cases[] = {
      {"list", "list l { key k; leaf k { type string; } }", "<l><k>1</k></l><l><k>2</k></l>", kNowhere},
      {"equal entries", "list l { key k; leaf k { type string; } }", "<l><k>1</k></l><l><k>1</k></l>", kBeyond},
      {"must about other entries", "list l { key k; leaf k { type string; } must \"count(../l) < 2\"; }",
       "<l><k>1</k></l><l><k>2</k></l>", kBeyond},
      {"mandatory leaf", "leaf a { type string; } leaf b { type string; mandatory true; }", "<a>1</a>", kBeyond},
      {"mandatory in an absent container",
       "leaf a { type string; } container c { leaf b { type string; mandatory true; } }", "<a>1</a>", kBeyond},
      {"annotation", "md:annotation x { type string; } leaf a { type string; }", "<a m:x=\"1\">1</a>", kNowhere},
      {"annotation that refers", "md:annotation x { type instance-identifier; } leaf a { type string; }",
       "<a m:x=\"/m:a\">1</a>", kBeyond},
  };
  for (const Model& tested : cases) {
    SCOPED_TRACE(tested.name);
    std::string text = tested.data;
    for (std::size_t at = 0; at != std::string::npos; at = text.find("><", at + 1)) {
      // Every element at the top is as good as one in a container.
      if (at == 0 || text.find("><l", at) == at)
        text.insert(text.find('<', at) + 2, " xmlns=\"urn:m\" xmlns:m=\"urn:m\"");
    }
    check(context_with(tested.model), text, tested.reach);
  }
}

TEST(Validator, JudgesWhatStandsBesideTheContainerOfEntries) {
  check(context_with(
            "container top { list l { key k; leaf k { type string; } leaf-list s { type string; max-elements 1; } "
            "} } leaf x { type string; mandatory true; }"),
        "<top xmlns=\"urn:m\"><l><k>1</k><s>1</s><s>2</s></l></top><x xmlns=\"urn:m\">1</x>", kBeyond);
}

TEST(Validator, KnowsHowFarAModelEverMakesItLook) {
  struct {
    const char* in_entry;
    const char* around;
    Reach reach;
  } const cases[] = {
      {"leaf a { type string; }", "", kNowhere},
      {"leaf a { config false; type string; mandatory true; }", "", kNowhere},
      {"leaf a { type string; mandatory true; }", "", kEntry},
      {"leaf-list a { type string; max-elements 2; }", "", kEntry},
      {"leaf a { type leafref { path \"../b\"; } } leaf b { type string; }", "", kEntry},
      {"leaf a { when \"../b = '1'\"; type string; } leaf b { type uint8; }", "", kEntry},
      {"", "max-elements 2;", kBeyond},
      {"", "must \"count(../l) < 3\";", kBeyond},
  };
  for (const auto& tested : cases) {
    const Context models = context_with(fmt::format(
        "container top {{ list l {{ key k; leaf k {{ type string; }} {} {} }} }}", tested.in_entry, tested.around));
    const std::vector<const lys_module*> modules{ly_ctx_get_module_implemented(models.get(), "m")};
    EXPECT_STREQ(name_of(Validator().reach(modules)), name_of(tested.reach)) << tested.in_entry << tested.around;
  }
}

TEST(Validator, LeavesWhatIsNoConfigurationToLibyang) {
  const Context models = context_with("notification n { leaf a { type string; } }");
  lyd_node* made = nullptr;
  ASSERT_EQ(lyd_new_inner(nullptr, ly_ctx_get_module_implemented(models.get(), "m"), "n", 0, &made), LY_SUCCESS);
  const Data data(made);
  EXPECT_STREQ(name_of(Validator().reach(data.get())), "beyond");
}

TEST(Validator, TakesOutdatedDefaultsForSomethingToDo) {
  const Context models =
      context_with("container top { leaf-list a { type string; default 1; } leaf b { type string; } }");
  Data data = parse(models, "<top xmlns=\"urn:m\"><b>1</b></top>");
  ASSERT_TRUE(validate_by_libyang(data));
  ASSERT_EQ(lyd_new_term(data.get(), nullptr, "a", "2", 0, nullptr), LY_SUCCESS);
  const Reach reach = Validator().reach(data.get());
  EXPECT_STREQ(name_of(reach), "beyond");
}

TEST(Validator, LetsNodesGoWhoseConditionItSawHold) {
  const Context models = context_with(
      "container top { list l { key k; leaf k { type string; } leaf a { when \"../b = '1'\"; "
      "type string; } leaf b { type uint8; } } }");
  Data data = parse(models, "<top xmlns=\"urn:m\"><l><k>1</k><a>1</a><b>1</b></l></top>");
  Validator validator;
  ASSERT_STREQ(name_of(validator.reach(data.get())), "nowhere");
  lyd_node* changed = nullptr;
  ASSERT_EQ(lyd_find_path(data.get(), "/m:top/l[k='1']/b", 0, &changed), LY_SUCCESS);
  lyd_change_term(changed, "2");
  EXPECT_TRUE(validator.validate(data)) << last_complaint(models.get()).message;
  EXPECT_EQ(nodes_of(data).count("/m:top/l[k='1']/a 1"), 0U);
}

TEST(Validator, LetsNoNodeGoWhoseConditionNeverHeld) {
  const Context models = context_with(
      "container top { list l { key k; leaf k { type string; } leaf a { when \"../b = '1'\"; type string; } "
      "leaf b { when \"../c = '1'\"; type uint8; } leaf c { type uint8; } } }");
  Data data = parse(models, "<top xmlns=\"urn:m\"><l><k>1</k><b>1</b><c>1</c></l></top>");
  ASSERT_TRUE(validate_by_libyang(data));
  // What goes with its own condition takes that of another along.
  lyd_node* changed = nullptr;
  ASSERT_EQ(lyd_find_path(data.get(), "/m:top/l[k='1']/c", 0, &changed), LY_SUCCESS);
  lyd_change_term(changed, "2");
  ASSERT_EQ(lyd_new_term(lyd_parent(changed), nullptr, "a", "1", 0, nullptr), LY_SUCCESS);
  Data same = data.clone();
  EXPECT_FALSE(validate_by_libyang(same));
  EXPECT_FALSE(Validator().validate(data));
}

// Every document of the examples that these models understand, as data.
void check_examples(const Models& models) {
  Validator validator;
  std::size_t checked = 0;
  for (const auto& file : std::filesystem::recursive_directory_iterator(OC_VLAN_SOURCE_DIR "/examples")) {
    const std::string extension = file.path().extension();
    if (extension != ".xml" && extension != ".json") continue;
    std::ifstream stream(file.path());
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    Data data;
    outcome_of([&] {
      data = parse_edit(models.get(), {text, format_of(text), file.path()}, Operation::merge).tree.clone();
      return std::string();
    });
    if (data.empty()) continue;
    ++checked;
    EXPECT_EQ(contradiction(data, validator.reach(data.get())), "") << file.path();
  }
  EXPECT_GT(checked, 100U);
}

TEST(Validator, AgreesWithLibyangOnTheExamples) {
  check_examples(compact_models());
}

TEST(Validator, AgreesWithLibyangOnTheExamplesInPublishedModels) {
  if (!has_published_models()) GTEST_SKIP() << "the published modules are not here";
  check_examples(published_models());
}

TEST(Validator, HasNothingToDoInPortsThatAreRight) {
  for (const char* mode : {"<interface-mode>TRUNK</interface-mode><native-vlan>1</native-vlan>",
                           "<interface-mode>ACCESS</interface-mode><access-vlan>1</access-vlan>"}) {
    EditDocument port = parse_edit(compact_models().get(), {on_trunk(mode), Format::xml, "port"}, Operation::merge);
    lyd_node* entry = nullptr;
    ASSERT_EQ(lyd_find_path(port.tree.get(), kInterfacePath, 0, &entry), LY_SUCCESS);
    ASSERT_EQ(lyd_new_path(entry, nullptr, "config/name", "Ethernet0/0/1", 0, nullptr), LY_SUCCESS);
    ASSERT_EQ(lyd_new_path(entry, nullptr, "config/type", "iana-if-type:ethernetCsmacd", 0, nullptr), LY_SUCCESS);
    EXPECT_STREQ(name_of(Validator().reach(port.tree.get())), "nowhere") << port.tree.print(Format::xml);
  }
}

}  // namespace
}  // namespace yfw::test
