// The comparison of documents by itself: a test that cannot fail would prove nothing.
#include "golden/documents.h"

namespace golden_test {
namespace {

struct Case {
  std::string left;
  std::string right;
  std::string difference;  // below the names
};

TEST(Documents, AreToldApartByUnifiedDiffs) {
  const std::vector<Case> cases = {
      {"", "", ""},
      {"a\nb\n", "a\nb\n", ""},
      {"", "a\n", "@@ -1 +1 @@\n+a\n"},
      {"a\n", "", "@@ -1 +1 @@\n-a\n"},
      {"a\n", "a", "@@ -1 +1 @@\n-a\n+a(no end of line)\n"},
      {"a\nb\nc\n", "a\nx\nc\n", "@@ -1 +1 @@\n a\n-b\n+x\n c\n"},
      {"1\n2\n3\n4\n5\n6\n7\n8\n9\n", "1\n2\n3\n4\n5\n6\n7\n8\n", "@@ -6 +6 @@\n 6\n 7\n 8\n-9\n"},
      {"0\n1\n2\n3\n4\n5\n6\n7\n8\n9\n", "x\n1\n2\n3\n4\n5\n6\n7\n8\ny\n",
       "@@ -1 +1 @@\n-0\n+x\n 1\n 2\n 3\n@@ -7 +7 @@\n 6\n 7\n 8\n-9\n+y\n"},
  };
  for (const Case& each : cases) {
    const std::string names = each.difference.empty() ? "" : "--- left\n+++ right\n";
    EXPECT_EQ(diff(each.left, each.right, "left", "right"), names + each.difference);
  }
}

}  // namespace
}  // namespace golden_test
