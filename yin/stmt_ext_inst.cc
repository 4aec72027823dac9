// SPDX-License-Identifier: BSD-3-Clause
//
// Extension instances: elements of foreign namespaces (RFC 7950 section 13.1).
// One is kept on its schema node, in the array that its parent's descriptor
// sized, or inside another instance. Nesting is as deep as the document at most.
#include "yin/stmt_ext_inst.h"

#include <cstdint>

#include "context/load_error.h"
#include "context/xml_tree.h"
#include "schema/ext_inst.h"
#include "schema/flags.h"
#include "schema/module.h"
#include "yin/dispatch.h"

// The module that the namespace prefix stands for, or NULL. Prefixes of YIN
// documents are those of the module's own prefix and import statements.
static const char* FindExtensionModule(const QmsModule* module, const xmlNode* element) {
  const char* prefix = XmlText(element->ns->prefix);
  return prefix == nullptr ? nullptr : QMS_MOD_GetModuleNameByPrefix(module, prefix);
}

uint32_t QMS_LOADER_IsExtInstNeedParse(QmsModule* module, const xmlNode* element) {
  if (element == nullptr || element->ns == nullptr || element->name == nullptr) return 0;
  const char* extModule = FindExtensionModule(module, element);
  if (extModule == nullptr) return 0;
  const QmExtInstFilterCbFunc filter = module->ctx->extInstFilterCbFunc;
  if (filter == nullptr) return 1;
  return filter(extModule, XmlText(element->name)) == 0 ? 1 : 0;
}

static uint32_t FillWithChildren(QmsModule* module, xmlNode* element, const char* extModule,
                                 QmsExtInst* inst) {
  const uint32_t ret =
      QMS_EXT_FillExtInst(ModuleDict(module), inst, extModule, XmlText(element->name),
                          QM_XML_GetFirstPropertyValue(element));
  if (ret != QM_OK) return ret;
  uint16_t found = 0;
  QmsSubStmtDesc table[] = {
      ArraySubStmt(QMS_STMT_EXTENSION_INSTANCE, &inst->children, &inst->childCount, &found)};
  return QMS_LOADER_ParseSubStatements(module, element, QMS_STMT_EXTENSION_INSTANCE, table, 1);
}

static uint32_t ParseInto(QmsModule* module, xmlNode* element, const char* extModule,
                          QmsExtInst* inst) {
  const uint32_t ret = FillWithChildren(module, element, extModule, inst);
  if (ret == QM_OK) return QM_OK;
  // The message has no full stop; clients compare texts.
  QM_CTX_AddModError(module->ctx, module->name, "Failed to parse extension instance \"%s:%s\"",
                     extModule, XmlText(element->name));
  QMS_EXT_ClearExtInst(ModuleDict(module), inst);
  return ret;
}

// On failure the node keeps none of its instances, the earlier ones neither.
static uint32_t ParseIntoNode(QmsModule* module, xmlNode* element, const char* extModule,
                              QmsNode* node) {
  QmsExtInst* inst = &node->extInsts[node->extInstCount++];
  const uint32_t ret = ParseInto(module, element, extModule, inst);
  if (ret == QM_OK) {
    QMS_NODE_SetNacmFlag(node, extModule, XmlText(element->name));
    return QM_OK;
  }
  while (node->extInstCount > 0) {
    QMS_EXT_ClearExtInst(ModuleDict(module), &node->extInsts[--node->extInstCount]);
  }
  return ret;
}

uint32_t QMS_LOADER_ParseExtInst(QmsModule* module, xmlNode* element, uint32_t parentStmt,
                                 void* dest) {
  if (element == nullptr || element->ns == nullptr) return QM_INVALID;
  const char* extModule = FindExtensionModule(module, element);
  if (extModule == nullptr) {
    const char* prefix = XmlText(element->ns->prefix);
    QM_CTX_AddModError(module->ctx, module->name, "Failed to find module by prefix \"%s\".",
                       prefix == nullptr ? "" : prefix);
    return QM_INVALID;
  }
  return IsSchemaNodeStmt(parentStmt)
             ? ParseIntoNode(module, element, extModule, static_cast<QmsNode*>(dest))
             : ParseInto(module, element, extModule, static_cast<QmsExtInst*>(dest));
}
