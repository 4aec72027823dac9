// SPDX-License-Identifier: BSD-3-Clause
#include "schema/definitions.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "context/array.h"
#include "context/dict.h"
#include "context/memory.h"
#include "schema/ext_inst.h"
#include "schema/module.h"
#include "schema/node_array.h"
#include "schema/typedef.h"
#include "tests/support/counting_memory.h"
#include "tests/support/module_builder.h"
#include "tests/support/module_fixture.h"
#include "types/type.h"

namespace {

using counting_memory::Refuse;
using module_builder::MakeDerived;
using module_builder::NewModule;
using module_builder::References;

// Refuses the n-th allocation from now and gives what `step` returns.
template <typename Step>
uint32_t WithRefusal(uint64_t n, Step step) {
  counting_memory::RefuseNth(n, Refuse::kOnce);
  const uint32_t ret = step();
  EXPECT_EQ(1u, counting_memory::StopRefusing()) << "the step made fewer allocations";
  return ret;
}

using Definitions = module_fixture::OneModule;

TEST_F(Definitions, AppendedElementsStandInOrderAndAreFound) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(module_, "a", "pa"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneImport(module_, "b", "pb"));
  ASSERT_EQ(2, module_->importCount);
  EXPECT_STREQ("a", module_->imports[0].moduleName);
  EXPECT_EQ(&module_->imports[1], QMS_MOD_FindImportByPrefix(module_->imports, 2, "pb"));
  EXPECT_EQ(nullptr, QMS_MOD_FindImportByPrefix(module_->imports, 1, "pb"));

  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneInclude(module_, "s"));
  EXPECT_EQ(&module_->includes[0], QMS_MOD_FindIncludeBySubName(module_->includes, 1, "s"));

  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module_, "f"));
  EXPECT_EQ(&module_->features[0], QMS_MOD_FindFeatureByName(module_, "f"));
  EXPECT_EQ(0, module_->features[0].flags);

  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneIdentity(module_, "i"));
  EXPECT_EQ(&module_->identities[0], QMS_MOD_FindIdentityByName(module_, "i"));

  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneExtension(module_, "e", nullptr, 1));
  EXPECT_EQ(&module_->extensions[0], QMS_MOD_FindExtensionByName(module_, "e"));
  EXPECT_EQ(nullptr, module_->extensions[0].argument);
  EXPECT_EQ(1u, module_->extensions[0].yinElement);

  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneDeviation(module_, "/a:b"));
  EXPECT_STREQ("/a:b", module_->deviations[0].targetPath);
  EXPECT_EQ(nullptr, module_->deviations[0].deviates);

  QmtType type = {};
  type.baseType = QMT_BASE_INT8;
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneTypeDef(module_, "t", &type, "5"));
  EXPECT_EQ(&module_->typedefs[0], QMS_MOD_FindQmsTypDefByName(module_, "t"));
  EXPECT_EQ(&module_->typedefs[0], QMS_MOD_FindTypDefObjByName(module_->typedefs, 1, "t"));
  EXPECT_STREQ("5", module_->typedefs[0].defaultValue);
  EXPECT_EQ(nullptr, module_->typedefs[0].units);
  EXPECT_EQ(uint32_t{QMT_BASE_INT8}, module_->typedefs[0].type.baseType);
}

TEST_F(Definitions, NullModuleAndModuleWithoutContextAreRefusedWith22) {
  QmtType type = {};
  QmsModule bare = {};
  for (QmsModule* module : {static_cast<QmsModule*>(nullptr), &bare}) {
    EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneImport(module, "a", "b"));
    EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneInclude(module, "a"));
    EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneFeature(module, "a"));
    EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneIdentity(module, "a"));
    EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneExtension(module, "a", nullptr, 0));
    EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneDeviation(module, "/a"));
    EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneTypeDef(module, "a", &type, nullptr));
  }
}

TEST_F(Definitions, MissingTextIsRefusedWith22AndNothingIsCounted) {
  QmtType type = {};
  EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneImport(module_, nullptr, "p"));
  EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneImport(module_, "a", nullptr));
  EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneInclude(module_, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneFeature(module_, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneIdentity(module_, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneExtension(module_, nullptr, "x", 0));
  EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneDeviation(module_, nullptr));
  EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneTypeDef(module_, nullptr, &type, nullptr));
  QmsIdentBase base = {};
  EXPECT_EQ(QM_INVALID, QMS_MOD_FillIdentBase(dict_, &base, nullptr, "x"));
  EXPECT_EQ(QM_INVALID, QMS_MOD_FillIdentBase(dict_, &base, "x", nullptr));
  EXPECT_EQ(0, module_->importCount + module_->includeCount + module_->featureCount +
                   module_->identityCount + module_->extensionCount + module_->deviationCount +
                   module_->typedefCount);
  // A text that was taken before the other one was missed is given back.
  EXPECT_EQ(0u, References(dict_, "a"));
}

TEST_F(Definitions, AppendWorksAfterAFailedFirstOne) {
  EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneImport(module_, "a", nullptr));
  EXPECT_EQ(QM_OK, QMS_MOD_AppendOneImport(module_, "a", "p"));
  EXPECT_EQ(1, module_->importCount);
}

TEST_F(Definitions, FailedAppendKeepsWhatWasThere) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module_, "kept"));
  for (uint64_t n = 1; n <= 3; ++n) {  // the array, the dictionary entry, its text
    EXPECT_EQ(QM_NO_MEMORY,
              WithRefusal(n, [&] { return QMS_MOD_AppendOneFeature(module_, "lost"); }));
    EXPECT_EQ(1, module_->featureCount);
    EXPECT_STREQ("kept", module_->features[0].name);
    EXPECT_EQ(nullptr, QMS_MOD_FindFeatureByName(module_, "lost"));
  }
  EXPECT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module_, "lost"));
  EXPECT_EQ(2, module_->featureCount);
}

TEST_F(Definitions, FullCounterIsRefusedWith22) {
  ASSERT_EQ(QM_OK, NewArrayOf(&module_->includes, 65535));
  module_->includeCount = 65534;
  EXPECT_EQ(QM_OK, QMS_MOD_AppendOneInclude(module_, "last"));
  EXPECT_EQ(65535, module_->includeCount);
  EXPECT_EQ(QM_INVALID, QMS_MOD_AppendOneInclude(module_, "one more"));
  EXPECT_EQ(65535, module_->includeCount);
  EXPECT_STREQ("last", module_->includes[65534].submoduleName);
}

TEST_F(Definitions, FailedInterningHasTheStatusOfItsFamily) {
  QmsImport import = {};
  QmsInclude include = {};
  QmsFeature feature = {};
  QmsIdentity identity = {};
  QmsIdentBase base = {};
  QmsExtension ext = {};
  QmsTypedef td = {};
  QmsDeviation dev = {};
  QmtType type = {};
  // Each text takes two blocks: the third allocation belongs to the second text.
  for (uint64_t n : {1u, 3u}) {
    EXPECT_EQ(QM_INVALID,
              WithRefusal(n, [&] { return QMS_MOD_FillImport(dict_, &import, "x", "y"); }));
    EXPECT_EQ(QM_NO_MEMORY,
              WithRefusal(n, [&] { return QMS_MOD_FillIdentBase(dict_, &base, "x", "y"); }));
    EXPECT_EQ(QM_NO_MEMORY,
              WithRefusal(n, [&] { return QMS_MOD_SetExtension(dict_, &ext, "x", "y", 1); }));
    EXPECT_EQ(QM_NO_MEMORY,
              WithRefusal(n, [&] { return QMS_MOD_FillTypeDef(dict_, &td, "x", &type, "y"); }));
  }
  EXPECT_EQ(QM_NO_MEMORY,
            WithRefusal(1, [&] { return QMS_MOD_FillInclude(dict_, &include, "x"); }));
  EXPECT_EQ(QM_NO_MEMORY,
            WithRefusal(1, [&] { return QMS_MOD_FillFeature(dict_, &feature, "x"); }));
  EXPECT_EQ(QM_NO_MEMORY,
            WithRefusal(1, [&] { return QMS_MOD_FillIdentity(dict_, &identity, "x"); }));
  EXPECT_EQ(QM_NO_MEMORY,
            WithRefusal(1, [&] { return QMS_MOD_FillDeviationTargetNode(dict_, &dev, "x"); }));
  EXPECT_EQ(nullptr, import.moduleName);
  EXPECT_EQ(nullptr, base.prefix);
  EXPECT_EQ(nullptr, ext.name);
  EXPECT_EQ(0u, ext.yinElement);
  EXPECT_EQ(nullptr, td.name);
  EXPECT_EQ(0u, References(dict_, "x"));
}

TEST_F(Definitions, FailedTypeCopyGives22AndReleasesNameAndDefault) {
  QmtType type = {};
  ASSERT_TRUE(MakeDerived(dict_, &type, "m", "t"));
  QmsTypedef td = {};
  // Four blocks for the two texts, then the copy of the type.
  EXPECT_EQ(QM_INVALID,
            WithRefusal(5, [&] { return QMS_MOD_FillTypeDef(dict_, &td, "n", &type, "d"); }));
  EXPECT_EQ(nullptr, td.name);
  EXPECT_EQ(nullptr, td.defaultValue);
  EXPECT_EQ(0u, References(dict_, "n"));
  EXPECT_EQ(0u, References(dict_, "d"));
  EXPECT_EQ(QM_INVALID, QMS_MOD_FillTypeDef(dict_, &td, "n", nullptr, nullptr));
  EXPECT_EQ(0u, References(dict_, "n"));
  QMT_TYPE_DestroyQmtRealTypeInner(dict_, &type);
}

TEST_F(Definitions, EachOfManyIsFoundWhereverItsNameIsKept) {
  constexpr int kMany = 40;
  for (int i = 0; i < kMany; ++i)
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module_, ("f" + std::to_string(i)).c_str()));
  const char* interned = module_->features[30].name;
  const char* other = module_->features[31].name;
  module_->features[30].name = "f30";  // made by hand
  module_->features[31].name = nullptr;
  for (int i = 0; i < kMany; ++i) {
    const QmsFeature* expected = i == 31 ? nullptr : &module_->features[i];
    EXPECT_EQ(expected, QMS_MOD_FindFeatureByName(module_, ("f" + std::to_string(i)).c_str())) << i;
  }
  EXPECT_EQ(nullptr, QMS_MOD_FindFeatureByName(module_, "f40"));
  EXPECT_EQ(nullptr, QMS_MOD_FindFeatureByName(module_, nullptr));
  module_->features[30].name = interned;
  module_->features[31].name = other;
}

TEST_F(Definitions, FindersSkipElementsThatHaveNoNameYet) {
  ASSERT_EQ(QM_OK, NewArrayOf(&module_->features, 2));
  module_->featureCount = 2;
  ASSERT_EQ(0u, QMS_MOD_FillFeature(dict_, &module_->features[1], "f"));
  EXPECT_EQ(&module_->features[1], QMS_MOD_FindFeatureByName(module_, "f"));
  EXPECT_EQ(nullptr, QMS_MOD_FindFeatureByName(module_, nullptr));
  EXPECT_EQ(nullptr, QMS_MOD_FindFeatureByName(nullptr, "f"));
  EXPECT_EQ(nullptr, QMS_MOD_FindIdentityByName(nullptr, "f"));
  EXPECT_EQ(nullptr, QMS_MOD_FindExtensionByName(nullptr, "f"));
  EXPECT_EQ(nullptr, QMS_MOD_FindQmsTypDefByName(nullptr, "f"));
  EXPECT_EQ(nullptr, QMS_MOD_FindTypDefObjByName(nullptr, 3, "f"));
}

TEST_F(Definitions, ClearedAndFreedElementsMayBeEmpty) {
  QmsImport import = {};
  QMS_MOD_ClearImport(dict_, &import);
  QmsInclude include = {};
  QMS_MOD_ClearInclude(dict_, &include);
  QmsFeature feature = {};
  QMS_MDL_ClearFeature(dict_, &feature);
  QmsIdentity identity = {};
  QMS_MDL_ClearIdentity(dict_, &identity);
  QmsIdentBase base = {};
  QMS_MDL_ClearIdentBase(dict_, &base);
  QmsExtension ext = {};
  QMS_MDL_ClearExtension(dict_, &ext);
  QmsDeviate deviate = {};
  QMS_MOD_ClearDeviate(dict_, &deviate);
  QmsDeviation deviation = {};
  QMS_MOD_ClearDeviation(dict_, &deviation);
  QmsTypedef td = {};
  QMS_TYPE_DestroyTypDefInner(dict_, &td);
  QMS_MOD_FreeImports(dict_, nullptr, 3);
  QMS_MOD_FreeIncludes(dict_, nullptr, 3);
  QMS_MOD_FreeFeatures(dict_, nullptr, 3);
  QMS_MOD_FreeIdentities(dict_, nullptr, 3);
  QMS_MDL_FreeIdentBases(dict_, nullptr, 3);
  QMS_MOD_FreeExtensions(dict_, nullptr, 3);
  QMS_MOD_FreeDeviation(dict_, nullptr, 3);
  QMS_MOD_FreeDeviate(dict_, nullptr, 3);
  QMS_TYPE_FreeTypDefArray(dict_, nullptr, 3);
}

TEST_F(Definitions, ClearingTwiceTakesNoForeignReference) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneFeature(module_, "f"));
  QmsFeature feature = {};
  ASSERT_EQ(0u, QMS_MOD_FillFeature(dict_, &feature, "f"));
  QMS_MDL_ClearFeature(dict_, &feature);
  QMS_MDL_ClearFeature(dict_, &feature);
  EXPECT_EQ(1u, References(dict_, "f"));
}

TEST_F(Definitions, CopiedBasesHoldReferencesOfTheirOwn) {
  const QmsIdentBase bases[] = {{"m", "x"}, {"n", "y"}};
  QmsIdentBase* copy = QMS_MOD_CopyIdentBaseArray(dict_, bases, 2);
  ASSERT_NE(nullptr, copy);
  EXPECT_STREQ("n", copy[1].prefix);
  EXPECT_STREQ("y", copy[1].name);
  EXPECT_EQ(1u, References(dict_, "y"));
  QMS_MDL_FreeIdentBases(dict_, copy, 2);
  EXPECT_EQ(0u, References(dict_, "y"));
  EXPECT_EQ(nullptr, QMS_MOD_CopyIdentBaseArray(dict_, bases, 0));
  EXPECT_EQ(nullptr, QMS_MOD_CopyIdentBaseArray(dict_, nullptr, 2));
}

// Records of texts that stand for interned ones: comparisons go by pointer.
const char kA[] = "a";
const char kB[] = "b";
const char kOtherA[] = "a";

TEST(CheckSame, FeaturesDifferByNameAndIfFeatures) {
  QmsIfFeature one[] = {{kA, kB}};
  QmsIfFeature two[] = {{kA, kA}};
  const QmsFeature plain = {kA, nullptr, 0, 0};
  const QmsFeature enabled = {kA, nullptr, 0, QMS_FEATURE_ENABLED};
  const QmsFeature renamed = {kOtherA, nullptr, 0, 0};
  const QmsFeature withOne = {kA, one, 1, 0};
  const QmsFeature withTwo = {kA, two, 1, 0};
  EXPECT_EQ(1u, QMS_MOD_CheckTwoFeatureSame(&plain, &enabled));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoFeatureSame(&plain, &renamed));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoFeatureSame(&plain, &withOne));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoFeatureSame(&withOne, &withTwo));
  EXPECT_EQ(1u, QMS_MOD_CheckTwoFeatureSame(&withOne, &withOne));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoFeatureSame(nullptr, &plain));
}

TEST(CheckSame, IdentitiesDifferByNameBasesInOrderAndIfFeatures) {
  QmsIdentBase ab[] = {{kA, kB}, {kB, kA}};
  QmsIdentBase ba[] = {{kB, kA}, {kA, kB}};
  QmsIfFeature feature[] = {{kA, kB}};
  const QmsIdentity base = {kA, 0, 2, nullptr, ab, nullptr};
  const QmsIdentity described = {kA, 0, 2, nullptr, ab, kB};
  const QmsIdentity renamed = {kB, 0, 2, nullptr, ab, nullptr};
  const QmsIdentity swapped = {kA, 0, 2, nullptr, ba, nullptr};
  const QmsIdentity fewer = {kA, 0, 1, nullptr, ab, nullptr};
  const QmsIdentity conditional = {kA, 1, 2, feature, ab, nullptr};
  EXPECT_EQ(1u, QMS_MOD_CheckTwoIdentitySame(&base, &described));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoIdentitySame(&base, &renamed));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoIdentitySame(&base, &swapped));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoIdentitySame(&base, &fewer));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoIdentitySame(&base, &conditional));
  EXPECT_EQ(1u, QMS_MOD_CheckTwoIdentBaseSame(&ab[0], &ba[1]));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoIdentBaseSame(&ab[0], &ba[0]));
  const QmsIdentBase namesake = {kA, kA};
  EXPECT_EQ(0u, QMS_MOD_CheckTwoIdentBaseSame(&ab[0], &namesake)) << "only the prefix is shared";
}

TEST(CheckSame, ExtensionsDifferByEachField) {
  const QmsExtension base = {kA, kB, 1};
  const QmsExtension renamed = {kOtherA, kB, 1};
  const QmsExtension otherArgument = {kA, nullptr, 1};
  const QmsExtension otherElement = {kA, kB, 0};
  EXPECT_EQ(1u, QMS_MOD_CheckTwoExtensionSame(&base, &base));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoExtensionSame(&base, &renamed));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoExtensionSame(&base, &otherArgument));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoExtensionSame(&base, &otherElement));
}

TEST(CheckSame, DeviatesDifferByKindFlagsMustsDefaultsAndUnitsOnly) {
  QmsMust must[] = {{kA, nullptr, nullptr}};
  QmsMust sameCondition[] = {{kA, kB, kB}};
  QmsMust otherCondition[] = {{kB, nullptr, nullptr}};
  const char* defaults[] = {kA, kB};
  const char* swapped[] = {kB, kA};
  QmtType type = {};
  QmsExtInst inst[] = {{kA, kB, nullptr, 0, nullptr}};
  QmsDeviate base = {};
  base.kind = QMS_DEVIATE_ADD;
  base.flags = QMS_NODE_CONFIG_TRUE;
  base.musts = must;
  base.mustCount = 1;
  base.defaults = defaults;
  base.defaultCount = 2;
  base.units = kA;

  QmsDeviate same = base;
  same.musts = sameCondition;
  same.type = &type;
  same.extInsts = inst;
  same.extInstCount = 1;
  EXPECT_EQ(1u, QMS_MOD_CheckTwoDeviateSame(&base, &same));

  QmsDeviate other = base;
  other.kind = QMS_DEVIATE_REPLACE;
  EXPECT_EQ(0u, QMS_MOD_CheckTwoDeviateSame(&base, &other));
  other = base;
  other.flags = 0;
  EXPECT_EQ(0u, QMS_MOD_CheckTwoDeviateSame(&base, &other));
  other = base;
  other.musts = otherCondition;
  EXPECT_EQ(0u, QMS_MOD_CheckTwoDeviateSame(&base, &other));
  other = base;
  other.mustCount = 0;
  EXPECT_EQ(0u, QMS_MOD_CheckTwoDeviateSame(&base, &other));
  other = base;
  other.defaults = swapped;
  EXPECT_EQ(0u, QMS_MOD_CheckTwoDeviateSame(&base, &other));
  other = base;
  other.defaultCount = 1;
  EXPECT_EQ(0u, QMS_MOD_CheckTwoDeviateSame(&base, &other));
  other = base;
  other.units = kOtherA;
  EXPECT_EQ(0u, QMS_MOD_CheckTwoDeviateSame(&base, &other));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoDeviateSame(&base, nullptr));
}

TEST_F(Definitions, EqualDeviationsAreNeverTheSame) {
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneDeviation(module_, "/a:b"));
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneDeviation(module_, "/a:b"));
  EXPECT_EQ(2, module_->deviationCount);
  EXPECT_EQ(0u, QMS_MOD_CheckTwoDeviationSame(&module_->deviations[0], &module_->deviations[1]));
  EXPECT_EQ(0u, QMS_MOD_CheckTwoDeviationSame(&module_->deviations[0], &module_->deviations[0]));
  EXPECT_EQ(0u, QMS_MOD_CheckSameDeviationExist(module_, &module_->deviations[0]));
  EXPECT_EQ(0u, QMS_MOD_CheckSameDeviationExist(nullptr, &module_->deviations[0]));
}

class Deviates : public Definitions {
 protected:
  // A deviate with something in every place; its texts are literals.
  void SetUp() override {
    Definitions::SetUp();
    ASSERT_TRUE(MakeDerived(dict_, &type_, "m", "t"));
    source_.kind = QMS_DEVIATE_REPLACE;
    source_.flags = QMS_NODE_CONFIG_FALSE;
    source_.musts = musts_;
    source_.mustCount = 2;
    source_.defaults = defaults_;
    source_.defaultCount = 2;
    source_.type = &type_;
    source_.units = "u";
    source_.extInsts = insts_;
    source_.extInstCount = 1;
    source_.defaultsRewritten = 1;
  }
  void TearDown() override {
    QMT_TYPE_DestroyQmtRealTypeInner(dict_, &type_);
    Definitions::TearDown();
  }

  QmsMust musts_[2] = {{"c1", "msg", nullptr}, {"c2", nullptr, "tag"}};
  const char* defaults_[2] = {"d1", "d2"};
  QmtType type_ = {};
  QmsExtInst nested_[1] = {{"x", "inner", nullptr, 0, nullptr}};
  QmsExtInst insts_[1] = {{"x", "outer", "arg", 1, nested_}};
  QmsDeviate source_ = {};
};

TEST_F(Deviates, FillCopiesAllButTheExtensionInstances) {
  QmsDeviate copy = {};
  ASSERT_EQ(QM_OK, QMS_MOD_FillDeviate(dict_, &copy, &source_));
  EXPECT_EQ(uint32_t{QMS_DEVIATE_REPLACE}, copy.kind);
  EXPECT_EQ(QMS_NODE_CONFIG_FALSE, copy.flags);
  EXPECT_EQ(1, copy.defaultsRewritten);
  ASSERT_EQ(2, copy.mustCount);
  EXPECT_STREQ("c2", copy.musts[1].condition);
  EXPECT_STREQ("tag", copy.musts[1].errorAppTag);
  ASSERT_EQ(2, copy.defaultCount);
  EXPECT_STREQ("d2", copy.defaults[1]);
  EXPECT_STREQ("u", copy.units);
  ASSERT_NE(nullptr, copy.type);
  EXPECT_NE(&type_, copy.type);
  EXPECT_EQ(nullptr, copy.extInsts);
  EXPECT_EQ(0, copy.extInstCount);
  QMS_MOD_ClearDeviate(dict_, &copy);
  EXPECT_EQ(0u, References(dict_, "c2"));
  EXPECT_EQ(nullptr, copy.type);
  EXPECT_EQ(0u, copy.kind);
}

TEST_F(Deviates, ArrayCopyHoldsTheExtensionInstancesToo) {
  QmsDeviate* copy = QMS_MOD_CopyDeviateArray(dict_, &source_, 1);
  ASSERT_NE(nullptr, copy);
  ASSERT_EQ(1, copy->extInstCount);
  EXPECT_STREQ("outer", copy->extInsts[0].name);
  ASSERT_EQ(1, copy->extInsts[0].childCount);
  EXPECT_STREQ("inner", copy->extInsts[0].children[0].name);
  QMS_MOD_FreeDeviate(dict_, copy, 1);
  EXPECT_EQ(0u, References(dict_, "inner"));
}

// The texts are literals, so that each copy of one needs memory of its own.
TEST_F(Deviates, FailedArrayCopyGivesNullAndHoldsNothing) {
  const QmsDeviate sources[2] = {source_, source_};
  uint64_t n = 1;
  for (bool refused = true; refused; ++n) {
    SCOPED_TRACE(n);
    const size_t before = counting_memory::LiveBlocks();
    counting_memory::RefuseNth(n, Refuse::kOnce);
    QmsDeviate* copy = QMS_MOD_CopyDeviateArray(dict_, sources, 2);
    refused = counting_memory::StopRefusing() != 0;
    EXPECT_EQ(refused, copy == nullptr);
    QMS_MOD_FreeDeviate(dict_, copy, 2);
    EXPECT_EQ(before, counting_memory::LiveBlocks());
    for (const char* text : {"c1", "msg", "d2", "u", "outer", "inner"}) {
      EXPECT_EQ(0u, References(dict_, text)) << text;
    }
  }
  EXPECT_GT(n, 20u);
}

TEST_F(Deviates, FailedFillGives12AndLeavesTheElementClear) {
  uint64_t failures = 0;
  for (uint64_t n = 1;; ++n) {
    SCOPED_TRACE(n);
    QmsDeviate copy = {};
    counting_memory::RefuseNth(n, Refuse::kOnce);
    const uint32_t ret = QMS_MOD_FillDeviate(dict_, &copy, &source_);
    if (counting_memory::StopRefusing() == 0) {
      EXPECT_EQ(QM_OK, ret);
      QMS_MOD_ClearDeviate(dict_, &copy);
      break;
    }
    ++failures;
    EXPECT_EQ(QM_NO_MEMORY, ret);
    EXPECT_EQ(0u, copy.kind);
    EXPECT_EQ(nullptr, copy.musts);
    EXPECT_EQ(nullptr, copy.defaults);
    EXPECT_EQ(nullptr, copy.type);
    EXPECT_EQ(0u, References(dict_, "c1"));
  }
  EXPECT_GT(failures, 10u);
  QmsDeviate unused = {};
  EXPECT_EQ(QM_INVALID, QMS_MOD_FillDeviate(dict_, &unused, nullptr));
}

TEST_F(Deviates, CountWithoutArrayIsCopiedAsEmpty) {
  source_.defaults = nullptr;
  QmsDeviate copy = {};
  ASSERT_EQ(QM_OK, QMS_MOD_FillDeviate(dict_, &copy, &source_));
  EXPECT_EQ(nullptr, copy.defaults);
  EXPECT_EQ(0, copy.defaultCount);
  QMS_MOD_ClearDeviate(dict_, &copy);
}

// Builds one element of each family; every failure is reported, nothing leaks.
void BuildEverything(bool refusing) {
  QmCtx* ctx = QM_CTX_Create(0);
  if (ctx == nullptr) return;
  QmsModule* module = NewModule(ctx, "m");
  if (module != nullptr) {
    QmtType type = {};
    type.baseType = QMT_BASE_INT8;
    QmsMust must = {"c", "e", "t"};
    uint32_t failed = 0;
    for (const char* name : {"a", "b"}) {
      failed += QMS_MOD_AppendOneImport(module, name, name) != 0;
      failed += QMS_MOD_AppendOneInclude(module, name) != 0;
      failed += QMS_MOD_AppendOneFeature(module, name) != 0;
      failed += QMS_MOD_AppendOneIdentity(module, name) != 0;
      failed += QMS_MOD_AppendOneExtension(module, name, "argument", 0) != 0;
      failed += QMS_MOD_AppendOneTypeDef(module, name, &type, "1") != 0;
      failed += QMS_MOD_AppendOneDeviation(module, name) != 0;
    }
    QmsDeviate deviate = {};
    deviate.musts = &must;
    deviate.mustCount = 1;
    QmsDeviate* copy = QMS_MOD_CopyDeviateArray(&ctx->dict, &deviate, 1);
    failed += copy == nullptr;
    QMS_MOD_FreeDeviate(&ctx->dict, copy, 1);
    EXPECT_EQ(14u - failed + (copy == nullptr ? 1 : 0),
              0u + module->importCount + module->includeCount + module->featureCount +
                  module->identityCount + module->extensionCount + module->typedefCount +
                  module->deviationCount);
    if (!refusing) {
      EXPECT_EQ(0u, failed);
    }
  }
  QMS_MOD_Free(module);
  QM_CTX_Delete(ctx);
}

TEST(DefinitionsWithoutMemory, EveryFailureIsReportedAndNothingLeaks) {
  EXPECT_GT(counting_memory::FailEachAllocation(BuildEverything), 50u);
}

}  // namespace
