// What each subcommand does.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/files.h"
#include "cli/options.h"
#include "framework/data.h"
#include "framework/host.h"

namespace ocvlan {

// A host as the options want it, and what it says while it works.
class Session {
 public:
  explicit Session(Options options);

  const Options& options() const { return options_; }
  yfw::Host& host() { return host_; }

  void load_running(const std::string& file);
  void warn(const std::vector<yfw::Warning>& warnings) const;
  void finish_trace();

 private:
  Options options_;
  std::unique_ptr<LineFile> trace_;
  yfw::Host host_;
};

// The output of the subcommand.
std::string translate(Session& session);
std::string apply(Session& session);
std::string read(Session& session);
std::string fetch(Session& session);
std::string diff(Session& session);

// Where configuration and state, both in `data`, differ: a leaf a line, or the same as a document.
std::string compare_state(const yfw::Data& data);
std::string compare_state(const yfw::Data& data, yfw::Format format);

// A table with a line for each interface and sub-interface that was read, and a column for each of `sides`, which are
// "config" and "state" or one of them.
std::string read_text(const yfw::ReadResult& result, const std::vector<const char*>& sides);

}  // namespace ocvlan
