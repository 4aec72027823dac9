// SPDX-License-Identifier: BSD-3-Clause
// Validation of a notification for a client. What the client gets is the text of
// the notification after the run, without the nodes whose when or must was false.
// Deliberate: of a failure it learns the fact only; the run's record is dropped.

#include "context/guard.h"
#include "context/xml_parse.h"
#include "context/xml_tree.h"
#include "data/validate.h"
#include "platform/string.h"

static uint32_t RunOnDocument(QmCtx* ctx, xmlDoc* doc) {
  QmCheckAux aux = {};
  QMD_PAS_InitCheckAux(&aux, ctx, QMD_MODE_NOTIF, nullptr, nullptr);
  const uint32_t ret = QMD_PAS_ValidateDataTree(&aux, xmlDocGetRootElement(doc));
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
