# Flags that every target of the project is compiled with. Arithmetic keeps the order and the rounding that the
# source says: no contraction to fused operations, and never fast-math.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

add_library(vorquill21_flags INTERFACE)
target_compile_options(vorquill21_flags INTERFACE -Wall -Wextra -Wconversion -ffp-contract=off)
if(VORQUILL21_WARNINGS_AS_ERRORS)
  target_compile_options(vorquill21_flags INTERFACE -Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(vorquill21_flags INTERFACE -Wno-restrict)  # finds overlaps in "x" + std::string
endif()
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  target_compile_options(vorquill21_flags INTERFACE -msse2 -mfpmath=sse)
endif()

# Functions for wider instructions, chosen at run time, stand beside the plain ones where the compiler keeps the stack
# aligned for them; MinGW-w64 does not.
if(NOT WIN32 AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$")
  target_compile_definitions(vorquill21_flags INTERFACE VORQUILL21_WIDE_INSTRUCTIONS)
endif()
