// SPDX-License-Identifier: BSD-3-Clause
// One validation run, and the two calls of clients that make one. The phases have a
// fixed order, since each relies on the one before it: elements are bound and checked
// one by one, defaults are added to the bound tree, conditions are evaluated over the
// completed tree, and what is still missing is looked for last. The first failure ends
// the run. A client gets an error record of a request, or NULL; of a notification, the
// text that the run leaves of it.

#include "data/validate.h"

#include "context/guard.h"
#include "context/pointer_map.h"
#include "context/xml_parse.h"
#include "context/xml_tree.h"
#include "data/add_defaults.h"
#include "data/bind.h"
#include "data/bound_children.h"
#include "data/default_list.h"
#include "data/error.h"
#include "data/indexed_run.h"
#include "data/must.h"
#include "data/node_check.h"
#include "platform/string.h"
#include "xpath/child_lookup.h"
#include "xpath/kept_conditions.h"

void QMD_PAS_InitCheckAux(QmCheckAux* aux, QmCtx* ctx, uint32_t flags, QmDefaultNodeFunc callback,
                          void* callbackArg) {
  aux->ctx = ctx;
  aux->flags = flags;
  aux->defaultNodeCallback = callback;
  aux->callbackArg = callbackArg;
  InitDefaultNodeList(&aux->defaultList);
}

static uint32_t CheckBoundTree(QmCheckAux* aux, xmlNode* startNode) {
  uint32_t ret = QMD_PAS_CompleteTree(aux, startNode, aux->flags);
  if (ret != QM_OK) return ret;
  ChildLookup lookup;
  QmKeptConditions conditions = {};
  aux->conditions = &conditions;
  ret = QMD_PAS_EvalDataTreeWhenMust(aux, startNode);
  if (aux->index != nullptr) ForgetInstances(aux->index);
  if (ret == QM_OK) ret = QM_PAS_CheckTreeMandatory(aux, startNode);
  aux->conditions = nullptr;
  FreeKeptConditions(&conditions);
  return ret;
}

static uint32_t BindTree(QmCheckAux* aux, xmlNode* root) {
  QmPointerMap targets = {};
  aux->targets = &targets;
  const uint32_t ret = QMD_PAS_FlushTreeWithSchema(aux, root);
  aux->targets = nullptr;
  FreePointerMap(&targets);
  return ret;
}

uint32_t QMD_PAS_ValidateDataTree(QmCheckAux* aux, xmlNode* root) {
  if (aux == nullptr || root == nullptr) return QM_INVALID;
  aux->topNode = root->parent;
  uint32_t ret = BindTree(aux, root);
  if (ret != QM_OK) return ret;
  constexpr uint32_t kMountedAction = QMD_MODE_ACTION_TREE | QMD_MODE_MOUNT_POINT;
  // The action may be one of the mounted schema, which is not known here.
  if ((aux->flags & kMountedAction) == kMountedAction) return QM_OK;
  ret = QMD_PAS_CheckActionNodeExist(aux);
  if (ret != QM_OK) return ret;
  xmlNode* startNode = (aux->flags & QMD_MODE_ACTION_TREE) != 0 ? aux->actionNode : root;
  return startNode == nullptr ? QM_INVALID : CheckBoundTree(aux, startNode);
}

// Requests. Every failure has a record: where no check made one, a general one stands
// in. Added defaults belong to the document of the input, so they are settled before
// a parsed document is freed, in success and in failure.

// Ends the run: keeps or removes the added defaults and gives the verdict.
static QmErrNode* SettleRun(QmCheckAux* aux, uint32_t ret) {
  if (ret == QM_OK) {
    QM_FreeErrNode(aux->err);
    aux->err = nullptr;
    QMD_PAS_ClearDefaultNodeList(aux, 1);
    return nullptr;
  }
  if (aux->err == nullptr) {
    aux->err = QMD_ERR_NewErrNode(aux, QM_ERR_TYPE_APPLICATION, QM_ERR_SEVERITY_ERROR,
                                  QM_ERR_TAG_OPERATION_FAILED, nullptr);
  }
  QMD_PAS_ClearDefaultNodeList(aux, 0);
  return aux->err;
}

// No message has a document type declaration (RFC 6241 section 3). Of a tree, what its
// entities stand for would be left unchecked.
static bool HasDocumentType(const xmlNode* root) {
  if (!IsElement(root) || root->doc == nullptr) return false;
  return root->doc->intSubset != nullptr || root->doc->extSubset != nullptr;
}

// The caller's tree carries no bindings from an earlier run, and none afterwards.
static QmErrNode* ValidateElement(QmCheckAux* aux, xmlNode* root) {
  QMD_PAS_ClearXmlTreePrivate(root);
  const uint32_t ret = HasDocumentType(root) ? uint32_t{QM_INVALID} : RunWithIndex(aux, root);
  QMD_PAS_ClearXmlTreePrivate(root);
  return SettleRun(aux, ret);
}

static QmErrNode* ValidateText(QmCheckAux* aux, const char* text) {
  const QmOwn<FreeParsedDocument> doc(ParseXmlMessage(text, RTK_StrLen(text)));
  if (!doc) return SettleRun(aux, QM_INVALID);
  const uint32_t ret = RunWithIndex(aux, xmlDocGetRootElement(doc.Get()));
  return SettleRun(aux, ret);
}

QmErrNode* QM_CTX_ValidateRpcDataTree(QmCtx* ctx, uint32_t inputKind, void* data,
                                      QmDefaultNodeFunc defaultCallback,
                                      void* callbackArg) noexcept {
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, ctx, QMD_MODE_RPC, defaultCallback, callbackArg);
  if (ctx == nullptr || data == nullptr) return SettleRun(&aux, QM_INVALID);
  if (inputKind == QM_INPUT_ELEMENT) return ValidateElement(&aux, static_cast<xmlNode*>(data));
  return ValidateText(&aux, static_cast<const char*>(data));
}

// Notifications. What the client gets is the text of the notification after the run,
// without the nodes whose when or must was false. Deliberate: of a failure it learns
// the fact only; the run's record is dropped.

static uint32_t RunOnDocument(QmCtx* ctx, xmlDoc* doc) {
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, ctx, QMD_MODE_NOTIF, nullptr, nullptr);
  const uint32_t ret = RunWithIndex(&aux, xmlDocGetRootElement(doc));
  QM_FreeErrNode(aux.err);
  return ret;
}

// The document's text, indented; NULL without memory. It is freed with xmlFree.
static xmlChar* ValidatedText(QmCtx* ctx, const char* xmlText) {
  const QmOwn<FreeParsedDocument> doc(ParseXmlMessage(xmlText, RTK_StrLen(xmlText)));
  if (!doc || RunOnDocument(ctx, doc.Get()) != QM_OK) return nullptr;
  const XmlSilence silence;
  xmlChar* text = nullptr;
  int length = 0;
  xmlDocDumpFormatMemoryEnc(doc.Get(), &text, &length, "UTF-8", 1);
  return text;
}

uint32_t QM_CTX_ValidateNotifDataTree(QmCtx* ctx, const char* xmlText,
                                      QmNotifOutputFunc outputCallback,
                                      void* callbackArg) noexcept {
  if (ctx == nullptr || xmlText == nullptr) return QM_INVALID;
  xmlChar* text = ValidatedText(ctx, xmlText);
  if (text == nullptr) return QM_INVALID;
  const uint32_t ret =
      outputCallback == nullptr ? QM_OK : outputCallback(XmlText(text), callbackArg);
  xmlFree(text);
  return ret;
}
