// Verdicts on readings as records and warnings.
#include "framework/read/unsaid.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <string>
#include <utility>

#include "framework/read/verdict.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "yfw-host/host.h"

namespace yfw {

namespace {

std::string misreading_in_words(const EntryVerdict::Misread& misread) {
  return fmt::format("reads as {}; natively {}", misread.reads_as.empty() ? "something else" : misread.reads_as,
                     misread.natively);
}

std::string path_below(const lyd_node* entry, const lysc_node* schema) {
  std::string path;
  for (; schema != nullptr && schema != entry->schema; schema = schema->parent) {
    if ((schema->nodetype & (LYS_CHOICE | LYS_CASE)) != 0) continue;
    const bool other_module = schema->parent == nullptr || schema->parent->module != schema->module;
    const std::string module = other_module ? fmt::format("{}:", schema->module->name) : "";
    path = fmt::format("/{}{}{}", module, schema->name, path);
  }
  return path_of(entry) + path;
}

}  // namespace

void report_unsaid(const std::vector<EntryVerdict>& verdicts, ReadResult& result) {
  for (const EntryVerdict& verdict : verdicts) {
    // What the mapping does not cover nobody expects to read.
    if (verdict.all_said()) continue;
    const std::string name(entry_name(verdict.entry));
    std::string settings;
    for (const lyd_node* const leaf : verdict.unsaid) {
      if (!is_named_by_others(leaf)) append(settings, ", ", setting(verdict.entry, leaf));
      result.unsaid.push_back({name, path_of(leaf), value_of(leaf), Unsaid::Fate::stays, misread_as(verdict, leaf)});
    }
    std::string text = settings.empty() ? "" : fmt::format("OpenConfig does not say: {}", settings);
    for (const EntryVerdict::Misread& misread : verdict.misread) {
      append(text, "; ", misreading_in_words(misread));
      std::vector<std::string> makes;
      for (const lysc_node* const leaf : misread.makes) makes.push_back(path_below(verdict.entry, leaf));
      result.misread.push_back(
          {name, path_below(verdict.entry, misread.container), misread.reads_as, misread.natively, std::move(makes)});
    }
    result.warnings.push_back({path_of(verdict.entry), std::move(text), true});
  }
}

}  // namespace yfw
