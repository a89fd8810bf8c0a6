// Subtree filtering (RFC 6241 section 6) of a data tree.
#pragma once

#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "yfw-host/data.h"

struct lyd_node;
struct lysc_node;

namespace yfw {

// A filter node, its schema looked up once and its children sorted by what they do. Texts are the filter's.
struct Criterion {
  const lysc_node* schema = nullptr;
  const char* value = "";             // of content-match nodes
  std::vector<Criterion> matches;     // content-match children: all have to hold
  std::vector<Criterion> selections;  // the others

  bool takes_all() const { return selections.empty(); }

  // The value that a key of a list's entries has to have; null for any.
  const char* key() const;
};

using Criteria = std::vector<const Criterion*>;

// A subtree filter: containment, selection and content-match nodes, several at once. An empty one selects everything.
class SubtreeFilter {
 public:
  // The filter has to outlive it.
  explicit SubtreeFilter(const Data& filter);
  ~SubtreeFilter();
  SubtreeFilter(const SubtreeFilter&) = delete;
  SubtreeFilter& operator=(const SubtreeFilter&) = delete;

  bool empty() const { return top_.takes_all(); }

  // Cuts data down to what the filter selects, list keys and ancestors included.
  void retain(Data& data) const;

  // True when all that a node of data holds is selected.
  bool selects_whole(const lyd_node* node) const;

  // A node above all, of which the filter's are the selections.
  const Criterion& top() const { return top_; }

  // Of the selections of a criterion, those that may mean a node of this schema: an entry with this key, where it has
  // one. However many entries a filter names, those that mean one are found at once.
  void collect(const Criterion& above, const lysc_node* schema, const char* key, Criteria& found) const;

 private:
  struct Index;
  void index(const Criterion& criterion);
  bool keep(lyd_node* node, const Criteria& criteria) const;
  bool reach(const lyd_node* node, Criteria& criteria) const;

  Criterion top_;
  std::unordered_map<const Criterion*, std::unique_ptr<const Index>> indexes_;
};

}  // namespace yfw
