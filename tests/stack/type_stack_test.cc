// SPDX-License-Identifier: BSD-3-Clause
// Values against types that are as deep as a check goes: nested unions, chains of
// typedefs, both at once, chains of identities and of leafrefs.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include "tests/stack/deep_model.h"

namespace {

using deep_model::Nested;
using deep_model::OnSmallStack;

std::string Name(const char* base, size_t number) {
  return base + std::to_string(number);
}

std::string Typedef(const std::string& name, const std::string& type) {
  return "<typedef name='" + name + "'>" + type + "</typedef>";
}

std::string TypeOf(const std::string& name) {
  return "<type name='" + name + "'/>";
}

std::string LeafX(const std::string& type) {
  return "<leaf name='x'>" + type + "</leaf>";
}

// Loads `body` and checks "v" against the leaf x, as a text and in a request.
uint32_t CheckValue(const std::string& body) {
  uint32_t status = 1;
  OnSmallStack([&] {
    QmCtx* ctx = QM_CTX_Create(0);
    EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, deep_model::Module("m", body).c_str()));
    EXPECT_EQ("", deep_model::LoadErrors(ctx));
    QmsNode* x = QM_CTX_GetTargetNode(ctx, "/m:x", nullptr);
    status = QM_NODE_ValidateValue(x, QM_INPUT_TEXT, "v");
    EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx, "m"));
    QM_CTX_Delete(ctx);
  });
  return status;
}

std::string Unions(size_t depth) {
  return Nested(depth, "<type name='union'>", "</type>", TypeOf("string"));
}

TEST(DeepType, UnionsAreCheckedTo128Levels) {
  EXPECT_EQ(QM_OK, CheckValue(LeafX(Unions(128))));
  EXPECT_EQ(QM_VALUE_BAD_UNION, CheckValue(LeafX(Unions(129))));
  EXPECT_EQ(QM_VALUE_BAD_UNION, CheckValue(LeafX(Unions(250))));
}

// `links` typedefs t<first>, t<first + 1> and so on, the last of them of type `last`.
std::string TypedefChain(size_t first, size_t links, const std::string& last) {
  std::string out;
  for (size_t i = first; i + 1 < first + links; ++i)
    out += Typedef(Name("t", i), TypeOf(Name("t", i + 1)));
  return out + Typedef(Name("t", first + links - 1), last);
}

TEST(DeepType, TypedefsAreFollowedFor129Links) {
  EXPECT_EQ(QM_OK, CheckValue(TypedefChain(0, 129, TypeOf("string")) + LeafX(TypeOf("t0"))));
  EXPECT_NE(QM_OK, CheckValue(TypedefChain(0, 130, TypeOf("string")) + LeafX(TypeOf("t0"))));
  EXPECT_NE(QM_OK, CheckValue(TypedefChain(0, 5000, TypeOf("string")) + LeafX(TypeOf("t0"))));
}

// Of a check of the leaf x alone, since a load may take more.
size_t StackOfCheck(const std::string& body) {
  QmCtx* ctx = QM_CTX_Create(0);
  EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, deep_model::Module("m", body).c_str()));
  QmsNode* x = QM_CTX_GetTargetNode(ctx, "/m:x", nullptr);
  const auto check = [x] { EXPECT_EQ(QM_OK, QM_NODE_ValidateValue(x, QM_INPUT_TEXT, "v")); };
  check();  // the first call of a function may take stack to find it
  const size_t used = OnSmallStack(check);
  QM_CTX_Delete(ctx);
  return used;
}

size_t StackOfLoad(const std::string& body) {
  const std::string text = deep_model::Module("m", body);
  const auto load = [&text] {
    QmCtx* ctx = QM_CTX_Create(0);
    EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, text.c_str()));
    QM_CTX_Delete(ctx);
  };
  load();
  return OnSmallStack(load);
}

TEST(DeepType, OneLevelTakesLittleStack) {
  constexpr size_t kBytesOfUnion = size_t{224} * QMODEL_STACK_FACTOR;
  constexpr size_t kBytesOfTypedef = size_t{128} * QMODEL_STACK_FACTOR;
  const size_t unions = StackOfCheck(LeafX(Unions(128))) - StackOfCheck(LeafX(Unions(1)));
  EXPECT_LE(unions, 127 * kBytesOfUnion);
  const size_t loaded = StackOfLoad(LeafX(Unions(250))) - StackOfLoad(LeafX(Unions(1)));
  EXPECT_LE(loaded, 249 * kBytesOfUnion);
  const auto typedefs = [](size_t links) {
    return StackOfCheck(TypedefChain(0, links, TypeOf("string")) + LeafX(TypeOf("t0")));
  };
  EXPECT_LE(typedefs(129) - typedefs(1), 128 * kBytesOfTypedef);
}

// Unions whose member is the first of `links` typedefs, the last of which is the next
// union: with the member's own, each has `links` + 1 types under check.
std::string UnionsOfTypedefs(size_t unions, size_t links) {
  std::string out;
  for (size_t i = 0; i < unions; ++i) {
    const std::string next = i + 1 < unions ? Name("t", (i + 1) * links) : "string";
    out += TypedefChain(i * links, links, "<type name='union'>" + TypeOf(next) + "</type>");
  }
  return out;
}

TEST(DeepType, UnionsOfTypedefsAreCheckedTo1024Types) {
  EXPECT_EQ(QM_OK, CheckValue(UnionsOfTypedefs(113, 8) + LeafX(TypeOf("t0"))));
  EXPECT_EQ(QM_VALUE_BAD_UNION, CheckValue(UnionsOfTypedefs(114, 8) + LeafX(TypeOf("t0"))));
  EXPECT_EQ(QM_VALUE_BAD_UNION, CheckValue(UnionsOfTypedefs(128, 120) + LeafX(TypeOf("t0"))));
}

std::string Pattern(const std::string& pattern) {
  return "<type name='string'><pattern value='" + pattern + "'/></type>";
}

// As deep as patterns are compiled, alone and below as many types as a check may be in.
TEST(DeepType, PatternsAreCompiledBelowAllTypes) {
  using deep_model::Repeat;
  const std::string patterns[] = {
      "(" + Repeat("v*", 511) + ")+",
      "(" + Repeat("()*", 255) + "v)*",
      "((((" + Repeat("v?", 200) + ")*)*)*)*",
      Repeat("[a-z-", 1023) + "[b]" + Repeat("]", 1023),
  };
  for (const std::string& pattern : patterns) {
    SCOPED_TRACE(pattern.substr(0, 8));
    const uint32_t alone = CheckValue(LeafX(Pattern(pattern)));
    EXPECT_EQ(pattern[0] == '(' ? uint32_t{QM_OK} : alone, alone);
    std::string types = UnionsOfTypedefs(113, 8);
    const size_t last = types.rfind("<type name='string'/>");
    ASSERT_NE(std::string::npos, last);
    types.replace(last, sizeof("<type name='string'/>") - 1, Pattern(pattern));
    EXPECT_EQ(alone == QM_OK ? QM_OK : QM_VALUE_BAD_UNION, CheckValue(types + LeafX(TypeOf("t0"))));
  }
}

TEST(DeepType, PatternsThatWouldOverflowTheStackMatchNothing) {
  using deep_model::Repeat;
  EXPECT_EQ(QM_VALUE_BAD_PATTERN, CheckValue(LeafX(Pattern("(" + Repeat("()*", 300000) + "v)*"))));
  EXPECT_EQ(QM_VALUE_BAD_PATTERN,
            CheckValue(LeafX(Pattern(Repeat("[a-z-", 300000) + "[b]" + Repeat("]", 300000)))));
}

TEST(DeepType, IdentitiesMayHaveLongChainsOfBases) {
  std::string body = "<identity name='v'><base name='i0'/></identity>";
  for (size_t i = 0; i < 3000; ++i)
    body +=
        "<identity name='" + Name("i", i) + "'><base name='" + Name("i", i + 1) + "'/></identity>";
  body += "<identity name='i3000'/>";
  static_cast<void>(
      CheckValue(body + LeafX("<type name='identityref'><base name='i100'/></type>")));
  EXPECT_NE(QM_OK,
            CheckValue(body + LeafX("<type name='identityref'><base name='i3001'/></type>")));
}

TEST(DeepType, LeafrefsMayFormLongChains) {
  const auto chain = [](size_t links) {
    std::string body = LeafX("<type name='leafref'><path value='/m:y0'/></type>");
    for (size_t i = 0; i < links; ++i)
      body += "<leaf name='" + Name("y", i) +
              "'><type name='leafref'><path value='/m:" + Name("y", i + 1) + "'/></type></leaf>";
    return body + "<leaf name='" + Name("y", links) + "'><type name='string'/></leaf>";
  };
  EXPECT_EQ(QM_OK, CheckValue(chain(100)));
  EXPECT_NE(QM_OK, CheckValue(chain(3000)));
}

}  // namespace
