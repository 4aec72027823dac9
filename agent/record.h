// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include "data/records.h"

// A new record with a message and no path; NULL when there is no memory for all of it.
QmErrNode* NewMessageRecord(uint32_t type, uint32_t tag, const char* message);
