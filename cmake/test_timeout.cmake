# SPDX-License-Identifier: BSD-3-Clause
# A test that hangs fails instead of holding up all others: every test of the suite is
# added by one of these two functions, which give it a time limit. It is five minutes,
# and four times that where a sanitizer or the counting of coverage slows the code down.
# That no test goes without is checked by tests/guard_rails/check_timeouts.py.
set(QMODEL_TEST_TIMEOUT 300)
if(QMODEL_SANITIZE OR "${CMAKE_C_FLAGS} ${CMAKE_CXX_FLAGS}" MATCHES "--coverage")
  math(EXPR QMODEL_TEST_TIMEOUT "4 * ${QMODEL_TEST_TIMEOUT}")
endif()

# As add_test(NAME name ...).
function(qmodel_add_test name)
  add_test(NAME ${name} ${ARGN})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${QMODEL_TEST_TIMEOUT})
endfunction()

# The tests of a GoogleTest program, with names that begin with "prefix/" and, if a
# third word is given, that label. Printed values of parameters could bring addresses
# into the names.
function(qmodel_discover_tests target prefix)
  set(properties TIMEOUT ${QMODEL_TEST_TIMEOUT})
  if(ARGN)
    list(APPEND properties LABELS ${ARGN})
  endif()
  gtest_discover_tests(${target} TEST_PREFIX "${prefix}/" DISCOVERY_TIMEOUT 60 NO_PRETTY_VALUES
    PROPERTIES ${properties})
endfunction()
