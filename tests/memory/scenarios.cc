// SPDX-License-Identifier: BSD-3-Clause
#include "tests/memory/scenarios.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <cctype>
#include <fstream>
#include <iterator>

#include <qmodel/qmodel.h>

#include "schema/node.h"
#include "schema/node_copy.h"
#include "tests/support/yin_text.h"

namespace {

const std::string kModels = QMODEL_EXAMPLES "/models";
const std::string kMessages = QMODEL_EXAMPLES "/messages/";
const std::string kStatements = QMODEL_TEST_MODELS "/statements";

uint32_t Drop(const char* /*text*/, uint32_t /*length*/, void* /*arg*/) {
  return 0;
}

uint32_t DropError(const char* /*module*/, const char* /*file*/, const char* /*message*/,
                   void* /*arg*/) {
  return 0;
}

uint32_t TryValues(QmsNode* node, uint32_t travType, void* /*arg*/) {
  if (travType == QMS_TRAV_PARENT) return 0;
  for (const char* value :
       {"1", "true", "router-types:ethernet", "192.0.2.1", "timestamp", "st-base:step19", "x"}) {
    static_cast<void>(QM_NODE_ValidateValue(node, QM_INPUT_TEXT, value));
  }
  static_cast<void>(QM_NODE_GetDefaultValueStr(node));
  static_cast<void>(QM_NODE_PrintNodesTree(node, Drop, nullptr));
  return 0;
}

uint32_t TryTree(QmsNode* node, uint32_t /*travType*/, void* /*arg*/) {
  return QM_NODE_TreeScanAllNode(node, TryValues, nullptr);
}

void LookAround(QmCtx* ctx, const char* name) {
  QmsModule* module = QM_CTX_GetModuleByModName(ctx, name);
  static_cast<void>(QM_MOD_EnableFeature(module, "*"));
  static_cast<void>(QM_MOD_PrintModelTree(module, Drop, nullptr));
  static_cast<void>(QM_MOD_IterScanTopmostNode(module, TryTree, nullptr));
  static_cast<void>(QM_CTX_ScanAllSchemaLoadFail(ctx, DropError, nullptr));
}

QmCtx* Open(uint32_t flags, const std::string& dir = kModels) {
  QmCtx* ctx = QM_CTX_Create(flags);
  static_cast<void>(QM_CTX_SetSearchDir(ctx, dir.c_str()));
  return ctx;
}

std::string ReadMessage(const std::string& name) {
  std::ifstream file(kMessages + name);
  return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

// The same call works once memory is back.
void ExpectUsable(QmCtx* ctx, bool refusing, const char* module) {
  if (refusing || ctx == nullptr) return;
  EXPECT_EQ(QM_OK, QM_CTX_LoadModule(ctx, module));
}

void LoadAndLook(bool refusing) {
  QmCtx* ctx = Open(QM_LOAD_IMPORTS | QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS);
  for (const char* name : {"router-interfaces", "router-alarms"}) {
    static_cast<void>(QM_CTX_LoadModule(ctx, name));
    LookAround(ctx, name);
  }
  ExpectUsable(ctx, refusing, "router-types");
  QM_CTX_Delete(ctx);
}

void LoadText(bool refusing) {
  QmCtx* ctx = Open(QM_LOAD_IMPORTS);
  const std::string text = yin_text::Module(
      "t",
      "<import module='router-types'><prefix value='rt'/></import>"
      "<container name='c'><must condition='t:l'/><leaf name='l'><type name='rt:percent'/></leaf>"
      "<leaf name='a'><type name='rt:ip-address'/></leaf></container>");
  static_cast<void>(QM_CTX_LoadMemory(ctx, text.c_str()));
  LookAround(ctx, "t");
  static_cast<void>(QM_CTX_UnloadModule(ctx, "t"));
  ExpectUsable(ctx, refusing, "router-types");
  QM_CTX_Delete(ctx);
}

void LoadSplit(bool refusing) {
  QmCtx* ctx = Open(0);
  static_cast<void>(QM_CTX_LoadModule(ctx, "router-qos"));
  static_cast<void>(QM_CTX_UnloadModule(ctx, "router-qos"));
  LookAround(ctx, "router-qos");
  ExpectUsable(ctx, refusing, "router-qos");
  QM_CTX_Delete(ctx);
}

void CoupleAndUnload(bool refusing) {
  QmCtx* ctx = Open(0);
  for (const char* name : {"router-vlans", "router-lite", "router-system", "router-interfaces"}) {
    static_cast<void>(QM_CTX_LoadModule(ctx, name));
  }
  LookAround(ctx, "router-vlans");
  for (const char* name : {"router-lite", "router-interfaces", "router-vlans", "none"}) {
    static_cast<void>(QM_CTX_UnloadModule(ctx, name));
  }
  ExpectUsable(ctx, refusing, "router-lite");
  static_cast<void>(QM_CTX_UnSetSearchDir(ctx, kModels.c_str()));
  QM_CTX_Delete(ctx);
}

void ValidateTexts(QmCtx* ctx) {
  for (const char* name : {"restart.xml", "restart-no-reason.xml", "restart-bad-delay.xml",
                           "install-image.xml", "install-image-unverified.xml", "ping.xml"}) {
    std::string text = ReadMessage(name);
    QM_FreeErrNode(QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, text.data(), nullptr, nullptr));
  }
}

void ValidateTree(QmCtx* ctx, const char* name) {
  const std::string text = ReadMessage(name);
  xmlDoc* doc = xmlParseMemory(text.data(), static_cast<int>(text.size()));
  if (doc == nullptr) return;
  for (int round = 0; round < 2; ++round) {
    QM_FreeErrNode(QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_ELEMENT, xmlDocGetRootElement(doc),
                                              nullptr, nullptr));
  }
  xmlFreeDoc(doc);
}

void Validate(bool refusing) {
  QmCtx* ctx = Open(QM_LOAD_IMPORTS);
  static_cast<void>(QM_CTX_LoadModule(ctx, "router-system"));
  static_cast<void>(QM_CTX_LoadModule(ctx, "router-alarms"));
  ValidateTexts(ctx);
  ValidateTree(ctx, "ping.xml");
  ValidateTree(ctx, "reset-counters.xml");
  for (const char* name : {"alarm-link-down.xml", "alarm-no-severity.xml"}) {
    static_cast<void>(
        QM_CTX_ValidateNotifDataTree(ctx, ReadMessage(name).c_str(), nullptr, nullptr));
  }
  ExpectUsable(ctx, refusing, "router-types");
  QM_CTX_Delete(ctx);
}

void CopyTree(QmCtx* ctx) {
  QmsNode* node = QM_CTX_GetTargetNode(ctx, "/st-all:one", nullptr);
  QmsNode* copy = QMS_NODE_CopyNodeTreeToModule(node, QM_NODE_GetModule(node));
  if (copy != nullptr) QMS_NODE_Free(copy);
}

void AddExtInsts(QmCtx* ctx) {
  QmsNode* marked = QM_CTX_GetTargetNode(ctx, "/st-all:one", nullptr);
  QmsNode* plain = QM_CTX_GetTargetNode(ctx, "/st-base:top", nullptr);
  static_cast<void>(QM_NODE_AppendExtInst(plain, "st-base", "mark", "of the client"));
  static_cast<void>(QM_NODE_ReplaceDstExtInst(plain, marked));
}

// Every statement and type, once in a first and once in a second part of a module,
// with augments and deviations before and behind.
void LoadStatements(bool refusing) {
  QmCtx* ctx = Open(QM_LOAD_IMPORTS | QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS, kStatements);
  for (const char* name : {"st-change", "st-all", "st-base", "st-add"}) {
    static_cast<void>(QM_CTX_LoadModule(ctx, name));
    LookAround(ctx, name);
  }
  AddExtInsts(ctx);
  CopyTree(ctx);
  for (const char* name : {"st-change", "st-base", "st-all"}) {
    static_cast<void>(QM_CTX_UnloadModule(ctx, name));
  }
  ExpectUsable(ctx, refusing, "st-all");
  QM_CTX_Delete(ctx);
}

// Default and given values of every type, conditions that hold, fail and cannot be
// evaluated, and each kind of error.
void ValidateStatements(bool refusing) {
  QmCtx* ctx = Open(QM_LOAD_IMPORTS, kStatements);
  static_cast<void>(QM_CTX_LoadModule(ctx, "st-all"));
  for (const char* name : {"st-base", "st-add", "st-all"}) {
    static_cast<void>(QM_MOD_EnableFeature(QM_CTX_GetModuleByModName(ctx, name), "*"));
  }
  for (const char* content :
       {"<name>abc</name><set>r</set><ref>abc</ref><either>b:round</either><j/>"
        "<row><id>1</id></row><row><id>2</id></row>",
        "<name>bad</name><j/>", "<name>abc</name><set>w</set><j/>", "<g>1</g><j/>", "",
        "<shape>b:none</shape><j/>", "<shape>q:round</shape><j/>", "<ref>1</ref><i/><j/>",
        "<j/><name>late</name>", "<unknown/>", "<either>z</either><any><x y='1'>2</x></any><i/>"}) {
    std::string text = "<op xmlns='urn:st-all' xmlns:b='urn:st-base'>" + std::string(content);
    text += "</op>";
    QM_FreeErrNode(QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, text.data(), nullptr, nullptr));
  }
  for (const char* content : {"<name>x</name>", "<shape>b:round</shape>", "<unknown/>"}) {
    const std::string text =
        "<event xmlns='urn:st-all' xmlns:b='urn:st-base'>" + std::string(content) + "</event>";
    static_cast<void>(QM_CTX_ValidateNotifDataTree(ctx, text.c_str(), nullptr, nullptr));
  }
  ExpectUsable(ctx, refusing, "st-change");
  QM_CTX_Delete(ctx);
}

// A check that finds its pattern compiled, or no memory to keep it, answers the same.
void KeepPatterns(bool refusing) {
  QmCtx* ctx = Open(QM_LOAD_IMPORTS);
  static_cast<void>(QM_CTX_SetKeepPatterns(ctx, 1));
  static_cast<void>(QM_CTX_LoadModule(ctx, "router-system"));
  QmsNode* name = QM_CTX_GetTargetNode(ctx, "/router-system:system/host-name", nullptr);
  for (int round = 0; name != nullptr && round < 2; ++round) {
    EXPECT_EQ(QM_OK, QM_NODE_ValidateValue(name, QM_INPUT_TEXT, "edge-1"));
    EXPECT_EQ(QM_VALUE_BAD_PATTERN, QM_NODE_ValidateValue(name, QM_INPUT_TEXT, "edge_1"));
    ValidateTexts(ctx);
    static_cast<void>(QM_CTX_SetKeepPatterns(ctx, 0));
    static_cast<void>(QM_CTX_SetKeepPatterns(ctx, 1));
  }
  static_cast<void>(QM_CTX_UnloadModule(ctx, "router-system"));
  ExpectUsable(ctx, refusing, "router-types");
  QM_CTX_Delete(ctx);
}

}  // namespace

const std::vector<Scenario>& ContextLives() {
  static const std::vector<Scenario> scenarios = {{"load and look", LoadAndLook},
                                                  {"load a text", LoadText},
                                                  {"load a split module", LoadSplit},
                                                  {"couple and unload", CoupleAndUnload},
                                                  {"validate", Validate},
                                                  {"keep patterns", KeepPatterns},
                                                  {"load statements", LoadStatements},
                                                  {"validate statements", ValidateStatements}};
  return scenarios;
}

void RunModuleLife(const std::string& dir, const std::string& module) {
  QmCtx* ctx = QM_CTX_Create(QM_LOAD_IMPORTS | QM_LOAD_DESCRIPTIONS | QM_LOAD_UNITS);
  static_cast<void>(QM_CTX_SetSearchDir(ctx, dir.c_str()));
  static_cast<void>(QM_CTX_LoadModule(ctx, module.c_str()));
  static_cast<void>(
      QM_MOD_PrintModelTree(QM_CTX_GetModuleByModName(ctx, module.c_str()), Drop, nullptr));
  static_cast<void>(QM_CTX_UnloadModule(ctx, module.c_str()));
  QM_CTX_Delete(ctx);
}

std::string CamelCase(const std::string& words, char separator) {
  std::string name;
  bool starts = true;
  for (const char c : words) {
    if (c != separator)
      name += starts ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
    starts = c == separator;
  }
  return name;
}

std::string NameOf(const testing::TestParamInfo<Scenario>& scenario) {
  return CamelCase(scenario.param.name, ' ');
}
