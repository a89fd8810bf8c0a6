// Where results go: a file is the old one or the new one, whatever happens, and nothing is left beside it.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "faults.h"
#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

using Output = CliTest;

TEST_F(Output, OutputReplacesAFileAndKeepsItsMode) {
  const std::string file = folder.file("native.xml", "before");
  chmod(file.c_str(), 0640);
  const Outcome outcome = run({"translate", "-", "--l2", "-o", file}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(contents(file), run({"translate", "-", "--l2"}, {.input = single_tagged("100")}).out);
  struct stat status = {};
  ASSERT_EQ(stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
  EXPECT_EQ(folder.names(), std::vector<std::string>{"native.xml"});
}

TEST_F(Output, OutputThroughALinkKeepsTheLink) {
  const std::string file = folder.file("native.xml", "before");
  const std::string link = folder.path("link.xml");
  std::filesystem::create_symlink("native.xml", link);
  EXPECT_EQ(run({"translate", "-", "--l2", "-o", link}, {.input = single_tagged("100")}).exit_code, 0);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_NE(contents(file), "before");
}

TEST_F(Output, ARefusalLeavesTheOutputFileAsItWas) {
  const std::string file = folder.file("after.xml", "before");
  const std::string request = folder.file("request.xml", single_tagged("4095"));
  const Outcome outcome = run({"translate", request, "--l2", "-o", file});
  EXPECT_EQ(outcome.exit_code, 1) << outcome;
  EXPECT_EQ(contents(file), "before");
}

TEST_F(Output, OutputIntoAFolderThatIsNotThere) {
  const std::string file = folder.path("none/native.xml");
  const Outcome outcome = run({"translate", "-", "--l2", "-o", file}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "ocvlan: " + file + ": cannot be written: No such file or directory\n");
  EXPECT_TRUE(folder.names().empty());
}

TEST_F(Output, OutputOntoAFolder) {
  const Outcome outcome = run({"translate", "-", "--l2", "-o", folder.path("")}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_NE(outcome.err.find("cannot be written: Is a directory"), std::string::npos) << outcome;
}

// The kernel refuses the second half, as it does on a full disk.
TEST_F(Output, AFullDiskLeavesTheOutputFileAsItWas) {
  constexpr std::size_t kLimit = 256;
  const std::vector<std::string> arguments = {"translate", "-", "--l2", "--quiet"};
  ASSERT_GT(run(arguments, {.input = single_tagged("100")}).out.size(), kLimit);
  const std::string file = folder.file("native.xml", "before");
  const Outcome outcome = run({"translate", "-", "--l2", "--quiet", "-o", file},
                              {.input = single_tagged("100"), .file_size_limit = kLimit});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.err, "ocvlan: " + file + ": cannot be written: File too large\n");
  EXPECT_EQ(contents(file), "before");
  EXPECT_EQ(folder.names(), std::vector<std::string>{"native.xml"});
}

// What is no regular file is written to, not replaced.
TEST_F(Output, OutputIntoAPipe) {
  const std::string pipe = folder.path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::string script =
      "timeout 20 cat '" + pipe + "' & '" OC_VLAN_TOOL_FILE "' translate - --l2 -o '" + pipe + "'; wait";
  const Outcome outcome = run({"-c", script}, {.input = single_tagged("100"), .program = "/bin/bash"});
  EXPECT_EQ(outcome.out, run({"translate", "-", "--l2"}, {.input = single_tagged("100")}).out) << outcome;
  EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST_F(Output, StandardOutputIsFull) {
  const Outcome outcome = run({"translate", "-", "--l2"}, {.input = single_tagged("100"), .output_file = "/dev/full"});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.err, "ocvlan: standard output: cannot be written: No space left on device\n");
}

TEST_F(Output, NobodyReadsStandardOutput) {
  const Outcome outcome =
      run({"translate", "-", "--l2", "--quiet"}, {.input = single_tagged("100"), .reader_gone = true});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(run({"--help"}, {.reader_gone = true}).exit_code, 0);
}

// More than a pipe holds, so that the reader is gone in the middle of a write.
TEST_F(Output, TheReaderStopsInTheMiddle) {
  std::string entries;
  for (int i = 1; i <= 1000; ++i) {
    entries += entry("Ethernet0/0/1." + std::to_string(i), encapsulation("<outer-range1-low>7</outer-range1-low>"));
  }
  const std::string file = folder.file("running.xml", running(entries));
  ASSERT_GT(run({"read", "--running", file}).out.size(), 1U << 17);
  const std::string script = "'" OC_VLAN_TOOL_FILE "' read --running '" + file + "' | head -c 1; exit ${PIPESTATUS[0]}";
  const Outcome outcome = run({"-c", script}, {.program = "/bin/bash"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(outcome.out, "<");
  EXPECT_EQ(outcome.err, "");
}

// Links are followed as far as they go.
TEST_F(Output, ThroughLinksToAFileThatIsNotThereYet) {
  std::filesystem::create_directory(folder.path("there"));
  std::filesystem::create_symlink("second", folder.path("first"));
  std::filesystem::create_symlink("there/native.xml", folder.path("second"));
  const Outcome outcome = run({"translate", "-", "--l2", "-o", folder.path("first")}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path("first")));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path("second")));
  EXPECT_EQ(contents(folder.path("there/native.xml")),
            run({"translate", "-", "--l2"}, {.input = single_tagged("100")}).out);
}

TEST_F(Output, ThroughLinksThatLeadNowhere) {
  std::filesystem::create_symlink("second", folder.path("first"));
  std::filesystem::create_symlink("first", folder.path("second"));
  std::filesystem::create_symlink("none/native.xml", folder.path("lost"));
  for (const auto& [link, why] :
       {std::pair("first", "Too many levels of symbolic links"), std::pair("lost", "No such file or directory")}) {
    const std::string file = folder.path(link);
    const Outcome outcome = run({"translate", "-", "--l2", "-o", file}, {.input = single_tagged("100")});
    EXPECT_EQ(outcome.exit_code, 3) << outcome;
    EXPECT_EQ(outcome.err, "ocvlan: " + file + ": cannot be written: " + why + "\n");
    EXPECT_TRUE(std::filesystem::is_symlink(file));
  }
  EXPECT_EQ(folder.names(), (std::vector<std::string>{"first", "lost", "second"}));
}

TEST_F(Output, MayBeAnInput) {
  const std::string file = folder.file("running.xml", plain_running());
  const std::vector<std::string> apply = {"apply", "-", "--running", file};
  const std::string after = run(apply, {.input = single_tagged("100")}).out;
  std::vector<std::string> onto_itself = apply;
  onto_itself.insert(onto_itself.end(), {"-o", file});
  EXPECT_EQ(run(onto_itself, {.input = single_tagged("100")}).exit_code, 0);
  EXPECT_EQ(contents(file), after);
}

// Only the administrator can make files of others.
class ForeignOutput : public Output {
 protected:
  static constexpr unsigned kOther = 4711;
  static constexpr unsigned kSomebody = 4712;
  std::string file = folder.file("native.xml", "before");

  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
    ASSERT_EQ(chown(file.c_str(), kOther, kOther + 1), 0);
    ASSERT_EQ(chmod(file.c_str(), 04751), 0);
    ASSERT_EQ(chmod(folder.path("").c_str(), 0777), 0);
  }
  void expect_owner_and_mode() const {
    struct stat status = {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, kOther);
    EXPECT_EQ(status.st_gid, kOther + 1);
    EXPECT_EQ(status.st_mode & 07777U, 04751U);
  }
};

TEST_F(ForeignOutput, KeepsOwnerGroupAndMode) {
  const Outcome outcome = run({"translate", "-", "--l2", "-o", file}, {.input = single_tagged("100")});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_NE(contents(file), "before");
  expect_owner_and_mode();
}

TEST_F(ForeignOutput, StaysWhereTheyCannotBeKept) {
  if (run({"--version"}, {.user = kSomebody}).exit_code != 0) GTEST_SKIP() << "others cannot run the tool from here";
  const Outcome outcome =
      run({"translate", "-", "--l2", "-o", file}, {.input = single_tagged("100"), .user = kSomebody});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.err,
            "ocvlan: " + file + ": cannot be written: its owner and group cannot be kept: Operation not permitted\n");
  EXPECT_EQ(contents(file), "before");
  expect_owner_and_mode();
  EXPECT_EQ(folder.names(), std::vector<std::string>{"native.xml"});
}

// The kernel takes set-group-id from whoever is not of the group, and says nothing.
TEST_F(ForeignOutput, StaysWhereTheModeCannotBeKept) {
  if (run({"--version"}, {.user = kSomebody}).exit_code != 0) GTEST_SKIP() << "others cannot run the tool from here";
  ASSERT_EQ(chown(folder.path("").c_str(), 0, kOther), 0);
  ASSERT_EQ(chmod(folder.path("").c_str(), 02777), 0);
  ASSERT_EQ(chown(file.c_str(), kSomebody, kOther), 0);
  ASSERT_EQ(chmod(file.c_str(), 02755), 0);
  const Outcome outcome =
      run({"translate", "-", "--l2", "-o", file}, {.input = single_tagged("100"), .user = kSomebody});
  EXPECT_EQ(outcome.exit_code, 3) << outcome;
  EXPECT_EQ(outcome.err, "ocvlan: " + file + ": cannot be written: its mode cannot be kept\n");
  EXPECT_EQ(contents(file), "before");
  EXPECT_EQ(folder.names(), std::vector<std::string>{"native.xml"});
}

TEST_F(ForeignOutput, IntoAFolderThatIsOnlyRead) {
  if (run({"--version"}, {.user = kSomebody}).exit_code != 0) GTEST_SKIP() << "others cannot run the tool from here";
  ASSERT_EQ(chmod(folder.path("").c_str(), 0755), 0);
  for (const char* const name : {"native.xml", "new.xml"}) {
    const std::string output = folder.path(name);
    const Outcome outcome =
        run({"translate", "-", "--l2", "-o", output}, {.input = single_tagged("100"), .user = kSomebody});
    EXPECT_EQ(outcome.exit_code, 3) << outcome;
    EXPECT_EQ(outcome.err, "ocvlan: " + output + ": cannot be written: Permission denied\n");
  }
  EXPECT_EQ(contents(file), "before");
  EXPECT_EQ(folder.names(), std::vector<std::string>{"native.xml"});
}

// Runs the tool with a fault, onto a file that is there.
class FaultyOutput : public Output {
 protected:
  std::string file = folder.file("native.xml", "before");
  std::string after = run({"translate", "-", "--l2"}, {.input = single_tagged("100")}).out;

  void SetUp() override {
    if (!kCanPreload) GTEST_SKIP() << "a sanitizer wants to be the first library";
    ASSERT_NE(after, "");
  }
  Outcome run_with(const std::string& what) const {
    return run({"translate", "-", "--l2", "--quiet", "-o", file},
               {.input = single_tagged("100"), .variables = fault(what)});
  }
};

// Every call that makes, fills or places the copy fails once.
TEST_F(FaultyOutput, StaysWhenAnyCallFails) {
  for (const char* const call : {"mkostemp", "write", "fchmod", "fsync", "rename"}) {
    for (const auto& [number, text] :
         {std::pair(ENOSPC, "No space left on device"), std::pair(EIO, "Input/output error"),
          std::pair(EROFS, "Read-only file system")}) {
      const Outcome outcome = run_with(std::string(call) + "=" + std::to_string(number));
      EXPECT_EQ(outcome.exit_code, 3) << call << "\n" << outcome;
      EXPECT_EQ(outcome.err, "ocvlan: " + file + ": cannot be written: " + text + "\n") << call;
      EXPECT_EQ(contents(file), "before") << call;
      EXPECT_EQ(folder.names(), std::vector<std::string>{"native.xml"}) << call;
    }
  }
}

TEST_F(FaultyOutput, LeavesNothingBehindWhenASignalEndsIt) {
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
    for (const char* const call : {"write", "fchmod", "fsync", "rename"}) {
      const Outcome outcome = run_with(std::string(call) + "=signal:" + std::to_string(signal));
      EXPECT_EQ(outcome.signal, signal) << call << "\n" << outcome;
      EXPECT_EQ(contents(file), "before") << call;
      EXPECT_EQ(folder.names(), std::vector<std::string>{"native.xml"}) << call;
    }
  }
}

// As under nohup.
TEST_F(FaultyOutput, IgnoresASignalThatIsIgnored) {
  const std::string script =
      "trap '' HUP; exec env LD_PRELOAD='" OC_VLAN_FAULTS "' OC_VLAN_FAULT=fsync=signal:" + std::to_string(SIGHUP) +
      " '" OC_VLAN_TOOL_FILE "' translate - --l2 --quiet -o '" + file + "'";
  const Outcome outcome = run({"-c", script}, {.input = single_tagged("100"), .program = "/bin/bash"});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(contents(file), after);
}

TEST_F(FaultyOutput, GoesOnAfterWhatIsNoFailure) {
  for (const std::string& what : {std::string("write=short"), "write=once:" + std::to_string(EINTR)}) {
    folder.file("native.xml", "before");
    const Outcome outcome = run_with(what);
    EXPECT_EQ(outcome.exit_code, 0) << what << "\n" << outcome;
    EXPECT_EQ(contents(file), after) << what;
  }
}

// A refusal is one although nobody, or nothing, takes the document that says so.
TEST_F(Output, OfARefusalMayFail) {
  const std::vector<std::string> arguments = {"translate", "-", "--format", "xml"};
  const Outcome gone = run(arguments, {.input = single_tagged("9999"), .reader_gone = true});
  EXPECT_EQ(gone.exit_code, 1) << gone;
  const Outcome full = run(arguments, {.input = single_tagged("9999"), .output_file = "/dev/full"});
  EXPECT_EQ(full.exit_code, 1) << full;
  EXPECT_NE(full.err.find("ocvlan: standard output: cannot be written: No space left on device\n"), std::string::npos)
      << full;
}

}  // namespace
}  // namespace cli_test
