// Foreign subtrees: parts of a running configuration in models that are not loaded. Nobody reads them. They are kept
// beside the data, each with the place where it stands, and are put back there when the configuration is printed.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "yfw-host/data.h"
#include "yfw-host/error.h"

struct ly_ctx;
struct lyd_node;

namespace yfw {

// One of them. The place is copied from the tree in which it was met, so that it outlives every change of that tree.
class ForeignSubtree {
 public:
  // `text` is what Element::foreign holds. `parent` is the node around it (null at the top), `before` the sibling
  // before it (null when it comes first).
  ForeignSubtree(const char* ns, const char* name, const char* text, const lyd_node* parent, const lyd_node* before);

  const std::string& ns() const { return ns_; }
  const std::string& name() const { return name_; }
  const std::string& text() const { return text_; }
  // Where it stands, for people.
  std::string path() const;

  // A copy of the node around it, with the nodes above and all keys; null at the top.
  const lyd_node* parent() const { return parent_; }
  // A copy of the sibling before it; null when it comes first.
  const lyd_node* before() const { return before_.get(); }
  void set_before(const lyd_node* sibling);

  // The name of the interface entry around it; empty when it stands above them.
  std::string_view entry() const;

  Foreign described() const { return {path(), ns_, name_, text_}; }

 private:
  std::string ns_;  // a namespace in XML, a module name in JSON
  std::string name_;
  std::string text_;
  Data place_;
  const lyd_node* parent_ = nullptr;
  Data before_;
};

// All those of a configuration, in the order of the document.
class ForeignSubtrees {
 public:
  ForeignSubtrees() = default;
  ForeignSubtrees(std::vector<ForeignSubtree> subtrees, Format format);

  bool empty() const { return subtrees_.empty(); }
  const std::vector<ForeignSubtree>& all() const { return subtrees_; }

  // Rewrites a native edit of these entries so that containers which go take nothing foreign along; returns the paths
  // of those that now go piece by piece.
  std::vector<std::string> spare(Data& edit, const Data& running, const std::vector<std::string>& entries) const;

  // What goes when the entries of these names are as in `then`, with a warning for each node that takes some with it:
  // a list entry, or a container that means something by being there.
  std::vector<Foreign> going(const std::vector<std::string>& entries, const Data& then,
                             std::vector<Warning>& warnings) const;

  // The entries of these names are now as in `now`; what went with them is forgotten.
  void forget(const std::vector<std::string>& entries, const Data& now);

  // Entries are about to go: what follows one of them follows the last one before it that stays, or none, then.
  // `stays` maps the names of those that go to that one.
  void follow(const std::unordered_map<std::string_view, const lyd_node*>& stays);

  // The configuration with its foreign subtrees, as one document. Throws Refused in another format than theirs.
  std::string print(const Data& configuration, const ly_ctx* models, Format format) const;

 private:
  void index();

  std::vector<ForeignSubtree> subtrees_;
  std::unordered_map<std::string, std::vector<std::size_t>> by_entry_;
  Format format_ = Format::xml;
};

// The warning that a document has some; they are not empty.
Warning warning_of(const std::vector<ForeignSubtree>& subtrees, const std::string& document);

}  // namespace yfw
