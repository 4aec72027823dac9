// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// One file of YANG text as the YIN of RFC 7950, section 13: the same statements, nothing
// spelled out. Refused memory is caught here.
#include <string>
#include <vector>

#include "compiler/job.h"

namespace compiler {

struct ConvertRequest {
  std::vector<std::string> folders;  // searched for imports, after the file's own
  std::string file;
  const std::string* text = nullptr;  // YANG text, instead of what `file` holds
};

// Of other files only that is read which the YIN form needs: the namespaces of the
// modules imported, and the definitions of the extensions used. One module is given, or
// none when the file has an error that stops it.
JobResult ConvertFile(const ConvertRequest& request);

}  // namespace compiler
