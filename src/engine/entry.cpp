// Entry walkers: the exported doors through which an augmenting element reaches its walker.
#include "engine/node.h"
#include "engine/walker.h"

namespace oc_vlan {

namespace {

template <const Policy& kPolicy>
struct Entry {
  const Row& row;
  const Frame frame;
  const yfw_datatree* node;
  yfw_datatree* output;

  const Row& accepted() const { return *first_child(row); }
  bool is_accepted() const { return same(node->tag, accepted().tag); }
  bool is_own() const { return same(node->ns, kPolicy.ns); }
  cerrno walk_accepted() const { return walk<kPolicy>(accepted(), frame.ctx, node, output); }
  cerrno call_hook() const { return row.hook(frame.ctx, node, output); }
};

template <const Policy& kPolicy>
void trace_tag(const Entry<kPolicy>& entry) {
  OC_VLAN_TRACE_AT(entry.row.line, entry.frame, "Processing tag '%s'",
                   entry.node->tag != nullptr ? entry.node->tag : "(null)");
}

template <const Policy& kPolicy>
cerrno end(const Entry<kPolicy>& entry, cerrno result) {
  OC_VLAN_TRACE_AT(entry.row.line, entry.frame, "End");
  return result;
}

template <const Policy& kPolicy>
cerrno missing_tag(const Entry<kPolicy>& entry) {
  OC_VLAN_ERROR_AT(entry.row.line, entry.frame, "Tag name is not available!");
  return CERR_BAD_TREE;
}

// The only door of its element: tells as an inner walker would what it was given.
template <const Policy& kPolicy>
cerrno enter_once(const Entry<kPolicy>& entry) {
  if (entry.node->tag == nullptr) return end(entry, missing_tag(entry));
  trace_tag(entry);
  if (!entry.is_own()) return end(entry, entry.call_hook());
  if (entry.is_accepted()) return end(entry, entry.walk_accepted());
  OC_VLAN_TRACE_AT(entry.row.line, entry.frame, "Unsupported tag. Ignoring.");
  return end(entry, 0);
}

// An element without a tag is told of and goes on, with CERR_BAD_TREE for the result where nothing else gives one.
template <const Policy& kPolicy>
cerrno dispatch(const Entry<kPolicy>& entry) {
  const cerrno provisional = entry.node->tag == nullptr ? missing_tag(entry) : 0;
  trace_tag(entry);
  if (entry.is_accepted()) return entry.walk_accepted();
  if (!entry.is_own()) return entry.call_hook();
  OC_VLAN_ERROR_AT(entry.row.line, entry.frame, "Unsupported tag is specified in the request.");
  if (is_read(entry.frame.ctx)) return provisional;
  return unsupported_element(entry.frame.ctx, entry.node->tag, kTagOwner, CERR_UNSUPPORTED);
}

// A childless element of a read or a delete is walked a second time: requesters see its paths twice, and an ancestor
// handed in for what is below it is walked at all. Of this, too, no "End" is traced.
template <const Policy& kPolicy>
cerrno enter_and_repeat(const Entry<kPolicy>& entry) {
  const cerrno result = dispatch(entry);
  if (child_count(*entry.node) != 0 || result != 0) return result;
  if (!is_read(entry.frame.ctx) && yfw_map_is_request_delete(entry.node) == 0) return result;
  {
    const SpreadDelete spread(bookkeeping(entry.node));
    entry.walk_accepted();
  }
  entry.call_hook();
  return result;
}

}  // namespace

template <const Policy& kPolicy>
cerrno walk_entry(const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  OC_VLAN_REQUIRE_CONTEXT(ctx, row.walker);
  const Frame frame{ctx, row.walker};
  OC_VLAN_TRACE_AT(row.line, frame, "Start");
  if (node == nullptr || output == nullptr) return invalid_arguments(frame, row.line);
  const Entry<kPolicy> entry{row, frame, node, output};
  if (lacks_subtrees(*node)) {
    OC_VLAN_ERROR_AT(row.line, frame, "Failed to get subtrees!");
    return end(entry, CERR_BAD_TREE);
  }
  return kPolicy.childless_entry == ChildlessEntry::kWalkAgain ? enter_and_repeat(entry) : enter_once(entry);
}

template cerrno walk_entry<kOpenConfig>(const Row&, yfw_map_ctx*, const yfw_datatree*, yfw_datatree*);
template cerrno walk_entry<kNativeCfg>(const Row&, yfw_map_ctx*, const yfw_datatree*, yfw_datatree*);

}  // namespace oc_vlan
