// Versions made of chunks: a change copies the chunks that it touches, and the list of chunks.
#include "framework/datastore/entry_set.h"

#include <libyang/libyang.h>

#include <algorithm>

#include "framework/tree/entries.h"

namespace yfw {

namespace {

// Copying a chunk and copying the list of chunks cost about the same where there are as many entries as this squared.
constexpr std::size_t kUsualChunk = 256;

bool by_name(const PlacedEntry& left, const PlacedEntry& right) {
  return left.name() < right.name();
}

bool is_before(const PlacedEntry& entry, std::string_view name) {
  return entry.name() < name;
}

}  // namespace

Entry::Entry(Data tree) : tree_(std::move(tree)), node_(lyd_child(tree_.get())), name_(entry_name(node_)) {}

EntrySet::EntrySet(std::vector<PlacedEntry> entries) {
  std::stable_sort(entries.begin(), entries.end(), by_name);
  Chunk all;
  all.reserve(entries.size());
  for (PlacedEntry& each : entries) {
    if (!all.empty() && all.back().name() == each.name()) {
      all.back() = std::move(each);
    } else {
      all.push_back(std::move(each));
    }
  }
  append(std::move(all));
}

void EntrySet::append(Chunk chunk) {
  const std::size_t pieces = (chunk.size() + kUsualChunk - 1) / kUsualChunk;
  for (std::size_t i = 0; i < pieces; ++i) {
    const auto begin = chunk.begin() + static_cast<std::ptrdiff_t>(chunk.size() * i / pieces);
    const auto end = chunk.begin() + static_cast<std::ptrdiff_t>(chunk.size() * (i + 1) / pieces);
    chunks_.push_back(std::make_shared<const Chunk>(std::make_move_iterator(begin), std::make_move_iterator(end)));
  }
}

std::size_t EntrySet::chunk_of(std::string_view name) const {
  const auto after =
      std::upper_bound(chunks_.begin(), chunks_.end(), name,
                       [](std::string_view sought, const auto& chunk) { return sought < chunk->front().name(); });
  return after == chunks_.begin() ? 0 : static_cast<std::size_t>(after - chunks_.begin()) - 1;
}

const PlacedEntry* EntrySet::find(std::string_view name) const {
  if (empty()) return nullptr;
  const Chunk& chunk = *chunks_[chunk_of(name)];
  const auto found = std::lower_bound(chunk.begin(), chunk.end(), name, is_before);
  return found == chunk.end() || found->name() != name ? nullptr : &*found;
}

std::vector<PlacedEntry> EntrySet::beginning_with(std::string_view prefix, std::size_t most) const {
  std::vector<PlacedEntry> found;
  for (std::size_t i = chunk_of(prefix); i < chunks_.size(); ++i) {
    const Chunk& chunk = *chunks_[i];
    auto each = std::lower_bound(chunk.begin(), chunk.end(), prefix, is_before);
    for (; each != chunk.end(); ++each) {
      if (found.size() == most || !each->name().starts_with(prefix)) return found;
      found.push_back(*each);
    }
  }
  return found;
}

std::vector<PlacedEntry> EntrySet::in_order() const {
  std::vector<PlacedEntry> all;
  for (const auto& chunk : chunks_) all.insert(all.end(), chunk->begin(), chunk->end());
  std::sort(all.begin(), all.end(),
            [](const PlacedEntry& left, const PlacedEntry& right) { return left.place < right.place; });
  return all;
}

EntrySet EntrySet::with(std::vector<Change> changes) const {
  std::stable_sort(changes.begin(), changes.end(),
                   [](const Change& left, const Change& right) { return left.name < right.name; });
  EntrySet next;
  next.chunks_.reserve(chunks_.size() + changes.size() / kUsualChunk + 1);
  auto change = changes.begin();
  // At least once, so that an empty set takes changes too.
  for (std::size_t i = 0; i == 0 || i < chunks_.size(); ++i) {
    const bool last = i + 1 >= chunks_.size();
    const auto end = last ? changes.end() : std::find_if(change, changes.end(), [&](const Change& each) {
      return each.name >= chunks_[i + 1]->front().name();
    });
    if (change == end) {
      if (i < chunks_.size()) next.chunks_.push_back(chunks_[i]);
      continue;
    }
    static const Chunk kNone;
    const Chunk& old = chunks_.empty() ? kNone : *chunks_[i];
    Chunk merged;
    merged.reserve(old.size() + static_cast<std::size_t>(end - change));
    auto each = old.begin();
    for (; change != end; ++change) {
      for (; each != old.end() && each->name() < change->name; ++each) merged.push_back(*each);
      if (each != old.end() && each->name() == change->name) ++each;
      // Of changes of one name the last counts.
      if (!merged.empty() && merged.back().name() == change->name) merged.pop_back();
      if (change->entry != nullptr) merged.push_back({change->entry, change->place});
    }
    merged.insert(merged.end(), each, old.end());
    next.append(std::move(merged));
  }
  return next;
}

}  // namespace yfw
