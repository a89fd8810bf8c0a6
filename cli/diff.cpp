// What the subcommand diff does: two configurations, or configuration and state, compared as OpenConfig.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <stdexcept>
#include <string_view>

#include "cli/commands.h"
#include "cli/message.h"
#include "framework/edit_config.h"

namespace ocvlan {
namespace {

// Where an element or member of this name, prefixed or not, first stands.
std::size_t find_name(std::string_view text, std::string_view name) {
  for (auto at = text.find(name); at != std::string_view::npos; at = text.find(name, at + 1)) {
    if (at > 0 && std::string_view("<:\"").find(text[at - 1]) != std::string_view::npos) return at;
  }
  return std::string_view::npos;
}

// A native running configuration, or an OpenConfig edit? Whichever root comes first tells.
bool is_edit(const Input& input) {
  return find_name(input.text, "interfaces") < find_name(input.text, "interface-configurations");
}

yfw::Data read_everything(Session& session) {
  yfw::ReadResult result = session.host().read();
  session.warn(result.warnings);
  return std::move(result.data);
}

std::string list_differences(const yfw::Data& before, const yfw::Data& after) {
  std::string text;
  for (const yfw::Delta& delta : yfw::compare(before, after)) {
    std::string line;
    if (delta.was_present && delta.is_present) {
      line = fmt::format("~ {}: {} -> {}", delta.path, delta.before, delta.after);
    } else {
      const std::string& value = delta.is_present ? delta.after : delta.before;
      line = fmt::format("{} {}", delta.is_present ? '+' : '-', delta.path);
      // The path of an entry of a leaf-list says its value.
      if (!value.empty() && !delta.path.ends_with(']')) line += fmt::format(": {}", value);
    }
    text += printable(line) + '\n';
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
  const Input& second = session.second();
  session.host().set_running(session.request().document());
  const yfw::Data before = read_everything(session);
  if (is_edit(second)) {
    session.warn(session.host().apply(second.document()).warnings);
  } else {
    session.host().set_running(second.document());
  }
  const yfw::Data after = read_everything(session);
  return options.format_given ? tree_of_differences(before, after, options.format) : list_differences(before, after);
}

}  // namespace

std::string diff(Session& session) {
  const Options& options = session.options();
  if (!options.state) return compare_configurations(session);
  session.load_running();
  const yfw::ReadResult result = session.host().read_state(session.oper().document());
  session.warn(result.warnings);
  return compare_state(result.data);
}

}  // namespace ocvlan
