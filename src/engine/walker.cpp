// The walk of one container, list entry or leaf, and of what is below it.
#include "engine/walker.h"

#include "engine/node.h"

namespace oc_vlan {

namespace {

class Walk {
 public:
  Walk(const Family& family, const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output)
      : family_(family),
        row_(row),
        frame_{ctx, row.walker},
        state_(ctx->req_state != nullptr ? *ctx->req_state : no_request_),
        node_(bookkeeping(node)),
        output_(output) {}

  cerrno run();

 private:
  // An implicit walk drives walkers over a node that is not theirs: they keep no books then.
  bool implicit() const { return family_.whole_template && state_.implicit_walk == 1; }

  void enter();
  void leave();
  cerrno end(cerrno result) const;

  cerrno replace();
  cerrno pass(uint32_t descent);
  cerrno call_handler(uint32_t descent);
  cerrno open_list_entry();
  void mark_keys();

  cerrno visit_children(uint32_t count);
  cerrno visit(const yfw_datatree& child);
  const Row* find_row(const yfw_datatree& child) const;
  cerrno visit_unknown(const yfw_datatree& child);

  bool wants_implicit_walk(uint32_t descent);
  void walk_implicitly();
  void walk_rows_below(bool state_rows);

  const Family& family_;
  const Row& row_;
  const Frame frame_;
  yfw_map_req_state no_request_{};
  yfw_map_req_state& state_;
  yfw_datatree& node_;
  yfw_datatree* output_;
  bool skipped_ = false;    // the handler said that the node is done
  int on_output_list_ = 0;  // how often the list entry was put on the output list: a replace does it twice
};

cerrno Walk::run() {
  if (lacks_subtrees(node_)) {
    OC_VLAN_ERROR_AT(row_.line, frame_, "Failed to get subtrees!");
    return end(CERR_BAD_TREE);
  }
  const uint32_t count = child_count(node_);
  if (family_.refuses_delete_with_subtree && !implicit() && count != 0 && state_.walk_locked == 0 &&
      yfw_map_is_request_delete(&node_) != 0) {
    OC_VLAN_TRACE_AT(row_.line, frame_, "Delete request with subtree present");
    return end(CERR_INVALID_ARGS);
  }
  if (row_.kind == Kind::kList) {
    // Operational entries learn their keys only once the framework has made them current.
    if (family_.whole_template) mark_keys();
    if (count == 0) OC_VLAN_ERROR_AT(row_.line, frame_, "No keys specified with a list node.");
  }
  const bool children_are_not_ours = implicit() && (state_.walk_bits & kImplicitWalkAsked) != 0;

  enter();
  const bool replaces = family_.whole_template && node_.operation == kReplace;
  cerrno result = replaces ? replace() : pass(children_are_not_ours ? 0 : count);
  leave();
  // What is done below an operational entry says nothing about the entry's siblings.
  if (result == CERR_SKIP_SUBTREE && row_.kind == Kind::kList && !family_.whole_template) result = 0;
  // A container that its handler declares done leaves without "End", as its requesters know it.
  if (skipped_ && row_.kind != Kind::kList) return 0;
  return end(result);
}

void Walk::enter() {
  if (implicit()) return;
  const uint32_t level = row_.kind == Kind::kList ? kListEntryLevel : kContainerLevel;
  yfw_map_add_to_node_hierarchy(frame_.ctx, &node_, level);
  if (!family_.whole_template) return;
  node_.walk_mark = kContainerEntered;
  node_.walk_flags |= kEntered;
  if (is_read(frame_.ctx)) state_.walk_bits &= kWalkBitsKept;
}

void Walk::leave() {
  if (!implicit()) yfw_map_remove_from_node_hierarchy(frame_.ctx, &node_);
  for (; on_output_list_ > 0; --on_output_list_) yfw_remove_from_output_list_ctx(frame_.ctx, &node_, output_);
}

cerrno Walk::end(cerrno result) const {
  OC_VLAN_TRACE_AT(row_.line, frame_, "End");
  return result;
}

// A replace removes what is there in a first pass without children, and writes what is asked for in a second one. What
// an enclosing replace has under way is put back, too.
cerrno Walk::replace() {
  const uint32_t outer_pass_flags = state_.pass_flags & (kReplaceRuns | kSecondPass);
  const uint32_t outer_restore = state_.replace_restore;
  yfw_datatree* const subtrees = node_.subtrees;
  const uint32_t count = child_count(node_);
  const uint32_t subtree_count = node_.subtree_count;
  const uint8_t had_subtrees = node_.node_flags & kHasSubtrees;

  set_operation(node_, kRemove);
  state_.pass_flags |= kReplaceRuns;
  state_.replace_restore = 1;
  node_.subtrees = nullptr;
  node_.subtree_count = 0;
  node_.node_flags &= static_cast<uint8_t>(~kHasSubtrees);

  cerrno result = pass(0);

  node_.subtrees = subtrees;
  node_.subtree_count = subtree_count;
  if (result != 0) {
    node_.node_flags |= had_subtrees;
  } else {
    set_operation(node_, kMerge);
    state_.pass_flags |= kSecondPass;
    state_.pass_flags &= ~kReplaceRuns;
    node_.node_flags |= kHasSubtrees;
    result = pass(count);
  }

  state_.pass_flags = (state_.pass_flags & ~(kReplaceRuns | kSecondPass)) | outer_pass_flags;
  if (state_.replace_restore == 1) set_operation(node_, kReplace);
  state_.replace_restore = outer_restore;
  return result;
}

cerrno Walk::pass(uint32_t descent) {
  cerrno result = call_handler(descent);
  if (result == CERR_SKIP_SUBTREE) {
    skipped_ = (state_.pass_flags & kReplaceRuns) == 0 || !family_.whole_template;
    return 0;
  }
  if (result == 0 && descent != 0) result = visit_children(descent);
  if (family_.whole_template && wants_implicit_walk(descent)) walk_implicitly();
  return result;
}

cerrno Walk::call_handler(uint32_t descent) {
  if (row_.kind == Kind::kList) return open_list_entry();
  return row_.container(frame_.ctx, &node_, descent, output_);
}

cerrno Walk::open_list_entry() {
  cerrno result = yfw_map_update_current_list_node(frame_.ctx, row_.list_path);
  if (result == 0) {
    if (!family_.whole_template) mark_keys();
    yfw_datatree* const children = child_count(node_) != 0 ? node_.subtrees : nullptr;
    result = row_.oper_list != nullptr ? row_.oper_list(frame_.ctx, &node_, output_, children)
                                       : row_.leaf_or_list(frame_.ctx, &node_, output_);
    if (result == CERR_SKIP_SUBTREE) return result;
  }
  const uint8_t depth = state_.output_depth;
  yfw_add_to_output_list_ctx(frame_.ctx, &node_, output_);
  if (state_.output_depth > depth) ++on_output_list_;
  return result;
}

void Walk::mark_keys() {
  for (uint32_t i = 0; i < child_count(node_); ++i) {
    yfw_datatree& child = node_.subtrees[i];
    if (!same(child.tag, row_.key)) continue;
    child.is_key = 1;
    child.key_flags |= kKey;
  }
}

cerrno Walk::visit_children(uint32_t count) {
  cerrno result = 0;
  for (uint32_t i = 0; i < count && result == 0; ++i) result = visit(node_.subtrees[i]);
  return result;
}

cerrno Walk::visit(const yfw_datatree& child) {
  if (child.tag == nullptr) {
    OC_VLAN_ERROR_AT(row_.line, frame_, "Tag name is not available!");
    return CERR_BAD_TREE;
  }
  if (family_.traces_each_child) OC_VLAN_TRACE_AT(row_.line, frame_, "Processing tag '%s'", child.tag);
  const Row* const known = find_row(child);
  return known != nullptr ? walk(family_, *known, frame_.ctx, &child, output_) : visit_unknown(child);
}

const Row* Walk::find_row(const yfw_datatree& child) const {
  for (int i = row_.first_child; i != kNone; i = family_.rows[i].next_sibling) {
    const Row& row = family_.rows[i];
    if (!same(child.tag, row.tag)) continue;
    if (family_.knows_children_by_namespace && !same(child.ns, family_.ns)) return nullptr;
    const bool only_for_state = family_.descends_in_state_reads_only || holds_state(row);
    return only_for_state && !is_state_read(frame_.ctx) ? nullptr : &row;
  }
  return nullptr;
}

cerrno Walk::visit_unknown(const yfw_datatree& child) {
  if (!same(child.ns, family_.ns)) return row_.hook(frame_.ctx, &child, output_);
  if (family_.unknown_child == UnknownChild::kIgnore) {
    OC_VLAN_TRACE_AT(row_.line, frame_, "Unsupported tag. Ignoring.");
    return 0;
  }
  OC_VLAN_ERROR_AT(row_.line, frame_, "Unsupported tag is specified in the request.");
  return is_read(frame_.ctx) ? 0 : unsupported_element(frame_.ctx, child.tag, kTagOwner, CERR_UNSUPPORTED);
}

bool Walk::wants_implicit_walk(uint32_t descent) {
  // Only selecting leaves were read: they ask for the whole container.
  if ((state_.walk_bits & (kReadLeaf | kReadSelectingLeaf)) == kReadSelectingLeaf) {
    state_.walk_bits |= kImplicitWalkAsked;
    state_.walk_bits &= ~(kReadLeaf | kReadSelectingLeaf);
  }
  if (descent != 0 && (state_.walk_bits & kImplicitWalkAsked) == 0) return false;
  return is_read(frame_.ctx) || yfw_map_is_request_delete(&node_) != 0;
}

// Reaches every handler below with the node itself, so that what was asked of the whole reaches its parts.
void Walk::walk_implicitly() {
  const bool starts_here = state_.implicit_walk != 1;
  if (starts_here) state_.implicit_walk = 1;
  {
    const SpreadDelete spread(node_);
    walk_rows_below(false);
  }
  if (is_state_read(frame_.ctx)) walk_rows_below(true);
  row_.hook(frame_.ctx, &node_, output_);
  if (starts_here) state_.implicit_walk = 0;
  state_.walk_bits &= kWalkBitsKept & ~(kReadLeaf | kReadSelectingLeaf);
}

void Walk::walk_rows_below(bool state_rows) {
  for (int i = row_.first_child; i != kNone; i = family_.rows[i].next_sibling) {
    const Row& row = family_.rows[i];
    if (holds_state(row) == state_rows) walk(family_, row, frame_.ctx, &node_, output_);
  }
}

void mark_read(yfw_map_ctx* ctx, yfw_datatree& leaf) {
  yfw_map_req_state* const state = ctx->req_state;
  if (state != nullptr && (state->implicit_walk == 1 || state->walk_locked != 0)) return;
  leaf.walk_mark = kLeafRead;
  leaf.walk_flags |= kEntered;
  if (state == nullptr || !is_read(ctx)) return;
  if ((leaf.node_flags & kSelectingLeaf) != 0) {
    state->walk_bits |= kReadSelectingLeaf | kReadSelectingLeafToo;
    leaf.walk_mark = kSelectingLeafRead;
  } else {
    state->walk_bits |= kReadLeaf;
  }
}

void report_xpath_error(const Frame& frame, int line, const yfw_datatree& leaf) {
  if ((leaf.key_flags & kXpathError) == 0 || leaf.xpath_status != kXpathErrorMarked) return;
  OC_VLAN_TRACE_AT(line, frame, "got xpath error node ");
  if (frame.ctx->req_state != nullptr) frame.ctx->req_state->pass_flags |= kXpathErrorMet;
}

cerrno walk_leaf(const Family& family, const Row& row, const Frame& frame, const yfw_datatree* node,
                 yfw_datatree* output) {
  if (family.leaf_work == LeafWork::kReportXpathErrors) report_xpath_error(frame, row.line, *node);
  const cerrno result = row.leaf_or_list(frame.ctx, node, output);
  if (family.leaf_work == LeafWork::kMarkRead) mark_read(frame.ctx, bookkeeping(node));
  OC_VLAN_TRACE_AT(row.line, frame, "End");
  return result;
}

}  // namespace

cerrno walk(const Family& family, const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  OC_VLAN_REQUIRE_CONTEXT(ctx, row.walker);
  const Frame frame{ctx, row.walker};
  OC_VLAN_TRACE_AT(row.line, frame, "Start");
  if (node == nullptr || output == nullptr) return invalid_arguments(frame, row.line);
  if (row.kind == Kind::kLeaf) return walk_leaf(family, row, frame, node, output);
  return Walk(family, row, ctx, node, output).run();
}

}  // namespace oc_vlan
