// What functions of libyang return.
#pragma once

#include <libyang/libyang.h>

#include <new>
#include <stdexcept>

namespace yfw {

// True when libyang could do it. Throws bad_alloc where there was no memory, which says nothing about the data.
inline bool succeeded(LY_ERR result) {
  if (result == LY_EMEM) throw std::bad_alloc();
  return result == LY_SUCCESS;
}

// The same for what never fails for another reason.
inline void need(LY_ERR result, const char* failure) {
  if (!succeeded(result)) throw std::runtime_error(failure);
}

}  // namespace yfw
