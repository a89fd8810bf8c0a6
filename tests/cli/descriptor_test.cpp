// Standard streams that are closed, interrupted or in a hurry.
#include "cli/descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <thread>

#include "faults.h"
#include "run.h"
#include "samples.h"

namespace cli_test {
namespace {

using Descriptors = CliTest;

// No file that the tool opens takes the place of a stream.
TEST_F(Descriptors, AClosedStreamIsNoFile) {
  const std::string request = folder.file("request.xml", single_tagged("100"));
  const std::string trace = folder.path("trace.txt");
  const std::string traced = [&] {
    run({"translate", request, "--trace=" + trace});
    return trace_without_addresses(contents(trace));
  }();
  ASSERT_NE(traced, "");
  for (const std::vector<int>& closed : {std::vector{1}, {0, 1}, {1, 2}, {0, 1, 2}}) {
    const Outcome outcome = run({"translate", request, "--trace=" + trace}, {.closed = closed});
    EXPECT_EQ(outcome.exit_code, 3) << outcome;
    EXPECT_EQ(trace_without_addresses(contents(trace)), traced);
    if (closed.back() == 1) {
      EXPECT_NE(outcome.err.find("ocvlan: standard output: cannot be written: Bad file descriptor\n"),
                std::string::npos)
          << outcome;
    }
  }
}

TEST_F(Descriptors, NothingIsReadFromAClosedInput) {
  const std::string running = folder.file("running.xml", plain_running());
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"translate", "-"}, {"apply", "-", "--running", running}, {"read", "--running", "-"}}) {
    const Outcome outcome = run(arguments, {.closed = {0}});
    EXPECT_EQ(outcome.exit_code, 3) << outcome;
    EXPECT_EQ(outcome.err, "ocvlan: standard input: cannot be read: Bad file descriptor\n");
  }
}

TEST_F(Descriptors, AResultThatGoesToAFileNeedsNoStream) {
  const std::string request = folder.file("request.xml", single_tagged("100"));
  const std::string after = run({"translate", request, "--l2"}).out;
  const std::string file = folder.path("native.xml");
  const Outcome outcome = run({"translate", request, "--l2", "-o", file}, {.closed = {0, 1, 2}});
  EXPECT_EQ(outcome.exit_code, 0) << outcome;
  EXPECT_EQ(contents(file), after);
}

TEST_F(Descriptors, AnInterruptionIsNoFailure) {
  if (!kCanPreload) GTEST_SKIP() << "a sanitizer wants to be the first library";
  const Outcome whole = run({"translate", "-", "--l2"}, {.input = single_tagged("100")});
  for (const std::string& what :
       {"read=once:" + std::to_string(EINTR), "write=once:" + std::to_string(EINTR), std::string("write=short")}) {
    const Outcome outcome = run({"translate", "-", "--l2"}, {.input = single_tagged("100"), .variables = fault(what)});
    EXPECT_EQ(outcome.exit_code, 0) << what << "\n" << outcome;
    EXPECT_EQ(outcome.out, whole.out) << what;
  }
}

// Whoever shares a pipe may have asked that calls on it do not wait.
TEST(ReadAndWrite, WaitWhereTheDescriptorDoesNot) {
  std::array<int, 2> ends = {};
  ASSERT_EQ(pipe2(ends.data(), O_NONBLOCK), 0);
  const std::string text(1 << 20, 'x');
  std::string read;
  int error = -1;
  std::thread reader([&] { error = ocvlan::read_fully(ends[0], read); });
  EXPECT_EQ(ocvlan::write_fully(ends[1], text), 0);
  close(ends[1]);
  reader.join();
  close(ends[0]);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(read.size(), text.size());
}

}  // namespace
}  // namespace cli_test
