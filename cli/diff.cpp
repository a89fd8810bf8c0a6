// What the subcommand diff does: two configurations, or configuration and state, compared as OpenConfig.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <stdexcept>
#include <string_view>

#include "cli/commands.h"
#include "framework/edit_config.h"

namespace ocvlan {
namespace {

yfw::Data read_everything(Session& session) {
  yfw::ReadResult result = session.host().read();
  session.warn(result.warnings);
  return std::move(result.data);
}

std::string list_differences(const yfw::Data& before, const yfw::Data& after) {
  std::string text;
  for (const yfw::Delta& delta : yfw::compare(before, after)) {
    if (delta.was_present && delta.is_present) {
      text += fmt::format("~ {}: {} -> {}\n", delta.path, delta.before, delta.after);
    } else {
      const std::string& value = delta.is_present ? delta.after : delta.before;
      text += fmt::format("{} {}", delta.is_present ? '+' : '-', delta.path);
      // The path of an entry of a leaf-list says its value.
      if (!value.empty() && !delta.path.ends_with(']')) text += fmt::format(": {}", value);
      text += '\n';
    }
  }
  return text;
}

// A path in XML does not tell of which model the last element is.
std::string list_differences(const std::vector<yfw::ForeignDelta>& deltas) {
  std::string text;
  for (const yfw::ForeignDelta& delta : deltas) {
    const char sign = delta.kind == yfw::ForeignDelta::Kind::added     ? '+'
                      : delta.kind == yfw::ForeignDelta::Kind::removed ? '-'
                                                                       : '~';
    text += fmt::format("{} {} ({})\n", sign, delta.path, delta.ns);
  }
  return text;
}

std::string tree_of_differences(const yfw::Data& before, const yfw::Data& after, yfw::Format format) {
  yfw::Data tree;
  if (lyd_diff_siblings(before.get(), after.get(), 0, tree.out()) != LY_SUCCESS) {
    throw std::runtime_error("the configurations could not be compared");
  }
  return tree.print(format);
}

std::string compare_configurations(Session& session) {
  const Options& options = session.options();
  const Input first = read_input(options.input);
  const Input second = read_input(options.second);
  yfw::Host& host = session.host();
  session.warn(host.set_running(first.document()));
  const yfw::Data before = read_everything(session);
  const std::vector<yfw::Foreign> foreign_before = host.foreign();
  session.warn(host.is_edit(second.document()) ? host.apply(second.document()).warnings
                                               : host.set_running(second.document()));
  const yfw::Data after = read_everything(session);
  const std::vector<yfw::ForeignDelta> foreign = yfw::compare_foreign(foreign_before, host.foreign());
  if (!options.format_given) return list_differences(before, after) + list_differences(foreign);
  if (!foreign.empty()) {
    session.warn({{foreign.front().path,
                   fmt::format("{} of models that are not loaded differ, which the tree cannot show",
                               foreign.size() == 1 ? "1 subtree" : fmt::format("{} subtrees", foreign.size()))}});
  }
  return tree_of_differences(before, after, options.format);
}

}  // namespace

std::string diff(Session& session) {
  const Options& options = session.options();
  if (!options.state) return compare_configurations(session);
  session.load_running(options.running);
  const Input oper = read_input(options.oper);
  const yfw::ReadResult result = session.host().read_state(oper.document());
  session.warn(result.warnings);
  return compare_state(result.data);
}

}  // namespace ocvlan
