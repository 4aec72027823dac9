// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// What all of the compiler works on.
//
// A model file, YANG text or YIN alike, becomes one libxml2 tree in the YIN form
// of RFC 7950, section 13, each statement an element. What libxml2's element cannot
// hold stands in a record of ours that the element's `_private` points to: which
// statement it is, where it was written, and in whose words its argument is to be
// read. A copy that `uses` brings into another place keeps the record of the
// original's place and says by `usedAt` what brought it there.
//
// The elements of arguments (`text`, `value`) have no record, and so are no statements.
// The `ns` of an element tells its namespace and belongs to the session; the prefix to
// write is the one that the root of its tree declares for it (`nsDef`), so statements
// move between trees as they are.
//
// Everything lives in a Session and goes with it: trees share one dictionary, the
// records lie in its arena. Refused memory is thrown by the standard library and by
// Need(), and caught once, at the compiler's entries; nothing else is thrown.
#include <libxml/tree.h>  // before dict.h, which does not declare what it needs

#include <libxml/dict.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "compiler/reading/xml_silence.h"
#include "compiler/words/keyword.h"

namespace compiler {

// A file that was read, by the path that messages name.
struct SourceFile {
  std::string path;
  bool isText = false;    // YANG text, else YIN
  std::string content{};  // as it was read, when the session keeps it
};

// Where a statement was written. Lines and columns count from 1; 32 bits, since
// libxml2 keeps 16 for the line and none for the column.
struct Place {
  const SourceFile* file = nullptr;
  uint32_t line = 0;
  uint32_t column = 0;
};

struct Module;

// What stands behind the `_private` of each element.
struct Statement {
  Place place;
  const Place* usedAt = nullptr;     // the statement that brought this copy here; NULL: none
  Module* words = nullptr;           // the file (module or submodule) whose prefixes and
                                     // unprefixed names the argument is written in
  Keyword keyword = Keyword::kNone;  // kNone: an extension instance, or not known
  const xmlNode* origin = nullptr;   // of a copy: the statement of the file; NULL: this is it
  bool handedDown = false;           // a `when` that a uses or augment gave to its nodes
  bool isImplied = false;            // a `case` that a node of a choice stands for
  bool argumentIsElement = false;    // in YIN; of an extension as its definition says
};

// A statement with a prefix: an instance of an extension. What the prefix means and
// what the argument is called is known only when the imports are (BindPrefixes()).
struct ExtensionInstance {
  xmlNode* element = nullptr;
  const char* prefix = nullptr;  // of the dictionary
};

// One import of a file, as it stands there.
struct Import {
  std::string prefix;
  std::string module;
  std::string revision;  // empty: any
  xmlNode* statement = nullptr;
  Module* target = nullptr;  // NULL until it is found
};

// One include of a file.
struct Include {
  std::string submodule;
  std::string revision;  // empty: any
  xmlNode* statement = nullptr;
  Module* target = nullptr;  // NULL until it is found
};

struct FreeDocument {
  void operator()(xmlDoc* doc) const noexcept { xmlFreeDoc(doc); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;

// What has a name of its own in a module.
enum class SymbolKind : uint8_t { kGrouping, kTypedef, kIdentity, kFeature, kExtension };
inline constexpr size_t kSymbolKindCount = 5;

// The definitions that one statement holds, in order, and by their names.
struct InnerSymbols {
  std::vector<xmlNode*> all;
  std::unordered_map<std::string_view, std::vector<xmlNode*>> named;
};

// The definitions of a module, its submodules among them. The names are those of the
// trees.
struct SymbolTable {
  bool filled = false;
  bool lossy = false;                                                      // some may be missing
  std::unordered_map<std::string_view, xmlNode*> named[kSymbolKindCount];  // at its level
  // The groupings and typedefs further in, by the statement that they stand in.
  std::unordered_map<const xmlNode*, InnerSymbols> inner;
};

// A module or submodule: one file that was read.
struct Module {
  const SourceFile* file = nullptr;
  Document document;
  xmlNode* root = nullptr;  // the statement `module` or `submodule`
  std::string name;
  std::string prefix;       // its own; of a submodule that of belongs-to
  std::string nameSpace;    // of a submodule that of its module once it is known
  std::string revision;     // the newest by its own statements; empty: none
  std::string belongsTo;    // empty: a module
  bool version11 = false;   // yang-version 1.1
  bool broken = false;      // its text has errors; the tree holds what could be read
  bool lossy = false;       // ... which is less than what stands there
  Module* owner = nullptr;  // of a submodule: its module, NULL until that is found
  std::vector<Import> imports;
  // Of each prefix the first import, once the header was read.
  std::unordered_map<std::string_view, const Import*> importOfPrefix;
  std::vector<Include> includes;
  SymbolTable symbols;                        // of a module, filled by FindGlobal()
  std::vector<ExtensionInstance> extensions;  // in order of the file; none once bound
  // The names of enums and bits of types that have many, by the first of them.
  std::unordered_map<const xmlNode*, std::unordered_set<std::string_view>> items;
};

struct FreeDictionary {
  void operator()(xmlDict* dict) const noexcept { xmlDictFree(dict); }
};

// Everything that one call of the compiler holds; made by OpenSession(). Addresses
// of its elements stay for its life. The order matters: trees go before the records
// and the dictionary that they point to.
struct Session {
  XmlSilence silence;
  std::unique_ptr<xmlDict, FreeDictionary> dictionary;
  const xmlChar* names[kKeywordCount] = {};              // of the statements, in the dictionary
  const xmlChar* arguments[kKeywordCount] = {};          // of their arguments in YIN, likewise
  std::unordered_map<const xmlChar*, xmlNs> namespaces;  // by name, for `ns` of elements
  xmlNs* yin = nullptr;                                  // that of YIN, one of these
  bool keepContents = false;                             // of the files
  std::deque<SourceFile> files;
  std::deque<Statement> statements;
  std::deque<Place> places;
  std::deque<Module> modules;
};

// What libxml2 has made, or the exception of refused memory.
template <typename T>
T* Need(T* made) {
  if (made == nullptr) throw std::bad_alloc();
  return made;
}

inline Statement* StatementOf(const xmlNode* element) noexcept {
  return static_cast<Statement*>(element->_private);
}

}  // namespace compiler
