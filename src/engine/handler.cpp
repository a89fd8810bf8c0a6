// What generated handlers and hooks do.
#include "engine/handler.h"

namespace oc_vlan {

cerrno refuse_arguments(Frame frame, int line) {
  OC_VLAN_REQUIRE_CONTEXT(frame.ctx, frame.function);
  return invalid_arguments(frame, line);
}

cerrno refuse_leaf(yfw_map_ctx* ctx, const yfw_datatree* node) {
  // The error path is marked before anything is looked at, and the tag is its own owner: requesters know it so.
  yfw_oc_error_path(ctx);
  if (node != nullptr) store_error_tag(ctx, node->tag, node->tag);
  return CERR_UNSUPPORTED;
}

cerrno refuse_augmentation(Frame frame, int line, const yfw_datatree* node, yfw_datatree* output) {
  OC_VLAN_REQUIRE_CONTEXT(frame.ctx, frame.function);
  if (node == nullptr || output == nullptr) return invalid_arguments(frame, line);
  if (yfw_map_is_request_add(frame.ctx, node, output) == 0) return 0;
  return unsupported_element(frame.ctx, node->tag, kTagOwner, CERR_UNKNOWN_AUGMENT);
}

}  // namespace oc_vlan
