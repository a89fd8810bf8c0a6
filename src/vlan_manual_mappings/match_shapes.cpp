// The shapes of OpenConfig VLAN matches on their way to native configuration.
#include "vlan_manual_mappings/match_shapes.h"

namespace oc_vlan {

namespace {

cerrno add_copied_leaf(const Call& call, const char* path) {
  switch (request_case(call)) {
    case RequestCase::kRead:
      return add_native(call, path, call.node->value, nullptr);
    case RequestCase::kDelete:
      return add_native(call, path, nullptr, call.node);
    case RequestCase::kWrite:
      break;
  }
  return add_native(call, path, call.node->value, call.node);
}

// The result of a pair is that of its last leaf.
cerrno add_pair(const Call& call, const LowPair& pair, const char* id, const char* tag_type,
                const yfw_datatree* source) {
  const cerrno result = add_native(call, pair.id, id, source);
  return pair.tag_type != nullptr ? add_native(call, pair.tag_type, tag_type, source) : result;
}

cerrno add_low_pair(const Call& call, const LowPair& pair, bool alone) {
  const char* const id = call.node->value;
  switch (request_case(call)) {
    case RequestCase::kRead:
      // Nothing is translated on the way to a read: the tag type is fetched with the id's own text.
      return add_pair(call, pair, id, id, nullptr);
    case RequestCase::kDelete:
      return alone ? add_pair(call, pair, nullptr, nullptr, call.node)
                   : add_native(call, pair.container, nullptr, call.node);
    case RequestCase::kWrite:
      break;
  }
  return add_pair(call, pair, id, pair.tag_type_text, call.node);
}

}  // namespace

cerrno copied_leaf(const Call& call, const char* path) {
  if (!begin(call)) return CERR_INVALID_ARGS;
  return end(call, add_copied_leaf(call, path));
}

cerrno stub(const Call& call) {
  if (!begin(call)) return CERR_INVALID_ARGS;
  return end(call, 0);
}

cerrno asking_stub(const Call& call) {
  if (!begin(call)) return CERR_INVALID_ARGS;
  if (!is_read(call.ctx)) yfw_map_is_request_delete(call.node);
  return end(call, 0);
}

cerrno low_pair(const Call& call, const LowPair& pair) {
  if (!begin(call)) return CERR_INVALID_ARGS;
  return end(call, add_low_pair(call, pair, false));
}

cerrno lone_pair(const Call& call, const LowPair& pair) {
  if (!begin(call)) return CERR_INVALID_ARGS;
  return end(call, add_low_pair(call, pair, true));
}

cerrno classified_id(const Call& call, const ClassifiedId& id) {
  if (!begin(call)) return CERR_INVALID_ARGS;
  int is_l2 = 0;
  const cerrno result = check_subintf_l2_or_l3(call.ctx, &is_l2);
  if (result != 0) return end(call, result);
  OC_VLAN_TRACE(call, " is subintf l2 %s", is_l2 != 0 ? "TRUE" : "FALSE");
  return end(call, add_low_pair(call, is_l2 != 0 ? id.l2 : id.l3, false));
}

namespace {

cerrno refused(const Call& call, const char* message) {
  store_error_message(call.ctx, message, kMessageOwner);
  yfw_oc_error_path(call.ctx);
  return end(call, CERR_INVALID_VALUE);
}

cerrno fetch_list(const Call& call, const ListContainer& list) {
  for (std::size_t i = 0; list.paths[i] != nullptr; ++i) {
    const cerrno result = add_native(call, list.paths[i], call.node->value, nullptr);
    if (result != 0) return result;
  }
  return add_native(call, list.tag_type, call.node->value, nullptr);
}

cerrno mark_list(const Call& call, const ListContainer& list) {
  const cerrno result = add_native(call, list.tag_type, list.tag_type_text, call.node);
  if (result != 0 || list.marker == nullptr) return result;
  return add_native(call, list.marker, native::kListMarker, call.node);
}

cerrno write_list(const Call& call, uint32_t count, const ListContainer& list) {
  if (count == 0) {
    OC_VLAN_ERROR(call, "Edit request with 0 VLAN IDs in request.");
    return refused(call, "Edit request without VLAN IDs.");
  }
  const std::span<const yfw_datatree> nodes = children(*call.node);
  if (nodes.size() > list.max_children) {
    list.log_too_many(call);
    return refused(call, list.too_many);
  }
  std::size_t member = 0;
  for (const yfw_datatree& child : nodes) {
    if (child.tag == nullptr) {
      OC_VLAN_ERROR(call, "Tag name is not available!");
      yfw_oc_error_path(call.ctx);
      return CERR_UNSUPPORTED;
    }
    if (same(child.tag, list.member)) {
      // A tenth member has no native leaf: the framework refuses its null path.
      const cerrno result = add_native(call, list.paths[member++], child.value, call.node);
      if (result != 0) return end(call, result);
    } else if (!same(child.tag, list.companion)) {
      OC_VLAN_ERROR(call, "Invalid tag name %s", child.tag);
      return unsupported_element(call.ctx, child.tag, kTagOwner, CERR_UNSUPPORTED);
    }
  }
  return end(call, mark_list(call, list));
}

}  // namespace

cerrno list_container(const Call& call, uint32_t count, const ListContainer& list) {
  if (!begin(call)) return CERR_INVALID_ARGS;
  if (count == 0) OC_VLAN_TRACE(call, "No subtrees");
  switch (request_case(call)) {
    case RequestCase::kRead:
      return end(call, fetch_list(call, list));
    case RequestCase::kDelete:
      return end(call, add_native(call, native::kEncapsulation, nullptr, call.node));
    case RequestCase::kWrite:
      break;
  }
  return write_list(call, count, list);
}

}  // namespace oc_vlan
