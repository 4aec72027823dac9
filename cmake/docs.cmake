# SPDX-License-Identifier: BSD-3-Clause
# The API reference, with every gap in a public comment an error.
find_package(Doxygen REQUIRED)
configure_file(docs/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
add_custom_target(reference ALL COMMAND Doxygen::doxygen ${PROJECT_BINARY_DIR}/Doxyfile)
