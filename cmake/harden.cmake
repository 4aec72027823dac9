# SPDX-License-Identifier: BSD-3-Clause
# Hardening, on by default: stack protector, checked C library calls where the
# build optimises, read-only relocations, immediate binding. Sanitizers bring
# checks of their own.
option(QMODEL_HARDEN "Build with hardening flags" ON)
if(QMODEL_HARDEN AND NOT QMODEL_SANITIZE)
  add_compile_options(-fstack-protector-strong
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE>
    $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  add_link_options(LINKER:-z,relro LINKER:-z,now)
endif()
