// Entry walkers: the exported doors through which an augmenting element reaches its walker.
#include "engine/node.h"
#include "engine/walker.h"

namespace oc_vlan {

namespace {

struct Entry {
  const Family& family;
  const Row& row;
  const Frame& frame;
  const yfw_datatree* node;
  yfw_datatree* output;

  const Row& accepted() const { return family.rows[row.first_child]; }
  cerrno walk_accepted() const { return walk(family, accepted(), frame.ctx, node, output); }
  cerrno call_hook() const { return row.hook(frame.ctx, node, output); }
  bool is_own(const char* ns) const { return same(ns, family.ns); }
};

void trace_tag(const Entry& entry) {
  OC_VLAN_TRACE_AT(entry.row.line, entry.frame, "Processing tag '%s'",
                   entry.node->tag != nullptr ? entry.node->tag : "(null)");
}

cerrno end(const Entry& entry, cerrno result) {
  OC_VLAN_TRACE_AT(entry.row.line, entry.frame, "End");
  return result;
}

cerrno missing_tag(const Entry& entry) {
  OC_VLAN_ERROR_AT(entry.row.line, entry.frame, "Tag name is not available!");
  return CERR_BAD_TREE;
}

// The only door of its element: tells as an inner walker would what it was given.
cerrno enter_once(const Entry& entry) {
  if (entry.node->tag == nullptr) return end(entry, missing_tag(entry));
  trace_tag(entry);
  if (!entry.is_own(entry.node->ns)) return end(entry, entry.call_hook());
  if (same(entry.node->tag, entry.accepted().tag)) return end(entry, entry.walk_accepted());
  OC_VLAN_TRACE_AT(entry.row.line, entry.frame, "Unsupported tag. Ignoring.");
  return end(entry, 0);
}

// An element without a tag is told of and goes on, with CERR_BAD_TREE for the result where nothing else gives one.
cerrno dispatch(const Entry& entry) {
  const cerrno provisional = entry.node->tag == nullptr ? missing_tag(entry) : 0;
  trace_tag(entry);
  if (same(entry.node->tag, entry.accepted().tag)) return entry.walk_accepted();
  if (!entry.is_own(entry.node->ns)) return entry.call_hook();
  OC_VLAN_ERROR_AT(entry.row.line, entry.frame, "Unsupported tag is specified in the request.");
  if (is_read(entry.frame.ctx)) return provisional;
  return unsupported_element(entry.frame.ctx, entry.node->tag, kTagOwner, CERR_UNSUPPORTED);
}

// A childless element of a read or a delete is walked a second time: requesters see its paths twice, and an ancestor
// handed in for what is below it is walked at all. Of this, too, no "End" is traced.
cerrno enter_and_repeat(const Entry& entry) {
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

cerrno walk_entry(const Family& family, const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node,
                  yfw_datatree* output) {
  OC_VLAN_REQUIRE_CONTEXT(ctx, row.walker);
  const Frame frame{ctx, row.walker};
  OC_VLAN_TRACE_AT(row.line, frame, "Start");
  if (node == nullptr || output == nullptr) return invalid_arguments(frame, row.line);
  const Entry entry{family, row, frame, node, output};
  if (lacks_subtrees(*node)) {
    OC_VLAN_ERROR_AT(row.line, frame, "Failed to get subtrees!");
    return end(entry, CERR_BAD_TREE);
  }
  return family.childless_entry == ChildlessEntry::kWalkAgain ? enter_and_repeat(entry) : enter_once(entry);
}

}  // namespace oc_vlan
