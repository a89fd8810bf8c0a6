// The command line of ocvlan: which options there are, for which subcommand, and what their help says.
#include "cli/options.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

namespace ocvlan {
namespace {

constexpr char kAbout[] = "Translates VLAN configuration and state between OpenConfig and the device's native models.";

constexpr char kEverySubcommand[] =
    "Input is XML or JSON, told by its first character; '-' is standard input.\n"
    "'ocvlan SUBCOMMAND --help' shows the options of a subcommand and an example.\n\n"
    "Exit codes:\n"
    "  0  done (also when whoever reads the output stops reading)\n"
    "  1  the request was refused, nothing was applied\n"
    "  2  the command line is wrong\n"
    "  3  a file or model could not be read, is not well-formed, or could not be written\n"
    "  4  internal error\n\n"
    "Environment:\n"
    "  OCVLAN_PLUGIN  the plug-in to load, where --plugin is not given\n"
    "  OCVLAN_YANG    the folder with the native models";

constexpr char kTranslateExample[] =
    "Example: what does this OpenConfig request become on the device?\n"
    "  ocvlan translate request.xml --running running.xml\n"
    "Without --running nothing is known about the device: existence is not checked, and\n"
    "sub-interfaces count as L3 unless --l2 is given.";

constexpr char kApplyExample[] =
    "Example: the device's configuration after the request, or an error and no file\n"
    "  ocvlan apply request.xml --running running.xml --verify=strict -o after.xml\n"
    "What was applied is read back and compared with what was asked; each difference is told.";

constexpr char kReadExample[] =
    "Examples: all configuration; one interface, as JSON; what the device does\n"
    "  ocvlan read --running running.xml\n"
    "  ocvlan read --running running.xml --format json --path \"/interfaces/interface[name='Ethernet0/0/1']\"\n"
    "  ocvlan read --oper oper.xml --state --format text\n"
    "FILTER is a subtree filter, as <get-config> takes it. Text is a line for each interface and sub-interface;\n"
    "it is the form of the output on a terminal, when neither --format nor -o is given.";

constexpr char kFetchExample[] =
    "Example: which native paths answer a read of the trunk ports?\n"
    "  ocvlan fetch --path /interfaces/interface/ethernet/switched-vlan\n"
    "Prints a path a line.";

constexpr char kDiffExample[] =
    "Examples: two running configurations; what a request changes; configured against operational\n"
    "  ocvlan diff before.xml after.xml\n"
    "  ocvlan diff running.xml request.xml\n"
    "  ocvlan diff --state --running running.xml --oper oper.xml\n"
    "Prints a leaf a line, '+' only in B, '-' only in A, '~' changed; nothing when there is no difference.\n"
    "With --format the difference of A and B is a tree with the operations and original values in it. That of\n"
    "--state is a list with an entry for each leaf that differs: its path, the values that are configured and not\n"
    "up, and those that are up and not configured.";

// The words that an option takes, and what they mean.
template <typename Value>
using Words = std::map<std::string, Value>;

const Words<yfw::Format> kFormats = {{"xml", yfw::Format::xml}, {"json", yfw::Format::json}};
constexpr char kText[] = "text";
const Words<yfw::Format> kReadFormats = {
    {"xml", yfw::Format::xml}, {"json", yfw::Format::json}, {kText, yfw::Format::xml}};
const Words<yfw::Verify> kVerify = {{"report", yfw::Verify::report}, {"strict", yfw::Verify::strict}};
const Words<yfw::Operation> kDefaultOperations = {
    {"merge", yfw::Operation::merge}, {"replace", yfw::Operation::replace}, {"none", yfw::Operation::none}};
const Words<bool> kBindings = {{"subinterface-vlan-id", true}};

// Options as they come from the command line, before words become values.
struct Raw {
  std::string format;
  std::string verify;
  std::string default_operation;
  std::string bind;
  bool no_verify = false;
  bool l2 = false;
  bool l3 = false;
};

// CLI11 shows a flag that may take a value as --name{default}; people know --name[=VALUE].
class Formatter : public CLI::Formatter {
 public:
  std::string make_option_name(const CLI::Option* option, bool is_positional) const override {
    const std::string name = CLI::Formatter::make_option_name(option, is_positional);
    const auto open = name.find('{');
    return open == std::string::npos ? name : name.substr(0, open) + "[=" + option->get_type_name() + "]";
  }
  std::string make_option_opts(const CLI::Option* option) const override {
    return option->get_expected_min() == 0 || option->get_positional() ? "" : " " + option->get_type_name();
  }
};

// Makes an option take the words of a table and nothing else.
template <typename Value>
void takes(CLI::Option* option, const Words<Value>& words) {
  std::vector<std::string> names;
  std::string shown;
  for (const auto& [name, value] : words) {
    names.push_back(name);
    shown += (shown.empty() ? "" : "|") + name;
  }
  option->type_name(shown)->check(CLI::IsMember(names).description(""));
}

template <typename Value>
void set(Value& value, const Words<Value>& words, const std::string& word) {
  if (!word.empty()) value = words.at(word);
}

void add_common(CLI::App& app, Options& options, Raw& raw, const Words<yfw::Format>& formats) {
  takes(app.add_option("--format", raw.format,
                       "Form of the output (xml, when left out); a refusal is printed in it too, as an rpc-error"),
        formats);
  app.add_option("-o,--output", options.output, "Write here, whole or not at all, instead of standard output")
      ->type_name("FILE");
  app.add_flag("--quiet", options.quiet, "No warnings");
  app.add_flag("--trace{-}", options.trace,
               "What the plug-in logs and which services it calls, to standard error or FILE")
      ->type_name("FILE");
  app.add_option("--yang-dir", options.host.openconfig_dir,
                 "Folder with the published OpenConfig modules, to load instead of the compact ones")
      ->type_name("DIR");
  app.add_option("--models", options.host.models_dirs,
                 "Folder with further YANG modules of the device, all of which are loaded; may be given several times")
      ->type_name("DIR")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->allow_extra_args(false);
  app.add_option("--plugin", options.plugin, "The mapping plug-in to load")->type_name("FILE");
  CLI::Option* const l2 =
      app.add_flag("--l2", raw.l2, "Take sub-interfaces that the running configuration does not know for L2");
  app.add_flag("--l3", raw.l3, "Take them for L3, without a warning")->excludes(l2);
  takes(app.add_option("--bind", raw.bind, "Map this too: vlan/config/vlan-id of routed sub-interfaces"), kBindings);
}

void add_edit(CLI::App& app, Options& options, Raw& raw) {
  takes(app.add_option("--default-operation", raw.default_operation,
                       "Of requests that name none of their own (merge, when left out)"),
        kDefaultOperations);
  app.add_flag("--ignore-unmapped", options.host.ignore_unmapped,
               "Leave out what nothing maps, with a warning, instead of refusing the request");
}

void add_verify(CLI::App& app, Raw& raw) {
  CLI::Option* const verify =
      app.add_flag("--verify{report}", raw.verify,
                   "Read the result back, and report what differs from what was asked (the default), or refuse it");
  takes(verify, kVerify);
  app.add_flag("--no-verify", raw.no_verify, "Do not read the result back")->excludes(verify);
}

void add_running(CLI::App& app, Options& options) {
  app.add_option("--running", options.running, "The device's native running configuration")->type_name("FILE");
}

void add_selection(CLI::App& app, Options& options) {
  CLI::Option* const filter = app.add_option("FILTER", options.input, "What to read; everything, when left out");
  app.add_option("--path", options.paths, "What to read, as a path; may be given several times")
      ->type_name("PATH")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->allow_extra_args(false)
      ->excludes(filter);
}

CLI::App& add_subcommand(CLI::App& app, Options& options, Command command, const char* name, const char* text,
                         const char* example) {
  CLI::App* const subcommand = app.add_subcommand(name, text);
  subcommand->footer(example);
  subcommand->callback([&options, command] { options.command = command; });
  return *subcommand;
}

// What one option alone cannot tell.
void check(const Options& options, const Raw& raw) {
  const bool edits = options.command == Command::translate || options.command == Command::apply;
  if (options.command == Command::apply && options.running.empty()) throw UsageError("apply needs --running");
  if (edits && options.running.empty() && !raw.verify.empty()) throw UsageError("--verify needs --running");
  if (options.command == Command::read) {
    if (options.running.empty() && options.oper.empty()) throw UsageError("read needs --running or --oper");
    if (options.state && options.oper.empty()) throw UsageError("read --state needs --oper");
    if (options.config && options.running.empty()) throw UsageError("read --config needs --running");
  }
  if (options.command == Command::diff) {
    const bool files = !options.input.empty() || !options.second.empty();
    if (options.state) {
      if (files) throw UsageError("diff --state compares --running with --oper, not A with B");
      if (options.running.empty() || options.oper.empty()) {
        throw UsageError("diff --state needs --running and --oper");
      }
    } else {
      if (options.second.empty()) throw UsageError("diff needs A and B");
      if (!options.running.empty() || !options.oper.empty()) {
        throw UsageError("diff takes --running and --oper only with --state");
      }
    }
  }
  const auto inputs = {&options.input, &options.second, &options.running, &options.oper};
  if (std::count_if(inputs.begin(), inputs.end(), [](const std::string* name) { return *name == "-"; }) > 1) {
    throw UsageError("standard input can be read once only");
  }
}

}  // namespace

Options parse_options(int argc, const char* const* argv) {
  Options options;
  Raw raw;
  CLI::App app(kAbout, "ocvlan");
  app.formatter(std::make_shared<Formatter>());
  app.get_formatter()->column_width(36);
  app.footer(kEverySubcommand);
  app.set_version_flag("--version", "ocvlan " OC_VLAN_VERSION);
  app.require_subcommand(1);

  CLI::App& translate = add_subcommand(app, options, Command::translate, "translate",
                                       "Print the native edit that an OpenConfig edit becomes", kTranslateExample);
  translate.add_option("REQUEST", options.input, "The OpenConfig edit: <edit-config>, <config> or bare data")
      ->required();
  add_running(translate, options);
  add_verify(translate, raw);
  add_edit(translate, options, raw);

  CLI::App& apply =
      add_subcommand(app, options, Command::apply, "apply",
                     "Print the running configuration that results from an OpenConfig edit", kApplyExample);
  apply.add_option("REQUEST", options.input, "The OpenConfig edit: <edit-config>, <config> or bare data")->required();
  add_running(apply, options);
  add_verify(apply, raw);
  add_edit(apply, options, raw);

  CLI::App& read = add_subcommand(app, options, Command::read, "read",
                                  "Print native configuration and state as OpenConfig", kReadExample);
  add_selection(read, options);
  add_running(read, options);
  read.add_option("--oper", options.oper, "Native operational data; adds state to the answer")->type_name("FILE");
  CLI::Option* const state = read.add_flag("--state", options.state, "State only");
  read.add_flag("--config", options.config, "Configuration only")->excludes(state);
  read.add_flag("--strict", options.strict, "Refuse to answer when a part is left out, or not said");

  CLI::App& fetch = add_subcommand(app, options, Command::fetch, "fetch", "Print the native paths that a read asks for",
                                   kFetchExample);
  add_selection(fetch, options);
  add_running(fetch, options);
  fetch.add_flag("--state", options.state, "Of a read that includes state");

  CLI::App& diff =
      add_subcommand(app, options, Command::diff, "diff",
                     "Compare two configurations, or configuration and state, as OpenConfig", kDiffExample);
  diff.add_option("A", options.input, "A native running configuration");
  diff.add_option("B", options.second, "Another one, or an OpenConfig edit of A");
  diff.add_flag("--state", options.state, "Compare what is configured with what the device does");
  add_running(diff, options);
  diff.add_option("--oper", options.oper, "Native operational data")->type_name("FILE");
  add_edit(diff, options, raw);

  for (CLI::App* const subcommand : {&translate, &apply, &fetch, &diff}) {
    add_common(*subcommand, options, raw, kFormats);
  }
  add_common(read, options, raw, kReadFormats);

  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    options.help = app.help() + "\n";
    return options;
  } catch (const CLI::CallForVersion& version) {
    options.help = std::string(version.what()) + "\n";
    return options;
  } catch (const CLI::ParseError& error) {
    if (argc > 1 && app.get_subcommands().empty()) throw UsageError(fmt::format("unknown subcommand '{}'", argv[1]));
    throw UsageError(error.what());
  }

  options.format_given = !raw.format.empty() && raw.format != kText;
  set(options.format, kReadFormats, raw.format);
  const bool on_terminal = raw.format.empty() && options.output.empty() && isatty(STDOUT_FILENO) == 1;
  options.text = options.command == Command::read && (raw.format == kText || on_terminal);
  set(options.host.verify, kVerify, raw.verify);
  set(options.host.default_operation, kDefaultOperations, raw.default_operation);
  set(options.host.bind_subinterface_vlan_id, kBindings, raw.bind);
  if (raw.no_verify) options.host.verify = yfw::Verify::off;
  if (raw.l2) options.host.layer = yfw::Layer::l2;
  if (raw.l3) options.host.layer = yfw::Layer::l3;
  check(options, raw);
  return options;
}

}  // namespace ocvlan
