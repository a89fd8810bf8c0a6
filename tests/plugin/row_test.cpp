// A row that is wrong must not compile, and the compiler must say why in a sentence.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <string>

namespace {

struct RowCase {
  const char* name;
  const char* rows;
  const char* sentence;  // "" where the rows are right
};

std::ostream& operator<<(std::ostream& out, const RowCase& c) {
  return out << c.rows;
}

class Rows : public testing::TestWithParam<RowCase> {};

TEST_P(Rows, are_checked_when_they_are_compiled) {
  const RowCase& c = GetParam();
  const std::string file = testing::TempDir() + "rows_" + c.name + ".cpp";
  std::FILE* const source = std::fopen(file.c_str(), "w");
  ASSERT_NE(source, nullptr);
  std::fprintf(source,
               "#include \"engine/row.h\"\n"
               "using namespace oc_vlan;\n"
               "constexpr auto kTable = link({%s});\n"
               "static_assert(check<kTable>());\n",
               c.rows);
  std::fclose(source);
  std::FILE* const compiler =
      ::popen((std::string(OC_VLAN_CXX_COMPILER " -std=c++20 -fsyntax-only ") +
               "-I " OC_VLAN_SOURCE_DIR "/include -I " OC_VLAN_SOURCE_DIR "/src " + file + " 2>&1")
                  .c_str(),
              "r");
  ASSERT_NE(compiler, nullptr);
  std::string said;
  char buffer[4096];
  while (std::fgets(buffer, sizeof buffer, compiler) != nullptr) said += buffer;
  const bool compiles = ::pclose(compiler) == 0;
  std::remove(file.c_str());
  EXPECT_EQ(compiles, *c.sentence == '\0') << said;
  EXPECT_NE(said.find(c.sentence), std::string::npos) << said;
}

#define OC_VLAN_ENTRY "{.kind = Kind::kEntry, .walker = \"entry\"},"
#define OC_VLAN_CONTAINER(tag, parent) \
  "{.kind = Kind::kContainer, .walker = \"w\", .tag = " tag ", .parent = " parent "},"
#define OC_VLAN_LEAF(tag, parent) "{.kind = Kind::kLeaf, .walker = \"w\", .tag = " tag ", .parent = " parent "},"

INSTANTIATE_TEST_SUITE_P(
    Table, Rows,
    testing::Values(
        RowCase{"right",
                OC_VLAN_ENTRY OC_VLAN_CONTAINER("\"a\"", "0") OC_VLAN_LEAF("\"b\"", "1") OC_VLAN_LEAF("\"c\"", "1"),
                ""},
        RowCase{"child_first", OC_VLAN_ENTRY OC_VLAN_LEAF("\"b\"", "2") OC_VLAN_CONTAINER("\"a\"", "0"),
                "a row's parent is not a row above it"},
        RowCase{"own_parent", OC_VLAN_ENTRY OC_VLAN_CONTAINER("\"a\"", "0") OC_VLAN_CONTAINER("\"b\"", "2"),
                "a row's parent is not a row above it"},
        RowCase{"no_parent", OC_VLAN_ENTRY OC_VLAN_CONTAINER("\"a\"", "0") OC_VLAN_LEAF("\"b\"", "kNone"),
                "a node without a parent is an entry or a root"},
        RowCase{"no_tag", OC_VLAN_ENTRY OC_VLAN_CONTAINER("nullptr", "0"),
                "a node without a parent is an entry or a root"},
        RowCase{"below_a_leaf",
                OC_VLAN_ENTRY OC_VLAN_CONTAINER("\"a\"", "0") OC_VLAN_LEAF("\"b\"", "1") OC_VLAN_LEAF("\"c\"", "2"),
                "a leaf's row is named as a parent"},
        RowCase{"empty_entry", OC_VLAN_ENTRY, "an entry accepts exactly one element"},
        RowCase{"two_elements", OC_VLAN_ENTRY OC_VLAN_CONTAINER("\"a\"", "0") OC_VLAN_CONTAINER("\"b\"", "0"),
                "an entry accepts exactly one element"},
        RowCase{"same_tag",
                OC_VLAN_ENTRY OC_VLAN_CONTAINER("\"a\"", "0") OC_VLAN_LEAF("\"b\"", "1") OC_VLAN_LEAF("\"b\"", "1"),
                "two rows under one parent have the same tag"},
        RowCase{"list_without_key", OC_VLAN_ENTRY "{.kind = Kind::kList, .walker = \"w\", .tag = \"a\", .parent = 0},",
                "a list, and only a list, has a key and a list path"}),
    [](const auto& info) { return std::string(info.param.name); });

}  // namespace
