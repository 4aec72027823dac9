// SPDX-License-Identifier: BSD-3-Clause
// A model as a file holds it, YANG text or, when it begins with '<', YIN: read, bound,
// written. What was read without an error and is written must be read back as it was.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "compiler/reading/reader.h"
#include "compiler/reading/session.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/writer.h"

namespace {

using compiler::Module;

// Hostile structure shows in few bytes, and small inputs keep the fuzzer fast.
constexpr size_t kMaxText = 8192;

// True when all statements are YANG's own: others have no form in YIN before they are
// bound.
bool IsPlain(const Module& module) {
  if (!module.extensions.empty()) return false;
  const xmlNode* root = module.root;
  for (const xmlNode* s = root; s != nullptr; s = compiler::NextInTree(root, s))
    if (compiler::Is(s, compiler::Keyword::kNone)) return false;
  return true;
}

void Fail(const char* what, const std::string& first, const std::string& second) {
  std::fprintf(stderr, "%s\n--- first\n%s\n--- then\n%s\n", what, first.c_str(), second.c_str());
  std::abort();
}

void ReadBack(compiler::Session* session, const Module& module) {
  const std::string written = compiler::WriteYin(module);
  compiler::Report report;
  const Module* again = compiler::ReadModuleYin(session, "again.yin", written, &report);
  if (again == nullptr || !report.findings.empty())
    Fail("what was written cannot be read", written,
         report.findings.empty() ? "" : report.findings[0].message);
  const std::string rewritten = compiler::WriteYin(*again);
  if (rewritten != written) Fail("what was written is read otherwise", written, rewritten);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kMaxText) return 0;
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto session = compiler::OpenSession();
  compiler::Report report;
  const bool isYin = text.starts_with('<');
  Module* module = isYin ? ReadModuleYin(session.get(), "m.yin", text, &report)
                         : ReadModuleText(session.get(), "m.yang", text, &report);
  if (module == nullptr) {
    if (report.findings.empty()) Fail("no module and no word", text, "");
    return 0;
  }
  if (module->broken == report.findings.empty()) Fail("an error is not told", text, "");
  if (!module->broken && IsPlain(*module)) ReadBack(session.get(), *module);
  for (compiler::Import& import : module->imports) import.target = module;
  BindPrefixes(session.get(), module, &report);
  if (compiler::WriteYin(*module).empty()) Fail("nothing is written", text, "");
  return 0;
}
