# Warnings, sanitizers and the compiler cache, said once for every target of the tree.
add_library(oc_vlan_options INTERFACE)
target_compile_options(oc_vlan_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror)

find_program(OC_VLAN_CCACHE ccache)
if(OC_VLAN_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER ${OC_VLAN_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${OC_VLAN_CCACHE})
endif()

set(OC_VLAN_SANITIZE "" CACHE STRING "Sanitizers for -fsanitize, e.g. address,undefined or thread")
if(OC_VLAN_SANITIZE)
  add_compile_options(-O1 -fsanitize=${OC_VLAN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${OC_VLAN_SANITIZE})
  if(OC_VLAN_SANITIZE MATCHES "address|thread|memory")
    # g++ and clang each tell this in a way of their own.
    add_compile_definitions(OC_VLAN_SANITIZER_OWNS_MALLOC)
  endif()
endif()
