// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

// Entries of the dispatch table (dispatch.h). Of a feature, an identity and an extension
// `dest` is the record, which is zeroed again when the parsing fails; of a base its
// QmsIdentBase; of argument and yin-element the QmsExtension and its `yinElement`. 22
// without an argument, for one that is not allowed or leads nowhere, or when it cannot be
// interned (a base: 12); else the code of what failed inside.
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

QM_END_INTERNAL_DECLS
