# SPDX-License-Identifier: BSD-3-Clause
# The warnings that all code of the project is built with.
function(qmodel_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wcast-qual
    -Wimplicit-fallthrough
    $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>)
  if(QMODEL_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# For code that a client loads into its process: nothing runs before it is called.
function(qmodel_no_global_constructors target)
  target_compile_options(${target} PRIVATE
    $<$<AND:$<COMPILE_LANGUAGE:CXX>,$<CXX_COMPILER_ID:Clang>>:-Wglobal-constructors>)
endfunction()
