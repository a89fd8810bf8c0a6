/* The device's operating-system services: named memory, debug log, trace buffer, interface manager, system database. */
#ifndef YFW_PLATFORM_H
#define YFW_PLATFORM_H

#include <stdint.h>

#include "yfw/cerrno.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Whoever offers these services exports them, however it is built. */
#pragma GCC visibility push(default)

/* Releases memory that yfw_strdup gave. */
void kos_named_free(void* memory);

/* Writes one line to the debug log behind `handle`. The five ints are 0; `site` is a word private to the call site,
 * initially all bits set; `format` and what follows are printf's. */
void _kos_dt_log_filter_adv(void* handle, int, int, int, int, int, uint32_t* site, const char* format, ...);

/* Appends one line to the trace buffer behind `handle`. `flags` is always 0x10101000000. */
void _lstrace(void* handle, uint64_t flags, const char* line);

/* Name of a sub-interface as the interface manager knows it, "/" written as "_", e.g. "Ethernet0_0_1.100". */
typedef struct imc_find_request {
  char name[64];
} imc_find_request;

typedef struct imc_find_reply {
  uint32_t handle; /* valid when status is 0 */
  cerrno status;
} imc_find_reply;

/* Bits of an interface's flags. */
enum { IMC_FLAG_L2_TRANSPORT = 0x1000 };

typedef struct imc_flags_reply {
  uint32_t flags; /* IMC_FLAG_... */
  cerrno status;
} imc_flags_reply;

/* Look `count` interfaces up, or their flags; one reply each. Non-zero when the call as a whole failed. */
cerrno imc_interface_find(void* conn, uint32_t count, const imc_find_request* requests, imc_find_reply* replies);
cerrno imc_interface_get_flags(void* conn, uint32_t count, const uint32_t* handles, imc_flags_reply* replies);

/* The flags word with which mapping plug-ins connect to the system database. */
enum { SYSDB_BIND_FLAGS = 4 };

/* Connects to the system database at `path`; 0 on success. */
int _sysdb_bind(uint64_t* connid, const char* path, uint32_t flags);

/* Reads one item; on success `*value` is released with free(), and is null when the item has no data. */
cerrno sysdb_item_get(uint64_t connid, const char* path, void** value, uint32_t* length, uint32_t* type,
                      uint32_t flags);

/* Unpacks an item. "%d%d%d%s" takes three int32_t * and one const char ** (a pointer into the value). */
cerrno tuple_unpack_mask(const void* value, uint32_t length, const char* format, ...);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
