// SPDX-License-Identifier: BSD-3-Clause
// Prefixes, imports, includes and revisions of a file (RFC 7950, sections 7.1 and 12).
// That a file is found at all is said where it is looked up.
#include <map>

#include "compiler/lint/lint_pass.h"
#include "compiler/reading/build.h"
#include "compiler/words/argument.h"

namespace compiler {

namespace {

const xmlNode* PrefixStatement(const xmlNode* holder) {
  return FirstChild(holder, Keyword::kPrefix);
}

// YIN declares each prefix in XML, which has some of its own (RFC 7950, section 13.1).
// In version 1 no name begins with "xml" at all.
void JudgeForXml(Lint* lint, const Module* file, const xmlNode* holder, std::string_view prefix) {
  const xmlNode* at = PrefixStatement(holder);
  if (at == nullptr || !IsIdentifier(prefix, file->version11) || IsXmlPrefix(prefix)) return;
  Error(lint, cls::kLinkage, at, "the prefix " + Quote(prefix) + " is one of XML itself",
        "take another prefix");
}

void JudgeNamesOfXml(Lint* lint, const Module* file) {
  const bool isModule = file->belongsTo.empty();
  const xmlNode* belongsTo = FirstChild(file->root, Keyword::kBelongsTo);
  if (isModule || belongsTo != nullptr)
    JudgeForXml(lint, file, isModule ? file->root : belongsTo, file->prefix);
  for (const Import& import : file->imports)
    JudgeForXml(lint, file, import.statement, import.prefix);
  const xmlNode* space = FirstChild(file->root, Keyword::kNamespace);
  if (space != nullptr && !IsXmlNamespace(file->nameSpace))
    Fatal(lint, cls::kLinkage, space,
          "the namespace " + Quote(file->nameSpace) + " is one of XML itself",
          "take a namespace of your own");
}

void JudgePrefixes(Lint* lint, const Module* file) {
  std::map<std::string, std::string> meanings;  // prefix -> what has it
  meanings.emplace(file->prefix, file->belongsTo.empty() ? "the module itself" : "the module");
  for (const Import& import : file->imports) {
    if (import.prefix.empty()) continue;
    const auto entered = meanings.emplace(import.prefix, "module " + Quote(import.module));
    const xmlNode* at = PrefixStatement(import.statement);
    if (entered.second) continue;
    Error(
        lint, cls::kLinkage, at == nullptr ? import.statement : at,
        "the prefix " + Quote(import.prefix) + " stands for " + entered.first->second + " already",
        "take another prefix for " + Quote(import.module));
  }
}

void JudgeImports(Lint* lint, const Module* file) {
  std::map<std::string, const Import*> imported;
  for (const Import& import : file->imports) {
    const auto entered = imported.emplace(import.module, &import);
    if (!entered.second && !file->version11) {
      Error(lint, cls::kLinkage, import.statement,
            "module " + Quote(import.module) + " is imported already",
            "remove one; only version 1.1 imports several revisions of a module");
    } else if (!entered.second && entered.first->second->revision == import.revision) {
      Warn(lint, cls::kLinkage, import.statement,
           "module " + Quote(import.module) + " is imported already", "remove one");
    }
    if (import.target == nullptr) continue;
    if (!file->version11 && import.target->version11 && !import.revision.empty())
      Error(lint, cls::kLinkage, import.statement,
            "module " + Quote(import.module) +
                " has version 1.1, which a module of version 1 cannot import by revision",
            "leave the revision-date out, or write \"yang-version 1.1;\" here");
  }
}

void JudgeIncludes(Lint* lint, const Module* file) {
  std::map<std::string, const Include*> included;
  for (const Include& include : file->includes) {
    if (!included.emplace(include.submodule, &include).second)
      Error(lint, cls::kLinkage, include.statement,
            "submodule " + Quote(include.submodule) + " is included already", "remove one");
    const Module* target = include.target;
    if (target != nullptr && target->version11 != file->version11)
      Error(lint, cls::kLinkage, include.statement,
            "submodule " + Quote(include.submodule) + " has version " +
                (target->version11 ? "1.1" : "1") + ", " + Quote(file->name) + " has " +
                (file->version11 ? "1.1" : "1"),
            "give both the same yang-version");
  }
}

void JudgeRevisions(Lint* lint, const Module* file) {
  const char* last = nullptr;
  std::map<std::string, const xmlNode*> dates;
  for (const xmlNode* s = FirstChild(file->root, Keyword::kRevision); s != nullptr;
       s = NextSibling(s, Keyword::kRevision)) {
    const char* date = ArgumentOf(s);
    if (date == nullptr || !IsDate(date)) continue;
    if (!dates.emplace(date, s).second) {
      Warn(lint, cls::kLinkage, s, "there is a revision " + Quote(date) + " already",
           "give each revision a date of its own");
    } else if (last != nullptr && std::string_view(date) > last) {
      Warn(lint, cls::kLinkage, s, "the revision " + Quote(date) + " stands behind an older one",
           "put the newest revision first");
    }
    last = date;
  }
}

}  // namespace

void LintLinkage(Lint* lint, const Module* file) {
  JudgePrefixes(lint, file);
  JudgeNamesOfXml(lint, file);
  JudgeImports(lint, file);
  JudgeIncludes(lint, file);
  JudgeRevisions(lint, file);
}

}  // namespace compiler
