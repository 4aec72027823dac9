// SPDX-License-Identifier: BSD-3-Clause
#include "schema/target_path.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/memory.h"
#include "schema/records.h"
#include "tests/support/counting_memory.h"

namespace {

// Module modA with prefix a, which imports modB as b and modC as c.
class PathModule {
 public:
  PathModule() {
    module_.name = "modA";
    module_.prefix = "a";
    module_.imports = imports_;
    module_.importCount = 2;
  }
  QmsModule* Get() { return &module_; }

 private:
  QmsImport imports_[2] = {{"modB", "b"}, {"modC", "c"}};
  QmsModule module_{};
};

std::string Convert(const char* path) {
  PathModule module;
  char* result = QM_XPATH_TransformToJsonFormat(module.Get(), path);
  if (result == nullptr) return "NULL";
  std::string text = result;
  g_qmMemFreeFunc(result);
  return text;
}

TEST(TransformToJsonFormat, WritesModuleNamesWhereTheModuleChanges) {
  struct {
    const char* path;
    const char* converted;
  } constexpr kRows[] = {
      {"", ""},
      {"/a:x/a:y/b:z", "/modA:x/y/modB:z"},
      {"/x/y", "/modA:x/y"},
      {"/x/b:y/z/a:w", "/modA:x/modB:y/z/modA:w"},
      {"b:y/z", "modB:y/z"},
      {"../x", "../modA:x"},
      {"../../b:x/y", "../../modB:x/y"},
      {"/a:x/../y", "/modA:x/../y"},
      {"/a:x[a:k='1'][l='2']/y", "/modA:x/y"},
      {"../x[k = current()/../k]/y", "../modA:x/y"},
      {"./a", "modA:./a"},
      {"/c:x/b:x/c:x", "/modC:x/modB:x/modC:x"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(row.converted, Convert(row.path));
  }
}

TEST(TransformToJsonFormat, RefusesWhatIsNoPath) {
  for (const char* path : {"/", "//a:x", "/a:x/", "/unknown:x", " /a:x", "/a:x /y", "/a:x[k/y",
                           "current()/../x", "/a:", "/:x", "/a:b:c"}) {
    SCOPED_TRACE(path);
    EXPECT_EQ("NULL", Convert(path));
  }
}

TEST(TransformToJsonFormat, NullGivesNull) {
  PathModule module;
  EXPECT_EQ(nullptr, QM_XPATH_TransformToJsonFormat(nullptr, "/a:x"));
  EXPECT_EQ(nullptr, QM_XPATH_TransformToJsonFormat(module.Get(), nullptr));
}

TEST(TransformToJsonFormat, ANameHasAtMost64Characters) {
  const std::string name64(64, 'n');
  EXPECT_EQ("/modA:" + name64, Convert(("/a:" + name64).c_str()));
  EXPECT_EQ("NULL", Convert(("/a:" + name64 + "n").c_str()));
  EXPECT_EQ("NULL", Convert(("/" + name64 + "n:x").c_str()));
}

TEST(TransformToJsonFormat, AResultHasAtMost3095Characters) {
  std::string path = "/a:x";  // "/modA:x", 7 characters
  for (int i = 0; i < 1544; ++i) path += "/y";
  EXPECT_EQ(3095u, Convert(path.c_str()).size());
  EXPECT_EQ("NULL", Convert((path + "/y").c_str()));
}

TEST(GetJsonFormatXpath, ThePathFitsOrIsRefusedWhateverPieceComesLast) {
  PathModule module;
  const std::string whole = "/modA:x/modB:y";
  char out[32];
  for (uint32_t size = 0; size <= whole.size(); ++size) {
    EXPECT_EQ(QM_INVALID, QM_XPATH_GetJsonFormatXpath(module.Get(), "/x/b:y", out, size)) << size;
  }
  EXPECT_EQ(QM_OK, QM_XPATH_GetJsonFormatXpath(module.Get(), "/x/b:y", out,
                                               static_cast<uint32_t>(whole.size()) + 1));
  EXPECT_EQ(whole, out);
}

TEST(TransformToJsonFormat, AModuleWithoutPrefixCannotQualify) {
  QmsModule module = {};
  module.name = "modA";
  EXPECT_EQ(nullptr, QM_XPATH_TransformToJsonFormat(&module, "/x"));
}

TEST(TransformToJsonFormat, GivesNullWithoutMemory) {
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    const std::string result = Convert("/a:x");
    EXPECT_TRUE(result == "/modA:x" || (refusing && result == "NULL")) << result;
  });
  EXPECT_EQ(2u, injected);
}

TEST(GetJsonFormatXpath, RefusesABufferThatIsTooSmall) {
  PathModule module;
  char out[8] = "";
  EXPECT_EQ(QM_OK, QM_XPATH_GetJsonFormatXpath(module.Get(), "/a:x", out, 8));
  EXPECT_STREQ("/modA:x", out);
  EXPECT_EQ(QM_INVALID, QM_XPATH_GetJsonFormatXpath(module.Get(), "/a:x", out, 7));
  EXPECT_EQ(QM_INVALID, QM_XPATH_GetJsonFormatXpath(module.Get(), "/a:x", out, 0));
  EXPECT_EQ(QM_INVALID, QM_XPATH_GetJsonFormatXpath(module.Get(), "/a:x", nullptr, 8));
  EXPECT_EQ(QM_INVALID, QM_XPATH_GetJsonFormatXpath(nullptr, "/a:x", out, 8));
  EXPECT_EQ(QM_INVALID, QM_XPATH_GetJsonFormatXpath(module.Get(), nullptr, out, 8));
}

TEST(GetJsonFormatXpath, AnEmptyPathGivesAnEmptyText) {
  PathModule module;
  char out[4] = "old";
  EXPECT_EQ(QM_OK, QM_XPATH_GetJsonFormatXpath(module.Get(), "", out, 4));
  EXPECT_STREQ("", out);
}

TEST(NeedAppendModifiedModName, OnlyAtTheFirstStepAndAtAChange) {
  EXPECT_EQ(1u, QM_XPATH_NeedAppendModifiedModName("", ""));
  EXPECT_EQ(1u, QM_XPATH_NeedAppendModifiedModName("", "a"));
  EXPECT_EQ(0u, QM_XPATH_NeedAppendModifiedModName("a", ""));
  EXPECT_EQ(0u, QM_XPATH_NeedAppendModifiedModName("a", "a"));
  EXPECT_EQ(1u, QM_XPATH_NeedAppendModifiedModName("a", "b"));
}

TEST(UpdateCurrentXpathModName, FallsBackToTheModulesOwnPrefix) {
  PathModule module;
  char last[65] = "";
  EXPECT_EQ(QM_OK, QM_XPATH_UpdateCurrentXpathModName(module.Get(), "", last, 65));
  EXPECT_STREQ("a", last);
  EXPECT_EQ(QM_OK, QM_XPATH_UpdateCurrentXpathModName(module.Get(), "b", last, 65));
  EXPECT_STREQ("b", last);
  EXPECT_EQ(QM_OK, QM_XPATH_UpdateCurrentXpathModName(module.Get(), "", last, 65));
  EXPECT_STREQ("b", last);
  EXPECT_EQ(QM_INVALID, QM_XPATH_UpdateCurrentXpathModName(module.Get(), "ccc", last, 3));
}

struct Split {
  uint32_t status;
  std::string name;
  std::string parent;
  std::string last;
};

std::string Take(char* text) {
  if (text == nullptr) return "NULL";
  std::string copy = text;
  g_qmMemFreeFunc(text);
  return copy;
}

Split SplitPath(const char* path, uint32_t nameSize = 65) {
  char name[65] = "";
  char mark = 0;
  char* parent = &mark;
  char* last = &mark;
  Split split;
  split.status = QM_XPATH_SplitTargetNodeXpath(path, name, nameSize, &parent, &last);
  split.name = name;
  split.parent = Take(parent);
  split.last = Take(last);
  return split;
}

TEST(SplitTargetNodeXpath, CutsBeforeTheLastQualifiedStep) {
  struct {
    const char* path;
    const char* name;
    const char* parent;
    const char* last;
  } constexpr kRows[] = {
      {"/a:x", "a", "NULL", "/a:x"},     {"/a:x/y", "a", "NULL", "/a:x/y"},
      {"/a:x/b:y", "b", "/a:x", "/b:y"}, {"/a:x/y/b:z/w/v", "b", "/a:x/y", "/b:z/w/v"},
      {"x/b:y", "b", "x", "/b:y"},       {"/mod-a.1_b:x", "mod-a.1_b", "NULL", "/mod-a.1_b:x"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.path);
    const Split split = SplitPath(row.path);
    EXPECT_EQ(QM_OK, split.status);
    EXPECT_EQ(row.name, split.name);
    EXPECT_EQ(row.parent, split.parent);
    EXPECT_EQ(row.last, split.last);
  }
}

TEST(SplitTargetNodeXpath, RefusesPathsWithoutAQualifiedStep) {
  for (const char* path : {"", "/", "/x", "/x/y", "x", "a:x", "x:y/z", "/a:x/", "/a:x ", "/a: x",
                           "/a:", "/:x", "//x", "/a:b:x", "/a:x[k]", "/a:x//y"}) {
    SCOPED_TRACE(path);
    const Split split = SplitPath(path);
    EXPECT_EQ(QM_INVALID, split.status);
    EXPECT_EQ("NULL", split.parent);
    EXPECT_EQ("NULL", split.last);
  }
}

TEST(SplitTargetNodeXpath, RefusesANameThatDoesNotFit) {
  EXPECT_EQ(QM_OK, SplitPath("/abc:x", 4).status);
  EXPECT_EQ(QM_INVALID, SplitPath("/abc:x", 3).status);
  EXPECT_EQ(QM_INVALID, SplitPath("/abc:x", 0).status);
}

TEST(SplitTargetNodeXpath, RefusesNull) {
  char name[65] = "";
  EXPECT_EQ(QM_INVALID, QM_XPATH_SplitTargetNodeXpath(nullptr, name, 65, nullptr, nullptr));
  EXPECT_EQ(QM_INVALID, QM_XPATH_SplitTargetNodeXpath("/a:x", nullptr, 65, nullptr, nullptr));
}

TEST(SplitTargetNodeXpath, GivesTheNameAloneWithoutBothPlaces) {
  char name[65] = "";
  char mark = 0;
  char* text = &mark;
  EXPECT_EQ(QM_OK, QM_XPATH_SplitTargetNodeXpath("/a:x/b:y", name, 65, nullptr, nullptr));
  EXPECT_STREQ("b", name);
  EXPECT_EQ(QM_OK, QM_XPATH_SplitTargetNodeXpath("/a:x/b:y", name, 65, &text, nullptr));
  EXPECT_EQ(nullptr, text);
  text = &mark;
  EXPECT_EQ(QM_OK, QM_XPATH_SplitTargetNodeXpath("/a:x/b:y", name, 65, nullptr, &text));
  EXPECT_EQ(nullptr, text);
}

TEST(SplitTargetNodeXpath, GivesNothingWithoutMemory) {
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    const Split split = SplitPath("/a:x/b:y");
    if (!refusing) {
      EXPECT_EQ(QM_OK, split.status);
    } else if (split.status != QM_OK) {
      EXPECT_EQ(QM_INVALID, split.status);
      EXPECT_EQ("NULL", split.parent);
      EXPECT_EQ("NULL", split.last);
    }
  });
  EXPECT_EQ(4u, injected);
}

}  // namespace
