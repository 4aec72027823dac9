// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Names and what they stand for: prefixes, and the definitions of groupings, typedefs,
// identities, features and extensions, at the level of a module (its submodules
// belong to it) and in the statements around a use (RFC 7950, sections 5.5 and 6.2.1).
//
// All of this works on trees as they were read; a copy is looked up by its `origin`.
#include <cstdint>
#include <string_view>

#include "compiler/reading/records.h"

namespace compiler {

// "p:name", taken apart; both view the text.
struct Reference {
  std::string_view prefix;  // empty: none
  std::string_view name;
};
Reference SplitReference(std::string_view text) noexcept;

// The module that a file belongs to: itself, or of a submodule its owner (NULL: not found).
Module* MainModuleOf(Module* file) noexcept;

// The module that `prefix` means in `file`; empty: its own. NULL: no such prefix, or the
// imported module was not found.
Module* ModuleOfPrefix(Module* file, std::string_view prefix) noexcept;
// The same of a namespace, by which an instance of an extension in YIN tells its module.
Module* ModuleOfNamespace(Module* file, std::string_view uri) noexcept;

// True when `file` has an import with this prefix, found or not, or it is its own.
bool KnowsPrefix(const Module* file, std::string_view prefix) noexcept;

// The definition of that name at the level of `module`, in its file or one of its
// submodules; NULL: there is none.
xmlNode* FindGlobal(Module* module, SymbolKind kind, std::string_view name);

// The definition that `reference` means at the statement `at`: the statements around it
// come first (groupings and typedefs), then the module's level. NULL:
// there is none.
xmlNode* FindSymbol(const xmlNode* at, SymbolKind kind, std::string_view reference);

// True when definitions of the module may be missing here, since a file of it could not be
// read to the last word, or an include was not found.
bool IsLossy(Module* module);

// True when the statement stands directly in a module or submodule.
bool IsGlobal(const xmlNode* definition) noexcept;

// The statement of the file that this one is, or is a copy of.
const xmlNode* OriginOf(const xmlNode* statement) noexcept;

// Calls `visit` for the file of `module` and each submodule that it has, once each, in
// the order in which their contents stand: an include's file before what follows it.
void ForEachFile(Module* module, void (*visit)(Module* file, void* arg), void* arg);

}  // namespace compiler
