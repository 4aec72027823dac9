// SPDX-License-Identifier: BSD-3-Clause
// How findings are printed. One line each, so control characters that a model's name or
// argument brings are written as \xNN.
#include <cstdio>

#include "compiler/lint/lint.h"
#include "compiler/words/text_check.h"

namespace compiler {

namespace {

bool IsControl(char c) noexcept {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

void AppendLineText(std::string* out, std::string_view text) {
  for (const char c : text) {
    if (!IsControl(c)) {
      out->push_back(c);
      continue;
    }
    char escape[8];
    static_cast<void>(std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned>(c)));
    *out += escape;
  }
}

// The name of a file may hold anything; what is no UTF-8 is no JSON.
void AppendJsonText(std::string* out, std::string_view text) {
  const char* end = text.data() + text.size();
  const char* bad = FindBadCharacter(text.data(), end);
  out->push_back('"');
  for (const char* c = text.data(); c != end; ++c) {
    if (IsControl(*c)) {
      char escape[8];
      static_cast<void>(std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(*c)));
      *out += escape;
    } else if (c == bad) {
      *out += "\xef\xbf\xbd";  // U+FFFD
      c += DescribeBadCharacter(c, end).length - 1;
    } else {
      if (*c == '"' || *c == '\\') out->push_back('\\');
      out->push_back(*c);
    }
    if (c >= bad) bad = FindBadCharacter(c + 1, end);
  }
  out->push_back('"');
}

const char* NameOfSeverity(Severity severity) noexcept {
  return severity == Severity::kWarning ? "warning" : "error";
}

const std::string& PathOf(const Place& place) {
  static const std::string none;
  return place.file == nullptr ? none : place.file->path;
}

// The message with the place where a grouping's statement was used.
std::string MessageOf(const Finding& finding) {
  if (finding.usedAt == nullptr) return finding.message;
  return finding.message + ", used at " + PathOf(*finding.usedAt) + ":" +
         std::to_string(finding.usedAt->line);
}

void AppendField(std::string* out, const char* name, std::string_view text) {
  *out += std::string(", \"") + name + "\": ";
  AppendJsonText(out, text);
}

}  // namespace

std::string FindingsAsLines(const Report& report) {
  std::string out;
  for (const Finding& finding : report.findings) {
    AppendLineText(&out, PathOf(finding.place));
    out += ":" + std::to_string(finding.place.line) + ":" + std::to_string(finding.place.column) +
           ": " + NameOfSeverity(finding.severity) + ": ";
    AppendLineText(&out, MessageOf(finding));
    if (!finding.advice.empty()) {
      out += "; ";
      AppendLineText(&out, finding.advice);
    }
    out += std::string(" [") + finding.group + "]\n";
  }
  return out;
}

std::string FindingsAsJson(const Report& report) {
  std::string out = "[";
  for (const Finding& finding : report.findings) {
    out += out.size() > 1 ? ",\n  {" : "\n  {";
    out += "\"file\": ";
    AppendJsonText(&out, PathOf(finding.place));
    out += ", \"line\": " + std::to_string(finding.place.line) +
           ", \"column\": " + std::to_string(finding.place.column);
    AppendField(&out, "severity", NameOfSeverity(finding.severity));
    AppendField(&out, "class", finding.group);
    AppendField(&out, "message", MessageOf(finding));
    AppendField(&out, "advice", finding.advice);
    out += "}";
  }
  return out + (report.findings.empty() ? "]\n" : "\n]\n");
}

}  // namespace compiler
