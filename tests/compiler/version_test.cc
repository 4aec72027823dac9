// SPDX-License-Identifier: BSD-3-Clause
// The YANG version of what is written.
#include "tests/compiler/compile_helper.h"

namespace compiler {
namespace {

class Versions : public Compiling {
 protected:
  static std::string VersionOf(const JobResult& result, const std::string& name) {
    const std::string open = "<yang-version value=\"";
    for (const JobModule& module : result.modules) {
      const size_t at = module.yin.find(open);
      if (module.name != name || at == std::string::npos) continue;
      const size_t begin = at + open.size();
      return module.yin.substr(begin, module.yin.find('"', begin) - begin);
    }
    return "";
  }

  // Compiles what was written once more, with the errors of lint.
  void ExpectNothingIsFoundIn(const JobResult& result) const {
    for (const JobModule& module : result.modules)
      Write("again/" + module.name + ".yin", module.yin);
    JobRequest request;
    request.folders = {Path("again")};
    for (const JobModule& module : result.modules) request.operands.push_back(module.name);
    for (const std::string& finding : RunJob(request).findings) ADD_FAILURE() << finding;
  }
};

TEST_F(Versions, AreNewerWhereAnIdentityHasSeveralBases) {
  Module("m", "identity a; identity b { base a; } identity c { base b; }");
  Module("n", "identity a; identity b { base a; }");
  const JobResult result = Run({"m", "n"});
  EXPECT_EQ("1.1", VersionOf(result, "m"));
  EXPECT_EQ("", VersionOf(result, "n"));
  ExpectNothingIsFoundIn(result);
}

TEST_F(Versions, AreNewerWhereAGroupingOfANewerModuleIsUsed) {
  Module11("g", "grouping g { anydata any; leaf-list l { type string; default x; } }");
  Write("m.yang",
        "module m { yang-version 1; namespace urn:m; prefix m;\n"
        "  import g { prefix g; } container c { uses g:g; } }");
  const JobResult result = Run({"m"});
  EXPECT_EQ("1.1", VersionOf(result, "m"));
  ExpectNothingIsFoundIn(result);
}

TEST_F(Versions, AreNewerWhereANewerOneIsImportedByRevision) {
  Write("n.yang",
        "module n { namespace urn:n; prefix n; revision 2020-01-01;\n"
        "  identity a; identity b { base a; } identity c { base b; } }");
  Write("k.yang",
        "module k { namespace urn:k; prefix k;\n"
        "  import n { prefix n; revision-date 2020-01-01; }\n"
        "  revision 2020-02-02; leaf a { type identityref { base n:a; } } }");
  Module("m",
         "import k { prefix k; revision-date 2020-02-02; } import n { prefix n; }\n"
         "leaf b { type identityref { base n:a; } }");
  Module("o", "import n { prefix n; } leaf b { type identityref { base n:a; } }");
  const JobResult result = Run({"m", "o"});
  EXPECT_EQ("1.1", VersionOf(result, "n"));
  EXPECT_EQ("1.1", VersionOf(result, "k"));
  EXPECT_EQ("1.1", VersionOf(result, "m"));
  EXPECT_EQ("", VersionOf(result, "o"));
}

}  // namespace
}  // namespace compiler
