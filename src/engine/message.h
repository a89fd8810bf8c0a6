// How a message leaves the plug-in: one line for the debug log, one for the trace buffer, from one call site.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "yfw/platform.h"
#include "yfw/yfw_map.h"

namespace oc_vlan {

// Who is speaking: the context of the call and the exported name of the function that the message is about.
struct Frame {
  yfw_map_ctx* ctx;
  const char* function;
};

// One message of the source: its level, both formats, its line, and the word that the platform's log keeps for it.
struct MessageSite {
  int level;  // 0 error, 3 trace
  const char* log_format;
  const char* trace_format;
  uint32_t* word;
};

inline constexpr int kErrorLevel = 0;
inline constexpr int kTraceLevel = 3;
inline constexpr uint64_t kTraceFlags = 0x10101000000;
inline constexpr std::size_t kTraceLineSize = 250;

template <typename... Extra>
inline void emit(const Frame& frame, const MessageSite& site, int line, Extra... extra) {
  yfw_map_ctx* const ctx = frame.ctx;
  if (yfw_debug_should_log(&ctx->debug_filter, site.level) != 0) {
    void* const handle = site.level == kErrorLevel ? ctx->err_log : ctx->trc_log;
    _kos_dt_log_filter_adv(handle, 0, 0, 0, 0, 0, site.word, site.log_format, static_cast<void*>(ctx), extra...);
  }
  if (ctx->trace_on != 0) {
    char text[kTraceLineSize];
    std::snprintf(text, sizeof text, site.trace_format, ret_nc_yfw_trace_index_incr(), frame.function, line,
                  static_cast<void*>(ctx), extra...);
    _lstrace(ctx->trace_handle, kTraceFlags, text);
  }
}

}  // namespace oc_vlan

// A message with its text written into the format; further arguments fill the text's own placeholders.
// `line` is the source line that the trace shows: __LINE__, or the line of a node's row.
#define OC_VLAN_MESSAGE_AT(line, level, mark, frame, text, ...)                                                      \
  do {                                                                                                               \
    static uint32_t oc_vlan_site_word = 0xffffffff;                                                                  \
    ::oc_vlan::emit((frame),                                                                                         \
                    ::oc_vlan::MessageSite{(level), mark ": YFW: ctx=%p," text, "#%u: " mark ": %s:%d ctx=%p," text, \
                                           &oc_vlan_site_word},                                                      \
                    (line)__VA_OPT__(, ) __VA_ARGS__);                                                               \
  } while (false)

#define OC_VLAN_ERROR_AT(line, frame, text, ...) \
  OC_VLAN_MESSAGE_AT(line, ::oc_vlan::kErrorLevel, "ERR", frame, text __VA_OPT__(, ) __VA_ARGS__)
#define OC_VLAN_TRACE_AT(line, frame, text, ...) \
  OC_VLAN_MESSAGE_AT(line, ::oc_vlan::kTraceLevel, "TRC", frame, text __VA_OPT__(, ) __VA_ARGS__)
#define OC_VLAN_ERROR(frame, text, ...) OC_VLAN_ERROR_AT(__LINE__, frame, text __VA_OPT__(, ) __VA_ARGS__)
#define OC_VLAN_TRACE(frame, text, ...) OC_VLAN_TRACE_AT(__LINE__, frame, text __VA_OPT__(, ) __VA_ARGS__)
