// SPDX-License-Identifier: BSD-3-Clause
// What to do about what the readers report, and the compiler as lost. They say what is
// wrong, which is all that the compiler prints; lint adds a remedy where they have none.
#include <cstring>

#include "compiler/lint/lint_pass.h"
#include "compiler/reading/reader.h"

namespace compiler {

namespace {

struct AdviceRow {
  const char* part;  // of the message
  const char* advice;
};

constexpr AdviceRow kSyntaxAdvice[] = {
    {"' is no keyword", "look at the end of the statement before it"},
    {"' lacks its argument", "write it behind the keyword"},
    {"' takes no argument", "remove it"},
    {"';' or '{' is missing after", "end the statement with ';', or open its block with '{'"},
    {"'{' follows no statement", "write the statement that the block belongs to"},
    {"a quoted string stands where", "end the statement before it, or write the keyword bare"},
    {"'*/' stands where", "remove it; comments do not nest"},
    {"which is no UTF-8 here", "save the file as UTF-8"},
    {"which YANG does not allow", "remove it"},
    {"levels deep", "look for a '}' that is missing"},
    {"the file holds no module", "look whether it was downloaded whole"},
    {"the file does not begin with", "begin it with 'module NAME {', or take another file"},
    {"the file is no YIN module", "take another file"},
    {"too many errors", "correct those first"},
    {"' has no attribute '", "remove it, or give it the name that the statement's argument has"},
    {"' stands behind another element", "move it up"},
    {"too many attributes", "remove what says nothing of the statement"},
    {"", "make it well-formed XML"},  // what else there is, libxml2 says
};

constexpr AdviceRow kExtensionAdvice[] = {
    {"' takes no argument", "remove it"},
    {"' lacks its argument '", "write it, as the extension's definition says"},
    {"' calls its argument '", "give it that name"},
    {"' defines no extension '", "look at what that module defines"},
    {"XML does not take", "call the argument otherwise in the extension's definition"},
    {"no namespace of its own", "give that module a namespace"},
};

// Of what the compiler reports as lost.
constexpr AdviceRow kLossAdvice[] = {
    {"; decide its features", ""},
    {"has no place in the output", "put it on the nodes"},
    {"the condition does not reach", "write a must inside of it"},
    {"the library checks no leafref in a union", "name a leaf whose type can be known"},
    {"the library cannot read this condition", "write the path in the short form"},
    {"; it is left out", "shorten it"},
    {"unless an augment leads there", "write it in the operation, with a node"},
    {"does not keep the extension", "other programs may read it"},
    {"the revision of ", "import the revision that has it everywhere"},
    {"with a prefix that the library does not declare",
     "rename the module, or write the identityref"},
    {" deviates the ", "say both in one module, or load them in one order"},
    {"", "write the model without it, or check it elsewhere"},
};

template <size_t kCount>
const char* Advise(const AdviceRow (&rows)[kCount], const std::string& message) {
  for (const AdviceRow& row : rows)
    if (message.find(row.part) != std::string::npos) return row.advice;
  return "";
}

}  // namespace

void AddAdvice(Report* report) {
  for (Finding& finding : report->findings) {
    if (!finding.advice.empty()) continue;
    if (std::strcmp(finding.group, kSyntaxClass) == 0) {
      finding.advice = Advise(kSyntaxAdvice, finding.message);
    } else if (std::strcmp(finding.group, kExtensionClass) == 0) {
      finding.advice = Advise(kExtensionAdvice, finding.message);
    } else if (std::strcmp(finding.group, cls::kLibrary) == 0) {
      finding.advice = Advise(kLossAdvice, finding.message);
    }
  }
}

}  // namespace compiler
