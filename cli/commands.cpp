// What the subcommands translate, apply, read and fetch do.
#include "cli/commands.h"

#include <fmt/format.h>
#include <libyang/libyang.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "cli/message.h"
#include "cli/report.h"

namespace ocvlan {
namespace {

// The part of a configuration or of its state that a read is about. Paths are a filter of their own kind: a line each.
Input selection(const Options& options) {
  if (!options.input.empty()) return read_input(options.input);
  Input input;
  input.name = "--path";
  for (const std::string& path : options.paths) input.text += path + "\n";
  return input;
}

Input read_if_named(const std::string& file) {
  return file.empty() ? Input() : read_input(file);
}

void tell_differences(const std::vector<yfw::Difference>& differences) {
  if (differences.empty()) return;
  for (const std::string& line : verify_report(differences)) tell(line);
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
  const yfw::Document filter = session.request().document();
  if (options.oper.empty() || options.config) return session.host().read(filter);
  yfw::ReadResult result = session.host().read_state(session.oper().document(), filter);
  if (options.state) keep_state(result.data);
  return result;
}

// A trace grows while the tool works: it may be no other file of the run. A pipe can be read once.
Options checked(Options options) {
  if (options.plugin.empty()) options.plugin = default_plugin();
  struct Use {
    std::string shown;
    std::optional<FileIdentity> identity;
  };
  std::vector<Use> uses;
  for (const std::string* const file : {&options.input, &options.second, &options.running, &options.oper}) {
    if (*file == "-") uses.push_back({"standard input", identity_of(STDIN_FILENO)});
    if (!file->empty() && *file != "-") uses.push_back({*file, identity_of(*file)});
  }
  for (auto one = uses.begin(); one != uses.end(); ++one) {
    const bool again = std::any_of(std::next(one), uses.end(), [one](const Use& other) {
      return one->identity && one->identity->is_read_once && one->identity == other.identity;
    });
    if (again) throw UsageError(fmt::format("{} can be read once only", one->shown));
  }
  if (options.trace.empty() || options.trace == "-") return options;
  uses.push_back({options.plugin, identity_of(options.plugin)});
  const bool to_file = !options.output.empty() && options.output != "-";
  uses.push_back({to_file ? options.output : "standard output",
                  to_file ? identity_of(options.output) : identity_of(STDOUT_FILENO)});
  const std::optional<FileIdentity> trace = identity_of(options.trace);
  for (const Use& use : uses) {
    if (trace && trace == use.identity) {
      throw UsageError(fmt::format("--trace={}: {} is the same file", options.trace, use.shown));
    }
  }
  return options;
}

}  // namespace

Session::Session(Options options)
    : options_(checked(std::move(options))),
      request_(selection(options_)),
      second_(read_if_named(options_.second)),
      running_(read_if_named(options_.running)),
      oper_(options_.config ? Input() : read_if_named(options_.oper)),
      host_(host_options()) {
  host_.load_plugin(options_.plugin);
  if (!options_.trace.empty() && options_.trace != "-") trace_ = std::make_unique<LineFile>(options_.trace);
}

yfw::HostOptions Session::host_options() {
  yfw::HostOptions host = options_.host;
  host.yang_dir = default_yang_dir();
  if (options_.trace.empty()) return host;
  host.trace = [this](const yfw::TraceLine& line) {
    const std::string text = trace_text(line);
    trace_ ? trace_->add(printable(text)) : tell(text);
  };
  return host;
}

void Session::load_running() {
  if (options_.running.empty()) return;
  const Input running = std::exchange(running_, {});
  warn(host_.set_running(running.document()));
}

void Session::warn(const std::vector<yfw::Warning>& warnings) const {
  if (options_.quiet) return;
  for (const yfw::Warning& warning : warnings) tell(warning_line(warning));
}

void Session::finish_trace() {
  if (trace_) trace_->finish();
}

std::string translate(Session& session) {
  const Options& options = session.options();
  session.load_running();
  const yfw::EditResult result = session.host().edit(session.request().document());
  session.warn(result.warnings);
  tell_differences(result.differences);
  return result.native.print(options.format);
}

std::string apply(Session& session) {
  session.load_running();
  const yfw::EditResult result = session.host().apply(session.request().document());
  std::string text = session.host().print_running(session.options().format);
  session.warn(result.warnings);
  tell_differences(result.differences);
  return text;
}

std::string read(Session& session) {
  const Options& options = session.options();
  session.load_running();
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
  session.load_running();
  const yfw::FetchResult result = session.host().fetch(session.request().document(), session.options().state);
  session.warn(result.warnings);
  std::string text;
  for (const std::string& path : result.paths) text += printable(path) + '\n';
  return text;
}

}  // namespace ocvlan
