// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Models of a few lines, compiled in a folder of their own.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "compiler/job.h"

namespace compiler {

class Compiling : public testing::Test {
 protected:
  Compiling();
  ~Compiling() override;

  // Writes a file; `name` may have folders.
  void Write(const std::string& name, const std::string& text) const;
  // Writes NAME.yang with a module of that name, prefix and namespace "urn:NAME".
  void Module(const std::string& name, const std::string& body) const;
  // The same of version 1.1.
  void Module11(const std::string& name, const std::string& body) const;

  // Compiles operands of the folder, with what they import.
  JobResult Run(const std::vector<std::string>& operands, CompileOptions options = {}) const;
  // Compiles the module, which must load no finding, and gives its body.
  std::string Body(const std::string& name) const;
  // The findings of compiling the module, a line for each, without the folder.
  std::string Findings(const std::string& name, CompileOptions options = {}) const;

  std::string Path(const std::string& name) const { return folder_ + "/" + name; }
  const std::string& folder() const { return folder_; }

 private:
  std::string folder_;
};

// A module's YIN as short text: "container c { leaf a { type string; } }", without the
// header.
std::string BodyOf(const JobResult& result, const std::string& name);
// Its imports: "prefix=module prefix=module".
std::string ImportsOf(const JobResult& result, const std::string& name);

}  // namespace compiler
