// SPDX-License-Identifier: BSD-3-Clause
// Validation of a request for a client. The verdict is an error record or NULL.
// Every failure has a record: where no check made one, a general one stands in.
// Added defaults belong to the document of the input, so they are settled before
// a parsed document is freed, in success and in failure.

#include "context/element_walk.h"
#include "context/guard.h"
#include "context/xml_parse.h"
#include "data/bind.h"
#include "data/default_list.h"
#include "data/error.h"
#include "data/validate.h"
#include "platform/string.h"

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
  const uint32_t ret =
      HasDocumentType(root) ? uint32_t{QM_INVALID} : QMD_PAS_ValidateDataTree(aux, root);
  QMD_PAS_ClearXmlTreePrivate(root);
  return SettleRun(aux, ret);
}

static QmErrNode* ValidateText(QmCheckAux* aux, const char* text) {
  const QmOwn<FreeParsedDocument> doc(ParseXmlMessage(text, RTK_StrLen(text)));
  if (!doc) return SettleRun(aux, QM_INVALID);
  const uint32_t ret = QMD_PAS_ValidateDataTree(aux, xmlDocGetRootElement(doc.Get()));
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
