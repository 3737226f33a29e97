# SPDX-License-Identifier: GPL-3.0-or-later
# kestrune_row(NAME FOLDERS folder... LINKS row... LIBRARIES library...)
#
# Declares a row of the architecture as an object library of all sources in its folders, which are
# named from the root of the project: the common one and its platform's half. A program links the
# row with the rows below it alone, so a call upwards does not link; RowIncludesTest does the same
# for includes.
function(kestrune_row name)
  cmake_parse_arguments(ROW "" "" "FOLDERS;LINKS;LIBRARIES" ${ARGN})
  list(TRANSFORM ROW_FOLDERS PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE folders)
  list(TRANSFORM folders APPEND /*.cpp OUTPUT_VARIABLE patterns)
  file(GLOB sources CONFIGURE_DEPENDS ${patterns})
  # A program's main function is no part of the row that the program shows.
  list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")

  add_library(${name} OBJECT ${sources})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC kestrune_options ${ROW_LINKS} ${ROW_LIBRARIES})

  set_target_properties(${name} PROPERTIES KESTRUNE_ROWS_BELOW "${ROW_LINKS}")
  # One line a row, for RowIncludesTest: name, folders, rows that it links.
  list(JOIN ROW_FOLDERS " " folders)
  list(JOIN ROW_LINKS " " links)
  set_property(GLOBAL APPEND PROPERTY KESTRUNE_ROW_TABLE "${name}|${folders}|${links}")
endfunction()

# Puts the row and all rows below it into the variable. Rows may be declared in any order, since
# this is asked when all of them stand.
function(kestrune_rows_from row result)
  set(rows ${row})
  get_target_property(links ${row} KESTRUNE_ROWS_BELOW)
  foreach(link IN LISTS links)
    kestrune_rows_from(${link} below)
    list(APPEND rows ${below})
  endforeach()
  list(REMOVE_DUPLICATES rows)
  set(${result} "${rows}" PARENT_SCOPE)
endfunction()

# Links a program or library with rows and all rows below them. Objects do not travel through object
# libraries, so only those that are linked by name reach the program: hence the whole list.
function(kestrune_link_row target)
  set(all "")
  foreach(row IN LISTS ARGN)
    kestrune_rows_from(${row} rows)
    list(APPEND all ${rows})
  endforeach()
  list(REMOVE_DUPLICATES all)
  target_link_libraries(${target} PRIVATE ${all})
endfunction()
