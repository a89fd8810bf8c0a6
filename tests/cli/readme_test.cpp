// The README shows what the tool does: each command in it is run and must print what is written below it.
#include <sstream>

#include "run.h"

namespace cli_test {
namespace {

struct Shown {
  std::string command;
  std::string output;
};

// Commands of ```console blocks, each with the lines up to the next command or the end of the block.
std::vector<Shown> commands_of(const std::string& text) {
  std::vector<Shown> commands;
  bool inside = false;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("```")) {
      inside = line == "```console";
    } else if (inside && line.starts_with("$ ")) {
      commands.push_back({line.substr(2), ""});
    } else if (inside && !commands.empty()) {
      commands.back().output += line + "\n";
    }
  }
  return commands;
}

TEST(Readme, SaysTheTruth) {
  const std::vector<Shown> commands = commands_of(contents(OC_VLAN_SOURCE_DIR "/README.md"));
  EXPECT_GE(commands.size(), 8U);
  const Folder folder;
  const std::string place = "cd '" OC_VLAN_SOURCE_DIR "'; PATH=\"" + folder.path("") + ":$PATH\"; ";
  std::filesystem::create_symlink(OC_VLAN_TOOL_FILE, folder.path("ocvlan"));
  for (const Shown& shown : commands) {
    const Outcome outcome = run({"-c", place + "{ " + shown.command + "; } 2>&1"}, {.program = "/bin/bash"});
    EXPECT_EQ(outcome.out, shown.output) << "$ " << shown.command;
  }
}

}  // namespace
}  // namespace cli_test
