// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <memory>
#include <string>
#include <vector>

#include <qmodel/qmodel.h>

#include "bench/work.h"

// The steps that cases are put together from. All end the program where something fails.

using Context = std::shared_ptr<QmCtx>;

void Require(bool holds, const char* what);

Context NewContext(uint32_t flags);
void LoadText(QmCtx* ctx, const std::string& yin);
Context LoadedContext(const std::vector<std::string>& texts);

// libxml2's parse of all of the texts, one after the other, without the blanks between
// elements, which the library drops too.
std::function<void()> ParseOf(std::vector<std::string> texts);
int64_t SizeOf(const std::vector<std::string>& texts);

// Load of all of the texts into a new context, and its deletion; `units` for one run.
Work LoadWork(std::vector<std::string> texts, int64_t units);

// Validation of a request against the modules of a context.
Work RequestWork(Context ctx, std::string request, int64_t units);

// The same as a tree of elements that is parsed before.
Work ElementWork(Context ctx, std::string request, int64_t units);

// `checks` checks of a value against the leaf at a path.
Work ValueWork(Context ctx, const char* path, std::string value, int64_t checks);

// Keeps the compiled patterns of a context, where the library can; false where not.
bool KeepPatterns(QmCtx* ctx);
