// Prints include/oc_vlan/handlers.h.
#include <iostream>

#include "plugin/header/handlers_header.h"

int main() {
  std::cout << header::handlers_header();
}
