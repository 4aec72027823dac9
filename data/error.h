// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "data/records.h"

// The record of a run is made by the first check that fails, is kept in `aux`,
// and no field of it is ever written twice.

// The run's record, made for `dataNode` unless a check has made one before; NULL
// without memory, which all setters accept.
QmErrNode* RunError(QmCheckAux* aux, uint32_t tag, xmlNode* dataNode);
// "Unexpected element: %s." with the element's name.
void ReportUnexpectedElement(QmCheckAux* aux, xmlNode* element);
// A condition of the element could not be evaluated; `format` takes its name.
void ReportConditionFailure(QmCheckAux* aux, xmlNode* element, const char* format) QM_PRINTF(3, 0);

// Set a field that is still NULL, as the setters below do.
void SetBadNamespace(QmErrNode* err, const char* ns);
void SetMissingChoice(QmErrNode* err, const char* name);

QM_BEGIN_INTERNAL_DECLS

// A new record with those numbers and the path of `dataNode`, "/" for NULL; its other
// texts are NULL, and the path is when it cannot be built. NULL without memory. Freed
// with QM_FreeErrNode().
QmErrNode* QMD_ERR_NewErrNode(QmCheckAux* aux, uint32_t type, uint32_t severity, uint32_t tag,
                              xmlNode* dataNode);
// Set a field that is still NULL; nothing is done for a NULL record or text, nor for a
// message without a character. Without memory the field stays NULL. A message is cut at
// 10,240 characters.
void QMD_ERR_SetErrorMsg(QmErrNode* err, const char* format, ...) QM_PRINTF(2, 3);
void QMD_ERR_SetErrorAppTag(QmErrNode* err, const char* text);
void QMD_ERR_SetBadElement(QmErrNode* err, const char* text);

QM_END_INTERNAL_DECLS
