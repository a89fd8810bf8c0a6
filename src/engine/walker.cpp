// The walk of one container, list entry or leaf, and of what is below it.
#include "engine/walker.h"

#include "engine/node.h"

namespace oc_vlan {

namespace {

template <const Policy& kPolicy>
class Walk {
 public:
  Walk(const Row& row, yfw_map_ctx* ctx, yfw_map_req_state& state, const yfw_datatree* node, yfw_datatree* output)
      : row_(row), ctx_(ctx), state_(state), node_(bookkeeping(node)), output_(output) {}

  // Called where the walk is made, and nowhere else that is often come to.
  [[gnu::always_inline]] inline cerrno run();

 private:
  Frame frame() const { return {ctx_, row_.walker}; }

  // An implicit walk drives walkers over a node that is not theirs: they keep no books then.
  bool implicit() const { return kPolicy.whole_template && state_.implicit_walk == 1; }

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

  const Row& row_;
  yfw_map_ctx* const ctx_;
  yfw_map_req_state& state_;
  yfw_datatree& node_;
  yfw_datatree* output_;
  bool skipped_ = false;    // the handler said that the node is done
  int on_output_list_ = 0;  // how often the list entry was put on the output list: a replace does it twice
};

template <const Policy& kPolicy>
cerrno Walk<kPolicy>::run() {
  if (lacks_subtrees(node_)) {
    OC_VLAN_ERROR_AT(row_.line, frame(), "Failed to get subtrees!");
    return end(CERR_BAD_TREE);
  }
  const uint32_t count = child_count(node_);
  if (kPolicy.refuses_delete_with_subtree && !implicit() && count != 0 && state_.walk_locked == 0 &&
      yfw_map_is_request_delete(&node_) != 0) {
    OC_VLAN_TRACE_AT(row_.line, frame(), "Delete request with subtree present");
    return end(CERR_INVALID_ARGS);
  }
  if (row_.kind == Kind::kList) {
    // Operational entries learn their keys only once the framework has made them current.
    if (kPolicy.whole_template) mark_keys();
    if (count == 0) OC_VLAN_ERROR_AT(row_.line, frame(), "No keys specified with a list node.");
  }
  const bool children_are_not_ours = implicit() && (state_.walk_bits & YFW_WALK_IMPLICIT) != 0;

  enter();
  const bool replaces = kPolicy.whole_template && node_.operation == YFW_OPERATION_REPLACE;
  cerrno result = replaces ? replace() : pass(children_are_not_ours ? 0 : count);
  leave();
  // What is done below an operational entry says nothing about the entry's siblings.
  if (result == CERR_SKIP_SUBTREE && row_.kind == Kind::kList && !kPolicy.whole_template) result = 0;
  // A container that its handler declares done leaves without "End", as its requesters know it.
  if (skipped_ && row_.kind != Kind::kList) return 0;
  return end(result);
}

template <const Policy& kPolicy>
void Walk<kPolicy>::enter() {
  if (implicit()) return;
  const uint32_t level = row_.kind == Kind::kList ? YFW_LEVEL_LIST_ENTRY : YFW_LEVEL_CONTAINER;
  yfw_map_add_to_node_hierarchy(ctx_, &node_, level);
  if (!kPolicy.whole_template) return;
  node_.walk_mark = YFW_MARK_CONTAINER_ENTERED;
  node_.walk_flags |= YFW_WALK_FLAG_ENTERED;
  if (is_read(ctx_)) state_.walk_bits &= YFW_WALK_BITS_KEPT;
}

template <const Policy& kPolicy>
void Walk<kPolicy>::leave() {
  if (!implicit()) yfw_map_remove_from_node_hierarchy(ctx_, &node_);
  for (; on_output_list_ > 0; --on_output_list_) yfw_remove_from_output_list_ctx(ctx_, &node_, output_);
}

template <const Policy& kPolicy>
cerrno Walk<kPolicy>::end(cerrno result) const {
  OC_VLAN_TRACE_AT(row_.line, frame(), "End");
  return result;
}

// A replace removes what is there in a first pass without children, and writes what is asked for in a second one. What
// an enclosing replace has under way is put back, too.
template <const Policy& kPolicy>
cerrno Walk<kPolicy>::replace() {
  const uint32_t outer_pass_flags = state_.pass_flags & (YFW_PASS_REPLACE | YFW_PASS_SECOND);
  const uint32_t outer_restore = state_.replace_restore;
  yfw_datatree* const subtrees = node_.subtrees;
  const uint32_t count = child_count(node_);
  const uint32_t subtree_count = node_.subtree_count;
  const uint8_t had_subtrees = node_.node_flags & YFW_NODE_HAS_SUBTREES;

  set_operation(node_, YFW_OPERATION_REMOVE);
  state_.pass_flags |= YFW_PASS_REPLACE;
  state_.replace_restore = 1;
  node_.subtrees = nullptr;
  node_.subtree_count = 0;
  clear_bits(node_.node_flags, YFW_NODE_HAS_SUBTREES);

  cerrno result = pass(0);

  node_.subtrees = subtrees;
  node_.subtree_count = subtree_count;
  if (result != 0) {
    node_.node_flags |= had_subtrees;
  } else {
    set_operation(node_, YFW_OPERATION_MERGE);
    state_.pass_flags |= YFW_PASS_SECOND;
    clear_bits(state_.pass_flags, YFW_PASS_REPLACE);
    node_.node_flags |= YFW_NODE_HAS_SUBTREES;
    result = pass(count);
  }

  clear_bits(state_.pass_flags, YFW_PASS_REPLACE | YFW_PASS_SECOND);
  state_.pass_flags |= outer_pass_flags;
  if (state_.replace_restore == 1) set_operation(node_, YFW_OPERATION_REPLACE);
  state_.replace_restore = outer_restore;
  return result;
}

template <const Policy& kPolicy>
cerrno Walk<kPolicy>::pass(uint32_t descent) {
  cerrno result = call_handler(descent);
  if (result == CERR_SKIP_SUBTREE) {
    skipped_ = (state_.pass_flags & YFW_PASS_REPLACE) == 0 || !kPolicy.whole_template;
    return 0;
  }
  if (result == 0 && descent != 0) result = visit_children(descent);
  if (kPolicy.whole_template && wants_implicit_walk(descent)) walk_implicitly();
  return result;
}

template <const Policy& kPolicy>
cerrno Walk<kPolicy>::call_handler(uint32_t descent) {
  if (row_.kind == Kind::kList) return open_list_entry();
  return row_.container(ctx_, &node_, descent, output_);
}

template <const Policy& kPolicy>
cerrno Walk<kPolicy>::open_list_entry() {
  cerrno result = yfw_map_update_current_list_node(ctx_, row_.list_path);
  if (result == 0) {
    if (!kPolicy.whole_template) mark_keys();
    yfw_datatree* const children = child_count(node_) != 0 ? node_.subtrees : nullptr;
    result = row_.oper_list != nullptr ? row_.oper_list(ctx_, &node_, output_, children)
                                       : row_.leaf_or_list(ctx_, &node_, output_);
    if (result == CERR_SKIP_SUBTREE) return result;
  }
  const uint8_t depth = state_.output_depth;
  yfw_add_to_output_list_ctx(ctx_, &node_, output_);
  if (state_.output_depth > depth) ++on_output_list_;
  return result;
}

template <const Policy& kPolicy>
void Walk<kPolicy>::mark_keys() {
  const uint32_t count = node_.subtrees != nullptr ? child_count(node_) : 0;
  for (uint32_t i = 0; i < count; ++i) {
    yfw_datatree& child = node_.subtrees[i];
    if (!same(child.tag, row_.key)) continue;
    child.is_key = 1;
    child.key_flags |= YFW_KEY_OF_ENTRY;
  }
}

template <const Policy& kPolicy>
cerrno Walk<kPolicy>::visit_children(uint32_t count) {
  cerrno result = 0;
  for (uint32_t i = 0; i < count && result == 0; ++i) result = visit(node_.subtrees[i]);
  return result;
}

template <const Policy& kPolicy>
cerrno Walk<kPolicy>::visit(const yfw_datatree& child) {
  if (child.tag == nullptr) {
    OC_VLAN_ERROR_AT(row_.line, frame(), "Tag name is not available!");
    return CERR_BAD_TREE;
  }
  if (kPolicy.traces_each_child) OC_VLAN_TRACE_AT(row_.line, frame(), "Processing tag '%s'", child.tag);
  const Row* const known = find_row(child);
  return known != nullptr ? walk<kPolicy>(*known, ctx_, &child, output_) : visit_unknown(child);
}

template <const Policy& kPolicy>
const Row* Walk<kPolicy>::find_row(const yfw_datatree& child) const {
  for (const Row* row = first_child(row_); row != nullptr; row = next_sibling(*row)) {
    if (yfw_map_do_these_match(child.tag, row->tag) == 0) continue;
    if (kPolicy.knows_children_by_namespace && !same(child.ns, kPolicy.ns)) return nullptr;
    const bool only_for_state = kPolicy.descends_in_state_reads_only || row->holds_state;
    return only_for_state && !is_state_read(ctx_) ? nullptr : row;
  }
  return nullptr;
}

template <const Policy& kPolicy>
cerrno Walk<kPolicy>::visit_unknown(const yfw_datatree& child) {
  if (!same(child.ns, kPolicy.ns)) return row_.hook(ctx_, &child, output_);
  if (kPolicy.unknown_child == UnknownChild::kIgnore) {
    OC_VLAN_TRACE_AT(row_.line, frame(), "Unsupported tag. Ignoring.");
    return 0;
  }
  OC_VLAN_ERROR_AT(row_.line, frame(), "Unsupported tag is specified in the request.");
  return is_read(ctx_) ? 0 : unsupported_element(ctx_, child.tag, kTagOwner, CERR_UNSUPPORTED);
}

template <const Policy& kPolicy>
bool Walk<kPolicy>::wants_implicit_walk(uint32_t descent) {
  // Only selecting leaves were read: they ask for the whole container.
  if ((state_.walk_bits & (YFW_WALK_LEAF_READ | YFW_WALK_SELECTING_LEAF_READ)) == YFW_WALK_SELECTING_LEAF_READ) {
    state_.walk_bits |= YFW_WALK_IMPLICIT;
    clear_bits(state_.walk_bits, YFW_WALK_LEAF_READ | YFW_WALK_SELECTING_LEAF_READ);
  }
  if (descent != 0 && (state_.walk_bits & YFW_WALK_IMPLICIT) == 0) return false;
  return is_read(ctx_) || yfw_map_is_request_delete(&node_) != 0;
}

// Reaches every handler below with the node itself, so that what was asked of the whole reaches its parts.
template <const Policy& kPolicy>
void Walk<kPolicy>::walk_implicitly() {
  const bool starts_here = state_.implicit_walk != 1;
  if (starts_here) state_.implicit_walk = 1;
  {
    const SpreadDelete spread(node_);
    walk_rows_below(false);
  }
  if (is_state_read(ctx_)) walk_rows_below(true);
  row_.hook(ctx_, &node_, output_);
  if (starts_here) state_.implicit_walk = 0;
  state_.walk_bits &= YFW_WALK_BITS_KEPT & ~(YFW_WALK_LEAF_READ | YFW_WALK_SELECTING_LEAF_READ);
}

template <const Policy& kPolicy>
void Walk<kPolicy>::walk_rows_below(bool state_rows) {
  for (const Row* row = first_child(row_); row != nullptr; row = next_sibling(*row)) {
    if (row->holds_state == state_rows) walk<kPolicy>(*row, ctx_, &node_, output_);
  }
}

void mark_read(yfw_map_ctx* ctx, yfw_datatree& leaf) {
  yfw_map_req_state* const state = ctx->req_state;
  if (state != nullptr && (state->implicit_walk == 1 || state->walk_locked != 0)) return;
  leaf.walk_mark = YFW_MARK_LEAF_READ;
  leaf.walk_flags |= YFW_WALK_FLAG_ENTERED;
  if (state == nullptr || !is_read(ctx)) return;
  if ((leaf.node_flags & YFW_NODE_SELECTING_LEAF) != 0) {
    state->walk_bits |= YFW_WALK_SELECTING_LEAF_READ | YFW_WALK_SELECTING_LEAF_MET;
    leaf.walk_mark = YFW_MARK_SELECTING_LEAF_READ;
  } else {
    state->walk_bits |= YFW_WALK_LEAF_READ;
  }
}

void report_xpath_error(Frame frame, int line, const yfw_datatree& leaf) {
  if ((leaf.key_flags & YFW_KEY_XPATH_ERROR) == 0 || leaf.xpath_status != YFW_XPATH_ERROR) return;
  OC_VLAN_TRACE_AT(line, frame, "got xpath error node ");
  if (frame.ctx->req_state != nullptr) frame.ctx->req_state->pass_flags |= YFW_PASS_XPATH_ERROR;
}

// Opens a walker: assertion, "Start", argument check. False when it is refused with CERR_INVALID_ARGS.
inline bool begin_walker(const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node, const yfw_datatree* output) {
  OC_VLAN_REQUIRE_CONTEXT(ctx, row.walker);
  OC_VLAN_TRACE_AT(row.line, (Frame{ctx, row.walker}), "Start");
  if (node != nullptr && output != nullptr) [[likely]]
    return true;
  invalid_arguments({ctx, row.walker}, row.line);
  return false;
}

// Leaves are apart from what has children: most nodes are leaves, and need little room on the stack.
template <const Policy& kPolicy>
[[gnu::noinline]] cerrno walk_leaf(const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  if (!begin_walker(row, ctx, node, output)) return CERR_INVALID_ARGS;
  if (kPolicy.leaf_work == LeafWork::kReportXpathErrors) report_xpath_error({ctx, row.walker}, row.line, *node);
  const cerrno result = row.leaf_or_list(ctx, node, output);
  if (kPolicy.leaf_work == LeafWork::kMarkRead) mark_read(ctx, bookkeeping(node));
  OC_VLAN_TRACE_AT(row.line, (Frame{ctx, row.walker}), "End");
  return result;
}

// A context without a request is walked as an edit whose state nobody sees.
template <const Policy& kPolicy>
[[gnu::cold, gnu::noinline]] cerrno walk_without_request(const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node,
                                                         yfw_datatree* output) {
  yfw_map_req_state no_request{};
  return Walk<kPolicy>(row, ctx, no_request, node, output).run();
}

template <const Policy& kPolicy>
[[gnu::noinline]] cerrno walk_container_or_entry(const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node,
                                                 yfw_datatree* output) {
  if (!begin_walker(row, ctx, node, output)) return CERR_INVALID_ARGS;
  if (ctx->req_state == nullptr) [[unlikely]]
    return walk_without_request<kPolicy>(row, ctx, node, output);
  return Walk<kPolicy>(row, ctx, *ctx->req_state, node, output).run();
}

}  // namespace

template <const Policy& kPolicy>
cerrno walk(const Row& row, yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) {
  return row.kind == Kind::kLeaf ? walk_leaf<kPolicy>(row, ctx, node, output)
                                 : walk_container_or_entry<kPolicy>(row, ctx, node, output);
}

template cerrno walk<kOpenConfig>(const Row&, yfw_map_ctx*, const yfw_datatree*, yfw_datatree*);
template cerrno walk<kNativeCfg>(const Row&, yfw_map_ctx*, const yfw_datatree*, yfw_datatree*);
template cerrno walk<kNativeOper>(const Row&, yfw_map_ctx*, const yfw_datatree*, yfw_datatree*);

}  // namespace oc_vlan
