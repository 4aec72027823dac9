// SPDX-License-Identifier: BSD-3-Clause
// Lint with each allocation refused in turn. No pattern is among the models: libxml2
// does not survive a refusal while it compiles one.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "compiler/lint_job.h"
#include "tests/compiler/refusal/refused_memory.h"

namespace compiler {
namespace {

// Changes to a condition are sorted by std::stable_sort(), which does without its buffer.
constexpr uint64_t kUnnoticed = 1;

class LintRefusal : public testing::TestWithParam<bool> {
 protected:
  LintRefusal() {
    path_ = testing::TempDir() + "qmodel-test-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(path_.data()));
    Write("right.yang",
          "module right { yang-version 1.1; namespace urn:right; prefix r;\n"
          "  import base { prefix b; }\n"
          "  feature f { if-feature b:f; }\n"
          "  grouping a-grouping-of-some-name { leaf k { type b:t; default 3; }\n"
          "    list l { key id; unique v; leaf id { type string; } leaf v { type int8; } } }\n"
          "  container c { if-feature 'f and not b:f';\n"
          "    uses a-grouping-of-some-name { refine k { default 4; } augment l { leaf w {\n"
          "      type leafref { path '../../k'; } must '. > ../id'; } } } }\n"
          "  augment /b:top { leaf more { type identityref { base b:i; } default b:j;\n"
          "    when \"../b:name = 'a'\"; } } }\n");
    Write("base.yang",
          "module base { yang-version 1.1; namespace urn:base; prefix b;\n"
          "  feature f; identity i; identity j { base i; }\n"
          "  typedef t { type int32 { range '1..10 | 20'; } }\n"
          "  container top { leaf name { type enumeration { enum a; enum b { value 7; } } } } }\n");
    Write("wrong.yang",
          "module wrong { yang-version 1.1; namespace urn:wrong; prefix w; import base { prefix b; "
          "}\n"
          "  identity x { base y; } feature f { if-feature f; } leaff z;\n"
          "  grouping g { uses g; list l { key of-another-name; leaf k { type strng; } } }\n"
          "  container c { uses g { refine none { default x; } } leaf d { type int8; default 300; "
          "} }\n"
          "  leaf e { type leafref { path ../nowhere; } must 'count(' ; when ../d; }\n"
          "  augment /b:top/b:nme { leaf n { type string; } }\n"
          "  deviation /b:top/b:name { deviate delete { default x; } } }\n");
  }
  ~LintRefusal() override { std::filesystem::remove_all(path_); }

  void Write(const std::string& file, const std::string& text) const {
    std::ofstream(path_ + "/" + file) << text;
  }

  LintRequest RequestFor(const std::string& module, bool json) const {
    LintRequest request;
    request.folders = {path_};
    request.operands = {module};
    request.json = json;
    return request;
  }

  // Runs that did not miss what was refused.
  uint64_t Refuse(const std::string& module, bool json) const {
    const LintRequest request = RequestFor(module, json);
    return RefuseEach(
        [&] {
          LintResult result;
          {
            const Watch watch;
            result = RunLintJob(request);
          }
          RunOutcome outcome;
          outcome.refused = result.state == LintState::kNoMemory;
          outcome.result = result.output;
          for (const std::string& trouble : result.troubles) outcome.result += trouble;
          return outcome;
        },
        GetParam());
  }

 private:
  std::string path_;
};

INSTANTIATE_TEST_SUITE_P(OnceAndForGood, LintRefusal, testing::Bool());

TEST_P(LintRefusal, OfAModelWithoutFaultIsSaid) {
  EXPECT_EQ(RunLintJob(RequestFor("right", false)).state, LintState::kClean);
  EXPECT_EQ(Refuse("right", false), GetParam() ? 0 : kUnnoticed);
}

TEST_P(LintRefusal, OfAModelWithFaultsIsSaid) {
  const std::string output = RunLintJob(RequestFor("wrong", false)).output;
  EXPECT_GT(std::count(output.begin(), output.end(), '\n'), 10) << output;
  EXPECT_EQ(Refuse("wrong", true), 0U);
}

}  // namespace
}  // namespace compiler
