// The native text of a trunk's VLANs.
#include "vlan_manual_mappings/trunk_text.h"

#include <cstdio>

namespace oc_vlan {

void TrunkText::append(const char* low, const char* high) {
  if (full_) return;
  const std::size_t room = sizeof text_ - size_;
  const int length = std::snprintf(text_ + size_, room, "%s%s%s%s", begun_ ? "," : "", low, high != nullptr ? "-" : "",
                                   high != nullptr ? high : "");
  begun_ = true;
  if (static_cast<std::size_t>(length) >= room) {
    text_[size_] = '\0';
    full_ = true;
    return;
  }
  size_ += static_cast<std::size_t>(length);
}

}  // namespace oc_vlan
