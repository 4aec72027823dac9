// SPDX-License-Identifier: BSD-3-Clause
// Pins the statuses that are errno values: they are written as numbers in the
// public header, so that a client sees the same ones whatever it includes.
#include <cerrno>

#include <qmodel/error.h>

static_assert(QM_OK == 0);
static_assert(QM_FAILED == EPERM);
static_assert(QM_NOT_FOUND == ENOENT);
static_assert(QM_NO_MEMORY == ENOMEM);
static_assert(QM_EXISTS == EEXIST);
static_assert(QM_NOT_A_DIRECTORY == ENOTDIR);
static_assert(QM_INVALID == EINVAL);
static_assert(QM_LOCK_FAILED == ENOLCK);
static_assert(QM_NAME_TOO_LONG == 126);
static_assert(QM_VALUE_NO_BODY == 0x7000 && QM_VALUE_BAD_EMPTY == 0x700C);
static_assert(QM_XPATH_FALSE == 0x7100 && QM_XPATH_BAD_PREDICATE == 0x710D);
