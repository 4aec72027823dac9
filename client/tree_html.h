// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>
#include <vector>

#include <qmodel/schema.h>

// One page, complete in itself, with the trees of the modules to look at.
std::string HtmlPage(QmCtx* ctx, const std::vector<QmsModule*>& modules);
