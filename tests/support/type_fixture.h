// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "context/records.h"
#include "schema/records.h"
#include "types/records.h"

// A module under construction whose type and typedef statements are parsed from
// YIN elements written in the test.
namespace type_fixture {

// A context with the module "m" (prefix "p"), which imports "other" as "o".
class Module {
 public:
  explicit Module(uint32_t loadFlags = 0);
  ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  QmsModule* Get() { return &module_; }
  QmCtx* Context() { return ctx_; }
  QmDict* Dict() { return &ctx_->dict; }
  // The messages recorded for the module, in order.
  std::vector<std::string> Messages();

 private:
  QmCtx* ctx_;
  QmsImport imports_[1];
  QmsModule module_{};
};

// A type record that its module's dictionary owns the texts of.
class Type {
 public:
  explicit Type(Module* module) : module_(module) {}
  ~Type();
  Type(const Type&) = delete;
  Type& operator=(const Type&) = delete;

  // Parses the element in `xml` into the record.
  uint32_t Parse(const std::string& xml);
  QmtType* Get() { return &type_; }
  // The whole record in one line: "string length{1..5} pattern{a+,!b}".
  std::string Dump() const;

 private:
  Module* module_;
  QmtType type_{};
};

// Parses one type element into a record of its own: its dump, or the status by its name.
std::string ParseAndDump(const std::string& xml, uint32_t loadFlags = 0);

std::string DumpType(const QmtType* type);

}  // namespace type_fixture
