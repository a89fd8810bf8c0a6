// The reading of an entry judged: written back onto an entry that has only its layer, and compared with what is there.
#include "framework/read/unsaid.h"

#include <fmt/format.h>
#include <libyang/libyang.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <unordered_map>

#include "framework/datastore/running.h"
#include "framework/read/verdict.h"
#include "framework/tree/entries.h"
#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "framework/vlan/rules.h"
#include "framework/vlan/trunk_text.h"
#include "framework/vlan/values.h"
#include "framework/walk/environment.h"
#include "framework/walk/output_tree.h"
#include "framework/walk/request_tree.h"
#include "framework/walk/walk_state.h"
#include "yfw-host/data.h"
#include "yfw-host/host.h"
#include "yfw-host/words.h"
#include "yfw/yfw_map.h"

namespace yfw {

namespace {

constexpr char kLayer[] = "l2-transport";

// A native leaf that writing back makes. `within` tells entries of inner lists apart by their keys.
struct WrittenLeaf {
  const lysc_node* schema = nullptr;
  std::string within;
  std::string value;
  bool matched = false;
};

using Written = std::vector<WrittenLeaf>;

bool is_config(const lyd_node* node) {
  return (node->schema->flags & LYS_CONFIG_R) == 0;
}

const lyd_node* find_container(const lyd_node* node, const lysc_node* container) {
  if (node->schema == container) return node;
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(node), child) {
    if (const lyd_node* const found = find_container(child, container)) return found;
  }
  return nullptr;
}

const lyd_node* child_of(const lyd_node* parent, const lysc_node* schema) {
  const lyd_node* child = nullptr;
  LY_LIST_FOR(lyd_child(parent), child) {
    if (child->schema == schema) return child;
  }
  return nullptr;
}

// False when the native model has no such value.
bool has_value(const WrittenLeaf& leaf) {
  const LY_ERR result = lyd_value_validate(leaf.schema->module->ctx, leaf.schema, leaf.value.c_str(), leaf.value.size(),
                                           nullptr, nullptr, nullptr);
  return result == LY_SUCCESS || result == LY_EINCOMPLETE;
}

void collect_written(const OutputNode& node, const std::string& within, Written& written) {
  if (node.mark == Mark::remove) return;
  if (is_term(node.schema)) {
    if (!lysc_is_key(node.schema)) {
      written.push_back({node.schema, within, node.data.value == nullptr ? "" : node.data.value});
    }
    return;
  }
  std::string inside = within;
  if (is_list(node.schema)) {
    inside += predicate(node.schema->name, node.key);
    if (const lysc_node* const key = key_of(node.schema)) written.push_back({key, inside, node.key});
  }
  for (const OutputNode* const each : node.children) collect_written(*each, inside, written);
}

// The entry's reading on its way back, as a merge.
class WritingBack {
 public:
  WritingBack(const Environment& environment, const lyd_node* native, const lyd_node* reading)
      : environment_(environment), native_(native), reading_(reading) {}

  // What comes of it. What is refused as a whole is written in the parts that stand for themselves.
  Written run() const {
    Written written;
    const RequestTree::Wanted whole = [this](const lyd_node* node) { return belongs(node); };
    if (!write(reading_, whole, written)) write_parts(reading_, written);
    return written;
  }

  // What would have come of parts that were refused for nothing but the length of a trunk's text.
  Written short_of_room() && { return std::move(short_of_room_); }

 private:
  // Sub-interfaces are entries of their own.
  bool belongs(const lyd_node* node) const {
    return is_config(node) && !(lyd_parent(node) == reading_ && named(node, "subinterfaces"));
  }

  bool is_writable_here(const lyd_node* part) const {
    if (part != reading_) return is_writable(part);
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(part), child) {
      if (belongs(child) && !is_writable(child)) return false;
    }
    return true;
  }

  void write_parts(const lyd_node* above, Written& written) const {
    const lyd_node* part = nullptr;
    LY_LIST_FOR(lyd_child(above), part) {
      if (!belongs(part) || lysc_is_key(part->schema)) continue;
      const RequestTree::Wanted alone = [part](const lyd_node* node) {
        return lysc_is_key(node->schema) || is_ancestor_or_self(node, part) || is_ancestor_or_self(part, node);
      };
      if (write(part, alone, written)) continue;
      if (!is_term(part->schema) && !is_whole_container(part)) write_parts(part, written);
    }
  }

  // Appends what the part becomes; false, and nothing, when it is refused.
  bool write(const lyd_node* part, const RequestTree::Wanted& wanted, Written& written) const {
    if (!is_writable_here(part)) return false;
    RequestTree tree;
    const bool sub = named(reading_, "subinterface");
    const lyd_node* const interface = sub ? lyd_parent(lyd_parent(reading_)) : reading_;
    yfw_datatree* const entry = tree.data(reading_, wanted);
    yfw_datatree list = record_of(sub ? lyd_parent(reading_) : nullptr, entry, 1);
    yfw_datatree inside[2];
    yfw_datatree named_interface{};
    if (sub) {
      inside[0] = *tree.data(lyd_child(interface));
      inside[1] = list;
      named_interface = record_of(interface, inside, 2);
    }
    yfw_datatree root = record_of(lyd_parent(interface), sub ? &named_interface : entry, 1);

    WalkState walk_state(environment_, kEdit);
    const cerrno result = environment_.plugins->openconfig_root()(walk_state.ctx(), &root, walk_state.output().root());
    if (result != 0 || walk_state.failed()) return false;
    const std::size_t before = written.size();
    for (const OutputNode* const top : walk_state.output().top().children) {
      for (const OutputNode* const each : top->children) {
        if (each->key != entry_name(native_) || each->mark == Mark::remove) continue;
        for (const OutputNode* const node : each->children) collect_written(*node, {}, written);
      }
    }
    const auto first = written.begin() + static_cast<std::ptrdiff_t>(before);
    const bool held = std::all_of(first, written.end(), [this](const WrittenLeaf& leaf) { return is_held(leaf); });
    if (held && keeps_trunk_entries(part, written)) return true;
    if (held) short_of_room_.insert(short_of_room_.end(), first, written.end());
    written.resize(before);
    return false;
  }

  // Whether the native model has such a value; what is there natively anyway needs no asking.
  bool is_held(const WrittenLeaf& leaf) const {
    const lyd_node* const container = find_container(native_, leaf.schema->parent);
    const lyd_node* const there = container == nullptr ? nullptr : child_of(container, leaf.schema);
    return (there != nullptr && leaf.value == canonical_text(there)) || has_value(leaf);
  }

  // A text with no room for all entries is refused when it is asked for.
  static bool keeps_trunk_entries(const lyd_node* part, const Written& written) {
    const std::size_t asked = count_trunk_entries(part);
    if (asked == 0) return true;
    const auto text = std::find_if(written.rbegin(), written.rend(), [](const WrittenLeaf& leaf) {
      return std::strcmp(leaf.schema->name, "trunk-vla-ns") == 0;
    });
    if (text == written.rend()) return true;
    return static_cast<std::size_t>(std::count(text->value.begin(), text->value.end(), ',')) + 1 == asked;
  }

  static std::size_t count_trunk_entries(const lyd_node* part) {
    if (is_term(part->schema)) return named(part, "trunk-vlans") && is_config(part) ? 1 : 0;
    if (named(part, "subinterfaces") || !is_config(part)) return 0;
    std::size_t count = 0;
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(part), child) {
      count += count_trunk_entries(child);
    }
    return count;
  }

  const Environment& environment_;
  const lyd_node* native_;
  const lyd_node* reading_;
  mutable Written short_of_room_;
};

// A native entry held against what writing back made.
class Comparison {
 public:
  Comparison(const Scope& scope, EntryVerdict& verdict, Written& written, const Written& short_of_room)
      : scope_(scope), verdict_(verdict), written_(written), short_of_room_(short_of_room) {}

  void run(const lyd_node* reading) {
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child_no_keys(verdict_.entry), child) {
      compare(child, {});
    }
    for (const WrittenLeaf& leaf : written_) {
      if (!leaf.matched) misread(leaf.schema, reading);
    }
  }

 private:
  void compare(const lyd_node* node, const std::string& within) {
    if (is_term(node->schema)) return compare_leaf(node, within);
    std::string inside = within;
    if (is_list(node->schema)) {
      const lyd_node* const key = lyd_child(node);
      inside += predicate(node->schema->name, key == nullptr ? "" : lyd_get_value(key));
    }
    const lyd_node* child = nullptr;
    LY_LIST_FOR(lyd_child(node), child) {
      compare(child, inside);
    }
  }

  void compare_leaf(const lyd_node* leaf, const std::string& within) {
    if (!is_covered(leaf->schema)) {
      verdict_.beside.push_back(leaf);
      return;
    }
    const auto is_leaf = [&](const WrittenLeaf& each) {
      return each.schema == leaf->schema && each.within == within;
    };
    const auto made = std::find_if(written_.begin(), written_.end(), is_leaf);
    if (made != written_.end() && made->value == canonical_text(leaf)) {
      made->matched = true;
      return;
    }
    const auto fitting = std::find_if(short_of_room_.begin(), short_of_room_.end(), is_leaf);
    const bool lacks_room = fitting != short_of_room_.end() && fitting->value == canonical_text(leaf);
    if (lacks_room) verdict_.short_of_room.push_back(leaf);
    const lyd_node* const container = lyd_parent(leaf);
    const bool own = container == verdict_.entry || named(container, kLayer);
    if (scope_ == nullptr || scope_(verdict_.entry, own ? leaf : container)) verdict_.unsaid.push_back(leaf);
  }

  void misread(const lysc_node* leaf, const lyd_node* reading) {
    const lysc_node* const container = leaf->parent;
    const lyd_node* const there = find_container(verdict_.entry, container);
    if (there != nullptr && scope_ != nullptr && !scope_(verdict_.entry, there)) return;
    std::vector<EntryVerdict::Misread>& all = verdict_.misread;
    auto known =
        std::find_if(all.begin(), all.end(), [container](const auto& each) { return each.container == container; });
    if (known == all.end()) {
      all.push_back(
          {container, reading_words(reading, container->name), there == nullptr ? "nothing" : native_words(there), {}});
      known = all.end() - 1;
    }
    known->makes.push_back(leaf);
  }

  const Scope& scope_;
  EntryVerdict& verdict_;
  Written& written_;
  const Written& short_of_room_;
};

// The OpenConfig nodes of native entries.
std::unordered_map<const lyd_node*, const lyd_node*> readings_by_entry(const Running& running, const Data& reading) {
  std::unordered_map<const lyd_node*, const lyd_node*> found;
  const auto place = [&](std::string_view name, std::string_view index, const lyd_node* node) {
    const lyd_node* const entry = running.entry(join_interface_name(name, index));
    if (entry != nullptr) found.emplace(entry, node);
  };
  const lyd_node* interface = nullptr;
  LY_LIST_FOR(lyd_child(reading.get()), interface) {
    const std::string_view name = lyd_get_value(lyd_child(interface));
    place(name, {}, interface);
    const lyd_node* const list = child_named(interface, "subinterfaces");
    const lyd_node* sub = nullptr;
    LY_LIST_FOR(list == nullptr ? nullptr : lyd_child(list), sub) {
      place(name, lyd_get_value(lyd_child(sub)), sub);
    }
  }
  return found;
}

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

std::vector<EntryVerdict> judge_reading(const Environment& environment, const std::vector<const lyd_node*>& entries,
                                        const Data& reading, const Scope& scope) {
  std::vector<EntryVerdict> verdicts;
  if (entries.empty()) return verdicts;
  Environment bare = environment;
  bare.layers_only = true;
  bare.trace = nullptr;
  const auto readings = readings_by_entry(*environment.running, reading);
  for (const lyd_node* const entry : entries) {
    EntryVerdict verdict;
    verdict.entry = entry;
    const auto found = readings.find(entry);
    const lyd_node* const read = found == readings.end() ? nullptr : found->second;
    Written written;
    Written short_of_room;
    if (read != nullptr) {
      WritingBack back(bare, entry, read);
      written = back.run();
      short_of_room = std::move(back).short_of_room();
    }
    Comparison(scope, verdict, written, short_of_room).run(read);
    if (!verdict.all_said() || !verdict.beside.empty()) verdicts.push_back(std::move(verdict));
  }
  return verdicts;
}

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
