// The plan of the house: which rooms of the framework may look into which others, read from what every file includes.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Include {
  std::string file;    // below the project's folder
  std::string target;  // as it is written
};

std::vector<Include> includes_below(const std::string& folder) {
  std::vector<Include> includes;
  const fs::path root = OC_VLAN_SOURCE_DIR;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / folder)) {
    if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp") continue;
    std::ifstream in(entry.path());
    for (std::string line; std::getline(in, line);) {
      if (!line.starts_with("#include \"")) continue;
      const std::size_t begin = line.find('"') + 1;
      includes.push_back({fs::relative(entry.path(), root).string(), line.substr(begin, line.rfind('"') - begin)});
    }
  }
  return includes;
}

// "walk" for framework/walk/plugin.h; "host" for files of no room; empty for headers of other parts.
std::string room_of(const std::string& file) {
  if (!file.starts_with("framework/")) return "";
  const std::string rest = file.substr(file.find('/') + 1);
  const std::size_t slash = rest.find('/');
  return slash == std::string::npos ? "host" : rest.substr(0, slash);
}

// Each room, and those that it may look into.
const std::map<std::string, std::set<std::string>> kPlan = {
    {"tree", {}},
    {"datastore", {"tree"}},
    {"documents", {"tree", "datastore"}},
    {"vlan", {"tree", "datastore"}},
    {"walk", {"tree", "datastore", "vlan"}},
    {"read", {"tree", "datastore", "vlan", "walk"}},
    {"edit", {"tree", "documents", "datastore", "vlan", "walk", "read"}},
    {"host", {"tree", "documents", "datastore", "vlan", "walk", "read", "edit"}},
};

TEST(Rooms, LookOnlyIntoThoseBelow) {
  const std::vector<Include> includes = includes_below("framework");
  std::set<std::string> seen;
  for (const Include& each : includes) {
    const std::string room = room_of(each.file);
    const std::string other = room_of(each.target);
    seen.insert(room);
    ASSERT_TRUE(kPlan.contains(room)) << each.file << " is in no room of the plan";
    if (other.empty() || other == room) continue;
    EXPECT_TRUE(kPlan.at(room).contains(other)) << each.file << " includes " << each.target;
  }
  EXPECT_EQ(seen.size(), kPlan.size()) << "a room of the plan is empty";
}

// A circle of headers within a room would tie its parts together all the same.
TEST(Rooms, HaveNoCirclesOfHeaders) {
  std::map<std::string, std::set<std::string>> below;
  for (const Include& each : includes_below("framework")) {
    if (each.file.ends_with(".h")) below[each.file].insert(each.target);
  }
  std::set<std::string> done;
  std::vector<std::string> way;
  const auto visit = [&](const auto& self, const std::string& header) -> void {
    if (done.contains(header)) return;
    ASSERT_EQ(std::find(way.begin(), way.end(), header), way.end()) << "a circle through " << header;
    way.push_back(header);
    for (const std::string& each : below[header]) self(self, each);
    way.pop_back();
    done.insert(header);
  };
  ASSERT_FALSE(below.empty());
  for (const auto& [header, targets] : std::map(below)) visit(visit, header);
}

// Whoever uses the library sees what is installed, and nothing else of it.
TEST(Rooms, AreClosedToTheToolAndTheBenchmarks) {
  for (const char* const folder : {"cli", "bench", "include/yfw-host"}) {
    const std::vector<Include> includes = includes_below(folder);
    EXPECT_FALSE(includes.empty()) << folder;
    for (const Include& each : includes) {
      EXPECT_FALSE(each.target.starts_with("framework/")) << each.file << " includes " << each.target;
    }
  }
}

}  // namespace
