// The files that are built and installed: where they look for libraries, and what they say of where they were built.
#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

namespace fs = std::filesystem;

bool is_finished(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string magic(4, '\0');
  stream.read(magic.data(), static_cast<std::streamsize>(magic.size()));
  return magic ==
             "\x7f"
             "ELF" &&
         file.extension() != ".o";
}

std::vector<std::string> finished_below(const fs::path& folder) {
  std::vector<std::string> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.path().string().find("/CMakeFiles/") == std::string::npos && entry.is_regular_file() &&
        is_finished(entry.path())) {
      files.push_back(entry.path());
    }
  }
  return files;
}

std::string shell(const std::string& command) {
  const Outcome outcome = run({"-c", command}, {.program = "/bin/bash"});
  EXPECT_EQ(outcome.exit_code, 0) << command << "\n" << outcome;
  return outcome.out;
}

// What the loader is told to search, a line each: "RUNPATH FOLDER:FOLDER", "NEEDED LIBRARY".
std::string searched(const std::string& file) {
  return shell("readelf -dW '" + file +
               "' | sed -nE 's/.*\\((RPATH|RUNPATH|NEEDED|AUDIT|DEPAUDIT|FILTER|AUXILIARY)\\).*\\[(.*)\\]$/\\1 \\2/p'");
}

// Folders are whole names, or begin where the file itself is; libraries are names without a folder.
void expect_no_current_folder(const std::string& file) {
  std::istringstream lines(searched(file));
  std::string kind;
  for (std::string value; lines >> kind && std::getline(lines >> std::ws, value);) {
    if (!kind.ends_with("PATH")) {
      EXPECT_EQ(value.find('/'), std::string::npos) << file << ": " << kind << ' ' << value;
      continue;
    }
    std::istringstream folders(value + ':');
    for (std::string folder; std::getline(folders, folder, ':');) {
      EXPECT_TRUE(folder.starts_with("/") || folder.starts_with("$ORIGIN")) << file << ": " << value;
    }
    EXPECT_FALSE(value.ends_with(':')) << file << ": " << value;
  }
}

class Installation : public CliTest {
 protected:
  std::string root = folder.path("root");
  void SetUp() override { shell("'" OC_VLAN_CMAKE "' --install '" OC_VLAN_BINARY_DIR "' --prefix '" + root + "'"); }
};

TEST(FinishedFiles, LookForNothingInTheCurrentFolder) {
  const std::vector<std::string> files = finished_below(OC_VLAN_BINARY_DIR);
  EXPECT_THAT(files, testing::IsSupersetOf({OC_VLAN_TOOL_FILE, OC_VLAN_YFW_FILE, OC_VLAN_PLUGIN_FILE}));
  EXPECT_GT(files.size(), 8U) << "tests are finished files too";
  for (const std::string& file : files) expect_no_current_folder(file);
}

TEST_F(Installation, LooksForNothingInTheCurrentFolder) {
  const std::vector<std::string> files = finished_below(root);
  EXPECT_EQ(files.size(), 3U);
  for (const std::string& file : files) expect_no_current_folder(file);
}

// A library in the folder where the tool is started, by the name of any that it needs, is none of its own.
TEST_F(Installation, RunsNothingFromTheCurrentFolder) {
  const std::string request = folder.file("request.xml", single_tagged("100"));
  fs::create_directory(folder.path("planted"));
  for (const char* const file : {OC_VLAN_TOOL_FILE, OC_VLAN_YFW_FILE, OC_VLAN_PLUGIN_FILE}) {
    std::istringstream lines(searched(file));
    std::string kind;
    for (std::string library; lines >> kind >> library;) {
      if (kind == "NEEDED") folder.file("planted/" + library, "no library");
    }
  }
  EXPECT_TRUE(fs::exists(folder.path("planted/libyang.so.2")));
  const Outcome expected = run({"translate", request, "--l2"});
  EXPECT_EQ(expected.exit_code, 0) << expected;
  for (const std::string& program : {std::string(OC_VLAN_TOOL_FILE), root + "/bin/ocvlan"}) {
    const Outcome outcome = run({"translate", request, "--l2"}, {.folder = folder.path("planted"), .program = program});
    EXPECT_EQ(outcome.exit_code, 0) << program << "\n" << outcome;
    EXPECT_EQ(outcome.out, expected.out) << program;
  }
}

// Each header of the library stands for itself, and asks for nothing that is not installed beside it.
TEST_F(Installation, HasHeadersThatNeedNoOthers) {
  std::vector<std::string> headers;
  for (const fs::directory_entry& entry : fs::directory_iterator(root + "/include/yfw-host")) {
    headers.push_back(entry.path().filename());
    const std::string command =
        "'" OC_VLAN_CXX_COMPILER "' -std=c++20 -fsyntax-only -Wall -Wextra -Wpedantic -Werror -x c++ -I '" + root +
        "/include' -include '" + entry.path().string() + "' /dev/null 2>&1 || echo failed";
    EXPECT_EQ(shell(command), "") << entry.path();
  }
  EXPECT_THAT(headers, testing::UnorderedElementsAre("compare.h", "data.h", "error.h", "host.h", "text.h", "words.h"));
}

// Built elsewhere, they are the same.
TEST_F(Installation, SaysNothingOfWhereItWasBuilt) {
#ifndef OC_VLAN_FINISHED
  GTEST_SKIP() << "of a build for debuggers, which have to find the sources";
#endif
  for (const std::string& file : finished_below(root)) {
    EXPECT_EQ(contents(file).find(OC_VLAN_SOURCE_DIR), std::string::npos) << file;
    for (const char* const part : {"../src/", "../framework/", "../cli/", "../include/"}) {
      EXPECT_EQ(contents(file).find(part), std::string::npos) << file << ": " << part << "...";
    }
  }
}

struct Hardening {
  const char* what;
  const char* command;  // on FILE
  const char* expected;
};

TEST_F(Installation, IsHardened) {
#ifndef OC_VLAN_FINISHED
  GTEST_SKIP() << "of a build for debuggers and sanitizers";
#endif
  for (const std::string& file : finished_below(root)) {
    for (const Hardening& each : {
             Hardening{"read-only relocations", "readelf -lW FILE | grep -c GNU_RELRO", "1\n"},
             Hardening{"immediate binding", "readelf -dW FILE | grep -c 'FLAGS.*NOW'", "2\n"},
             Hardening{"no executable stack", "readelf -lW FILE | grep GNU_STACK | grep -co ' RW '", "1\n"},
             Hardening{"no writable code", "readelf -lW FILE | grep -c 'LOAD.*RWE'; true", "0\n"},
             Hardening{"no relocations in code", "readelf -dW FILE | grep -c TEXTREL; true", "0\n"},
             Hardening{"loaded anywhere", "readelf -hW FILE | grep -c 'Type:.*DYN'", "1\n"},
             Hardening{"checks of the stack", "nm -D --undefined-only FILE | grep -c __stack_chk_fail", "1\n"},
         }) {
      std::string command = each.command;
      command.replace(command.find("FILE"), 4, "'" + file + "'");
      EXPECT_EQ(shell(command), each.expected) << file << ": " << each.what;
    }
  }
}

}  // namespace
}  // namespace cli_test
