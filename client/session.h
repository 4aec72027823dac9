// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <qmodel/context.h>

#include "client/json.h"
#include "client/options.h"
#include "client/owned.h"

// Makes a context as the options say: search directories, loads (with the
// operands too when `loadOperands`), unloads, features. Load errors are printed.
// NULL, with *status set and the reason on standard error, when it cannot be used.
Context OpenSession(const Options& options, bool loadOperands, int* status);

// What the validation of a file needs.
struct Validation {
  QmCtx* ctx;
  const Options& options;
  JsonArray* answers;  // printed at the end with --json
};

// Validates one file and gives the exit status.
using ValidateFunc = int (*)(const Validation& validation, const std::string& file);

// Makes a context without loading the operands and calls `validate` with each of them as a
// file. The greatest status.
int ValidateFiles(const Options& options, ValidateFunc validate);
