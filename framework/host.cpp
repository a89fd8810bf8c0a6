// The host: models, plug-ins and the running configuration, and every request as one call.
#include "yfw-host/host.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <optional>

#include "framework/datastore/running.h"
#include "framework/documents/documents.h"
#include "framework/edit/edit.h"
#include "framework/read/answer.h"
#include "framework/read/fetch.h"
#include "framework/read/mapped_leaves.h"
#include "framework/tree/foreign.h"
#include "framework/tree/models.h"
#include "framework/walk/environment.h"
#include "framework/walk/plugin.h"
#include "yfw-host/data.h"
#include "yfw-host/error.h"

namespace yfw {

namespace {

std::vector<std::string> lines_of(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    if (line.find_first_not_of(" \t\r") != std::string_view::npos) lines.emplace_back(line);
    text.remove_prefix(std::min(text.size(), line.size() + 1));
  }
  return lines;
}

}  // namespace

struct Host::Impl {
  explicit Impl(HostOptions given)
      : options(std::move(given)),
        models(options.yang_dir, options.openconfig_dir, options.models_dirs),
        paths(models.get()) {}

  Environment environment() {
    Environment result;
    result.models = models.get();
    result.validator = &validator;
    result.paths = &paths;
    result.plugins = &plugins;
    result.bind_subinterface_vlan_id = options.bind_subinterface_vlan_id;
    result.running = running.has_value() ? &*running : nullptr;
    result.layer = options.layer;
    result.trace = options.trace ? &options.trace : nullptr;
    return result;
  }

  // Whether any model of the device ties an entry to what is not part of it.
  bool reaches_beyond() {
    if (!reach.has_value()) reach = validator.reach(models.native());
    return reach == Reach::beyond;
  }

  PreparedEdit prepare(const Document& request) {
    if (plugins.empty()) throw Unreadable("no plug-in is loaded");
    return prepare_edit(environment(), leaves, parse_edit(models.get(), request, options.default_operation),
                        {options.verify, options.ignore_unmapped, reaches_beyond()});
  }

  // The filter without what nobody maps; empty when there was none. False when nothing is left of it.
  bool take_filter(const Document& document, Data& filter, std::vector<Warning>& warnings) {
    if (plugins.empty()) throw Unreadable("no plug-in is loaded");
    bool selects_nothing = false;
    const std::size_t first = document.text.find_first_not_of(" \t\r\n");
    if (first != std::string_view::npos) {
      const bool is_paths = document.text[first] == '/';
      filter = is_paths ? paths_to_filter(models.get(), lines_of(document.text))
                        : parse_filter(models.get(), document, &selects_nothing);
    }
    if (selects_nothing) return false;
    return prune_filter(environment(), leaves, filter, warnings);
  }

  // What is left out of an answer stands in the trace too, among the calls that led to it.
  void note(const std::vector<Warning>& warnings) const {
    if (!options.trace) return;
    for (const Warning& warning : warnings) {
      options.trace({TraceLine::Kind::note, 3, fmt::format("{}: {}", warning.path, warning.message)});
    }
  }

  ReadResult read(const Document* operational, const Document& document) {
    ReadResult result;
    Data filter;
    if (!take_filter(document, filter, result.warnings)) return result;
    Data state;
    if (operational != nullptr) state = parse_operational(models.get(), *operational, &result.warnings);
    answer(environment(), filter, operational == nullptr ? nullptr : &state, result);
    note(result.warnings);
    return result;
  }

  HostOptions options;
  Models models;
  Validator validator;
  std::optional<Reach> reach;  // of the models, once it was asked for
  PathCache paths;
  Plugins plugins;
  MappedLeaves leaves;
  std::optional<Running> running;
  Data whole;  // the same as one tree, when somebody has asked for it
};

Host::Host(HostOptions options) : impl_(std::make_unique<Impl>(std::move(options))) {}
Host::~Host() = default;
Host::Host(Host&&) noexcept = default;
Host& Host::operator=(Host&&) noexcept = default;

void Host::load_plugin(const std::string& path) {
  impl_->plugins.load(path);
}

std::vector<Warning> Host::set_running(const Document& document) {
  RunningDocument read = parse_running(impl_->models, document);
  impl_->running.emplace(std::move(read.data), std::move(read.foreign));
  impl_->whole.reset();
  return std::move(read.warnings);
}

bool Host::has_running() const {
  return impl_->running.has_value();
}

const Data& Host::running() const {
  if (impl_->running.has_value() && impl_->whole.empty()) impl_->whole = impl_->running->whole();
  return impl_->whole;
}

std::string Host::print_running(Format format) const {
  if (!impl_->running.has_value()) return Data().print_document(format);
  return impl_->running->print(impl_->models.get(), format);
}

std::vector<Foreign> Host::foreign() const {
  std::vector<Foreign> result;
  if (!impl_->running.has_value()) return result;
  for (const ForeignSubtree& each : impl_->running->foreign().all()) result.push_back(each.described());
  return result;
}

bool Host::is_edit(const Document& document) const {
  return yfw::is_edit(impl_->models.get(), document);
}

EditResult Host::edit(const Document& request) {
  return impl_->prepare(request).result;
}

EditResult Host::apply(const Document& request) {
  if (!impl_->running.has_value()) impl_->running.emplace();
  PreparedEdit prepared = impl_->prepare(request);
  impl_->running->replace(prepared.touched.names, prepared.candidate);
  impl_->whole.reset();
  return std::move(prepared.result);
}

ReadResult Host::read(const Document& filter) {
  return impl_->read(nullptr, filter);
}

ReadResult Host::read_state(const Document& operational, const Document& filter) {
  return impl_->read(&operational, filter);
}

FetchResult Host::fetch(const Document& filter, bool with_state) {
  FetchResult result;
  Data parsed;
  if (!impl_->take_filter(filter, parsed, result.warnings)) return result;
  result.paths = collect_paths(impl_->environment(), parsed, with_state).paths;
  return result;
}

}  // namespace yfw
