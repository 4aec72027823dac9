/* SPDX-License-Identifier: BSD-3-Clause
 *
 * A client in C11 that includes every public header and calls through each of them:
 * what a C compiler makes of the declarations must be what the library exports. Ends
 * with 0; with 1, and a line for each, when an answer is not the expected one.
 */
#include <qmodel/qmodel.h>

/* Each alone too: none may lean on what another one brings. */
#include <libxml/parser.h>
#include <qmodel/agent.h>
#include <qmodel/context.h>
#include <qmodel/data.h>
#include <qmodel/error.h>
#include <qmodel/export.h>
#include <qmodel/loader.h>
#include <qmodel/memory.h>
#include <qmodel/schema.h>
#include <qmodel/types.h>
#include <qmodel/version.h>
#include <qmodel/xpath.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int g_faults;
static long g_blocks;

static void Expect(int holds, const char* what) {
  if (holds) return;
  fprintf(stderr, "not so: %s\n", what);
  ++g_faults;
}
#define EXPECT(condition) Expect((condition), #condition)

static void* CountingMalloc(size_t size) {
  ++g_blocks;
  return malloc(size);
}

static void CountingFree(void* block) {
  if (block != NULL) --g_blocks;
  free(block);
}

static const char kModel[] =
    "<module name='c' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>"
    "<namespace uri='urn:c'/><prefix value='c'/><feature name='f'/>"
    "<identity name='base'/>"
    "<leaf name='top'><type name='decimal64'><fraction-digits value='2'/></type></leaf>"
    "<rpc name='ping'><input><leaf name='count'><type name='uint8'/><default value='3'/></leaf>"
    "</input></rpc>"
    "<notification name='done'><leaf name='count'><type name='uint8'/></leaf></notification>"
    "</module>";

static uint32_t CountNode(QmsNode* node, uint32_t travType, void* arg) {
  (void)travType;
  if (QM_NODE_GetNodeName(node) != NULL) ++*(int*)arg;
  return QM_OK;
}

static uint32_t CountFailure(const char* modName, const char* yinFile, const char* message,
                             void* userData) {
  (void)modName, (void)yinFile, (void)message;
  ++*(int*)userData;
  return QM_OK;
}

static uint32_t CountText(const char* text, uint32_t length, void* arg) {
  (void)text;
  *(uint32_t*)arg += length;
  return QM_OK;
}

static uint32_t TakeNotification(const char* dumpedText, void* callbackArg) {
  *(int*)callbackArg = strstr(dumpedText, "done") != NULL;
  return QM_OK;
}

static void CallContextAndLoader(QmCtx* ctx) {
  int failures = 0;
  EXPECT(QM_CTX_LoadMemory(ctx, kModel) == QM_OK);
  EXPECT(QM_CTX_LoadModule(ctx, "absent") == QM_NOT_FOUND);
  EXPECT(QM_CTX_ScanAllSchemaLoadFail(ctx, CountFailure, &failures) == QM_OK);
  EXPECT(QM_CTX_SetSearchDir(ctx, "relative") == QM_NOT_A_DIRECTORY);
  EXPECT(QM_CTX_GetModuleByModNs(ctx, "urn:c") == QM_CTX_GetModuleByModName(ctx, "c"));
  EXPECT(QM_CTX_IsModFeatureEnable(ctx, "c", "f") == 0);
}

static void CallSchemaAndTypes(QmCtx* ctx) {
  int nodes = 0;
  uint32_t printed = 0;
  QmsModule* mod = QM_CTX_GetModuleByModName(ctx, "c");
  QmsNode* top = QM_CTX_GetTargetNode(ctx, "/c:top", NULL);
  EXPECT(mod != NULL && strcmp(QM_MOD_GetModuleNs(mod), "urn:c") == 0);
  EXPECT(QM_MOD_EnableFeature(mod, "f") == QM_OK);
  EXPECT(QM_MOD_IterScanTopmostNode(mod, CountNode, &nodes) == QM_OK && nodes == 3);
  EXPECT(QM_MOD_PrintModelTree(mod, CountText, &printed) == QM_OK && printed > 0);
  EXPECT(top != NULL && QM_TYPE_GetBuiltInBaseType(QM_NODE_GetRealType(top)) == 4);
  EXPECT(QM_TYPE_GetDecimal64Fraction(QM_NODE_GetRealType(top)) == 2);
}

static void CallXpath(void) {
  QmXpathExpr* expr = QM_XPATH_ExprTokenize("1 = 1");
  xmlDoc* doc = xmlParseMemory("<a/>", 4);
  xmlNode* root = xmlDocGetRootElement(doc);
  EXPECT(QM_XPATH_GetTokenNumber(expr) == 3);
  EXPECT(QM_XPATH_EvalCondition(root, root, "1 = 1") == QM_OK);
  EXPECT(QM_XPATH_EvalCondition(root, root, "1 = 2") == QM_XPATH_FALSE);
  QM_XPATH_FreeXpathLex(expr);
  xmlFreeDoc(doc);
}

static void CallDataAndErrors(QmCtx* ctx) {
  char good[] = "<ping xmlns='urn:c'/>";
  char bad[] = "<ping xmlns='urn:c'><count>300</count></ping>";
  int taken = 0;
  QmErrNode* error;
  EXPECT(QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, good, NULL, NULL) == NULL);
  error = QM_CTX_ValidateRpcDataTree(ctx, QM_INPUT_TEXT, bad, NULL, NULL);
  EXPECT(error != NULL && QM_GetErrorTag(error) == QM_ERR_TAG_BAD_ELEMENT);
  EXPECT(error != NULL && strcmp(QM_GetBadElement(error), "count") == 0);
  QM_FreeErrNode(error);
  EXPECT(QM_CTX_ValidateNotifDataTree(ctx, "<done xmlns='urn:c'/>", TakeNotification, &taken) ==
         QM_OK);
  EXPECT(taken == 1);
}

static uint32_t CountPiece(const char* text, size_t length, void* arg) {
  (void)text;
  *(size_t*)arg += length;
  return QM_OK;
}

static void CountEvent(QmCtx* ctx, const QmAgentEvent* event, void* arg) {
  EXPECT(QM_CTX_GetModuleByModName(ctx, event->moduleName) == event->module);
  if (event->kind == QM_AGENT_EVENT_MODULE_GOING) ++*(int*)arg;
}

static void CallAgentKit(QmCtx* ctx, int* gone) {
  static const char kBad[] = "<ping xmlns='urn:c'><count>300</count></ping>";
  const QmAgentLimits limits = {sizeof kBad, 2};
  uint32_t reason = QM_AGENT_REASON_NONE;
  size_t written = 0;
  QmErrNode* error = NULL;
  xmlDoc* doc = QM_AGENT_ParseMessage(kBad, strlen(kBad), &limits, &reason);
  EXPECT(doc != NULL && reason == QM_AGENT_REASON_NONE);
  EXPECT(QM_AGENT_ValidateRequest(ctx, xmlDocGetRootElement(doc), NULL, NULL, &error) ==
         QM_AGENT_INVALID);
  xmlFreeDoc(doc);
  EXPECT(QM_AGENT_WriteRecord(error, ctx, 0, CountPiece, &written) == QM_OK && written > 0);
  EXPECT(QM_AGENT_PrintRecord(error, ctx, 0, NULL, 0) == written);
  QM_FreeErrNode(error);
  EXPECT(strcmp(QM_AGENT_GetVersion(), QM_VERSION_STRING) == 0);
  EXPECT(strcmp(QM_AGENT_GetTagName(QM_ERR_TAG_TOO_BIG), "too-big") == 0);
  QM_AGENT_Free(NULL);
  QM_AGENT_SetEvents(ctx, CountEvent, gone);
}

int main(void) {
  QmCtx* ctx;
  int gone = 0;
  EXPECT(QM_MemRegisterCallBack(CountingMalloc, realloc, CountingFree) == QM_OK);
  EXPECT(strlen(QM_VERSION_STRING) >= 5 && QM_VERSION_MAJOR >= 1);
  ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
  if (ctx == NULL) return 1;
  CallContextAndLoader(ctx);
  CallSchemaAndTypes(ctx);
  CallXpath();
  CallDataAndErrors(ctx);
  CallAgentKit(ctx, &gone);
  QM_CTX_Delete(ctx);
  EXPECT(gone == 1);
  EXPECT(g_blocks == 0);
  return g_faults == 0 ? 0 : 1;
}
