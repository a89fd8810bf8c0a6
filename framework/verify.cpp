// The comparison of what was asked with what reads back, and the exceptions known by name.
#include "framework/verify.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "framework/edit.h"
#include "framework/edit_config.h"
#include "framework/trunk_text.h"

namespace yfw {

namespace {

constexpr char kTrunkEntries[] = "switched-vlan/config/trunk-vlans[";

// A translation that is known to lose something, by a part of the path of the leaf that was asked for.
struct Exception {
  std::string_view part;
  const char* advice;
};

constexpr std::array<Exception, 14> kExceptions{{
    {"/single-tagged/", "half a range reads back as single-tagged; ask for both ids"},
    {"/single-tagged-list/", "a list of one id reads back as half a range; ask for single-tagged instead"},
    {"/single-tagged-range/",
     "a range reads back only with both ids, and a list of one id as half a range; ask for single-tagged instead"},
    {"/double-tagged-inner-list/", "an inner list of one id reads back as double-tagged; ask for that instead"},
    {"/double-tagged-outer-list/", "an outer list of one id reads back as double-tagged; ask for that instead"},
    {"/double-tagged-inner-range/", "an inner range reads back only with one outer id and both inner ids"},
    {"/double-tagged-outer-range/", "an outer range reads back only with both outer ids and the inner id"},
    {"/double-tagged/", "a double tag reads back only with both ids, and a list or half a range as one"},
    {"/ingress-mapping/config/", "a tag's type and id read back only with the actions PUSH and SWAP"},
    {"switched-vlan/config/interface-mode", "mode TRUNK reads back only where trunk-vlans are set"},
    {"switched-vlan/config/access-vlan",
     "an access VLAN that is there natively reads back as soon as the mode is ACCESS"},
    {"switched-vlan/config/native-vlan", "native-vlan reads back only where trunk-vlans are set"},
    {"switched-vlan/config/trunk-vlans", "trunk entries read back only as far as the native text holds them"},
    {"openconfig-vlan:vlan/config/vlan-id",
     "a routed VLAN of one id has at most four digits, of two ids at most nine characters"},
}};

const char* advice_for(std::string_view path) {
  const auto* const known = std::find_if(kExceptions.begin(), kExceptions.end(), [path](const Exception& exception) {
    return path.find(exception.part) != std::string_view::npos;
  });
  return known == kExceptions.end() ? "" : known->advice;
}

// Leaves that the framework answers by itself say nothing about the translation. Neither do names of interfaces: an
// interface is there as long as anything of it is.
bool is_answered(std::string_view path) {
  return path.ends_with("]/name") || path.ends_with("/config/name") || path.ends_with("/config/type") ||
         path.ends_with("/config/index");
}

void collect_lost(const lyd_node* node, Operation outer, const Data& after, std::vector<Difference>& lost) {
  const Operation own = operation_of(node, outer);
  if (removes(own) || node->schema == nullptr) return;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    collect_lost(child, own, after, lost);
  }
  if (node->schema->nodetype != LYS_LEAFLIST) return;
  const std::string path = path_of(node);
  if (path.find(kTrunkEntries) == std::string::npos) return;
  lyd_node* found = nullptr;
  if (!after.empty() && lyd_find_path(after.get(), path.c_str(), 0, &found) == LY_SUCCESS) return;
  lost.push_back({path, lyd_get_value(node), "", advice_for(path)});
}

// The entries of the leaf-list of which one is at the path, without those that go.
std::vector<std::string> entries_at(const Data& data, const std::string& path) {
  std::vector<std::string> entries;
  lyd_node* entry = nullptr;
  if (data.empty() || lyd_find_path(data.get(), path.c_str(), 0, &entry) != LY_SUCCESS) return entries;
  const lyd_node* each = nullptr;
  LY_LIST_FOR(lyd_first_sibling(entry), each) {
    if (each->schema == entry->schema && !removes(operation_of(each, Operation::merge))) {
      entries.emplace_back(lyd_get_value(each));
    }
  }
  return entries;
}

std::string named_entries(const std::vector<Difference>& lost, const std::string& list) {
  constexpr std::size_t kNamed = 20;
  std::vector<std::string> names;
  for (const Difference& each : lost) {
    if (each.path.substr(0, each.path.rfind('[')) == list) names.push_back(each.asked);
  }
  const std::size_t named = std::min(names.size(), kNamed);
  std::string text = fmt::format("{}", fmt::join(names.begin(), names.begin() + static_cast<long>(named), ", "));
  if (names.size() > named) text += fmt::format(" and {} more", names.size() - named);
  return text;
}

std::string way_out(const std::vector<std::string>& entries) {
  const std::vector<std::string> ranges = runs_as_ranges(entries);
  const std::size_t needed = native_trunk_text(ranges).size();
  if (needed > kLongestTrunkText) {
    return fmt::format("with every run of ids written as a range it would still need {}: ask for fewer entries",
                       needed);
  }
  return fmt::format("write runs of ids as ranges: {} in the place of all entries takes {}", fmt::join(ranges, " "),
                     needed);
}

}  // namespace

std::vector<Difference> differences(const Data& expected, const Data& after) {
  std::vector<Difference> found;
  for (const Delta& delta : compare(expected, after)) {
    if (is_answered(delta.path)) continue;
    found.push_back({delta.path, delta.before, delta.after, advice_for(delta.path)});
  }
  return found;
}

std::vector<Difference> lost_trunk_entries(const std::vector<Difference>& found) {
  std::vector<Difference> lost;
  std::copy_if(found.begin(), found.end(), std::back_inserter(lost), [](const Difference& difference) {
    return difference.found.empty() && difference.path.find(kTrunkEntries) != std::string::npos;
  });
  return lost;
}

std::vector<Difference> lost_trunk_entries(const EditDocument& document, const Data& after) {
  std::vector<Difference> lost;
  const lyd_node* top = nullptr;
  LY_LIST_FOR(document.tree.get(), top) {
    collect_lost(top, document.default_operation, after, lost);
  }
  return lost;
}

void refuse_lost_trunks(const std::vector<Difference>& lost, const Data& asked) {
  for (const Difference& each : lost) {
    const std::string path = each.path.substr(0, each.path.rfind('['));
    const std::vector<std::string> entries = entries_at(asked, each.path);
    const std::size_t needed = native_trunk_text(entries).size();
    if (needed <= kLongestTrunkText) continue;
    throw Refused({.tag = "invalid-value",
                   .path = path,
                   .message = fmt::format("'trunk-vlans' would need {} characters of native text, which has room for "
                                          "{}, and lose {}; {}",
                                          needed, kLongestTrunkText, named_entries(lost, path), way_out(entries)),
                   .bad_element = "trunk-vlans"});
  }
}

RpcError refusal_of(const std::vector<Difference>& found) {
  const Difference& first = found.front();
  const std::string_view path = first.path;
  const std::string_view leaf = path.substr(path.rfind('/') + 1);
  std::string message = fmt::format("'{}' reads back differently: asked \"{}\", found \"{}\"",
                                    leaf.substr(leaf.find(':') + 1), first.asked, first.found);
  if (!first.advice.empty()) message += fmt::format(" ({})", first.advice);
  if (found.size() > 1) message += fmt::format("; {} more differences", found.size() - 1);
  const std::string_view name = leaf.substr(leaf.find(':') + 1);
  return {.tag = "operation-failed",
          .path = first.path,
          .message = message,
          .bad_element = std::string(name.substr(0, name.find('[')))};
}

}  // namespace yfw
