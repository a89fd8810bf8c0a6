// Prints docs/mapping.md.
#include <iostream>

#include "mapping/document/document.h"

int main() {
  std::cout << mapping::document();
}
