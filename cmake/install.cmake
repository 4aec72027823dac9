# SPDX-License-Identifier: BSD-3-Clause
# Headers, library, client, and what find_package() and pkg-config need.
install(TARGETS qmodel EXPORT qmodelTargets)
install(TARGETS qmodel_client)
install(DIRECTORY include/qmodel ${PROJECT_BINARY_DIR}/include/qmodel
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(EXPORT qmodelTargets NAMESPACE qmodel:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qmodel)

configure_package_config_file(cmake/qmodelConfig.cmake.in
  ${PROJECT_BINARY_DIR}/qmodelConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qmodel)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/qmodelConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/qmodelConfig.cmake ${PROJECT_BINARY_DIR}/qmodelConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/qmodel)

# The prefix is relative to the .pc file, so that an installed tree can be moved.
file(RELATIVE_PATH QMODEL_PC_TO_PREFIX
  /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/qmodel.pc.in ${PROJECT_BINARY_DIR}/qmodel.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/qmodel.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
