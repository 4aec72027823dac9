// SPDX-License-Identifier: BSD-3-Clause
// What the commands of the model compiler, and -c, do when memory is refused: they say so, and
// leave no block, no part of a file, no folder behind.
#include <gtest/gtest.h>

#include "tests/client/refusal/client_call.h"

namespace {

class CompilerRefusal : public testing::TestWithParam<bool> {
 protected:
  CompilerRefusal() {
    folder_.Write("models", "m.yang",
                  "module m { namespace urn:m; prefix m; import n { prefix n; }\n"
                  "  container c { uses n:g; leaf b { if-feature f; type n:t; must '../a'; } }\n"
                  "  feature f; leaf w { type int8 { range 5..1; } } }\n");
    folder_.Write("models", "n.yang",
                  "module n { namespace urn:n; prefix n; typedef t { type int8 { range 1..5; } }\n"
                  "  grouping g { leaf a { type t; } } }\n");
  }

  void Refuse(const std::vector<std::string>& words, Between between) const {
    RefuseCall(folder_, words, between, GetParam());
  }

  std::string Models() const { return folder_.In("models"); }

  ClientFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(OnceAndForGood, CompilerRefusal, testing::Bool());

TEST_P(CompilerRefusal, OfCompileLeavesWholeFilesAlone) {
  Refuse({"compile", "-i", "-p", Models(), "-o", folder_.In("output", "in"), "m"},
         Between::kEmptyOutput);
}

TEST_P(CompilerRefusal, OfAllOptionsOfCompileIsSaid) {
  Refuse({"compile", "-r", "-F", "-f", "m:f", "--drop-failing", "-p", Models(), "m"},
         Between::kNothing);
}

TEST_P(CompilerRefusal, OfConvertIsSaid) {
  Refuse({"compile", "--convert", "-p", Models(), Models() + "/m.yang"}, Between::kNothing);
}

TEST_P(CompilerRefusal, OfLintIsSaid) {
  Refuse({"lint", "-p", Models(), "m"}, Between::kNothing);
}

TEST_P(CompilerRefusal, OfAllOptionsOfLintIsSaid) {
  Refuse({"lint", "-r", "-W", "style", "-W", "no-unused", "--json", "-p", Models(), "m", "n"},
         Between::kNothing);
}

TEST_P(CompilerRefusal, OfAFirstLoadLeavesWholeEntriesAlone) {
  Refuse({"load", "-c", "-p", Models(), "-i", "n"}, Between::kEmptyAll);
}

TEST_P(CompilerRefusal, OfALoadOfWhatIsKeptIsSaid) {
  Call({"load", "-c", "-p", Models(), "-i", "n"});
  Refuse({"load", "-c", "-p", Models(), "-i", "n"}, Between::kNothing);
}

}  // namespace
