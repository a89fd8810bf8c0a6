// include/oc_vlan/handlers.h is what the rows say, and stands on its own.
#include "plugin/header/handlers_header.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

constexpr char kFile[] = OC_VLAN_SOURCE_DIR "/include/oc_vlan/handlers.h";

Lines lines_of(std::istream& stream) {
  Lines lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The lines of one text that the other has not.
std::string missing(const Lines& here, const Lines& there, const char* mark) {
  const std::set<std::string> others(there.begin(), there.end());
  std::string text;
  for (const std::string& line : here) {
    if (!others.contains(line)) text += mark + line + "\n";
  }
  return text;
}

TEST(HandlersHeader, is_up_to_date) {
  std::istringstream stream(header::handlers_header());
  const Lines made = lines_of(stream);
  std::ifstream file(kFile);
  const Lines found = lines_of(file);
  EXPECT_TRUE(made == found) << kFile << " is out of date, scripts/make-handlers renews it:\n"
                             << missing(found, made, "-") << missing(made, found, "+");
}

// Whoever includes it has no more than the public headers.
TEST(HandlersHeader, includes_public_headers_only) {
  std::ifstream file(kFile);
  std::string includes;
  for (const std::string& line : lines_of(file)) {
    if (line.starts_with("#include")) includes += line + "\n";
  }
  EXPECT_EQ(includes, "#include <stdint.h>\n#include \"yfw/yfw_map.h\"\n");
}

}  // namespace
