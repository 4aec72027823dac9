// SPDX-License-Identifier: BSD-3-Clause
#include "schema/typedef.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <vector>

#include "context/dict.h"
#include "schema/definitions.h"
#include "schema/module.h"
#include "tests/support/module_builder.h"
#include "tests/support/module_fixture.h"
#include "types/type.h"

namespace {

using module_builder::AddChild;
using module_builder::AddTop;
using module_builder::MakeDerived;
using module_builder::ResolvedOf;
using module_builder::TypeOfLeaf;

class ResolvedTypedefs : public module_fixture::OneModule {
 protected:
  // A typedef "base", and one of each kind of place that can point to it.
  void SetUp() override {
    OneModule::SetUp();
    QmtType plain = {};
    plain.baseType = QMT_BASE_INT8;
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneTypeDef(module_, "base", &plain, nullptr));
    QmtType derived = {};
    ASSERT_TRUE(MakeDerived(dict_, &derived, "m", "base"));
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneTypeDef(module_, "next", &derived, nullptr));
    QmsNode* container = AddTop(module_, QMS_NODE_CONTAINER, "c");
    data_ = TypeOfLeaf(AddChild(AddChild(container, QMS_NODE_CHOICE, "ch"), QMS_NODE_LEAF, "l"));
    rpc_ = TypeOfLeaf(AddChild(
        AddChild(AddTop(module_, QMS_NODE_RPC, "r"), QMS_NODE_INPUT, "input"), QMS_NODE_LEAF, "l"));
    notif_ = TypeOfLeaf(AddChild(AddTop(module_, QMS_NODE_NOTIFICATION, "n"), QMS_NODE_LEAF, "l"));
    augment_ = TypeOfLeaf(AddChild(AddTop(module_, QMS_NODE_AUGMENT, "/x:y"), QMS_NODE_LEAF, "l"));
    for (QmtType* type : {data_, rpc_, notif_, augment_}) {
      ASSERT_TRUE(MakeDerived(dict_, type, "m", "base"));
    }
    ASSERT_EQ(QM_OK, QMS_MOD_AppendOneDeviation(module_, "/x:y"));
    QmsDeviate deviate = {};
    deviate.kind = QMS_DEVIATE_REPLACE;
    deviate.type = &derived;
    module_->deviations[0].deviates = QMS_MOD_CopyDeviateArray(dict_, &deviate, 1);
    ASSERT_NE(nullptr, module_->deviations[0].deviates);
    module_->deviations[0].deviateCount = 1;
    deviate_ = module_->deviations[0].deviates[0].type;
    QMT_TYPE_DestroyQmtRealTypeInner(dict_, &derived);
    ResolveAll();
  }
  void ResolveAll() {
    for (QmtType* type : All()) {
      ASSERT_EQ(QM_OK, QMT_TYPE_UpdateRealTypeDerivedFrom(type, module_));
      ASSERT_EQ(&module_->typedefs[0].type, ResolvedOf(type));
    }
  }
  std::vector<QmtType*> All() {
    return {data_, rpc_, notif_, augment_, deviate_, &module_->typedefs[1].type};
  }

  QmtType* data_ = nullptr;
  QmtType* rpc_ = nullptr;
  QmtType* notif_ = nullptr;
  QmtType* augment_ = nullptr;
  QmtType* deviate_ = nullptr;
};

TEST_F(ResolvedTypedefs, AppendForgetsEveryPointerIntoTheArrayItMoves) {
  QmtType plain = {};
  plain.baseType = QMT_BASE_STRING;
  ASSERT_EQ(QM_OK, QMS_MOD_AppendOneTypeDef(module_, "third", &plain, nullptr));
  for (QmtType* type : All()) EXPECT_EQ(nullptr, ResolvedOf(type));
  ResolveAll();
}

TEST_F(ResolvedTypedefs, PointersToOtherModulesStay) {
  QmtType foreign = {};
  static_cast<QmtConsDerived*>(data_->cons[0].body)->resolved = &foreign;
  const char* ownName = module_->name;
  ASSERT_TRUE(
      InternText(dict_, &static_cast<QmtConsDerived*>(data_->cons[0].body)->moduleName, "other"));
  ClearResolvedTypedefs(module_);
  EXPECT_STREQ("m", ownName);
  EXPECT_EQ(&foreign, ResolvedOf(data_));
  EXPECT_EQ(nullptr, ResolvedOf(rpc_));
}

TEST_F(ResolvedTypedefs, DestroyedDefinitionsLeaveNoPointerInTheNodes) {
  QMS_MOD_DestroyNonNodeMember(module_);
  for (QmtType* type : {data_, rpc_, notif_, augment_}) EXPECT_EQ(nullptr, ResolvedOf(type));
}

TEST_F(ResolvedTypedefs, NothingHappensWithoutModuleNameOrTypedefs) {
  ClearResolvedTypedefs(nullptr);
  QmsModule bare = {};
  ClearResolvedTypedefs(&bare);
  EXPECT_NE(nullptr, ResolvedOf(data_));
}

}  // namespace
