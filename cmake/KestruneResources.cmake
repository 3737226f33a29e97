# SPDX-License-Identifier: GPL-3.0-or-later
# kestrune_pack_resources(TARGET HEADER FUNCTION [TYPE name file]...)
#
# Packs files into an object library: adds a source to TARGET that defines FUNCTION, declared in
# HEADER, as `const orvane::ZResources& FUNCTION() noexcept`. The assembler copies the files into
# read-only data as they are, so a megabyte of pictures costs no compiler time, and the table is a
# constant, so the library does nothing with it at load.
function(kestrune_pack_resources target header function)
  set(data "")
  set(symbols "")
  set(entries "")
  set(files "")
  set(index 0)
  set(rest ${ARGN})
  while(rest)
    list(POP_FRONT rest type name file)
    set(symbol ${function}${index})
    string(APPEND data
      "${symbol}Begin:\n    .incbin \"${file}\"\n${symbol}End:\n    .byte 0\n")
    string(APPEND symbols
      "__attribute__((visibility(\"hidden\"))) extern const char ${symbol}Begin[], ${symbol}End[];\n")
    string(APPEND entries
      "    {\"${type}\", \"${name}\", ${symbol}Begin, ${symbol}End},\n")
    list(APPEND files ${file})
    math(EXPR index "${index} + 1")
  endwhile()

  set(source ${CMAKE_CURRENT_BINARY_DIR}/${function}.cpp)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/KestruneResources.cpp.in ${source} @ONLY)
  # The compiler sees no include, so the build has to be told what the assembler reads.
  set_source_files_properties(${source} PROPERTIES OBJECT_DEPENDS "${files}")
  target_sources(${target} PRIVATE ${source} ${files})
endfunction()
