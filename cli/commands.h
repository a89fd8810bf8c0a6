// What each subcommand does.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/files.h"
#include "cli/options.h"
#include "yfw-host/data.h"
#include "yfw-host/host.h"

namespace ocvlan {

// The documents and the host that the options ask for, and what the host says while it works.
class Session {
 public:
  explicit Session(Options options);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  const Options& options() const { return options_; }
  yfw::Host& host() { return host_; }

  // What the options name, read before any file is written.
  const Input& request() const { return request_; }  // or filter, or A
  const Input& second() const { return second_; }
  const Input& oper() const { return oper_; }
  // Hands the running configuration, which can be large, to the host.
  void load_running();

  void warn(const std::vector<yfw::Warning>& warnings) const;
  void finish_trace();

 private:
  yfw::HostOptions host_options();

  Options options_;
  Input request_;
  Input second_;
  Input running_;
  Input oper_;
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
