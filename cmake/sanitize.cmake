# SPDX-License-Identifier: BSD-3-Clause
# A sanitizer applies to everything in the build, tests included. The list may
# hold a comma, which a generator expression would split.
if(QMODEL_SANITIZE)
  add_compile_options(-fsanitize=${QMODEL_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QMODEL_SANITIZE})
  if(QMODEL_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
endif()

# libFuzzer guides its inputs by the coverage of all code but its own.
if(QMODEL_BUILD_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
