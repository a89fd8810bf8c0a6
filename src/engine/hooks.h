// The two kinds of augment hooks; a family has the one or the other.
#pragma once

#include "engine/families.h"
#include "engine/handler.h"

// An add below the node is refused, anything else ignored.
#define OC_VLAN_REFUSING_HOOK(name)                                                             \
  [[gnu::weak]] cerrno name(yfw_map_ctx* ctx, const yfw_datatree* node, yfw_datatree* output) { \
    return ::oc_vlan::refuse_augmentation({ctx, OC_VLAN_TEXT(name)}, __LINE__, node, output);   \
  }

// What is below the node is ignored: every hook is the file's one shared hook under another name.
#define OC_VLAN_SHARED_HOOK                                                                                            \
  extern "C" [[gnu::weak, gnu::visibility("hidden")]] cerrno oc_vlan_ignore_augment(yfw_map_ctx*, const yfw_datatree*, \
                                                                                    yfw_datatree*) {                   \
    return 0;                                                                                                          \
  }
#define OC_VLAN_IGNORING_HOOK(name) \
  [[gnu::weak, gnu::alias("oc_vlan_ignore_augment")]] cerrno name(yfw_map_ctx*, const yfw_datatree*, yfw_datatree*);
