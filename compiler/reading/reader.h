// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// From a model file to its tree: the same for YANG text and for YIN.
//
// It goes in two steps, so that imports need no recursion. Reading looks at no other
// file: it leaves `target` of imports and includes, and the module of a submodule,
// empty, and the instances of extensions without namespace. When the caller has found
// these, BindPrefixes() completes the tree.
//
// What is wrong with the text is reported as it is found (class "syntax") and the
// reader goes on where it can; a module with such errors is `broken`. An argument that
// is missing, or too much, is such an error; of a statement that YANG does not know
// nothing is said here: it stays in the tree, in the YIN namespace, as Keyword::kNone.
#include <string>

#include "compiler/reading/records.h"
#include "compiler/reading/report.h"

namespace compiler {

// Statements may stand one in the other to this depth; more is an error.
inline constexpr unsigned kMaxDepth = 1000;

// The class of the reader's findings.
inline constexpr char kSyntaxClass[] = "syntax";

// That of BindPrefixes().
inline constexpr char kExtensionClass[] = "extension";

// True when a statement without its argument is a definition, or an import, that is lost.
inline bool LosesName(Keyword keyword) noexcept {
  const std::string_view argument = RowOf(keyword).argument;
  return argument == "name" || argument == "module";
}

// What a person names may be a pipe; what is found in a folder may not.
enum class FileOrigin : uint8_t { kNamed, kFound };

// Reads the file by its ending: `.yin` is YIN, all else YANG text. NULL, with a finding:
// it cannot be read (that finding has line 0), or is not a module or submodule.
Module* ReadModuleFile(Session* session, const std::string& path, FileOrigin origin,
                       Report* report);

// Read from memory; `path` is what findings name.
Module* ReadModuleText(Session* session, const std::string& path, const std::string& text,
                       Report* report);
Module* ReadModuleYin(Session* session, const std::string& path, const std::string& text,
                      Report* report);

// Declares the namespaces of the imports on the root, and gives each instance of an
// extension its namespace and its argument the name and form that the extension's
// definition says. An import without target is passed over; an instance whose prefix
// or extension is not known is reported as an error, and leaves the tree, since it
// cannot be written.
void BindPrefixes(Session* session, Module* module, Report* report);

}  // namespace compiler
