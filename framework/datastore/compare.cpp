// Two configurations compared, leaf by leaf.
#include "framework/datastore/compare.h"
#include <libyang/libyang.h>

#include "framework/tree/nodes.h"
#include "framework/tree/schema.h"
#include "yfw-host/compare.h"
#include "yfw-host/data.h"

namespace yfw {

namespace {

// Default values are in force whether or not somebody wrote them.
bool counts(const lyd_node* node) {
  return node->schema != nullptr && (node->flags & LYD_DEFAULT) == 0 &&
         !(node->schema->nodetype == LYS_LEAF && lyd_is_default(node) != 0);
}

const lyd_node* twin_of(const lyd_node* node, const lyd_node* siblings) {
  const lyd_node* const found = counterpart_among(siblings, node);
  return found != nullptr && counts(found) ? found : nullptr;
}

bool is_presence(const lyd_node* node) {
  return node->schema->nodetype == LYS_CONTAINER && (node->schema->flags & LYS_PRESENCE) != 0;
}

enum class Looking : std::uint8_t { changed_or_gone, added };

void compare_siblings(const lyd_node* ours, const lyd_node* theirs, Looking looking, ValueText text,
                      std::vector<Delta>& deltas) {
  const lyd_node* node = nullptr;
  LY_LIST_FOR(ours, node) {
    if (!counts(node)) continue;
    const lyd_node* const twin = twin_of(node, theirs);
    const bool added = looking == Looking::added;
    if (is_term(node->schema)) {
      const std::string value = lyd_get_value(node);
      const std::string other = twin == nullptr ? "" : lyd_get_value(twin);
      if (twin == nullptr) {
        deltas.push_back({path_of(node), added ? "" : value, added ? value : "", !added, added});
      } else if (!added && value != other && text(node) != text(twin)) {
        deltas.push_back({path_of(node), value, other, true, true});
      }
      continue;
    }
    if (twin == nullptr && is_presence(node)) deltas.push_back({path_of(node), "", "", !added, added});
    compare_siblings(lyd_child(node), twin == nullptr ? nullptr : lyd_child(twin), looking, text, deltas);
  }
}

}  // namespace

std::vector<Delta> compare(const Data& before, const Data& after, ValueText text) {
  std::vector<Delta> deltas;
  compare_siblings(before.get(), after.get(), Looking::changed_or_gone, text, deltas);
  compare_siblings(after.get(), before.get(), Looking::added, text, deltas);
  return deltas;
}

}  // namespace yfw
