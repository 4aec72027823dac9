// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/spelling/identity_bases.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "compiler/reading/repository.h"
#include "compiler/reading/statement.h"
#include "compiler/reading/symbols.h"
#include "compiler/spelling/prefixes.h"

namespace compiler {

namespace {

// As deep as the library follows bases itself. A chain of many identities stays of a size
// in proportion to its length.
constexpr size_t kMostBases = 128;

struct Identity {
  Module* module;
  const xmlNode* definition;
};

// What a base of an identity that was read names; no definition: it is not found.
Identity BaseOf(const xmlNode* base) {
  const char* text = ArgumentOf(base);
  if (text == nullptr) return {nullptr, nullptr};
  const Reference reference = SplitReference(text);
  Module* module = ModuleOfPrefix(StatementOf(base)->words, reference.prefix);
  if (module == nullptr) return {nullptr, nullptr};
  return {module, FindGlobal(module, SymbolKind::kIdentity, reference.name)};
}

// The identities that one derives from, the nearest first. Circles end where they began.
std::vector<Identity> AllBasesOf(const xmlNode* definition) {
  std::vector<Identity> bases;
  std::set<const xmlNode*> met = {definition};
  const xmlNode* at = definition;
  for (size_t next = 0; at != nullptr;
       at = next < bases.size() ? bases[next++].definition : nullptr) {
    for (const xmlNode* base = FirstChild(at, Keyword::kBase); base != nullptr;
         base = NextSibling(base, Keyword::kBase)) {
      const Identity found = BaseOf(base);
      if (found.definition != nullptr && bases.size() < kMostBases &&
          met.insert(found.definition).second)
        bases.push_back(found);
    }
  }
  return bases;
}

// The identity in the words of the output; empty: the revision that is written lacks it.
std::string WrittenName(Output* out, const Identity& identity) {
  Module* module = WrittenModule(out->all->repository, identity.module->name);
  if (module == nullptr) module = identity.module;
  const char* name = ArgumentOf(identity.definition);
  const bool isThere =
      name != nullptr && FindGlobal(module, SymbolKind::kIdentity, name) != nullptr;
  return isThere ? Qualify(out, module, name) : std::string();
}

void CompleteOne(Output* out, xmlNode* identity) {
  std::set<std::string> written;
  xmlNode* last = nullptr;
  for (xmlNode* base = FirstChild(identity, Keyword::kBase); base != nullptr;
       base = NextSibling(base, Keyword::kBase)) {
    if (ArgumentOf(base) != nullptr) written.insert(ArgumentOf(base));
    last = base;
  }
  if (last == nullptr) return;
  for (const Identity& base : AllBasesOf(OriginOf(identity))) {
    const std::string text = WrittenName(out, base);
    if (text.empty() || !written.insert(text).second) continue;
    xmlNode* made = MakeStatement(out->all->session, last, Keyword::kBase, text);
    InsertAfter(last, made);
    last = made;
  }
}

// The identity again, if its feature took it away.
xmlNode* Restore(Compilation* all, const xmlNode* base) {
  const Identity found = BaseOf(OriginOf(base));
  if (found.definition == nullptr) return nullptr;
  Module* module = WrittenModule(all->repository, found.module->name);
  Output* owner = ExpandedOutput(all, module == nullptr ? found.module : module);
  const auto lost = owner->lostIdentities.find(ArgumentOf(found.definition));
  if (lost == owner->lostIdentities.end()) return nullptr;
  const auto held = std::find_if(owner->removed.begin(), owner->removed.end(),
                                 [&](const auto& one) { return one.get() == lost->second; });
  xmlNode* identity = held->release();
  owner->removed.erase(held);
  owner->lostIdentities.erase(lost);
  while (xmlNode* condition = FirstChild(identity, Keyword::kIfFeature)) RemoveStatement(condition);
  AppendChild(owner->written.root, identity);
  Lose(owner, identity,
       std::string("the identity \"") + ArgumentOf(identity) +
           "\" depends on a feature that is off; it stays, since it is a base of what stays");
  return identity;
}

}  // namespace

std::string NearestWrittenBase(Output* out, const xmlNode* definition) {
  for (const Identity& base : AllBasesOf(definition)) {
    std::string text = WrittenName(out, base);
    if (!text.empty()) return text;
  }
  return {};
}

void RestoreBases(Output* out) {
  const xmlNode* root = out->written.root;
  std::vector<const xmlNode*> bases;
  for (const xmlNode* s = FirstChild(root); s != nullptr; s = NextInTree(root, s)) {
    if (Is(s, Keyword::kBase)) bases.push_back(s);
  }
  while (!bases.empty()) {
    const xmlNode* identity = Restore(out->all, bases.back());
    bases.pop_back();
    const xmlNode* base = identity == nullptr ? nullptr : FirstChild(identity, Keyword::kBase);
    for (; base != nullptr; base = NextSibling(base, Keyword::kBase)) bases.push_back(base);
  }
}

void CompleteBases(Output* out) {
  const xmlNode* root = out->written.root;
  for (xmlNode* identity = FirstChild(root, Keyword::kIdentity); identity != nullptr;
       identity = NextSibling(identity, Keyword::kIdentity)) {
    CompleteOne(out, identity);
  }
}

}  // namespace compiler
