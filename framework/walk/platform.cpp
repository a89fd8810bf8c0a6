// The device's services on a workstation: logs go to the trace, the interface manager and the system database answer
// from the native running configuration.
#include "yfw/platform.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "framework/tree/nodes.h"
#include "framework/walk/traced.h"
#include "framework/walk/walk_state.h"
#include "yfw-host/host.h"
#include "yfw/yfw_map.h"

namespace {

using yfw::traced;
using yfw::TraceLine;
using yfw::WalkState;

constexpr uint32_t kL2TransportFlag = 0x1000;
constexpr uint32_t kL2Handle = 2;
constexpr uint32_t kL3Handle = 3;
constexpr uint64_t kSysdbConnection = 1;
constexpr char kSwitchedItem[] = "/vlan_trunk/vlan_switched";

// What the item of an interface's switched VLAN settings holds.
struct SwitchedItem {
  int32_t numbers[3];  // the first: 1 in trunk mode
  char text[64];       // the interface's name
};

}  // namespace

extern "C" {

// The connection of the interface manager; there is only one, so the address of anything will do.
static const char interface_manager = 0;
void* yfw_ocifmgr_im_conn = const_cast<char*>(&interface_manager);

void _kos_dt_log_filter_adv(void* handle, int, int, int, int, int, uint32_t*, const char* format, ...) {
  const WalkState* const walk_state = WalkState::running();
  if (handle == nullptr || walk_state == nullptr || !walk_state->tracing()) return;
  char line[1024];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  walk_state->trace(TraceLine::Kind::log, std::strncmp(format, "ERR", 3) == 0 ? 0 : 3, line);
}

void _lstrace(void* handle, uint64_t, const char* line) {
  const WalkState* const walk_state = WalkState::running();
  if (handle == nullptr || walk_state == nullptr) return;
  walk_state->trace(TraceLine::Kind::buffer, std::strstr(line, ": ERR: ") != nullptr ? 0 : 3, line);
}

cerrno imc_interface_find(void*, uint32_t count, const imc_find_request* requests, imc_find_reply* replies) {
  WalkState* const walk_state = WalkState::running();
  if (walk_state == nullptr || requests == nullptr || replies == nullptr) return CERR_INVALID_ARGS;
  for (uint32_t i = 0; i < count; ++i) {
    const std::optional<bool> l2 = walk_state->is_l2_interface(requests[i].name);
    replies[i] = {l2.value_or(false) ? kL2Handle : kL3Handle, l2.has_value() ? 0 : CERR_INVALID_ARGS};
    traced("interface {} -> {}", requests[i].name, !l2.has_value() ? "unknown" : *l2 ? "L2" : "L3");
  }
  return 0;
}

cerrno imc_interface_get_flags(void*, uint32_t count, const uint32_t* handles, imc_flags_reply* replies) {
  if (handles == nullptr || replies == nullptr) return CERR_INVALID_ARGS;
  for (uint32_t i = 0; i < count; ++i) {
    replies[i] = {handles[i] == kL2Handle ? kL2TransportFlag : 0, 0};
    traced("flags of interface handle {} -> {:#x}", handles[i], replies[i].flags);
  }
  return 0;
}

int _sysdb_bind(uint64_t* connid, const char* path, uint32_t) {
  if (connid == nullptr || path == nullptr) return EINVAL;
  *connid = kSysdbConnection;
  traced("system database bound at {}", path);
  return 0;
}

cerrno sysdb_item_get(uint64_t, const char* path, void** value, uint32_t* length, uint32_t* type, uint32_t) {
  WalkState* const walk_state = WalkState::running();
  if (walk_state == nullptr || path == nullptr || value == nullptr || length == nullptr) return CERR_INVALID_ARGS;
  *value = nullptr;
  *length = 0;
  if (type != nullptr) *type = 0;
  const std::string_view item = path;
  const std::string_view name = item.substr(0, item.find('/'));
  const bool known_item = item.substr(name.size()) == kSwitchedItem;
  const lyd_node* const entry = known_item ? walk_state->sysdb_entry(name) : nullptr;
  const lyd_node* const trunk = entry == nullptr ? nullptr : yfw::child_named(entry, "vlan-trunk-configuration");
  const lyd_node* const switched = trunk == nullptr ? nullptr : yfw::child_named(trunk, "vlan-switched");
  traced("system database {} -> {}", path, switched == nullptr ? "no such item" : "found");
  if (switched == nullptr) return CERR_INVALID_ARGS;
  const lyd_node* const mode = yfw::child_named(switched, "mode");
  auto* const data = static_cast<SwitchedItem*>(std::calloc(1, sizeof(SwitchedItem)));
  if (data == nullptr) return CERR_INVALID_ARGS;
  data->numbers[0] = mode != nullptr && std::strcmp(lyd_get_value(mode), "trunk") == 0 ? 1 : 0;
  std::snprintf(data->text, sizeof data->text, "%.*s", static_cast<int>(name.size()), name.data());
  *value = data;
  *length = sizeof *data;
  return 0;
}

cerrno tuple_unpack_mask(const void* value, uint32_t length, const char* format, ...) {
  if (value == nullptr || format == nullptr || length != sizeof(SwitchedItem) || std::strcmp(format, "%d%d%d%s") != 0) {
    return CERR_INVALID_ARGS;
  }
  const auto* const item = static_cast<const SwitchedItem*>(value);
  va_list arguments;
  va_start(arguments, format);
  for (const int32_t number : item->numbers) *va_arg(arguments, int32_t*) = number;
  *va_arg(arguments, const char**) = item->text;
  va_end(arguments);
  traced("unpacked {} {} {} {}", item->numbers[0], item->numbers[1], item->numbers[2], item->text);
  return 0;
}

}  // extern "C"
