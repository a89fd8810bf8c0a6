// What the subcommand diff does: two configurations, or configuration and state, compared as OpenConfig.
#include <fmt/format.h>
#include <libyang/libyang.h>

#include <stdexcept>
#include <string_view>

#include "cli/commands.h"
#include "cli/message.h"
#include "yfw-host/compare.h"
#include "yfw-host/host.h"
#include "yfw-host/text.h"

namespace ocvlan {
namespace {

// A configuration, and what it reads as.
struct Side {
  yfw::Data native;
  yfw::ReadResult reading;
  std::vector<yfw::Foreign> foreign;

  yfw::NativeSide view() const { return {native, reading}; }
};

Side read_everything(Session& session) {
  Side side{session.host().running().clone(), session.host().read(), session.host().foreign()};
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
    std::string line;
    if (delta.was_present && delta.is_present) {
      line = fmt::format("~ {}: {} -> {}", delta.path, delta.before, delta.after);
    } else {
      const std::string& value = delta.is_present ? delta.after : delta.before;
      line = fmt::format("{} {}", delta.is_present ? '+' : '-', delta.path);
      // The path of an entry of a leaf-list says its value.
      if (!value.empty() && !delta.path.ends_with(']')) line += fmt::format(": {}", value);
    }
    text += fmt::format("{}{}\n", printable(line), mark);
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
    text += printable(fmt::format("{} {} ({})", sign, delta.path, delta.ns)) + '\n';
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
  return tree.shown() > 1 ? tree.print_document(format) : tree.print(format);
}

std::string compare_configurations(Session& session) {
  const Options& options = session.options();
  const Input& second = session.second();
  yfw::Host& host = session.host();
  session.warn(host.set_running(session.request().document()));
  const Side before = read_everything(session);
  session.warn(host.is_edit(second.document()) ? host.apply(second.document()).warnings
                                               : host.set_running(second.document()));
  const Side after = read_everything(session);
  const std::vector<yfw::Delta> native = yfw::native_differences(before.view(), after.view());
  const std::vector<yfw::ForeignDelta> foreign = yfw::compare_foreign(before.foreign, after.foreign);
  if (!options.format_given) {
    return list_differences(yfw::compare(before.reading.data, after.reading.data), "") +
           list_differences(native, " (native)") + list_differences(foreign);
  }
  if (!foreign.empty()) {
    session.warn({{foreign.front().path,
                   fmt::format("{} of models that are not loaded differ, which the tree cannot show",
                               foreign.size() == 1 ? "1 subtree" : fmt::format("{} subtrees", foreign.size()))}});
  }
  return tree_of_differences(before, after, native, options.format);
}

}  // namespace

std::string diff(Session& session) {
  const Options& options = session.options();
  if (!options.state) return compare_configurations(session);
  session.load_running();
  const yfw::ReadResult result = session.host().read_state(session.oper().document());
  session.warn(result.warnings);
  return options.format_given ? compare_state(result.data, options.format) : compare_state(result.data);
}

}  // namespace ocvlan
