// docs/mapping.md says what the plug-in does, of every leaf of its table.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "mapping/document/document.h"
#include "mapping/document/rows.h"
#include "yang/modules.h"

namespace mapping {
namespace {

using Lines = std::vector<std::string>;

constexpr char kFile[] = OC_VLAN_SOURCE_DIR "/docs/mapping.md";

Lines lines_of(std::istream& stream) {
  Lines lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

Lines checked_in() {
  std::ifstream file(kFile);
  return lines_of(file);
}

// The lines of one text that the other has not, each once.
std::string missing(const Lines& here, const Lines& there, const char* mark) {
  const std::set<std::string> others(there.begin(), there.end());
  std::string text;
  for (const std::string& line : here) {
    if (!others.contains(line)) text += mark + line + "\n";
  }
  return text;
}

TEST(Mapping, IsUpToDate) {
  std::istringstream stream(document());
  const Lines made = lines_of(stream);
  const Lines found = checked_in();
  EXPECT_TRUE(made == found) << kFile << " is out of date, scripts/make-mapping renews it:\n"
                             << missing(found, made, "-") << missing(made, found, "+");
}

// The cells of a row of a table, without the marks of code.
Lines cells_of(const std::string& line) {
  Lines cells;
  if (!line.starts_with("| `")) return cells;
  for (std::size_t begin = 2; begin < line.size();) {
    const std::size_t end = line.find(" |", begin);
    std::string cell = line.substr(begin, end - begin);
    if (cell.starts_with('`') && cell.find('`', 1) == cell.size() - 1) cell = cell.substr(1, cell.size() - 2);
    cells.push_back(cell);
    begin = end + 3;
  }
  return cells;
}

struct Documented {
  std::set<std::string> mapped;
  std::set<std::string> refused;
  Lines unread;  // mapped leaves of which some direction is not known
};

// The leaves that the document has, by the headings above their tables.
Documented documented() {
  constexpr std::string_view kContainer = "### `";
  Documented leaves;
  std::string section;
  std::string container;
  for (const std::string& line : checked_in()) {
    if (line.starts_with("## ")) section = line.substr(3), container.clear();
    if (line.starts_with(kContainer)) container = line.substr(kContainer.size(), line.rfind('`') - kContainer.size());
    const Lines cells = cells_of(line);
    if (!container.empty() && cells.size() == 4) {
      for (const char* const branch : {"/config/", "/state/"}) leaves.mapped.insert(container + branch + cells[0]);
      for (const std::string& cell : cells) {
        if (cell == "nothing" || cell == "no such leaf") leaves.unread.push_back(line);
      }
    }
    if (section == "Leaves that are refused" && cells.size() == 3) leaves.refused.insert(cells[0]);
  }
  return leaves;
}

TEST(Mapping, HasEveryLeafOfTheTable) {
  std::set<std::string> mapped;
  std::set<std::string> refused;
  for (const Leaf& leaf : leaves()) (leaf.is_mapped ? mapped : refused).insert(leaf.path);
  EXPECT_EQ(mapped.size() + refused.size(), leaves().size());
  const Documented found = documented();
  EXPECT_EQ(found.mapped, mapped);
  EXPECT_EQ(found.refused, refused);
}

TEST(Mapping, KnowsEveryDirectionOfMappedLeaves) {
  EXPECT_EQ(documented().unread, Lines());
}

// The data paths of the leaves that a module adds, below their list entries.
void collect_leaves(const lysc_node* parent, const std::string& path, std::set<std::string>& found) {
  const lysc_node* node = nullptr;
  while ((node = lys_getnext(node, parent, nullptr, 0)) != nullptr) {
    const std::string here = node->nodetype == LYS_LIST ? "" : (path.empty() ? "" : path + "/") + node->name;
    if ((node->nodetype & (LYS_LEAF | LYS_LEAFLIST)) == 0) {
      collect_leaves(node, here, found);
    } else if (std::string_view(node->module->name) == "openconfig-vlan") {
      found.insert(here);
    }
  }
}

TEST(Mapping, HasEveryLeafOfTheModel) {
  const yang_test::Context models = yang_test::make_context({yang_test::kOwnYang});
  ASSERT_EQ(yang_test::load(models, yang_test::kOpenConfigModules), "");
  const lysc_node* const interface = yang_test::find_node(models, "openconfig-interfaces", "interfaces/interface");
  ASSERT_NE(interface, nullptr);
  std::set<std::string> in_model;
  collect_leaves(interface, "", in_model);
  std::set<std::string> in_table;
  for (const Leaf& leaf : leaves()) in_table.insert(leaf.path);
  EXPECT_EQ(in_table, in_model);
}

}  // namespace
}  // namespace mapping
