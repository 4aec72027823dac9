# SPDX-License-Identifier: BSD-3-Clause
# What is installed, and what find_package() and pkg-config need; the target "uninstall".
set(QMODEL_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/qmodel)

install(TARGETS qmodel EXPORT qmodelTargets)
if(QMODEL_BUILD_STATIC)
  install(TARGETS qmodel_static EXPORT qmodelTargets)
endif()
install(DIRECTORY include/qmodel ${PROJECT_BINARY_DIR}/include/qmodel
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h" PATTERN "*.hpp")
install(EXPORT qmodelTargets NAMESPACE qmodel:: DESTINATION ${QMODEL_CMAKE_DIR})

if(QMODEL_BUILD_CLIENT)
  # Beside a library that no system folder holds, the program finds it by its own place.
  if(NOT CMAKE_INSTALL_FULL_LIBDIR IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
    file(RELATIVE_PATH bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(qmodel_client PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
  endif()
  install(TARGETS qmodel_client)
  install(FILES completions/qmodel.bash RENAME qmodel
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES completions/qmodel.zsh RENAME _qmodel
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endif()

foreach(page ${QMODEL_MAN_PAGES})
  string(REGEX MATCH "[0-9]$" section ${page})
  install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()

configure_package_config_file(cmake/qmodelConfig.cmake.in
  ${PROJECT_BINARY_DIR}/qmodelConfig.cmake INSTALL_DESTINATION ${QMODEL_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qmodelConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qmodelConfig.cmake
  ${PROJECT_BINARY_DIR}/qmodelConfigVersion.cmake DESTINATION ${QMODEL_CMAKE_DIR})

# The prefix is relative to the .pc file, so that an installed tree can be moved; a folder
# that was given as an absolute path stays where it is.
function(qmodel_pc_folder out folder)
  if(IS_ABSOLUTE ${folder})
    set(${out} ${folder} PARENT_SCOPE)
  else()
    set(${out} "\${prefix}/${folder}" PARENT_SCOPE)
  endif()
endfunction()
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
  set(QMODEL_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
else()
  file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" pc_to_prefix ${pc_to_prefix})
  set(QMODEL_PC_PREFIX "\${pcfiledir}/${pc_to_prefix}")
endif()
qmodel_pc_folder(QMODEL_PC_LIBDIR ${CMAKE_INSTALL_LIBDIR})
qmodel_pc_folder(QMODEL_PC_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
configure_file(cmake/qmodel.pc.in ${PROJECT_BINARY_DIR}/qmodel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qmodel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(PROJECT_IS_TOP_LEVEL)
  add_custom_target(uninstall
    COMMAND ${CMAKE_COMMAND} -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR} COMMENT "Removing what was installed" VERBATIM)
endif()
