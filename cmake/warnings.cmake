# SPDX-License-Identifier: BSD-3-Clause
# The warnings that all code of the project is built with.
function(qmodel_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wcast-qual
    -Wimplicit-fallthrough
    $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
    $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CXX_COMPILER_ID:Clang>>:-Wglobal-constructors>)
  if(QMODEL_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
