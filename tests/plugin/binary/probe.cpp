// A host in small: loads the plug-in named on its command line, walks one request and prints the result code. Built
// with and without a handler of its own.
#include <dlfcn.h>

#include <cstdio>

#include "recording/recorder.h"

int main(int argc, char** argv) {
  void* const plugin = argc == 2 ? ::dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : nullptr;
  void* const entry =
      plugin == nullptr ? nullptr : ::dlsym(plugin, "ymap_ov_oc_vlan_openconfigvlan_augment_lvla_subinterface");
  if (entry == nullptr) {
    std::fprintf(stderr, "%s\n", ::dlerror());
    return 1;
  }
  recording::Recorder framework;
  recording::Tree tree("vlan { match { single-tagged { } double-tagged { } } }");
  const cerrno code = reinterpret_cast<yfw_map_walker_fn>(entry)(framework.ctx(), tree.root(), framework.output());
  std::printf("0x%x\n", code);
  return 0;
}
