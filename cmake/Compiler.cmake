# Warnings, sanitizers and the compiler cache, for every target of ours.

add_library(brisko_options INTERFACE)
target_compile_options(brisko_options INTERFACE
  -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wundef
  $<$<BOOL:${BRISKO_WARNINGS_AS_ERRORS}>:-Werror>)
# The type of a C function loses what its header says besides, see OnDemandLibrary.h; that is all right.
target_compile_options(brisko_options INTERFACE -Wno-ignored-attributes)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # It takes "text" + std::string(…) for an overlap (GCC bug 105651).
  target_compile_options(brisko_options INTERFACE -Wno-restrict)
endif()
target_compile_definitions(brisko_options INTERFACE
  _FILE_OFFSET_BITS=64
  BRISKO_VERSION="${PROJECT_VERSION}"
  $<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)
target_compile_options(brisko_options INTERFACE -fstack-protector-strong)
# Each function can be left out alone, and what nothing calls is.
target_compile_options(brisko_options INTERFACE -ffunction-sections -fdata-sections)
target_link_options(brisko_options INTERFACE -Wl,-z,relro,-z,now,--gc-sections)

if(BRISKO_SANITIZE)
  target_compile_options(brisko_options INTERFACE -fsanitize=${BRISKO_SANITIZE})
  if(BRISKO_SANITIZE MATCHES undefined)
    target_compile_options(brisko_options INTERFACE -fno-sanitize-recover=undefined)
  endif()
  target_link_options(brisko_options INTERFACE -fsanitize=${BRISKO_SANITIZE})
endif()

if(BRISKO_FUZZ)
  # The fuzzer is steered by what every part of the program reports, not its targets alone.
  target_compile_options(brisko_options INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(brisko_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

find_program(CCACHE ccache)
if(CCACHE)
  # Precompiled headers are cacheable only when ccache may overlook their time stamps.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()
