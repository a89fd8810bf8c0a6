// Filters of every kind on data of every kind, filters that are refused, and paths as filters.
#include "framework/datastore/select.h"

#include <gtest/gtest.h>

#include "framework/documents/documents.h"
#include "small_model.h"

namespace yfw::test {
namespace {

constexpr char kData[] =
    "<a>1</a><w>p</w><w>q</w><np><x>1</x><deep><y>2</y></deep></np><pc/>"
    "<l><k>1</k><v>red</v><w>r</w><c><x>c1</x></c><m><n>1</n><o>m1</o></m><m><n>2</n><o>m2</o></m></l>"
    "<l><k>2</k><v>blue</v><c><x>c2</x></c></l>"
    "<l><k>3</k><v>red</v></l>";

std::string selected(Data data, const Data& filter) {
  SubtreeFilter(filter).retain(data);
  return flat(data);
}

std::string selected(const Data& filter) {
  return selected(std::move(small_edit(on_top(kData)).tree), filter);
}

struct Filtering {
  const char* name;
  std::string filter;    // inside <top>, or a whole JSON document
  std::string selected;  // inside <top>; empty for nothing at all
};

void PrintTo(const Filtering& each, std::ostream* out) {
  *out << each.name;
}

class Filter : public testing::TestWithParam<Filtering> {};

TEST_P(Filter, Selects) {
  const std::string& inside = GetParam().filter;
  const std::string text =
      inside[0] == '{' ? inside : fmt::format("<filter><top xmlns='urn:small'>{}</top></filter>", inside);
  const std::string found = outcome_of([&] {
    return selected(parse_filter(small_models(), {text, format_of(text), "filter"}));
  });
  EXPECT_EQ(found, GetParam().selected.empty() ? "" : flat_top(GetParam().selected)) << text;
}

constexpr char kEntry1[] =
    "<l><k>1</k><v>red</v><w>r</w><c><x>c1</x></c><m><n>1</n><o>m1</o></m><m><n>2</n><o>m2</o></m></l>";
constexpr char kEntry2[] = "<l><k>2</k><v>blue</v><c><x>c2</x></c></l>";
constexpr char kEntry3[] = "<l><k>3</k><v>red</v></l>";

INSTANTIATE_TEST_SUITE_P(
    Subtrees, Filter,
    testing::Values(
        Filtering{"Everything", "", kData}, Filtering{"Blank", " \n ", kData}, Filtering{"Leaf", "<a/>", "<a>1</a>"},
        Filtering{"LeafWithBlanks", "<a> </a>", "<a>1</a>"}, Filtering{"AbsentLeaf", "<d/>", ""},
        Filtering{"LeafList", "<w/>", "<w>p</w><w>q</w>"},
        Filtering{"Container", "<np/>", "<np><x>1</x><deep><y>2</y></deep></np>"},
        Filtering{"ContainerBelow", "<np><deep/></np>", "<np><deep><y>2</y></deep></np>"},
        Filtering{"EmptyPresence", "<pc/>", "<pc/>"}, Filtering{"LeafOfAnEmptyPresence", "<pc><z/></pc>", ""},
        Filtering{"Siblings", "<a/><np><x/></np>", "<a>1</a><np><x>1</x></np>"},
        Filtering{"SameNameTwice", "<np><x/></np><np><deep/></np>", "<np><x>1</x><deep><y>2</y></deep></np>"},
        Filtering{"WholeBesidePart", "<np><x/></np><np/>", "<np><x>1</x><deep><y>2</y></deep></np>"},
        Filtering{"LeafThatIsTwiceAskedFor", "<a/><a/>", "<a>1</a>"},
        Filtering{"List", "<l/>", std::string(kEntry1) + kEntry2 + kEntry3},
        Filtering{"Keys", "<l><k/></l>", "<l><k>1</k></l><l><k>2</k></l><l><k>3</k></l>"},
        Filtering{"LeafOfEachEntry", "<l><v/></l>",
                  "<l><k>1</k><v>red</v></l><l><k>2</k><v>blue</v></l><l><k>3</k><v>red</v></l>"},
        Filtering{"OnlyEntriesThatHaveIt", "<l><c/></l>",
                  "<l><k>1</k><c><x>c1</x></c></l><l><k>2</k><c><x>c2</x></c></l>"},
        Filtering{"ByKey", "<l><k>2</k></l>", kEntry2}, Filtering{"ByKeyWithBlanks", "<l><k> 2\n</k></l>", kEntry2},
        Filtering{"ByAbsentKey", "<l><k>9</k></l>", ""},
        Filtering{"ByKeyAndSelection", "<l><k>2</k><c/></l>", "<l><k>2</k><c><x>c2</x></c></l>"},
        Filtering{"ByKeyAndAbsentSelection", "<l><k>3</k><c/></l>", "<l><k>3</k></l>"},
        Filtering{"ByTwoKeys", "<l><k>1</k></l><l><k>3</k></l>", std::string(kEntry1) + kEntry3},
        Filtering{"ByOneKeyTwice", "<l><k>2</k><v/></l><l><k>2</k><c/></l>", kEntry2},
        Filtering{"ByOneKeyWholeAndPart", "<l><k>1</k><v/></l><l><k>1</k></l>", kEntry1},
        Filtering{"ByContradictingKeys", "<l><k>1</k><k>2</k></l>", ""},
        Filtering{"ByValue", "<l><v>red</v></l>", std::string(kEntry1) + kEntry3},
        Filtering{"ByValueAndSelection", "<l><v>red</v><k/></l>", "<l><k>1</k><v>red</v></l><l><k>3</k><v>red</v></l>"},
        Filtering{"ByTwoValues", "<l><k>1</k><v>red</v></l>", kEntry1},
        Filtering{"ByTwoValuesOfWhichOneIsWrong", "<l><k>1</k><v>blue</v></l>", ""},
        Filtering{"ByLeafListValue", "<l><w>r</w><v/></l>", "<l><k>1</k><v>red</v><w>r</w></l>"},
        Filtering{"ByNestedValue", "<l><c><x>c2</x></c></l>", "<l><k>2</k><c><x>c2</x></c></l>"},
        Filtering{"ByNestedKey", "<l><m><n>2</n></m></l>", "<l><k>1</k><m><n>2</n><o>m2</o></m></l>"},
        Filtering{"ByNestedKeys", "<l><k>1</k><m><n>2</n><o/></m></l>", "<l><k>1</k><m><n>2</n><o>m2</o></m></l>"},
        Filtering{"ByValueOfTheTop", "<a>1</a><np/>", "<a>1</a><np><x>1</x><deep><y>2</y></deep></np>"},
        Filtering{"ByWrongValueOfTheTop", "<a>2</a><np/>", ""}, Filtering{"ByNumberWithZeros", "<a>01</a>", kData},
        Filtering{"ByNoNumber", "<a>x</a>", ""}, Filtering{"StateIsKnown", "<st><up/><e><q/></e></st>", ""},
        Filtering{"Json", R"({"small:top": {"a": null, "l": [{"k": "2", "c": {}}]}})",
                  "<a>1</a><l><k>2</k><c><x>c2</x></c></l>"},
        Filtering{"JsonEnvelope", R"({"ietf-netconf:filter": {"small:top": {"np": [null]}}})",
                  "<np><x>1</x><deep><y>2</y></deep></np>"},
        Filtering{"JsonNumber", R"({"small:top": {"a": 1, "w": [null]}})", "<a>1</a><w>p</w><w>q</w>"}),
    [](const testing::TestParamInfo<Filtering>& info) { return info.param.name; });

TEST(Filters, AreFoundInEveryEnvelope) {
  const std::string top = "<top xmlns='urn:small'><a/></top>";
  const std::string filter = fmt::format("<filter type='subtree'>{}</filter>", top);
  const std::vector<std::string> shapes{
      top,
      filter,
      fmt::format("<get>{}</get>", filter),
      fmt::format("<rpc xmlns='{}'><get-config><source><running/></source>{}</get-config></rpc>", kNetconf, filter),
      fmt::format("<filter xmlns='{}'><top><a/></top></filter>", kNetconf),
      "<filter><top><a/></top></filter>",
  };
  for (const std::string& shape : shapes) {
    EXPECT_EQ(selected(parse_filter(small_models(), {shape})), flat_top("<a>1</a>")) << shape;
  }
}

TEST(Filters, ThatAreEmptySelectNothing) {
  for (const char* const shape : {"<filter/>", "<get><filter type='subtree'> </filter></get>"}) {
    bool nothing = false;
    EXPECT_TRUE(parse_filter(small_models(), {shape}, &nothing).empty()) << shape;
    EXPECT_TRUE(nothing) << shape;
  }
  bool nothing = true;
  parse_filter(small_models(), {"<top xmlns='urn:small'/>"}, &nothing);
  EXPECT_FALSE(nothing);
}

TEST(Filters, OfNothingSelectEverything) {
  EXPECT_EQ(selected(Data()), flat_top(kData));
}

TEST(Filters, OfNothingInNothing) {
  EXPECT_EQ(selected(Data(), parse_filter(small_models(), {"<top xmlns='urn:small'/>"})), "");
}

TEST(Filters, CompareIdentitiesWhateverTheirPrefix) {
  const auto type = [](std::string_view prefix) {
    return fmt::format("<type xmlns:{0}='urn:ietf:params:xml:ns:yang:iana-if-type'>{0}:ethernetCsmacd</type>", prefix);
  };
  const std::string request = on_interface(fmt::format("<config>{}<mtu>1500</mtu></config>", type("ianaift")));
  const Data data = parse_edit(compact_models().get(), {request}, Operation::merge).tree;
  const auto finds_mtu = [&](const std::string& given) {
    const std::string filter = fmt::format(
        "<interfaces xmlns='{}'><interface><config>{}<mtu/></config></interface></interfaces>", kInterfacesNs, given);
    const std::string found = selected(data.clone(), parse_filter(compact_models().get(), {filter}));
    return found.find("<mtu>1500</mtu>") != std::string::npos;
  };
  EXPECT_TRUE(finds_mtu(type("x")));
  EXPECT_FALSE(finds_mtu("<type>ethernetCsmacd</type>"));
}

struct BadFilter {
  const char* name;
  const char* text;
  RpcError error;
};

void PrintTo(const BadFilter& bad, std::ostream* out) {
  *out << bad.name;
}

class RefusedFilter : public testing::TestWithParam<BadFilter> {};

TEST_P(RefusedFilter, NamesElementAndPath) {
  const std::string found = outcome_of([&] {
    return parse_filter(small_models(), {GetParam().text, format_of(GetParam().text), "filter"}).print(Format::xml);
  });
  EXPECT_EQ(found, described(GetParam().error));
}

INSTANTIATE_TEST_SUITE_P(
    Documents, RefusedFilter,
    testing::Values(BadFilter{"UnknownElement",
                              "<top xmlns='urn:small'><np><z/></np></top>",
                              {.tag = "unknown-element",
                               .path = "/small:top/np/z",
                               .message = "'z' is not known in 'np'; allowed: x, deep",
                               .bad_element = "z"}},
                    BadFilter{"UnknownElementInJson",
                              R"({"small:top": {"np": {"z": null}}})",
                              {.tag = "unknown-element",
                               .path = "/small:top/np/z",
                               .message = "'z' is not known in 'np'; allowed: x, deep",
                               .bad_element = "z"}},
                    BadFilter{"UnknownNamespace",
                              "<top xmlns='urn:large'/>",
                              {.tag = "unknown-namespace",
                               .path = "/top",
                               .message = "'top' is in the namespace \"urn:large\", which no loaded model has",
                               .bad_element = "top",
                               .bad_namespace = "urn:large"}},
                    BadFilter{"NoNamespaceAndUnknown",
                              "<bottom/>",
                              {.tag = "unknown-namespace",
                               .path = "/bottom",
                               .message = "'bottom' is in no namespace of a model",
                               .bad_element = "bottom"}},
                    BadFilter{"Attribute",
                              "<top xmlns='urn:small'><l v='red'/></top>",
                              {.tag = "unknown-attribute",
                               .path = "/small:top/l",
                               .message = "'l' is filtered by the attribute \"v\"; filters compare elements only",
                               .bad_element = "l",
                               .bad_attribute = "v"}},
                    BadFilter{"XPath",
                              "<filter type='xpath' select='/top'/>",
                              {.tag = "bad-attribute",
                               .path = "/filter",
                               .message = "filters of type 'xpath' are not known; allowed: subtree",
                               .bad_element = "filter",
                               .bad_attribute = "select"}},
                    BadFilter{"TextInAContainer",
                              "<top xmlns='urn:small'>x</top>",
                              {.tag = "bad-element",
                               .path = "/small:top",
                               .message = "'top' holds elements, not the text \"x\"",
                               .bad_element = "top"}},
                    BadFilter{"ElementsInALeaf",
                              "<top xmlns='urn:small'><a><b/></a></top>",
                              {.tag = "bad-element",
                               .path = "/small:top/a",
                               .message = "'a' holds a value, not elements",
                               .bad_element = "a"}},
                    BadFilter{"EditForAFilter",
                              "<edit-config><config/></edit-config>",
                              {.tag = "operation-not-supported",
                               .path = "/edit-config",
                               .message = "'edit-config' is not what is asked for here",
                               .bad_element = "edit-config"}}),
    [](const testing::TestParamInfo<BadFilter>& info) { return info.param.name; });

// Where another model goes on, its name stands in the path.
TEST(RefusedFilters, NameTheModuleOfEachPart) {
  const std::string text = on_vlan("text");
  const std::string found = outcome_of([&] {
    return parse_filter(compact_models().get(), {text, Format::xml, "filter"}).print(Format::xml);
  });
  EXPECT_EQ(found, described({.tag = "bad-element",
                              .path = "/openconfig-interfaces:interfaces/interface/subinterfaces/subinterface"
                                      "/openconfig-vlan:vlan",
                              .message = "'vlan' holds elements, not the text \"text\"",
                              .bad_element = "vlan"}));
}

struct PathCase {
  const char* name;
  std::vector<std::string> paths;
  std::string selected;  // inside <top>
};

void PrintTo(const PathCase& each, std::ostream* out) {
  *out << each.name;
}

class Paths : public testing::TestWithParam<PathCase> {};

TEST_P(Paths, Select) {
  const std::string found = outcome_of([&] { return selected(paths_to_filter(small_models(), GetParam().paths)); });
  EXPECT_EQ(found, GetParam().selected.empty() ? "" : flat_top(GetParam().selected));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Paths,
    testing::Values(PathCase{"Leaf", {"/top/a"}, "<a>1</a>"}, PathCase{"Prefix", {"/s:top/s:a"}, "<a>1</a>"},
                    PathCase{"ModuleName", {"/small:top/a"}, "<a>1</a>"},
                    PathCase{"SlashAtTheEnd", {" /top/np/ "}, "<np><x>1</x><deep><y>2</y></deep></np>"},
                    PathCase{"Root", {"/"}, kData}, PathCase{"RootAmongOthers", {"/top/a", "/"}, kData},
                    PathCase{"Top", {"/top"}, kData}, PathCase{"Key", {"/top/l[k='2']"}, kEntry2},
                    PathCase{"KeyInOtherQuotes", {"/top/l[k=\"2\"]"}, kEntry2},
                    PathCase{"KeyWithoutQuotes", {"/top/l[k=2]"}, kEntry2},
                    PathCase{"KeyWithPrefix", {"/s:top/s:l[s:k='2']"}, kEntry2},
                    PathCase{"BelowAKey", {"/top/l[k='1']/m[n='2']/o"}, "<l><k>1</k><m><n>2</n><o>m2</o></m></l>"},
                    PathCase{"TwoConditions", {"/top/l[v='red'][k='3']"}, kEntry3},
                    PathCase{"NoSuchKey", {"/top/l[k='/]']"}, ""},
                    PathCase{"Several",
                             {"/top/a", "/top/l[k='3']", "/top/l[k='1']/v"},
                             "<a>1</a><l><k>1</k><v>red</v></l>" + std::string(kEntry3)}),
    [](const testing::TestParamInfo<PathCase>& info) { return info.param.name; });

TEST(BadPaths, AreRefused) {
  const std::vector<std::pair<const char*, RpcError>> cases{
      {"top",
       {.tag = "invalid-value",
        .path = "",
        .message = "the path \"top\" cannot be read: a '/' is expected before \"top\""}},
      {"",
       {.tag = "invalid-value", .path = "", .message = "the path \"\" cannot be read: a '/' is expected before \"\""}},
      {"/top//a",
       {.tag = "invalid-value",
        .path = "",
        .message = "the path \"/top//a\" cannot be read: a name is expected before \"/a\""}},
      {"/top/l[k]",
       {.tag = "invalid-value",
        .path = "",
        .message = "the path \"/top/l[k]\" cannot be read: a '=' is expected before \"]\""}},
      {"/top/l[k='1",
       {.tag = "invalid-value",
        .path = "",
        .message = "the path \"/top/l[k='1\" cannot be read: the end of the value is missing before \"1\""}},
      {"/top/l[k='1'",
       {.tag = "invalid-value",
        .path = "",
        .message = "the path \"/top/l[k='1'\" cannot be read: a ']' is expected before \"\""}},
      {"/top/l[c='1']",
       {.tag = "invalid-value",
        .path = "",
        .message = "the path \"/top/l[c='1']\" cannot be read: 'c' has no value to compare before \"\""}},
      {"/top/l[k='1']x",
       {.tag = "invalid-value",
        .path = "",
        .message = "the path \"/top/l[k='1']x\" cannot be read: a '/' is expected before \"x\""}},
      {"/top/x",
       {.tag = "unknown-element", .path = "/top/x", .message = "'x' is not known in 'top'", .bad_element = "x"}},
      {"/x", {.tag = "unknown-element", .path = "/x", .message = "'x' is not known in the models", .bad_element = "x"}},
      {"/t:top",
       {.tag = "unknown-element",
        .path = "/t:top",
        .message = "'t:top' is not known in the models",
        .bad_element = "top"}},
      {"/top/l[x='1']",
       {.tag = "unknown-element", .path = "/top/l[x", .message = "'x' is not known in 'l'", .bad_element = "x"}},
  };
  for (const auto& bad : cases) {
    const std::string found = outcome_of([&] { return flat(paths_to_filter(small_models(), {bad.first})); });
    EXPECT_EQ(found, described(bad.second)) << bad.first;
  }
}

// Nothing after it is dropped without a word, in the name or in the value.
TEST(BadPaths, HoldANul) {
  const std::string whole = "/top/l[k='1']";
  for (std::size_t at = 1; at <= whole.size(); ++at) {
    std::string path = whole;
    path.insert(at, 1, '\0');
    const std::string found = outcome_of([&] { return flat(paths_to_filter(small_models(), {path})); });
    EXPECT_NE(found.find("a NUL character stands in it"), std::string::npos) << at << ": " << found;
  }
}

// Published models have a top-level node of this name in another module, which is even loaded first.
TEST(PathsWithoutPrefix, MeanOpenConfigsInterfaces) {
  if (!has_published_models()) GTEST_SKIP() << "no published modules in " << OC_VLAN_PUBLISHED_YANG;
  const std::string path = "/interfaces/interface[name='Ethernet0/0/1.1']/config";
  EXPECT_EQ(
      flat(paths_to_filter(published_models().get(), {path})),
      "<interfaces xmlns=\"http://openconfig.net/yang/interfaces\"><interface><name>Ethernet0/0/1.1</name><config/>"
      "</interface></interfaces>");
}

}  // namespace
}  // namespace yfw::test
