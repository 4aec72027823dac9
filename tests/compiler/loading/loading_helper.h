// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Models of a few lines, compiled and loaded by the library.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <qmodel/qmodel.h>

#include "tests/compiler/compile_helper.h"

namespace compiler {

inline uint32_t AddLoadError(const char* module, const char*, const char* message, void* arg) {
  *static_cast<std::string*>(arg) += std::string(module) + ": " + message + "\n";
  return 0;
}

inline uint32_t AddText(const char* text, uint32_t length, void* arg) {
  static_cast<std::string*>(arg)->append(text, length);
  return 0;
}

class Loading : public Compiling {
 protected:
  ~Loading() override { QM_CTX_Delete(ctx_); }

  // Compiles the modules with what they import, and loads them in this order.
  void Load(const std::vector<std::string>& names, CompileOptions options = {}) {
    const std::string folder = Path("compiled");
    std::filesystem::create_directory(folder);
    for (const JobModule& module : Run(names, std::move(options)).modules)
      std::ofstream(folder + "/" + module.name + ".yin") << module.yin;
    ctx_ = QM_CTX_Create(QM_LOAD_IMPORTS | QM_LOAD_UNITS);
    ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx_, folder.c_str()));
    for (const std::string& name : names)
      EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, name.c_str())) << name;
  }

  std::string Errors() const {
    std::string errors;
    EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, AddLoadError, &errors));
    return errors;
  }

  std::string Tree(const char* name) const {
    std::string text;
    EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(QM_CTX_GetModuleByModName(ctx_, name), AddText, &text));
    return text;
  }

  bool Has(const char* path) const { return QM_CTX_GetTargetNode(ctx_, path, nullptr) != nullptr; }

  QmCtx* ctx_ = nullptr;
};

}  // namespace compiler
