// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

// Entries of the dispatch table (dispatch.h). All but the texts that are child elements
// record and give 22 when the argument is missing.

QM_BEGIN_INTERNAL_DECLS

// Set bits of the flag word at `dest`, 16 bits wide under deviate and 32 elsewhere. 22
// for a word that is not allowed; presence takes any.
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

// Fills the QmsIfFeature at `dest` from a single feature. What is none is refused as
// ReadReference() of argument.h tells; 12 without memory.
uint32_t QMS_LOADER_ParseIfFeature(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                   void* dest);

// Store the argument at `dest`, a const char*. Key borrows it from the document, the
// others intern it: 22, units 12, without memory. Units are dropped unless the context
// keeps them.
uint32_t QMS_LOADER_ParseKey(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);
uint32_t QMS_LOADER_ParseDefault(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest);
uint32_t QMS_LOADER_ParseUnits(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                               void* dest);
uint32_t QMS_LOADER_ParseErrorAppTag(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                     void* dest);

// Intern the text of a child element into the const char* at `dest`, or leave it alone
// when there is none; 22 without memory. A description is dropped unless the context
// keeps them.
uint32_t QMS_LOADER_ParseDescription(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                     void* dest);
uint32_t QMS_LOADER_ParseOrganization(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                      void* dest);
uint32_t QMS_LOADER_ParseErrorMessage(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                      void* dest);

// Those child elements, "text" and "value": intern the text that they begin with; 22
// without memory. A value that does not stand under error-message is passed over.
uint32_t QMS_LOADER_ParseText(QmsModule* module, xmlNode* element, uint32_t parentStmt, void* dest);
uint32_t QMS_LOADER_ParseValue(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                               void* dest);

QM_END_INTERNAL_DECLS
