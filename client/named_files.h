// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Files where names of modules are wanted.
#include "client/options.h"
#include "client/private_folder.h"

// Turns each model file among the modules that `-m` and `-u` name, and among the operands
// when `withOperands`, into the name of its module. Its folder is searched behind the given
// ones; where another file would be found first, a copy in `folder` goes before all. False,
// with the reason on standard error, when a file cannot be used.
bool TakeNamedFiles(Options* options, bool withOperands, PrivateFolder* folder);
