// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <qmodel/context.h>

// A context with the module of the fuzz targets: every node kind, every built-in
// type, defaults, conditions, keys. NULL when memory is refused.
QmCtx* LoadFixedModel();

constexpr char kFixedNamespace[] = "urn:fuzz";
