// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Models through the compiler: the request that options make, and -c.
#include "client/options.h"
#include "client/private_folder.h"
#include "compiler/job.h"

// The compiler's request for the search directories and features of the options.
compiler::JobRequest MakeRequest(const Options& options);

// Prints what the compiler has to say; throws std::bad_alloc when that is that memory was refused.
void PrintFindings(const compiler::JobResult& result);

// Compiles the modules that `-m` names, and the operands when `withOperands`, with all
// that they import, into `folder`, and makes the options name what was compiled. An exit
// status; what a module lost does not count.
int CompileFirst(Options* options, bool withOperands, PrivateFolder* folder);
