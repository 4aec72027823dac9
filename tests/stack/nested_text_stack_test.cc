// SPDX-License-Identifier: BSD-3-Clause
// Texts that nest as deeply as the XML parser lets them: statements, types, extension
// instances and messages.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include "tests/stack/deep_model.h"

namespace {

using deep_model::kTextLevels;
using deep_model::LoadErrors;
using deep_model::Nested;
using deep_model::OnSmallStack;

struct Nesting {
  const char* name;
  std::string body;
};

std::string Choices(size_t pairs) {
  return "<container name='c'>" +
         Nested(pairs, "<choice name='c'><case name='c'>", "</case></choice>", "") + "</container>";
}

std::string Lists(size_t depth) {
  return Nested(depth, "<list name='l'><key value='k'/><leaf name='k'><type name='int8'/></leaf>",
                "</list>", "");
}

const Nesting kNestings[] = {
    {"containers", Nested(kTextLevels - 3, "<container name='c'>", "</container>",
                          "<leaf name='x'><type name='int8'/></leaf>")},
    {"lists", Lists(kTextLevels - 3)},
    {"choices", Choices(kTextLevels / 2 - 1)},
    {"actions",
     "<rpc name='r'><input>" +
         Nested(kTextLevels - 4, "<container name='c'>", "</container>", "<action name='a'/>") +
         "</input></rpc>"},
    {"unions",
     "<leaf name='u'>" +
         Nested(kTextLevels - 3, "<type name='union'>", "</type>", "<type name='int8'/>") +
         "</leaf>"},
    {"extension instances",
     "<extension name='e'><argument name='a'/></extension><container name='c'>" +
         Nested(kTextLevels - 2, "<m:e a='1'>", "</m:e>", "") + "</container>"},
    {"foreign elements", Nested(kTextLevels - 1, "<f xmlns='urn:f'>", "</f>", "")},
};

TEST(NestedText, IsLoadedPrintedAndUnloaded) {
  for (const Nesting& nesting : kNestings) {
    SCOPED_TRACE(nesting.name);
    const std::string text = deep_model::Module("m", nesting.body);
    std::printf("%s: ", nesting.name);
    OnSmallStack([&] {
      QmCtx* ctx = QM_CTX_Create(0);
      EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, text.c_str()));
      EXPECT_EQ("", LoadErrors(ctx));
      EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(
                           QM_CTX_GetModuleByModName(ctx, "m"),
                           [](const char*, uint32_t, void*) { return uint32_t{0}; }, nullptr));
      EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx, "m"));
      QM_CTX_Delete(ctx);
    });
  }
}

// The innermost statement fails, and with it all those around it.
TEST(NestedText, IsRefusedAtItsInnermostStatement) {
  const std::string text = deep_model::Module(
      "m", Nested(kTextLevels - 2, "<container name='c'>", "</container>", "<leaf/>"));
  OnSmallStack([&] {
    QmCtx* ctx = QM_CTX_Create(0);
    EXPECT_EQ(QM_FAILED, QM_CTX_LoadMemory(ctx, text.c_str()));
    EXPECT_NE("", LoadErrors(ctx));
    QM_CTX_Delete(ctx);
  });
}

// What the XML parser itself recurses over: declarations of content, entities that stand
// in entities, and an encoding that needs a conversion.
TEST(NestedText, DeclarationsOfADocumentTypeAreReadOrRefused) {
  std::string entities = "<!ENTITY e0 'x'>";
  for (int i = 1; i < 1000; ++i)
    entities += "<!ENTITY e" + std::to_string(i) + " '<a>&e" + std::to_string(i - 1) + ";</a>'>";
  const std::string declarations[] = {
      "<!ELEMENT a " + Nested(100, "(", ")", "b") + ">",
      "<!ELEMENT a " + Nested(100000, "(", ")", "b") + ">",
      "<!ELEMENT a " + Nested(1, "(", ")", deep_model::Repeat("b|", 100000) + "b") + ">",
      entities,
  };
  const std::string texts[] = {"", "&e20;", "&e39;", "&e999;"};
  for (const std::string& declaration : declarations) {
    for (const std::string& text : texts) {
      const std::string model =
          "<?xml version='1.0' encoding='EUC-JP'?><!DOCTYPE module [" + declaration + "]>" +
          deep_model::Module("m", "<organization><text>" + text + "</text></organization>");
      OnSmallStack([&] {
        QmCtx* ctx = QM_CTX_Create(0);
        static_cast<void>(QM_CTX_LoadMemory(ctx, model.c_str()));
        QM_CTX_Delete(ctx);
      });
    }
  }
}

TEST(NestedText, OneLevelMoreIsRefusedByTheParser) {
  for (const size_t levels : {kTextLevels, kTextLevels + 1, size_t{100000}}) {
    const std::string text =
        deep_model::Module("m", Nested(levels - 1, "<container name='c'>", "</container>", ""));
    OnSmallStack([&] {
      QmCtx* ctx = QM_CTX_Create(0);
      EXPECT_EQ(levels == kTextLevels ? QM_OK : QM_INVALID, QM_CTX_LoadMemory(ctx, text.c_str()));
      QM_CTX_Delete(ctx);
    });
  }
}

}  // namespace
