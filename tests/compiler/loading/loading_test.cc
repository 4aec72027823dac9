// SPDX-License-Identifier: BSD-3-Clause
// What is written for models of a few lines, loaded by the library.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <qmodel/qmodel.h>

#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

uint32_t AddLoadError(const char* module, const char*, const char* message, void* arg) {
  *static_cast<std::string*>(arg) += std::string(module) + ": " + message + "\n";
  return 0;
}

uint32_t AddText(const char* text, uint32_t length, void* arg) {
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
    ctx_ = QM_CTX_Create(QM_LOAD_IMPORTS);
    ASSERT_EQ(0u, QM_CTX_SetSearchDir(ctx_, folder.c_str()));
    for (const std::string& name : names)
      EXPECT_EQ(0u, QM_CTX_LoadModule(ctx_, name.c_str())) << name;
  }

  std::string Errors() const {
    std::string errors;
    EXPECT_EQ(0u, QM_CTX_ScanAllSchemaLoadFail(ctx_, AddLoadError, &errors));
    return errors;
  }

  std::string Tree(const char* name) const {
    std::string text;
    EXPECT_EQ(0u, QM_MOD_PrintModelTree(QM_CTX_GetModuleByModName(ctx_, name), AddText, &text));
    return text;
  }

  bool Has(const char* path) const { return QM_CTX_GetTargetNode(ctx_, path, nullptr) != nullptr; }

  QmCtx* ctx_ = nullptr;
};

TEST_F(Loading, AugmentsOfAnInputThatIsNotWrittenAreCoupledInAnyOrder) {
  Module11("n", "rpc r; container c { action act; }");
  Module11("m",
           "import n { prefix n; }\n"
           "augment /n:c/n:act/n:input/m:b { leaf z { type string; } }\n"
           "augment /n:c/n:act/n:input { container b; }\n"
           "augment /n:r/n:output { leaf a { type string; } }");
  Module("k",
         "import n { prefix n; } import m { prefix m; }\n"
         "augment /n:r/n:output { leaf a2 { type string; } }\n"
         "augment /n:c/n:act/n:input/m:b { leaf y { type string; } }");
  Load({"k", "m", "n"});
  EXPECT_EQ("", Errors());
  for (const char* path :
       {"/n:r/output/m:a", "/n:r/output/k:a2", "/n:c/act/input/m:b/z", "/n:c/act/input/m:b/k:y"})
    EXPECT_TRUE(Has(path)) << path;
}

}  // namespace
}  // namespace compiler
