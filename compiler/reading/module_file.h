// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What both readers begin and end with.
#include <string>

#include "compiler/reading/records.h"
#include "compiler/reading/report.h"

namespace compiler {

// The record of a module about to be read, with an empty tree, at the session's end.
Module* NewModule(Session* session, const std::string& path, bool isText);

// Fills the name, prefix, namespace, revision, version, imports and includes of a
// module from the statements below its root. What is missing stays empty.
void ReadHeader(Module* module);

void ReportTooLarge(const Module* module, Report* report);

}  // namespace compiler
