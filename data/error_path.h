// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

QM_BEGIN_INTERNAL_DECLS

char* QMD_ERR_GeneralErrorPath(QmCheckAux* aux, xmlNode* dataNode);
uint32_t QMD_ERR_PrintPath(QmCheckAux* aux, xmlNode* dataNode, QmdPathBuf* buf);
uint32_t QMD_ERR_PrintElementNode(QmCheckAux* aux, xmlNode* node, QmdPathBuf* buf);
uint32_t QMD_ERR_PrintElementNodeAsPredicate(QmdPathBuf* buf, const char* name, const char* value);
uint32_t QMD_ERR_PrintXpathNode(QmdPathBuf* buf, const char* modName, const char* name);
const char* QMD_ERR_GetElementNodePrefix(QmCheckAux* aux, xmlNode* node);
char QMD_ERR_GetValueBoundaryQuota(const char* value);

QM_END_INTERNAL_DECLS
