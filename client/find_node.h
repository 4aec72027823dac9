// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Nodes by the paths that a person writes.
#include <string>

#include <qmodel/schema.h>

#include "client/options.h"

// The node that a data path names. NULL, with the reason on standard error.
QmsNode* FindDataNode(QmCtx* ctx, const Options& options, const std::string& path);

// The same, but also a path with choices and cases, inputs and outputs.
QmsNode* FindNode(QmCtx* ctx, const Options& options, const std::string& path);
