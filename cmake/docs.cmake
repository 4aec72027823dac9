# SPDX-License-Identifier: BSD-3-Clause
# The API reference, with every gap in a public comment an error, and the man pages.
find_package(Doxygen REQUIRED)
find_program(SCDOC scdoc REQUIRED)
configure_file(docs/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
add_custom_target(reference ALL COMMAND Doxygen::doxygen ${PROJECT_BINARY_DIR}/Doxyfile)
foreach(page qmodel.1 libqmodel.3)
  string(REGEX MATCH "[0-9]$" section ${page})
  add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/${page}
    COMMAND ${SCDOC} <${PROJECT_SOURCE_DIR}/docs/man/${page}.scd >${PROJECT_BINARY_DIR}/${page}
    DEPENDS docs/man/${page}.scd)
  list(APPEND pages ${PROJECT_BINARY_DIR}/${page})
  install(FILES ${PROJECT_BINARY_DIR}/${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()
add_custom_target(man ALL DEPENDS ${pages})
