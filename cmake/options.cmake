# Warnings, hardening, sanitizers and the compiler cache, said once for every target of the tree.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)

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

# Finished files are hardened as Debian hardens its packages, and say nothing of the folder in which they were built.
# Debug builds are for debuggers and sanitizers, which both want none of it.
set(OC_VLAN_FINISHED $<NOT:$<CONFIG:Debug>>)
if(OC_VLAN_SANITIZE)
  set(OC_VLAN_FINISHED 0)
endif()
check_cxx_compiler_flag(-fcf-protection OC_VLAN_HAS_CF_PROTECTION)
# A compiler cache may have made the folder's name relative.
cmake_path(RELATIVE_PATH PROJECT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_BINARY_DIR} OUTPUT_VARIABLE source_from_build)
set(finished_compile_options
  -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${source_from_build}/=)
if(OC_VLAN_HAS_CF_PROTECTION)
  list(APPEND finished_compile_options -fcf-protection)
endif()
add_compile_options("$<${OC_VLAN_FINISHED}:${finished_compile_options}>")
add_link_options("$<${OC_VLAN_FINISHED}:LINKER:-z,relro,-z,now,-z,noexecstack,-z,text>")
check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
