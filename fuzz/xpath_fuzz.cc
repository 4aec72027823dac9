// SPDX-License-Identifier: BSD-3-Clause
// An expression: tokenized, and evaluated on each element of a small tree, whose
// elements are bound to their schema nodes.
#include <libxml/parser.h>

#include <cstring>

#include <qmodel/qmodel.h>

#include "fuzz/fixed_model.h"
#include "fuzz/fuzz_target.h"

static constexpr char kData[] =
    "<op "
    "xmlns='urn:fuzz'><a>abc</a><b>one</b><c><d>1.50</d><e>x</e></c><k1b>1</k1b><k1b>2</k1b></op>";

static void Bind(QmCtx* ctx, xmlNode* element) {
  const QmsNode* node = nullptr;
  if (std::strcmp(reinterpret_cast<const char*>(element->name), "b") == 0) {
    node = QM_CTX_GetTargetNode(ctx, "/f:op/input/b", nullptr);
  } else {
    node = QM_CTX_GetTargetNode(ctx, "/f:op/input/a", nullptr);
  }
  element->_private = const_cast<QmsNode*>(node);
}

void FuzzOne(const FuzzInput& input) {
  QmXpathExpr* expr = QM_XPATH_ExprTokenize(input.text);
  for (uint32_t i = 0; i <= QM_XPATH_GetTokenNumber(expr); ++i) {
    uint32_t kind = 0;
    uint32_t length = 0;
    static_cast<void>(QM_XPATH_GetTokenExprByPos(expr, i, &kind, &length));
    static_cast<void>(QM_XPATH_GetTokenOperationType(expr, i));
  }
  QM_XPATH_FreeXpathLex(expr);
  QmCtx* ctx = LoadFixedModel();
  xmlDoc* doc = xmlParseMemory(kData, sizeof(kData) - 1);
  for (xmlNode* node = xmlDocGetRootElement(doc)->children; node != nullptr; node = node->next) {
    Bind(ctx, node);
    static_cast<void>(QM_XPATH_EvalCondition(reinterpret_cast<xmlNode*>(doc), node, input.text));
  }
  xmlFreeDoc(doc);
  QM_CTX_Delete(ctx);
}
