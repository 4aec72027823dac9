// SPDX-License-Identifier: BSD-3-Clause
// Where templates of data stand and what they hold. What is defined in them is judged
// with the nodes of the module, each template a tree of its own.
#include "compiler/lint/lint_pass.h"
#include "compiler/spelling/data_template.h"
#include "compiler/words/grammar.h"

namespace compiler {

namespace {

void JudgePlace(Lint* lint, const xmlNode* statement) {
  if (IsGlobal(statement)) return;
  Error(lint, cls::kExtension, statement,
        Quote(NameOf(statement)) + " stands further in than at the top of the module",
        "move it up");
}

void JudgeContents(Lint* lint, const xmlNode* statement, DataTemplate kind) {
  bool any = false;
  for (const xmlNode* s = FirstChild(statement); s != nullptr; s = NextSibling(s)) {
    any = any ||
          (!Is(s, Keyword::kNone) && MayStandInTemplate(DataTemplate::kYangData, KeywordOf(s)));
    if (MayStandInTemplate(kind, KeywordOf(s))) continue;
    Error(lint, cls::kExtension, s,
          Quote(NameOf(s)) + " may not stand in " + Quote(NameOf(statement)),
          "it holds definitions of data");
  }
  if (!any && kind == DataTemplate::kYangData)
    Error(lint, cls::kExtension, statement, Describe(statement) + " defines no container",
          "define one in it");
}

// Whatever choices and groupings do, each instance has one container at its top.
void JudgeTop(Lint* lint, const SchemaNode* top) {
  const SchemaNode* first = nullptr;
  for (const SchemaNode* node = top->firstChild; node != nullptr; node = node->next) {
    if (!IsDataDefinition(node->keyword)) continue;  // told already
    const bool fits = node->keyword == Keyword::kContainer || node->keyword == Keyword::kChoice;
    if (!fits || first != nullptr) {
      ErrorOn(lint, cls::kExtension, node, node->statement,
              Describe(top->statement) + " defines " + Quote(node->name) +
                  " at its top, which is " + (fits ? "a second node" : "no container"),
              "put one container around all");
      return;
    }
    first = node;
  }
}

}  // namespace

void LintTemplates(Lint* lint) {
  for (const Module* file : lint->files)
    for (const xmlNode* s = NextInTree(file->root, file->root); s != nullptr;
         s = NextInTree(file->root, s)) {
      const DataTemplate kind = DataTemplateOf(s);
      if (kind == DataTemplate::kNone) continue;
      JudgePlace(lint, s);
      JudgeContents(lint, s, kind);
    }
  for (const SchemaNode* top : lint->tops)
    if (DataTemplateOf(top->statement) == DataTemplate::kYangData) JudgeTop(lint, top);
}

}  // namespace compiler
