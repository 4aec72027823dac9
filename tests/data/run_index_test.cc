// SPDX-License-Identifier: BSD-3-Clause
// The index of a run changes no result: models and messages drawn from seeds, valid and
// broken, are validated with it, without it, and with its memory refused at each step,
// before and after features are switched and modules leave. What is compared is the
// record, the tree afterwards, and what the callback was told of, in its order.
#include "data/run_index.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "context/xml_tree.h"
#include "data/default_list.h"
#include "data/validate.h"
#include "tests/support/counting_memory.h"
#include "tests/support/message_fixture.h"
#include "tests/support/random_message.h"
#include "tests/support/real_models.h"
#include "tests/support/yin_text.h"

namespace {

using message_fixture::Describe;
using message_fixture::Document;
using random_message::DrawMessage;
using random_message::DrawModel;
using random_message::Message;
using random_message::Model;
using random_message::Source;

struct Outcome {
  std::string text;
  bool isOff = true;  // the index was refused memory
};

void NoteDefault(xmlNode* node, void* arg) {
  auto* text = static_cast<std::string*>(arg);
  *text += "+" + std::string(XmlText(node->name)) + "<" + XmlText(node->parent->name) + " ";
}

// What an index may take: nothing at all, so many bytes, or what it wants.
constexpr size_t kNoIndex = SIZE_MAX;
constexpr size_t kEverything = SIZE_MAX - 1;

// One run over the tree of a message.
Outcome RunOnce(QmCtx* ctx, const Message& message, size_t indexBytes) {
  const Document doc(message.text);
  Outcome outcome;
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, ctx, message.isNotification ? QMD_MODE_NOTIF : QMD_MODE_RPC,
                       NoteDefault, &outcome.text);
  QmdRunIndex index;
  InitRunIndex(&index);
  if (indexBytes < sizeof index.firstBytes) {
    index.freeBytes = indexBytes;
    index.allowance = 0;
  }
  if (indexBytes != kNoIndex) aux.index = &index;
  const uint32_t ret = QMD_PAS_ValidateDataTree(&aux, doc.root());
  outcome.isOff = index.isOff;
  FreeRunIndex(&index);
  QMD_PAS_ClearDefaultNodeList(&aux, ret == QM_OK ? 1 : 0);
  outcome.text += std::to_string(ret) + " " + Describe(aux.err) + " " + doc.Dump();
  return outcome;
}

// The entry points give the same records.
void ExpectSameRecord(QmCtx* ctx, const Message& message, const std::string& expected) {
  if (message.isNotification) return;
  const Document doc(message.text);
  const std::string record = message_fixture::ValidateRpc(ctx, doc);
  if (expected.find(" valid ") != std::string::npos) {
    EXPECT_EQ("valid", record);
    EXPECT_NE(std::string::npos, expected.find(doc.Dump()));
  } else if (record.find("18|/|-|-|-") == std::string::npos) {  // no check made a record
    EXPECT_NE(std::string::npos, expected.find(" " + record + " ")) << record;
  }
}

// Gives the number of runs that had less memory for the index than they wanted.
uint32_t ExpectSameEverywhere(QmCtx* ctx, const Message& message) {
  SCOPED_TRACE(message.text);
  const Outcome plain = RunOnce(ctx, message, kNoIndex);
  EXPECT_EQ(plain.text, RunOnce(ctx, message, kEverything).text);
  ExpectSameRecord(ctx, message, plain.text);
  uint32_t refused = 0;
  for (size_t bytes = 0; bytes < sizeof(QmdRunIndex::firstBytes); bytes += 400) {
    const Outcome outcome = RunOnce(ctx, message, bytes);
    EXPECT_EQ(plain.text, outcome.text) << "with " << bytes << " bytes";
    if (!outcome.isOff) break;
    ++refused;
  }
  return refused;
}

class SameResults : public testing::TestWithParam<uint64_t> {};

void ChangeModel(QmCtx* ctx, int step) {
  if (step == 1) {
    EXPECT_EQ(QM_OK, QM_MOD_EnableFeature(QM_CTX_GetModuleByModName(ctx, "m"), "on"));
  }
  if (step == 2) {
    EXPECT_EQ(QM_OK, QM_MOD_DisableFeature(QM_CTX_GetModuleByModName(ctx, "m"), "on"));
  }
  if (step == 3) {
    EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx, "a"));
  }
}

// Draws a model and messages for it; gives the number of runs without enough memory.
uint32_t ExpectSameOfSeed(uint64_t seed) {
  SCOPED_TRACE(testing::Message() << "seed " << seed);
  Source source(seed);
  const Model model = DrawModel(&source);
  uint32_t refused = 0;
  QmCtx* ctx = QM_CTX_Create(0);
  for (const std::string& text : model.modules) {
    EXPECT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, text.c_str())) << text;
    refused += ExpectSameEverywhere(ctx, DrawMessage(&source, model));
  }
  for (int step = 0; step < 4; ++step) {
    ChangeModel(ctx, step);
    for (int k = 0; k < 3; ++k) refused += ExpectSameEverywhere(ctx, DrawMessage(&source, model));
  }
  QM_CTX_Delete(ctx);
  return refused;
}

TEST_P(SameResults, WithAndWithoutTheIndex) {
  constexpr uint64_t kModels = 30;
  uint32_t refused = 0;
  for (uint64_t i = 0; i < kModels && !HasFailure(); ++i) {
    refused += ExpectSameOfSeed(GetParam() * kModels + i);
  }
  EXPECT_GT(refused, kModels);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SameResults, testing::Range(uint64_t{0}, uint64_t{8}));

// Real messages, each with its modules and features and then without the features; the rows
// of their index are separated by tabs, names in a row by blanks.
std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::stringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

std::string FileText(const std::string& path) {
  std::stringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

void SwitchFeatures(QmCtx* ctx, const std::string& features, bool on) {
  for (const std::string& feature : Split(features, ' ')) {
    const std::vector<std::string> names = Split(feature, ':');
    if (names.size() != 2) continue;
    QmsModule* module = QM_CTX_GetModuleByModName(ctx, names[0].c_str());
    EXPECT_EQ(QM_OK, on ? QM_MOD_EnableFeature(module, names[1].c_str())
                        : QM_MOD_DisableFeature(module, names[1].c_str()));
  }
}

// Each of the modules goes and is read again from its file.
void ExpectSameAfterReloads(QmCtx* ctx, const Message& message,
                            const std::vector<std::string>& modules) {
  const std::string before = RunOnce(ctx, message, kEverything).text;
  for (const std::string& name : modules) {
    SCOPED_TRACE("without " + name);
    EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx, name.c_str()));
    static_cast<void>(ExpectSameEverywhere(ctx, message));
    EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, name.c_str()));
    static_cast<void>(ExpectSameEverywhere(ctx, message));
  }
  EXPECT_EQ(before, RunOnce(ctx, message, kEverything).text);
}

void ExpectSameOfRealMessage(const std::string& folder, const std::vector<std::string>& row) {
  SCOPED_TRACE(row[0]);
  QmCtx* ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, (folder + "/models").c_str()));
  const std::vector<std::string> modules = Split(row[2], ' ');
  for (const std::string& name : modules) {
    EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, name.c_str())) << name;
  }
  const Message message = {row[1].find("notif") == 0, FileText(folder + "/messages/" + row[0])};
  for (const bool on : {true, false}) {
    SwitchFeatures(ctx, row[3], on);
    static_cast<void>(ExpectSameEverywhere(ctx, message));
  }
  ExpectSameAfterReloads(ctx, message, modules);
  QM_CTX_Delete(ctx);
}

TEST(RealMessages, AreTheSameWithAndWithoutTheIndex) {
  const std::string folder = RealModelsFolder();
  if (folder.empty()) GTEST_SKIP() << kNoRealModels;
  const std::vector<std::string> rows = Split(FileText(folder + "/messages/index.tsv"), '\n');
  EXPECT_GT(rows.size(), 30u);
  for (size_t i = 1; i < rows.size(); ++i) {
    const std::vector<std::string> row = Split(rows[i], '\t');
    if (row.size() > 4) ExpectSameOfRealMessage(folder, row);
  }
}

// A hundred leaves with defaults, of which every second one is taken away again: more than
// the first bytes of the index hold, and more defaults than are searched.
std::string WideModel() {
  std::string leaves = "<leaf name='none'><type name='string'/></leaf>";
  for (int i = 0; i < 100; ++i) {
    leaves += "<leaf name='l" + std::to_string(i) + "'>" +
              (i % 2 == 0 ? "<when condition='../none'/>" : "") +
              "<type name='string'/><default value='d'/></leaf>";
  }
  return yin_text::Module("w", yin_text::Rpc(leaves));
}

// Refuses one block after the other; gives the number of those that a run does without.
uint32_t CountBenignBlocks(QmCtx* ctx, const Message& message, size_t indexBytes) {
  const std::string whole = RunOnce(ctx, message, kNoIndex).text;
  uint32_t benign = 0;
  for (uint64_t n = 1;; ++n) {
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    const std::string text = RunOnce(ctx, message, indexBytes).text;
    if (counting_memory::StopRefusing() == 0) return benign;
    if (text == whole) {
      ++benign;
    } else {
      EXPECT_NE(0u, text.find("0 valid")) << text;
    }
  }
}

TEST(RefusedIndex, GoesWithoutResultToo) {
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, WideModel().c_str()));
  const Message message = {false, "<r xmlns='urn:w'/>"};
  const std::string whole = RunOnce(ctx, message, kNoIndex).text;
  EXPECT_NE(std::string::npos, whole.find("0 valid <r xmlns=\"urn:w\"><l1>d</l1><l3>d</l3>"));
  EXPECT_EQ(whole, RunOnce(ctx, message, kEverything).text);
  constexpr uint32_t kBlocksOfIndex = 2;  // the second one for what the first has no room for
  EXPECT_EQ(CountBenignBlocks(ctx, message, kNoIndex) + kBlocksOfIndex,
            CountBenignBlocks(ctx, message, kEverything));
  QM_CTX_Delete(ctx);
}

// More containers than the index has first slots for, each with more than a few children.
std::string ManyParents() {
  std::string containers;
  for (uint32_t i = 0; i < 2 * kQmdFirstParents; ++i) {
    containers += "<container name='c" + std::to_string(i) + "'>";
    for (int leaf = 0; leaf < 20; ++leaf)
      containers += yin_text::Leaf("l" + std::to_string(leaf), "<default value='d'/>");
    containers += "</container>";
  }
  return yin_text::Module("p", yin_text::Rpc(containers));
}

TEST(RefusedIndex, DoesNotGrowWithoutMemoryAndKeepsTheResult) {
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(ctx, ManyParents().c_str()));
  const Message message = {false, "<r xmlns='urn:p'><c0/><c1/></r>"};
  const std::string whole = RunOnce(ctx, message, kEverything).text;
  EXPECT_EQ(whole, RunOnce(ctx, message, kNoIndex).text);
  // One allocation in turn, of those at the beginning of the run, where the index grows.
  uint32_t wentOff = 0;
  for (uint64_t n = 1; n <= 400; ++n) {
    counting_memory::RefuseNth(n, counting_memory::Refuse::kOnce);
    const Outcome outcome = RunOnce(ctx, message, kEverything);
    if (counting_memory::StopRefusing() == 0) break;
    if (outcome.text != whole) {
      EXPECT_NE(0u, outcome.text.find("0 valid")) << outcome.text;
    }
    wentOff += outcome.isOff ? 1 : 0;
  }
  EXPECT_NE(0u, wentOff);
  QM_CTX_Delete(ctx);
}

}  // namespace
