// SPDX-License-Identifier: BSD-3-Clause
#include "tests/stack/deep_model.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/support/small_stack.h"
#include "tests/support/yin_text.h"

namespace deep_model {

size_t OnSmallStack(const std::function<void()>& body) {
  const size_t used = small_stack::Run(body);
  testing::Test::RecordProperty("stack_bytes", std::to_string(used));
  std::printf("%zu bytes of stack\n", used);
  return used;
}

std::string Repeat(const std::string& text, size_t times) {
  std::string out;
  for (size_t i = 0; i < times; ++i) out += text;
  return out;
}

std::string Nested(size_t depth, const std::string& open, const std::string& close,
                   const std::string& inner) {
  return Repeat(open, depth) + inner + Repeat(close, depth);
}

std::string PathInInput(size_t depth) {
  return "/m:r/input" + Repeat("/c", depth);
}

std::string PathInNotification(size_t depth) {
  return "/m:n" + Repeat("/c", depth);
}

static std::string Containers(size_t depth, const std::string& inner) {
  return Nested(depth, "<container name='c'>", "</container>", inner);
}

static std::string Augments(const std::function<std::string(size_t)>& path, size_t depth,
                            const std::string& inner) {
  constexpr size_t kStep = kTextLevels - 4;
  std::string out;
  for (size_t done = 0; done < depth; done += kStep) {
    const bool isLast = depth - done <= kStep;
    out += "<augment target-node='" + path(done) + "'>" +
           Containers(std::min(kStep, depth - done), isLast ? inner : "") + "</augment>";
  }
  return out;
}

std::string SelfAugmentedModule(size_t depth, const std::string& inner) {
  return Module("m", "<rpc name='r'><input/></rpc><notification name='n'/>" +
                         Augments(PathInInput, depth, inner) +
                         Augments(PathInNotification, depth, inner));
}

static uint32_t AppendError(const char* modName, const char*, const char* message, void* text) {
  *static_cast<std::string*>(text) += std::string(modName) + ": " + message + "\n";
  return 0;
}

std::string LoadErrors(QmCtx* ctx) {
  std::string text;
  static_cast<void>(QM_CTX_ScanAllSchemaLoadFail(ctx, AppendError, &text));
  return text;
}

std::string Verdict(QmErrNode* err) {
  if (err == nullptr) return "valid";
  const char* message = QM_GetErrorMessage(err);
  std::string verdict = message == nullptr ? "no message" : message;
  QM_FreeErrNode(err);
  return verdict;
}

Folder::Folder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "deep-XXXXXX").string();
  if (mkdtemp(pattern.data()) != nullptr) dir_ = pattern;
  EXPECT_FALSE(dir_.empty()) << "no directory for the files of the test";
}

Folder::~Folder() {
  std::error_code ignored;
  if (!dir_.empty()) std::filesystem::remove_all(dir_, ignored);
}

void Folder::Write(const std::string& file, const std::string& text) const {
  std::ofstream out(dir_ + "/" + file, std::ios::binary);
  out << text;
  EXPECT_TRUE(out.good());
}

}  // namespace deep_model
