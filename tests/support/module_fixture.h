// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <gtest/gtest.h>
#include <qmodel/context.h>

#include "context/records.h"
#include "schema/module.h"
#include "tests/support/module_builder.h"

namespace module_fixture {

// A context and the record of an empty module "m" in it, which the registry does
// not know.
class OneModule : public testing::Test {
 protected:
  void SetUp() override {
    ctx_ = QM_CTX_Create(0);
    ASSERT_NE(nullptr, ctx_);
    dict_ = &ctx_->dict;
    module_ = module_builder::NewModule(ctx_, "m");
    ASSERT_NE(nullptr, module_);
  }
  void TearDown() override {
    QMS_MOD_Free(module_);
    QM_CTX_Delete(ctx_);
  }

  QmCtx* ctx_ = nullptr;
  QmDict* dict_ = nullptr;
  QmsModule* module_ = nullptr;
};

}  // namespace module_fixture
