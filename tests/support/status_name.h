// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <qmodel/error.h>

#include <string>

// The name of a status as `error.h` has it, for dumps that stand beside an expectation;
// the number when it has none.
inline std::string StatusName(uint32_t status) {
  switch (status) {
#define QM_TEST_NAME_(name, number, text) \
  case name:                              \
    return #name;
    QM_STATUS_LIST(QM_TEST_NAME_)
#undef QM_TEST_NAME_
    default:
      return std::to_string(status);
  }
}
