// SPDX-License-Identifier: BSD-3-Clause
// Models drawn from seeds, with their features decided in several ways: of a model without
// errors lint has none to say of what is written either, the library loads it without one,
// and compiling it again changes nothing.
#include "tests/compiler/loading/featured_models.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "compiler/lint_job.h"
#include "tests/compiler/loading/loading_helper.h"

namespace compiler {
namespace {

constexpr uint64_t kSeeds = 150;

class FeaturedModels : public Loading {
 protected:
  std::string ErrorsOfLint(const std::string& folder) const {
    LintRequest request;
    request.folders = {folder};
    request.operands = {"a", "b", "c"};
    const std::string output = RunLintJob(request).output;
    std::string errors;
    for (size_t at = 0; at < output.size();) {
      const size_t end = output.find('\n', at);
      const std::string line = output.substr(at, end - at);
      if (line.find(": error: ") != std::string::npos) errors += line + "\n";
      at = end + 1;
    }
    return errors;
  }

  static JobResult Compile(const std::string& folder, const CompileOptions& options) {
    JobRequest request;
    request.folders = {folder};
    request.operands = {"c"};
    request.withImports = true;
    request.options = options;
    return RunJob(request);
  }

  std::string LoadErrors(const std::string& folder) {
    QM_CTX_Delete(ctx_);
    ctx_ = QM_CTX_Create(QM_LOAD_IMPORTS | QM_LOAD_UNITS);
    EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx_, folder.c_str()));
    for (const char* name : {"c", "b", "a"}) EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx_, name));
    return Errors();
  }

  void ExpectSound(const std::string& folder, const CompileOptions& options) {
    const JobResult result = Compile(folder, options);
    EXPECT_NE(JobState::kStopped, result.state);
    ASSERT_EQ(3U, result.modules.size());
    const std::string written = Path("written");
    std::filesystem::create_directory(written);
    for (const JobModule& module : result.modules)
      std::ofstream(written + "/" + module.name + ".yin") << module.yin;
    EXPECT_EQ("", ErrorsOfLint(written));
    EXPECT_EQ("", LoadErrors(written));
    const JobResult again = Compile(written, {});
    ASSERT_EQ(3U, again.modules.size());
    for (size_t i = 0; i < 3; ++i) EXPECT_EQ(result.modules[i].yin, again.modules[i].yin);
  }
};

TEST_F(FeaturedModels, AreSoundWhateverFeaturesAreOff) {
  unsigned looked = 0;
  for (uint64_t seed = 0; seed < kSeeds; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    for (const auto& [name, text] : featured_models::Draw(seed))
      Write("read/" + name + ".yang", text);
    if (!ErrorsOfLint(Path("read")).empty()) continue;
    ++looked;
    CompileOptions none;
    none.featuresComplete = true;
    CompileOptions some;
    for (const std::string& feature : featured_models::DrawFeatures(seed))
      some.features.push_back({"a", feature});
    CompileOptions others = some;
    others.featuresComplete = true;
    for (const CompileOptions& options : {none, some, others}) ExpectSound(Path("read"), options);
    if (HasFailure()) return;
  }
  EXPECT_LE(kSeeds / 3, looked);
}

}  // namespace
}  // namespace compiler
