// Differences of two configurations, in order and with both values.
#include <gtest/gtest.h>

#include "framework/datastore/apply.h"
#include "small_model.h"
#include "yfw-host/compare.h"

namespace yfw::test {
namespace {

std::string told(const std::string& before, const std::string& after) {
  std::string text;
  for (const Delta& delta : compare(small_edit(before).tree, small_edit(after).tree)) {
    text += fmt::format("{}: {} -> {}\n", delta.path, delta.was_present ? "'" + delta.before + "'" : "absent",
                        delta.is_present ? "'" + delta.after + "'" : "absent");
  }
  return text;
}

struct Comparison {
  const char* name;
  const char* before;
  const char* after;
  const char* told;
};

void PrintTo(const Comparison& each, std::ostream* out) {
  *out << each.name;
}

class Compare : public testing::TestWithParam<Comparison> {};

TEST_P(Compare, Tells) {
  EXPECT_EQ(told(on_top(GetParam().before), on_top(GetParam().after)), GetParam().told);
}

INSTANTIATE_TEST_SUITE_P(
    Trees, Compare,
    testing::Values(Comparison{"Same", "<a>1</a><l><k>1</k></l>", "<l><k>1</k></l><a>1</a>", ""},
                    Comparison{"Changed", "<a>1</a>", "<a>2</a>", "/small:top/a: '1' -> '2'\n"},
                    Comparison{"Gone", "<a>1</a>", "", "/small:top/a: '1' -> absent\n"},
                    Comparison{"Added", "", "<a>1</a>", "/small:top/a: absent -> '1'\n"},
                    Comparison{"DefaultIsAbsent", "<d>5</d>", "", ""},
                    Comparison{"FromTheDefault", "<d>5</d>", "<d>6</d>", "/small:top/d: absent -> '6'\n"},
                    Comparison{"LeafLists", "<w>a</w><w>b</w>", "<w>c</w><w>b</w>",
                               "/small:top/w[.='a']: 'a' -> absent\n/small:top/w[.='c']: absent -> 'c'\n"},
                    Comparison{"LeafListOrderSaysNothing", "<w>a</w><w>b</w>", "<w>b</w><w>a</w>", ""},
                    Comparison{"EmptyContainers", "<np/>", "<np><deep/></np>", ""},
                    Comparison{"Presence", "<pc/>", "", "/small:top/pc: '' -> absent\n"},
                    Comparison{"PresenceWithContent", "", "<pc><z>1</z></pc>",
                               "/small:top/pc: absent -> ''\n/small:top/pc/z: absent -> '1'\n"},
                    Comparison{"EntriesByTheirLeaves", "<l><k>1</k><v>a</v></l>", "<l><k>2</k></l>",
                               "/small:top/l[k='1']/k: '1' -> absent\n/small:top/l[k='1']/v: 'a' -> absent\n"
                               "/small:top/l[k='2']/k: absent -> '2'\n"},
                    Comparison{"ChangesComeBeforeAdditions", "<l><k>2</k><v>a</v></l>",
                               "<a>1</a><l><k>2</k><v>b</v></l>",
                               "/small:top/l[k='2']/v: 'a' -> 'b'\n/small:top/a: absent -> '1'\n"}),
    [](const testing::TestParamInfo<Comparison>& info) { return info.param.name; });

TEST(Compares, NothingWithSomething) {
  EXPECT_EQ(told("<config/>", on_top("<a>1</a>")), "/small:top/a: absent -> '1'\n");
  EXPECT_EQ(told(on_top("<a>1</a>"), "<config/>"), "/small:top/a: '1' -> absent\n");
  EXPECT_EQ(told("<config/>", "<config/>"), "");
}

}  // namespace
}  // namespace yfw::test
