// What the subcommands translate, apply, read and fetch do.
#include "cli/commands.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include "cli/report.h"

namespace ocvlan {
namespace {

yfw::HostOptions host_options(const Options& options, LineFile* trace) {
  yfw::HostOptions host = options.host;
  host.yang_dir = default_yang_dir();
  if (trace != nullptr) host.trace = [trace](const yfw::TraceLine& line) { trace->add(trace_text(line)); };
  return host;
}

// The part of a configuration or of its state that a read is about. Paths are a filter of their own kind: a line each.
Input selection(const Options& options) {
  if (!options.input.empty()) return read_input(options.input);
  Input input;
  input.name = "--path";
  for (const std::string& path : options.paths) input.text += path + "\n";
  return input;
}

void tell_differences(const std::vector<yfw::Difference>& differences) {
  if (!differences.empty()) fmt::print(stderr, "{}", verify_report(differences));
}

// Takes off configuration; what stays is state and the keys above it. Returns whether there is any.
bool keep_state(lyd_node* node) {
  if (node->schema == nullptr) return false;
  if ((node->schema->nodetype & LYD_NODE_TERM) != 0) return (node->schema->flags & LYS_CONFIG_R) != 0;
  bool found = false;
  lyd_node* next = nullptr;
  for (lyd_node* child = lyd_child_no_keys(node); child != nullptr; child = next) {
    next = child->next;
    if (keep_state(child)) {
      found = true;
    } else {
      lyd_free_tree(child);
    }
  }
  return found;
}

void keep_state(yfw::Data& data) {
  lyd_node* next = nullptr;
  for (lyd_node* node = data.get(); node != nullptr; node = next) {
    next = node->next;
    if (keep_state(node)) continue;
    if (node == data.get()) *data.out() = next;
    lyd_free_tree(node);
  }
}

yfw::ReadResult answer(Session& session) {
  const Options& options = session.options();
  const Input filter = selection(options);
  if (options.oper.empty() || options.config) return session.host().read(filter.document());
  const Input oper = read_input(options.oper);
  yfw::ReadResult result = session.host().read_state(oper.document(), filter.document());
  if (options.state) keep_state(result.data);
  return result;
}

}  // namespace

Session::Session(Options options)
    : options_(std::move(options)),
      trace_(options_.trace.empty() ? nullptr : std::make_unique<LineFile>(options_.trace)),
      host_(host_options(options_, trace_.get())) {
  host_.load_plugin(options_.plugin.empty() ? default_plugin() : options_.plugin);
}

void Session::load_running(const std::string& file) {
  warn(host_.set_running(read_input(file).document()));
}

void Session::warn(const std::vector<yfw::Warning>& warnings) const {
  if (options_.quiet) return;
  for (const yfw::Warning& warning : warnings) fmt::print(stderr, "{}\n", warning_line(warning));
}

void Session::finish_trace() {
  if (trace_) trace_->finish();
}

std::string translate(Session& session) {
  const Options& options = session.options();
  if (!options.running.empty()) session.load_running(options.running);
  const Input request = read_input(options.input);
  const yfw::EditResult result = session.host().edit(request.document());
  session.warn(result.warnings);
  tell_differences(result.differences);
  return result.native.print(options.format);
}

std::string apply(Session& session) {
  const Options& options = session.options();
  session.load_running(options.running);
  const Input request = read_input(options.input);
  const yfw::EditResult result = session.host().apply(request.document());
  std::string text = session.host().print_running(options.format);
  session.warn(result.warnings);
  tell_differences(result.differences);
  return text;
}

std::string read(Session& session) {
  const Options& options = session.options();
  if (!options.running.empty()) session.load_running(options.running);
  const yfw::ReadResult result = answer(session);
  session.warn(result.warnings);
  if (options.strict && !result.warnings.empty()) {
    throw yfw::Refused({.tag = "partial-operation",
                        .path = result.warnings.front().path,
                        .message = "the answer would not be whole: " + result.warnings.front().message});
  }
  if (!options.text) return result.data.print_document(options.format);
  std::vector<const char*> sides;
  if (!options.running.empty() && !options.state) sides.push_back("config");
  if (!options.oper.empty() && !options.config) sides.push_back("state");
  return read_text(result, sides);
}

std::string fetch(Session& session) {
  const Options& options = session.options();
  if (!options.running.empty()) session.load_running(options.running);
  const Input filter = selection(options);
  const yfw::FetchResult result = session.host().fetch(filter.document(), options.state);
  session.warn(result.warnings);
  std::string text;
  for (const std::string& path : result.paths) text += path + "\n";
  return text;
}

}  // namespace ocvlan
