// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>
#include <vector>

#include "bench/shared_parts.h"

// The paths of all nodes of the modules, as QM_CTX_GetTargetNode() takes them, without those
// that it does not find.
std::vector<std::string> PathsOf(QmCtx* ctx, const std::vector<std::string>& modules);

// A lookup of each of the paths.
Work PathWork(Context ctx, std::vector<std::string> paths);
