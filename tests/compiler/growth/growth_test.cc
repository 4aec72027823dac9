// SPDX-License-Identifier: BSD-3-Clause
// What compiling costs grows as the model does. The cost is counted, not timed: the
// compiler is built a second time for this program with a call at each basic block.
// Models of one shape, one four times the other, may take five times the blocks, where a
// search among all siblings for each of them takes sixteen.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "compiler/job.h"
#include "compiler/lint_job.h"

static uint64_t g_blocks = 0;

extern "C" void __sanitizer_cov_trace_pc(void);
extern "C" void __sanitizer_cov_trace_pc(void) {
  ++g_blocks;
}

namespace compiler {
namespace {

constexpr int kFew = 1000;
constexpr int kMany = 4 * kFew;
constexpr int kPerFile = 8;  // of the shapes that are made of files, there are fewer

// The files of a model of that size; the last one is compiled.
using Files = std::vector<std::pair<std::string, std::string>>;

struct Shape {
  const char* name;
  Files (*make)(int size);
};

std::string Module(const std::string& name, const std::vector<std::string>& imports,
                   const std::string& body) {
  std::string text = "module " + name + " { yang-version 1.1; namespace \"urn:" + name +
                     "\"; prefix " + name + ";\n";
  for (const std::string& import : imports)
    text += "import " + import + " { prefix " + import + "; }\n";
  return text + body + "}\n";
}

// The pattern once for each number, which stands for each `#`.
std::string Each(int size, const std::string& pattern) {
  std::string text;
  for (int i = 0; i < size; ++i) {
    for (const char c : pattern) {
      if (c == '#') {
        text += std::to_string(i);
      } else {
        text += c;
      }
    }
    text += '\n';
  }
  return text;
}

Files One(const std::string& body) {
  return {{"a", Module("a", {}, body)}};
}

Files Two(const std::string& first, const std::string& second) {
  return {{"a", Module("a", {}, first)}, {"b", Module("b", {"a"}, second)}};
}

std::string Containers(int size) {
  return "container h {" + Each(size, "container c#;") + "}";
}

// Modules that each import the one before.
Files Chain(int size) {
  Files files = {{"m0", Module("m0", {}, "leaf a { type string; }")}};
  for (int i = 1; i < size; ++i) {
    const std::string name = "m" + std::to_string(i);
    files.emplace_back(name, Module(name, {files.back().first}, "leaf a { type string; }"));
  }
  return files;
}

// A module of submodules, which it includes itself or each of them the next.
Files WithSubmodules(int size, bool inAChain) {
  Files files;
  for (int i = 0; i < size; ++i) {
    const std::string number = std::to_string(i);
    const bool includesNext = inAChain && i + 1 < size;
    files.emplace_back("s" + number,
                       "submodule s" + number + " { belongs-to m { prefix m; } " +
                           (includesNext ? "include s" + std::to_string(i + 1) + ";" : "") +
                           " typedef t" + number + " { type string; } leaf l" + number +
                           " { type t" + number + "; } }");
  }
  const std::string includes = inAChain ? "include s0;" : Each(size, "include s#;");
  files.emplace_back("m", "module m { namespace urn:m; prefix m; " + includes + "}");
  return files;
}

// Chains of fifty augments, each in what the next one in the text brings.
Files Reversed(int size) {
  std::string text;
  for (int chain = 0; chain < size / 50; ++chain) {
    std::string path = "/h";
    std::vector<std::string> augments;
    for (int depth = 0; depth < 50; ++depth) {
      const std::string name = "c" + std::to_string(chain) + "-" + std::to_string(depth);
      augments.push_back("augment \"" + path + "\" { container " + name + "; }\n");
      path += "/" + name;
    }
    for (auto augment = augments.rbegin(); augment != augments.rend(); ++augment) text += *augment;
  }
  return One("container h;" + text);
}

// Modules that hang nodes into one node of another, and into what it has there.
Files ManyIntoOne(int size) {
  Files files = {{"a", Module("a", {},
                              "container h { leaf z { type string; } choice c { case d; } }"
                              "rpc r { input { leaf z { type string; } } }")}};
  for (int i = 0; i < size; ++i) {
    const std::string name = "m" + std::to_string(i);
    files.emplace_back(
        name, Module(name, {"a"},
                     "augment /a:h { when a:z; leaf x { type string; must ../a:z; }"
                     " container y { leaf w { type leafref { path ../../a:z; } } } }"
                     "augment /a:h/a:c/a:d { leaf v { type string; must \"ancestor::a:h\"; } }"
                     "augment /a:r/a:input { leaf x { type string; must \"../a:z = 'a'\"; } }"));
  }
  return files;
}

const Shape kShapes[] = {
    {"Leafs", [](int n) { return One(Each(n, "leaf l# { type string; }")); }},
    {"OwnAugments",
     [](int n) {
       return One(Containers(n) + Each(n, "augment \"/h/c#\" { leaf x { type string; } }"));
     }},
    {"AugmentsOfOneNode",
     [](int n) {
       return One("container h;" + Each(n, "augment \"/h\" { leaf x# { type string; } }"));
     }},
    {"AugmentsOfAugments",
     [](int n) {
       return One("container h;" + Each(n,
                                        "augment \"/h\" { container x#; }"
                                        "augment \"/h/x#\" { leaf y { type string; } }"));
     }},
    {"AugmentsInReverse", Reversed},
    {"ForeignAugments",
     [](int n) {
       return Two(Containers(n), Each(n,
                                      "augment \"/a:h/a:c#\" { when \"../a:c0\";"
                                      " leaf x { type string; } }"));
     }},
    {"ForeignAugmentsOfOneNode",
     [](int n) {
       return Two("container h;", Each(n, "augment \"/a:h\" { leaf x# { type string; } }"));
     }},
    {"ForeignAugmentsOfAugments",
     [](int n) {
       return Two("container h;", Each(n,
                                       "augment \"/a:h\" { container x#; }"
                                       "augment \"/a:h/b:x#\" { leaf y { type string; } }"));
     }},
    {"AugmentsOfTheAugmentsOfAnother",
     [](int n) {
       Files files = Two("container h;", Each(n, "augment \"/a:h\" { container x#; }"));
       files.emplace_back(
           "c",
           Module("c", {"a", "b"}, Each(n, "augment \"/a:h/b:x#\" { leaf y { type string; } }")));
       return files;
     }},
    {"FeaturesThatAreOff",
     [](int n) {
       return Two(Containers(n), "feature f;" + Each(n,
                                                     "augment \"/a:h/a:c#\" { if-feature f;"
                                                     " leaf x { type string; } }"));
     }},
    {"CasesThatAreOff",
     [](int n) {
       return One("feature f; choice h { leaf stays { type string; } " +
                  Each(n, "case c# { if-feature f; leaf x# { type string; } }") + "}");
     }},
    {"Deviations",
     [](int n) {
       return Two("container h {" + Each(n, "leaf c# { type string; }") + "}",
                  Each(n, "deviation \"/a:h/a:c#\" { deviate add { default x; } }"));
     }},
    {"DeviationsOfConfig",
     [](int n) {
       return Two("container h {" + Each(n, "leaf c# { type string; }") + "}",
                  Each(n, "deviation \"/a:h/a:c#\" { deviate add { config false; } }"));
     }},
    {"ConditionsThatADeviationDeletes",
     [](int n) {
       const std::string musts = Each(n, "must \". != '#'\";");
       return Two("container h { leaf l { type string; " + musts + "} }",
                  "deviation /a:h/a:l { deviate delete {" + musts + "} }");
     }},
    {"Refines",
     [](int n) {
       return One("grouping g {" + Each(n, "leaf c# { type string; }") +
                  "} container h { uses g {" + Each(n, "refine c# { mandatory true; }") + "} }");
     }},
    {"RefinesFurtherDown",
     [](int n) {
       return One("grouping g { container t {" + Each(n, "leaf c# { type string; }") +
                  "} } container h { uses g {" + Each(n, "refine t/c# { default x; }") + "} }");
     }},
    {"AugmentsOfUses",
     [](int n) {
       return One("grouping g {" + Each(n, "container c#;") + "} container h { uses g {" +
                  Each(n, "augment c# { leaf x { type string; } }") + "} }");
     }},
    {"Uses",
     [](int n) {
       return One("grouping g { leaf c { type string; } }" +
                  Each(n, "container h# { uses g { refine c { default x; } } }"));
     }},
    {"Groupings",
     [](int n) { return One(Each(n, "grouping g# { leaf c# { type string; } } uses g#;")); }},
    {"Operations",
     [](int n) {
       return One(Each(n,
                       "rpc r# { input { leaf x { type string; }"
                       " leaf y { type leafref { path \"/a:r#/a:x\"; }"
                       " must \"../x = 'a' and count(../x) > 0\"; } } }"));
     }},
    {"OperationsThatAreAugmented",
     [](int n) {
       return One(Each(n, "rpc r#;") +
                  Each(n, "augment \"/r#/input\" { leaf x { type string; } }"));
     }},
    {"ConditionsThatNameSiblings",
     [](int n) {
       return One("rpc r { input { leaf z { type string; }" +
                  Each(n, "leaf c# { type string; must \"count(../z) > 0 and ../c# != 'x'\"; }") +
                  "} }");
     }},
    {"ConditionsOfAugments",
     [](int n) {
       return Two("rpc r { input {" + Each(n, "container c# { leaf z { type string; } }") + "} }",
                  Each(n,
                       "augment \"/a:r/a:input/a:c#\" { when \"count(a:z) > 0\";"
                       " leaf x { type string; } }"));
     }},
    {"Leafrefs",
     [](int n) {
       return One("container h { leaf z { type string; }" +
                  Each(n, "leaf c# { type leafref { path ../z; } }") + "}");
     }},
    {"TypedefsOfOneName",
     [](int n) {
       return One(Each(n, "container k# { typedef t { type string; } leaf l { type t; } }"));
     }},
    {"Identities",
     [](int n) {
       return One("identity i;" + Each(n,
                                       "identity i# { base i; }"
                                       " leaf l# { type identityref { base i; } default i#; }"));
     }},
    {"DefaultsOfOneEnumeration",
     [](int n) {
       return One("typedef t { type enumeration {" + Each(n, "enum e#;") + "} }" +
                  Each(n, "leaf l# { type t; default e#; }"));
     }},
    {"RestrictionsOfOneEnumeration",
     [](int n) {
       return One("typedef t { type enumeration {" + Each(n, "enum e#;") + "} }" +
                  Each(n, "leaf l# { type t { enum e#; } }"));
     }},
    {"Keys",
     [](int n) {
       return One("list l { key \"" + Each(n, "k# ") + "\";" +
                  Each(n, "leaf k# { type string; must ../k#; }") + "}");
     }},
    {"Cases",
     [](int n) {
       return One("container h { choice c {" + Each(n, "leaf x# { type string; when ../x#; }") +
                  "} }");
     }},
    {"Extensions",
     [](int n) {
       return One(Each(n, "extension e# { argument a; }") + "leaf l { type string; " +
                  Each(n, "a:e# x;") + "}");
     }},
    {"ImportsOfOneModule",
     [](int n) {
       return Files{
           {"b", Module("b", {}, "typedef t { type string; }")},
           {"a", "module a { namespace urn:a; prefix a;" + Each(n, "import b { prefix b#; }") +
                     Each(n, "leaf l# { type b#:t; }") + "}"}};
     }},
    {"ModulesInAChain", [](int n) { return Chain(n / kPerFile); }},
    {"Submodules", [](int n) { return WithSubmodules(n / kPerFile, false); }},
    {"SubmodulesInAChain", [](int n) { return WithSubmodules(n / kPerFile, true); }},
    {"PathsThatLeadNowhere",
     [](int n) {
       return One("container h {" + Each(n, "leaf c# { type string; must \"../no\"; }") + "}");
     }},
};

class Growth : public testing::TestWithParam<Shape> {
 protected:
  Growth() : folder_(testing::TempDir() + "qmodel-growth-XXXXXX") {
    EXPECT_NE(nullptr, mkdtemp(folder_.data()));
  }
  ~Growth() override { std::filesystem::remove_all(folder_); }

  void Write(const Files& files) const {
    for (const auto& [name, text] : files) std::ofstream(folder_ + "/" + name + ".yang") << text;
  }

  // The blocks that linting all of them takes.
  uint64_t BlocksOfLint(const Files& files) const {
    Write(files);
    LintRequest request;
    request.folders = {folder_};
    for (const auto& file : files) request.operands.push_back(file.first);
    const uint64_t before = g_blocks;
    EXPECT_NE(LintState::kUnusable, RunLintJob(request).state);
    return g_blocks - before;
  }

  // The blocks that compiling takes, which looks for faults as lint does.
  uint64_t BlocksOf(const Files& files) const {
    Write(files);
    JobRequest request;
    request.folders = {folder_};
    request.operands = {files.back().first};
    request.options.featuresComplete = true;
    const uint64_t before = g_blocks;
    const JobResult result = RunJob(request);
    EXPECT_EQ(1U, result.modules.size());
    return g_blocks - before;
  }

 private:
  std::string folder_;
};

TEST_P(Growth, IsThatOfTheModel) {
  const uint64_t few = BlocksOf(GetParam().make(kFew));
  const uint64_t many = BlocksOf(GetParam().make(kMany));
  EXPECT_GT(few, uint64_t{100} * kFew);  // it is counted
  EXPECT_LT(many, 5 * few);
}

const Shape kLintShapes[] = {
    {"ModulesInAChain", [](int n) { return Chain(n / kPerFile); }},
    {"ModulesThatAugmentOneNode", [](int n) { return ManyIntoOne(n / kPerFile); }},
    {"ModulesThatAugmentOneNodeAndErr",
     [](int n) {
       Files files = ManyIntoOne(n / kPerFile);
       for (auto& file : files) file.second.insert(file.second.rfind('}'), "leaf e { type f; }");
       return files;
     }},
    {"NamesAnywhere",
     [](int n) {
       return One("container h {" + Each(n, "leaf c# { type string; must \"//c# or .//d#\"; }") +
                  "}");
     }},
    {"Wildcards",
     [](int n) {
       return One(Each(n, "container c# { leaf d { type string; must \"../../*/d\"; } }"));
     }},
    {"GroupingsOfAnother",
     [](int n) {
       return Two("grouping g { leaf c { type string; when ../d; } leaf d { type string; } }",
                  Each(n, "container h# { uses a:g { refine c { default x; } } }"));
     }},
};

class LintGrowth : public Growth {};

TEST_P(LintGrowth, IsThatOfTheModels) {
  const uint64_t few = BlocksOfLint(GetParam().make(kFew));
  const uint64_t many = BlocksOfLint(GetParam().make(kMany));
  EXPECT_GT(few, uint64_t{100} * kFew);  // it is counted
  EXPECT_LT(many, 5 * few);
}

INSTANTIATE_TEST_SUITE_P(Linting, LintGrowth, testing::ValuesIn(kLintShapes),
                         [](const testing::TestParamInfo<Shape>& shape) {
                           return std::string(shape.param.name);
                         });

INSTANTIATE_TEST_SUITE_P(Compiling, Growth, testing::ValuesIn(kShapes),
                         [](const testing::TestParamInfo<Shape>& shape) {
                           return std::string(shape.param.name);
                         });

}  // namespace
}  // namespace compiler
