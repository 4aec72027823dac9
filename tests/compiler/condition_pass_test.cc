// SPDX-License-Identifier: BSD-3-Clause
#include "compiler/spelling/condition_pass.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "compiler/job.h"

namespace compiler {
namespace {

// Files in a folder that goes with them.
class Folder {
 public:
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "conditions-XXXXXX").string();
    EXPECT_NE(mkdtemp(name.data()), nullptr);
    path_ = name;
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  // A module "name" with its name as prefix.
  void Write(const std::string& name, const std::string& body) const {
    std::ofstream(path_ / (name + ".yang"))
        << "module " << name << " { yang-version 1.1; namespace \"urn:" << name << "\"; prefix "
        << name << "; " << body << " }";
  }
  std::string Path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

JobResult Compile(const Folder& folder, const std::string& module, bool dropFailing = false) {
  JobRequest request;
  request.folders = {folder.Path()};
  request.operands = {module};
  request.options.dropFailing = dropFailing;
  return RunJob(request);
}

std::string Yin(const JobResult& result) {
  EXPECT_EQ(result.modules.size(), 1U);
  return result.modules.empty() ? "" : result.modules[0].yin;
}

constexpr char kNodes[] =
    "container c { leaf a { type string; } leaf b { type int8; } list l { key k; leaf k { type "
    "int8; } } } ";

// The library compares names without their module: of "x" it takes the first.
TEST(SettleConditions, LeavesPathsToANodeBesideItsNamesakeOfAnotherModule) {
  const Folder folder;
  folder.Write("m", "rpc r { input { leaf x { type string; } leaf y { type string; } } }");
  folder.Write("n", "import m { prefix m; } augment /m:r/m:input { leaf y { type string; } }");
  folder.Write("k",
               "import m { prefix m; } import n { prefix n; } augment /m:r/m:input { "
               "leaf x { type string; } leaf z { type string; } leaf q { type string; "
               "must \"../m:x != 'a'\"; must \"../m:y != 'b'\"; must \"../k:z != 'c'\"; } }");
  const std::string yin = Yin(Compile(folder, "k"));
  EXPECT_NE(yin.find("<must condition=\"../m:x != 'a'\"/>"), std::string::npos) << yin;
  EXPECT_NE(yin.find("<must condition=\"../m:y != 'b'\"/>"), std::string::npos) << yin;
  EXPECT_NE(yin.find("<must condition=\"../k:z and ../k:z != 'c'\"/>"), std::string::npos) << yin;
}

TEST(SettleConditions, RewritesEachWhereItStands) {
  const Folder folder;
  folder.Write("m",
               "rpc r { input { must \"count(a) > 0\"; leaf a { type string; } "
               "leaf b { when \"../a != 'x'\"; type string; } "
               "choice d { when \"boolean(a)\"; case e { leaf f { type int8; } } } } }");
  const std::string yin = Yin(Compile(folder, "m"));
  EXPECT_NE(yin.find("<must condition=\"a\""), std::string::npos) << yin;
  EXPECT_NE(yin.find("<when condition=\"../a and ../a != 'x'\""), std::string::npos) << yin;
  EXPECT_NE(yin.find("<when condition=\"a\""), std::string::npos) << yin;
}

// A path in a predicate starts at the node that the predicate is about, "." among them.
TEST(SettleConditions, ALiteralInAPredicateIsComparedWithTheNodeThere) {
  const Folder folder;
  folder.Write("m",
               "identity b; identity i { base b; } rpc r { input { "
               "leaf s { type string; } leaf t { type identityref { base b; } } "
               "container c { presence p; leaf t { type string; } } "
               "leaf q { type identityref { base b; } must \"../s[. = 'i']\"; "
               "must \"../t[. = 'i']\"; must \"../c[t = 'i']\"; must \"../c[../t = 'i']\"; "
               "must \"../c[current() = 'i']\"; } } }");
  const std::string yin = Yin(Compile(folder, "m"));
  for (const char* must : {"../s = 'i' and ../s", "../t = 'm:i' and ../t", "../c/t = 'i' and ../c",
                           "../c/../t = 'm:i' and ../c", ". = 'm:i' and ../c"})
    EXPECT_NE(yin.find("<must condition=\"" + std::string(must) + "\"/>"), std::string::npos)
        << must << " in " << yin;
}

TEST(SettleConditions, CompilingTheOutputAgainChangesNothing) {
  const Folder folder;
  folder.Write("m", std::string(kNodes) +
                        "augment /c { when \"a != 'x'\"; leaf d { type int8; } } "
                        "rpc r { input { leaf a { type int8; must \". = -1 or ../b = true()\"; } "
                        "leaf b { type string; } } }");
  const std::string yin = Yin(Compile(folder, "m"));
  const Folder second;
  std::ofstream(second.Path() + "/m.yin") << yin;
  EXPECT_EQ(Yin(Compile(second, "m")), yin);
}

TEST(SettleConditions, GoesThroughAugmentsOfOtherModules) {
  const Folder folder;
  folder.Write("t", kNodes);
  folder.Write(
      "m",
      "import t { prefix t; } augment /t:c { when \"t:a != 'x'\"; leaf d { type int8; } "
      "leaf e { when \"../d\"; type int8; } choice f { case g { leaf h { type int8; } } } }");
  const std::string yin = Yin(Compile(folder, "m"));
  EXPECT_NE(yin.find("\"../t:a and ../t:a != 'x'\""), std::string::npos) << yin;
  EXPECT_NE(yin.find("\"(../t:a and ../t:a != 'x') and (../d)\""), std::string::npos) << yin;
  EXPECT_NE(yin.find("\"t:a and t:a != 'x'\""), std::string::npos) << yin;
}

TEST(SettleConditions, RewritesWhatADeviationAddsAtItsTarget) {
  const Folder folder;
  folder.Write("t", kNodes);
  folder.Write(
      "m", "import t { prefix t; } deviation /t:c/t:b { deviate add { must \"../t:a != 'x'\"; } }");
  EXPECT_NE(Yin(Compile(folder, "m")).find("<must condition=\"../t:a and ../t:a != 'x'\""),
            std::string::npos);
}

TEST(SettleConditions, ADeletedMustHasTheTextOfItsTarget) {
  const Folder folder;
  folder.Write("t", "container c { must \"a != 'x'\"; leaf a { type string; } }");
  folder.Write("m",
               "import t { prefix p; } deviation /p:c { deviate delete { must \"p:a != 'x'\"; } }");
  EXPECT_NE(Yin(Compile(folder, "t")).find("<must condition=\"a and a != 'x'\""),
            std::string::npos);
}

TEST(SettleConditions, LeavesOutWhatFailsWhenThatIsWanted) {
  const Folder folder;
  folder.Write(
      "m",
      "rpc r { input { leaf a { type string; must \"contains(., 'x')\"; must \". != 'y'\"; } } } "
      "container c { must \"contains(., 'x')\"; }");
  const JobResult kept = Compile(folder, "m");
  EXPECT_NE(Yin(kept).find("contains"), std::string::npos);
  EXPECT_TRUE(kept.findings.empty());
  const JobResult dropped = Compile(folder, "m", true);
  EXPECT_EQ(Yin(dropped).find("<must condition=\"contains(., 'x')\"/>\n        <must"),
            std::string::npos);
  EXPECT_NE(Yin(dropped).find("<must condition=\". != 'y'\""), std::string::npos);
  // Data is not validated, so its condition stays.
  EXPECT_NE(Yin(dropped).find("contains"), std::string::npos);
  ASSERT_EQ(dropped.findings.size(), 1U);
  EXPECT_NE(dropped.findings[0].find(
                "the library has no function \"contains\"; the condition is left out"),
            std::string::npos);
  EXPECT_EQ(dropped.state, JobState::kLost);
}

// The library looks at an identity's own bases only.
TEST(CompleteBases, AnIdentityHasTheBasesOfItsBases) {
  const Folder folder;
  folder.Write("a", "identity top; identity middle { base top; }");
  folder.Write("b", "import a { prefix a; } identity low { base a:middle; }");
  folder.Write("m",
               "import b { prefix b; } identity own { base b:low; description \"last\"; } "
               "identity two { base own; base b:low; }");
  const std::string yin = Yin(Compile(folder, "m"));
  EXPECT_NE(yin.find("<base name=\"b:low\"/>\n    <base name=\"a:middle\"/>\n"
                     "    <base name=\"a:top\"/>\n    <description>"),
            std::string::npos)
      << yin;
  EXPECT_NE(yin.find("<base name=\"own\"/>\n    <base name=\"b:low\"/>\n"
                     "    <base name=\"a:middle\"/>\n    <base name=\"a:top\"/>\n  </identity>"),
            std::string::npos)
      << yin;
  EXPECT_NE(yin.find("<import module=\"a\">"), std::string::npos) << yin;
}

TEST(CompleteBases, ALongChainStaysInProportion) {
  const Folder folder;
  std::string body = "identity i0; ";
  for (int i = 1; i <= 1000; ++i) {
    body += "identity i" + std::to_string(i) + " { base i" + std::to_string(i - 1) + "; } ";
  }
  folder.Write("m", body);
  const std::string yin = Yin(Compile(folder, "m"));
  size_t bases = 0;
  for (size_t at = yin.find("<base"); at != std::string::npos; at = yin.find("<base", at + 1))
    ++bases;
  EXPECT_EQ(bases, 128U * 1000 - 127U * 128 / 2);
}

}  // namespace
}  // namespace compiler
