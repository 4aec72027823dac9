// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>

#include <qmodel/schema.h>

// The tree of a module exactly as RFC 8340 has it, `depth` levels of it; 0: all.
std::string TreeOfRfc8340(QmCtx* ctx, QmsModule* module, unsigned depth);
