// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>

#include <qmodel/context.h>

#include "context/internal.h"
#include "xpath/records.h"

// What the tokenizer side of XPath asks of the module record above it.

QM_BEGIN_INTERNAL_DECLS

const char* QMS_MOD_GetModuleNameByPrefix(const QmsModule* mod, const char* prefix);

QM_END_INTERNAL_DECLS
