// SPDX-License-Identifier: BSD-3-Clause
// Identities that literals of conditions name.
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

using Literals = Compiling;

TEST_F(Literals, ThatNameIdentitiesGetAPrefix) {
  Module11("m",
           "identity base; identity i { base base; }\n"
           "container c { leaf t { type identityref { base base; } } leaf s { type string; }\n"
           "  leaf a { when \"../t = 'i'\"; type string; }\n"
           "  leaf b { when \"../s = 'i'\"; type string; }\n"
           "  leaf d { when \"derived-from-or-self(../t, 'i')\"; type string; } }");
  const std::string body = Body("m");
  EXPECT_NE(std::string::npos, body.find("leaf a { when ../t = 'm:i';")) << body;
  EXPECT_NE(std::string::npos, body.find("leaf b { when ../s = 'i';")) << body;
  EXPECT_NE(std::string::npos, body.find("leaf d { when derived-from-or-self(../t, 'm:i');"))
      << body;
}

TEST_F(Literals, ThatNameIdentitiesOnlyInAnotherRevisionAreReported) {
  Write("n@2020-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2020-01-01; identity a;\n"
        "  identity gone { base a; } identity kept { base a; } }");
  Write("n@2021-01-01.yang",
        "module n { namespace urn:n; prefix n; revision 2021-01-01; identity a;\n"
        "  identity kept { base a; } }");
  Module11("m",
           "import n { prefix n; revision-date 2020-01-01; }\n"
           "leaf t { type identityref { base n:a; } }\n"
           "leaf l { when \"../t = 'n:gone'\"; type string; }\n"
           "leaf k { when \"derived-from-or-self(../t, 'n:gone')\"; type string; }\n"
           "leaf i { when \"../t = 'n:kept'\"; type string; }");
  Write("o.yang", "module o { namespace urn:o; prefix o; import n { prefix n; } }");
  const JobResult result = Run({"m", "o"});
  EXPECT_EQ(JobState::kLost, result.state);
  EXPECT_EQ(2u, result.findings.size());
}

TEST_F(Literals, OfConditionsInOddPlacesDoNoHarm) {
  Module("m",
         "must \"a = 'b'\"; container c { leaf a { when \"../b = 'x'\"; type string; } }\n"
         "augment /m:c { must \"a\"; leaf b { type string; } }");
  EXPECT_EQ(1u, Run({"m"}).modules.size());
}

}  // namespace
}  // namespace compiler
