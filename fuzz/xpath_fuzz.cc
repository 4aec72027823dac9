// SPDX-License-Identifier: BSD-3-Clause
// An expression: tokenized, and evaluated on each element of a small tree, whose
// elements are bound to their schema nodes; by itself and as a run keeps it.
#include <libxml/parser.h>

#include <cstdlib>
#include <cstring>

#include <qmodel/error.h>
#include <qmodel/qmodel.h>

#include "fuzz/fixed_model.h"
#include "fuzz/fuzz_target.h"
#include "xpath/kept_conditions.h"

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

// What the one allocation that is refused leads to.
static bool IsOfLostMemory(uint32_t status) {
  return status == QM_NO_MEMORY || status == QM_XPATH_BAD_TOKEN;
}

static void Evaluate(QmKeptConditions* kept, xmlDoc* doc, xmlNode* node, const char* text) {
  auto* root = reinterpret_cast<xmlNode*>(doc);
  const uint32_t status = QM_XPATH_EvalCondition(root, node, text);
  const uint32_t ofKept = EvalKeptCondition(kept, root, node, text);
  if (status != ofKept && !IsOfLostMemory(status) && !IsOfLostMemory(ofKept)) std::abort();
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
  QmKeptConditions kept = {};
  for (xmlNode* node = xmlDocGetRootElement(doc)->children; node != nullptr; node = node->next) {
    Bind(ctx, node);
    Evaluate(&kept, doc, node, input.text);
  }
  FreeKeptConditions(&kept);
  xmlFreeDoc(doc);
  QM_CTX_Delete(ctx);
}
