// SPDX-License-Identifier: BSD-3-Clause
#include "schema/deviate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "tests/support/counting_memory.h"
#include "tests/support/deviation_case.h"

using deviation_case::Add;
using deviation_case::Case;
using deviation_case::Container;
using deviation_case::Default;
using deviation_case::Delete;
using deviation_case::Leaf;
using deviation_case::Replace;
using testing::ElementsAre;
using testing::IsEmpty;

static const char kIdentities[] =
    "<identity name='base'/><identity name='one'><base name='base'/></identity>"
    "<identity name='two'><base name='base'/></identity>";

static std::string IdentityLeaf(const std::string& keyword, const std::string& body = "") {
  return std::string(kIdentities) + "<" + keyword +
         " name='n'><type name='identityref'><base name='base'/></type>" + body + "</" + keyword +
         ">";
}

static std::string Defaults(const QmsDeviate* deviate) {
  std::string text;
  for (uint32_t i = 0; i < deviate->defaultCount; ++i)
    text += (i == 0 ? "" : ",") + std::string(deviate->defaults[i]);
  return text;
}

TEST(RefreshDeviateDefaults, PrefixesOfIdentitiesBecomeModuleNames) {
  const Case leaf(IdentityLeaf("leaf"), Add(Default("t:one")));
  EXPECT_EQ("leaf n default:t:one", leaf.Node());
  const Case list(IdentityLeaf("leaf-list"), Add(Default("t:one") + Default("t:two")));
  EXPECT_EQ("leaf-list n default:t:one,t:two", list.Node());
  // A value without prefix names an identity of the deviating module.
  const Case own(IdentityLeaf("leaf"), Add(Default("one")));
  EXPECT_EQ("leaf n default:d:one", own.Node());
}

TEST(RefreshDeviateDefaults, AppliesToEveryDeviate) {
  const Case deleted(IdentityLeaf("leaf", Default("one")), Delete(Default("t:one")));
  EXPECT_EQ("leaf n", deleted.Node());
  const Case replaced(IdentityLeaf("leaf", Default("one")), Replace(Default("t:two")));
  EXPECT_EQ("leaf n default:t:two", replaced.Node());
}

TEST(RefreshDeviateDefaults, AReplacementTypeDecidesBeforeTheTypeOfTheTarget) {
  const Case away(IdentityLeaf("leaf", Default("one")),
                  Replace("<type name='string'/>" + Default("plain")));
  EXPECT_EQ("leaf n default:plain", away.Node());
  const Case to(
      std::string(kIdentities) + Leaf(Default("x")),
      Replace("<type name='identityref'><base name='t:base'/></type>" + Default("t:one")));
  EXPECT_EQ("leaf n default:t:one", to.Node());
}

TEST(RefreshDeviateDefaults, OtherTypesAndKindsAreLeftAsTheyAre) {
  const Case leaf(Leaf(), Add(Default("x:one")));
  EXPECT_EQ("leaf n default:x:one", leaf.Node());
  EXPECT_EQ(0u, leaf.Deviation()->deviates[0].defaultsRewritten);
  const Case container(Container(), Add(Default("x:one")));
  EXPECT_EQ("x:one", Defaults(&container.Deviation()->deviates[0]));
}

TEST(RefreshDeviateDefaults, AnUnknownPrefixGives22AndNothingIsRewritten) {
  const Case deviation(IdentityLeaf("leaf-list"), Add(Default("t:one") + Default("x:two")));
  QmsDeviate* deviate = &deviation.Deviation()->deviates[0];
  EXPECT_FALSE(deviation.IsApplied());
  EXPECT_THAT(deviation.Messages(), IsEmpty());
  EXPECT_EQ(QM_INVALID,
            QMS_MOD_RefreshDeviateDefaults(deviation.Deviating(), deviation.Target(), deviate));
  EXPECT_EQ("t:one,x:two", Defaults(deviate));
  EXPECT_EQ(0u, deviate->defaultsRewritten);
}

TEST(RefreshDeviateDefaults, WhatIsRewrittenIsNotRewrittenAgain) {
  // The module's name is no prefix of d: a second run would not know it.
  yin::Context ctx;
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, yin::Module("t2", IdentityLeaf("leaf")).c_str()));
  ASSERT_EQ(QM_OK,
            QM_CTX_LoadMemory(ctx, yin::Module("d",
                                               "<import module='t2'><prefix value='p'/></import>"
                                               "<deviation target-node='/p:n'>" +
                                                   Add(Default("p:one")) + "</deviation>")
                                       .c_str()));
  QmsModule* d = QM_CTX_GetModuleByModName(ctx, "d");
  QmsDeviate* deviate = &d->deviations[0].deviates[0];
  QmsNode* target = QM_CTX_GetModuleByModName(ctx, "t2")->dataNodes;
  EXPECT_EQ("t2:one", Defaults(deviate));
  EXPECT_EQ(1u, deviate->defaultsRewritten);
  EXPECT_EQ(QM_OK, QMS_MOD_RefreshDeviateDefaults(d, target, deviate));
  EXPECT_EQ("t2:one", Defaults(deviate));
}

TEST(RefreshDeviateDefaults, WithoutMemoryItGives22AndNothingIsRewritten) {
  const Case deviation(IdentityLeaf("leaf-list"), "");
  const Case source(Leaf(), Add(Default("t:one") + Default("t:two")));
  QmsDeviate* deviate = &source.Deviation()->deviates[0];
  uint64_t n = 1;
  for (;; ++n) {
    SCOPED_TRACE(n);
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    const uint32_t ret =
        QMS_MOD_RefreshDeviateDefaults(source.Deviating(), deviation.Target(), deviate);
    if (counting_memory::StopRefusing() == 0) {
      EXPECT_EQ(QM_OK, ret);
      break;
    }
    EXPECT_EQ(QM_INVALID, ret);
    EXPECT_EQ("t:one,t:two", Defaults(deviate));
    EXPECT_EQ(0u, deviate->defaultsRewritten);
  }
  EXPECT_GT(n, 3u);
  EXPECT_EQ(1u, deviate->defaultsRewritten);
}

static uint32_t AnswerSeven(QmCtx*, QmsNode*) {
  return 7;
}

TEST(NotifyBeforeExtInstsChange, GivesTheAnswerOfTheHook) {
  const Case deviation(Container(), "");
  EXPECT_EQ(QM_OK, QMS_NODE_NotifyBeforeExtInstsChange(deviation.Target()));
  QM_CTX_SetBeforeDeviateExtInstFunc(deviation.ctx(), AnswerSeven);
  EXPECT_EQ(7u, QMS_NODE_NotifyBeforeExtInstsChange(deviation.Target()));
  EXPECT_EQ(QM_INVALID, QMS_NODE_NotifyBeforeExtInstsChange(nullptr));
}

TEST(DeviateMessages, AModuleKeepsItsFirstTwo) {
  const Case deviation(Leaf(), Delete(Default("a")) + Delete(Default("b")));
  EXPECT_THAT(deviation.Messages(),
              ElementsAre("Failed to delete default from leaf node \"n\" without default value.",
                          "Failed to delete default from node \"n\"."));
}
