// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What a person may have meant, and what may be missing; all on standard error.
#include <qmodel/context.h>
#include <qmodel/data.h>
#include <qmodel/error.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "client/options.h"

// "; did you mean 'NAME'?" for the nearest of the names, empty when none is near.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& names);

// The same for the modules of a context.
std::string DidYouMeanModule(QmCtx* ctx, std::string_view word);

// A line for each module that is named, but has no file in the search directories: one of a
// similar name, or the file that has to be compiled first.
// `readsText`: what is named is compiled anyway.
void HintModules(const Options& options, bool withOperands, bool readsText);

// Says that imports are not loaded, when this module is imported and is not loaded.
void HintImport(QmCtx* ctx, const Options& options, std::string_view module);

// The same for the modules that a path names.
void HintImportsOfPath(QmCtx* ctx, const Options& options, std::string_view path);

// The same when the type of the node needs such a module.
void HintImportsOfType(QmCtx* ctx, const Options& options, QmsNode* node);

// The same when the node that an error record names cannot be looked up or checked.
void HintImportsOfRecord(QmCtx* ctx, const Options& options, const QmErrNode* record);
