// What the subcommand diff does: two configurations, or configuration and state, compared as OpenConfig.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <stdexcept>
#include <string_view>

#include "cli/commands.h"
#include "framework/edit_config.h"
#include "framework/native_diff.h"

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

// A configuration, and what it reads as.
struct Side {
  yfw::Data native;
  yfw::ReadResult reading;

  yfw::NativeSide view() const { return {native, reading}; }
};

Side read_everything(Session& session) {
  Side side{session.host().running().clone(), session.host().read()};
  // What is unsaid is compared, not told.
  std::vector<yfw::Warning> warnings = side.reading.warnings;
  std::erase_if(warnings, [](const yfw::Warning& warning) { return warning.unsaid; });
  session.warn(warnings);
  return side;
}

// `mark` stands behind each line.
std::string list_differences(const std::vector<yfw::Delta>& deltas, std::string_view mark) {
  std::string text;
  for (const yfw::Delta& delta : deltas) {
    if (delta.was_present && delta.is_present) {
      text += fmt::format("~ {}: {} -> {}{}\n", delta.path, delta.before, delta.after, mark);
    } else {
      const std::string& value = delta.is_present ? delta.after : delta.before;
      text += fmt::format("{} {}", delta.is_present ? '+' : '-', delta.path);
      // The path of an entry of a leaf-list says its value.
      if (!value.empty() && !delta.path.ends_with(']')) text += fmt::format(": {}", value);
      text += fmt::format("{}\n", mark);
    }
  }
  return text;
}

std::string tree_of_differences(const Side& before, const Side& after, const std::vector<yfw::Delta>& native,
                                yfw::Format format) {
  yfw::Data tree;
  if (lyd_diff_siblings(before.reading.data.get(), after.reading.data.get(), 0, tree.out()) != LY_SUCCESS) {
    throw std::runtime_error("the configurations could not be compared");
  }
  yfw::Data native_tree = yfw::native_difference_tree(before.view(), after.view(), native);
  if (!native_tree.empty()) lyd_insert_sibling(tree.get(), native_tree.release(), tree.out());
  return tree.print(format);
}

std::string compare_configurations(Session& session) {
  const Options& options = session.options();
  const Input first = read_input(options.input);
  const Input second = read_input(options.second);
  session.host().set_running(first.document());
  const Side before = read_everything(session);
  if (is_edit(second)) {
    session.warn(session.host().apply(second.document()).warnings);
  } else {
    session.host().set_running(second.document());
  }
  const Side after = read_everything(session);
  const std::vector<yfw::Delta> native = yfw::native_differences(before.view(), after.view());
  if (options.format_given) return tree_of_differences(before, after, native, options.format);
  return list_differences(yfw::compare(before.reading.data, after.reading.data), "") +
         list_differences(native, " (native)");
}

}  // namespace

std::string diff(Session& session) {
  const Options& options = session.options();
  if (!options.state) return compare_configurations(session);
  session.load_running(options.running);
  const Input oper = read_input(options.oper);
  const yfw::ReadResult result = session.host().read_state(oper.document());
  session.warn(result.warnings);
  return options.format_given ? compare_state(result.data, options.format) : compare_state(result.data);
}

}  // namespace ocvlan
