// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "schema/statement.h"
#include "yin/records.h"

// The parsers of the dispatch table, one per statement. Each takes the module
// under construction, the statement's element, the id of the parent statement,
// and the place that the parent's descriptor names:
//   nodes                    the parent QmsNode; the QmsModule at the top
//   texts                    const char**; key borrows, the others intern
//   flag statements          uint32_t* of a node, uint16_t* of a deviate
//   records                  one zero-filled array element
//   argument, yin-element    the QmsExtension, its uint32_t
//   extension instances      the QmsNode, or one QmsExtInst elsewhere
// 0 on success. On failure what lies at the place can still be cleared by its
// owner, array elements of a module are zero-filled, and a message is recorded
// for the module as a rule.

QM_BEGIN_INTERNAL_DECLS

// Texts that are child elements.
uint32_t QMS_LOADER_ParseText(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);
uint32_t QMS_LOADER_ParseValue(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                               void* dest);
uint32_t QMS_LOADER_ParseDescription(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                     void* dest);

// The module header.
uint32_t QMS_LOADER_ParsePrefix(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest);
uint32_t QMS_LOADER_ParseRevision(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest);
uint32_t QMS_LOADER_ParseOrganization(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                      void* dest);

// Properties of nodes.
uint32_t QMS_LOADER_ParseWhen(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);
uint32_t QMS_LOADER_ParseMust(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);
uint32_t QMS_LOADER_ParseIfFeature(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest);
uint32_t QMS_LOADER_ParseConfig(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest);
uint32_t QMS_LOADER_ParseMandatory(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest);
uint32_t QMS_LOADER_ParseOrderedBy(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest);
uint32_t QMS_LOADER_ParseStatus(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                void* dest);
uint32_t QMS_LOADER_ParsePresence(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest);
uint32_t QMS_LOADER_ParseKey(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);
uint32_t QMS_LOADER_ParseDefault(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest);
uint32_t QMS_LOADER_ParseUnits(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                               void* dest);
uint32_t QMS_LOADER_ParseErrorMessage(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                      void* dest);
uint32_t QMS_LOADER_ParseErrorAppTag(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                     void* dest);

// Definitions of a module, and extension instances.
uint32_t QMS_LOADER_ParseFeature(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest);
uint32_t QMS_LOADER_ParseIdentity(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest);
uint32_t QMS_LOADER_ParseIdentBase(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest);
uint32_t QMS_LOADER_ParseExtension(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest);
uint32_t QMS_LOADER_ParseArgument(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                  void* dest);
uint32_t QMS_LOADER_ParseYinElement(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                    void* dest);
uint32_t QMS_LOADER_ParseDeviation(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest);
uint32_t QMS_LOADER_ParseDeviate(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest);
uint32_t QMS_LOADER_ParseExtInst(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest);

QM_END_INTERNAL_DECLS
