# SPDX-License-Identifier: BSD-3-Clause
# The manual pages. QMODEL_MAN_PAGES: those that were made, for the install rules.
find_program(SCDOC scdoc)
if(NOT SCDOC)
  message(STATUS "scdoc was not found: no manual pages")
  return()
endif()
file(GLOB sources CONFIGURE_DEPENDS docs/man/*.scd)
foreach(source ${sources})
  get_filename_component(page ${source} NAME_WLE)
  add_custom_command(OUTPUT ${PROJECT_BINARY_DIR}/man/${page}
    COMMAND ${SCDOC} <${source} >${PROJECT_BINARY_DIR}/man/${page}
    DEPENDS ${source})
  list(APPEND QMODEL_MAN_PAGES ${PROJECT_BINARY_DIR}/man/${page})
endforeach()
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/man)
add_custom_target(man ALL DEPENDS ${QMODEL_MAN_PAGES})
