// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <string>
#include <vector>

#include "context/records.h"
#include "tests/support/temp_folder.h"
#include "tests/support/yin_text.h"

// YIN texts, folders of YIN files, and what a load recorded about them.
namespace yin {

using yin_text::Submodule;

// A module of version 1.1. `attributes` go into the root's start tag.
inline std::string Module(const std::string& name, const std::string& body,
                          const std::string& attributes = "") {
  return yin_text::Module(name, body, yin_text::kVersion11, attributes);
}

// Parses one element as module "m" (prefix "m", import "other" as "o") would, by an entry
// of the table of statements.
using ParseFunc = uint32_t (*)(QmsModule*, xmlNode*, uint32_t, void*);
uint32_t ParseElement(QmCtx* ctx, ParseFunc parse, const std::string& element, uint32_t parentStmt,
                      void* dest);

// A document that the test frees with xmlFreeDoc().
xmlDoc* Xml(const std::string& text);

using temp_folder::Folder;

// A context that is deleted at the end.
class Context {
 public:
  explicit Context(uint32_t loadFlags = 0);
  ~Context();
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;

  QmCtx* Get() const { return ctx_; }
  operator QmCtx*() const { return ctx_; }

  // The recorded messages of all modules, each as "<module> <file>: <message>",
  // with "-" for the file when none was being read.
  std::vector<std::string> Errors() const;

 private:
  QmCtx* ctx_;
};

// A module that was parsed from text and is not registered. `Get()` is NULL when
// the text was refused.
class Parsed {
 public:
  Parsed(QmCtx* ctx, const std::string& text);
  ~Parsed();
  Parsed(const Parsed&) = delete;
  Parsed& operator=(const Parsed&) = delete;

  QmsModule* Get() const { return module_; }
  explicit operator bool() const { return module_ != nullptr; }

 private:
  QmsModule* module_;
};

// The node at a path of names, "c/d/x", below the data nodes of the module, or
// below its other lists when the first name stands there. NULL when none.
QmsNode* Find(const QmsModule* module, const std::string& path);

}  // namespace yin
