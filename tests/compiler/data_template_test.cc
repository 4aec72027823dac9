// SPDX-License-Identifier: BSD-3-Clause
// Data that extensions define (RFC 8791).
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

class Structures : public Compiling {
 protected:
  Structures() {
    Write("ietf-yang-structure-ext.yang",
          "module ietf-yang-structure-ext { yang-version 1.1;\n"
          "  namespace urn:ietf:params:xml:ns:yang:ietf-yang-structure-ext; prefix sx;\n"
          "  extension structure { argument name; }\n"
          "  extension augment-structure { argument path; } }");
    Module11("n",
             "import ietf-yang-structure-ext { prefix sx; } sx:structure book { container c; }");
  }
};

// Its prefix is that of the submodule, and means another module in the written one.
TEST_F(Structures, AreAugmentedByPathsWithThePrefixesOfTheWrittenModule) {
  Module11("other", "container c;");
  Module11("m", "import other { prefix k; } include s;");
  Write("s.yang",
        "submodule s { yang-version 1.1; belongs-to m { prefix m; }\n"
        "  import n { prefix k; } import ietf-yang-structure-ext { prefix sx; }\n"
        "  sx:augment-structure /k:book/k:c { leaf z { type string; } } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ(JobState::kDone, result.state);
  EXPECT_EQ("sx:augment-structure /k2:book/k2:c { leaf z { type string; } }", BodyOf(result, "m"));
  EXPECT_EQ("k=other k2=n sx=ietf-yang-structure-ext", ImportsOf(result, "m"));
}

TEST_F(Structures, AreAugmentedByPathsThatStayWhenTheirPrefixIsUnknown) {
  Module11("m",
           "import ietf-yang-structure-ext { prefix sx; }\n"
           "sx:augment-structure /x:book { leaf z { type string; } }");
  EXPECT_EQ("sx:augment-structure /x:book { leaf z { type string; } }", BodyOf(Run({"m"}), "m"));
}

}  // namespace
}  // namespace compiler
