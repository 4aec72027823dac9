// SPDX-License-Identifier: BSD-3-Clause
#include "yin/file_lookup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "context/memory.h"
#include "tests/support/counting_memory.h"
#include "tests/support/yin.h"
#include "yin/load_assister.h"

using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

class Files {
 public:
  Files(QmCtx* ctx, const char* name)
      : list_(QMS_LOADER_CollectFilePathMatchedInAllDir(ctx, name)) {}
  ~Files() { FreePathCollection(list_); }
  QmsPathCollection* Get() const { return list_; }
  std::vector<std::string> Paths() const {
    std::vector<std::string> paths;
    for (uint32_t i = 0; list_ != nullptr && i < list_->count; ++i)
      paths.push_back(list_->objs[i].path);
    return paths;
  }

 private:
  QmsPathCollection* list_;
};

// A candidate list and an assister made by hand.
class Lookup {
 public:
  explicit Lookup(const std::vector<std::string>& paths) {
    list_.maxTries = 10;
    for (const std::string& path : paths)
      EXPECT_EQ(QM_OK, QMS_LOADER_AppendOnePathObj(&list_, path.c_str()));
    assister_.current = kQmsNoSuffix;
  }
  ~Lookup() {
    g_qmMemFreeFunc(list_.objs);
    ClearLoadAssister(&assister_);
  }
  QmsPathCollection* List() { return &list_; }
  QmsLoadAssister* Assister() { return &assister_; }
  std::string Next() {
    const QmsPathObj* obj = QMS_LOADER_GetNextPathObjToProc(&list_, &assister_);
    return obj == nullptr ? "(none)" : obj->path;
  }
  std::string Suffixes() const {
    std::string text;
    for (uint32_t i = 0; i < assister_.suffixCount; ++i)
      text += std::string(assister_.suffixes[i].suffix) +
              (assister_.suffixes[i].loaded != 0 ? "+ " : "- ");
    return text;
  }

 private:
  QmsPathCollection list_ = {};
  QmsLoadAssister assister_ = {};
};

}  // namespace

TEST(CollectFilePathMatchedInAllDir, ThePlainFileEndsTheSearch) {
  yin::Folder a;
  yin::Folder b;
  a.Write("m.yin", "");
  a.Write("m@2020-01-01.yin", "");
  b.Write("m.yin", "");
  yin::Context ctx;
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, a.Dir()));
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, b.Dir()));
  Files files(ctx, "m");
  EXPECT_THAT(files.Paths(), ElementsAre(a.Path("m.yin")));
  EXPECT_EQ(1u, files.Get()->maxTries);
  EXPECT_EQ(1u, files.Get()->hasPlain);
  EXPECT_EQ(0u, files.Get()->hasSuffixed);
}

TEST(CollectFilePathMatchedInAllDir, ARevisionFileLetsTheSearchGoOn) {
  yin::Folder a;
  yin::Folder b;
  yin::Folder c;
  a.Write("m@2020-01-01.yin", "");
  b.Write("m.yin", "");
  c.Write("m@2021-01-01.yin", "");
  yin::Context ctx;
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, a.Dir()));
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, b.Dir()));
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, c.Dir()));
  Files files(ctx, "m");
  EXPECT_THAT(files.Paths(), ElementsAre(a.Path("m@2020-01-01.yin"), b.Path("m.yin")));
}

TEST(CollectFilePathMatchedInAllDir, OnlyFilesOfThatNameAreTaken) {
  yin::Folder a;
  a.Write("m@1.yin", "");
  a.Write("m@2.yin", "");
  a.Write("m@3.yang", "");
  a.Write("mm@1.yin", "");
  a.Write("n@1.yin", "");
  a.MakeDir("m@4.yin");
  a.MakeDir("m.yin");
  yin::Context ctx;
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, a.Dir()));
  Files files(ctx, "m");
  EXPECT_THAT(files.Paths(), UnorderedElementsAre(a.Path("m@1.yin"), a.Path("m@2.yin")));
}

TEST(CollectFilePathMatchedInAllDir, NamesThatAreNoIdentifiersFindNothing) {
  yin::Folder a;
  a.Write("m.yin", "");
  a.MakeDir("sub");
  a.Write("sub/m.yin", "");
  a.Write("m*.yin", "");
  yin::Context ctx;
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, a.Dir()));
  for (const char* name : {"sub/m", "../x", "*", "?", "[m]", "m*", "", "m ", "none"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(nullptr, Files(ctx, name).Get());
  }
  EXPECT_EQ(nullptr, Files(ctx, nullptr).Get());
  EXPECT_EQ(nullptr, Files(nullptr, "m").Get());
}

TEST(CollectFilePathMatchedInAllDir, AMixEndsTheListingButNotTheSearch) {
  yin::Folder a;
  yin::Folder b;
  for (const char* file : {"m@@x.yin", "m@@y.yin", "m@1.yin", "m@2.yin"}) a.Write(file, "");
  b.Write("m@3.yin", "");
  b.Write("m@4.yin", "");
  yin::Context ctx;
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, a.Dir()));
  ASSERT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, b.Dir()));
  Files files(ctx, "m");
  const std::vector<std::string> paths = files.Paths();
  // The listing of a stops at the first file of the second kind: after two or
  // three files. The list is a mix by then, so b gives one file.
  ASSERT_GE(paths.size(), 3u);
  ASSERT_LE(paths.size(), 4u);
  EXPECT_EQ(1u, files.Get()->hasPlain);
  EXPECT_EQ(1u, files.Get()->hasSuffixed);
  const size_t last = paths.size() - 1;
  const bool lastIsSplit = paths[last - 1].find("@@") != std::string::npos;
  for (size_t i = 0; i + 1 < last; ++i)
    EXPECT_NE(lastIsSplit, paths[i].find("@@") != std::string::npos) << paths[i];
  EXPECT_EQ(0u, paths[last].find(b.Dir()));
}

TEST(FillFullNameWithRevision, Statuses) {
  yin::Folder a;
  a.Write("m@@x.yin", "");
  a.Write("m@1.yin", "");
  a.Write("n@1.yin", "");
  a.Write("k@@.yin", "");
  a.Write("l@@abcdefghij.yin", "");
  struct {
    const char* name;
    uint32_t status;
    uint32_t count;
  } const rows[] = {{"m", QM_INVALID, 2},
                    {"n", QM_OK, 1},
                    {"k", QM_OK, 1},
                    {"l", QM_INVALID, 0},
                    {"none", QM_OK, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    QmsPathCollection list = {};
    EXPECT_EQ(row.status, QMS_LOADER_FillFullNameWithRevision(&list, a.Dir(), row.name));
    EXPECT_EQ(row.count, list.count);
    g_qmMemFreeFunc(list.objs);
  }
}

TEST(FillFullNameWithNoRevision, TwoWithoutThePlainFile) {
  yin::Folder a;
  a.Write("m.yin", "");
  QmsPathCollection list = {};
  EXPECT_EQ(QM_NOT_FOUND, QMS_LOADER_FillFullNameWithNoRevision(&list, a.Dir(), "n"));
  EXPECT_EQ(QM_NOT_FOUND,
            QMS_LOADER_FillFullNameWithNoRevision(&list, a.Dir(), std::string(300, 'n').c_str()));
  EXPECT_EQ(0u, list.count);
  EXPECT_EQ(QM_OK, QMS_LOADER_FillFullNameWithNoRevision(&list, a.Dir(), "m"));
  EXPECT_EQ(1u, list.count);
  g_qmMemFreeFunc(list.objs);
}

TEST(AppendOnePathObj, TheSuffixIsReadFromTheBaseName) {
  struct {
    const char* path;
    uint32_t status;
    const char* suffix;  // NULL: not added
  } const rows[] = {{"/d/m.yin", QM_OK, ""},
                    {"/d/m@2020.yin", QM_OK, ""},
                    {"/d/m@@a.yin", QM_OK, "a"},
                    {"/d/m@@123456789.yin", QM_OK, "123456789"},
                    {"/d/m@@1234567890.yin", QM_INVALID, nullptr},
                    {"/d/m@@a.b.yin", QM_OK, "a"},
                    {"/d/m@@.yin", QM_OK, ""},
                    {"/d/m@@a", QM_INVALID, nullptr},
                    {"/d@@x.y/m.yin", QM_OK, ""},
                    {"m@@a.yin", QM_OK, "a"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    QmsPathCollection list = {};
    EXPECT_EQ(row.status, QMS_LOADER_AppendOnePathObj(&list, row.path));
    ASSERT_EQ(row.suffix != nullptr ? 1u : 0u, list.count);
    if (row.suffix != nullptr) {
      EXPECT_STREQ(row.suffix, list.objs[0].suffix);
      EXPECT_STREQ(row.path, list.objs[0].path);
    }
    g_qmMemFreeFunc(list.objs);
  }
}

TEST(AppendOnePathObj, APathOf255CharactersFitsAndALongerOneIsLeftOut) {
  QmsPathCollection list = {};
  EXPECT_EQ(QM_OK, QMS_LOADER_AppendOnePathObj(&list, std::string(255, 'p').c_str()));
  EXPECT_EQ(1u, list.count);
  EXPECT_EQ(QM_OK, QMS_LOADER_AppendOnePathObj(&list, std::string(256, 'p').c_str()));
  EXPECT_EQ(1u, list.count);
  EXPECT_EQ(QM_INVALID, QMS_LOADER_AppendOnePathObj(&list, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_LOADER_AppendOnePathObj(nullptr, "p"));
  counting_memory::RefuseNth(1, counting_memory::Refuse::kOnce);
  EXPECT_EQ(QM_NO_MEMORY, QMS_LOADER_AppendOnePathObj(&list, "q"));
  EXPECT_EQ(1u, counting_memory::StopRefusing());
  EXPECT_EQ(1u, list.count);
  g_qmMemFreeFunc(list.objs);
}

TEST(GetNextPathObjToProc, WithoutSuffixesTheFirstCandidateOnce) {
  Lookup lookup({"/d/m@1.yin", "/d/m@2.yin"});
  EXPECT_EQ("/d/m@1.yin", lookup.Next());
  EXPECT_EQ(kQmsNoSuffix, lookup.Assister()->current);
  EXPECT_EQ("(none)", lookup.Next());
}

TEST(GetNextPathObjToProc, EachSuffixOnceInTheOrderOfAppearance) {
  Lookup lookup({"/a/m@@y.yin", "/a/m@@x.yin", "/b/m@@y.yin"});
  EXPECT_EQ(QM_OK, QMS_LOADER_AddPathObjToLoadAssister(lookup.Assister(), lookup.List()));
  EXPECT_EQ("y- x- ", lookup.Suffixes());
  EXPECT_EQ("/a/m@@y.yin", lookup.Next());
  EXPECT_EQ(0, lookup.Assister()->current);
  QMS_LOADER_ResetCurrentLoadingSuffix(lookup.Assister());
  EXPECT_EQ("y+ x- ", lookup.Suffixes());
  EXPECT_EQ("/a/m@@x.yin", lookup.Next());
  QMS_LOADER_ResetCurrentLoadingSuffix(lookup.Assister());
  EXPECT_EQ("(none)", lookup.Next());
}

TEST(GetNextPathObjToProc, ACandidateWithoutSuffixServesAnySuffix) {
  Lookup lookup({"/a/m.yin", "/a/m@@x.yin"});
  EXPECT_EQ(QM_OK, QMS_LOADER_AddPathObjToLoadAssister(lookup.Assister(), lookup.List()));
  EXPECT_EQ("/a/m.yin", lookup.Next());
  EXPECT_EQ(0, lookup.Assister()->current);
}

TEST(GetNextPathObjToProc, ASuffixWithoutCandidateEndsTheSearch) {
  Lookup submodule({"/a/s@@z.yin", "/a/s@@x.yin"});
  EXPECT_EQ(QM_OK, QMS_LOADER_AddPathObjToLoadAssister(submodule.Assister(), submodule.List()));
  Lookup lookup({"/a/m@@x.yin"});
  std::swap(*lookup.Assister(), *submodule.Assister());
  EXPECT_EQ("(none)", lookup.Next());
}

TEST(GetNextPathObjToProc, TriesAreLimited) {
  Lookup lookup({"/a/m@@x.yin"});
  lookup.List()->maxTries = 2;
  EXPECT_EQ(QM_OK, QMS_LOADER_AddPathObjToLoadAssister(lookup.Assister(), lookup.List()));
  EXPECT_EQ("/a/m@@x.yin", lookup.Next());
  EXPECT_EQ("/a/m@@x.yin", lookup.Next());
  EXPECT_EQ("(none)", lookup.Next());
}

TEST(PreFillLoadAssisterFromExisting, SuffixesOfALoadedModuleAreLoaded) {
  const char* sources[] = {"x", "w"};
  QmsModule module = {};
  module.mergeSources = sources;
  module.mergeSourceCount = 2;
  Lookup lookup({"/a/m@@x.yin", "/a/m@@y.yin", "/a/m@@.yin"});
  EXPECT_EQ(QM_OK,
            QMS_LOADER_PreFillLoadAssisterFromExisting(lookup.Assister(), &module, lookup.List()));
  EXPECT_EQ("x+ w+ y- ", lookup.Suffixes());
  EXPECT_TRUE(HasUnloadedSuffix(lookup.Assister()));
}

TEST(PreFillLoadAssisterFromExisting, NothingForAModuleFromOneFile) {
  QmsModule module = {};
  Lookup lookup({"/a/m@@x.yin"});
  EXPECT_EQ(QM_OK,
            QMS_LOADER_PreFillLoadAssisterFromExisting(lookup.Assister(), &module, lookup.List()));
  EXPECT_EQ("", lookup.Suffixes());
  EXPECT_FALSE(HasUnloadedSuffix(lookup.Assister()));
  EXPECT_EQ(QM_OK,
            QMS_LOADER_PreFillLoadAssisterFromExisting(lookup.Assister(), nullptr, lookup.List()));
  EXPECT_EQ("x- ", lookup.Suffixes());
}

TEST(CollectFilePathMatchedInAllDir, SurvivesRefusedMemory) {
  static yin::Folder* folder;
  yin::Folder a;
  folder = &a;
  a.Write("m@1.yin", "");
  a.Write("m@2.yin", "");
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    yin::Context ctx;
    if (ctx.Get() == nullptr || QM_CTX_SetSearchDir(ctx, folder->Dir()) != 0) return;
    Files files(ctx, "m");
    if (files.Get() != nullptr) {
      EXPECT_EQ(2u, files.Paths().size()) << "a list with gaps would pass for the whole";
    }
    EXPECT_TRUE(files.Get() != nullptr || refusing);
  });
  EXPECT_GT(injected, 10u);
}
