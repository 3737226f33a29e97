# SPDX-License-Identifier: GPL-3.0-or-later
# cmake -DNM=nm -DLIBRARY=file -P ExportsTest.cmake
# Fails unless the library exports its entry function, under both names, and nothing else.
execute_process(
  COMMAND ${NM} --dynamic --defined-only --format=posix ${LIBRARY}
  OUTPUT_VARIABLE listing
  COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "([^ \n]+) [^\n]*" "\\1" names "${listing}")
string(REGEX MATCHALL "[^\n]+" names "${names}")
list(SORT names COMPARE NATURAL)
if(NOT names STREQUAL "VSTPluginMain;main")
  message(FATAL_ERROR "Exported: ${names}")
endif()
