// ocvlan: what a device makes of OpenConfig VLAN requests, on a workstation.
#include <fmt/format.h>

#include <csignal>
#include <exception>
#include <string>
#include <string_view>

#include "cli/commands.h"
#include "cli/descriptor.h"
#include "cli/message.h"
#include "cli/options.h"
#include "cli/output.h"
#include "cli/report.h"
#include "yfw-host/error.h"
#include "yfw-host/text.h"

namespace ocvlan {
namespace {

enum ExitCode : int { kDone = 0, kRefused = 1, kUsage = 2, kUnreadable = 3, kInternal = 4 };

std::string run(Session& session) {
  switch (session.options().command) {
    case Command::translate:
      return translate(session);
    case Command::apply:
      return apply(session);
    case Command::read:
      return read(session);
    case Command::fetch:
      return fetch(session);
    case Command::diff:
      return diff(session);
    case Command::help:
      break;
  }
  return session.options().help;
}

// The last line of a run that came to nothing.
void complain(std::string_view message) {
  tell(fmt::format("ocvlan: {}", message));
}

// What was refused stays refused, whatever becomes of the document that says so.
void write_refusal(const yfw::RpcError& error, yfw::Format format) {
  try {
    write_output("", yfw::rpc_error(error, format));
  } catch (const yfw::Unreadable& unwritten) {
    complain(unwritten.what());
  } catch (const ReaderGone&) {
    return;
  }
}

int work(const Options& options) {
  if (options.command == Command::help) {
    write_output("", options.help);
    return kDone;
  }
  try {
    Session session(options);
    const std::string output = run(session);
    session.finish_trace();
    write_output(options.output, output);
    return kDone;
  } catch (const yfw::Refused& refused) {
    tell(refusal_line(refused.error()));
    if (options.format_given) write_refusal(refused.error(), options.format);
    return kRefused;
  }
}

int guarded_main(int argc, const char* const* argv) {
  try {
    return work(parse_options(argc, argv));
  } catch (const UsageError& error) {
    complain(error.what());
    tell("'ocvlan --help' and 'ocvlan SUBCOMMAND --help' say what can be asked.");
    return kUsage;
  } catch (const yfw::Unreadable& error) {
    complain(error.what());
    return kUnreadable;
  } catch (const ReaderGone&) {
    return kDone;
  } catch (const std::exception& error) {
    complain(fmt::format("internal error: {}", error.what()));
    return kInternal;
  }
}

}  // namespace
}  // namespace ocvlan

int main(int argc, char** argv) {
  // Both are told by the write that fails.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  ocvlan::reserve_standard_streams();
  return ocvlan::guarded_main(argc, argv);
}
