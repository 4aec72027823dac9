// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Reading of models in tests.
#include <string>

#include "compiler/reading/reader.h"
#include "compiler/reading/session.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/writer.h"

namespace compiler {

// A module that was read, with what was found on the way.
struct ReadResult {
  std::unique_ptr<Session> session = OpenSession();
  Report report;
  Module* module = nullptr;

  // All findings, a line for each: "LINE:COLUMN: MESSAGE", with "; ADVICE".
  std::string Findings() const {
    std::string lines;
    for (const Finding& finding : report.findings) {
      lines += std::to_string(finding.place.line) + ":" + std::to_string(finding.place.column) +
               ": " + finding.message;
      if (!finding.advice.empty()) lines += "; " + finding.advice;
      lines += "\n";
    }
    return lines;
  }
};

inline ReadResult ReadText(const std::string& text) {
  ReadResult result;
  result.module = ReadModuleText(result.session.get(), "m.yang", text, &result.report);
  return result;
}

inline ReadResult ReadYin(const std::string& text) {
  ReadResult result;
  result.module = ReadModuleYin(result.session.get(), "m.yin", text, &result.report);
  return result;
}

}  // namespace compiler
