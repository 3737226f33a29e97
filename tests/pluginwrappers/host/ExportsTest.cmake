# SPDX-License-Identifier: GPL-3.0-or-later
# cmake -DNM=nm -DLIBRARY=file -DEXPECTED=name;name -P ExportsTest.cmake
# Fails unless the library exports these names, which are sorted, and nothing else.
execute_process(
  COMMAND ${NM} --dynamic --defined-only --format=posix ${LIBRARY}
  OUTPUT_VARIABLE listing
  COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "([^ \n]+) [^\n]*" "\\1" names "${listing}")
string(REGEX MATCHALL "[^\n]+" names "${names}")
list(SORT names COMPARE NATURAL)
if(NOT names STREQUAL EXPECTED)
  message(FATAL_ERROR "Exported: ${names}")
endif()
