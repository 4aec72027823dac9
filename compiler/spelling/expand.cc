// SPDX-License-Identifier: BSD-3-Clause
// Contents are copied in the order of the text; a `uses` is answered by copying the
// grouping's contents into its place, then its refinements, then its augments, then
// what it hands to each node that it brought in. The sizes have been counted before, and
// circles been refused, so this ends. Copies of one `uses` inside another say the outer
// one as the place that brought them: it is the one that tells them apart.
#include "compiler/spelling/expand.h"

#include <string>
#include <utility>

#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/child_index.h"
#include "compiler/spelling/refine.h"
#include "compiler/spelling/target.h"
#include "compiler/words/node_kind.h"
#include "compiler/words/path.h"

namespace compiler {

namespace {

void CopyInto(Output* out, const xmlNode* statement, xmlNode* to, const Place* usedAt);

// Statements, each `uses` among them, may stand one in the other to this depth; the
// loader takes far fewer.
constexpr unsigned kMaxDepthOfCopies = 3000;

bool MayGoDown(Output* out, const xmlNode* at) {
  if (out->depth == kMaxDepthOfCopies && !out->stopped)
    Stop(out, "grouping", at, "spelled out, statements stand too deep one in the other");
  return !out->stopped;
}

void CopyContents(Output* out, const xmlNode* from, xmlNode* to, const Place* usedAt) {
  if (!MayGoDown(out, from)) return;
  ++out->depth;
  for (const xmlNode* s = FirstChild(from); s != nullptr; s = NextSibling(s))
    CopyInto(out, s, to, usedAt);
  --out->depth;
}

constexpr char kHasNoPlace[] = " has no place in the output";

// Says what is not copied as if it had been.
void LoseHere(Output* out, const xmlNode* statement, std::string message, const Place* usedAt) {
  Lose(out, statement, std::move(message));
  out->report.findings.back().usedAt = usedAt;
}

// What a grouping or an augment has for itself, and does not give to its target.
bool IsOwnProperty(const xmlNode* statement) {
  switch (KeywordOf(statement)) {
    case Keyword::kDescription:
    case Keyword::kReference:
    case Keyword::kStatus:
    case Keyword::kWhen:
    case Keyword::kIfFeature:
      return true;
    default:
      return false;
  }
}

// The contents of a grouping, or of an augment, become contents of `to`. Gives the
// nodes that came.
BroughtNodes Bring(Output* out, const xmlNode* from, xmlNode* to, const Place* usedAt) {
  if (!MayGoDown(out, from)) return {};
  const xmlNode* last = to->last;
  ++out->depth;
  for (const xmlNode* s = FirstChild(from); s != nullptr; s = NextSibling(s)) {
    if (IsOwnProperty(s)) continue;
    if (Is(s, Keyword::kNone)) {
      LoseHere(out, s, std::string("an extension in ") + NameOf(from) + kHasNoPlace, usedAt);
    } else {
      CopyInto(out, s, to, usedAt);
    }
  }
  --out->depth;
  BroughtNodes brought;
  for (xmlNode* s = last == nullptr ? FirstChild(to) : NextSibling(last); s != nullptr;
       s = NextSibling(s))
    brought.nodes.push_back(s);
  return brought;
}

void AugmentBelow(Output* out, const xmlNode* augment, BroughtNodes* roots, const Place* usedAt) {
  xmlNode* target = FindBelow(out, roots, augment);
  if (target == nullptr) {
    Stop(out, "target", augment, "the target of the augment is not in the grouping");
    return;
  }
  const BroughtNodes brought = Bring(out, augment, target, usedAt);
  const std::vector<const xmlNode*> inherited = Inherited(augment);
  for (xmlNode* node : brought.nodes) Inherit(out, inherited, node, usedAt);
}

void ExpandUses(Output* out, const xmlNode* uses, xmlNode* to, const Place* usedAt) {
  const char* name = ArgumentOf(uses);
  const xmlNode* grouping =
      name == nullptr ? nullptr : FindSymbol(uses, SymbolKind::kGrouping, name);
  if (grouping == nullptr) {
    Stop(out, "grouping", uses,
         std::string("the grouping \"") + (name == nullptr ? "" : name) + "\" is not found");
    return;
  }
  const Place* place = usedAt == nullptr ? &StatementOf(uses)->place : usedAt;
  BroughtNodes roots = Bring(out, grouping, to, place);
  for (const xmlNode* s = FirstChild(uses); s != nullptr; s = NextSibling(s)) {
    if (Is(s, Keyword::kRefine)) Refine(out, s, &roots, usedAt);
    if (Is(s, Keyword::kNone))
      LoseHere(out, s, std::string("an extension in uses") + kHasNoPlace, usedAt);
  }
  for (const xmlNode* s : AugmentsOfUses(uses)) AugmentBelow(out, s, &roots, usedAt);
  const std::vector<const xmlNode*> inherited = Inherited(uses);
  for (xmlNode* node : roots.nodes) Inherit(out, inherited, node, usedAt);
}

// True for what can hold a `uses`, at any depth.
bool HoldsNodes(Keyword keyword) {
  return keyword == Keyword::kAugment ||
         (IsSchemaNode(keyword) && keyword != Keyword::kLeaf && keyword != Keyword::kLeafList);
}

// yang-data and its like hold nodes of a schema, too.
bool IsExtensionWithUses(const xmlNode* statement) {
  if (!Is(statement, Keyword::kNone)) return false;
  for (const xmlNode* s = NextInTree(statement, statement); s != nullptr;
       s = NextInTree(statement, s)) {
    if (Is(s, Keyword::kUses)) return true;
  }
  return false;
}

int StatusRank(const char* status) {
  if (status == nullptr) return 0;
  const std::string_view text = status;
  return text == "obsolete" ? 2 : text == "deprecated" ? 1 : 0;
}

void InheritStatus(Output* out, const xmlNode* status, xmlNode* node, const Place* usedAt) {
  xmlNode* own = FirstChild(node, Keyword::kStatus);
  if (StatusRank(ArgumentOf(status)) <= StatusRank(own == nullptr ? nullptr : ArgumentOf(own)))
    return;
  if (own != nullptr) RemoveStatement(own);
  AppendChild(node, CopyStatement(out->all->session, node->doc, status, usedAt));
}

// An implied case is as current as the node that it stands for.
void GiveStatus(Output* out, const xmlNode* node, xmlNode* impliedCase) {
  const xmlNode* status = FirstChild(node, Keyword::kStatus);
  if (status != nullptr) InheritStatus(out, status, impliedCase, StatementOf(status)->usedAt);
}

void CopyInto(Output* out, const xmlNode* statement, xmlNode* to, const Place* usedAt) {
  const Keyword keyword = KeywordOf(statement);
  if (keyword == Keyword::kUses) {
    ExpandUses(out, statement, to, usedAt);
    return;
  }
  if (keyword == Keyword::kGrouping) return;
  if (keyword == Keyword::kAugment && to != out->written.root) {
    LoseHere(out, statement, "an augment cannot stand here; it is left out", usedAt);
    return;
  }
  // Typedefs further in move to the module's level when a type names them.
  if (keyword == Keyword::kTypedef && !IsGlobal(statement)) return;
  Session* session = out->all->session;
  if (!HoldsNodes(keyword) && !IsExtensionWithUses(statement)) {
    xmlNode* copy = CopyStatement(session, out->written.document.get(), statement, usedAt);
    if (IsSchemaNode(keyword)) {
      PutNode(out, to, copy);
    } else {
      AppendChild(to, copy);
    }
    return;
  }
  xmlNode* copy = CopyAlone(session, out->written.document.get(), statement, usedAt);
  if (keyword == Keyword::kAugment) {
    AppendChild(to, copy);
    out->augments.push_back({copy, TargetSteps(copy), {}, false});
    CopyContents(out, statement, copy, usedAt);
    return;
  }
  xmlNode* put = PutNode(out, to, copy);
  CopyContents(out, statement, copy, usedAt);
  if (put != copy) GiveStatus(out, copy, put);
}

bool IsHeader(Keyword keyword) {
  switch (keyword) {
    case Keyword::kYangVersion:
    case Keyword::kNamespace:
    case Keyword::kPrefix:
    case Keyword::kBelongsTo:
    case Keyword::kImport:
    case Keyword::kInclude:
    case Keyword::kOrganization:
    case Keyword::kContact:
    case Keyword::kDescription:
    case Keyword::kReference:
    case Keyword::kRevision:
      return true;
    default:
      return false;
  }
}

void CopyFile(Module* file, void* arg) {
  auto* out = static_cast<Output*>(arg);
  for (const xmlNode* s = FirstChild(file->root); s != nullptr; s = NextSibling(s)) {
    if (!IsHeader(KeywordOf(s))) CopyInto(out, s, out->written.root, nullptr);
  }
}

// The node that an implied case stands for: the first that came into it.
xmlNode* ImpliedBy(const xmlNode* impliedCase) {
  xmlNode* s = FirstChild(impliedCase);
  while (!IsSchemaNode(KeywordOf(s))) s = NextSibling(s);
  return s;
}

// Puts a copy in front of the other substatements, behind an argument.
xmlNode* PutFirst(Output* out, const xmlNode* statement, xmlNode* node, const Place* usedAt) {
  xmlNode* copy = CopyStatement(out->all->session, node->doc, statement, usedAt);
  xmlNode* first = FirstChild(node);
  if (first == nullptr) {
    AppendChild(node, copy);
  } else {
    InsertBefore(first, copy);
  }
  return copy;
}

// So many are looked through one by one.
constexpr size_t kFewRoots = 16;

xmlNode* FindRoot(BroughtNodes* roots, std::string_view name) {
  const bool areMany = roots->nodes.size() > kFewRoots;
  if (areMany && !roots->named.empty()) {
    const auto found = roots->named.find(name);
    return found == roots->named.end() ? nullptr : found->second;
  }
  xmlNode* first = nullptr;
  for (xmlNode* root : roots->nodes) {
    const char* own = SchemaName(root);
    if (own == nullptr) continue;
    if (areMany) roots->named.emplace(own, root);
    if (first == nullptr && name == own) first = root;
  }
  return first;
}

xmlNode* Walk(Output* out, xmlNode* node, const NodePath& path, size_t first) {
  for (size_t i = first; node != nullptr && i < path.steps.size(); ++i)
    node = SchemaChild(out, node, path.Of(path.steps[i].name));
  return node;
}

}  // namespace

void ExpandModule(Output* out) {
  ForEachFile(out->module, CopyFile, out);
}

xmlNode* MakeImpliedCase(Output* out, const xmlNode* node) {
  const char* name = ArgumentOf(node);
  LooseStatement made(
      MakeStatement(out->all->session, node, Keyword::kCase, name == nullptr ? "" : name));
  StatementOf(made.get())->isImplied = true;
  GiveStatus(out, node, made.get());
  return made.release();
}

xmlNode* PutNode(Output* out, xmlNode* target, xmlNode* node) {
  if (!Is(target, Keyword::kChoice) || !IsShorthandCase(KeywordOf(node))) {
    AppendChild(target, node);
    NoteChild(out->all, target, node);
    return node;
  }
  LooseStatement guard(node);
  xmlNode* wrapping = MakeImpliedCase(out, node);
  AppendChild(wrapping, guard.release());
  AppendChild(target, wrapping);
  NoteChild(out->all, target, wrapping);
  return wrapping;
}

xmlNode* SchemaChild(Output* out, xmlNode* parent, std::string_view name) {
  xmlNode* found = FindSchemaChild(out->all, parent, name);
  if (found != nullptr) return found;
  if (!IsOperation(KeywordOf(parent)) || (name != "input" && name != "output")) return nullptr;
  xmlNode* made = MakeStatement(out->all->session, parent, FindKeyword(name), std::string_view());
  AppendChild(parent, made);
  NoteChild(out->all, parent, made);
  return made;
}

xmlNode* FindBelow(Output* out, BroughtNodes* roots, const xmlNode* identifier) {
  const char* text = ArgumentOf(identifier);
  NodePath path;
  XpathError error;
  if (text == nullptr || !ParseSchemaNodeId(text, false, &path, &error) || path.steps.empty())
    return nullptr;
  xmlNode* root = FindRoot(roots, path.Of(path.steps[0].name));
  return root == nullptr ? nullptr : Walk(out, root, path, 1);
}

void InheritWhen(Output* out, const xmlNode* when, xmlNode* node, const Place* usedAt) {
  if (!TakesWhen(KeywordOf(node))) {
    LoseHere(out, when,
             std::string("the condition does not reach ") + NameOf(node) + " \"" +
                 (ArgumentOf(node) == nullptr ? "" : ArgumentOf(node)) + "\", which takes none",
             usedAt);
    return;
  }
  StatementOf(PutFirst(out, when, node, usedAt))->handedDown = true;
}

std::vector<const xmlNode*> Inherited(const xmlNode* from) {
  std::vector<const xmlNode*> statements;
  for (const xmlNode* s = FirstChild(from); s != nullptr; s = NextSibling(s)) {
    if (Is(s, Keyword::kWhen) || Is(s, Keyword::kIfFeature) || Is(s, Keyword::kStatus))
      statements.push_back(s);
  }
  return statements;
}

void Inherit(Output* out, const std::vector<const xmlNode*>& from, xmlNode* node,
             const Place* usedAt) {
  if (!IsSchemaNode(KeywordOf(node))) return;
  // The last is put in front first, so that they keep their order.
  for (auto s = from.rbegin(); s != from.rend(); ++s) {
    if (Is(*s, Keyword::kWhen)) InheritWhen(out, *s, node, usedAt);
    if (Is(*s, Keyword::kIfFeature)) PutFirst(out, *s, node, usedAt);
    if (!Is(*s, Keyword::kStatus)) continue;
    InheritStatus(out, *s, node, usedAt);
    if (StatementOf(node)->isImplied) InheritStatus(out, *s, ImpliedBy(node), usedAt);
  }
}

}  // namespace compiler
