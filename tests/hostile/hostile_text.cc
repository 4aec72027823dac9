// SPDX-License-Identifier: BSD-3-Clause
#include "tests/hostile/hostile_text.h"

#include <gtest/gtest.h>
#include <qmodel/error.h>

std::string Repeat(const std::string& text, size_t times) {
  std::string out;
  out.reserve(text.size() * times);
  for (size_t i = 0; i < times; ++i) out += text;
  return out;
}

std::string Numbered(const std::string& before, const std::string& after, size_t count) {
  std::string out;
  for (size_t i = 0; i < count; ++i) out += before + std::to_string(i) + after;
  return out;
}

static uint32_t AddLine(const char* module, const char* /*file*/, const char* message, void* arg) {
  *static_cast<std::string*>(arg) += std::string(module) + ": " + message + "\n";
  return 0;
}

std::string LoadErrorLines(QmCtx* ctx) {
  std::string lines;
  EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx, AddLine, &lines));
  return lines;
}

uint32_t LoadBesideOther(const std::string& text, std::string* errors) {
  QmCtx* ctx = QM_CTX_Create(QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS);
  EXPECT_EQ(QM_OK,
            QM_CTX_LoadMemory(
                ctx, yin_text::Module("ok", "<leaf name='x'><type name='int8'/></leaf>").c_str()));
  const uint32_t status = QM_CTX_LoadMemory(ctx, text.c_str());
  if (errors != nullptr) *errors = LoadErrorLines(ctx);
  QmsNode* leaf = QM_CTX_GetTargetNode(ctx, "/ok:x", nullptr);
  EXPECT_EQ(QM_OK, QM_NODE_ValidateValue(leaf, QM_INPUT_TEXT, "5"));
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx, "m"));
  QM_CTX_Delete(ctx);
  return status;
}

static QmCtx* Load(const std::string& module) {
  QmCtx* ctx = QM_CTX_Create(0);
  EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, module.c_str())) << LoadErrorLines(ctx);
  return ctx;
}

bool IsValidRequest(const std::string& module, const std::string& request) {
  QmCtx* ctx = Load(module);
  std::string copy = request;
  QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, copy.data(), nullptr, nullptr);
  const bool valid = err == nullptr;
  QM_FreeErrNode(err);
  QM_CTX_Delete(ctx);
  return valid;
}

bool IsValidNotification(const std::string& module, const std::string& text) {
  QmCtx* ctx = Load(module);
  const uint32_t status = QM_CTX_ValidateNotifDataTree(ctx, text.c_str(), nullptr, nullptr);
  QM_CTX_Delete(ctx);
  return status == QM_OK;
}
