// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The head of the written module and its prefixes: each module that it speaks of has
// one, that of its import. Imports are added where contents of other files need them,
// under prefixes that clash with none.
#include <optional>
#include <string>
#include <string_view>

#include "compiler/spelling/compile.h"

namespace compiler {

// Starts the tree: the root, the header, the imports of the module and its submodules.
void WriteHeader(Output* out);

// The prefix under which the module is written, its own too; imports it when it is not
// yet. `preferred` is taken when it is free (empty: the module's own).
const std::string& PrefixOf(Output* out, Module* module, std::string_view preferred = {});

// Makes the module's name its prefix, importing it when it is not yet; whoever has that
// prefix gets another. Only before arguments are put in the words of the written module.
// False: no prefix can be like that.
bool TakeNameAsPrefix(Output* out, Module* module);

// The module of a prefix of what is written; NULL: there is none.
Module* ModuleOfWritten(const Output& out, std::string_view prefix);

// How long a condition of the written module is once the library has put the names of
// modules for the prefixes in its literals.
size_t LengthInLibrary(const Output& out, std::string_view condition);

// "name" for what belongs to the written module, else "prefix:name".
std::string Qualify(Output* out, Module* module, std::string_view name);

// What to write for a prefix of `file`, as the rules for conditions want it. nullopt:
// `file` does not know it.
std::optional<std::string> TranslatePrefix(Output* out, Module* file, std::string_view prefix);

}  // namespace compiler
