// Owned trees: moved, copied, printed.
#include "yfw-host/data.h"

#include <gtest/gtest.h>

#include "small_model.h"

namespace yfw::test {
namespace {

TEST(Data, OfNothingPrintsAsNothing) {
  EXPECT_TRUE(Data().empty());
  EXPECT_EQ(Data().print(Format::xml), "");
  EXPECT_EQ(Data().print(Format::json), "{}\n");
  EXPECT_TRUE(Data().clone().empty());
}

TEST(Data, PrintsEverySiblingIndented) {
  const Data data =
      small_edit("<config><top xmlns='urn:small'><a>1</a></top><other xmlns='urn:small'><b>2</b></other></config>")
          .tree;
  EXPECT_EQ(data.print(Format::xml),
            "<top xmlns=\"urn:small\">\n  <a>1</a>\n</top>\n<other xmlns=\"urn:small\">\n  <b>2</b>\n</other>\n");
  EXPECT_EQ(data.print(Format::json),
            "{\n  \"small:top\": {\n    \"a\": 1\n  },\n  \"small:other\": {\n    \"b\": \"2\"\n  }\n}\n");
}

// More than fits into any one piece.
Data large() {
  std::string entries;
  for (int i = 0; i < 5000; ++i) entries += fmt::format("<w>entry {}</w>", i);
  return small_edit(on_top(entries)).tree;
}

TEST(Data, IsHandedOnInPieces) {
  const Data data = large();
  for (const Format format : {Format::xml, Format::json}) {
    std::string text;
    std::size_t pieces = 0;
    data.print_document(format, [&](std::string_view piece) {
      text += piece;
      ++pieces;
    });
    EXPECT_EQ(text, data.print_document(format));
    EXPECT_GT(pieces, 1U);
    EXPECT_EQ(text.back(), '\n');
  }
}

// Nothing goes out after a failure, and what failed is told.
TEST(Data, EndsWithWhatItsSinkThrows) {
  const Data data = large();
  for (std::size_t failing = 1; failing <= 2; ++failing) {
    std::size_t pieces = 0;
    const auto sink = [&](std::string_view) {
      if (++pieces == failing) throw std::length_error("full");
    };
    EXPECT_THROW(data.print(Format::xml, sink), std::length_error);
    EXPECT_EQ(pieces, failing);
  }
}

TEST(Data, PrintsNoDefaultsThatNobodySet) {
  Data data = small_edit(on_top("<a>1</a>")).tree;
  ASSERT_EQ(lyd_validate_all(data.out(), nullptr, LYD_VALIDATE_PRESENT, nullptr), LY_SUCCESS);
  EXPECT_EQ(flat(data), flat_top("<a>1</a>"));
  EXPECT_EQ(flat(small_edit(on_top("<a>1</a><d>5</d>")).tree), flat_top("<a>1</a><d>5</d>"));
}

TEST(Data, OfEmptyContainersPrintsAsNothing) {
  const Data data = small_edit(on_top("<np/>")).tree;
  EXPECT_EQ(data.print(Format::xml), "");
  EXPECT_EQ(data.print(Format::json), "{}\n");
}

TEST(Data, IsPrintedWithItsOperations) {
  const Data data = small_edit(on_top("<np nc:operation='remove'/><w>1</w><w nc:operation='delete'>2</w>"
                                      "<l nc:operation='create'><k>1</k><v nc:operation='remove'/></l>"))
                        .tree;
  EXPECT_EQ(data.print(Format::json), R"({
  "small:top": {
    "w": [
      "1",
      "2"
    ],
    "@w": [
null,
      {
        "ietf-netconf:operation": "delete"
      }
    ],
    "np": {
      "@": {
        "ietf-netconf:operation": "remove"
      }
    },
    "l": [
      {
        "@": {
          "ietf-netconf:operation": "create"
        },
        "k": "1",
        "v": [null],
        "@v": {
          "ietf-netconf:operation": "remove"
        }
      }
    ]
  }
}
)");
}

TEST(Data, MovesAndIsReleased) {
  Data first = small_edit(on_top("<a>1</a>")).tree;
  lyd_node* const node = first.get();
  Data second = std::move(first);
  EXPECT_EQ(second.get(), node);
  first = std::move(second);
  EXPECT_EQ(first.get(), node);
  lyd_node* const released = first.release();
  EXPECT_TRUE(first.empty());
  first.reset(released);
  EXPECT_EQ(flat(first), flat_top("<a>1</a>"));
  first.reset();
  EXPECT_TRUE(first.empty());
}

TEST(Data, ClonesAreTheirOwn) {
  Data data = small_edit(on_top("<a nc:operation='create'>1</a>")).tree;
  const Data copy = data.clone();
  const std::string before = flat(data);
  data.reset();
  EXPECT_EQ(flat(copy), before);
}

}  // namespace
}  // namespace yfw::test
