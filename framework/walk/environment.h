// The world around a walk: models, plug-ins, the running configuration, and how to take what is not in it.
#pragma once

#include <functional>

#include "framework/datastore/running.h"
#include "framework/datastore/validate.h"
#include "framework/tree/schema.h"
#include "framework/walk/plugin.h"
#include "yfw-host/host.h"

namespace yfw {

// What a walk may ask about the world around it. Owned by the host, the same for all walks of a request.
struct Environment {
  const ly_ctx* models = nullptr;
  Validator* validator = nullptr;
  PathCache* paths = nullptr;
  const Plugins* plugins = nullptr;
  bool bind_subinterface_vlan_id = false;
  const Running* running = nullptr;  // null: no running configuration is known
  // What is known of running entries is their layer and nothing else.
  bool layers_only = false;
  Layer layer = Layer::from_running;
  const std::function<void(const TraceLine&)>* trace = nullptr;  // null: no trace
};

}  // namespace yfw
