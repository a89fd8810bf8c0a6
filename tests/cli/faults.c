// Preloaded before the C library: what OC_VLAN_FAULT names happens to a system call of the tool.
//   CALL=ERRNO      the call fails with this number, each time; a write to a standard stream does not
//   CALL=once:ERRNO the same, the first time only, standard streams included
//   CALL=signal:N   signal N comes just before the call
//   write=short     every write writes a byte
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#define NEXT(name) ((__typeof__(&name))dlsym(RTLD_NEXT, #name))

// What is asked of this call: the text after "CALL=", or null.
static const char* asked(const char* call) {
  const char* const fault = getenv("OC_VLAN_FAULT");
  const size_t length = strlen(call);
  if (fault == NULL || strncmp(fault, call, length) != 0 || fault[length] != '=') return NULL;
  return fault + length + 1;
}

// True when the call is to fail; errno says why.
static int fails(const char* call, int descriptor) {
  static int times;
  const char* const what = asked(call);
  if (what == NULL) return 0;
  if (strncmp(what, "signal:", 7) == 0) {
    if (descriptor > STDERR_FILENO) raise(atoi(what + 7));
    return 0;
  }
  if (strncmp(what, "once:", 5) == 0) {
    errno = atoi(what + 5);
    return times++ == 0;
  }
  errno = atoi(what);
  return errno != 0 && descriptor > STDERR_FILENO;
}

static const int kNoStream = STDERR_FILENO + 1;

int mkostemp(char* name, int flags) {
  return fails("mkostemp", kNoStream) ? -1 : NEXT(mkostemp)(name, flags);
}

ssize_t read(int descriptor, void* data, size_t size) {
  return fails("read", descriptor) ? -1 : NEXT(read)(descriptor, data, size);
}

ssize_t write(int descriptor, const void* data, size_t size) {
  const char* const what = asked("write");
  const int is_short = what != NULL && strcmp(what, "short") == 0 && size > 1;
  return fails("write", descriptor) ? -1 : NEXT(write)(descriptor, data, is_short ? 1 : size);
}

int fchmod(int descriptor, mode_t mode) {
  return fails("fchmod", descriptor) ? -1 : NEXT(fchmod)(descriptor, mode);
}

int fchown(int descriptor, uid_t owner, gid_t group) {
  return fails("fchown", descriptor) ? -1 : NEXT(fchown)(descriptor, owner, group);
}

int fsync(int descriptor) {
  return fails("fsync", descriptor) ? -1 : NEXT(fsync)(descriptor);
}

int rename(const char* from, const char* to) {
  return fails("rename", kNoStream) ? -1 : NEXT(rename)(from, to);
}
