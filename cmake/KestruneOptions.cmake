# SPDX-License-Identifier: GPL-3.0-or-later
# What every target of the project is compiled with, as one interface target.
option(KESTRUNE_WARNINGS_AS_ERRORS "Stop at a warning; off for compilers that have not been tried" ON)
set(KESTRUNE_SANITIZER "" CACHE STRING "Value of -fsanitize=, empty for none")

file(RELATIVE_PATH root_from_build ${CMAKE_BINARY_DIR} ${CMAKE_SOURCE_DIR})
add_library(kestrune_options INTERFACE)
target_compile_options(kestrune_options INTERFACE
  -Wall -Wextra -Wpedantic $<$<BOOL:${KESTRUNE_WARNINGS_AS_ERRORS}>:-Werror>
  -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
  # GCC 12 takes joined strings for overlapping copies (its bug 105651).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
  # The engine's numbers are part of its contract: no sum is fused behind the text's back.
  -ffp-contract=off
  # Exceptions and debug information name source files as seen from the root of the project, not as
  # the build machine does: given in full, or, with the compiler cache, from the build folder.
  -ffile-prefix-map=${CMAKE_SOURCE_DIR}/=
  -fmacro-prefix-map=${root_from_build}=)

if(KESTRUNE_SANITIZER)
  target_compile_options(kestrune_options INTERFACE
    -fsanitize=${KESTRUNE_SANITIZER} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
  target_link_options(kestrune_options INTERFACE -fsanitize=${KESTRUNE_SANITIZER})
endif()
