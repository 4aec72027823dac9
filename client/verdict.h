// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What is said of a message beside its answer.
#include <string>

#include <qmodel/error.h>

#include "client/options.h"

// With -v a line on standard error, before the answer, that names its file.
void PrintVerdict(const Options& options, const std::string& file, bool valid);

// A record in a line on standard error.
void PrintReason(const std::string& file, const QmErrNode* record);
