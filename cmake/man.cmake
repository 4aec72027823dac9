# SPDX-License-Identifier: BSD-3-Clause
# The manual pages: those written for scdoc, and one of each public header, from its
# comments. QMODEL_MAN_PAGES: all that are made, for the install rules.
find_program(SCDOC scdoc)
find_package(Python3 COMPONENTS Interpreter)
if(NOT SCDOC OR NOT Python3_FOUND)
  message(STATUS "scdoc or python3 was not found: no manual pages")
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

set(generator ${PROJECT_SOURCE_DIR}/scripts/man_pages.py)
set(arguments ${PROJECT_SOURCE_DIR}/include ${PROJECT_BINARY_DIR}/man ${PROJECT_VERSION})
execute_process(COMMAND ${Python3_EXECUTABLE} ${generator} --list ${arguments}
  OUTPUT_VARIABLE pages OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\n" ";" pages "${pages}")
list(TRANSFORM pages PREPEND ${PROJECT_BINARY_DIR}/man/)
file(GLOB headers CONFIGURE_DEPENDS include/qmodel/*.h)
add_custom_command(OUTPUT ${pages}
  COMMAND ${Python3_EXECUTABLE} ${generator} ${arguments} DEPENDS ${generator} ${headers})
list(APPEND QMODEL_MAN_PAGES ${pages})
add_custom_target(man ALL DEPENDS ${QMODEL_MAN_PAGES})
