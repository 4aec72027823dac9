/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_SCHEMA_H
#define QMODEL_SCHEMA_H

#include <stdint.h>

#include <qmodel/context.h>
#include <qmodel/export.h>
#include <qmodel/types.h>

/**
 * @file
 * @brief Modules and schema nodes: accessors, scans, extension instances, the tree printer.
 */

QM_BEGIN_DECLS

/** An identity of a module. Opaque. */
typedef struct QmsIdentity QmsIdentity;
/** One use of an extension statement. Opaque. */
typedef struct QmsExtInst QmsExtInst;

/** Kinds of schema nodes. */
typedef enum QmsNodeKind {
  QMS_NODE_NONE = 0,
  QMS_NODE_CONTAINER = 1,
  QMS_NODE_LEAF = 2,
  QMS_NODE_LEAF_LIST = 3,
  QMS_NODE_LIST = 4,
  QMS_NODE_CHOICE = 5,
  QMS_NODE_CASE = 6,
  QMS_NODE_ANYDATA = 7,
  QMS_NODE_ANYXML = 8,
  QMS_NODE_ACTION = 9,
  QMS_NODE_RPC = 10,
  QMS_NODE_NOTIFICATION = 11,
  QMS_NODE_INPUT = 12,
  QMS_NODE_OUTPUT = 13,
  QMS_NODE_AUGMENT = 14,
  QMS_NODE_KIND_COUNT = 15
} QmsNodeKind;

/** How a walk came to a node. */
typedef enum QmsTravType {
  QMS_TRAV_CHILD = 0,   /**< Down to the first child. */
  QMS_TRAV_SIBLING = 1, /**< On to the next sibling. */
  QMS_TRAV_PARENT = 2,  /**< Back up to the parent. */
  QMS_TRAV_TOP = 3      /**< The start of the walk. */
} QmsTravType;

/** The result of a walk callback that skips the node's subtree. */
#define QMS_SCAN_SKIP_SUBTREE UINT32_C(0x5A6B7C8D)

/** Receives one node of a walk. @p travType is a #QmsTravType. */
typedef uint32_t (*QmNodeScanFunc)(QmsNode *node, uint32_t travType, void *arg);
/** Receives one identity. @p zero is always 0. */
typedef uint32_t (*QmIdentityScanFunc)(QmsIdentity *identity, void *arg, uint32_t zero);
/** Receives one extension instance: its module, name and argument (NULL when it has none). */
typedef uint32_t (*QmExtInstScanFunc)(QmsExtInst *inst, const char *module, const char *name,
                                      const char *argument, void *arg);
/** Receives a chunk of printed text of @p length bytes, NUL-terminated. Non-zero is a failure. */
typedef uint32_t (*QmPrintOutputFunc)(const char *text, uint32_t length, void *arg);

QM_API const char *QM_MOD_GetModuleName(const QmsModule *mod) QM_NOEXCEPT;

QM_API const char *QM_MOD_GetModuleNs(const QmsModule *mod) QM_NOEXCEPT;

QM_API const char *QM_MOD_GetModulePrefix(const QmsModule *mod) QM_NOEXCEPT;

QM_API const char *QM_MOD_GetOrganization(const QmsModule *mod) QM_NOEXCEPT;

QM_API const char *QM_MOD_GetRevision(const QmsModule *mod) QM_NOEXCEPT;

QM_API void *QM_MOD_GetPrivate(const QmsModule *mod) QM_NOEXCEPT;

QM_API void *QM_MOD_SetPrivate(QmsModule *mod, void *p) QM_NOEXCEPT;

QM_API QmtType *QM_MOD_GetRealTypeByTypDefName(QmsModule *mod, const char *name) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_MOD_EnableFeature(QmsModule *mod, const char *name) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_MOD_DisableFeature(QmsModule *mod, const char *name) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_MOD_ScanAllIdentity(QmsModule *mod, QmIdentityScanFunc cb,
                                                    void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_MOD_ScanIdentityBase(QmsIdentity *identity, QmIdentBaseScanFunc cb,
                                                     void *arg) QM_NOEXCEPT;

QM_API const char *QM_MOD_GetIdentityName(const QmsIdentity *identity) QM_NOEXCEPT;

QM_API const char *QM_MOD_GetIdentityDescription(const QmsIdentity *identity) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_MOD_IterScanTopmostNode(QmsModule *mod, QmNodeScanFunc cb,
                                                        void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_MOD_IterScanAugmentNode(QmsModule *mod, QmNodeScanFunc cb,
                                                        void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_TreeScanAllNode(QmsNode *root, QmNodeScanFunc cb,
                                                     void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_IterScanChildrenNode(QmsNode *node, QmNodeScanFunc cb,
                                                          void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_IterScanSiblingNode(QmsNode *node, QmNodeScanFunc cb,
                                                         void *arg) QM_NOEXCEPT;

QM_API const char *QM_NODE_GetNodeName(const QmsNode *node) QM_NOEXCEPT;

QM_API QmsModule *QM_NODE_GetModule(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_GetNodeType(const QmsNode *node) QM_NOEXCEPT;

QM_API const char *QM_NODE_GetWhenCond(const QmsNode *node) QM_NOEXCEPT;

QM_API const char *QM_NODE_GetDescription(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_GetNodeKeyNum(const QmsNode *node) QM_NOEXCEPT;

QM_API void *QM_NODE_GetPrivate(const QmsNode *node) QM_NOEXCEPT;

QM_API void *QM_NODE_SetPrivate(QmsNode *node, void *p) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsKey(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsRwConfig(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsMandatory(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsOrderedByNode(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsNacmDefaultDenyAll(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsNacmDefaultDenyWrite(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsObsoleteNode(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsPresenceContainer(const QmsNode *node) QM_NOEXCEPT;

QM_API QmsNode *QM_NODE_GetParentNode(const QmsNode *node) QM_NOEXCEPT;

QM_API QmsNode *QM_NODE_GetNonChoiceCaseParent(const QmsNode *node) QM_NOEXCEPT;

QM_API QmsNode *QM_NODE_GetAugmentTargetNode(const QmsNode *node) QM_NOEXCEPT;

QM_API QmtType *QM_NODE_GetRealType(QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsEnabled(const QmsNode *node) QM_NOEXCEPT;

QM_API const char *QM_NODE_GetDefaultValueStr(const QmsNode *node) QM_NOEXCEPT;

QM_API const char *QM_NODE_GetUnitsValueStr(const QmsNode *node) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_ScanDerivedType(QmsNode *node, QmDerivedTypeScanFunc cb,
                                                     void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_ValidateValue(QmsNode *node, uint32_t inputKind,
                                                   const void *input) QM_NOEXCEPT;

QM_API QmtType *QM_NODE_FindRealTypeMatchedValue(QmsNode *node, uint32_t inputKind,
                                                 const void *input) QM_NOEXCEPT;

QM_API QmsNode *QM_NODE_GetLeafrefTargetNode(QmsNode *node, uint32_t follow) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_AppendExtInst(QmsNode *node, const char *module,
                                                   const char *name,
                                                   const char *argument) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_ReplaceDstExtInst(QmsNode *dst,
                                                       const QmsNode *src) QM_NOEXCEPT;

QM_API void QM_NODE_CleanExtInsts(QmsNode *node) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_ScanAllExtInsts(QmsNode *node, QmExtInstScanFunc cb,
                                                     void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_MOD_ScanAllExtInsts(QmsModule *module, QmExtInstScanFunc cb,
                                                    void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_EXT_ScanAllChildExtInsts(QmsExtInst *inst, QmExtInstScanFunc cb,
                                                         void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_MOD_PrintModelTree(QmsModule *module, QmPrintOutputFunc output,
                                                   void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_PrintNodesTree(QmsNode *node, QmPrintOutputFunc output,
                                                    void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_PrintNodeHeader(QmsNode *node, QmPrintOutputFunc output,
                                                     void *arg) QM_NOEXCEPT;

QM_END_DECLS

#endif
