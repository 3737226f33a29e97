# SPDX-License-Identifier: GPL-3.0-or-later
# What `cmake --install` puts where, and the Debian packages that cpack makes of it. docs/packaging.md
# tells the options.
include(GNUInstallDirs)

set(KESTRUNE_PLUGIN_DIR lib CACHE STRING
  "Folder below the prefix in whose lv2, vst and clap hosts look for plug-ins; lib64 on some systems")
set(KESTRUNE_MAINTAINER "Orvane Inc. <nobody@localhost>" CACHE STRING
  "Name and address of who makes the packages")
set(KESTRUNE_HOMEPAGE "" CACHE STRING "Address of the product's page, for its metainfo and packages")

# The time of the release: what the packager says, else that of the last commit, so that the same
# sources give the same bytes.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
  set(KESTRUNE_EPOCH $ENV{SOURCE_DATE_EPOCH})
else()
  execute_process(COMMAND git -C ${PROJECT_SOURCE_DIR} log -1 --format=%ct
    OUTPUT_VARIABLE KESTRUNE_EPOCH OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
if(NOT KESTRUNE_EPOCH)
  set(KESTRUNE_EPOCH 0)
endif()
set(epoch_before "$ENV{SOURCE_DATE_EPOCH}")
set(ENV{SOURCE_DATE_EPOCH} ${KESTRUNE_EPOCH})
string(TIMESTAMP KESTRUNE_RELEASE_DATE %Y-%m-%d UTC)
string(TIMESTAMP KESTRUNE_CHANGELOG_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
if(epoch_before STREQUAL "")
  unset(ENV{SOURCE_DATE_EPOCH})
else()
  set(ENV{SOURCE_DATE_EPOCH} ${epoch_before})
endif()

set(packaging ${PROJECT_SOURCE_DIR}/packaging)
set(made ${PROJECT_BINARY_DIR}/packaging)
file(MAKE_DIRECTORY ${made})

# The plug-in.
set(bundle ${KESTRUNE_PLUGIN_DIR}/lv2/cantorel-mini.lv2)
install(TARGETS CantorelMini LIBRARY DESTINATION ${KESTRUNE_PLUGIN_DIR}/vst COMPONENT plugin)
# Links to the one library, under the names that hosts of CLAP and LV2 look for.
file(CREATE_LINK ../vst/CantorelMini.so ${made}/CantorelMini.clap SYMBOLIC)
file(CREATE_LINK ../../vst/CantorelMini.so ${made}/cantorel-mini.so SYMBOLIC)
install(FILES ${made}/CantorelMini.clap DESTINATION ${KESTRUNE_PLUGIN_DIR}/clap COMPONENT plugin)
install(FILES ${made}/cantorel-mini.so DESTINATION ${bundle} COMPONENT plugin)
foreach(text manifest plugin presets)
  install(FILES ${KESTRUNE_LV2_BUNDLE}/${text}.ttl DESTINATION ${bundle} COMPONENT plugin)
endforeach()
install(FILES "${PROJECT_SOURCE_DIR}/resources/fonts/Kolm 5pt.ttf"
  ${packaging}/cantorel-mini-microphone.conf
  DESTINATION ${CMAKE_INSTALL_DATADIR}/Orvane COMPONENT plugin)

# The desktop's entry, icon and metainfo.
if(KESTRUNE_HOMEPAGE)
  set(KESTRUNE_METAINFO_LINKS "  <url type=\"homepage\">${KESTRUNE_HOMEPAGE}</url>
  <screenshots>
    <screenshot type=\"default\">
      <caption>The window</caption>
      <image>${KESTRUNE_HOMEPAGE}/pictures/window.png</image>
    </screenshot>
  </screenshots>
")
endif()
configure_file(${packaging}/cantorel-mini.metainfo.xml.in
  ${made}/com.orvane.CantorelMini.metainfo.xml @ONLY)
install(FILES ${made}/com.orvane.CantorelMini.metainfo.xml
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT plugin)
install(FILES ${packaging}/cantorel-mini.desktop
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT plugin)
install(FILES ${packaging}/cantorel-mini.svg
  DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT plugin)

# The offline program, whose man page is made of what --help says.
install(TARGETS kestrune-render RUNTIME COMPONENT program)
find_program(KESTRUNE_GZIP gzip REQUIRED)
find_program(KESTRUNE_HELP2MAN help2man)
if(KESTRUNE_HELP2MAN AND NOT KESTRUNE_SANITIZER AND NOT CMAKE_CROSSCOMPILING)
  set(man_page ${made}/kestrune-render.1)
  add_custom_command(
    OUTPUT ${man_page}.gz
    COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=${KESTRUNE_EPOCH} ${KESTRUNE_HELP2MAN}
      --no-info --name "render sound files through the vocal pitch processor"
      --source "Cantorel Mini ${PROJECT_VERSION}" --output ${man_page} $<TARGET_FILE:kestrune-render>
    COMMAND ${KESTRUNE_GZIP} --best --no-name --force ${man_page}
    DEPENDS kestrune-render
    VERBATIM)
  add_custom_target(man_pages ALL DEPENDS ${man_page}.gz)
  install(FILES ${man_page}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
elseif(NOT KESTRUNE_HELP2MAN)
  message(STATUS "Without man page: scripts/setup package installs help2man")
endif()

# Documents. A package's own folder holds its licence and its changes.
function(kestrune_package_documents package component)
  set(folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package})
  configure_file(${packaging}/changelog.in ${made}/${package}/changelog.Debian @ONLY)
  execute_process(COMMAND ${KESTRUNE_GZIP} --best --no-name --force ${made}/${package}/changelog.Debian
    COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${packaging}/copyright ${made}/${package}/changelog.Debian.gz DESTINATION ${folder}
    COMPONENT ${component})
  install(FILES ${packaging}/${package}.lintian-overrides
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides COMPONENT ${component} RENAME ${package})
endfunction()
kestrune_package_documents(cantorel-mini plugin)
kestrune_package_documents(kestrune-render program)
set(documents ${CMAKE_INSTALL_DATAROOTDIR}/doc/cantorel-mini)
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${made}/changelog COPYONLY)
execute_process(COMMAND ${KESTRUNE_GZIP} --best --no-name --force ${made}/changelog
  COMMAND_ERROR_IS_FATAL ANY)
install(FILES ${made}/changelog.gz DESTINATION ${documents} COMPONENT plugin)
foreach(page README.md docs/hosts.md docs/tracking.md docs/preset-format.md)
  install(FILES ${PROJECT_SOURCE_DIR}/${page} DESTINATION ${documents} COMPONENT plugin)
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/docs/pictures/window.png
  DESTINATION ${documents}/pictures COMPONENT plugin)

# Packages.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME cantorel-mini)
set(CPACK_PACKAGE_VENDOR "Orvane Inc.")
set(CPACK_PACKAGE_CONTACT ${KESTRUNE_MAINTAINER})
set(CPACK_PACKAGE_HOMEPAGE_URL ${KESTRUNE_HOMEPAGE})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL plugin program)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PLUGIN_PACKAGE_NAME cantorel-mini)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "vocal pitch processor")
set(CPACK_COMPONENT_PLUGIN_DESCRIPTION "The plug-in, for LV2, CLAP and VST 2.4.
Finds the pitch of a voice, pulls it to the notes of a key and scale, and
shifts pitch and formants apart from each other. The output comes about 428 ms
after the input, which hosts compensate.")
# File dialogs are those of these programs; without them the plug-in has a plain one of its own.
set(CPACK_DEBIAN_PLUGIN_PACKAGE_RECOMMENDS "zenity | kdialog")
set(CPACK_DEBIAN_PLUGIN_PACKAGE_SUGGESTS "ardour | qtractor | audacity, jalv, kestrune-render")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME kestrune-render)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION "The offline program.
Corrects the pitch of recordings, draws and reports it, and applies presets and
automation, from the command line and over many files at once.")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "cantorel-mini (= ${PROJECT_VERSION}-1)")
include(CPack)
