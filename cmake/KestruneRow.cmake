# kestrune_row(NAME LINKS row... LIBRARIES library... CLASSES folder/Class...)
#
# Declares a row of the architecture as an object library. Each class names its pair of files below
# the folder SOURCE_ROOT, without ending; a class may have a header alone or a source alone.
#
# The framework's folder is flat, so a folder cannot tell the rows apart. Each row therefore sees
# headers only through an include folder of links that holds its own headers, and through those of
# the rows it links: an include against the arrows does not compile.
function(kestrune_row name)
  cmake_parse_arguments(ROW "" "SOURCE_ROOT" "LINKS;LIBRARIES;CLASSES" ${ARGN})
  set(include_root ${CMAKE_BINARY_DIR}/rows/${name})
  set(sources "")
  file(REMOVE_RECURSE ${include_root})
  foreach(class IN LISTS ROW_CLASSES)
    set(base ${ROW_SOURCE_ROOT}/${class})
    if(NOT EXISTS ${base}.h AND NOT EXISTS ${base}.cpp)
      message(FATAL_ERROR "Row ${name}: neither ${class}.h nor ${class}.cpp exists")
    endif()
    if(EXISTS ${base}.h)
      get_filename_component(folder ${class} DIRECTORY)
      file(MAKE_DIRECTORY ${include_root}/${folder})
      file(CREATE_LINK ${base}.h ${include_root}/${class}.h SYMBOLIC)
    endif()
    if(EXISTS ${base}.cpp)
      list(APPEND sources ${base}.cpp)
    endif()
  endforeach()

  add_library(${name} OBJECT ${sources})
  target_include_directories(${name} PUBLIC ${include_root})
  target_link_libraries(${name} PUBLIC kestrune_options ${ROW_LINKS} ${ROW_LIBRARIES})

  set_target_properties(${name} PROPERTIES KESTRUNE_ROWS_BELOW "${ROW_LINKS}")
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

# Links a program or library with a row and all rows below it. Objects do not travel through object
# libraries, so only those that are linked by name reach the program: hence the whole list.
function(kestrune_link_row target row)
  kestrune_rows_from(${row} rows)
  target_link_libraries(${target} PRIVATE ${rows})
endfunction()
