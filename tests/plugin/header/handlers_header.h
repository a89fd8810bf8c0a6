// include/oc_vlan/handlers.h as the rows of the plug-in say it: every export that has its name from a row.
#pragma once

#include <string>

namespace header {

std::string handlers_header();

}  // namespace header
