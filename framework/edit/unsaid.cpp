// What stays and what goes of what was unsaid, told and, where that is asked for, refused.
#include "framework/edit/unsaid.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include "framework/datastore/running.h"
#include "framework/edit/edit.h"
#include "framework/read/verdict.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "yfw-host/error.h"
#include "yfw-host/host.h"

namespace yfw {

namespace {

// Whether a leaf of an entry is in the entry as it will be (null: gone), with the same value.
bool stays(const lyd_node* after, const lyd_node* leaf, const std::string& path) {
  lyd_node* kept = nullptr;
  const bool there = after != nullptr && lyd_find_path(after, path.c_str(), 0, &kept) == LY_SUCCESS;
  return there && value_of(kept) == value_of(leaf);
}

}  // namespace

void report_unsaid(const std::vector<EntryVerdict>& verdicts, const Running& candidate, const Touched& touched,
                   EditResult& result) {
  for (const EntryVerdict& verdict : verdicts) {
    const std::string name(entry_name(verdict.entry));
    const lyd_node* const after = candidate.entry(name);
    std::string staying;
    std::string going;
    const auto record = [&](const lyd_node* leaf, bool if_it_stays) {
      std::string path = path_of(leaf);
      const bool kept = stays(after, leaf, path);
      if (kept && !if_it_stays) return;
      if (!is_named_by_others(leaf)) append(kept ? staying : going, ", ", setting(verdict.entry, leaf));
      result.unsaid.push_back({name, std::move(path), value_of(leaf), kept ? Unsaid::Fate::stays : Unsaid::Fate::goes,
                               misread_as(verdict, leaf)});
    };
    for (const lyd_node* const leaf : verdict.unsaid) record(leaf, !touched.bystanders.contains(name));
    for (const lyd_node* const leaf : verdict.beside) record(leaf, false);
    const std::string entry = path_of(verdict.entry);
    if (!going.empty()) {
      result.warnings.push_back({entry, fmt::format("goes, and OpenConfig does not say it: {}", going), true});
    }
    if (!staying.empty()) {
      result.warnings.push_back({entry, fmt::format("stays, and OpenConfig does not say it: {}", staying), true});
    }
  }
}

std::string unsaid_there(const std::vector<EntryVerdict>& verdicts, const std::string& openconfig_path) {
  for (const EntryVerdict& verdict : verdicts) {
    const InterfaceName name = split_interface_name(entry_name(verdict.entry));
    const std::string interface = fmt::format("/interface{}", predicate("name", name.name));
    const std::string sub = fmt::format("/subinterface{}", predicate("index", name.index));
    const bool in_interface = openconfig_path.find(interface) != std::string::npos;
    const bool in_sub = openconfig_path.find("/subinterface[") != std::string::npos;
    if (!in_interface || in_sub != name.is_subinterface()) continue;
    if (in_sub && openconfig_path.find(sub) == std::string::npos) continue;
    std::string settings;
    for (const lyd_node* const leaf : verdict.unsaid) {
      if (!is_named_by_others(leaf)) append(settings, ", ", setting(verdict.entry, leaf));
    }
    if (!settings.empty()) return fmt::format("; natively there is {}, which OpenConfig does not say", settings);
  }
  return {};
}

namespace {

// What to ask for in place of an edit that takes something unsaid from this entry.
const char* instead(const std::string& native_name, const Running& candidate, const Touched& touched) {
  if (candidate.entry(native_name) == nullptr) {
    return "remove what is meant in the entry and not the entry, or leave --verify=strict out";
  }
  return touched.replaced.contains(native_name)
             ? "merge what changes and remove what goes, which keeps it, and do not replace"
             : "what is asked for takes its place; leave --verify=strict out where that is meant";
}

}  // namespace

void refuse_unsaid_loss(const std::vector<Unsaid>& unsaid, const Running& candidate, const Touched& touched) {
  constexpr std::size_t kNamed = 8;
  std::string going;
  std::size_t count = 0;
  const Unsaid* first = nullptr;
  for (const Unsaid& each : unsaid) {
    if (each.fate != Unsaid::Fate::goes) continue;
    if (first == nullptr) first = &each;
    if (++count > kNamed) continue;
    const std::string leaf = leaf_name(each.path);
    append(going, ", ", each.value.empty() ? leaf : fmt::format("{} \"{}\"", leaf, each.value));
  }
  if (first == nullptr) return;
  if (count > kNamed) going += fmt::format(" and {} more", count - kNamed);
  throw Refused({.tag = "operation-failed",
                 .path = first->path,
                 .message = fmt::format("the edit takes away what OpenConfig does not say: {}; {}", going,
                                        instead(first->entry, candidate, touched)),
                 .bad_element = leaf_name(first->path)});
}

}  // namespace yfw
