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

// One message of the source: its level, both formats, and the word that the platform's log keeps for it.
struct MessageSite {
  int level;  // YFW_DEBUG_ERROR or YFW_DEBUG_TRACE
  const char* log_format;
  const char* trace_format;
  uint32_t* word;
};

inline constexpr uint64_t kTraceFlags = 0x10101000000;
inline constexpr std::size_t kTraceLineSize = 250;

template <typename... Extra>
[[gnu::cold, gnu::noinline]] void write_message(Frame frame, const MessageSite& site, bool logs, int line,
                                                Extra... extra) {
  yfw_map_ctx* const ctx = frame.ctx;
  if (logs) {
    void* const handle = site.level == YFW_DEBUG_ERROR ? ctx->err_log : ctx->trc_log;
    _kos_dt_log_filter_adv(handle, 0, 0, 0, 0, 0, site.word, site.log_format, static_cast<void*>(ctx), extra...);
  }
  if (ctx->trace_on != 0) {
    char text[kTraceLineSize];
    std::snprintf(text, sizeof text, site.trace_format, ret_nc_yfw_trace_index_incr(), frame.function, line,
                  static_cast<void*>(ctx), extra...);
    _lstrace(ctx->trace_handle, kTraceFlags, text);
  }
}

// Whether the debug log takes a line of that level.
inline bool logs(const yfw_map_ctx* ctx, int level) {
  return yfw_debug_should_log(&ctx->debug_filter, level) != 0;
}

}  // namespace oc_vlan

// A message with its text written into the format; further arguments fill the text's own placeholders.
// `line` is the source line that the trace shows: __LINE__, or the line of a node's row. Where nobody listens, which is
// nearly always, a message costs the question whether somebody does: `frame`, `line` and the arguments are looked at
// only for a message that is written.
#define OC_VLAN_MESSAGE_AT(line, level, mark, frame, text, ...)                                                      \
  do {                                                                                                               \
    const bool oc_vlan_logs = ::oc_vlan::logs((frame).ctx, level);                                                   \
    if (oc_vlan_logs || (frame).ctx->trace_on != 0) [[unlikely]] {                                                   \
      static uint32_t oc_vlan_site_word = 0xffffffff;                                                                \
      static constexpr ::oc_vlan::MessageSite oc_vlan_site{level, mark ": YFW: ctx=%p," text,                        \
                                                           "#%u: " mark ": %s:%d ctx=%p," text, &oc_vlan_site_word}; \
      const ::oc_vlan::Frame& oc_vlan_frame = (frame);                                                               \
      ::oc_vlan::write_message(oc_vlan_frame, oc_vlan_site, oc_vlan_logs, (line)__VA_OPT__(, ) __VA_ARGS__);         \
    }                                                                                                                \
  } while (false)

#define OC_VLAN_ERROR_AT(line, frame, text, ...) \
  OC_VLAN_MESSAGE_AT(line, YFW_DEBUG_ERROR, "ERR", frame, text __VA_OPT__(, ) __VA_ARGS__)
#define OC_VLAN_TRACE_AT(line, frame, text, ...) \
  OC_VLAN_MESSAGE_AT(line, YFW_DEBUG_TRACE, "TRC", frame, text __VA_OPT__(, ) __VA_ARGS__)
#define OC_VLAN_ERROR(frame, text, ...) OC_VLAN_ERROR_AT(__LINE__, frame, text __VA_OPT__(, ) __VA_ARGS__)
#define OC_VLAN_TRACE(frame, text, ...) OC_VLAN_TRACE_AT(__LINE__, frame, text __VA_OPT__(, ) __VA_ARGS__)
